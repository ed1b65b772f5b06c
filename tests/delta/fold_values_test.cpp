// Folding changes of values and of their elements: a row for each kind of message and each of its turns.
// What came, went and moved is folded in fold_objects_test, fold_children_test and fold_bases_test.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

constexpr u32 t = props::text;
constexpr u32 l = props::list;

class folded_values : public delta_world {
protected:
    struct row {
        const char* why;
        std::function<void()> start;
        std::function<void()> change;
        const char* told; ///< behind "modified a"; null for nothing
    };

    void expect(const std::vector<row>& rows) {
        for (const row& each : rows) {
            SCOPED_TRACE(each.why);
            a = thing("a");
            p = thing("p");
            before(each.start);
            EXPECT_EQ(told_of(each.change), each.told ? std::string("modified a\n") + each.told : "none\n");
        }
    }
    std::function<void()> nothing() {
        return [] {};
    }
    std::function<void()> text_is(const std::string& value) {
        return [this, value] { a->set_property(t, text(value)); };
    }
    /// The list of the object is these letters.
    std::function<void()> letters(const std::string& all) {
        return [this, all] { a->set_property(l, *letter_list(all)); };
    }
    static std::unique_ptr<vector_property> letter_list(const std::string& all) {
        auto made = std::make_unique<vector_property>();
        for (const char each : all) made->elements.push_back(text({each}).clone());
        return made;
    }
    void append(const char* letter) { a->append_vector_element(l, text(letter)); }
    void move(std::size_t from, std::size_t to) { a->move_vector_element(l, from, to); }

    object* a = nullptr;
    object* p = nullptr;
};

TEST_F(folded_values, of_values_that_are_set_and_deleted_the_oldest_message_says_what_was) {
    expect({
        {"set for the first time", nothing(), text_is("x"), "  10: none -> 'x'\n"},
        {"set", text_is("x"), text_is("y"), "  10: 'x' -> 'y'\n"},
        {"set twice", text_is("x"),
         [&] {
             a->set_property(t, text("y"));
             a->set_property(t, text("z"));
         },
         "  10: 'x' -> 'z'\n"},
        {"set to what it was", text_is("x"), text_is("x"), nullptr},
        {"set and set back", text_is("x"),
         [&] {
             a->set_property(t, text("y"));
             a->set_property(t, text("x"));
         },
         nullptr},
        {"another kind of value", [&] { a->set_property(t, number(1)); }, text_is("1"), "  10: '1' -> '1'\n"},
        {"deleted", text_is("x"), [&] { a->delete_property(t); }, "  10: 'x' -> none\n"},
        {"set and deleted", nothing(),
         [&] {
             a->set_property(t, text("x"));
             a->delete_property(t);
         },
         nullptr},
        {"deleted and set", text_is("x"),
         [&] {
             a->delete_property(t);
             a->set_property(t, text("y"));
         },
         "  10: 'x' -> 'y'\n"},
        {"deleted and set to what it was", text_is("x"),
         [&] {
             a->delete_property(t);
             a->set_property(t, text("x"));
         },
         nullptr},
        {"deleted without a value of its own", nothing(), [&] { a->delete_property(t); }, nullptr},
    });
}

TEST_F(folded_values, elements_go_back_on_a_copy) {
    expect({
        {"set", letters("ab"), [&] { a->set_vector_element(l, text("x"), 1); },
         "  14: ['a' 'b'] -> ['a' 'x']\n"},
        {"set twice", letters("ab"),
         [&] {
             a->set_vector_element(l, text("x"), 1);
             a->set_vector_element(l, text("y"), 1);
         },
         "  14: ['a' 'b'] -> ['a' 'y']\n"},
        {"set back", letters("ab"),
         [&] {
             a->set_vector_element(l, text("x"), 0);
             a->set_vector_element(l, text("a"), 0);
         },
         nullptr},
        {"inserted in front", letters("ab"), [&] { a->insert_vector_element(l, text("x"), 0); },
         "  14: ['a' 'b'] -> ['x' 'a' 'b']\n"},
        {"inserted at the end", letters("ab"), [&] { append("x"); }, "  14: ['a' 'b'] -> ['a' 'b' 'x']\n"},
        {"inserted behind the end, which puts nothing in", letters("ab"),
         [&] { a->insert_vector_element(l, text("x"), 5); }, nullptr},
        {"appended where there was no list", nothing(), [&] { append("x"); }, "  14: none -> ['x']\n"},
        {"deleted in front", letters("ab"), [&] { a->delete_vector_element(l, 0); },
         "  14: ['a' 'b'] -> ['b']\n"},
        {"deleted at the end", letters("ab"), [&] { a->delete_vector_element(l, 1); },
         "  14: ['a' 'b'] -> ['a']\n"},
        {"the last one deleted", letters("a"), [&] { a->delete_vector_element(l, 0); },
         "  14: ['a'] -> []\n"},
        {"inserted and deleted", letters("ab"),
         [&] {
             a->insert_vector_element(l, text("x"), 1);
             a->delete_vector_element(l, 1);
         },
         nullptr},
        {"deleted and inserted again", letters("ab"),
         [&] {
             a->delete_vector_element(l, 0);
             a->insert_vector_element(l, text("a"), 0);
         },
         nullptr},
        {"all kinds", letters("abc"),
         [&] {
             append("d");
             a->set_vector_element(l, text("x"), 0);
             a->delete_vector_element(l, 1);
             a->insert_vector_element(l, text("y"), 2);
         },
         "  14: ['a' 'b' 'c'] -> ['x' 'c' 'y' 'd']\n"},
    });
}

