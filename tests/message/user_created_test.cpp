// Whose work a change is: fixed when its message is made, by whether hooks or the library are at it.
// Single operations that make several messages are tested with each operation.
#include "tests/message/every_kind.h"

namespace kelm::test {
namespace {

class user_created : public every_kind {
protected:
    /// \returns the messages that are not the user's own work, one a line
    std::string of_others() const {
        std::string lines;
        for (const message* each : stored())
            if (!each->is_user_created()) lines += described(each) + "\n";
        return lines;
    }
};

TEST_F(user_created, work_is_all_but_what_the_library_adds_to_it) {
    changed_everything();
    EXPECT_EQ(of_others(),
              "7 Changed Thing a List from NULL to 2\n"    // the list that the first element asks for
              "14 Added Part a. of Thing a\n"              // of a creation
              "15 Pre Remove Child - Part a. of Thing a\n" // of a deletion, and all behind it
              "10 Deleted Name of Part a.\n"
              "16 Remove Child - type (deleted) name (deleted) from Thing a\n"
              "6 Deleted Part a. owner Thing a\n");
}

TEST_F(user_created, work_is_nothing_that_a_hook_does) {
    object* const h = hooked("h");
    forget();
    hooks.on<post_prop_set_semantic>([&](hook_call& call) {
        if (call.at != h) return true;
        EXPECT_TRUE(fw.in_semantic());
        change_everything();
        return true;
    });
    begin("outer");
    ASSERT_TRUE(h->set_property(props::number, number(1)));
    hooks.clear();
    EXPECT_FALSE(fw.in_semantic());
    const std::size_t by_hook_until = model->message_count();
    ASSERT_TRUE(h->set_property(props::number, number(2)));
    end();
    for (std::size_t i = 0; i != model->message_count(); ++i)
        EXPECT_EQ(model->message_at(i)->is_user_created(), i <= 1 || i >= by_hook_until)
            << i << ": " << described(model->message_at(i));
    EXPECT_GT(by_hook_until, 30u);
}

TEST_F(user_created, work_stays_so_on_both_sides_of_undo) {
    std::vector<bool> flags;
    const std::vector<message*> all = changed_everything();
    for (const message* each : all) flags.push_back(each->is_user_created());
    const auto expect_unchanged = [&](const char* when) {
        SCOPED_TRACE(when);
        for (std::size_t i = 0; i != all.size(); ++i)
            EXPECT_EQ(all[i]->is_user_created(), flags[i]) << described(all[i]);
    };
    fw.set_in_semantic(true);
    model->undo();
    expect_unchanged("undone inside a hook");
    fw.set_in_semantic(true);
    model->redo();
    expect_unchanged("redone inside a hook");
}

} // namespace
} // namespace kelm::test
