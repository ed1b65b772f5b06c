// What observers hear of changes of the graph, with every position and owner: at once, in undo, and in redo.
// Whole deletions are deletion_told_test; bases and hooks are inherit_told_test.
#include "tests/support/counted_value.h"
#include "tests/support/listening_world.h"

#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <functional>
#include <map>

namespace kelm::test {
namespace {

/// Writes everything that messages of the graph tell.  Objects go by the names they had at the start, as those that
/// are deleted have none.
class structure_told : public listening_world {
protected:
    structure_told() {
        ears.line = [this](message* what) { return told(what); };
    }

    object* known(object* what, const std::string& name) {
        names_[what] = name;
        return what;
    }
    object* known_part(const std::string& name, object* owner) { return known(part(name, owner), name); }
    object* known_thing(const std::string& name) { return known(thing(name), name); }

    /// Makes a change in a transaction of its own and expects three blocks; the last two again and again.
    void expect_told(const std::function<bool()>& what, const std::string& first, const std::string& undo,
                     const std::string& redo) {
        forget();
        const std::string before = dump();
        ASSERT_TRUE(change(what));
        const std::string after = dump();
        EXPECT_EQ(ears.take(), first);
        for (int round = 0; round != 2; ++round) {
            model->undo();
            EXPECT_EQ(ears.take(), undo) << "undo";
            EXPECT_EQ(dump(), before);
            model->redo();
            EXPECT_EQ(ears.take(), redo) << "redo";
            EXPECT_EQ(dump(), after);
        }
    }

    std::string name_of(object* what) const {
        if (!what) return "nobody";
        if (what == root) return "model";
        const auto at = names_.find(what);
        return at == names_.end() ? "new" : at->second;
    }

private:
    static std::string at(u32 position) { return " at " + std::to_string(position); }
    static std::string move(u32 from, u32 to) {
        return " " + std::to_string(from) + " to " + std::to_string(to);
    }

    std::string details(const message* what) const {
        if (const auto* const m = message_cast<const obj_create_message>(what))
            return "made below " + name_of(m->owner()) + " type " + std::to_string(m->object_type());
        if (const auto* const m = message_cast<const obj_pre_delete_message>(what))
            return "going below " + name_of(m->owner());
        if (const auto* const m = message_cast<const obj_delete_message>(what))
            return "gone below " + name_of(m->owner());
        if (const auto* const m = message_cast<const child_add_message>(what))
            return "+ " + name_of(m->child()) + at(m->pos());
        if (const auto* const m = message_cast<const child_pre_remove_message>(what))
            return "loses " + name_of(m->child());
        if (const auto* const m = message_cast<const child_remove_message>(what))
            return "- " + name_of(m->child()) + at(m->pos());
        if (const auto* const m = message_cast<const child_order_message>(what))
            return name_of(m->child()) + move(m->old_pos(), m->new_pos());
        if (const auto* const m = message_cast<const owner_set_message>(what))
            return "from " + name_of(m->old_owner()) + " to " + name_of(m->new_owner()) + ", is below " +
                   name_of(what->object()->owner());
        if (const auto* const m = message_cast<const inherits_add_message>(what))
            return "inherits from " + name_of(m->inherits_from());
        if (const auto* const m = message_cast<const inherits_insert_message>(what))
            return "inherits from " + name_of(m->inherits_from()) + at(m->pos());
        if (const auto* const m = message_cast<const inherits_cancel_message>(what))
            return "no more from " + name_of(m->inherits_from());
        if (const auto* const m = message_cast<const inherits_from_order_message>(what))
            return "from " + name_of(m->inherits_from()) + move(m->old_pos(), m->new_pos());
        if (const auto* const m = message_cast<const inherits_replace_message>(what))
            return "from " + name_of(m->inherits_from()) + " for " + name_of(m->old_inherits_from());
        if (const auto* const m = message_cast<const property_set_message>(what))
            return std::to_string(m->property_type()) + " " + as_text(m->old_value()) + " -> " +
                   as_text(m->new_value());
        if (const auto* const m = message_cast<const property_delete_message>(what))
            return std::to_string(m->property_type()) + " lost " + as_text(m->old_value());
        return "";
    }
    std::string told(const message* what) const {
        object* const about = what->object();
        return std::to_string(what->type()) + (what->is_first_run() ? " first " : " again ") +
               name_of(about) +
               (about->state() == state::normal ? "" : "/" + std::to_string(about->state())) + ": " +
               details(what);
    }

    std::map<object*, std::string> names_;
};

class bases_told : public structure_told {
protected:
    bases_told() { listen({a}); }
    /// Gives `to` a text, unheard.
    void give(object* to, const char* value) {
        ASSERT_TRUE(change([&] { return to->set_property(props::text, text(value)); }));
    }

