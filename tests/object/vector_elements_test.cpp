// Changing elements of own lists in place: positions, missing lists, and what undo makes of each.
// Hooks around these changes are property_hooks_test.
#include "tests/object/value_lines.h"
#include "tests/support/unregistered_value.h"

#include <functional>

namespace kelm::test {

using vector_elements = value_world;

namespace {

/// One call on an object with the list 1 2 3.
struct element_case {
    const char* why;
    bool (*call)(object*);
    bool done;
    const char* list_after;
    const char* heard; ///< also what the history has of it
};

constexpr std::size_t far = 100;

const element_case cases[] = {
    {"insert first", [](object* o) { return o->insert_vector_element(props::list, number(9), 0); }, true,
     "['9' '1' '2' '3']", "9 first user a: 14 in a at 0 + '9'\n"},
    {"insert between", [](object* o) { return o->insert_vector_element(props::list, number(9), 2); }, true,
     "['1' '2' '9' '3']", "9 first user a: 14 in a at 2 + '9'\n"},
    {"insert at the size appends",
     [](object* o) { return o->insert_vector_element(props::list, number(9), 3); }, true, "['1' '2' '3' '9']",
     "9 first user a: 14 in a at 3 + '9'\n"},
    {"insert behind the size puts nothing in and goes on",
     [](object* o) { return o->insert_vector_element(props::list, number(9), 4); }, true, "['1' '2' '3']",
     "9 first user a: 14 in a at 4 + '9'\n"},
    {"insert behind everything",
     [](object* o) { return o->insert_vector_element(props::list, number(9), npos); }, true, "['1' '2' '3']",
     "9 first user a: 14 in a at 4294967295 + '9'\n"},
    {"append", [](object* o) { return o->append_vector_element(props::list, text("t")); }, true,
     "['1' '2' '3' 't']", "9 first user a: 14 in a at 3 + 't'\n"},
    {"delete the first", [](object* o) { return o->delete_vector_element(props::list, 0); }, true,
     "['2' '3']", "11 first user a: 14 in a at 0 - '1'\n"},
    {"delete the last", [](object* o) { return o->delete_vector_element(props::list, 2); }, true, "['1' '2']",
     "11 first user a: 14 in a at 2 - '3'\n"},
    {"delete at the size", [](object* o) { return o->delete_vector_element(props::list, 3); }, false,
     "['1' '2' '3']", ""},
    {"delete far behind", [](object* o) { return o->delete_vector_element(props::list, npos); }, false,
     "['1' '2' '3']", ""},
    {"set", [](object* o) { return o->set_vector_element(props::list, text("t"), 1); }, true, "['1' 't' '3']",
     "8 first user a: 14 in a at 1 '2' to 't'\n"},
    {"set an equal element", [](object* o) { return o->set_vector_element(props::list, number(2), 1); }, true,
     "['1' '2' '3']", "8 first user a: 14 in a at 1 '2' to '2'\n"},
    {"set at the size", [](object* o) { return o->set_vector_element(props::list, number(9), 3); }, false,
     "['1' '2' '3']", ""},
    {"move to the front", [](object* o) { return o->move_vector_element(props::list, 2, 0); }, true,
     "['3' '1' '2']", "12 first user a: 14 in a 2 to 0\n"},
    {"move to the end of the list without it",
     [](object* o) { return o->move_vector_element(props::list, 0, 2); }, true, "['2' '3' '1']",
     "12 first user a: 14 in a 0 to 2\n"},
    {"move to its own place", [](object* o) { return o->move_vector_element(props::list, 1, 1); }, true,
     "['1' '2' '3']", "12 first user a: 14 in a 1 to 1\n"},
    {"move from behind the end counts as done",
     [](object* o) { return o->move_vector_element(props::list, 3, 0); }, true, "['1' '2' '3']",
     "12 first user a: 14 in a 3 to 0\n"},
    {"move from and to behind the end",
     [](object* o) { return o->move_vector_element(props::list, far, far); }, true, "['1' '2' '3']",
     "12 first user a: 14 in a 100 to 100\n"},
    {"missing list: insert", [](object* o) { return o->insert_vector_element(props::text, number(9), 0); },
     false, "['1' '2' '3']", ""},
    {"missing list: delete", [](object* o) { return o->delete_vector_element(props::text, 0); }, false,
     "['1' '2' '3']", ""},
    {"missing list: set", [](object* o) { return o->set_vector_element(props::text, number(9), 0); }, false,
     "['1' '2' '3']", ""},
    {"missing list: move", [](object* o) { return o->move_vector_element(props::text, 0, 0); }, false,
     "['1' '2' '3']", ""},
    {"no list: insert", [](object* o) { return o->insert_vector_element(props::name, number(9), 0); }, false,
     "['1' '2' '3']", ""},
    {"no list: append", [](object* o) { return o->append_vector_element(props::name, number(9)); }, false,
     "['1' '2' '3']", ""},
    {"no list: delete", [](object* o) { return o->delete_vector_element(props::name, 0); }, false,
     "['1' '2' '3']", ""},
    {"no list: set", [](object* o) { return o->set_vector_element(props::name, number(9), 0); }, false,
     "['1' '2' '3']", ""},
    {"no list: move", [](object* o) { return o->move_vector_element(props::name, 0, 0); }, false,
     "['1' '2' '3']", ""},
};

} // namespace

TEST_F(vector_elements, are_changed_in_place_told_and_undone) {
    object* const a = thing("a");
    give_list(a, {1, 2, 3});
    ears.watch(a);
    const std::string before = dump();
    for (const element_case& row : cases) {
        SCOPED_TRACE(row.why);
        begin();
        EXPECT_EQ(row.call(a), row.done);
        EXPECT_EQ(model->in_transaction(), row.done) << "a refusal rolls the level back";
        if (model->in_transaction()) end();
        EXPECT_EQ(list(a), row.list_after);
        EXPECT_EQ(ears.take(), row.heard);
        EXPECT_EQ(lines(), row.heard);
        if (row.done) {
            expect_undone_and_redone(before);
            model->undo();
        }
        EXPECT_EQ(dump(), before);
        forget();
    }
}

TEST_F(vector_elements, keeps_the_element_out_when_the_target_of_a_move_is_refused) {
    object* const a = thing("a");
    object* const target = thing("target");
    give_list(a, {1, 2});
    prepare([&] { a->append_vector_element(props::list, reference(target)); });
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(1)));
    EXPECT_FALSE(a->move_vector_element(props::list, 2, 3));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(list(a), "['1' '2']");
    EXPECT_TRUE(target->referencing_objects().empty());
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(vector_elements, an_element_lost_by_a_move_is_no_stumbling_block_for_the_rollback) {
    object* const a = thing("a");
    give_list(a, {1});
    begin();
    ASSERT_TRUE(a->append_vector_element(props::list, number(2)));
    ASSERT_TRUE(a->move_vector_element(props::list, 1, 0));
    EXPECT_FALSE(a->move_vector_element(props::list, 0, far)); // the very element that the level has brought
    EXPECT_EQ(list(a), "['1']");
}

