// The trace file: its lines, its formats, and what happens when it cannot be written.
// Each test works in a directory of its own.
#include "util/process_state.h"

#include <kelm/framework.h>
#include <kelm/logger.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <type_traits>
#include <vector>

namespace kelm::test {

namespace {

std::string complaints;

class trace : public testing::Test {
protected:
    trace()
        : before_(std::filesystem::current_path()),
          own_(std::filesystem::temp_directory_path() / ("kelm_trace_" + std::to_string(getpid()))) {
        std::filesystem::create_directories(own_);
        std::filesystem::current_path(own_);
        complaints.clear();
        process().complain = [](const std::string& text) { complaints += text; };
    }
    ~trace() override {
        fw.set_logging(false);
        process().complain = nullptr;
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(own_);
    }
    static std::vector<std::string> lines() {
        std::ifstream in("kelm_logger.log");
        std::vector<std::string> out;
        for (std::string line; std::getline(in, line);) out.push_back(line);
        return out;
    }
    /// \returns the text behind the stamp; the whole line when it has none
    static std::string text_of(const std::string& line) {
        static const std::regex stamp{R"(\d\d/\d\d/\d\d \d\d:\d\d:\d\d \d+ :)"};
        return std::regex_replace(line, stamp, "", std::regex_constants::format_first_only);
    }