    object* const a = known_thing("a");
    object* const b = known_thing("b");
    object* const c = known_thing("c");
};

} // namespace

TEST_F(structure_told, of_children_with_their_places_in_the_run_of_their_type) {
    object* const owner = known_thing("owner");
    known(thing("of another type", owner), "of another type");
    known_part("one", owner);
    object* const two = known_part("two", owner);
    known_part("three", owner);
    listen({owner});
    expect_told([&] { return owner->remove_child(two); }, "16 first owner: - two at 1\n",
                "14 again owner: + two at 1\n", "16 again owner: - two at 1\n");
    EXPECT_EQ(names_of(owner->children()), "of another type one three");
    expect_told([&] { return owner->add_child(two); }, "14 first owner: + two at 2\n",
                "16 again owner: - two at 2\n", "14 again owner: + two at 2\n");
    expect_told([&] { return owner->set_child_position(two, 0); }, "17 first owner: two 2 to 0\n",
                "17 again owner: two 0 to 2\n", "17 again owner: two 2 to 0\n");
    expect_told([&] { return owner->set_child_position(two, 0); }, "17 first owner: two 0 to 0\n",
                "17 again owner: two 0 to 0\n", "17 again owner: two 0 to 0\n");
}

TEST_F(structure_told, of_a_deleted_child_that_comes_back_to_its_place_among_its_siblings) {
    object* const owner = known_thing("owner");
    known(thing("of another type", owner), "of another type");
    known_part("one", owner);
    object* const two = known_part("two", owner);
    known_part("three", owner);
    forget();
    listen({owner});
    ASSERT_TRUE(change([&] { return fw.delete_object(two); }));
    EXPECT_EQ(ears.take(), "15 first owner: loses two\n16 first owner: - two at 1\n");
    listen({two}); // it has left its observers
    for (int round = 0; round != 2; ++round) {
        model->undo();
        EXPECT_EQ(names_of(owner->children()), "of another type one two three");
        EXPECT_EQ(ears.take(), "4 again two/1: made below owner type 0\n"
                               "14 again owner: + two at 1\n"
                               "7 again two: 1 none -> two\n");
        model->redo();
        EXPECT_EQ(names_of(owner->children()), "of another type one three");
        EXPECT_EQ(ears.take(), "5 again two: going below owner\n"
                               "15 again owner: loses two\n"
                               "10 again two: 1 lost two\n"
                               "16 again owner: - two at 1\n"
                               "6 again two/2: gone below owner\n");
    }
}

TEST_F(structure_told, of_a_creation_with_the_states_on_the_way) {
    object* const owner = known_thing("owner");
    part("one", owner);
    listen({owner});
    forget();
    object* made = nullptr;
    ASSERT_TRUE(change([&] { return (made = fw.create_object(types::part, owner)) != nullptr; }));
    EXPECT_EQ(ears.take(), "14 first owner: + new at 1\n") << "nobody can listen to the creation itself";
    listen({made});
    bool is_found = false;
    ears.meanwhile = [&](message* what) {
        if (what->object() == made) is_found = model->find_object(made->id()) == made;
    };
    for (int round = 0; round != 2; ++round) {
        model->undo();
        EXPECT_EQ(ears.take(), "16 again owner: - new at 1\n6 again new/2: gone below owner\n");
        EXPECT_TRUE(is_found) << "it leaves the ids behind that";
        EXPECT_EQ(made->state(), state::deleted);
        EXPECT_EQ(model->find_object(made->id()), nullptr);
        is_found = false;
        model->redo();
        EXPECT_EQ(ears.take(), "4 again new/1: made below owner type 0\n14 again owner: + new at 1\n");
        EXPECT_TRUE(is_found) << "it has its id before that";
        EXPECT_EQ(made->state(), state::normal);
    }
}

TEST_F(structure_told, of_another_owner) {
    object* const from = known_thing("from");
    object* const to = known_thing("to");
    known_part("before it", from);
    object* const moved = known_part("moved", from);
    listen({from, to, moved});
    expect_told([&] { return moved->set_owner(to); },
                "16 first from: - moved at 1\n14 first to: + moved at 0\n"
                "18 first moved: from from to to, is below to\n",
                "18 again moved: from to to from, is below from\n"
                "16 again to: - moved at 0\n14 again from: + moved at 1\n",
                "16 again from: - moved at 1\n14 again to: + moved at 0\n"
                "18 again moved: from from to to, is below to\n");
}

TEST_F(structure_told, of_another_owner_changes_nothing_by_itself_when_it_is_redone) {
    object* const from = known_thing("from");
    object* const to = known_thing("to");
    object* const moved = known_part("moved", from);
    listen({from, to, moved});
    ASSERT_TRUE(change([&] { return moved->set_owner(to); }));
    message* const said = model->message_at(3);
    ASSERT_EQ(said->type(), message_type::owner_set);
    model->undo();
    ears.take();
    const std::string before = dump();
    EXPECT_TRUE(said->redo());
    EXPECT_EQ(ears.take(), "18 again moved: from from to to, is below from\n");
    EXPECT_EQ(dump(), before) << "the messages of the lists do it";
}

TEST_F(structure_told, of_announcements_only_forwards) {
    object* const owner = known_thing("owner");
    object* const child = known_part("child", owner);
    ASSERT_TRUE(change([&] { return fw.delete_object(child); }));
    model->undo();
    model->redo();
    message* const going = model->message_at(1);
    message* const losing = model->message_at(2);
    ASSERT_EQ(going->type(), message_type::obj_pre_delete);
    ASSERT_EQ(losing->type(), message_type::child_pre_remove);
    listen({owner, child});
    const std::string before = dump();
    for (message* each : {going, losing}) EXPECT_TRUE(each->undo());
    EXPECT_EQ(ears.take(), "");
    for (message* each : {going, losing}) EXPECT_TRUE(each->redo());
    EXPECT_EQ(ears.take(), "5 again child/3: going below owner\n15 again owner: loses child\n");
    EXPECT_EQ(dump(), before);
}

// Values that are lost with a base are told where it goes: in undo of adding and inserting, in redo of cancelling.
TEST_F(bases_told, with_losses_in_undo_of_adding_and_redo_of_cancelling) {
    give(b, "x");
    const std::string comes = " again a: inherits from b\n7 again a: 10 none -> x\n";
    const std::string goes = "20 again a: no more from b\n10 again a: 10 lost x\n";
    {
        SCOPED_TRACE("add");
        expect_told([&] { return a->add_inherits_from(b); },
                    "19 first a: inherits from b\n7 first a: 10 none -> x\n", goes, "19" + comes);
    }
    {
        SCOPED_TRACE("cancel");
        expect_told([&] { return a->cancel_inherits_from(b); },
                    "20 first a: no more from b\n10 first a: 10 lost x\n", "19" + comes, goes);
    }
    {
        SCOPED_TRACE("insert");
        expect_told([&] { return a->insert_inherits_from(b, 0); },
                    "21 first a: inherits from b at 0\n7 first a: 10 none -> x\n", goes,
                    "21 again a: inherits from b at 0\n7 again a: 10 none -> x\n");
    }
}

TEST_F(bases_told, of_a_cancelled_one_that_comes_back_to_its_place) {
    give(b, "x");
    give(c, "y");
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b) && a->add_inherits_from(c); }));
    // Kept: it comes back as one that was added, though it stands in front.
    expect_told([&] { return a->cancel_inherits_from(b); },
                "20 first a: no more from b\n7 first a: 10 x -> y\n",
                "19 again a: inherits from b\n7 again a: 10 y -> x\n",
                "20 again a: no more from b\n7 again a: 10 x -> y\n");
}

