// Each allocation of each change of a type failed in turn: the type is as before or as after, and so is what it passes
// on.
// Properties that users define are changed in transactions, and have scenarios.
#include "tests/faults/failing_memory.h"
#include "tests/support/world.h"

#include "meta/meta_model_impl.h"

#include <kelm/semantic.h>

#include <new>
#include <string>

namespace kelm::test {
namespace {

class plain_hook final : public obj_create_semantic {
public:
    u32 id() const override { return 1000; }
    bool do_it(object*) override { return true; }
};

/// An application's types, and a model that looks at them.  Somebody reads all that they keep whenever `derived` is told
/// of a change.
struct types_in_use {
    class reading_observer final : public observer {
    public:
        explicit reading_observer(types_in_use& all) : all_(all) {}
        bool update(subject*, message*) override { return !all_.dump().empty(); }

    private:
        types_in_use& all_;
    };

    types_in_use() {
        for (meta_object* each : {base, derived, other}) {
            each->add_property(each->id(), "property", data_type::string, "");
            each->add_composition(30);
            each->add_related_type(each->id());
        }
        derived->add_base_type(base);
        dynamic_cast<subject&>(*derived).attach(&reader);
        dump();
    }

    /// What all types have.  The bases of a model's types are left out: the first try to change one makes a copy that
    /// derives from the application's, and stays.
    std::string dump() const {
        std::string out;
        for (const meta_object* each : application.meta_objects()) {
            out += text_of(*each);
            for (const meta_object* one : each->base_types()) out += " b" + std::to_string(one->id());
            out += '\n';
        }
        for (const meta_object* each : instance.meta_objects()) out += text_of(*each) + '\n';
        return out;
    }

    static std::string text_of(const meta_object& of) {
        std::string out = std::to_string(of.id()) + ':';
        for (const meta_property* one : of.properties()) out += " p" + std::to_string(one->id());
        for (const meta_composition* one : of.compositions()) out += " c" + std::to_string(one->id());
        for (const u32 one : of.related_types()) out += " r" + std::to_string(one);
        return of.find_semantic(1000) ? out + " hook" : out;
    }

    reading_observer reader{*this}; // outlives them
    meta_model_impl application{5, "types", ""};
    meta_object* const base = application.add_meta_object(10, "base", "", "");
    meta_object* const derived = application.add_meta_object(20, "derived", "", "");
    meta_object* const other = application.add_meta_object(30, "other", "", "");
    meta_model_impl instance{application};
};

struct type_row {
    const char* why;
    void (*change)(types_in_use&);
};

TEST(types, that_memory_runs_out_for_are_changed_as_a_whole_or_not_at_all) {
    const type_row rows[] = {
        {"a property", [](types_in_use& t) { t.base->add_property(40); }},
        {"a property of a model's own",
         [](types_in_use& t) { t.instance.find_meta_object(20)->add_property(40); }},
        {"a composition", [](types_in_use& t) { t.base->add_composition(10); }},
        {"a related type", [](types_in_use& t) { t.base->add_related_type(40); }},
        {"a hook",
         [](types_in_use& t) {
             auto made = std::make_unique<plain_hook>();
             if (t.base->add_semantic(made.get())) (void)made.release();
         }},
        {"a base", [](types_in_use& t) { t.derived->add_base_type(t.other); }},
        {"a base taken out", [](types_in_use& t) { t.derived->remove_base_type(t.base); }},
        {"a property kept from derived types", [](types_in_use& t) { t.base->exclude_property(10); }},
        {"a composition kept from derived types", [](types_in_use& t) { t.base->exclude_composition(30); }},
        {"compositions read anew",
         [](types_in_use& t) {
             t.base->add_composition(20);
             t.instance.find_meta_object(10)->compositions();
         }},
    };
    for (const type_row& row : rows) {
        SCOPED_TRACE(row.why);
        std::string before;
        std::string after;
        std::string later;
        {
            types_in_use types;
            before = types.dump();
            row.change(types);
            after = types.dump();
            types.base->add_composition(20);
            later = types.dump();
        }
        bool failed = true;
        for (long n = 1; failed && !testing::Test::HasFailure(); ++n) {
            SCOPED_TRACE(n);
            const long blocks = live_blocks();
            {
                types_in_use types;
                {
                    const failing_memory memory{{.until_failure = n}};
                    try {
                        row.change(types);
                    } catch (const std::bad_alloc&) {}
                    failed = failing_memory::failures() != 0;
                }
                const std::string now = types.dump();
                EXPECT_EQ(now, failed && now != after ? before : after);
                if (now == before) row.change(types);
                EXPECT_EQ(types.dump(), after) << "tried once more";
                types.base->add_composition(20);
                EXPECT_EQ(types.dump(), later) << "and heard of what comes";
            }
            EXPECT_EQ(live_blocks(), blocks) << "blocks are left";
        }
    }
}

} // namespace
} // namespace kelm::test
