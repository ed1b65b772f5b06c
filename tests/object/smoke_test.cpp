// The shortest way through the whole library, once.
// Every step has tests of its own elsewhere.
#include "tests/support/world.h"

namespace kelm::test {

using smoke = world;

TEST_F(smoke, an_object_is_made_changed_undone_and_redone) {
    begin("make");
    object* const a = fw.create_object(types::thing, root);
    ASSERT_TRUE(a);
    EXPECT_EQ(a->id(), 3u);
    ASSERT_TRUE(a->set_property(props::name, text("a")));
    end();
    EXPECT_EQ(message_types(), "1 4 14 7 2");
    const std::string with_a = dump();
    model->undo();
    EXPECT_EQ(model->find_object(3), nullptr);
    model->redo();
    EXPECT_EQ(dump(), with_a);
    EXPECT_EQ(object_name(a), "a");
}

TEST_F(smoke, a_deleted_object_comes_back_with_its_subtree_and_what_referred_to_it) {
    object* const a = thing("a");
    object* const child = part("child", a);
    object* const friend_of_a = thing("friend");
    begin();
    friend_of_a->set_property(props::reference, reference(a));
    child->set_property(props::list, vector_property{});
    child->append_vector_element(props::list, reference(a));
    end();
    const std::string before = dump();
    begin();
    ASSERT_TRUE(fw.delete_object(a));
    end();
    EXPECT_FALSE(friend_of_a->defines_property(props::reference));
    EXPECT_EQ(child->state(), state::deleted);
    model->undo();
    EXPECT_EQ(dump(), before);
    model->redo();
    model->undo();
    EXPECT_EQ(dump(), before);
}

} // namespace kelm::test
