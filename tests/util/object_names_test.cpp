// Names, definitions, paths and ids of objects as text.
// Types of objects are object_types_test; lists, children and values have files of their own.
#include "message/silent_edit.h"
#include "tests/support/world.h"

#include <kelm/object_helpers.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

namespace kelm::test {
namespace {

class object_names : public world {
protected:
    /// An object without a value under the name.
    object* nameless(object* owner = nullptr) {
        object* const made = thing("for a moment", owner);
        made->delete_property(props::name);
        return made;
    }

    static std::string name_seen(const object* of) { return fast_unsafe_object_name(of); }
};

// Names

TEST_F(object_names, a_name_is_the_text_of_the_first_property) {
    EXPECT_EQ(name_seen(thing("bolt")), "bolt");
    EXPECT_EQ(object_name(thing("nut")), "nut");
    const std::string odd("a \"b\"\n\0\xE4.", 9);
    EXPECT_EQ(object_name(thing(odd)), odd);
}

TEST_F(object_names, nobody_and_the_nameless_have_an_empty_name) {
    EXPECT_EQ(name_seen(nullptr), "");
    EXPECT_EQ(object_name(nullptr), "");
    EXPECT_EQ(name_seen(nameless()), "");
    EXPECT_EQ(object_name(nameless()), "");
    EXPECT_EQ(name_seen(thing("")), "");
}

TEST_F(object_names, a_name_may_be_inherited) {
    object* const base = thing("base");
    object* const heir = nameless();
    heir->add_inherits_from(base);
    EXPECT_EQ(name_seen(heir), "base");
    base->set_property(props::name, text("renamed"));
    EXPECT_EQ(object_name(heir), "renamed");
}

TEST_F(object_names, a_name_of_another_kind_is_its_text) {
    object* const what = thing("x");
    what->set_property(props::name, number(7));
    EXPECT_EQ(name_seen(what), "7");
    EXPECT_EQ(object_name(what), "7");
}

TEST_F(object_names, hooks_behind_the_read_have_their_say) {
    object* const what = hooked("own");
    hooks.on<post_prop_get_semantic>([](hook_call& call) {
        *call.replaceable = new property<std::string>("supplied");
        return true;
    });
    EXPECT_EQ(name_seen(what), "supplied");
    EXPECT_EQ(object_name(what), "supplied");
}

TEST_F(object_names, a_hook_that_asks_for_names_itself_spoils_nothing) {
    object* const asked = thing("asked meanwhile");
    object* const what = hooked("own");
    hooks.on<post_prop_get_semantic>([&](hook_call&) { return name_seen(asked) == "asked meanwhile"; });
    EXPECT_EQ(name_seen(what), "own");
}

TEST_F(object_names, the_next_name_overwrites_the_last) {
    object* const first = thing("first");
    object* const second = thing("second");
    const std::string& seen = fast_unsafe_object_name(first);
    EXPECT_EQ(seen, "first");
    const std::string& seen_next = fast_unsafe_object_name(second);
    EXPECT_EQ(&seen, &seen_next);
    EXPECT_EQ(seen, "second");
    (void)fast_unsafe_object_name(nullptr);
    EXPECT_EQ(seen, "") << "nobody empties it as well";
    (void)fast_unsafe_object_name(first);
    (void)fast_unsafe_object_name(nameless());
    EXPECT_EQ(seen, "") << "and so does an object without a name";
}

TEST_F(object_names, a_copy_stays_when_the_next_name_is_asked_for) {
    const std::string copy = object_name(thing("first"));
    (void)fast_unsafe_object_name(thing("second"));
    EXPECT_EQ(copy, "first");
}

TEST_F(object_names, of_a_deleted_object_the_own_name_is_read_and_never_an_inherited_one) {
    object* const what = hooked("gone");
    object* const nameless_one = nameless();
    object* const base = thing("base");
    begin();
    ASSERT_TRUE(fw.delete_object(what));
    ASSERT_TRUE(fw.delete_object(nameless_one));
    end();
    // Silent edits reach deleted objects, as the undo of a change before the deletion does.
    auto& edit = dynamic_cast<silent_edit&>(*what);
    std::unique_ptr<abstract_property> name = std::make_unique<property<std::string>>("still there");
    edit.exchange_value(props::name, name);
    EXPECT_EQ(name_seen(what), "still there");
    edit.take_value(props::name);
    for (object* each : {what, nameless_one}) {
        auto& heir = dynamic_cast<silent_edit&>(*each);
        heir.insert_base(*base, 0);
        EXPECT_EQ(as_text(each->get_property(props::name)), "base");
        EXPECT_EQ(name_seen(each), "");
        EXPECT_EQ(object_name(each), "");
        heir.take_base(*base, 0);
    }
}

TEST_F(object_names, of_a_deleted_object_no_hook_is_asked) {
    object* const what = hooked("own");
    int asked = 0;
    begin();
    ASSERT_TRUE(fw.delete_object(what));
    end();
    ASSERT_EQ(what->state(), state::deleted);
    for (const int kind : {pre_prop_get_semantic::kind, post_prop_get_semantic::kind})
        hooks.on(kind, [&](hook_call&) {
            ++asked;
            return true;
        });
    EXPECT_EQ(name_seen(what), "");
    EXPECT_EQ(object_name(what), "");
    EXPECT_EQ(asked, 0);
    model->undo();
    ASSERT_EQ(what->state(), state::normal);
    EXPECT_EQ(name_seen(what), "own");
    EXPECT_GT(asked, 0) << "a living one asks them";
}

TEST_F(object_names, a_name_that_is_a_reference_is_the_name_of_its_target) {
    object* const last = thing("last");
    object* above = last;
    for (int i = 0; i != 20; ++i) {
        object* const next = nameless();
        next->set_property(props::name, reference(above));
        above = next;
    }
    EXPECT_EQ(name_seen(above), "last");
    last->set_property(props::name, text("renamed"));
    EXPECT_EQ(object_name(above), "renamed");
}

TEST_F(object_names, names_that_are_references_in_a_circle_are_empty) {
    object* const a = thing("a");
    object* const b = thing("b");
    a->set_property(props::name, reference(b));
    b->set_property(props::name, reference(a));
    EXPECT_EQ(name_seen(a), "");
    EXPECT_EQ(name_seen(b), "");
    object* const itself = thing("c");
    itself->set_property(props::name, reference(itself));
    EXPECT_EQ(name_seen(itself), "");
    b->set_property(props::name, text("broken"));
    EXPECT_EQ(name_seen(a), "broken") << "no mark is left behind";
}

TEST_F(object_names, a_list_of_references_is_empty_only_where_the_circle_closes) {
    object* const a = thing("a");
    object* const b = thing("b");
    vector_property list;
    for (object* each : {b, a, b}) list.elements.push_back(new property<object*>(each));
    a->set_property(props::name, list);
    EXPECT_EQ(name_seen(a), "b, , b");
}

// Definitions

TEST_F(object_names, a_definition_is_the_text_of_the_second_property) {
    object* const what = thing("x");
    EXPECT_EQ(object_definition(nullptr), "");
    EXPECT_EQ(object_definition(what), "");
    what->set_property(props::definition, text("what it is"));
    EXPECT_EQ(object_definition(what), "what it is");
    object* const heir = thing("y");
    heir->add_inherits_from(what);
    EXPECT_EQ(object_definition(heir), "what it is");
}

// Paths

TEST_F(object_names, a_path_leads_from_below_the_model_to_the_object) {
    object* const a = thing("a");
    object* const b = thing("b", a);
    object* const c = part("c", b);
    object* const elsewhere = thing("elsewhere");
    struct row {
        const char* why;
        const object* what;
        const object* stop;
        const char* plain;
        const char* quoted;
    };
    const row rows[] = {
        {"a child of the model is its plain name", a, nullptr, "a", "\"a\""},
        {"two below", b, nullptr, "a.b", "\"a\".\"b\""},
        {"three below", c, nullptr, "a.b.c", "\"a\".\"b\".\"c\""},
        {"from below an owner", c, a, "b.c", "\"b\".\"c\""},
        {"from below the direct owner", c, b, "c", "\"c\""},
        {"the end itself", c, c, "", ""},
        {"the model as the end", c, root, "a.b.c", "\"a\".\"b\".\"c\""},
        {"an end that is no owner", c, elsewhere, "a.b.c", "\"a\".\"b\".\"c\""},
        {"an end below", a, c, "a", "\"a\""},
        {"the model", root, nullptr, "", ""},
        {"nobody", nullptr, nullptr, "", ""},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(object_full_path_name(row.what, row.stop, false), row.plain);
        EXPECT_EQ(object_full_path_name(row.what, row.stop, true), row.quoted);
    }
    EXPECT_EQ(object_full_path_name(c), "a.b.c") << "whole and plain, unless told";
}

TEST_F(object_names, a_named_model_does_not_stand_in_a_path) {
    root->set_property(props::name, text("model"));
    object* const a = thing("a");
    EXPECT_EQ(object_full_path_name(a), "a");
    EXPECT_EQ(object_full_path_name(root), "");
}

TEST_F(object_names, an_empty_name_parts_only_behind_another) {
    object* const top = nameless();
    object* const below = thing("b", top);
    EXPECT_EQ(object_full_path_name(top), "");
    EXPECT_EQ(object_full_path_name(below), "b") << "what is empty so far gets no point";
    EXPECT_EQ(object_full_path_name(below, nullptr, true), "\"\".\"b\"");
    object* const middle = nameless(below);
    object* const last = thing("d", middle);
    EXPECT_EQ(object_full_path_name(middle), "b.");
    EXPECT_EQ(object_full_path_name(last), "b..d");
}

TEST_F(object_names, names_stand_in_a_path_as_they_are) {
    object* const a = thing("a.b");
    object* const b = thing("c\"d", a);
    EXPECT_EQ(object_full_path_name(b), "a.b.c\"d");
    EXPECT_EQ(object_full_path_name(b, nullptr, true), "\"a.b\".\"c\"d\"");
}

TEST_F(object_names, trees_deeper_than_the_stack_have_paths) {
    constexpr std::size_t levels = 100000;
    object* lowest = root;
    begin();
    for (std::size_t i = 0; i != levels; ++i) {
        lowest = fw.create_object(types::thing, lowest);
        ASSERT_TRUE(lowest);
        ASSERT_TRUE(lowest->set_property(props::name, text("n")));
    }
    end();
    model->clear_history();
    const std::string path = object_full_path_name(lowest);
    ASSERT_EQ(path.size(), 2 * levels - 1);
    for (std::size_t i = 0; i != path.size(); ++i) ASSERT_EQ(path[i], i % 2 == 0 ? 'n' : '.');
    EXPECT_EQ(object_full_path_name(lowest, lowest->owner()), "n");
}

// Ids

TEST_F(object_names, an_id_has_eight_hexadecimal_digits) {
    struct row {
        unsigned long id;
        const char* text;
    };
    for (const row& row :
         {row{255, "000000FF"}, {0, "00000000"}, {0xABCDEF12UL, "ABCDEF12"}, {0xFFFFFFFFUL, "FFFFFFFF"}}) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(object_id_to_hex_string(row.id), row.text);
        EXPECT_EQ(hex_string_to_object_id(object_id_to_hex_string(row.id)), row.id);
    }
}

TEST_F(object_names, keeps_the_low_32_bits_of_an_id) {
    if constexpr (sizeof(unsigned long) > sizeof(u32)) {
        EXPECT_EQ(object_id_to_hex_string(static_cast<unsigned long>(0x1234567890ABCDEFULL)), "90ABCDEF");
    }
    EXPECT_EQ(hex_string_to_object_id("1234567890abcdef"), 0x90ABCDEFUL);
}

TEST_F(object_names, an_id_is_read_as_far_as_it_goes) {
    struct row {
        const char* why;
        std::string text;
        unsigned long id;
    };
    const row rows[] = {
        {"nothing", "", 0},
        {"no digit", "xyz", 0},
        {"small letters", "ff", 255},
        {"fewer digits", "1", 1},
        {"more zeros", "00000000000000000000ff", 255},
        {"a prefix", "0xff", 255},
        {"the prefix in capitals", "0XFF", 255},
        {"a prefix and nothing", "0x", 0},
        {"one prefix only", "0x0x1", 0},
        {"white space before", " \t\n\v\f\rff", 255},
        {"white space alone", "  ", 0},
        {"something behind", "ffg", 255},
        {"white space behind", "f f", 15},
        {"a zero byte behind", std::string("f\0f", 3), 15},
        {"a plus", "+f", 15},
        {"a minus turns the bits", "-1", 0xFFFFFFFFUL},
        {"two signs", "--1", 0},
        {"a sign and nothing", "-", 0},
        {"a sign behind white space", " -0x1", 0xFFFFFFFFUL},
        {"the last of 64 bits", "ffffffffffffffff", 0xFFFFFFFFUL},
        {"beyond 64 bits", "10000000000000000", 0xFFFFFFFFUL},
        {"bytes above 0x7F",
         "\xA0"
         "1",
         0},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(hex_string_to_object_id(row.text), row.id);
        unsigned read = 0; // what the C library makes of it
        EXPECT_EQ(std::sscanf(row.text.c_str(), "%X", &read) == 1 ? read : 0, row.id);
    }
}

} // namespace
} // namespace kelm::test
