// References to objects that are there: comparison, names, reading from text, ids in a stream.
// Null references are tested with the other kinds; who is referred to by whom, with objects.
#include "tests/support/box.h"
#include "tests/support/world.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace kelm::test {
namespace {

/// Both forms of to_string(), which must agree.
std::string shown(const abstract_property& value) {
    std::string into = "what was there before";
    value.to_string(into);
    EXPECT_EQ(into, value.to_string());
    return into;
}

std::string bytes_of(const abstract_property& value) {
    std::ostringstream out;
    value.write(out);
    EXPECT_TRUE(out.good());
    return out.str();
}

class reference_value : public world {
protected:
    /// A second model, behind the first; it is closed with the test.
    object* second_root() {
        if (!second_) second_ = fw.create_object(type_id::model, nullptr);
        return second_;
    }
    ~reference_value() override {
        if (second_) fw.delete_object(second_);
    }

    /// What `text` gives where another target was before.
    object* parsed(const std::string& from) {
        property<object*> value{root};
        value.from_string(from);
        return value.value;
    }

private:
    object* second_ = nullptr;
};

TEST_F(reference_value, two_references_are_equal_by_the_ids_of_their_targets) {
    object* const a = thing("a");
    object* const b = thing("b");
    EXPECT_TRUE(reference(a).equals(std::make_unique<property<object*>>(a).get()));
    const property<object*> to_a{a};
    const property<object*> to_b{b};
    const property<object*> to_nobody;
    EXPECT_FALSE(to_a.equals(&to_b));
    EXPECT_FALSE(to_a.equals(&to_nobody));
    EXPECT_FALSE(to_nobody.equals(&to_a));
}

TEST_F(reference_value, keeps_references_into_two_models_comparable_by_id) {
    object* const here = thing("here");
    object* const there = thing("there", second_root());
    ASSERT_NE(here->model(), there->model());
    ASSERT_EQ(here->id(), there->id());
    const property<object*> a{here};
    const property<object*> b{there};
    EXPECT_TRUE(a.equals(&b));
    EXPECT_TRUE(b.equals(&a));
    const property<object*> to_next{thing("next", second_root())};
    EXPECT_FALSE(a.equals(&to_next));
}

TEST_F(reference_value, a_clone_refers_to_the_same_object) {
    const property<object*> original{thing("a")};
    const box copy{original.clone()};
    EXPECT_TRUE(copy->equals(&original));
    EXPECT_EQ(dynamic_cast<property<object*>&>(*copy).value, original.value);
}

TEST_F(reference_value, its_text_is_the_name_of_the_target) {
    object* const target = thing("bolt");
    const property<object*> value{target};
    EXPECT_EQ(shown(value), "bolt");
    target->set_property(props::name, text("nut"));
    EXPECT_EQ(shown(value), "nut");
    target->delete_property(props::name);
    EXPECT_EQ(shown(value), "");
}

TEST_F(reference_value, a_list_of_references_shows_every_name) {
    vector_property list;
    for (const char* name : {"a", "b", "c"}) list.elements.push_back(new property<object*>(thing(name)));
    EXPECT_EQ(shown(list), "a, b, c");
}

TEST_F(reference_value, text_is_read_as_the_id_of_an_object) {
    object* const target = thing("a");
    const std::string id = std::to_string(target->id());
    EXPECT_EQ(parsed(id), target);
    EXPECT_EQ(parsed(" \t+" + id + "x"), target) << "as numbers are read";
    EXPECT_EQ(parsed("1"), root);
    for (const char* none : {"", "a", "0", "2", "-1", "4294967295", "999999"}) {
        SCOPED_TRACE(none);
        EXPECT_EQ(parsed(none), nullptr) << "what was there before is gone";
    }
    EXPECT_TRUE(target->referencing_objects().empty()) << "a loose value is nobody's";
}

TEST_F(reference_value, keeps_text_to_the_first_open_model) {
    ASSERT_EQ(fw.models().front(), model);
    object* const both_have = thing("here");
    object* const same_id = thing("there", second_root());
    ASSERT_EQ(both_have->id(), same_id->id());
    object* const second_has = thing("only there", second_root());
    ASSERT_EQ(model->find_object(second_has->id()), nullptr);
    EXPECT_EQ(parsed(std::to_string(same_id->id())), both_have);
    EXPECT_EQ(parsed(std::to_string(second_has->id())), nullptr);

    fw.delete_object(root);
    model = nullptr;
    property<object*> value;
    value.from_string(std::to_string(second_has->id()));
    EXPECT_EQ(value.value, second_has) << "the second is the first now";
}

TEST_F(reference_value, text_gives_nothing_when_no_model_is_open) {
    ASSERT_EQ(fw.models().size(), 1U);
    property<object*> value{root};
    fw.delete_object(root);
    model = nullptr;
    value.from_string("1");
    EXPECT_EQ(value.value, nullptr);
}

TEST_F(reference_value, a_list_reads_references_from_text) {
    object* const target = thing("a");
    vector_property list;
    list.from_string("[" + std::to_string(target->id()) + "|8][x|8]");
    ASSERT_EQ(list.elements.size(), 2U);
    EXPECT_EQ(dynamic_cast<property<object*>&>(*list.elements[0]).value, target);
    EXPECT_EQ(dynamic_cast<property<object*>&>(*list.elements[1]).value, nullptr);
}

TEST_F(reference_value, a_stream_holds_the_id_in_four_bytes) {
    object* const target = thing("a");
    std::string expected(4, '\0');
    expected[0] = static_cast<char>(target->id());
    ASSERT_LT(target->id(), 256U);
    EXPECT_EQ(bytes_of(reference(target)), expected);
    EXPECT_EQ(bytes_of(reference(root)), std::string("\x01\0\0\0", 4));
}

TEST_F(reference_value, what_is_read_is_fixed_up_from_its_record) {
    object* const holder = thing("holder");
    const property<object*> written{thing("target")};
    std::istringstream in(bytes_of(written));
    property<object*> read{root};
    std::vector<reference_record> records;
    read.read(in, records, holder);
    EXPECT_TRUE(in.good());
    EXPECT_EQ(read.value, nullptr) << "until all objects are there";
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].value, &read);
    EXPECT_EQ(records[0].holder, holder);
    records[0].value->value = model->find_object(records[0].target_id);
    EXPECT_TRUE(read.equals(&written));
    EXPECT_EQ(read.value, written.value);
}

TEST_F(reference_value, references_in_a_list_are_fixed_up_each_from_its_own_record) {
    vector_property list;
    auto* const inner = new vector_property;
    inner->elements = {new property<object*>(thing("inside"))};
    list.elements = {new property<object*>(thing("first")), inner, new property<object*>,
                     new property<object*>(thing("last"))};
    std::istringstream in(bytes_of(list));
    vector_property read;
    std::vector<reference_record> records;
    read.read(in, records, nullptr);
    ASSERT_EQ(records.size(), 4U);
    for (const reference_record& record : records)
        record.value->value = record.target_id == npos32 ? nullptr : model->find_object(record.target_id);
    EXPECT_EQ(shown(read), "first, inside, , last");
    EXPECT_EQ(shown(read), shown(list));
}

} // namespace
} // namespace kelm::test
