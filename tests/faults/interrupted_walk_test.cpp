// An undo or redo that memory runs out for, also for taking it back: what comes next takes it back first.
// That a failed walk is otherwise taken back at once is shown by memory_test.
#include "tests/faults/failing_memory.h"
#include "tests/support/consistency.h"
#include "tests/support/world.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <optional>
#include <sstream>
#include <vector>

namespace kelm::test {
namespace {

constexpr u32 made_by_user = 990000; ///< a user-defined property

/// From the first message that it hears on there is no memory, as long as it lives.
class shortage_once_told final : public observer_impl {
public:
    bool update(subject*, message*) override {
        if (!memory_)
            memory_.emplace(memory_plan{.until_failure = 1, .stays_exhausted = true, .only_of_size = 0});
        return true;
    }

private:
    std::optional<failing_memory> memory_;
};

/// A model with two transactions behind it.  A walk of the second gets stuck in its midst, behind a change of every
/// sort: an observer is taken away there and another comes, and neither can be put back without memory.
struct stage : world {
    using world::dump;
    using world::fw;
    using world::model;
    using world::root;

    stage()
        : a(hooked("a")),
          b(hooked("b")),
          c(hooked("c")),
          d(hooked("d")),
          from(hooked("from")),
          owner(hooked("owner")) {
        begin();
        from->attach(as_observer(d));
        owner->set_property(props::reference, reference(a));
        end();
        child = part("child", owner);
        model->clear_history();
        begin("first");
        a->set_property(props::number, number(1));
        end();
    }
    void TestBody() override {}

    static observer* as_observer(object* what) { return dynamic_cast<observer*>(what); }
    bool is_watched(object* what, object* by) const {
        return dynamic_cast<subject*>(what)->is_attached(as_observer(by));
    }
    meta_object* type() const { return model->meta_model()->find_meta_object(types::thing); }
    /// Everything in the model, its messages, and whether its types have the new property.
    std::string state() const {
        const meta_property* const made_property = type()->find_property(made_by_user);
        return dump() + history() + (made_property ? made_property->name() : "no property");
    }