TEST_F(folded_values, a_list_that_is_set_is_another_list) {
    expect({
        {"elements, then the whole", letters("ab"),
         [&] {
             append("c");
             letters("x")();
         },
         "  14: ['a' 'b'] -> ['x']\n"},
        {"the whole, then elements", letters("ab"),
         [&] {
             letters("x")();
             append("y");
         },
         "  14: ['a' 'b'] -> ['x' 'y']\n"},
        {"elements on both sides", letters("ab"),
         [&] {
             a->delete_vector_element(l, 0);
             letters("x")();
             append("y");
         },
         "  14: ['a' 'b'] -> ['x' 'y']\n"},
        {"made, filled and deleted", nothing(),
         [&] {
             append("x");
             a->delete_property(l);
         },
         nullptr},
        {"changed and deleted", letters("ab"),
         [&] {
             append("x");
             a->delete_property(l);
         },
         "  14: ['a' 'b'] -> none\n"},
        {"deleted and made anew", letters("ab"),
         [&] {
             a->delete_property(l);
             append("x");
         },
         "  14: ['a' 'b'] -> ['x']\n"},
        {"a text in between", letters("ab"),
         [&] {
             append("c");
             a->set_property(l, text("x"));
             letters("d")();
             append("e");
         },
         "  14: ['a' 'b'] -> ['d' 'e']\n"},
    });
}

// A move is made once more instead of being taken back.
TEST_F(folded_values, a_move_of_an_element_is_repeated) {
    expect({
        {"far", letters("abc"), [&] { move(0, 2); }, "  14: ['c' 'a' 'b'] -> ['b' 'c' 'a']\n"},
        {"far, the other way", letters("abc"), [&] { move(2, 0); }, "  14: ['b' 'c' 'a'] -> ['c' 'a' 'b']\n"},
        {"to its neighbour", letters("abc"), [&] { move(0, 1); }, "  14: ['a' 'b' 'c'] -> ['b' 'a' 'c']\n"},
        {"to its place", letters("abc"), [&] { move(1, 1); }, nullptr},
        {"there and back", letters("abc"),
         [&] {
             move(0, 2);
             move(2, 0);
         },
         nullptr},
        {"twice", letters("abc"),
         [&] {
             move(0, 2);
             move(0, 2);
         },
         "  14: ['b' 'c' 'a'] -> ['c' 'a' 'b']\n"},
        {"three times round, which brings it back", letters("abc"),
         [&] {
             move(0, 2);
             move(0, 2);
             move(0, 2);
         },
         nullptr},
        {"behind another change", letters("ab"),
         [&] {
             append("c");
             move(2, 0);
         },
         "  14: ['b' 'c'] -> ['c' 'a' 'b']\n"},
        {"from behind the end, which moves nothing", letters("ab"), [&] { move(5, 0); }, nullptr},
    });
}

TEST_F(folded_values, a_told_change_is_taken_at_its_word) {
    const property<std::string> old = text("o");
    const property<std::string> fresh = text("n");
    expect({
        {"a value", text_is("x"), [&] { a->refresh_property(t, &fresh, &old); }, "  10: 'o' -> 'x'\n"},
        {"a value where there was none", text_is("x"), [&] { a->refresh_property(t, &fresh, nullptr); },
         "  10: none -> 'x'\n"},
        {"a value that is not there", nothing(), [&] { a->refresh_property(t, &fresh, &old); },
         "  10: 'o' -> none\n"},
        {"a value that is not there and was not", nothing(), [&] { a->refresh_property(t, &fresh, nullptr); },
         nullptr},
        {"a value that was what is there", text_is("o"), [&] { a->refresh_property(t, &fresh, &old); },
         nullptr},
        {"no value any more", text_is("x"), [&] { a->refresh_property(t, nullptr, &old); },
         "  10: 'o' -> 'x'\n"},
        {"no value any more, and there is none", nothing(), [&] { a->refresh_property(t, nullptr, &old); },
         "  10: 'o' -> none\n"},
        {"neither", text_is("x"), [&] { a->refresh_property(t, nullptr, nullptr); }, nullptr},
    });
}

