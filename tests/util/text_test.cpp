// Numbers to text and back.
// The C library's printf and strtoll serve as reference, where they are defined.
#include "util/text.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;
using int_limits = std::numeric_limits<int>;
using long_limits = std::numeric_limits<long long>;
using unsigned_limits = std::numeric_limits<unsigned long long>;
using double_limits = std::numeric_limits<double>;

std::string printed(double number) {
    std::array<char, 64> buffer{};
    const int length = std::snprintf(buffer.data(), buffer.size(), "%g", number);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

/// Makes a locale that writes a comma for the decimal point, and puts the process into it.
class comma_locale {
public:
    comma_locale()
        : own_(std::filesystem::temp_directory_path() / ("kelm_locale_" + std::to_string(getpid()))) {
        std::filesystem::create_directories(own_);
        // localedef fails for mere warnings as well: what counts is whether the locale can be had afterwards.
        const std::string make =
            "localedef -c -i de_DE -f UTF-8 " + (own_ / "de_DE.UTF-8").string() + " 2>/dev/null";
        [[maybe_unused]] const int ended = std::system(make.c_str());
        setenv("LOCPATH", own_.c_str(), 1);
        found_ = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    }
    comma_locale(const comma_locale&) = delete;
    comma_locale& operator=(const comma_locale&) = delete;
    ~comma_locale() {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
        std::filesystem::remove_all(own_);
    }
    [[nodiscard]] bool found() const { return found_; }

private:
    std::filesystem::path own_;
    bool found_ = false;
};

TEST(text, whole_numbers_are_written_in_decimal) {
    EXPECT_EQ(kelm::text_of(0), "0");
    EXPECT_EQ(kelm::text_of(-1), "-1");
    EXPECT_EQ(kelm::text_of(1234567890123LL), "1234567890123");
    EXPECT_EQ(kelm::text_of(long_limits::max()), "9223372036854775807");
    EXPECT_EQ(kelm::text_of(long_limits::min()), "-9223372036854775808");
}

TEST(text, doubles_are_written_with_six_significant_digits) {
    const struct {
        const char* why;
        double number;
        const char* text;
    } rows[] = {
        {"zero", 0.0, "0"},
        {"the sign of zero shows", -0.0, "-0"},
        {"no trailing zeros", 1.50, "1.5"},
        {"no point behind a whole number", 100.0, "100"},
        {"rounds to six digits", 3.14159265, "3.14159"},
        {"six digits before the point still fit", 123456.0, "123456"},
        {"seven do not", 1234567.0, "1.23457e+06"},
        {"rounding may raise the exponent", 999999.5, "1e+06"},
        {"four zeros behind the point still fit", 0.0001, "0.0001"},
        {"five do not", 0.00001, "1e-05"},
        {"three digits of exponent", 1e300, "1e+300"},
        {"the largest", double_limits::max(), "1.79769e+308"},
        {"the smallest", double_limits::denorm_min(), "4.94066e-324"},
        {"infinity", double_limits::infinity(), "inf"},
        {"negative infinity", -double_limits::infinity(), "-inf"},
        {"not a number", double_limits::quiet_NaN(), "nan"},
        {"not a number, sign set", std::copysign(double_limits::quiet_NaN(), -1.0), "-nan"},
        {"a signalling one looks the same", double_limits::signaling_NaN(), "nan"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::format_double(row.number), row.text);
        EXPECT_EQ(printed(row.number), row.text);
    }
}

TEST(text, random_doubles_are_written_as_printf_writes_them) {
    constexpr unsigned seed = 4711;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> common(-2e6, 2e6);
    for (int round = 0; round < 50000; ++round) {
        const auto any = std::bit_cast<double>(std::uint64_t{random()});
        ASSERT_EQ(kelm::format_double(any), printed(any));
        const double usual = common(random);
        ASSERT_EQ(kelm::format_double(usual), printed(usual));
    }
}

TEST(text, signed_numbers_are_read_as_far_as_they_go) {
    const struct {
        const char* why;
        std::string_view text;
        long long number;
    } rows[] = {
        {"nothing is 0", "", 0},
        {"blanks alone are 0", " \t\n", 0},
        {"no number is 0", "abc", 0},
        {"plain", "42", 42},
        {"all six white space characters may lead", " \t\n\v\f\r42", 42},
        {"a minus", "-42", -42},
        {"a plus", "+42", 42},
        {"a sign alone", "-", 0},
        {"two signs are no number", "+-1", 0},
        {"a blank behind the sign ends it", "- 1", 0},
        {"leading zeros are decimal", "010", 10},
        {"no hexadecimal", "0x10", 0},
        {"the tail is ignored", "12abc", 12},
        {"a point ends it", "1.9", 1},
        {"a zero byte ends it", "1\0002"sv, 1},
        {"a zero byte is no white space", "\0001"sv, 0},
        {"a byte from 0x80 is no white space",
         "\xA0"
         "1",
         0},
        {"the highest", "9223372036854775807", long_limits::max()},
        {"one above", "9223372036854775808", long_limits::max()},
        {"far above", "99999999999999999999999999", long_limits::max()},
        {"the lowest", "-9223372036854775808", long_limits::min()},
        {"one below", "-9223372036854775809", long_limits::min()},
        {"far below", "-99999999999999999999999999", long_limits::min()},
        {"zeros do not overflow", "000000000000000000000000000007", 7},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::parse_long(row.text), row.number);
        EXPECT_EQ(std::strtoll(std::string(row.text).c_str(), nullptr, 10), row.number);
    }
}