TEST_F(bases_told, keeps_a_loss_by_undone_replacement_to_itself) {
    give(c, "y");
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b); }));
    expect_told([&] { return a->replace_inherits_from(c, b); },
                "23 first a: from c for b\n7 first a: 10 none -> y\n", "23 again a: from b for c\n",
                "23 again a: from c for b\n7 again a: 10 none -> y\n");
    give(b, "x");
    ASSERT_TRUE(change([&] { return c->delete_property(props::text); }));
    expect_told([&] { return a->replace_inherits_from(b, c); },
                "23 first a: from b for c\n7 first a: 10 none -> x\n", "23 again a: from c for b\n",
                "23 again a: from b for c\n7 again a: 10 none -> x\n");
}

TEST_F(bases_told, in_another_order_without_losses) {
    give(b, "x");
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b) && a->add_inherits_from(c); }));
    expect_told([&] { return a->set_inherits_from_position(b, 1); }, "22 first a: from b 0 to 1\n",
                "22 again a: from b 1 to 0\n", "22 again a: from b 0 to 1\n");
    give(c, "y");
    expect_told([&] { return a->set_inherits_from_position(c, 1); },
                "22 first a: from c 0 to 1\n7 first a: 10 y -> x\n",
                "22 again a: from c 1 to 0\n7 again a: 10 x -> y\n",
                "22 again a: from c 0 to 1\n7 again a: 10 y -> x\n");
}

TEST_F(bases_told, of_one_that_is_there_already_without_any_value) {
    give(b, "x");
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b) && a->add_inherits_from(c); }));
    expect_told([&] { return a->add_inherits_from(b); }, "19 first a: inherits from b\n",
                "20 again a: no more from b\n", "19 again a: inherits from b\n");
    EXPECT_EQ(names_of(a->inherits_from_list(0)), "b c") << "neither this one nor the last";
}

TEST_F(bases_told, with_values_before_the_change_is_remembered_no_longer) {
    give(b, "x");
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b); }));
    // The value of the base changes behind the link, and again behind its loss.
    expect_told([&] { return b->set_property(props::text, text("z")) && a->cancel_inherits_from(b); },
                "7 first a: 10 x -> z\n20 first a: no more from b\n10 first a: 10 lost z\n",
                "19 again a: inherits from b\n7 again a: 10 none -> z\n7 again a: 10 z -> x\n",
                "7 again a: 10 x -> z\n20 again a: no more from b\n10 again a: 10 lost z\n");
}

} // namespace kelm::test