TEST_F(vector_elements, appending_makes_a_missing_list_first_and_that_is_not_the_users_work) {
    object* const a = thing("a");
    ears.watch(a);
    begin();
    ASSERT_TRUE(a->append_vector_element(props::list, number(1)));
    ASSERT_TRUE(a->append_vector_element(props::list, number(2)));
    end();
    const char* const told = "7 first hook a: 14 in a none of nobody to []\n"
                             "9 first user a: 14 in a at 0 + '1'\n"
                             "9 first user a: 14 in a at 1 + '2'\n";
    EXPECT_EQ(ears.take(), told);
    EXPECT_EQ(lines(), "7 first hook a: 14 in a none of nobody to ['1' '2']\n" // the list as it is now
                       "9 first user a: 14 in a at 0 + '1'\n"
                       "9 first user a: 14 in a at 1 + '2'\n");
    EXPECT_EQ(list(a), "['1' '2']");
    model->undo();
    EXPECT_FALSE(a->defines_property(props::list));
    model->redo();
    EXPECT_EQ(list(a), "['1' '2']");
}

TEST_F(vector_elements, the_mark_of_a_caller_survives_the_making_of_a_list) {
    object* const a = thing("a");
    fw.set_in_semantic(true);
    EXPECT_TRUE(a->append_vector_element(props::list, number(1)));
    EXPECT_TRUE(fw.in_semantic());
    fw.set_in_semantic(false);
}

