// Bytes as text in the library's own alphabet, and back: sound text, spoilt text, and every short length.
// What documents do with it is in xml_helpers_test.cpp.
#include <kelm/base64.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using bytes = std::vector<unsigned char>;

std::u16string encoded(const bytes& data) {
    std::u16string text = u"what was there before";
    const int length = Base64::Encode(data.data(), static_cast<int>(data.size()), text);
    EXPECT_EQ(static_cast<std::size_t>(length), text.size());
    return text;
}

/// Decodes into a buffer that is just as large as promised, so that sanitizers see a byte too many.
bytes decoded(const std::u16string& text, int length) {
    const auto counted = static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(text.size())));
    bytes out((counted + 3) / 4 * 3, 0xCC);
    const int written = Base64::Decode(text, length, out.data());
    EXPECT_GE(written, 0);
    EXPECT_LE(static_cast<std::size_t>(written), out.size());
    for (auto i = static_cast<std::size_t>(written); i < out.size(); ++i) EXPECT_EQ(out[i], 0xCC) << i;
    out.resize(static_cast<std::size_t>(written));
    return out;
}

bytes decoded(const std::u16string& text) { return decoded(text, static_cast<int>(text.size())); }

TEST(base64, groups_of_bytes_become_four_characters) {
    const struct {
        const char* why;
        bytes data;
        std::u16string text;
    } rows[] = {
        {"nothing", {}, u""},
        {"one byte and two pads", {0}, u"AA[["},
        {"one byte with all bits", {0xFF}, u"-w[["},
        {"two bytes and one pad", {0xFF, 0xFF}, u"--8["},
        {"three bytes and no pad", {0, 0, 0}, u"AAAA"},
        {"the highest bits come first", {0x04, 0x20, 0xC4}, u"BCDE"},
        {"index 62 is a star", {0xFB, 0xEF, 0xBE}, u"****"},
        {"index 63 is a hyphen", {0xFF, 0xFF, 0xFF}, u"----"},
        {"four bytes are two groups", {'M', 'a', 'n', 'x'}, u"TWFueA[["},
        {"five bytes", {'M', 'a', 'n', 'x', 'y'}, u"TWFueHk["},
        {"six bytes", {'M', 'a', 'n', 'x', 'y', 'z'}, u"TWFueHl6"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(encoded(row.data), row.text);
        EXPECT_EQ(decoded(row.text), row.data);
    }
}

TEST(base64, the_alphabet_has_sixty_four_characters_in_order) {
    bytes data;
    for (unsigned i = 0; i < 64; i += 4) {
        const unsigned group = i << 18 | (i + 1) << 12 | (i + 2) << 6 | (i + 3);
        for (const unsigned shift : {16U, 8U, 0U})
            data.push_back(static_cast<unsigned char>(group >> shift & 0xFFU));
    }
    EXPECT_EQ(encoded(data), u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789*-");
}

TEST(base64, no_bytes_empty_the_text) {
    const unsigned char one = 7;
    const struct {
        const char* why;
        const unsigned char* data;
        int size;
    } rows[] = {
        {"a size of nothing", &one, 0},
        {"a size below it", &one, -1},
        {"the lowest size", &one, std::numeric_limits<int>::min()},
        {"no data", nullptr, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::u16string text = u"before";
        EXPECT_EQ(Base64::Encode(row.data, row.size, text), 0);
        EXPECT_EQ(text, u"");
    }
}

TEST(base64, more_bytes_than_a_length_can_tell_are_refused_unread) {
    const unsigned char one = 7;
    std::u16string text = u"before";
    EXPECT_THROW(Base64::Encode(&one, std::numeric_limits<int>::max(), text), std::length_error);
    EXPECT_THROW(Base64::Encode(&one, 1'610'612'734, text), std::length_error);
    EXPECT_EQ(text, u"before");
}

TEST(base64, decoding_stops_at_the_first_pad) {
    EXPECT_EQ(decoded(u"AA[[AAAA"), bytes{0});
    EXPECT_EQ(decoded(u"--8[----"), (bytes{0xFF, 0xFF}));
    EXPECT_EQ(decoded(u"----[---"), (bytes{0xFF, 0xFF, 0xFF, 0}));
}

TEST(base64, keeps_one_byte_for_a_pad_at_the_first_or_second_place) {
    EXPECT_EQ(decoded(u"["), bytes{0});
    EXPECT_EQ(decoded(u"[---"), bytes{0});
    EXPECT_EQ(decoded(u"-["), bytes{0xFC});
    EXPECT_EQ(decoded(u"-[--"), bytes{0xFC});
    EXPECT_EQ(decoded(u"--["), bytes{0xFF});
    EXPECT_EQ(decoded(u"---["), (bytes{0xFF, 0xFF}));
}

TEST(base64, keeps_a_group_that_is_cut_short_from_giving_bytes) {
    EXPECT_EQ(decoded(u"-"), bytes{});
    EXPECT_EQ(decoded(u"--"), bytes{});
    EXPECT_EQ(decoded(u"---"), bytes{});
    EXPECT_EQ(decoded(u"-----"), (bytes{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(decoded(u"----", 3), bytes{});
}

TEST(base64, keeps_counting_foreign_characters_as_zero) {
    const struct {
        const char* why;
        std::u16string text;
        bytes data;
    } rows[] = {
        {"a plus sign of the published alphabet", u"+---", {0x03, 0xFF, 0xFF}},
        {"a slash of it", u"-/--", {0xFC, 0x0F, 0xFF}},
        {"its pad", u"--8=", {0xFF, 0xFF, 0x00}},
        {"a blank takes a place", u" A--", {0x00, 0x0F, 0xFF}},
        {"a line feed as well", u"--\n-", {0xFF, 0xF0, 0x3F}},
        {"a zero character", std::u16string(u"\0---", 4), {0x03, 0xFF, 0xFF}},
        {"the neighbours of the alphabet's ranges", u"@`{:", {0, 0, 0}},
        {"the closing bracket", u"]\\^_", {0, 0, 0}},
        {"a wide character whose low byte is a letter", u"\x0141\xFF41\xD800\xDC5B", {0, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(decoded(row.text), row.data);
    }
}

TEST(base64, no_more_is_read_than_the_length_says) {
    EXPECT_EQ(decoded(u"--------", 4), (bytes{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(decoded(u"--------", 7), (bytes{0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(decoded(u"----", 400), (bytes{0xFF, 0xFF, 0xFF})) << "held at the text's own length";
    EXPECT_EQ(decoded(u"", 4), bytes{});
}

TEST(base64, a_length_below_one_leaves_the_buffer_alone) {
    for (const int length : {0, -1, std::numeric_limits<int>::min()}) {
        unsigned char out = 0xCC;
        EXPECT_EQ(Base64::Decode(u"AAAA", length, &out), 0);
        EXPECT_EQ(out, 0xCC);
        EXPECT_EQ(Base64::Decode(u"AAAA", length, nullptr), 0);
    }
    EXPECT_EQ(Base64::Decode(u"AAAA", 4, nullptr), 0);
}

TEST(base64, bytes_of_any_length_come_back) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (std::size_t size = 0; size < 300; ++size) {
        bytes data(size);
        for (auto& each : data) each = static_cast<unsigned char>(random());
        const std::u16string text = encoded(data);
        EXPECT_EQ(text.size(), (size + 2) / 3 * 4);
        EXPECT_EQ(decoded(text), data);
    }
}

TEST(base64, a_megabyte_comes_back) {
    bytes data(1 << 20);
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<unsigned char>(i * 31 + i / 251);
    EXPECT_EQ(decoded(encoded(data)), data);
}

TEST(base64, any_text_decodes_within_its_buffer) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::u16string some = u"Az09*-[]=+/ \x0141\xFFFF";
    for (int round = 0; round < 3000; ++round) {
        std::u16string text;
        for (auto left = random() % 40; left != 0; --left)
            text += random() % 8 != 0 ? static_cast<char16_t>(u'a' + random() % 26)
                                      : some[random() % some.size()];
        const int length = static_cast<int>(random() % 50) - 3;
        const auto first_pad = std::min(text.find(u'['), text.size());
        EXPECT_LE(decoded(text, length).size(), first_pad / 4 * 3 + 2);
    }
}

} // namespace