TEST(text, an_int_is_the_low_32_bits) {
    const struct {
        const char* why;
        std::string_view text;
        int number;
    } rows[] = {
        {"nothing", "", 0},
        {"plain", " -17x", -17},
        {"the highest", "2147483647", int_limits::max()},
        {"one above is the lowest", "2147483648", int_limits::min()},
        {"the lowest", "-2147483648", int_limits::min()},
        {"one below is the highest", "-2147483649", int_limits::max()},
        {"the highest unsigned", "4294967295", -1},
        {"one round", "4294967296", 0},
        {"above 64 bits", "9999999999999999999999", -1},
        {"below 64 bits", "-9999999999999999999999", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::parse_int(row.text), row.number);
    }
}

TEST(text, a_view_ends_at_its_size_without_a_terminator) {
    const std::string_view digits = "12345";
    EXPECT_EQ(kelm::parse_long(digits.substr(0, 2)), 12);
    EXPECT_EQ(kelm::parse_int(digits.substr(1, 2)), 23);
    EXPECT_EQ(kelm::parse_unsigned(digits.substr(2, 2)), 34U);
    EXPECT_EQ(kelm::parse_double(digits.substr(0, 3)), 123.0);
}

TEST(text, unsigned_numbers_have_no_sign) {
    const struct {
        const char* why;
        std::string_view text;
        unsigned long long number;
    } rows[] = {
        {"nothing", "", 0},
        {"blanks alone", "  ", 0},
        {"plain", "42", 42},
        {"white space may lead", " \t\n\v\f\r42", 42},
        {"a minus is no number, it does not wrap", "-1", 0},
        {"nor is a plus", "+1", 0},
        {"the tail is ignored", "7-1", 7},
        {"no hexadecimal", "0x10", 0},
        {"beyond the signed ones", "9223372036854775808", 9223372036854775808ULL},
        {"the highest", "18446744073709551615", unsigned_limits::max()},
        {"one above", "18446744073709551616", unsigned_limits::max()},
        {"a step above in the last but one digit", "18446744073709551620", unsigned_limits::max()},
        {"far above", "99999999999999999999999999", unsigned_limits::max()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::parse_unsigned(row.text), row.number);
    }
}

TEST(text, doubles_are_read_as_far_as_they_go) {
    const struct {
        const char* why;
        std::string_view text;
        double number;
    } rows[] = {
        {"nothing", "", 0.0},
        {"no number", "abc", 0.0},
        {"plain", "1.5", 1.5},
        {"white space may lead", " \t\n\v\f\r1.5", 1.5},
        {"a minus", "-2.25", -2.25},
        {"a plus", "+2.25", 2.25},
        {"a sign alone", "-", 0.0},
        {"no digit before the point", ".5", 0.5},
        {"no digit behind the point", "5.", 5.0},
        {"a point alone", ".", 0.0},
        {"an exponent", "1e3", 1000.0},
        {"a large E and a signed exponent", "25E-2", 0.25},
        {"an exponent without digits is tail", "1e+", 1.0},
        {"the tail is ignored", "1.5kg", 1.5},
        {"a comma is tail", "1,5", 1.0},
        {"hexadecimal", "0x1.8p1", 3.0},
        {"hexadecimal without an exponent", "-0X10", -16.0},
        {"a zero byte ends it", "1\0005"sv, 1.0},
        {"infinity", "inf", double_limits::infinity()},
        {"infinity in full, in any case", "-InFiNiTy!", -double_limits::infinity()},
        {"too large", "1e999", double_limits::infinity()},
        {"too large, negative", "-1e999", -double_limits::infinity()},
        {"too small", "1e-999", 0.0},
        {"the smallest", "4.94066e-324", double_limits::denorm_min()},
        {"the nearest double", "0.1", 0.1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(kelm::parse_double(row.text), row.number);
    }
    EXPECT_TRUE(std::signbit(kelm::parse_double("-0")));
    EXPECT_TRUE(std::isnan(kelm::parse_double("nan")));
    EXPECT_TRUE(std::isnan(kelm::parse_double("-NaN(1)")));
}

TEST(text, reading_a_double_leaves_errno_alone) {
    errno = 7;
    EXPECT_TRUE(std::isinf(kelm::parse_double("1e999")));
    EXPECT_EQ(errno, 7);
}

TEST(text, random_doubles_come_back_from_all_their_digits) {
    constexpr unsigned seed = 815;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int round = 0; round < 20000; ++round) {
        const auto number = std::bit_cast<double>(std::uint64_t{random()});
        if (std::isnan(number)) continue;
        std::array<char, 64> buffer{};
        for (const char* form : {"%.17g", "%a"}) {
            std::snprintf(buffer.data(), buffer.size(), form, number);
            ASSERT_EQ(kelm::parse_double(buffer.data()), number) << buffer.data();
        }
    }
}

TEST(text, the_decimal_sign_of_the_process_does_not_count) {
    const comma_locale locale;
    ASSERT_TRUE(locale.found());
    ASSERT_EQ(printed(1.5), "1,5");
    EXPECT_EQ(kelm::format_double(1.5), "1.5");
    EXPECT_EQ(kelm::parse_double("1.5"), 1.5);
    EXPECT_EQ(kelm::parse_double("1,5"), 1.0);
}

} // namespace
