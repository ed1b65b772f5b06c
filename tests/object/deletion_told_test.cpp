// What a deletion tells, in order, the first time, undone and redone.
// What it does, and when it is refused, is deletion_test.
#include "tests/object/hook_lines.h"

namespace kelm::test {

namespace {

class deletion_told_test : public world {
protected:
    recorder heard;
};

} // namespace

TEST_F(deletion_told_test, of_one_object) {
    object* const a = thing("a");
    heard.watch(root);
    heard.watch(a);
    const std::string before = dump();
    begin();
    EXPECT_TRUE(fw.delete_object(a));
    end();
    EXPECT_EQ(heard.take(), "1 first  Begin Transaction - t\n"
                            "5 first Pre Delete Thing a\n"
                            "15 first Pre Remove Child - Thing a of Model \n"
                            "10 first Deleted Name of Thing \n"
                            "16 first Remove Child - Thing  from Model \n"
                            "6 first Deleted Thing  owner Model \n"
                            "2 first  End Transaction - t\n");
    EXPECT_TRUE(a->observers().empty()); // plain observers have left it
    model->undo();
    EXPECT_EQ(dump(), before);
    EXPECT_TRUE(a->observers().empty()); // and nothing brings them back
}

TEST_F(deletion_told_test, of_a_subtree_with_all_its_links) {
    object* const top = thing("top");
    object* const base = thing("base");
    object* const heir = thing("heir");
    object* const friend_of = thing("friend");
    object* const watcher = thing("watcher");
    part("two", top);
    object* const low = thing("low", top);
    part("deep", low);
    begin();
    top->set_property(props::number, number(7));
    top->set_property(props::text, text("x"));
    top->add_inherits_from(base);
    heir->add_inherits_from(top);
    friend_of->set_property(props::reference, reference(top));
    vector_property list;
    friend_of->set_property(props::list, list);
    friend_of->append_vector_element(props::list, reference(top));
    friend_of->append_vector_element(props::list, number(1));
    top->attach(dynamic_cast<observer*>(watcher));
    watcher->attach(dynamic_cast<observer*>(top));
    end();
    model->clear_history();
    const std::string before = dump();
    const std::vector<object*> every{root,
                                     top,
                                     base,
                                     heir,
                                     friend_of,
                                     watcher,
                                     low,
                                     top->child_at(types::part, 0),
                                     low->child_at(types::part, 0)};
    std::map<object*, std::string> names;
    for (object* each : every) names[each] = own_name(each);
    heard.line = [&](message* what) {
        const std::string line = std::to_string(what->type()) + " " + names[what->object()];
        if (what->type() != message_type::child_remove) return line;
        return line + " " + names[message_cast<child_remove_message>(what)->child()];
    };
    for (object* each : every) heard.watch(each);
    begin();
    heard.take();
    EXPECT_TRUE(fw.delete_object(top));
    EXPECT_EQ(heard.take(), "5 top\n15 model\n"
                            "5 low\n15 top\n"
                            "5 deep\n15 low\n10 deep\n16 low deep\n6 deep\n"
                            "10 low\n16 top low\n6 low\n"
                            "5 two\n15 top\n10 two\n16 top two\n6 two\n"
                            "10 top\n10 top\n10 heir\n10 top\n10 heir\n" // the heir has a name of its own
                            "20 top\n10 top\n20 heir\n"                  // with the base goes its name
                            "16 model top\n"
                            "10 friend\n11 friend\n"
                            "6 top\n");
    end();
    EXPECT_EQ(message_types(),
              "1 5 15 5 15 5 15 10 16 6 10 16 6 5 15 10 16 6 10 10 10 20 20 25 16 10 11 6 25 2");
    // Only the first of them is the caller's own doing.
    for (std::size_t i = 2; i + 1 < model->message_count(); ++i)
        EXPECT_FALSE(model->message_at(i)->is_user_created()) << i;
    EXPECT_TRUE(model->message_at(1)->is_user_created());
    EXPECT_FALSE(fw.in_semantic());
    expect_undone_and_redone(before);
}

TEST_F(deletion_told_test, of_vectors_that_refer_to_what_goes) {
    object* const a = thing("a");
    object* const holder = thing("holder");
    const auto holds = [&](std::vector<object*> targets) {
        vector_property list;
        for (object* each : targets) list.elements.push_back(new property<object*>(each));
        holder->set_property(props::list, list);
    };
    struct row {
        const char* why;
        std::vector<object*> targets;
        const char* messages;
    };
    for (const row& r :
         {row{"twice, and nothing else: the property goes as well", {a, a}, "5 15 10 16 11 11 10 6"},
          row{"another element keeps the vector", {a, root, a}, "5 15 10 16 11 11 6"},
          row{"null is no reference", {nullptr, a}, "5 15 10 16 11 6"}}) {
        SCOPED_TRACE(r.why);
        begin();
        holds(r.targets);
        end();
        model->clear_history();
        const std::string before = dump();
        begin();
        EXPECT_TRUE(fw.delete_object(a));
        end();
        EXPECT_EQ(message_types(), std::string("1 ") + r.messages + " 2");
        expect_undone_and_redone(before);
        model->undo();
    }
}

TEST_F(deletion_told_test, undone_goes_backwards_with_inverse_messages) {
    object* const a = thing("a");
    begin();
    a->attach(dynamic_cast<observer*>(root));
    end();
    model->clear_history();
    begin();
    EXPECT_TRUE(fw.delete_object(a));
    end();
    heard.watch(a);
    heard.watch(root);
    std::vector<u32> states;
    heard.meanwhile = [&](message*) { states.push_back(a->state()); };
    heard.line = [](message* what) {
        return std::to_string(what->type()) + (what->is_first_run() ? " first" : " again") + " " +
               std::to_string(what->object()->id());
    };
    const std::string id = std::to_string(a->id());
    model->undo();
    EXPECT_EQ(heard.take(), "1 again 1\n" // the inverse of the end
                            "4 again " +
                                id + "\n14 again 1\n7 again " + id + "\n2 again 1\n");
    EXPECT_EQ(states, (std::vector<u32>{state::deleted, state::being_created, state::normal, state::normal,
                                        state::normal}));
    states.clear();
    model->redo();
    EXPECT_EQ(heard.take(), "1 again 1\n5 again " + id + "\n15 again 1\n10 again " + id +
                                "\n16 again 1\n6 again " + id + "\n2 again 1\n");
    EXPECT_EQ(states, (std::vector<u32>{0, 0, 0, 0, 0, state::being_deleted, state::deleted}));
}

TEST_F(deletion_told_test, of_a_creation_taken_back) {
    heard.watch(root);
    begin();
    object* const a = fw.create_object(types::thing, root);
    end();
    heard.watch(a);
    EXPECT_EQ(heard.take(), "1 first  Begin Transaction - t\n14 first Added Thing  of Model \n"
                            "2 first  End Transaction - t\n");
    std::vector<u32> states;
    heard.meanwhile = [&](message* what) {
        if (what->object() == a) states.push_back(a->state());
    };
    model->undo();
    EXPECT_EQ(heard.take(), "1 again  Begin Transaction - \n16 again Remove Child - Thing  from Model \n"
                            "6 again Deleted Thing  owner Model \n2 again  End Transaction - \n");
    EXPECT_EQ(a->state(), state::deleted);
    EXPECT_EQ(model->find_object(a->id()), nullptr);
    model->redo();
    EXPECT_EQ(heard.take(),
              "1 again  Begin Transaction - t\n4 again Created Thing:\n14 again Added Thing  of Model \n"
              "2 again  End Transaction - t\n");
    EXPECT_EQ(states, (std::vector<u32>{state::being_deleted, state::being_created}));
    EXPECT_EQ(a->state(), state::normal);
    EXPECT_EQ(model->find_object(a->id()), a);
}

TEST_F(deletion_told_test, describes_what_is_deleted) {
    object* const owner = thing("owner");
    object* const child = part("child", owner);
    begin();
    fw.delete_object(owner);
    end();
    std::string text;
    const auto described = [&](u32 type, const object* about) {
        for (std::size_t i = 0; i != model->message_count(); ++i) {
            message* const each = model->message_at(i);
            const auto* const removed = message_cast<child_remove_message>(each);
            if (each->type() == type && (removed ? removed->child() : each->object()) == about)
                return each->to_string(text);
        }
        return std::string{"none"};
    };
    EXPECT_EQ(described(message_type::child_remove, child),
              "Remove Child - type (deleted) name (deleted) from type (deleted) name (deleted)");
    EXPECT_EQ(described(message_type::child_remove, owner),
              "Remove Child - type (deleted) name (deleted) from Model ");
    EXPECT_EQ(described(message_type::obj_delete, owner), "Deleted Thing  owner Model ");
    EXPECT_EQ(described(message_type::obj_delete, child), "Deleted Part  owner  deleted"); // Kept: two blanks
}

} // namespace kelm::test
