// The common workloads at several sizes: a line of JSON a measurement.
// Each figure is the median of five runs after a warm-up, in a process of its own, and verified.
#include "measuring.h"
#include "workload_tree.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using namespace workload;

constexpr std::size_t renames = 100'000;

void verify_tree(const tree& built) {
    if (object_count(built) != built.objects.size() + 1) fail("the tree has not the objects it should");
    if (!built.model->can_undo()) fail("the tree was not recorded");
    if (kelm::object_name(built.objects.front()) != "pkg_0") fail("a name is wrong");
}

/// Builds the whole tree in one transaction.
void measure_build(std::size_t wanted) {
    const std::size_t before = resident_bytes();
    tree built = build(wanted); // the warm-up, and the one that finds fresh memory
    const std::size_t n = built.objects.size();
    const double bytes =
        static_cast<double>(resident_bytes() - before - n * sizeof(void*)) / static_cast<double>(n);
    verify_tree(built);
    close(built);
    figures measured{};
    for (double& figure : measured) {
        figure = seconds_of([&] { built = build(wanted); });
        verify_tree(built);
        close(built);
    }
    print("W1", n, median(measured), bytes);
}

/// Reads every name ten times, an owned copy each.
void measure_reads(std::size_t wanted) {
    tree built = build(wanted);
    const auto read_all = [&] {
        std::size_t characters = 0;
        for (int round = 0; round != 10; ++round)
            for (const kelm::object* each : built.objects) {
                const kelm::value_ptr name = each->get_property(kelm::property_id::name);
                characters += static_cast<const kelm::property<std::string>&>(*name).value.size();
            }
        return characters;
    };
    const std::size_t expected = read_all();
    figures measured{};
    for (double& figure : measured)
        figure = seconds_of([&] {
            if (read_all() != expected) fail("a name was read differently");
        });
    print("W4", built.objects.size(), median(measured));
    close(built);
}

/// The names of the objects that are renamed, and what they are renamed to, one a transaction.
struct renaming {
    std::vector<kelm::object*> objects;
    std::vector<std::string> names;
    std::vector<std::string> former;
};

/// The renamed objects lie all over a tree that has more of them than there are transactions; in a smaller one
/// each is renamed several times.
renaming plan_renaming(const tree& built) {
    const std::size_t step = std::max<std::size_t>(1, built.objects.size() / renames);
    renaming out;
    for (std::size_t i = 0; i != renames; ++i) {
        out.objects.push_back(built.objects[i * step % built.objects.size()]);
        out.names.push_back("renamed_" + std::to_string(i));
        out.former.push_back(kelm::object_name(out.objects.back()));
    }
    return out;
}

void rename_all(const tree& built, const renaming& plan) {
    for (std::size_t i = 0; i != renames; ++i) {
        built.model->begin_transaction("Rename");
        plan.objects[i]->set_property(kelm::property_id::name, kelm::property<std::string>{plan.names[i]});
        built.model->end_transaction();
    }
}

void verify_renamed(const renaming& plan) {
    std::unordered_map<const kelm::object*, const std::string*> last;
    for (std::size_t i = 0; i != renames; ++i) last[plan.objects[i]] = &plan.names[i];
    for (const auto& [object, name] : last)
        if (kelm::object_name(object) != *name) fail("an object has not its new name");
}

void verify_former(const renaming& plan) {
    for (std::size_t i = 0; i != renames; ++i)
        if (kelm::object_name(plan.objects[i]) != plan.former[i])
            fail("an object has not its former name back");
}

/// Renames one object a transaction; undoes all of them; redoes all of them.
void measure_renames(std::size_t wanted) {
    tree built = build(wanted);
    const renaming plan = plan_renaming(built);
    figures done{};
    figures undone{};
    figures redone{};
    for (std::size_t run = 0; run != runs + 1; ++run) { // the first is the warm-up, and overwritten
        const std::size_t at = run == 0 ? 0 : run - 1;
        built.model->clear_history();
        done[at] = seconds_of([&] { rename_all(built, plan); });
        verify_renamed(plan);
        undone[at] = seconds_of([&] {
            for (std::size_t i = 0; i != renames; ++i) built.model->undo();
        });
        verify_former(plan);
        if (built.model->can_undo()) fail("there is more to undo than was done");
        redone[at] = seconds_of([&] {
            for (std::size_t i = 0; i != renames; ++i) built.model->redo();
        });
        verify_renamed(plan);
        if (built.model->can_redo()) fail("there is more to redo than was undone");
        while (built.model->can_undo()) built.model->undo(); // each run begins with the former names
    }
    print("W2", built.objects.size(), median(done));
    print("W3_undo", built.objects.size(), median(undone));
    print("W3_redo", built.objects.size(), median(redone));
    close(built);
}

struct loss {
    std::size_t objects = 0;
    std::size_t references = 0;
};

