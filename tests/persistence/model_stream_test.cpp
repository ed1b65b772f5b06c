// A model without its history in a stream: bytes, reading back, and streams that are not what they should be.
// The history has tests of its own.
#include "tests/persistence/stream_world.h"

#include <kelm/meta_model.h>

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class model_stream : public stream_world {
protected:
    /// Everything before the object record of the model: the section of types is copied from the stream itself.
    std::size_t tree_begins() const {
        // id of the object, no values, no marks, no bases, no observers, and no children: 24 bytes, then no history
        return saved().size() - (24 + 1);
    }
};

TEST_F(model_stream, of_an_empty_model_has_its_identity_its_types_and_an_empty_tree) {
    const std::string bytes = saved();
    GUID id;
    model->model_id(id);
    stored_fields head;
    head.word(id.Data1)
        .byte(id.Data2 & 0xFFU)
        .byte(id.Data2 >> 8U)
        .byte(id.Data3 & 0xFFU)
        .byte(id.Data3 >> 8U);
    for (const u8 each : id.Data4) head.byte(each);
    head.word(model->last_object_id()).word(50000);
    head.word(newest_version).word(0);
    head.word(static_cast<u32>(model->meta_model()->meta_objects().size()));
    EXPECT_EQ(hex(bytes.substr(0, head.bytes().size())), hex(head.bytes()));

    const std::string tree = stored_fields{}.word(1).word(0).word(0).word(0).word(0).word(0).byte(0).bytes();
    EXPECT_EQ(hex(bytes.substr(bytes.size() - tree.size())), hex(tree));
}

TEST_F(model_stream, has_an_object_field_by_field) {
    const std::size_t begins = tree_begins();
    object* const base = thing("base");
    object* const a = thing("a");
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(7)));
    ASSERT_TRUE(a->set_property(props::reference, reference(base)));
    ASSERT_TRUE(a->set_property_not_inheritable(props::text, true));
    ASSERT_TRUE(a->add_inherits_from(base));
    ASSERT_TRUE(a->attach(dynamic_cast<observer*>(base)));
    end();
    stored_fields tree;
    tree.word(1).word(0).word(0).word(0).word(0).word(2);
    tree.word(types::thing).word(base->id()).word(1).word(props::name).word(6).text("base");
    tree.word(0).word(0).word(0).word(0);
    tree.word(types::thing).word(a->id()).word(3);
    tree.word(props::name).word(6).text("a");
    tree.word(props::number).word(4).word(7);
    tree.word(props::reference).word(8).word(base->id());
    tree.word(1).word(props::text);
    tree.word(1).word(base->id());
    tree.word(1).word(base->id());
    tree.word(0);
    tree.byte(0);
    EXPECT_EQ(hex(saved().substr(begins)), hex(tree.bytes()));
}

TEST_F(model_stream, read_back_says_the_same_and_writes_the_same) {
    object* const a = thing("a");
    object* const b = thing("b", a);
    object* const c = part("c", a);
    part("d", a);
    begin();
    vector_property list;
    for (const int each : {3, 1, 2}) list.elements.push_back(new property<int>{each});
    list.elements.push_back(new property<object*>{c});
    ASSERT_TRUE(a->set_property(props::list, list));
    ASSERT_TRUE(b->set_property(props::reference, reference(c)));
    ASSERT_TRUE(b->set_property(props::real, property<double>{1.5}));
    ASSERT_TRUE(b->set_property(props::flag, flag(true)));
    ASSERT_TRUE(b->add_inherits_from(a));
    ASSERT_TRUE(a->set_property_not_inheritable(props::number, true));
    ASSERT_TRUE(a->set_child_position(c, 1));
    ASSERT_TRUE(a->attach(dynamic_cast<observer*>(b)));
    end();
    const std::string bytes = saved();
    ASSERT_TRUE(load(bytes));
    EXPECT_EQ(dump_of(*copy), dump_of(*model));
    EXPECT_EQ(hex(saved(*copy)), hex(bytes));
    EXPECT_FALSE(copy->is_modified());
    EXPECT_FALSE(copy->can_undo());
    EXPECT_EQ(copied(c)->referencing_objects().size(), 2U);
    EXPECT_EQ(names_of(copied(a)->inheritors()), "b");
    EXPECT_EQ(copied(a)->child_position(copied(c)), 1U);
    EXPECT_EQ(copied(a)->state(), state::normal);
}

TEST_F(model_stream, user_defined_properties_come_back) {
    begin();
    meta_property* const made =
        model->add_user_defined_property(types::thing, "Colour", data_type::string, "said so", 0);
    ASSERT_TRUE(made);
    object* const a = thing("a");
    ASSERT_TRUE(a->set_property(made->id(), text("red")));
    end();
    const std::string bytes = saved();
    ASSERT_TRUE(load(bytes));
    const meta_property* const there =
        copy->meta_model()->find_meta_object(types::thing)->find_property(made->id());
    ASSERT_TRUE(there);
    EXPECT_EQ(there->name(), "Colour");
    EXPECT_EQ(as_text(copied(a)->get_property(made->id())), "red");
    EXPECT_EQ(hex(saved(*copy)), hex(bytes));
    EXPECT_EQ(copy->add_user_defined_property(types::part, "Size", data_type::string, "", 0)->id(),
              made->id() + 1);
}