TEST_F(vector_elements, an_inherited_list_is_never_touched) {
    object* const base = thing("base");
    object* const a = thing("a");
    give_list(base, {1, 2});
    prepare([&] { a->add_inherits_from(base); });
    EXPECT_EQ(value_text(a->get_property(props::list)), "['1' '2']");
    for (const element_case& row : {
             element_case{"insert",
                          [](object* o) { return o->insert_vector_element(props::list, number(9), 0); },
                          false, "", ""},
             element_case{"delete", [](object* o) { return o->delete_vector_element(props::list, 0); }, false,
                          "", ""},
             element_case{"set", [](object* o) { return o->set_vector_element(props::list, number(9), 0); },
                          false, "", ""},
             element_case{"move", [](object* o) { return o->move_vector_element(props::list, 0, 1); }, false,
                          "", ""},
         }) {
        SCOPED_TRACE(row.why);
        begin();
        EXPECT_FALSE(row.call(a));
        EXPECT_FALSE(model->in_transaction());
    }
    EXPECT_TRUE(change([&] { return a->append_vector_element(props::list, number(9)); }));
    EXPECT_EQ(value_text(a->get_property(props::list)), "['9']")
        << "an own list of one hides the inherited one";
    EXPECT_EQ(list(base), "['1' '2']");
    EXPECT_EQ(lines(), "7 first hook a: 14 in a ['1' '2'] of base to ['9']\n"
                       "9 first user a: 14 in a at 0 + '9'\n");
    model->undo();
    EXPECT_EQ(value_text(a->get_property(props::list)), "['1' '2']");
}

TEST_F(vector_elements, a_missing_list_is_found_before_hooks_by_deletion_and_behind_them_by_the_others) {
    object* const h = hooked("h");
    hooks.record(true);
    EXPECT_FALSE(h->delete_vector_element(props::list, 0));
    EXPECT_EQ(hooks.take_log(), "");
    EXPECT_FALSE(h->insert_vector_element(props::list, number(1), 0));
    EXPECT_EQ(hooks.take_log(), "11 h h 14 0 '1'\n");
    EXPECT_FALSE(h->set_vector_element(props::list, number(1), 0));
    EXPECT_EQ(hooks.take_log(), "9 h h 14 0 '1'\n");
    EXPECT_FALSE(h->move_vector_element(props::list, 0, 0));
    EXPECT_EQ(hooks.take_log(), "13 h h 14 0 0\n");
    hooks.record(false);
}

TEST_F(vector_elements, a_position_is_tested_behind_the_hooks) {
    object* const h = hooked("h");
    give_list(h, {1});
    hooks.on<pre_prop_delete_vecprop_semantic>([&](hook_call&) {
        hooks.on<pre_prop_delete_vecprop_semantic>([](hook_call&) { return true; });
        return h->append_vector_element(props::list, number(2));
    });
    EXPECT_TRUE(change([&] { return h->delete_vector_element(props::list, 1); }));
    EXPECT_EQ(list(h), "['1']");
}