/// \returns what the object's own reference leads to; null when it has none
const kelm::object* target_of(const kelm::object* what) {
    const kelm::value_ptr value = what->get_own_property(refers_property);
    return value ? static_cast<const kelm::property<kelm::object*>&>(*value).value : nullptr;
}

/// \returns the objects and references that go with the packages, by what every object says of itself
loss expected_loss(const tree& built, const std::vector<kelm::object*>& packages) {
    const std::set<const kelm::object*> going(packages.begin(), packages.end());
    const auto goes = [&](const kelm::object* what) {
        return going.contains(what) || going.contains(what->owner(package_type));
    };
    loss out;
    for (const kelm::object* each : built.objects) {
        out.objects += goes(each);
        const kelm::object* const target = target_of(each);
        out.references += target && (goes(each) || goes(target));
    }
    return out;
}

/// \returns how many references lead from living objects to living objects
std::size_t reference_count(const tree& built) {
    std::vector<kelm::u32> ids;
    built.model->object_ids(ids);
    std::size_t count = 0;
    for (const kelm::u32 id : ids) {
        const kelm::object* const target = target_of(built.model->find_object(id));
        if (!target) continue;
        if (built.model->find_object(target->id()) != target) fail("a reference leads to a deleted object");
        ++count;
    }
    return count;
}

/// Deletes every tenth package in one transaction, with all in it and all that refers to it; undoes it.
void measure_deletion(std::size_t wanted) {
    tree built = build(wanted);
    const std::vector<kelm::object*> packages = some_packages(built, 10);
    const std::size_t objects = object_count(built);
    const std::size_t references = reference_count(built);
    const loss lost = expected_loss(built, packages);
    figures deleted{};
    figures undone{};
    for (std::size_t run = 0; run != runs + 1; ++run) { // the first is the warm-up, and overwritten
        const std::size_t at = run == 0 ? 0 : run - 1;
        built.model->clear_history();
        deleted[at] = seconds_of([&] {
            kelm::transaction_object transaction{built.model, "Delete"};
            for (kelm::object* each : packages) kelm::framework::instance().delete_object(each);
            transaction.commit();
        });
        if (object_count(built) != objects - lost.objects) fail("not all objects that should go are gone");
        if (reference_count(built) != references - lost.references)
            fail("not all references that should go are gone");
        undone[at] = seconds_of([&] { built.model->undo(); });
        if (object_count(built) != objects) fail("the objects are not back");
        if (reference_count(built) != references) fail("the references are not back");
    }
    print("W9_delete", built.objects.size(), median(deleted));
    print("W9_undo", built.objects.size(), median(undone));
    close(built);
}

/// A process of its own finds memory as a fresh application does.
void in_own_process(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        start();
        work();
        std::_Exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) < 0 || status != 0) fail("a measurement failed");
}

struct measurement {
    const char* name;
    void (*measure)(std::size_t wanted);
};

constexpr measurement measurements[] = {
    {"build", measure_build},       {"renames", measure_renames},   {"reads", measure_reads},
    {"stream", measure_stream},     {"document", measure_document}, {"history", measure_stored_history},
    {"delta", measure_delta},       {"copy", measure_copy},         {"siblings", measure_siblings},
    {"deletion", measure_deletion},
};

/// What the command line asks for: sizes, and names of measurements; without sizes, or without names, all are taken.
struct request {
    std::vector<std::size_t> sizes;
    std::set<std::string> names;

    bool has(const char* name) const { return names.empty() || names.contains(name); }
};

bool is_measurement(const std::string& name) {
    return std::ranges::any_of(measurements, [&](const measurement& each) { return each.name == name; });
}

bool is_size(const std::string& argument) {
    const auto is_digit = [](unsigned char c) { return std::isdigit(c) != 0; };
    return !argument.empty() && std::ranges::all_of(argument, is_digit);
}

/// Ends the process when an argument is neither a size nor the name of a measurement.
request read_request(const std::vector<std::string>& arguments) {
    request out;
    for (const std::string& argument : arguments)
        if (is_size(argument))
            out.sizes.push_back(std::strtoull(argument.c_str(), nullptr, 10));
        else if (is_measurement(argument))
            out.names.insert(argument);
        else {
            std::string names;
            for (const measurement& each : measurements)
                names += names.empty() ? each.name : std::string(", ") + each.name;
            fail(("'" + argument + "' is neither a size nor one of the measurements " + names + ".").c_str());
        }
    if (out.sizes.empty()) out.sizes = {10'000, 100'000, 1'000'000};
    return out;
}

} // namespace

int main(int argc, char** argv) {
    const request asked = read_request({argv + 1, argv + argc});
    for (const std::size_t n : asked.sizes)
        for (const auto& [name, measure] : measurements)
            if (asked.has(name)) in_own_process([n, run = measure] { run(n); });
}