    framework& fw = framework::instance();

private:
    std::filesystem::path before_;
    std::filesystem::path own_;
};

} // namespace

TEST_F(trace, a_line_is_a_stamp_and_the_text_as_it_stands) {
    fw.set_logging(true);
    EXPECT_TRUE(fw.logging_enabled());
    fw.log("100% of it");
    const auto written = lines();
    ASSERT_EQ(written.size(), 1u);
    EXPECT_TRUE(std::regex_match(written[0], std::regex{R"(\d\d/\d\d/\d\d \d\d:\d\d:\d\d \d+ :100% of it)"}))
        << written[0];
}

TEST_F(trace, of_two_or_three_texts_the_first_is_the_format) {
    fw.set_logging(true);
    fw.log("a %s", "b");
    fw.log("%s and %s, 5%%", "one", "two");
    fw.log("%s, %s", "only one");
    fw.log("no place", "left out");
    fw.log(nullptr);
    const auto written = lines();
    ASSERT_EQ(written.size(), 5u);
    EXPECT_EQ(text_of(written[0]), "a b");
    EXPECT_EQ(text_of(written[1]), "one and two, 5%");
    EXPECT_EQ(text_of(written[2]), "only one, ");
    EXPECT_EQ(text_of(written[3]), "no place");
    EXPECT_EQ(text_of(written[4]), "");
}

TEST_F(trace, a_format_takes_up_to_five_texts) {
    fw.set_logging(true);
    kelm_logger& to = *fw.logger();
    const std::string format = "%s%s%s%s%s.";
    EXPECT_TRUE(to.log(format));
    EXPECT_TRUE(to.log(format, "a"));
    EXPECT_TRUE(to.log(format, "a", "b"));
    EXPECT_TRUE(to.log(format, "a", "b", "c"));
    EXPECT_TRUE(to.log(format, "a", "b", "c", "d"));
    EXPECT_TRUE(to.log(format, "a", "b", "c", "d", "e"));
    const char* const expected[] = {"%s%s%s%s%s.", "a.", "ab.", "abc.", "abcd.", "abcde."};
    const auto written = lines();
    ASSERT_EQ(written.size(), std::size(expected));
    for (std::size_t at = 0; at != written.size(); ++at) EXPECT_EQ(text_of(written[at]), expected[at]);
}

TEST_F(trace, a_format_knows_texts_and_the_percent_sign_alone) {
    fw.set_logging(true);
    const struct {
        const char* why;
        std::string format;
        std::string argument;
        std::string written;
    } rows[] = {
        {"a percent sign ends it", "100%", "x", "100%"},
        {"a number", "%d %5s %n", "x", "%d %5s %n"},
        {"three signs", "%%%s", "x", "%x"},
        {"a format in an argument", "%s", "%s%d", "%s%d"},
        {"an empty argument", "<%s>", "", "<>"},
        {"texts end at a null", std::string("a\0%s", 4), "x", "a"},
        {"arguments as well", "<%s>", std::string("b\0c", 3), "<b>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_TRUE(fw.logger()->log(row.format, row.argument));
        EXPECT_EQ(text_of(lines().back()), row.written);
    }
}

TEST_F(trace, a_formatted_text_is_cut_where_it_grows_too_long_and_a_plain_one_is_not) {
    fw.set_logging(true);
    const std::string half(10000, 'x');
    EXPECT_TRUE(fw.logger()->log("%s%s", half, half));
    EXPECT_TRUE(fw.logger()->log(half + half));
    const auto written = lines();
    ASSERT_EQ(written.size(), 2u);
    EXPECT_EQ(text_of(written[0]).size(), 19999u);
    EXPECT_EQ(text_of(written[1]).size(), 20000u);
}

TEST_F(trace, a_missing_text_is_an_empty_one) {
    fw.set_logging(true);
    fw.log("<%s>", nullptr);
    fw.log("<%s|%s>", nullptr, "b");
    fw.log(nullptr, "a");
    const auto written = lines();
    ASSERT_EQ(written.size(), 3u);
    EXPECT_EQ(text_of(written[0]), "<>");
    EXPECT_EQ(text_of(written[1]), "<|b>");
    EXPECT_EQ(text_of(written[2]), "");
}

TEST_F(trace, the_stamp_is_the_local_time_of_the_line) {
    fw.set_logging(true);
    const auto stamp_of = [](std::time_t when) {
        char text[32];
        std::strftime(text, sizeof text, "%m/%d/%y %H:%M:%S", std::localtime(&when));
        return std::string(text);
    };
    const std::time_t before = std::time(nullptr);
    fw.log("now");
    const std::string stamp = lines().at(0).substr(0, 17);
    std::time_t last = std::time(nullptr);
    while (last != before && stamp_of(last) != stamp) --last;
    EXPECT_EQ(stamp, stamp_of(last));
}

TEST_F(trace, two_lines_within_a_second_have_no_interval_between_them) {
    fw.set_logging(true);
    std::vector<std::string> written;
    do { // until both fall into one second
        fw.log("first");
        fw.log("second");
        written = lines();
    } while (written.rbegin()[1].substr(0, 17) != written.back().substr(0, 17) && written.size() < 20);
    EXPECT_EQ(written.back().substr(17), " 0 :second");
}

TEST_F(trace, the_interval_goes_on_counting_through_a_new_trace) {
    fw.set_logging(true);
    process().last_log_time = std::time(nullptr) - 5;
    fw.set_logging(false);
    fw.set_logging(true);
    fw.log("again");
    EXPECT_TRUE(std::regex_search(lines().at(0), std::regex{" [56] :again"})) << lines().at(0);
}

TEST_F(trace, a_line_that_is_not_written_does_not_count) {
    std::filesystem::create_directory("kelm_logger.log");
    fw.set_logging(true);
    process().last_log_time = 4711;
    fw.log("lost");
    EXPECT_EQ(process().last_log_time, 4711);
}

TEST_F(trace, the_file_is_that_of_the_directory_in_which_the_trace_was_begun) {
    fw.set_logging(true);
    std::filesystem::create_directory("deeper");
    std::filesystem::current_path("deeper");
    fw.log("up there");
    EXPECT_TRUE(lines().empty());
    std::filesystem::current_path("..");
    EXPECT_EQ(text_of(lines().at(0)), "up there");
}

TEST_F(trace, nobody_deletes_a_logger_through_its_interface) {
    EXPECT_FALSE(std::has_virtual_destructor_v<kelm_logger>);
    EXPECT_FALSE(std::is_destructible_v<kelm_logger>);
    EXPECT_TRUE(std::is_abstract_v<kelm_logger>);
}

TEST_F(trace, the_interval_counts_from_the_line_before) {
    fw.set_logging(true);
    process().last_log_time = 0;
    fw.log("first");
    fw.log("second");
    const auto written = lines();
    ASSERT_EQ(written.size(), 2u);
    EXPECT_TRUE(std::regex_search(written[0], std::regex{R"( \d{10,} :first)"})) << written[0];
    EXPECT_TRUE(std::regex_search(written[1], std::regex{R"( [01] :second)"})) << written[1];
}

TEST_F(trace, a_new_trace_begins_with_an_empty_file_and_none_is_written_when_it_is_off) {
    fw.set_logging(true);
    fw.log("old");
    fw.set_logging(true);
    fw.log("new");
    ASSERT_EQ(lines().size(), 1u);
    fw.set_logging(false);
    EXPECT_FALSE(fw.logging_enabled());
    EXPECT_EQ(fw.logger(), nullptr);
    fw.log("nobody hears");
    EXPECT_EQ(lines().size(), 1u);
}

TEST_F(trace, a_file_that_cannot_be_opened_is_complained_of_once_and_every_line_fails) {
    std::filesystem::create_directory("kelm_logger.log"); // a directory refuses the superuser as well
    fw.set_logging(true);
    EXPECT_EQ(complaints, "unable to open log file kelm_logger.log");
    ASSERT_NE(fw.logger(), nullptr);
    EXPECT_FALSE(fw.logger()->log("lost"));
    EXPECT_FALSE(fw.logger()->log("%s", "lost"));
    EXPECT_EQ(complaints, "unable to open log file kelm_logger.log");
}

} // namespace kelm::test
