// Hooks of reads and filters that change what is being read: objects that they delete, and forget, stay readable until the
// reading is over, and no model is closed under a reader.
// What single reads survive is get_hooks_test, listings are listing_test.
#include "tests/object/hook_lines.h"
#include "tests/support/counted_value.h"

#include <kelm/filters.h>

#include <functional>
#include <utility>

namespace kelm::test {

namespace {

class meddling_filter final : public filter {
public:
    std::function<void(const object*)> meanwhile;
    bool do_it(const object* child) const override {
        meanwhile(child);
        return false;
    }
};

class reading_meddled : public world {
protected:
    reading_meddled() { counted_value::enter(); }
    /// An object with a value that counts; nothing but the model has it.
    object* counted(object* at) {
        at->set_property(props::number, counted_value{1});
        model->clear_history();
        alive_ = counted_value::alive;
        return at;
    }
    void delete_and_forget(object* what) {
        fw.delete_object_transacted(what);
        model->clear_history();
    }
    bool is_freed() const { return counted_value::alive < alive_; }

private:
    long alive_ = 0;
};

} // namespace

TEST_F(reading_meddled, an_object_that_goes_while_all_its_values_are_read_stays_readable) {
    const struct {
        const char* why;
        std::function<void(object*)> read;
    } rows[] = {
        {"all values", [](object* of) { of->all_properties(); }},
        {"what it refers to", [](object* of) { of->referenced_objects(); }},
        {"by which properties", [](object* of) { of->referencing_property_ids(of); }},
    };
    model->end_transaction();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        object* const read = counted(hooked("read"));
        bool is_deleted = false;
        bool was_freed = false;
        hooks.on<pre_prop_get_semantic>([&](hook_call&) {
            if (!std::exchange(is_deleted, true)) delete_and_forget(read);
            was_freed = was_freed || is_freed();
            return true;
        });
        row.read(read);
        hooks.clear();
        EXPECT_TRUE(is_deleted);
        EXPECT_FALSE(was_freed);
        EXPECT_TRUE(is_freed()) << "it goes with the end of the reading";
    }
}

TEST_F(reading_meddled, children_that_go_while_they_are_counted_stay_readable) {
    model->end_transaction();
    object* const owner = thing("owner");
    object* const other = part("other", owner);
    object* const last = counted(part("counted", owner));
    bool was_freed = false;
    meddling_filter counting;
    counting.meanwhile = [&](const object* child) {
        if (child == other) delete_and_forget(last);
        was_freed = was_freed || is_freed();
    };
    EXPECT_EQ(owner->child_count(&counting), 2U) << "those that were there";
    EXPECT_FALSE(was_freed);
    EXPECT_TRUE(is_freed());
    EXPECT_EQ(owner->child_count(nullptr), 1U);
}

TEST_F(reading_meddled, no_model_is_closed_by_one_that_reads_it) {
    model->end_transaction();
    object* const read = hooked("read");
    part("child", read);
    bool is_closed = false;
    meddling_filter counting;
    counting.meanwhile = [&](const object*) { is_closed = is_closed || fw.delete_object(root); };
    hooks.on<pre_prop_get_semantic>([&](hook_call&) {
        is_closed = is_closed || fw.delete_object(root);
        return true;
    });
    read->all_properties();
    read->referenced_objects();
    read->referencing_property_ids(read);
    EXPECT_TRUE(read->has_children(&counting));
    EXPECT_FALSE(is_closed);
    hooks.clear();
}

} // namespace kelm::test
