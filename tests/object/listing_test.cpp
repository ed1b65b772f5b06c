// Reading children: filters, sorters, hooks around the reading, counts.
// Changing the list is children_test and child_order_test.
#include "tests/object/hook_lines.h"

#include <functional>
#include <random>
#include <set>

namespace kelm::test {

namespace {

/// Leaves out the objects with certain names, and may do something whenever it is asked.
class leaves_out final : public filter {
public:
    explicit leaves_out(std::set<std::string> names) : names_(std::move(names)) {}
    bool do_it(const object* candidate) const override {
        ++asked;
        if (meanwhile) meanwhile();
        return names_.contains(own_name(candidate));
    }

    mutable int asked = 0;
    std::function<void()> meanwhile;

private:
    std::set<std::string> names_;
};

class by_name_backwards final : public sorter {
public:
    bool do_it(const object* a, const object* b) const override { return own_name(a) > own_name(b); }
};

/// Contradicts itself: each object comes before each, or whatever a number drawn says.
class unruly final : public sorter {
public:
    explicit unruly(bool is_moody) : is_moody_(is_moody) {}
    bool do_it(const object*, const object*) const override { return !is_moody_ || draw_() % 2 == 0; }

private:
    bool is_moody_;
    mutable std::minstd_rand draw_;
};

/// Has an order, and does something whenever it is asked.
class meddling_order final : public sorter {
public:
    bool do_it(const object* a, const object* b) const override {
        meanwhile();
        return own_name(a) < own_name(b);
    }

