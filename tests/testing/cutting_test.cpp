// How a caught history is told: cut to what it takes, and printed as a source that shows the same.
// What is caught is wrong_hooks_test.cpp.
#include "tests/testing/bookshelf.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

/// Compiled from approved_history.cpp, which is what the kit printed.
std::string broken_history(kelm::model& model);

namespace kelm::bookshelf {

namespace {

using kelm::testing::law;
using kelm::testing::law_report;
using kelm::testing::law_set;

/// Who sets the next one of a book gives it a title by how often that has been done in this process.
bool name_by_the_number_of_calls(object* at, u32 id) {
    static int calls = 0;
    return id != props::next ||
           at->set_property(props::title, property<std::string>{std::to_string(++calls)});
}

class cutting : public ::testing::Test {
protected:
    cutting() { planted::clear(); }
    ~cutting() override { planted::clear(); }
};

/// A list that is set is taken back by hand, and its message stays: redo sets it.
void forget_elements() {
    planted::behind_set = [](object* at, u32 id) {
        const kelm::model& in = *at->model();
        return id != props::authors || in.message_at(in.message_count() - 1)->undo();
    };
}

std::size_t count_of(const std::string& text, const std::string& what) {
    std::size_t found = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
    return found;
}

} // namespace

TEST_F(cutting, leaves_the_fewest_steps_of_a_planted_fault) {
    forget_elements();
    const law_report report = hold(law_set::none().with(law::undo_and_redo));
    ASSERT_FALSE(report.holds);
    EXPECT_EQ(report.steps, 3U) << report.code; // begin, create, set the list: the end comes by itself
    EXPECT_EQ(count_of(report.code, "create_object"), 1U) << report.code;
    EXPECT_EQ(count_of(report.code, "set_property(103, *list())"), 1U) << report.code;
}

TEST_F(cutting, plays_the_history_of_a_seed_again) {
    forget_elements();
    const law_report report = hold(law_set::none().with(law::undo_and_redo));
    const law_report again =
        hold(law_set::none().with(law::undo_and_redo), {.seed = report.seed, .histories = 1});
    EXPECT_EQ(again.code, report.code);
    EXPECT_EQ(again.histories, 1U);
}

TEST_F(cutting, stops_when_the_history_has_been_played_often_enough) {
    forget_elements();
    const law_report report = hold(law_set::none().with(law::undo_and_redo), {.most_replays = 0});
    ASSERT_FALSE(report.holds);
    EXPECT_GT(report.steps, 3U);
}

TEST_F(cutting, of_what_depends_on_more_than_the_history_still_tells_what_was_seen) {
    planted::behind_set = name_by_the_number_of_calls;
    const law_report report = hold(law_set::none().with(law::repetition));
    ASSERT_FALSE(report.holds);
    EXPECT_THAT(report.difference, ::testing::HasSubstr("101 = "));
    EXPECT_THAT(report.code, ::testing::HasSubstr("set_property(102, "));
}

TEST_F(cutting, prints_a_source_that_is_compiled_here_and_breaks_the_law_again) {
    forget_elements();
    const law_report report = hold(law_set::none().with(law::undo_and_redo));
    EXPECT_EQ(report.code, file_text(KELM_APPROVED_HISTORY)) << report.code;
    object* const root = framework::instance().create_object(type_id::model, nullptr);
    EXPECT_EQ(broken_history(*root->model()), report.difference);
    framework::instance().delete_object(root);
    planted::clear();
    object* const sound = framework::instance().create_object(type_id::model, nullptr);
    EXPECT_EQ(broken_history(*sound->model()), "");
    framework::instance().delete_object(sound);
}

TEST_F(cutting, ends_with_a_report_for_a_person) {
    EXPECT_THAT(hold(law_set::all(), {.histories = 2}).to_string(),
                ::testing::MatchesRegex("all laws hold: 2 histories, [0-9]+ operations\n"));
    forget_elements();
    const law_report report = hold(law_set::none().with(law::undo_and_redo));
    EXPECT_THAT(report.to_string(),
                ::testing::StartsWith("the law \"undo and redo\" is broken in 3 steps of seed"));
    EXPECT_THAT(report.to_string(), ::testing::EndsWith(report.code));
}

TEST_F(cutting, is_not_asked_for_what_holds_and_operations_can_be_asked_for_instead) {
    std::ostringstream lines;
    const law_report report = hold(law_set::all(), {.operations = 20000, .progress = &lines});
    EXPECT_TRUE(report.holds) << report.to_string();
    EXPECT_GE(report.operations, 20000U);
    EXPECT_LT(report.operations, 21000U);
    EXPECT_EQ(lines.str(), "");
}

} // namespace kelm::bookshelf