TEST_F(model_stream, value_without_a_declared_property_stays_out) {
    object* const a = thing("a");
    begin();
    ASSERT_TRUE(a->set_property(4711, text("lost")));
    end();
    ASSERT_TRUE(load(saved()));
    EXPECT_FALSE(copied(a)->defines_property(4711));
    EXPECT_TRUE(copied(a)->defines_property(props::name));
}

TEST_F(model_stream, reference_to_what_is_not_in_the_stream_reads_as_null) {
    object* const a = thing("a");
    object* const other = fw.create_object(type_id::model, nullptr);
    other->model()->begin_transaction("t");
    for (int i = 0; i != 5; ++i) fw.create_object(types::thing, other);
    object* const stranger = fw.create_object(types::thing, other);
    other->model()->end_transaction();
    begin();
    ASSERT_TRUE(a->set_property(props::reference, reference(stranger)));
    end();
    ASSERT_TRUE(load(saved()));
    const value_ptr value = copied(a)->get_own_property(props::reference);
    ASSERT_TRUE(value);
    EXPECT_EQ(dynamic_cast<const property<object*>&>(*value).value, nullptr);
    fw.delete_object(other);
    fw.set_in_semantic(false);
}

TEST_F(model_stream, is_not_written_inside_a_transaction) {
    begin();
    std::ostringstream out;
    EXPECT_FALSE(model->write(&out, true, 0, true, nullptr));
    GUID before;
    model->model_id(before);
    EXPECT_FALSE(model->save_as_new(&out, true, 0, nullptr));
    GUID behind;
    model->model_id(behind);
    EXPECT_EQ(before, behind);
    EXPECT_EQ(out.str(), "");
    end();
}

TEST_F(model_stream, saving_as_new_gives_a_new_identity_and_ends_the_modification) {
    begin();
    thing("a");
    end();
    ASSERT_TRUE(model->is_modified());
    GUID before;
    model->model_id(before);
    std::ostringstream out;
    EXPECT_TRUE(model->save_as_new(&out, false, 0, nullptr));
    GUID behind;
    model->model_id(behind);
    EXPECT_FALSE(before == behind);
    EXPECT_FALSE(model->is_modified());
}

TEST_F(model_stream, modification_ends_only_where_it_is_asked_for_and_written) {
    begin();
    thing("a");
    end();
    saved();
    EXPECT_TRUE(model->is_modified());
    std::ostringstream bad;
    bad.setstate(std::ios_base::failbit);
    EXPECT_FALSE(model->write(&bad, true, 0, true, nullptr));
    EXPECT_TRUE(model->is_modified());
    std::ostringstream out;
    EXPECT_TRUE(model->write(&out, true, 0, true, nullptr));
    EXPECT_FALSE(model->is_modified());
}

TEST_F(model_stream, without_a_stream_nothing_happens) {
    EXPECT_FALSE(model->write(nullptr, true, 0, true, nullptr));
    EXPECT_FALSE(model->save_as_new(nullptr, true, 0, nullptr));
    EXPECT_FALSE(model->read(nullptr, nullptr));
    EXPECT_FALSE(root->write(nullptr, nullptr));
}

TEST_F(model_stream, keeps_the_identity_of_a_newer_version_that_it_refuses) {
    thing("a");
    const std::string bytes = saved();
    EXPECT_FALSE(load(bytes, newest_version - 1));
    EXPECT_FALSE(copy->as_object()->has_children());
    GUID theirs;
    GUID ours;
    copy->model_id(theirs);
    model->model_id(ours);
    EXPECT_TRUE(theirs == ours);
    EXPECT_EQ(copy->last_object_id(), model->last_object_id());
}

TEST_F(model_stream, of_a_newer_minor_version_is_refused_as_well) {
    model->meta_model()->set_minor_version(1);
    EXPECT_FALSE(load(saved()));
}

TEST_F(model_stream, versions_compare_with_their_sign) {
    model->meta_model()->set_version(0xFFFFFFFF);
    EXPECT_TRUE(load(saved())); // older than everything: no history either
}

TEST_F(model_stream, of_an_object_alone_is_its_record) {
    object* const a = thing("a");
    std::ostringstream out;
    EXPECT_TRUE(a->write(&out, nullptr));
    EXPECT_EQ(hex(out.str()), hex(stored_fields{}
                                      .word(a->id())
                                      .word(1)
                                      .word(1)
                                      .word(6)
                                      .text("a")
                                      .word(0)
                                      .word(0)
                                      .word(0)
                                      .word(0)
                                      .bytes()));
}

