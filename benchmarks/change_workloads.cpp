// What a stretch of history comes to, and carrying objects elsewhere: deltas, copies and pastes.
// The tree is that of all workloads, but for the siblings, which lie below one root.
#include "measuring.h"
#include "workload_tree.h"

#include <string>
#include <vector>

namespace workload {

namespace {

kelm::shared_ptr<kelm::delta> sum_up(const tree& built) {
    kelm::shared_ptr<kelm::delta> changes = built.model->delta_since(nullptr);
    if (!changes) fail("the changes come to nothing");
    return changes;
}

/// Copies `what` and pastes it below the root, time and again; each paste is undone.
void measure_paste(const tree& built, const std::vector<kelm::object*>& what, const char* name) {
    const std::size_t before = object_count(built);
    figures measured{};
    for (std::size_t run = 0; run != runs + 1; ++run) { // the first is the warm-up, and overwritten
        bool whole = false;
        measured[run == 0 ? 0 : run - 1] = seconds_of([&] {
            const auto copier = kelm::framework::instance().create_copier(built.model);
            for (kelm::object* each : what) copier->copy_object(each, true);
            whole = copier->paste(built.model, {built.root}, nullptr);
        });
        if (!whole || object_count(built) <= before) fail("the paste failed");
        built.model->undo();
        if (object_count(built) != before) fail("the paste cannot be undone");
    }
    print(name, before, median(measured));
}

} // namespace

void measure_delta(std::size_t wanted) {
    tree built = build(wanted);
    const std::size_t n = built.objects.size();
    figures created{};
    for (double& figure : created)
        figure = seconds_of([&] {
            if (sum_up(built)->created_details().empty()) fail("nothing is told to be new");
        });
    print("delta_created", n, median(created));

    built.model->clear_history();
    built.model->begin_transaction("Rename");
    for (std::size_t i = 0; i != n; ++i)
        built.objects[i]->set_property(kelm::property_id::name,
                                       kelm::property<std::string>{"renamed_" + std::to_string(i)});
    built.model->end_transaction();
    figures modified{};
    for (double& figure : modified)
        figure = seconds_of([&] {
            if (sum_up(built)->modified_details().size() != n) fail("not every change is told");
        });
    print("delta_modified", n, median(modified));
    close(built);
}

void measure_copy(std::size_t wanted) {
    tree built = build(wanted);
    measure_paste(built, some_packages(built, 10), "W8");
    measure_paste(built, some_packages(built, 1), "copy_all");
    close(built);
}

void measure_siblings(std::size_t wanted) {
    tree built = build(1);
    std::vector<kelm::object*> siblings;
    built.model->begin_transaction("Siblings");
    for (std::size_t i = 0; i != wanted; ++i)
        siblings.push_back(kelm::framework::instance().create_object(package_type, built.root));
    built.model->end_transaction();
    measure_paste(built, siblings, "copy_siblings");
    close(built);
}

} // namespace workload
