// What is deliberately wrong is caught, each by its law; and what is odd but right is not.
// How a caught history is cut is cutting_test.cpp.
#include "tests/testing/bookshelf.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace kelm::bookshelf {

namespace {

using kelm::testing::law;
using kelm::testing::law_options;
using kelm::testing::law_report;
using kelm::testing::law_set;

property<int> number(int value) { return property<int>{value}; }
bool lives(const object* what) { return what->state() == state::normal; }

/// Changes an element that has been put in, by the message that tells of it.
bool change_silently(object* of, u32) {
    const kelm::model& in = *of->model();
    for (std::size_t i = 0; i != in.message_count(); ++i) {
        const auto* const said = message_cast<property_insert_vec_prop_message>(in.message_at(i));
        if (!said || said->real_owner() != of) continue;
        auto* const raw = const_cast<abstract_property*>(said->raw_value());
        auto* const target = dynamic_cast<property<object*>*>(raw);
        if (target && target->value) target->value = of->owner();
    }
    return true;
}

class wrong_hooks : public ::testing::Test {
protected:
    wrong_hooks() { planted::clear(); }
    ~wrong_hooks() override { planted::clear(); }

    /// \returns what is told when these laws are held alone
    static law_report held_alone(law which) { return hold(law_set::none().with(which), {.histories = 5000}); }
    static void expect_caught(law by, const char* what) {
        const law_report report = held_alone(by);
        EXPECT_FALSE(report.holds) << report.to_string();
        EXPECT_EQ(report.broken, by) << report.to_string();
        EXPECT_THAT(report.what, ::testing::HasSubstr(what)) << report.to_string();
    }
};

} // namespace

TEST_F(wrong_hooks, are_not_there_in_an_application_without_any) {
    const law_report report = hold(law_set::all());
    EXPECT_TRUE(report.holds) << report.to_string();
    EXPECT_EQ(report.histories, 500U);
    EXPECT_GT(report.operations, 10000U);
}

TEST_F(wrong_hooks, are_none_that_refuse_react_or_throw_by_what_they_see) {
    planted::behind_set = [](object* at, u32 id) {
        if (id != props::title) return true;
        std::string title;
        at->get_property_as_string(props::title, title);
        if (title.size() == 3) throw std::runtime_error("three letters");
        if (title.size() == 2) return false;
        return at->set_property(props::count, number(static_cast<int>(title.size())));
    };
    planted::behind_create = [](object* at) {
        return at->type() != types::shelf || framework::instance().create_object(types::note, at) != nullptr;
    };
    planted::at_end = [](kelm::model* in) { return in->message_count() % 7 != 0; };
    const law_report report = hold(law_set::all().without(law::repetition));
    EXPECT_TRUE(report.holds) << report.to_string();
}

TEST_F(wrong_hooks, are_none_that_refuse_what_cannot_be_undone) {
    int stayed = 0;
    int undone = 0;
    planted::at_end = [&](kelm::model* in) {
        if (in->message_count() % 2 == 0) return true;
        ++(in->can_undo() ? undone : stayed);
        return false;
    };
    const law_report report = hold(law_set::all());
    EXPECT_TRUE(report.holds) << report.to_string();
    EXPECT_GT(stayed, 100) << "undo is off, or its limit is used up";
    EXPECT_GT(undone, 100);
}

TEST_F(wrong_hooks, that_number_from_outside_the_model_are_caught) {
    int numbers = 0;
    planted::behind_create = [&](object* at) { return at->set_property(props::count, number(++numbers)); };
    expect_caught(law::repetition, "the same calls");
}

TEST_F(wrong_hooks, that_refuse_by_what_lies_outside_the_model_are_caught) {
    int calls = 0;
    planted::behind_set = [&](object*, u32) { return ++calls % 5 != 0; };
    expect_caught(law::repetition, "the same calls");
}

TEST_F(wrong_hooks, that_change_the_model_while_an_undo_is_told_are_caught) {
    planted::told = [](object* at, message* what) {
        return what->is_first_run() || at->set_property(props::count, number(7));
    };
    expect_caught(law::undo_and_redo, "do leads to the state");
}

TEST_F(wrong_hooks, that_throw_while_an_undo_is_told_are_caught) {
    planted::told = [](object*, message* what) {
        if (!what->is_first_run()) throw std::runtime_error("no");
        return true;
    };
    expect_caught(law::undo_and_redo, "throw nothing");
}