    void change_much() {
        vector_property two;
        for (const char* each : {"one", "two"}) two.elements.push_back(new property<std::string>(each));
        a->set_property(props::list, two);
        a->set_property(props::text, text("second"));
        a->set_property_not_inheritable(props::real, true);
        a->add_inherits_from(b);
        a->add_inherits_from(c);
        made = fw.create_object(types::part, a);
        child->set_owner(a);
        c->attach(as_observer(a));
        model->add_user_defined_property(types::thing, "made", data_type::string, "", made_by_user);
    }
    void detach_and_attach() {
        from->detach(as_observer(d));
        from->attach(as_observer(b));
    }
    /// Makes the second transaction, such that a walk gets stuck behind change_much().
    void prepare(bool for_undo) {
        begin("second");
        if (for_undo) detach_and_attach();
        if (!for_undo) change_much();
        from->set_property(props::number, number(2)); // heard of
        if (for_undo) change_much();
        if (!for_undo) detach_and_attach();
        end();
        model->undo(); // the redo side has room from here on
        if (for_undo) model->redo();
    }
    /// Has memory run out as soon as who observes `from` hears of it.  \returns whether the walk failed
    bool fails(bool is_undo) {
        bool failed = false;
        shortage_once_told shortage;
        from->attach(&shortage);
        try {
            is_undo ? model->undo() : model->redo();
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        from->detach(&shortage);
        return failed;
    }
    /// \returns whether the walk failed, and stopped halfway
    bool gets_stuck(bool is_undo) {
        const std::string before = dump();
        return fails(is_undo) && dump() != before;
    }

    object* a;
    object* b;
    object* c;
    object* d;
    object* from;
    object* owner;
    object* child = nullptr;
    object* made = nullptr; ///< by the second transaction
};

struct way {
    const char* why;
    bool is_undo;
};
constexpr way ways[] = {{"undo", true}, {"redo", false}};

/// Runs something without memory.  \returns whether that was told, by an exception or a false
bool is_refused_without_memory(const std::function<bool()>& what) {
    const failing_memory memory{{.until_failure = 1, .stays_exhausted = true, .only_of_size = 0}};
    try {
        return !what();
    } catch (const std::bad_alloc&) {
        return true;
    }
}

/// What changes a model, or its history.
struct change_row {
    const char* why;
    bool (*make)(stage&);
};

const change_row changes[] = {
    {"a value", [](stage& s) { return s.a->set_property(props::text, text("x")); }},
    {"a value that is there in one of the two states",
     [](stage& s) { return s.a->delete_property(props::text); }},
    {"an element behind all others",
     [](stage& s) { return s.a->append_vector_element(props::list, text("three")); }},
    {"an element that goes", [](stage& s) { return s.a->delete_vector_element(props::list, 0); }},
    {"an element", [](stage& s) { return s.a->insert_vector_element(props::list, text("three"), 2); }},
    {"another element",
     [](stage& s) { return s.a->set_vector_element(props::list, text("two and a half"), 1); }},
    {"elements change places", [](stage& s) { return s.a->move_vector_element(props::list, 0, 1); }},
    {"a mark", [](stage& s) { return s.a->set_property_not_inheritable(props::real, true); }},
    {"no mark", [](stage& s) { return s.a->set_property_not_inheritable(props::real, false); }},
    {"a refresh",
     [](stage& s) {
         const property<std::string> now = text("now");
         return s.a->refresh_property(props::text, &now, nullptr);
     }},
    {"a base", [](stage& s) { return s.a->add_inherits_from(s.b); }},
    {"a base at a place", [](stage& s) { return s.a->insert_inherits_from(s.d, 1); }},
    {"a base that is there in one of the two states",
     [](stage& s) { return s.a->insert_inherits_from(s.b, 0); }},
    {"a base is replaced", [](stage& s) { return s.a->replace_inherits_from(s.d, s.b); }},
    {"a base at a place is replaced", [](stage& s) { return s.a->replace_inherits_from_at(s.d, 1); }},
    {"a base moves", [](stage& s) { return s.a->set_inherits_from_position(s.c, 0); }},
    {"a base goes", [](stage& s) { return s.a->cancel_inherits_from(s.b); }},
    {"all bases go", [](stage& s) { return s.a->cancel_all_inherits_from(); }},
    {"an object comes", [](stage& s) { return s.fw.create_object(types::part, s.root) != nullptr; }},
    {"an object comes below one of the second transaction",
     [](stage& s) { return s.fw.create_object(types::thing, s.made) != nullptr; }},
    {"an object goes", [](stage& s) { return s.fw.delete_object(s.a); }},
    {"an object of the second transaction goes", [](stage& s) { return s.fw.delete_object(s.made); }},
    {"objects go",
     [](stage& s) {
         return s.fw.delete_objects({s.made, s.b});
     }},
    {"a child comes", [](stage& s) { return s.b->add_child(s.made); }},
    {"a child goes", [](stage& s) { return s.a->remove_child(s.child); }},
    {"a child goes from where it was", [](stage& s) { return s.owner->remove_child(s.child); }},
    {"all children go", [](stage& s) { return s.a->remove_children(nullptr); }},
    {"a child has another place", [](stage& s) { return s.a->set_child_position(s.child, 0); }},
    {"an owner", [](stage& s) { return s.child->set_owner(s.b); }},
    {"an observer comes", [](stage& s) { return s.c->attach(stage::as_observer(s.d)); }},
    {"the very observer comes", [](stage& s) { return s.c->attach(stage::as_observer(s.a)); }},
    {"an observer goes", [](stage& s) { return s.c->detach(stage::as_observer(s.a)); }},
    {"the other observer goes", [](stage& s) { return s.from->detach_object(s.d); }},
    {"a user-defined property of the name",
     [](stage& s) {
         return s.model->add_user_defined_property(types::thing, "made", data_type::string, "", 990001) !=
                nullptr;
     }},
    {"its removal",
     [](stage& s) { return s.model->remove_user_defined_property(types::thing, made_by_user); }},
    {"a transaction",
     [](stage& s) {
         return s.model->begin_transaction("third") && s.a->set_property(props::text, text("x")) &&
                s.model->end_transaction();
     }},
    {"an end without a begin", [](stage& s) { return s.model->end_transaction() != nullptr; }},
    {"a change with a transaction of its own",
     [](stage& s) { return s.fw.set_property_transacted(s.a, props::text, text("x")); }},
    {"a guard",
     [](stage& s) {
         transaction_object guard{s.model, "guard"};
         const bool passed = guard.is_open() && s.a->set_property(props::text, text("x"));
         guard.commit();
         return passed;
     }},
    {"undo", [](stage& s) { return s.model->undo(), true; }},
    {"redo", [](stage& s) { return s.model->redo(), true; }},
    {"the last transaction is rolled back",
     [](stage& s) { return s.model->rollback_last_transaction(), true; }},
    {"all is rolled back", [](stage& s) { return s.model->rollback_transaction_all(), true; }},
    {"a limit", [](stage& s) { return s.model->set_undo_levels(1), true; }},
    {"the history is forgotten", [](stage& s) { return s.model->clear_history(), true; }},
};

/// \returns the states on all the way back and forth again
std::string past(stage& s) {
    std::string out;
    s.model->rollback_transaction_all();
    while (s.model->can_undo()) s.model->undo(), out += s.dump();
    while (s.model->can_redo()) s.model->redo(), out += s.dump();
    return out;
}

TEST(interrupted_walk, is_taken_back_before_any_change) {
    for (const way& each : ways)
        for (const change_row& row : changes) {
            SCOPED_TRACE(std::string{each.why} + ", " + row.why);
            stage stuck;
            stage twin; // nothing has failed
            for (stage* const one : {&stuck, &twin}) one->prepare(each.is_undo);
            ASSERT_TRUE(stuck.gets_stuck(each.is_undo));
            EXPECT_EQ(row.make(stuck), row.make(twin));
            EXPECT_EQ(stuck.state(), twin.state());
            EXPECT_EQ(stuck.model->in_transaction(), twin.model->in_transaction());
            EXPECT_EQ(broken_links(*stuck.model), "");
            EXPECT_EQ(past(stuck), past(twin));
            EXPECT_EQ(stuck.state(), twin.state());
        }
}

TEST(interrupted_walk, refuses_changes_as_long_as_it_cannot_be_taken_back) {
    for (const way& each : ways)
        for (const change_row& row : changes) {
            SCOPED_TRACE(std::string{each.why} + ", " + row.why);
            stage stuck;
            stuck.prepare(each.is_undo);
            const std::string whole = stuck.state();
            ASSERT_TRUE(stuck.gets_stuck(each.is_undo));
            const std::string half = stuck.state();
            EXPECT_TRUE(is_refused_without_memory([&] { return row.make(stuck); }));
            EXPECT_EQ(stuck.state(), half);
            stuck.model->rollback_transaction_all();
            EXPECT_EQ(stuck.state(), whole) << "nothing is lost";
        }
}

// What they speak of is the log as it stands, whose newest message ends nothing.
TEST(interrupted_walk, is_no_transaction_and_offers_nothing_to_undo_or_redo) {
    for (const way& each : ways) {
        SCOPED_TRACE(each.why);
        stage s;
        s.prepare(each.is_undo);
        ASSERT_TRUE(s.gets_stuck(each.is_undo));
        EXPECT_FALSE(s.model->in_transaction());
        EXPECT_FALSE(s.model->can_undo());
        EXPECT_FALSE(s.model->can_redo());
        EXPECT_EQ(s.model->undo_name() + s.model->redo_name(), "");
        std::ostringstream out;
        EXPECT_FALSE(s.model->write(&out, true, 0, false, nullptr)) << "half a transaction is not stored";
        s.model->rollback_transaction_all();
        EXPECT_EQ(s.model->undo_name(), each.is_undo ? "second" : "first");
        EXPECT_EQ(s.model->redo_name(), each.is_undo ? "" : "second");
        EXPECT_TRUE(s.model->write(&out, true, 0, false, nullptr));
    }
}

// What it asks of the model would be out of date behind the taking back.
TEST(interrupted_walk, inside_a_change_refuses_the_change) {
    stage s;
    s.prepare(true);
    const std::string whole = s.state();
    hook_program::instance().on<pre_prop_set_semantic>([&](hook_call&) {
        EXPECT_TRUE(s.gets_stuck(true));
        return true;
    });
    EXPECT_THROW(s.d->set_property(props::text, text("x")), std::bad_alloc);
    hook_program::instance().clear();
    EXPECT_FALSE(s.d->defines_property(props::text));
    s.model->rollback_transaction_all();
    EXPECT_EQ(s.state(), whole);
}

// The property goes by that, and with it what the caller has in hand.
TEST(interrupted_walk, is_taken_back_before_an_attribute_of_a_property_is_set) {
    const auto set_default = [](stage& s) {
        return s.model->set_user_defined_property_attribute(s.type(), s.type()->find_property(made_by_user),
                                                            attribute_id::default_value, text("default"));
    };
    stage s;
    s.prepare(false);
    const std::string whole = s.state();
    ASSERT_TRUE(s.gets_stuck(false));
    EXPECT_TRUE(is_refused_without_memory([&] { return set_default(s); }));
    EXPECT_FALSE(set_default(s)) << "there is none any more";
    EXPECT_EQ(s.state(), whole);
    s.model->redo();
    EXPECT_TRUE(set_default(s));
}

TEST(interrupted_walk, does_not_keep_its_model_from_being_closed) {
    stage s;
    s.prepare(true);
    ASSERT_TRUE(s.gets_stuck(true));
    EXPECT_FALSE(is_refused_without_memory([&] { return s.fw.delete_object(s.root); }));
    s.model = nullptr;
}

/// The first allocation behind the first message fails; at the second message it meddles.
class meddler final : public observer_impl {
public:
    explicit meddler(std::function<void()> meddle) : meddle_(std::move(meddle)) {}
    bool update(subject*, message*) override {
        if (++told_ == 1)
            memory_.emplace(memory_plan{.until_failure = 1, .stays_exhausted = false, .only_of_size = 0});
        if (told_ != 2) return true;
        memory_.reset();
        meddle_();
        return true;
    }

private:
    std::function<void()> meddle_;
    std::optional<failing_memory> memory_;
    int told_ = 0;
};

// Nobody may change anything then.  Where somebody does, what was walked is taken back, and no more than that.
TEST(taking_back, ends_where_who_hears_of_it_forgets_the_history_and_begins_anew) {
    stage s;
    s.model->begin_transaction("walked");
    s.a->set_property(props::text, text("x")); // told when it is redone, and when that is taken back
    s.c->attach(stage::as_observer(s.a));      // takes memory
    s.model->end_transaction();
    s.model->undo();
    meddler who{[&] {
        s.model->clear_history();
        s.model->begin_transaction("own");
        s.b->set_property(props::text, text("own"));
        s.b->set_property(props::number, number(5));
    }};
    s.a->attach(&who);
    EXPECT_THROW(s.model->redo(), std::bad_alloc);
    s.a->detach(&who);
    EXPECT_FALSE(s.a->defines_property(props::text)) << "taken back";
    EXPECT_EQ(as_text(s.b->get_property(props::number)), "5");
    EXPECT_TRUE(s.model->in_transaction());
    EXPECT_FALSE(s.model->can_redo());
    EXPECT_TRUE(s.model->end_transaction());
    s.model->undo();
    EXPECT_FALSE(s.b->defines_property(props::text));
    EXPECT_TRUE(s.model->can_redo());
}

} // namespace
} // namespace kelm::test
