// Objects as subjects and observers: what is recorded, what undo takes back, and the hooks behind an update.
// The lists and the walk themselves are tested without objects.
#include "tests/support/world.h"

#include "object/object_impl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelm::test {
namespace {

using id_list = std::vector<u32>;

observer* as_observer(object* what) { return dynamic_cast<observer*>(what); }
subject* as_subject(object* what) { return dynamic_cast<subject*>(what); }

id_list observer_ids(object* of) {
    const std::set<u32>* const ids = impl_of(of)->observer_ids();
    return ids ? id_list(ids->begin(), ids->end()) : id_list{};
}

class object_observer : public world {
protected:
    /// Does `what` in a transaction.  \returns its answer
    template <class What>
    bool done(What what) {
        begin();
        const bool answer = what();
        end();
        return answer;
    }

    void expect_attached(bool is) {
        EXPECT_EQ(told->observers(),
                  is ? std::vector<observer*>{as_observer(hearing)} : std::vector<observer*>{});
        EXPECT_EQ(hearing->subjects(),
                  is ? std::vector<subject*>{as_subject(told)} : std::vector<subject*>{});
        EXPECT_EQ(observer_ids(told), is ? id_list{hearing->id()} : id_list{});
    }

    object* const told = thing("told");
    object* const hearing = hooked("hearing");
};

TEST_F(object_observer, attaching_an_object_is_recorded_and_can_be_undone) {
    EXPECT_TRUE(done([&] { return told->attach(as_observer(hearing)); }));
    EXPECT_EQ(message_types(), "1 24 2");
    EXPECT_EQ(model->message_at(1)->object(), told);
    expect_attached(true);
    model->undo();
    expect_attached(false);
    model->redo();
    expect_attached(true);
}

TEST_F(object_observer, detaching_an_object_is_recorded_and_can_be_undone) {
    done([&] { return told->attach(as_observer(hearing)); });
    model->clear_history();
    for (const bool as_object : {false, true}) {
        SCOPED_TRACE(as_object);
        EXPECT_TRUE(done(
            [&] { return as_object ? told->detach_object(hearing) : told->detach(as_observer(hearing)); }));
        EXPECT_EQ(message_types(), "1 25 2");
        expect_attached(false);
        model->undo();
        expect_attached(true);
        model->redo();
        expect_attached(false);
        model->undo();
        model->clear_history();
    }
}

TEST_F(object_observer, nothing_is_recorded_where_nothing_changes) {
    object* const stranger = thing("stranger");
    done([&] { return told->attach(as_observer(hearing)); });
    model->clear_history();
    EXPECT_FALSE(done([&] { return told->attach(as_observer(hearing)); }));
    EXPECT_FALSE(done([&] { return told->detach(as_observer(stranger)); }));
    EXPECT_FALSE(done([&] { return told->detach_object(stranger); }));
    EXPECT_FALSE(
        done([&] { return told->attach(nullptr) || told->detach(nullptr) || told->detach_object(nullptr); }));
    EXPECT_EQ(message_types(), "");
    expect_attached(true);
}

TEST_F(object_observer, nobody_is_told_that_an_object_is_attached) {
    recorder listener;
    listener.watch(told);
    done([&] { return told->attach(as_observer(hearing)) && told->detach(as_observer(hearing)); });
    EXPECT_EQ(message_types(), "1 24 25 2");
    EXPECT_EQ(listener.take(), "");
}

TEST_F(object_observer, an_observer_that_is_no_object_is_not_recorded) {
    observer_impl plain;
    EXPECT_TRUE(done([&] { return told->attach(&plain); }));
    EXPECT_EQ(message_types(), "");
    EXPECT_EQ(told->observers(), std::vector<observer*>{&plain});
    EXPECT_TRUE(observer_ids(told).empty());
    EXPECT_TRUE(done([&] { return told->detach(&plain); }));
    EXPECT_EQ(message_types(), "");
    EXPECT_TRUE(told->observers().empty());
}

TEST_F(object_observer, an_object_hears_through_its_hooks) {
    done([&] { return told->attach(as_observer(hearing)); });
    int calls = 0;
    hooks.on<update_semantic>([&](hook_call& call) {
        ++calls;
        EXPECT_EQ(call.at, hearing);
        EXPECT_EQ(call.told, last_message());
        EXPECT_TRUE(fw.in_semantic());
        return true;
    });
    EXPECT_TRUE(done([&] {
        const bool set = told->set_property(props::text, text("x"));
        EXPECT_FALSE(fw.in_semantic()) << "put back";
        return set;
    }));
    EXPECT_EQ(calls, 1);
}

TEST_F(object_observer, the_mark_is_put_back_as_it_was) {
    done([&] { return told->attach(as_observer(hearing)); });
    begin();
    fw.set_in_semantic(true);
    EXPECT_TRUE(as_observer(hearing)->update(as_subject(told), nullptr));
    EXPECT_TRUE(fw.in_semantic());
    fw.set_in_semantic(false);
    end();
}

TEST_F(object_observer, a_type_without_hooks_says_yes) {
    object* const deaf = thing("deaf");
    EXPECT_TRUE(as_observer(deaf)->update(as_subject(told), nullptr));
    EXPECT_FALSE(fw.in_semantic());
}

TEST_F(object_observer, a_refusal_inside_a_transaction_rolls_it_back) {
    done([&] { return told->attach(as_observer(hearing)); });
    model->clear_history();
    int calls = 0;
    // The rollback tells of what it takes back: only the first answer is a refusal.
    hooks.on<update_semantic>([&](hook_call&) { return ++calls > 1; });
    begin();
    EXPECT_FALSE(told->set_property(props::text, text("x")));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_FALSE(fw.in_semantic()) << "the rollback has cleared it";
    EXPECT_FALSE(told->defines_property(props::text));
    EXPECT_EQ(message_types(), "");
}

TEST_F(object_observer, a_refusal_outside_a_transaction_leaves_change_and_mark) {
    done([&] { return told->attach(as_observer(hearing)); });
    model->clear_history();
    hooks.refuse<update_semantic>();
    EXPECT_FALSE(told->set_property(props::text, text("x")));
    EXPECT_TRUE(fw.in_semantic());
    EXPECT_EQ(as_text(told->get_property(props::text)), "x");
}

} // namespace
} // namespace kelm::test
