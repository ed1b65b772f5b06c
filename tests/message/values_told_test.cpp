// What observers hear of each change of a value or an element: at once, in undo, and in redo, as one block.
// Values that come and go with bases are inherit_told_test.
#include "tests/object/value_lines.h"

#include <functional>

namespace kelm::test {
namespace {

struct told_case {
    const char* why;
    std::function<bool(object*)> change;
    const char* first;
    const char* undo;
    const char* redo;
};

class values_told : public value_world {
protected:
    /// An object with the number 1 and the list 1 2 3.
    object* filled(const char* name) {
        object* const made = thing(name);
        prepare([&] {
            ASSERT_TRUE(made->set_property(props::number, number(1)));
            ASSERT_TRUE(made->set_property(props::list, *numbers({1, 2, 3})));
        });
        return made;
    }
    void expect_heard(const char* when, const std::string& lines) {
        SCOPED_TRACE(when);
        EXPECT_EQ(ears.take(), lines);
    }
};

} // namespace

TEST_F(values_told, alike_any_number_of_times) {
    const told_case cases[] = {
        {"a value over its own", [](object* a) { return a->set_property(props::number, number(2)); },
         "7 first user a: 11 in a '1' of a to '2'\n", "7 again user a: 11 in a '2' of a to '1'\n",
         "7 again user a: 11 in a '1' of a to '2'\n"},
        {"a value where there was none", [](object* a) { return a->set_property(props::text, text("t")); },
         "7 first user a: 10 in a none of nobody to 't'\n", "10 again user a: 10 in a lost 't'\n",
         "7 again user a: 10 in a none of nobody to 't'\n"},
        {"a value taken away", [](object* a) { return a->delete_property(props::number); },
         "10 first user a: 11 in a lost '1'\n", "7 again user a: 11 in a none of a to '1'\n",
         "10 again user a: 11 in a lost '1'\n"},
        {"an element replaced", [](object* a) { return a->set_vector_element(props::list, number(9), 1); },
         "8 first user a: 14 in a at 1 '2' to '9'\n", "8 again user a: 14 in a at 1 '9' to '2'\n",
         "8 again user a: 14 in a at 1 '2' to '9'\n"},
        {"an element put in", [](object* a) { return a->insert_vector_element(props::list, number(9), 1); },
         "9 first user a: 14 in a at 1 + '9'\n", "11 again user a: 14 in a at 1 - '9'\n",
         "9 again user a: 14 in a at 1 + '9'\n"},
        {"an element that found no place",
         [](object* a) { return a->insert_vector_element(props::list, number(9), npos); },
         "9 first user a: 14 in a at 4294967295 + '9'\n", "11 again user a: 14 in a at 4294967295 - '9'\n",
         "9 again user a: 14 in a at 4294967295 + '9'\n"},
        {"an element taken out", [](object* a) { return a->delete_vector_element(props::list, 2); },
         "11 first user a: 14 in a at 2 - '3'\n", "9 again user a: 14 in a at 2 + '3'\n",
         "11 again user a: 14 in a at 2 - '3'\n"},
        {"an element moved to the end", [](object* a) { return a->move_vector_element(props::list, 0, 2); },
         "12 first user a: 14 in a 0 to 2\n", "12 again user a: 14 in a 2 to 0\n",
         "12 again user a: 14 in a 0 to 2\n"},
        {"an element that is not there moved",
         [](object* a) { return a->move_vector_element(props::list, npos, 0); },
         "12 first user a: 14 in a 4294967295 to 0\n", "12 again user a: 14 in a 0 to 4294967295\n",
         "12 again user a: 14 in a 4294967295 to 0\n"},
        {"a mark", [](object* a) { return a->set_property_not_inheritable(props::number, true); },
         "13 first user a: 11 marked\n", "13 again user a: 11 unmarked\n", "13 again user a: 11 marked\n"},
    };
    for (const told_case& row : cases) {
        SCOPED_TRACE(row.why);
        object* const a = filled("a");
        listen({a});
        const std::string before = dump();
        ASSERT_TRUE(change([&] { return row.change(a); }));
        const std::string after = dump();
        expect_heard("first", row.first);
        for (int round = 0; round != 3; ++round) {
            model->undo();
            EXPECT_EQ(dump(), before);
            expect_heard("undo", row.undo);
            model->redo();
            EXPECT_EQ(dump(), after);
            expect_heard("redo", row.redo);
        }
    }
}

// A value that a hook supplies is in no object: taking back what hid it is a deletion.
TEST_F(values_told, of_a_value_over_a_default) {
    object* const a = thing("a");
    meta_property* const own =
        model->add_user_defined_property(types::thing, "Own", data_type::string, "", 50007);
    ASSERT_TRUE(own);
    ASSERT_TRUE(model->set_user_defined_property_attribute(
        model->meta_model()->find_meta_object(types::thing), own, attribute_id::default_value, text("Ann")));
    forget();
    listen({a});
    ASSERT_TRUE(change([&] { return a->set_property(50007, text("Bob")); }));
    expect_heard("first", "7 first user a: 50007 in a 'Ann' of nobody to 'Bob'\n");
    for (int round = 0; round != 2; ++round) {
        model->undo();
        expect_heard("undo", "10 again user a: 50007 in a lost 'Bob'\n");
        EXPECT_FALSE(a->defines_property(50007));
        EXPECT_EQ(as_text(a->get_property(50007)), "Ann");
        model->redo();
        expect_heard("redo", "7 again user a: 50007 in a 'Ann' of nobody to 'Bob'\n");
    }
}

// What is told behind a change that was made must already be so.
TEST_F(values_told, when_the_object_has_changed_already) {
    object* const a = filled("a");
    listen({a});
    std::string seen;
    ears.meanwhile = [&](message*) {
        seen += value_text(a->get_own_property(props::number)) + " " + list(a) + "\n";
    };
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(2)));
    ASSERT_TRUE(a->delete_vector_element(props::list, 0));
    end();
    EXPECT_EQ(seen, "'2' ['1' '2' '3']\n'2' ['2' '3']\n");
    seen.clear();
    model->undo();
    EXPECT_EQ(seen, "'2' ['1' '2' '3']\n'1' ['1' '2' '3']\n");
    seen.clear();
    model->redo();
    EXPECT_EQ(seen, "'2' ['1' '2' '3']\n'2' ['2' '3']\n");
}