TEST_F(vector_elements, undo_knows_elements_by_identity) {
    object* const a = thing("a");
    give_list(a, {1, 1, 1});
    begin();
    ASSERT_TRUE(a->insert_vector_element(props::list, number(1), 1));
    ASSERT_TRUE(a->move_vector_element(props::list, 1, 3));
    ASSERT_TRUE(a->set_vector_element(props::list, number(5), 3));
    ASSERT_TRUE(a->delete_vector_element(props::list, 3));
    ASSERT_TRUE(a->insert_vector_element(props::list, number(6), 0));
    ASSERT_TRUE(a->delete_property(props::list));
    ASSERT_TRUE(a->append_vector_element(props::list, number(7)));
    end();
    for (int round = 0; round != 3; ++round) {
        model->undo();
        EXPECT_EQ(list(a), "['1' '1' '1']");
        model->redo();
        EXPECT_EQ(list(a), "['7']");
    }
}

TEST_F(vector_elements, a_move_whose_list_has_gone_is_still_told) {
    object* const a = thing("a");
    give_list(a, {1, 2});
    ASSERT_TRUE(change([&] { return a->move_vector_element(props::list, 0, 1); }));
    message* const moved = model->message_at(1);
    ASSERT_EQ(moved->type(), message_type::element_position_vec_prop);
    ASSERT_TRUE(change([&] { return a->delete_property(props::list); }));
    ears.watch(a);
    EXPECT_TRUE(moved->undo());
    EXPECT_TRUE(moved->redo());
    EXPECT_EQ(ears.take(), "12 again user a: 14 in a 1 to 0\n"
                           "12 again user a: 14 in a 0 to 1\n");
    EXPECT_FALSE(a->defines_property(props::list));
    model->undo();
    EXPECT_EQ(list(a), "['2' '1']");
}

TEST_F(vector_elements, a_change_is_told_to_inheritors_of_the_list) {
    object* const base = thing("base");
    object* const a = thing("a");
    object* const with_own = thing("with own");
    give_list(base, {1, 2, 3});
    give_list(with_own, {7});
    prepare([&] {
        a->add_inherits_from(base);
        with_own->add_inherits_from(base);
    });
    listen({a, with_own});
    begin();
    ASSERT_TRUE(base->insert_vector_element(props::list, number(9), 0));
    ASSERT_TRUE(base->set_vector_element(props::list, number(8), 0));
    ASSERT_TRUE(base->move_vector_element(props::list, 0, 1));
    ASSERT_TRUE(base->delete_vector_element(props::list, 1));
    end();
    EXPECT_EQ(ears.take(), "9 first user a: 14 in base at 0 + '9'\n"
                           "8 first user a: 14 in base at 0 '9' to '8'\n"
                           "12 first user a: 14 in base 0 to 1\n"
                           "11 first user a: 14 in base at 1 - '8'\n");
    EXPECT_EQ(model->message_at(1)->object(), base);
    model->undo();
    EXPECT_EQ(ears.take(), "9 again user a: 14 in base at 1 + '8'\n"
                           "12 again user a: 14 in base 1 to 0\n"
                           "8 again user a: 14 in base at 0 '8' to '9'\n"
                           "11 again user a: 14 in base at 0 - '9'\n");
}

// Copying a value of an application's own kind runs the application's code.

namespace {

struct meddling_value final : unregistered_value {
    std::function<void()> when_copied;
    explicit meddling_value(std::function<void()> code) : when_copied(std::move(code)) {}
    owned<abstract_property*> clone() const override {
        if (when_copied) when_copied();
        return new meddling_value(nullptr);
    }
};

} // namespace

TEST_F(vector_elements, a_list_that_goes_while_the_new_element_is_copied_takes_none) {
    object* const at = thing("at");
    const meddling_value element{[&] { at->delete_property(props::list); }};
    const auto give_list = [&] {
        vector_property list;
        list.elements.push_back(new property<int>{1});
        at->set_property(props::list, list);
    };
    for (const bool inserts : {true, false}) {
        SCOPED_TRACE(inserts);
        begin("list");
        give_list();
        end();
        const std::string before = dump();
        begin("element");
        EXPECT_FALSE(inserts ? at->insert_vector_element(props::list, element, 0)
                             : at->set_vector_element(props::list, element, 0));
        EXPECT_FALSE(model->in_transaction()) << "the refusal has taken the deletion back as well";
        EXPECT_EQ(dump(), before);
    }
}

} // namespace kelm::test
