// Questions to the values of objects.
// Names are object_names_test.
#include "tests/support/world.h"

#include <kelm/object_helpers.h>

namespace kelm::test {
namespace {

class object_values : public world {
protected:
    object* const base = thing("base");
    object* const what = thing("what");
};

// Whether there is a value, and may be one from a base

TEST_F(object_values, a_value_is_defined_by_the_object_or_by_a_base) {
    EXPECT_FALSE(kelm::defines_property(what, props::text));
    what->add_inherits_from(base);
    EXPECT_FALSE(kelm::defines_property(what, props::text));
    base->set_property(props::text, text("of the base"));
    EXPECT_TRUE(kelm::defines_property(base, props::text));
    EXPECT_TRUE(kelm::defines_property(what, props::text));
    base->delete_property(props::text);
    EXPECT_FALSE(kelm::defines_property(what, props::text));
    what->set_property(props::text, text("own"));
    EXPECT_TRUE(kelm::defines_property(what, props::text));
    EXPECT_FALSE(kelm::defines_property(nullptr, props::text));
}

TEST_F(object_values, a_value_of_a_far_base_counts_and_a_refused_one_does_not) {
    object* const between = thing("between");
    between->add_inherits_from(base);
    what->add_inherits_from(between);
    base->set_property(props::text, text("far"));
    EXPECT_TRUE(kelm::defines_property(what, props::text));
    what->set_property_not_inheritable(props::text, true);
    EXPECT_FALSE(kelm::defines_property(what, props::text));
}

TEST_F(object_values, a_value_that_a_hook_of_a_base_supplies_is_defined_nowhere) {
    object* const supplying = hooked("supplying");
    what->add_inherits_from(supplying);
    hooks.on<post_prop_get_semantic>([](hook_call& call) {
        if (!*call.replaceable) *call.replaceable = new property<std::string>("supplied");
        return true;
    });
    EXPECT_TRUE(what->inherits_property(props::text, false));
    EXPECT_FALSE(kelm::defines_property(what, props::text));
    EXPECT_FALSE(kelm::defines_property(supplying, props::text));
    hooks.clear();
}

TEST_F(object_values, forbidding_a_property_deletes_the_value_and_marks_it) {
    what->set_property(props::text, text("own"));
    EXPECT_TRUE(allow_property(what, props::text, false, false));
    EXPECT_FALSE(what->defines_property(props::text));
    EXPECT_TRUE(what->is_property_not_inheritable(props::text));
    EXPECT_TRUE(allow_property(what, props::text, false, true)) << "also without a value, and marked already";
    EXPECT_TRUE(what->is_property_not_inheritable(props::text));
    EXPECT_FALSE(allow_property(nullptr, props::text, false, false));
}

TEST_F(object_values, an_inherited_value_is_not_deleted_when_forbidden) {
    what->add_inherits_from(base);
    base->set_property(props::text, text("of the base"));
    EXPECT_TRUE(allow_property(what, props::text, false, false));
    EXPECT_TRUE(base->defines_property(props::text));
    EXPECT_FALSE(what->has_property(props::text));
    EXPECT_TRUE(allow_property(what, props::text, true, true));
    EXPECT_EQ(as_text(what->get_property(props::text)), "of the base");
}

TEST_F(object_values, allowing_a_property_takes_the_mark_away_only_when_told_to) {
    what->set_property_not_inheritable(props::text, true);
    const std::string before = dump();
    EXPECT_TRUE(allow_property(what, props::text, true, false));
    EXPECT_EQ(dump(), before);
    EXPECT_TRUE(what->is_property_not_inheritable(props::text));
    EXPECT_TRUE(allow_property(what, props::text, true, true));
    EXPECT_FALSE(what->is_property_not_inheritable(props::text));
}

TEST_F(object_values, allowing_what_is_allowed_does_nothing) {
    model->clear_history();
    EXPECT_TRUE(allow_property(what, props::text, true, true));
    EXPECT_TRUE(allow_property(what, props::text, true, false));
    EXPECT_EQ(message_types(), "");
    what->set_property(props::text, text("own"));
    EXPECT_TRUE(allow_property(what, props::text, true, true));
    EXPECT_TRUE(what->defines_property(props::text)) << "allowing never deletes";
    object* const guarded = hooked("guarded");
    hooks.refuse<pre_prop_set_not_inheritable_semantic>();
    EXPECT_TRUE(allow_property(guarded, props::text, true, true)) << "no hook is asked about nothing";
    guarded->set_property(props::text, text("own"));
    EXPECT_FALSE(allow_property(guarded, props::text, false, false)) << "but about a mark it is";
    EXPECT_FALSE(guarded->is_property_not_inheritable(props::text));
    hooks.clear();
    fw.set_in_semantic(false);
}

TEST_F(object_values, a_refused_deletion_ends_the_forbidding) {
    object* const guarded = hooked("guarded");
    guarded->set_property(props::text, text("own"));
    hooks.refuse<pre_prop_delete_semantic>();
    EXPECT_FALSE(allow_property(guarded, props::text, false, false));
    EXPECT_TRUE(guarded->defines_property(props::text));
    EXPECT_FALSE(guarded->is_property_not_inheritable(props::text));
    hooks.clear();
    fw.set_in_semantic(false);
}

TEST_F(object_values, a_refused_mark_is_the_answer) {
    recorder heard;
    heard.watch(what);
    heard.answer = false;
    EXPECT_FALSE(allow_property(what, props::text, false, false));
    EXPECT_TRUE(what->is_property_not_inheritable(props::text)) << "an observer's no leaves the change";
    EXPECT_FALSE(allow_property(what, props::text, true, true));
    EXPECT_FALSE(what->is_property_not_inheritable(props::text));
}

TEST_F(object_values, a_type_may_forbid_inheriting_a_property) {
    meta_model& types_here = *model->meta_model();
    EXPECT_TRUE(property_can_be_inherited(types::thing, props::text, types_here));
    EXPECT_FALSE(property_can_be_inherited(types::thing, props::not_inheritable, types_here));
    EXPECT_FALSE(property_can_be_inherited(types::special_thing, props::not_inheritable, types_here));
    EXPECT_TRUE(property_can_be_inherited(types::special_thing, props::text, types_here))
        << "of the base type";
    EXPECT_FALSE(property_can_be_inherited(types::other, props::number, types_here)) << "no such property";
    EXPECT_FALSE(property_can_be_inherited(types::thing, 4000000000U, types_here));
    EXPECT_FALSE(property_can_be_inherited(4000000000U, props::text, types_here)) << "no such type";
    EXPECT_TRUE(property_can_be_inherited(types::thing, props::text, *fw.application_meta_model()));
}

TEST_F(object_values, a_mark_counts_by_its_value) {
    meta_property* const made =
        model->add_user_defined_property(types::thing, "Marked", data_type::string, "", 0);
    ASSERT_TRUE(made);
    meta_model& types_here = *model->meta_model();
    const auto may = [&] { return property_can_be_inherited(types::thing, made->id(), types_here); };
    EXPECT_TRUE(may());
    made->set_attribute_value(attribute_id::not_inheritable, flag(true));
    EXPECT_FALSE(may());
    made->set_attribute_value(attribute_id::not_inheritable, flag(false));
    EXPECT_TRUE(may());
    made->set_attribute_value(attribute_id::not_inheritable, text("True"));
    EXPECT_TRUE(may()) << "another kind of value marks nothing";
}

// Lists as values

class list_values : public object_values {
protected:
    list_values() {
        for (const abstract_property* each :
             std::initializer_list<const abstract_property*>{&first, &word, &to_base, &word, &to_nobody})
            what->append_vector_element(props::list, *each);
        what->set_property(props::text, text("no list"));
        heir->add_inherits_from(what);
    }
    const property<int> first = number(1);
    const property<std::string> word = text("word");
    const property<object*> to_base = reference(base);
    const property<object*> to_nobody = reference(nullptr);
    object* const heir = thing("heir");
};

TEST_F(list_values, have_a_size) {
    EXPECT_EQ(vector_prop_size(what, props::list), 5u);
    EXPECT_EQ(vector_prop_size(heir, props::list), 5u) << "the effective value counts";
    EXPECT_EQ(vector_prop_size(base, props::list), 0u) << "no value";
    EXPECT_EQ(vector_prop_size(what, props::text), 0u) << "another kind of value";
    EXPECT_EQ(vector_prop_size(nullptr, props::list), 0u);
    base->set_property(props::list, vector_property{});
    EXPECT_EQ(vector_prop_size(base, props::list), 0u) << "no elements";
}

TEST_F(list_values, have_an_object_or_a_text_at_a_position) {
    struct row {
        const char* why;
        const object* of;
        u32 id;
        std::size_t position;
        object* target;
        const char* text;
    };
    const row rows[] = {
        {"a number is neither", what, props::list, 0, nullptr, ""},
        {"a text", what, props::list, 1, nullptr, "word"},
        {"a reference", what, props::list, 2, base, ""},
        {"a null reference", what, props::list, 4, nullptr, ""},
        {"past the end", what, props::list, 5, nullptr, ""},
        {"far past the end", what, props::list, npos, nullptr, ""},
        {"an inherited reference", heir, props::list, 2, base, ""},
        {"an inherited text", heir, props::list, 1, nullptr, "word"},
        {"no value", base, props::list, 0, nullptr, ""},
        {"another kind of value", what, props::text, 0, nullptr, ""},
        {"nobody", nullptr, props::list, 1, nullptr, ""},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(object_at_vector_prop_pos(row.of, row.id, row.position), row.target);
        EXPECT_EQ(string_at_vector_prop_pos(row.of, row.id, row.position), row.text);
    }
}

TEST_F(list_values, have_a_position_for_an_object) {
    EXPECT_EQ(vector_prop_object_position(what, base, props::list), 2u);
    EXPECT_EQ(vector_prop_object_position(heir, base, props::list), 2u);
    EXPECT_EQ(vector_prop_object_position(what, what, props::list), static_cast<std::size_t>(-1));
    EXPECT_EQ(vector_prop_object_position(what, nullptr, props::list), 4u) << "the null reference";
    EXPECT_EQ(vector_prop_object_position(base, base, props::list), npos) << "no value";
    EXPECT_EQ(vector_prop_object_position(what, base, props::text), npos);
    EXPECT_EQ(vector_prop_object_position(nullptr, base, props::list), npos);
    what->insert_vector_element(props::list, to_base, 0);
    EXPECT_EQ(vector_prop_object_position(what, base, props::list), 0u) << "the first";
}

TEST_F(list_values, have_a_position_for_a_value) {
    EXPECT_EQ(vector_prop_position(what, &first, props::list), 0u);
    EXPECT_EQ(vector_prop_position(what, &word, props::list), 1u) << "the first of two";
    EXPECT_EQ(vector_prop_position(what, &to_base, props::list), 2u);
    EXPECT_EQ(vector_prop_position(heir, &word, props::list), 1u);
    const auto other = text("words");
    EXPECT_EQ(vector_prop_position(what, &other, props::list), npos);
    const property<short> another_kind{1};
    EXPECT_EQ(vector_prop_position(what, &another_kind, props::list), npos) << "1, but of another kind";
    EXPECT_EQ(vector_prop_position(what, nullptr, props::list), npos);
    EXPECT_EQ(vector_prop_position(base, &word, props::list), npos);
    EXPECT_EQ(vector_prop_position(nullptr, &word, props::list), npos);
}

} // namespace
} // namespace kelm::test
