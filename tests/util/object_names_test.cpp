// Names, paths and types of objects as text, and the attributes of their types.
// What is left to tell of lists and values of objects is tested with them.
#include "tests/support/world.h"

#include <kelm/object_helpers.h>

#include <gtest/gtest.h>

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

// Types and properties

TEST_F(object_names, the_type_of_an_object_has_a_name) {
    const object* const what = thing("x");
    EXPECT_EQ(object_type_as_string(what), "Thing");
    EXPECT_EQ(meta_name(what), "Thing");
    EXPECT_EQ(object_type_as_string(root), "Model");
    EXPECT_EQ(meta_name(root), "Model");
    EXPECT_EQ(object_type_as_string(static_cast<const object*>(nullptr)), "");
    EXPECT_EQ(meta_name(nullptr), "");
}

TEST_F(object_names, a_deleted_object_still_has_its_type) {
    object* const what = thing("x");
    begin();
    ASSERT_TRUE(fw.delete_object(what));
    end();
    EXPECT_EQ(object_type_as_string(what), "Thing");
}

TEST_F(object_names, a_type_that_only_the_model_knows_has_its_name) {
    constexpr u32 local = 900001;
    ASSERT_TRUE(model->meta_model()->add_meta_object(local, "Only Here", "", ""));
    begin();
    const object* const what = fw.create_object(local, root);
    end();
    ASSERT_TRUE(what);
    EXPECT_EQ(object_type_as_string(what), "Only Here");
    EXPECT_EQ(meta_name(what), "Only Here");
    EXPECT_EQ(as_text(meta_att(what, attribute_id::name)), "Only Here");
    EXPECT_EQ(object_type_as_string(local), "") << "the application does not know it";
}

TEST_F(object_names, a_type_has_a_name_without_an_object) {
    EXPECT_EQ(object_type_as_string(types::thing), "Thing");
    EXPECT_EQ(object_type_as_string(type_id::model), "Model");
    EXPECT_EQ(object_type_as_string(types::abstract), "Abstract");
    EXPECT_EQ(object_type_as_string(4000000000U), "");
    EXPECT_EQ(object_type_as_string(0U), "");
}

TEST_F(object_names, a_property_has_the_name_of_its_declaration) {
    for (kelm::model* in : {model, static_cast<kelm::model*>(nullptr)}) {
        SCOPED_TRACE(in ? "in a model" : "in the application");
        EXPECT_EQ(property_name(types::thing, props::text, in), "Text");
        EXPECT_EQ(property_name(types::special_thing, props::text, in), "Text") << "declared by a base";
        EXPECT_EQ(property_name(types::thing, 4000000000U, in), "");
        EXPECT_EQ(property_name(types::other, props::number, in), "") << "not a property of this type";
        EXPECT_EQ(property_name(4000000000U, props::text, in), "");
    }
}

TEST_F(object_names, a_user_defined_property_is_known_in_its_model_only) {
    const std::string before = property_name(types::thing, 50000, nullptr);
    meta_property* const made = model->meta_model()
                                    ->find_meta_object(types::thing)
                                    ->add_property(50000, "Colour", data_type::string, "");
    ASSERT_TRUE(made);
    EXPECT_EQ(property_name(types::thing, 50000, model), "Colour");
    EXPECT_EQ(property_name(types::thing, 50000, nullptr), before);
    EXPECT_NE(before, "Colour");
}

// Attributes of types

/// Sets an attribute of a type for the length of a test: types are shared by all tests.
class attribute_for_now {
public:
    attribute_for_now(u32 type, u32 attribute, const abstract_property& value)
        : type_(*framework::instance().application_meta_model()->find_meta_object(type)),
          attribute_(attribute) {
        type_.set_attribute_value(attribute_, value);
    }
    attribute_for_now(const attribute_for_now&) = delete;
    attribute_for_now& operator=(const attribute_for_now&) = delete;
    ~attribute_for_now() { type_.remove_attribute(attribute_); }

private:
    meta_object& type_;
    u32 attribute_;
};

TEST_F(object_names, an_attribute_is_that_of_the_type) {
    constexpr u32 mark = 12;
    const object* const what = make(types::other, "x");
    const object* const stranger = thing("y");
    EXPECT_FALSE(meta_att(what, mark));
    EXPECT_TRUE(bool_meta_attribute(what, mark, true)) << "without a value";
    EXPECT_FALSE(bool_meta_attribute(what, mark, false)) << "without a value";
    for (const bool value : {true, false}) {
        SCOPED_TRACE(value);
        const attribute_for_now set{types::other, mark, flag(value)};
        EXPECT_EQ(as_text(meta_att(what, mark)), value ? "True" : "False");
        EXPECT_EQ(bool_meta_attribute(what, mark, true), value);
        EXPECT_EQ(bool_meta_attribute(what, mark, false), value);
        EXPECT_FALSE(meta_att(stranger, mark));
        EXPECT_TRUE(bool_meta_attribute(stranger, mark, true));
    }
    EXPECT_FALSE(meta_att(what, mark));
}

TEST_F(object_names, nobody_has_no_attributes) {
    EXPECT_FALSE(meta_att(nullptr, attribute_id::name));
    EXPECT_TRUE(bool_meta_attribute(nullptr, 12, true));
    EXPECT_FALSE(bool_meta_attribute(nullptr, 12, false));
}

TEST_F(object_names, an_attribute_of_another_kind_is_no_answer) {
    constexpr u32 mark = 12;
    const object* const what = make(types::other, "x");
    const attribute_for_now set{types::other, mark, number(1)};
    EXPECT_EQ(as_text(meta_att(what, mark)), "1");
    EXPECT_TRUE(bool_meta_attribute(what, mark, true));
    EXPECT_FALSE(bool_meta_attribute(what, mark, false));
}

TEST_F(object_names, every_attribute_is_found) {
    EXPECT_EQ(as_text(meta_att(thing("x"), attribute_id::name)), "Thing");
    EXPECT_FALSE(meta_att(thing("y"), 4000000000U));
}

} // namespace
} // namespace kelm::test
