// Deltas where something is odd: lists with holes, bases that took several turns, hooks that interfere.
// The rows of the fold are the business of the other tests here.
#include "tests/delta/delta_world.h"

#include "delta/skip_filter.h"
#include "delta/summary.h"
#include "message/message_table.h"

#include <kelm/meta_model.h>

#include <set>

namespace kelm::test {
namespace {

class delta_edges : public delta_world {
protected:
    /// \returns a list of texts; a blank stands for an element that is null
    static std::unique_ptr<vector_property> with_holes(const std::string& letters) {
        auto made = std::make_unique<vector_property>();
        for (const char each : letters)
            made->elements.push_back(each == ' ' ? nullptr : new property<std::string>{std::string(1, each)});
        return made;
    }
    std::string list_before(const object* of) {
        const auto all = model->delta_since(nullptr);
        return all ? before_of(*all, of)->original_property_as_string(props::list, nullptr) : "no delta";
    }

    object* const a = thing("a");
};

TEST_F(delta_edges, elements_that_are_null_count_like_others) {
    const struct {
        const char* why;
        const char* before;
        std::function<void()> change;
        const char* told;
    } rows[] = {
        {"replaced", " xz", [&] { a->set_vector_element(props::list, text("y"), 0); }, "NULL,x,z"},
        {"taken out", "x z", [&] { a->delete_vector_element(props::list, 1); }, "x,NULL,z"},
        {"in front of what is inserted", " x", [&] { a->insert_vector_element(props::list, text("y"), 1); },
         "NULL,x"},
        {"moved, and so moved again", "x z", [&] { a->move_vector_element(props::list, 0, 1); }, "x,NULL,z"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        before([&] { a->set_property(props::list, *with_holes(row.before)); });
        change(row.change);
        EXPECT_EQ(list_before(a), row.told);
    }
}

TEST_F(delta_edges, a_base_that_stands_where_it_stood_is_no_change_whatever_turns_it_took) {
    object* const p = thing("p");
    object* const q = thing("q");
    object* const r = thing("r");
    before([&] {
        for (object* each : {p, q, r}) a->add_inherits_from(each);
    });
    change([&] {
        a->cancel_inherits_from(p);
        a->replace_inherits_from_at(p, 1);
        a->add_inherits_from(q);
        a->set_property(props::number, number(1));
    });
    const auto all = model->delta_since(nullptr);
    const auto present = a->inherits_from_list(0);
    for (const inherits_change& each : detail_cast<detail_modified>(modified(*all, a))->inherits_changes())
        EXPECT_EQ(each.new_pos == -1, std::find(present.begin(), present.end(), each.object) == present.end())
            << object_name(each.object);
}

// What it borrows may be among what a hook of reads has had dropped.
TEST_F(delta_edges, none_is_given_when_its_messages_were_dropped_meanwhile) {
    object* const h = hooked("h");
    object* const doomed = thing("doomed");
    model->clear_history();
    model->set_undo_levels(1);
    change([&] {
        fw.delete_object(doomed);
        h->set_property(props::text, text("x"));
    });
    bool has_run = false;
    hook_program::instance().on<pre_prop_get_semantic>([&](hook_call&) {
        if (std::exchange(has_run, true)) return true;
        change([&] { a->set_property(props::number, number(1)); });
        return true;
    });
    EXPECT_EQ(model->last_delta(), nullptr);
    EXPECT_TRUE(has_run);
    hook_program::instance().clear();
    EXPECT_EQ(told_of([&] { a->set_property(props::number, number(2)); }), "modified a\n  11: '1' -> '2'\n");
}

TEST_F(delta_edges, one_may_be_let_go_behind_the_messages_that_it_was_made_of) {
    const long before = counted_value::alive;
    object* const doomed = thing("doomed");
    doomed->set_property(props::number, counted_value{1});
    model->clear_history();
    change([&] {
        doomed->set_property(props::number, counted_value{2});
        a->set_property(props::number, counted_value{3});
        fw.delete_object(doomed);
    });
    shared_ptr<delta> kept = model->delta_since(nullptr);
    ASSERT_TRUE(kept);
    model->clear_history();
    EXPECT_EQ(counted_value::alive, before + 1) << "what it borrowed has gone";
    kept.reset();
    EXPECT_EQ(counted_value::alive, before + 1) << "and nothing goes twice";
}

TEST_F(delta_edges, trees_deeper_than_the_stack_may_come_and_go) {
    constexpr int levels = 50000;
    object* lowest = root;
    change([&] {
        for (int i = 0; i != levels; ++i) lowest = fw.create_object(types::thing, lowest);
        lowest->set_property(props::name, text("lowest"));
    });
    object* const top = root->child_at(types::thing, 1);
    {
        const auto all = model->delta_since(nullptr);
        ASSERT_TRUE(all);
        EXPECT_EQ(all->created_details().size(), 1u);
    }
    model->clear_history();
    change([&] { fw.delete_object(top); });
    const auto all = model->delta_since(nullptr);
    ASSERT_TRUE(all);
    ASSERT_EQ(all->deleted_details().size(), 1u);
    delta_detail* detail = all->deleted_details()[0];
    int below = 0;
    while (true) {
        const auto inside = detail_cast<detail_delete>(detail)->child_details();
        if (inside.empty()) break;
        detail = inside[0];
        ++below;
    }
    EXPECT_EQ(below, levels - 1);
    EXPECT_EQ(detail->object_id(), lowest->id());
}

TEST_F(delta_edges, the_last_one_is_made_once) {
    object* const h = hooked("h");
    change([&] { h->set_property(props::text, text("x")); });
    int reads = 0;
    hook_program::instance().on<pre_prop_get_semantic>([&](hook_call&) {
        ++reads;
        return true;
    });
    ASSERT_TRUE(model->last_delta());
    const int once = reads;
    EXPECT_GT(once, 0);
    ASSERT_TRUE(model->last_delta());
    EXPECT_EQ(reads, once);
}

TEST_F(delta_edges, new_objects_are_read_where_hooks_would_hear_of_it) {
    int reads = 0;
    hook_program::instance().on<pre_prop_get_semantic>([&](hook_call&) {
        ++reads;
        return true;
    });
    begin();
    object* const made = fw.create_object(types::hooked, root);
    made->set_property(props::text, text("x"));
    end();
    reads = 0;
    ASSERT_TRUE(model->last_delta());
    EXPECT_GT(reads, 0);
}

// Whoever adds a kind of message decides what summaries make of it.
TEST_F(delta_edges, every_kind_of_message_is_folded_or_left_out_on_purpose) {
    const std::set<u32> left_out{message_type::tran_begin,           message_type::tran_end,
                                 message_type::obj_pre_delete,       message_type::child_add,
                                 message_type::child_pre_remove,     message_type::observer_add,
                                 message_type::observer_remove,      message_type::udp_add,
                                 message_type::udp_remove,           message_type::udp_set_attribute_value,
                                 message_type::property_refresh_set, message_type::property_refresh_delete};
    for (const message_row& each : message_rows()) {
        SCOPED_TRACE(each.name);
        EXPECT_NE(summary::folds(each.code), left_out.contains(each.code));
    }
}

TEST_F(delta_edges, the_filter_of_properties_says_what_deltas_leave_out) {
    object* const s = summed("s");
    skip_in_tran_history_fp filter;
    meta_object* const type = model->meta_model()->find_meta_object(types::summed);
    for (meta_property* each : type->properties()) {
        SCOPED_TRACE(each->name());
        const auto changes = [&](const char* value) {
            return told_of([&] { s->set_property(each->id(), text(value)); });
        };
        const bool is_told = changes("1").find("  " + std::to_string(each->id()) + ": ") != std::string::npos;
        if (each->id() == property_id::name) continue; // the lines leave it out
        EXPECT_EQ(filter.do_it(s, each), !is_told);
        change([&] { s->delete_property(each->id()); });
    }
}

} // namespace
} // namespace kelm::test