TEST_F(values_told, of_a_refresh_to_inheritors_as_well_both_ways) {
    object* const base = thing("base");
    object* const a = thing("a");
    prepare([&] { a->add_inherits_from(base); });
    listen({base, a});
    const property<int> now{2};
    const property<int> then{1};
    begin();
    ASSERT_TRUE(base->refresh_property(props::number, &now, &then));
    ASSERT_TRUE(base->refresh_property(props::number, &now, nullptr));
    ASSERT_TRUE(base->refresh_property(props::number, nullptr, &then));
    end();
    expect_heard("first", "7 first user base: 11 in base '1' of nobody to '2'\n"
                          "7 first user a: 11 in base '1' of nobody to '2'\n"
                          "7 first user base: 11 in base none of nobody to '2'\n"
                          "7 first user a: 11 in base none of nobody to '2'\n"
                          "10 first user base: 11 in base lost '1'\n"
                          "10 first user a: 11 in base lost '1'\n");
    model->undo();
    expect_heard("undo", "7 again user base: 11 in base none of nobody to '1'\n"
                         "7 again user a: 11 in base none of nobody to '1'\n"
                         "10 again user base: 11 in base lost '2'\n"
                         "10 again user a: 11 in base lost '2'\n"
                         "7 again user base: 11 in base '2' of nobody to '1'\n"
                         "7 again user a: 11 in base '2' of nobody to '1'\n");
    EXPECT_FALSE(base->defines_property(props::number));
}

TEST_F(values_told, of_a_refresh_as_a_refresh_in_undo_too) {
    object* const a = thing("a");
    listen({a});
    ears.line = [](message* what) { return line_of(what); };
    const property<int> now{2};
    const property<int> then{1};
    begin();
    ASSERT_TRUE(a->refresh_property(props::number, &now, &then));
    ASSERT_TRUE(a->refresh_property(props::number, &now, nullptr));
    ASSERT_TRUE(a->refresh_property(props::number, nullptr, &then));
    end();
    ears.take();
    model->undo();
    EXPECT_EQ(ears.take(), "7 again Refresh Set Property - Number of Thing a\n"
                           "10 again Refresh Delete Property - Number of Thing a\n"
                           "7 again Refresh Set Property - Number of Thing a\n");
}

// A failure ends the telling at one object; the change stands, and the others still hear of it.
TEST_F(values_told, in_undo_past_an_inheritor_that_refuses) {
    object* const base = thing("base");
    object* const a = thing("a");
    object* const below = thing("below");
    prepare([&] {
        a->add_inherits_from(base);
        below->add_inherits_from(a);
    });
    ASSERT_TRUE(change([&] { return base->set_property(props::number, number(1)); }));
    listen({base, a, below});
    ears.meanwhile = [&](message* what) { ears.answer = what->object() != a; };
    model->undo();
    expect_heard("undo", "10 again user base: 11 in base lost '1'\n10 again user a: 11 in base lost '1'\n");
    EXPECT_FALSE(base->defines_property(props::number));
    EXPECT_TRUE(model->can_redo());
    ears.meanwhile = nullptr;
    ears.answer = true;
    model->redo();
    expect_heard("redo", "7 again user base: 11 in base none of nobody to '1'\n"
                         "7 again user a: 11 in base none of nobody to '1'\n"
                         "7 again user below: 11 in base none of nobody to '1'\n");
}

// The move looks at the list as it finds it, whatever has become of it since.
TEST_F(values_told, of_a_move_that_finds_another_list) {
    object* const a = filled("a");
    ASSERT_TRUE(change([&] { return a->move_vector_element(props::list, 0, 2); }));
    message* const moved = model->message_at(1);
    const struct {
        const char* why;
        std::initializer_list<int> list;
        const char* undone;
        const char* redone;
    } rows[] = {
        {"as it was", {2, 3, 1}, "['1' '2' '3']", "['2' '3' '1']"},
        {"longer", {5, 6, 7, 8}, "['7' '5' '6' '8']", "['5' '6' '7' '8']"},
        {"empty", {}, "[]", "[]"},
    };
    listen({a});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ASSERT_TRUE(change([&] { return a->set_property(props::list, *numbers(row.list)); }));
        ears.take();
        EXPECT_TRUE(moved->undo());
        EXPECT_EQ(list(a), row.undone);
        EXPECT_TRUE(moved->redo());
        EXPECT_EQ(list(a), row.redone);
        EXPECT_EQ(ears.take(), "12 again user a: 14 in a 2 to 0\n12 again user a: 14 in a 0 to 2\n");
    }
}

} // namespace kelm::test
