// The attributes of the process through the framework, and what objects answer for the attributes of their types.
// The table and the values of meta things are tested beside this file, without a process.
#include "tests/support/world.h"

#include <kelm/object_helpers.h>

namespace kelm::test {

namespace {

class attribute_helpers : public world {
protected:
    static bool is_built_in(u32 attribute) { return attribute < 100; }

    /// The type of `things`, which no other test may find changed.
    meta_object& declared() { return *fw.application_meta_model()->find_meta_object(types::thing); }
};

TEST_F(attribute_helpers, the_framework_lists_the_built_in_attributes_ascending) {
    std::vector<u32> all;
    fw.meta_attribute_ids(all);
    std::erase_if(all, [](u32 id) { return !is_built_in(id); });
    EXPECT_EQ(all, (std::vector<u32>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 19}));
    EXPECT_EQ(fw.find_meta_attribute(18), nullptr);
}

TEST_F(attribute_helpers, registering_an_attribute_replaces_the_one_of_its_id) {
    constexpr u32 id = 9003;
    fw.add_meta_attribute(id, "Plain", false);
    const meta_attribute* const plain = fw.find_meta_attribute(id);
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->id(), id);
    EXPECT_EQ(plain->name(), "Plain");
    EXPECT_EQ(plain->default_value(), nullptr);
    EXPECT_FALSE(plain->is_inheritable());

    const property<int> seven(7);
    fw.add_meta_attribute_with_default(id, "Numbered", seven, true);
    const meta_attribute* const numbered = fw.find_meta_attribute(id);
    EXPECT_EQ(numbered->name(), "Numbered");
    EXPECT_TRUE(numbered->is_inheritable());
    ASSERT_NE(numbered->default_value(), nullptr);
    EXPECT_NE(numbered->default_value(), &seven) << "a clone";
    EXPECT_TRUE(numbered->default_value()->equals(&seven));
    EXPECT_EQ(plain->name(), "Plain") << "whoever holds the former one keeps it";
    std::vector<u32> all;
    fw.meta_attribute_ids(all);
    EXPECT_EQ(std::count(all.begin(), all.end(), id), 1);
}

TEST_F(attribute_helpers, an_attribute_without_a_value_reads_as_the_caller_says) {
    object* const it = thing("a");
    EXPECT_TRUE(bool_meta_attribute(it, attribute_id::skip_in_compare, true));
    EXPECT_FALSE(bool_meta_attribute(it, attribute_id::internal, false))
        << "its default is for marking alone";
    EXPECT_FALSE(meta_att(it, attribute_id::internal));
}

TEST_F(attribute_helpers, an_attribute_with_a_value_reads_as_it) {
    object* const it = thing("a");
    for (const bool value : {true, false}) {
        declared().set_attribute_value(attribute_id::skip_in_compare_other, flag(value));
        EXPECT_EQ(bool_meta_attribute(it, attribute_id::skip_in_compare_other, !value), value);
        const value_ptr read = meta_att(it, attribute_id::skip_in_compare_other);
        EXPECT_TRUE(flag(value).equals(read.get()));
    }
    EXPECT_TRUE(declared().remove_attribute(attribute_id::skip_in_compare_other));
}

TEST_F(attribute_helpers, objects_answer_with_the_name_of_their_type) {
    EXPECT_EQ(meta_name(root), "Model");
    EXPECT_EQ(meta_name(thing("a")), declared().name());
    EXPECT_EQ(model->meta_model()->find_meta_object(type_id::generic_object)->name(), "Generic Object");
}

} // namespace

} // namespace kelm::test
