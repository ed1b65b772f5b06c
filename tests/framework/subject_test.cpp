// Subjects and observers that applications derive: lists in step, and what a walk does when they change.
// Objects as subjects and observers are tested with objects.
#include <kelm/subject.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <vector>

namespace kelm {
namespace {

/// Notes each call, then does what the test has told it.
class recorder final : public observer_impl {
public:
    bool update(subject* from, message* what) override {
        ++calls;
        last_subject = from;
        last_message = what;
        return react ? react() : true;
    }

    int calls = 0;
    subject* last_subject = nullptr;
    message* last_message = nullptr;
    std::function<bool()> react;
};

/// An observer that keeps no list of its own.
class bare_observer final : public observer {
public:
    bool update(subject*, message*) override {
        ++calls;
        return true;
    }
    int calls = 0;
};

class subjects : public testing::Test {
protected:
    void attach_all() {
        for (recorder* one : in_order()) told_.attach(one);
    }
    /// The recorders in the order of their addresses, which is the order of the walk.
    std::array<recorder*, 3> in_order() { return {&all_[0], &all_[1], &all_[2]}; }
    message* any_message() { return reinterpret_cast<message*>(&place_); }

    std::array<recorder, 3> all_;
    subject_impl told_;
    long place_ = 0;
};

TEST_F(subjects, attaching_twice_is_refused_and_leaves_one_entry) {
    EXPECT_TRUE(told_.attach(&all_[0]));
    EXPECT_FALSE(told_.attach(&all_[0]));
    EXPECT_EQ(told_.observers(), std::vector<observer*>{&all_[0]});
    EXPECT_EQ(all_[0].subjects(), std::vector<subject*>{&told_});
}

TEST_F(subjects, detaching_a_stranger_is_refused) {
    EXPECT_FALSE(told_.detach(&all_[0]));
    told_.attach(&all_[1]);
    EXPECT_FALSE(told_.detach(&all_[0]));
    EXPECT_FALSE(told_.detach(&all_[2]));
    EXPECT_TRUE(told_.is_attached(&all_[1]));
}

TEST_F(subjects, null_is_nobody) {
    EXPECT_FALSE(told_.attach(nullptr));
    EXPECT_FALSE(told_.is_attached(nullptr));
    EXPECT_FALSE(told_.detach(nullptr));
    EXPECT_FALSE(told_.has_observers());
}

TEST_F(subjects, lists_are_kept_in_the_order_of_addresses) {
    for (const std::size_t i : {2U, 0U, 1U}) told_.attach(&all_[i]);
    EXPECT_EQ(told_.observers(), (std::vector<observer*>{&all_[0], &all_[1], &all_[2]}));

    std::array<subject_impl, 3> others;
    for (const std::size_t i : {1U, 2U, 0U}) others[i].attach(&all_[0]);
    std::vector<subject*> expected{&others[0], &others[1], &others[2], &told_};
    std::ranges::sort(expected, std::less<>{});
    EXPECT_EQ(all_[0].subjects(), expected);
    for (subject_impl& one : others) one.detach(&all_[0]);
    EXPECT_EQ(all_[0].subjects(), std::vector<subject*>{&told_});
}

TEST_F(subjects, detaching_takes_both_entries_away) {
    attach_all();
    EXPECT_TRUE(told_.detach(&all_[1]));
    EXPECT_FALSE(told_.is_attached(&all_[1]));
    EXPECT_TRUE(all_[1].subjects().empty());
    EXPECT_EQ(told_.observers(), (std::vector<observer*>{&all_[0], &all_[2]}));
    EXPECT_TRUE(told_.detach(&all_[0]));
    EXPECT_TRUE(told_.detach(&all_[2]));
    EXPECT_TRUE(told_.observers().empty());
    EXPECT_FALSE(told_.has_observers());
    EXPECT_TRUE(told_.attach(&all_[1])) << "an emptied list takes entries again";
}

TEST_F(subjects, an_observer_without_a_list_of_its_own_is_told_as_well) {
    bare_observer plain;
    EXPECT_TRUE(told_.attach(&plain));
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_EQ(plain.calls, 1);
    EXPECT_TRUE(told_.detach(&plain));
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_EQ(plain.calls, 1);
}

TEST_F(subjects, with_nobody_attached_telling_succeeds) { EXPECT_TRUE(told_.notify(any_message())); }

TEST_F(subjects, each_is_told_once_with_subject_and_message) {
    attach_all();
    EXPECT_TRUE(told_.notify(any_message()));
    for (recorder* one : in_order()) {
        EXPECT_EQ(one->calls, 1);
        EXPECT_EQ(one->last_subject, &told_);
        EXPECT_EQ(one->last_message, any_message());
    }
}

TEST_F(subjects, the_default_update_says_yes) {
    observer_impl quiet;
    EXPECT_TRUE(quiet.update(&told_, nullptr));
    EXPECT_TRUE(quiet.subjects().empty());
    told_.attach(&quiet);
    EXPECT_TRUE(told_.notify(nullptr));
    told_.detach(&quiet);
}

TEST_F(subjects, one_that_an_earlier_one_detaches_is_passed_over) {
    attach_all();
    all_[0].react = [&] { return told_.detach(&all_[1]); };
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_EQ(all_[0].calls, 1);
    EXPECT_EQ(all_[1].calls, 0);
    EXPECT_EQ(all_[2].calls, 1);
}

TEST_F(subjects, one_that_an_earlier_one_detaches_and_deletes_is_not_touched) {
    // The highest address of the lot is told last, whoever that is.
    std::vector<std::unique_ptr<recorder>> owned;
    for (int i = 0; i != 3; ++i) owned.push_back(std::make_unique<recorder>());
    std::ranges::sort(owned, [](const auto& a, const auto& b) { return std::less<>{}(a.get(), b.get()); });
    for (const auto& one : owned) told_.attach(one.get());
    owned[0]->react = [&] {
        told_.detach(owned[1].get());
        owned[1].reset();
        return true;
    };
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_EQ(owned[2]->calls, 1);
    told_.detach(owned[0].get());
    told_.detach(owned[2].get());
}

TEST_F(subjects, an_observer_may_detach_itself_and_everybody) {
    attach_all();
    all_[0].react = [&] {
        for (recorder* one : in_order()) told_.detach(one);
        return true;
    };
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_EQ(all_[1].calls + all_[2].calls, 0);
    EXPECT_FALSE(told_.has_observers());
}

TEST_F(subjects, one_detached_and_attached_again_meanwhile_is_told) {
    attach_all();
    all_[0].react = [&] { return told_.detach(&all_[2]) && told_.attach(&all_[2]); };
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_EQ(all_[2].calls, 1);
}

TEST_F(subjects, one_attached_meanwhile_hears_only_the_next_message) {
    for (const bool newcomer_is_last : {true, false}) {
        SCOPED_TRACE(newcomer_is_last);
        recorder& old = newcomer_is_last ? all_[0] : all_[2];
        recorder& newcomer = all_[1];
        old.calls = newcomer.calls = 0;
        told_.attach(&old);
        old.react = [&] {
            told_.attach(&newcomer);
            return true;
        };
        EXPECT_TRUE(told_.notify(nullptr));
        EXPECT_EQ(newcomer.calls, 0);
        EXPECT_TRUE(told_.notify(nullptr));
        EXPECT_EQ(newcomer.calls, 1);
        told_.detach(&old);
        told_.detach(&newcomer);
    }
}

TEST_F(subjects, a_refusal_ends_the_walk) {
    attach_all();
    all_[1].react = [] { return false; };
    EXPECT_FALSE(told_.notify(nullptr));
    EXPECT_EQ(all_[0].calls, 1);
    EXPECT_EQ(all_[1].calls, 1);
    EXPECT_EQ(all_[2].calls, 0);
}

TEST_F(subjects, a_message_inside_a_message_is_told_at_once) {
    attach_all();
    long other_place = 0;
    auto* const inner = reinterpret_cast<message*>(&other_place);
    std::vector<message*> heard_last;
    all_[0].react = [&] {
        if (all_[0].last_message == inner) return true;
        return told_.notify(inner);
    };
    all_[2].react = [&] {
        heard_last.push_back(all_[2].last_message);
        return true;
    };
    EXPECT_TRUE(told_.notify(any_message()));
    EXPECT_EQ(heard_last, (std::vector<message*>{inner, any_message()}));
}

TEST_F(subjects, more_observers_than_fit_on_the_stack_are_all_told) {
    std::vector<recorder> many(100);
    for (recorder& one : many) told_.attach(&one);
    EXPECT_TRUE(told_.notify(nullptr));
    EXPECT_TRUE(std::ranges::all_of(many, [](const recorder& one) { return one.calls == 1; }));
    for (recorder& one : many) EXPECT_TRUE(told_.detach(&one));
    EXPECT_FALSE(told_.has_observers());
}

} // namespace
} // namespace kelm