// What was told of a list may not fit what was done to its elements before.
TEST_F(folded_values, elements_before_a_told_change_go_back_on_what_was_told) {
    expect({
        {"a set", letters("a"),
         [&] {
             append("b");
             a->refresh_property(l, letter_list("ab").get(), letter_list("yz").get());
             append("c");
         },
         "  14: ['y'] -> ['a' 'b' 'c']\n"},
        {"a deletion", letters("a"),
         [&] {
             append("b");
             a->refresh_property(l, nullptr, letter_list("yz").get());
             append("c");
         },
         "  14: ['y'] -> ['a' 'b' 'c']\n"},
        {"of no list, elements go back on an empty one", letters("a"),
         [&] {
             a->delete_vector_element(l, 0);
             a->refresh_property(l, letter_list("").get(), nullptr);
         },
         "  14: ['a'] -> []\n"},
        {"an element set behind the end of what was told", letters("ab"),
         [&] {
             a->set_vector_element(l, text("x"), 1);
             a->refresh_property(l, letter_list("ax").get(), letter_list("y").get());
         },
         "  14: ['y'] -> ['a' 'x']\n"},
        {"an element deleted behind the end of what was told", letters("ab"),
         [&] {
             a->delete_vector_element(l, 1);
             a->refresh_property(l, letter_list("a").get(), letter_list("").get());
         },
         "  14: [] -> ['a']\n"},
        {"an element inserted behind the end of what was told", letters("ab"),
         [&] {
             append("c");
             a->refresh_property(l, letter_list("abc").get(), letter_list("y").get());
         },
         "  14: ['y'] -> ['a' 'b' 'c']\n"},
        {"an element moved behind the end of what was told", letters("ab"),
         [&] {
             move(1, 0);
             a->refresh_property(l, letter_list("ba").get(), letter_list("y").get());
         },
         "  14: ['y'] -> ['b' 'a']\n"},
    });
}

TEST_F(folded_values, a_mark_goes_back_as_well) {
    const auto inherited = [&](bool marked) {
        return [this, marked] {
            p->set_property(t, text("p"));
            a->add_inherits_from(p);
            if (marked) a->set_property_not_inheritable(t, true);
        };
    };
    const auto mark = [&](bool flag) { a->set_property_not_inheritable(t, flag); };
    expect({
        {"set", inherited(false), [&] { mark(true); }, "  10: 'p' -> none\n"},
        {"taken away", inherited(true), [&] { mark(false); }, "  10: none -> 'p'\n"},
        {"set and taken away", inherited(false),
         [&] {
             mark(true);
             mark(false);
         },
         nullptr},
        {"taken away and set", inherited(true),
         [&] {
             mark(false);
             mark(true);
         },
         nullptr},
        {"of a property without a value", nothing(),
         [&] { a->set_property_not_inheritable(props::flag, true); }, nullptr},
    });
}

// What was read before the first own value counts as own, also where it came from a base.
TEST_F(folded_values, a_value_set_over_an_inherited_one_was_what_was_inherited_then) {
    before([&] {
        p = thing("p");
        a = thing("a");
        p->set_property(t, text("p"));
        a->add_inherits_from(p);
    });
    EXPECT_EQ(told_of([&] { a->set_property(t, text("x")); }), "modified a\n  10: 'p' -> 'x'\n");
    EXPECT_TRUE(before_of(*model->last_delta(), a)->has_original_property(t));
    EXPECT_EQ(told_of([&] { a->delete_property(t); }), "modified a\n  10: 'x' -> 'p'\n");
    EXPECT_EQ(told_of([&] {
                  a->set_property(t, text("x"));
                  a->delete_property(t);
              }),
              "none\n");
    EXPECT_EQ(told_of([&] {
                  p->set_property(t, text("q"));
                  a->set_property(t, text("x"));
              }),
              "modified a\n  10: 'q' -> 'x'\n"
              "modified p\n  10: 'p' -> 'q'\n")
        << "not the value of the start";
    a->delete_property(t);
    EXPECT_EQ(told_of([&] {
                  p->set_property(t, text("r"));
                  a->set_property(t, text("q"));
              }),
              "modified a\n  10: 'r' -> 'q'\n"
              "modified p\n  10: 'q' -> 'r'\n");
}

} // namespace
} // namespace kelm::test