TEST_F(wrong_hooks, that_go_on_although_their_own_change_was_refused_are_caught) {
    planted::behind_set = [](object* at, u32 id) {
        if (id == props::title) {
            at->set_property(props::count, number(1)); // what does it answer?
            return at->set_property(props::price, property<std::string>{"dear"});
        }
        return id != props::count;
    };
    expect_caught(law::rollback, "a rollback leads to the moment before the begin");
}

TEST_F(wrong_hooks, that_take_changes_back_by_hand_are_caught) {
    planted::behind_set = [](object* at, u32) {
        const kelm::model& in = *at->model();
        return in.message_at(in.message_count() - 1)->undo();
    };
    expect_caught(law::undo_and_redo, "do leads to the state");
}

TEST_F(wrong_hooks, that_change_what_is_being_deleted_are_caught) {
    planted::at_delete = [](object* at) {
        return at->set_property(props::title, property<std::string>{"gone"});
    };
    expect_caught(law::deltas, "delta tells what differs");
}

TEST_F(wrong_hooks, that_open_a_level_and_leave_it_are_caught) {
    planted::behind_add = [](object* at, object*) {
        at->model()->begin_transaction("");
        return true;
    };
    expect_caught(law::rollback, "a level is open that nobody has begun");
}

TEST_F(wrong_hooks, that_change_the_model_behind_the_end_of_a_transaction_are_caught) {
    planted::at_end = [](kelm::model* in) {
        const std::vector<object*> all = in->as_object()->children();
        return all.empty() || all[0]->set_property(props::count, number(static_cast<int>(all.size() % 3)));
    };
    expect_caught(law::undo_and_redo, "the end of a transaction changes nothing");
}

TEST_F(wrong_hooks, that_change_values_silently_are_caught_by_each_law_that_they_break) {
    planted::behind_set = change_silently;
    expect_caught(law::links, "links equal what is stored");
    expect_caught(law::hearing, "what is heard equals what is there");
    expect_caught(law::deltas, "delta tells what differs");
}

TEST_F(wrong_hooks, that_forget_to_count_down_are_caught_by_a_law_of_the_application) {
    const auto change_count = [](object* of, int by) {
        const value_ptr stored = of->get_own_property(props::count);
        const auto* const count = dynamic_cast<const property<int>*>(stored.get());
        return !lives(of) || of->set_property(props::count, number((count ? count->value : 0) + by));
    };
    planted::behind_add = [&](object* of, object*) { return change_count(of, 1); };
    law_options options;
    options.own_laws.push_back({"a shelf knows how many stand on it", [](kelm::model& in) {
                                    std::vector<u32> ids;
                                    in.object_ids(ids);
                                    for (const u32 id : ids) {
                                        const object& of = *in.find_object(id);
                                        if (of.type() != types::shelf || !of.has_children()) continue;
                                        std::string count;
                                        of.get_property_as_string(props::count, count);
                                        if (count != std::to_string(of.children().size()))
                                            return std::to_string(id) + " says " + count;
                                    }
                                    return std::string{};
                                }});
    const law_report report = hold(law_set::none().with(law::own), options);
    EXPECT_FALSE(report.holds);
    EXPECT_EQ(report.broken, law::own);
    EXPECT_EQ(report.what, "a shelf knows how many stand on it");
}

TEST_F(wrong_hooks, behind_loading_are_caught) {
    planted::behind_load = [](kelm::model* in) {
        in->begin_transaction("");
        in->as_object()->set_property(property_id::name, property<std::string>{"loaded"});
        in->end_transaction();
        return true;
    };
    expect_caught(law::streams, "what is read is what was written");
}

TEST_F(wrong_hooks, are_not_all_and_values_that_are_lost_in_streams_are_caught_as_well) {
    planted::coins_are_lost = true;
    expect_caught(law::streams, "what is read is what was written");
    // The log is read behind the hooks of loading.
    planted::coins_are_lost = false;
    planted::behind_load = [](kelm::model*) { return planted::coins_are_lost = true; };
    planted::behind_create = [](object*) { return !(planted::coins_are_lost = false); };
    expect_caught(law::reloading, "do of what was read leads to the state");
}

} // namespace kelm::bookshelf