TEST_F(model_stream, every_shorter_stream_is_refused_and_leaves_a_sound_model) {
    object* const a = thing("a");
    object* const b = part("b", a);
    begin();
    ASSERT_TRUE(b->set_property(props::reference, reference(a)));
    ASSERT_TRUE(b->add_inherits_from(a));
    end();
    const std::string bytes = saved();
    for (std::size_t length = tree_begins() - 200; length != bytes.size(); ++length) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(load(bytes.substr(0, length)));
        std::size_t listed = 0;
        for (object* each : copy->as_object()->children()) listed += each->children().size() + 1;
        EXPECT_LE(listed, 2U);
    }
    EXPECT_TRUE(load(bytes));
}

/// The stream of an empty model with another tree.
class broken_stream : public model_stream {
protected:
    bool load_tree(const stored_fields& tree) {
        return load(saved().substr(0, tree_begins()) + tree.bytes() + '\0');
    }
    static stored_fields root_with(u32 children) {
        return stored_fields{}.word(1).word(0).word(0).word(0).word(0).word(children);
    }
};

TEST_F(broken_stream, types_that_cannot_be_inside_a_model_are_refused) {
    const std::size_t open = fw.models().size();
    for (const u32 type : {type_id::library, type_id::model, types::abstract, 4711U, 0U}) {
        SCOPED_TRACE(type);
        EXPECT_FALSE(load_tree(root_with(1).word(type).word(2).word(0).word(0).word(0).word(0).word(0)));
        EXPECT_EQ(fw.models().size(), open + 1);
    }
}

TEST_F(broken_stream, counts_that_nothing_backs_are_refused_at_once) {
    EXPECT_FALSE(load_tree(stored_fields{}.word(1).word(npos32)));
    EXPECT_FALSE(load_tree(stored_fields{}.word(1).word(0).word(npos32)));
    EXPECT_FALSE(load_tree(stored_fields{}.word(1).word(0).word(0).word(npos32)));
    EXPECT_FALSE(load_tree(stored_fields{}.word(1).word(0).word(0).word(0).word(npos32)));
    EXPECT_FALSE(load_tree(stored_fields{}.word(1).word(0).word(0).word(0).word(0).word(npos32)));
}

TEST_F(broken_stream, a_property_that_comes_twice_is_refused) {
    stored_fields tree;
    tree.word(1).word(2).word(props::name).word(6).text("x").word(props::name).word(6).text("y");
    EXPECT_FALSE(load_tree(tree.word(0).word(0).word(0).word(0)));
}

TEST_F(broken_stream, an_id_that_comes_twice_stays_with_the_first) {
    stored_fields tree = root_with(2);
    for (const char* name : {"first", "second"})
        tree.word(types::thing)
            .word(7)
            .word(1)
            .word(props::name)
            .word(6)
            .text(name)
            .word(0)
            .word(0)
            .word(0)
            .word(0);
    ASSERT_TRUE(load_tree(tree));
    EXPECT_EQ(object_name(copy->find_object(7)), "first");
    EXPECT_EQ(copy->as_object()->children().size(), 2U);
}

TEST_F(broken_stream, circles_of_bases_are_left_open) {
    stored_fields tree = root_with(2);
    tree.word(types::thing).word(7).word(0).word(0).word(3).word(8).word(7).word(8).word(0).word(0);
    tree.word(types::thing).word(8).word(0).word(0).word(1).word(7).word(0).word(0);
    ASSERT_TRUE(load_tree(tree));
    EXPECT_EQ(copy->find_object(7)->inherits_from_list(0).size(), 1U);
    EXPECT_TRUE(copy->find_object(8)->inherits_from_list(0).empty());
}

TEST_F(broken_stream, trees_deeper_than_the_stack_are_read_and_written) {
    constexpr u32 depth = 100000;
    stored_fields tree = root_with(1);
    for (u32 i = 0; i != depth; ++i)
        tree.word(types::thing).word(i + 2).word(0).word(0).word(0).word(0).word(i + 1 == depth ? 0 : 1);
    ASSERT_TRUE(load_tree(tree));
    EXPECT_EQ(copy->find_object(depth + 1)->owner(), copy->find_object(depth));
    const std::string again = saved(*copy);
    EXPECT_EQ(again.substr(tree_begins()).size(), tree.bytes().size() + 1);
    EXPECT_TRUE(again.substr(tree_begins()) == tree.bytes() + '\0');
}

} // namespace
TEST_F(model_stream, keeps_references_in_attributes_of_user_defined_properties_null) {
    begin();
    meta_property* const made = model->add_user_defined_property(types::thing, "u", data_type::string, "", 0);
    made->set_attribute_value(attribute_id::default_value, reference(root)); // the model would store a text
    end();
    ASSERT_TRUE(load(saved()));
    const meta_property* const read = copy->meta_model()->find_meta_object(types::thing)->find_property("u");
    const value_ptr value = read->attribute_value(attribute_id::default_value);
    ASSERT_NE(dynamic_cast<const property<object*>*>(value.get()), nullptr);
    EXPECT_EQ(dynamic_cast<const property<object*>&>(*value).value, nullptr);
}

} // namespace kelm::test
