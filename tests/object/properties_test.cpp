// Setting, deleting and reading whole values, without hooks.
// Hooks are property_hooks_test and get_hooks_test, what observers hear is property_told_test.
#include "tests/object/value_lines.h"

namespace kelm::test {

using properties = value_world;

TEST_F(properties, a_value_is_stored_as_a_clone_and_read_as_a_clone) {
    object* const a = thing("a");
    property<std::string> given{"given"};
    ASSERT_TRUE(change([&] { return a->set_property(props::text, given); }));
    given.value = "changed by the giver";
    const value_ptr read = a->get_property(props::text);
    ASSERT_TRUE(read);
    dynamic_cast<property<std::string>&>(*read).value = "changed by the reader";
    const value_ptr own = a->get_own_property(props::text);
    dynamic_cast<property<std::string>&>(*own).value = "changed by the reader";
    EXPECT_EQ(as_text(a->get_property(props::text)), "given");
    EXPECT_EQ(as_text(a->get_own_property(props::text)), "given");
}

TEST_F(properties, the_elements_of_a_list_are_cloned_with_it) {
    object* const a = thing("a");
    const auto given = numbers({1});
    ASSERT_TRUE(change([&] { return a->set_property(props::list, *given); }));
    static_cast<property<int>*>(given->elements[0])->value = 7;
    const value_ptr read = a->get_property(props::list);
    static_cast<property<int>*>(static_cast<vector_property&>(*read).elements[0])->value = 8;
    EXPECT_EQ(list(a), "['1']");
}

TEST_F(properties, an_id_that_nobody_knows_reads_as_empty_and_can_be_set) {
    object* const a = thing("a");
    EXPECT_FALSE(a->get_property(4711));
    EXPECT_FALSE(a->has_property(4711));
    EXPECT_FALSE(a->defines_property(4711));
    EXPECT_FALSE(a->get_own_property(4711));
    EXPECT_TRUE(change([&] { return a->set_property(4711, number(3)); }));
    EXPECT_EQ(as_text(a->get_property(4711)), "3");
}

TEST_F(properties, a_value_can_change_its_kind) {
    object* const a = thing("a");
    EXPECT_TRUE(change(
        [&] { return a->set_property(props::text, text("t")) && a->set_property(props::text, flag(true)); }));
    EXPECT_TRUE(dynamic_cast<property<bool>*>(a->get_property(props::text).get()));
}

TEST_F(properties, setting_and_deleting_work_on_own_values) {
    object* const a = thing("a");
    EXPECT_TRUE(change([&] { return a->set_property(props::number, number(1)); }));
    EXPECT_TRUE(a->defines_property(props::number));
    EXPECT_TRUE(a->has_property(props::number));
    EXPECT_TRUE(change([&] { return a->delete_property(props::number); }));
    EXPECT_FALSE(a->defines_property(props::number));
    EXPECT_FALSE(a->has_property(props::number));
    EXPECT_FALSE(a->get_own_property(props::number));
}

TEST_F(properties, the_same_value_set_twice_is_recorded_twice) {
    object* const a = thing("a");
    begin();
    EXPECT_TRUE(a->set_property(props::number, number(1)));
    EXPECT_TRUE(a->set_property(props::number, number(1)));
    end();
    EXPECT_EQ(lines(), "7 first user a: 11 in a none of nobody to '1'\n"
                       "7 first user a: 11 in a '1' of a to '1'\n");
}

TEST_F(properties, an_inherited_value_is_read_and_not_defined) {
    object* const a = thing("a");
    object* const b = thing("b");
    prepare([&] {
        a->set_property(props::text, text("from a"));
        b->add_inherits_from(a);
    });
    EXPECT_EQ(as_text(b->get_property(props::text)), "from a");
    EXPECT_TRUE(b->has_property(props::text));
    EXPECT_FALSE(b->defines_property(props::text));
    EXPECT_FALSE(b->get_own_property(props::text));
    EXPECT_EQ(b->property_source(props::text), a);
    std::string out = "something";
    value_ptr value;
    EXPECT_TRUE(b->get_property_as_string(props::text, out, &value));
    EXPECT_EQ(out, "from a");
    dynamic_cast<property<std::string>&>(*value).value = "changed by the reader";
    EXPECT_EQ(as_text(a->get_property(props::text)), "from a");
}

TEST_F(properties, a_first_own_value_remembers_what_was_inherited) {
    object* const a = thing("a");
    object* const b = thing("b");
    prepare([&] {
        a->set_property(props::text, text("from a"));
        b->add_inherits_from(a);
    });
    begin();
    ASSERT_TRUE(b->set_property(props::text, text("own")));
    ASSERT_TRUE(a->set_property(props::text, text("later")));
    ASSERT_TRUE(b->set_property(props::text, text("own again")));
    end();
    EXPECT_EQ(lines(), "7 first user b: 10 in b 'from a' of a to 'own'\n"
                       "7 first user a: 10 in a 'from a' of a to 'later'\n"
                       "7 first user b: 10 in b 'own' of b to 'own again'\n");
    model->undo();
    EXPECT_FALSE(b->defines_property(props::text));
    EXPECT_EQ(as_text(b->get_property(props::text)), "from a");
}

TEST_F(properties, deleting_what_is_not_own_is_content_and_records_nothing) {
    object* const a = thing("a");
    object* const b = thing("b");
    prepare([&] {
        a->set_property(props::text, text("from a"));
        b->add_inherits_from(a);
    });
    begin();
    EXPECT_TRUE(b->delete_property(props::text));
    EXPECT_TRUE(b->delete_property(props::number));
    end();
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(as_text(b->get_property(props::text)), "from a");
}

TEST_F(properties, values_fall_back_depth_first_along_the_bases) {
    object* const grand = thing("grand");
    object* const first = thing("first");
    object* const second_base = thing("second");
    object* const a = thing("a");
    prepare([&] {
        grand->set_property(props::text, text("grand"));
        second_base->set_property(props::text, text("second"));
        second_base->set_property(props::number, number(2));
        first->add_inherits_from(grand);
        a->add_inherits_from(first);
        a->add_inherits_from(second_base);
    });
    EXPECT_EQ(as_text(a->get_property(props::text)), "grand");
    EXPECT_EQ(as_text(a->get_property(props::number)), "2");
    prepare([&] { first->set_property(props::text, text("first")); });
    EXPECT_EQ(as_text(a->get_property(props::text)), "first");
    prepare([&] { a->set_property(props::text, text("own")); });
    EXPECT_EQ(as_text(a->get_property(props::text)), "own");
}

TEST_F(properties, own_values_are_added_as_clones_and_replace_nothing) {
    object* const a = thing("a");
    prepare([&] {
        a->set_property(props::number, number(1));
        a->set_property(props::text, text("own"));
    });
    value_map out;
    out.emplace(props::text, value_ptr{new property<std::string>{"there already"}});
    a->own_properties(out);
    EXPECT_EQ(out.size(), 3u);
    EXPECT_EQ(as_text(out[props::name]), "a");
    EXPECT_EQ(as_text(out[props::text]), "there already");
    EXPECT_EQ(as_text(out[props::number]), "1");
    const shared_ptr<value_map> all = a->own_properties();
    ASSERT_EQ(all->size(), 3u);
    dynamic_cast<property<int>&>(*(*all)[props::number]).value = 9;
    EXPECT_EQ(as_text(a->get_property(props::number)), "1");
}

TEST_F(properties, all_values_are_the_effective_ones_of_the_properties_that_the_type_knows) {
    object* const a = thing("a");
    object* const b = thing("b");
    prepare([&] {
        a->set_property(props::text, text("from a"));
        a->set_property(props::number, number(1));
        b->add_inherits_from(a);
        b->set_property(props::number, number(2));
        b->set_property(4711, text("unknown to the type"));
    });
    value_map out;
    out.emplace(props::name, value_ptr{new property<std::string>{"there already"}});
    b->all_properties(out);
    std::string seen;
    for (const auto& [id, value] : out) seen += std::to_string(id) + "=" + as_text(value) + " ";
    EXPECT_EQ(seen, "1=there already 10=from a 11=2 ");
    EXPECT_EQ(b->all_properties()->size(), 3u);
    EXPECT_EQ(as_text((*b->all_properties())[props::name]), "b");
}

TEST_F(properties, the_text_of_no_value_is_empty) {
    object* const a = thing("a");
    std::string out = "something";
    value_ptr value{new property<int>{1}};
    EXPECT_FALSE(a->get_property_as_string(props::text, out, &value));
    EXPECT_EQ(out, "");
    prepare([&] { a->set_property(props::flag, flag(true)); });
    EXPECT_TRUE(a->get_property_as_string(props::flag, out, &value));
    EXPECT_EQ(out, property<bool>{true}.to_string());
    EXPECT_TRUE(dynamic_cast<property<bool>*>(value.get()));
    EXPECT_TRUE(a->get_property_as_string(props::flag, out));
}

TEST_F(properties, a_deleted_object_takes_no_change_and_says_yes) {
    object* const a = thing("a");
    prepare([&] { a->set_property(props::number, number(1)); });
    begin();
    ASSERT_TRUE(fw.delete_object(a));
    const std::size_t count = model->message_count();
    EXPECT_TRUE(a->set_property(props::number, number(2)));
    EXPECT_TRUE(a->delete_property(props::number));
    EXPECT_TRUE(a->append_vector_element(props::list, number(2)));
    EXPECT_TRUE(a->insert_vector_element(props::list, number(2), 0));
    EXPECT_TRUE(a->set_vector_element(props::list, number(2), 0));
    EXPECT_TRUE(a->move_vector_element(props::list, 0, 0));
    EXPECT_EQ(model->message_count(), count);
    EXPECT_FALSE(a->defines_property(props::number));
    end();
}

TEST_F(properties, many_values_stay_in_the_order_of_their_ids) {
    object* const a = thing("a");
    begin();
    for (u32 id = 900; id > 800; --id) ASSERT_TRUE(a->set_property(id, number(static_cast<int>(id))));
    for (u32 id = 801; id <= 900; id += 2) ASSERT_TRUE(a->delete_property(id));
    end();
    value_map own;
    a->own_properties(own);
    EXPECT_EQ(own.size(), 51u); // with the name
    for (u32 id = 801; id <= 900; ++id) {
        SCOPED_TRACE(id);
        EXPECT_EQ(a->defines_property(id), id % 2 == 0);
        EXPECT_EQ(as_text(a->get_property(id)), id % 2 == 0 ? std::to_string(id) : "none");
    }
}

} // namespace kelm::test