    std::function<void()> meanwhile;
};

class listing_test : public world {
protected:
    object* const owner = hooked("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    object* const c = thing("c", owner);
    object* const d = make(types::special_thing, "d", owner);
    object* const e = make(types::other, "e", owner);
};

} // namespace

TEST_F(listing_test, has_eight_forms_that_agree) {
    leaves_out filter{{"a", "d"}};
    by_name_backwards order;
    std::vector<object*> out{root}; // what was in it goes
    EXPECT_EQ(owner->children(out), 5u);
    EXPECT_EQ(own_names(out), "c a b e d");
    EXPECT_EQ(owner->children(), out);
    EXPECT_EQ(owner->children(out, &filter), 3u);
    EXPECT_EQ(own_names(out), "c b e");
    EXPECT_EQ(owner->children(&filter), out);
    EXPECT_EQ(owner->children(out, &order), 5u);
    EXPECT_EQ(own_names(out), "e d c b a");
    EXPECT_EQ(owner->children(&order), out);
    EXPECT_EQ(owner->children(out, &filter, &order), 3u);
    EXPECT_EQ(own_names(out), "e c b");
    EXPECT_EQ(owner->children(&filter, &order), out);
}

TEST_F(listing_test, takes_null_for_no_filter_and_no_sorter) {
    filter* const no_filter = nullptr;
    sorter* const no_sorter = nullptr;
    EXPECT_EQ(owner->children(no_filter, no_sorter).size(), 5u);
    EXPECT_EQ(owner->children(no_filter).size(), 5u);
    EXPECT_EQ(owner->children(no_sorter).size(), 5u);
    EXPECT_EQ(owner->child_count(no_filter), 5u);
}

TEST_F(listing_test, keeps_to_the_run_of_a_type_whatever_is_derived_from_it) {
    obj_filter_type exact{types::thing};
    obj_filter_type derived{types::thing, true};
    EXPECT_EQ(own_names(owner->children(&exact)), "c");
    EXPECT_EQ(own_names(owner->children(&derived)), "c"); // Kept: the runs of types are taken as they stand
    EXPECT_FALSE(derived.do_it(d));
    EXPECT_TRUE(exact.do_it(d));
    EXPECT_EQ(owner->child_count(&derived), 1u);
    EXPECT_EQ(owner->child_count(types::thing), 1u);
    EXPECT_EQ(owner->child_count(types::part), 2u);
    EXPECT_EQ(owner->child_count(types::hooked), 0u);
}

TEST_F(listing_test, takes_the_runs_of_several_types_in_the_order_of_the_filter) {
    obj_filter_types several{{types::other, types::part, types::hooked, types::other}};
    EXPECT_EQ(own_names(owner->children(&several)), "e a b e"); // a type listed twice comes twice
    obj_filter_types derived{{types::thing}, true};
    EXPECT_EQ(own_names(owner->children(&derived)), "c");
    EXPECT_EQ(owner->child_count(&derived),
              2u); // Kept: counting asks the filter, and d is derived from thing
    EXPECT_EQ(owner->child_count(&several), 3u);
}

TEST_F(listing_test, asks_any_other_filter_about_every_child) {
    leaves_out filter{{"b"}};
    EXPECT_EQ(own_names(owner->children(&filter)), "c a e d");
    EXPECT_EQ(filter.asked, 5);
    EXPECT_EQ(owner->child_count(&filter), 4u);
    EXPECT_TRUE(owner->has_children(&filter));
    leaves_out all{{"a", "b", "c", "d", "e"}};
    EXPECT_FALSE(owner->has_children(&all));
    EXPECT_TRUE(owner->has_children());
    EXPECT_FALSE(a->has_children(&all));
    EXPECT_EQ(a->child_count(&filter), 0u);
}

TEST_F(listing_test, survives_a_filter_that_changes_the_list) {
    leaves_out filter{{}};
    filter.meanwhile = [&] {
        owner->remove_child(a);
        owner->remove_child(b);
    };
    EXPECT_EQ(owner->children(&filter).size(), 5u); // asked about what was there at the beginning
    EXPECT_EQ(own_names(owner->children()), "c e d");
}

TEST_F(listing_test, survives_a_sorter_that_changes_the_list) {
    model->set_undo_levels(0); // what is deleted would be freed at once
    meddling_order order;
    order.meanwhile = [&] {
        if (a->state() != state::normal) return;
        owner->remove_child(b);
        fw.delete_object_transacted(a);
        fw.create_object_transacted(types::part, owner, nullptr);
        EXPECT_FALSE(fw.delete_object(root));
    };
    EXPECT_EQ(owner->children(&order).size(), 5u);         // what was there at the beginning
    EXPECT_EQ(own_names(owner->children()), "c none e d"); // the new one has no name
}

// Sorts of the standard library run out of a list as long as this.
TEST_F(listing_test, survives_a_sorter_that_contradicts_itself) {
    object* const top = thing("top");
    for (int i = 0; i != 300; ++i) part("p", top);
    const std::vector<object*> all = top->children();
    for (const bool is_moody : {false, true}) {
        SCOPED_TRACE(is_moody);
        unruly order{is_moody};
        const std::vector<object*> sorted = top->children(&order);
        EXPECT_EQ(sorted.size(), all.size());
        EXPECT_EQ(std::set<object*>(sorted.begin(), sorted.end()), std::set<object*>(all.begin(), all.end()));
    }
}

TEST_F(listing_test, sorts_lists_of_any_length) {
    object* const top = thing("top");
    by_name_backwards order;
    std::string expected;
    for (char letter = 'a'; letter <= 'q'; ++letter) {
        part(std::string(1, letter), top);
        expected = std::string(1, letter) + (expected.empty() ? "" : " ") + expected;
        EXPECT_EQ(own_names(top->children(&order)), expected);
    }
}

TEST_F(listing_test, runs_hooks_before_and_behind) {
    std::string lines;
    write_down(hooks, lines, {27, 28});
    owner->children();
    EXPECT_EQ(lines, "27 owner\n28 owner\n");
    owner->child_count(types::part);
    owner->has_children();
    owner->child_at(types::part, 0);
    owner->child_position(a);
    EXPECT_EQ(lines, "27 owner\n28 owner\n"); // counts and places are no listings
    lines.clear();
    object* const empty = hooked("empty");
    lines.clear();
    EXPECT_TRUE(empty->children().empty());
    EXPECT_EQ(lines, "27 empty\n"); // without a list nothing is done behind
}

TEST_F(listing_test, is_empty_when_a_hook_refuses_and_nothing_is_rolled_back) {
    for (const int kind : {27, 28}) {
        SCOPED_TRACE(kind);
        hooks.refuse(kind);
        begin();
        root->set_property(props::text, text("stays"));
        std::vector<object*> out{root};
        EXPECT_EQ(owner->children(out), 0u);
        EXPECT_TRUE(out.empty());
        EXPECT_TRUE(owner->children().empty());
        EXPECT_TRUE(model->in_transaction());
        EXPECT_EQ(message_types(), "1 7");
        EXPECT_TRUE(fw.in_semantic()); // until the next outermost transaction
        end();
        hooks.clear();
        model->clear_history();
        begin();
        EXPECT_FALSE(fw.in_semantic());
        end();
    }
}

TEST_F(listing_test, shows_children_that_a_hook_has_just_made) {
    object* const empty = hooked("empty");
    hooks.on<pre_children_get_semantic>(
        [&](hook_call& call) { return call.at->has_children() || fw.create_object(types::part, call.at); });
    begin();
    EXPECT_EQ(empty->children().size(), 1u);
    end();
    EXPECT_EQ(message_types(), "1 4 14 2");
    EXPECT_FALSE(model->message_at(1)->is_user_created());
}

TEST_F(listing_test, cannot_have_its_model_closed_by_a_hook) {
    for (const int kind : {27, 28}) {
        SCOPED_TRACE(kind);
        bool closed = true;
        hooks.on(kind, [&](hook_call&) {
            closed = fw.delete_object(root);
            return true;
        });
        EXPECT_EQ(owner->children().size(), 5u);
        EXPECT_FALSE(closed);
        hooks.clear();
    }
}

} // namespace kelm::test
