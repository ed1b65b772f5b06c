// The trace file: its lines, its formats, and what happens when it cannot be written.
// Each test works in a directory of its own.
#include "util/process_state.h"

#include <kelm/framework.h>
#include <kelm/logger.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
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
