// Binary forms of the boxes of one value: bytes, reading back, and streams that end early.
// Vectors have a file of their own.
#include "tests/support/box.h"

#include <kelm/property.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <sstream>
#include <vector>

namespace kelm {
namespace {

using test::box;
using test::boxed;

std::string bytes_of(const abstract_property& value) {
    std::ostringstream out;
    value.write(out);
    EXPECT_TRUE(out.good());
    return out.str();
}

/// Text with zero bytes in it.
template <std::size_t Size>
std::string raw(const char (&bytes)[Size]) {
    return {bytes, Size - 1};
}

struct binary_row {
    const char* why;
    box value;
    std::string bytes;
};

/// Every kind whose value can be told from the bytes.
std::vector<binary_row> binary_rows() {
    const GUID id{0x04030201, 0x0605, 0x0807, {9, 10, 11, 12, 13, 14, 15, 16}};
    std::vector<binary_row> all;
    all.push_back({"true", boxed<bool>(true), raw("\x01")});
    all.push_back({"false", boxed<bool>(false), raw("\x00")});
    all.push_back({"short", boxed<short>(-2), raw("\xFE\xFF")});
    all.push_back({"int", boxed<int>(0x01020304), raw("\x04\x03\x02\x01")});
    all.push_back({"negative int", boxed<int>(-2), raw("\xFE\xFF\xFF\xFF")});
    all.push_back({"long takes four bytes", boxed<long>(-2), raw("\xFE\xFF\xFF\xFF")});
    all.push_back({"unsigned", boxed<unsigned>(0x80000001U), raw("\x01\x00\x00\x80")});
    all.push_back(
        {"long long", boxed<long long>(0x0807060504030201), raw("\x01\x02\x03\x04\x05\x06\x07\x08")});
    all.push_back({"negative long long", boxed<long long>(-2), raw("\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF")});
    all.push_back({"double", boxed<double>(1.5), raw("\x00\x00\x00\x00\x00\x00\xF8\x3F")});
    all.push_back({"empty text", boxed<std::string>(""), raw("\x00\x00\x00\x00")});
    all.push_back({"text", boxed<std::string>(raw("a\0b")),
                   raw("\x03\x00\x00\x00"
                       "a\0b")});
    all.push_back({"model id", boxed<GUID>(id),
                   raw("\x01\x02\x03\x04\x05\x06\x07\x08"
                       "\x09\x0A\x0B\x0C\x0D\x0E\x0F\x10")});
    return all;
}

TEST(values_binary, each_kind_has_its_bytes) {
    for (const binary_row& row : binary_rows()) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(bytes_of(*row.value), row.bytes);
    }
}

TEST(values_binary, each_kind_reads_what_it_wrote_and_not_more) {
    for (const binary_row& row : binary_rows()) {
        SCOPED_TRACE(row.why);
        std::istringstream in(row.bytes + "tail");
        std::vector<reference_record> references;
        const box read{row.value->clone()};
        read->from_string("77");
        read->read(in, references, nullptr);
        EXPECT_TRUE(read->equals(row.value.get())) << read->to_string();
        EXPECT_TRUE(in.good());
        EXPECT_EQ(in.tellg(), static_cast<std::streamoff>(row.bytes.size()));
        EXPECT_TRUE(references.empty());
    }
}

TEST(values_binary, a_stream_that_ends_early_fails_and_leaves_nothing_in_the_box) {
    for (const binary_row& row : binary_rows()) {
        SCOPED_TRACE(row.why);
        for (std::size_t length = 0; length != row.bytes.size(); ++length) {
            SCOPED_TRACE(length);
            std::istringstream in(row.bytes.substr(0, length));
            std::vector<reference_record> references;
            const box read{row.value->clone()};
            read->read(in, references, nullptr);
            EXPECT_TRUE(in.fail());
            EXPECT_EQ(bytes_of(*read).find_first_not_of('\0'), std::string::npos) << read->to_string();
        }
    }
}

TEST(values_binary, every_byte_but_zero_is_true) {
    std::istringstream in("\x80");
    std::vector<reference_record> references;
    property<bool> value;
    value.read(in, references, nullptr);
    EXPECT_TRUE(value.value);
    EXPECT_EQ(bytes_of(value), "\x01");
}

TEST(values_binary, doubles_keep_every_bit) {
    for (const double number : {-0.0, std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::infinity(), 0.1, -1e308}) {
        std::stringstream stream;
        property<double>{number}.write(stream);
        std::vector<reference_record> references;
        property<double> read{1};
        read.read(stream, references, nullptr);
        EXPECT_EQ(read.value, number);
        EXPECT_EQ(std::signbit(read.value), std::signbit(number));
    }
}

TEST(values_binary, a_text_is_not_longer_than_its_stream) {
    std::istringstream in(raw("\xFF\xFF\xFF\xFF") + std::string(100000, 'x'));
    std::vector<reference_record> references;
    property<std::string> value{"before"};
    value.read(in, references, nullptr);
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(value.value, "");
}

TEST(values_binary, keeps_an_id_map_as_sixteen_bytes_without_its_pairs) {
    property<id_multimap> map{{{1, 2}, {3, 4}}};
    EXPECT_EQ(bytes_of(map), std::string(16, '\0'));
    std::istringstream in("0123456789abcdef"
                          "tail");
    std::vector<reference_record> references;
    map.read(in, references, nullptr);
    EXPECT_TRUE(in.good());
    EXPECT_EQ(in.tellg(), 16);
    EXPECT_TRUE(map.value.empty());

    std::istringstream too_short("0123456789abcde");
    map.read(too_short, references, nullptr);
    EXPECT_TRUE(too_short.fail());
}

TEST(values_binary, a_null_reference_is_all_ones) {
    EXPECT_EQ(bytes_of(property<object*>{}), raw("\xFF\xFF\xFF\xFF"));
}

TEST(values_binary, reading_a_reference_leaves_a_record_and_a_null_target) {
    for (const u32 id : {7U, 0U, npos32}) {
        SCOPED_TRACE(id);
        std::string bytes;
        for (const int shift : {0, 8, 16, 24}) bytes += static_cast<char>(id >> shift & 0xFF);
        std::istringstream in(bytes);
        std::vector<reference_record> references(1);
        property<object*> value;
        int place = 0;
        auto* const holder = reinterpret_cast<object*>(&place); // passed on, never looked at
        value.value = holder;
        value.read(in, references, holder);
        EXPECT_TRUE(in.good());
        EXPECT_EQ(value.value, nullptr);
        ASSERT_EQ(references.size(), 2U) << "behind what was there";
        EXPECT_EQ(references[1].value, &value);
        EXPECT_EQ(references[1].target_id, id);
        EXPECT_EQ(references[1].holder, holder);
        EXPECT_FALSE(references[1].from_message);
    }
}

TEST(values_binary, a_reference_that_ends_early_leaves_no_record) {
    std::istringstream in("\x01\x02\x03");
    std::vector<reference_record> references;
    property<object*> value;
    value.read(in, references, nullptr);
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(value.value, nullptr);
    EXPECT_TRUE(references.empty());
}

} // namespace
} // namespace kelm
