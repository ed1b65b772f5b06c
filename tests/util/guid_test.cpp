// Ids of models: making, comparing, text.
// Their bytes in a stream are tested with the values.
#include "util/process_state.h"

#include <kelm/guid.h>

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace kelm {
namespace {

constexpr GUID example{0x0123ABCD, 0x4567, 0x89EF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}};
constexpr const char* example_text = "{0123ABCD-4567-89EF-FEDC-BA9876543210}";

TEST(guid, a_new_one_is_all_zero) {
    EXPECT_EQ(guid_to_string(GUID{}), "{00000000-0000-0000-0000-000000000000}");
}

TEST(guid, text_has_braces_hyphens_and_capitals) {
    EXPECT_EQ(guid_to_string(example), example_text);
    EXPECT_EQ(guid_to_string({0xFFFFFFFF, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}}),
              "{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}");
    EXPECT_EQ(guid_to_string({0xA, 0xB, 0xC, {0, 0xD, 0, 0, 0, 0, 0, 0xE}}),
              "{0000000A-000B-000C-000D-00000000000E}");
}

TEST(guid, text_is_read_in_either_case) {
    for (const char* text :
         {example_text, "{0123abcd-4567-89ef-fedc-ba9876543210}", "{0123aBCd-4567-89Ef-feDC-bA9876543210}"}) {
        SCOPED_TRACE(text);
        GUID read;
        EXPECT_TRUE(guid_from_string(text, read));
        EXPECT_EQ(guid_to_string(read), example_text);
    }
}

TEST(guid, other_texts_are_refused_and_change_nothing) {
    struct row {
        const char* why;
        std::string text;
    };
    const row rows[] = {
        {"empty", ""},
        {"no braces", "0123ABCD-4567-89EF-FEDC-BA9876543210"},
        {"one character short", "{0123ABCD-4567-89EF-FEDC-BA987654321}"},
        {"no closing brace", "{0123ABCD-4567-89EF-FEDC-BA9876543210"},
        {"one character more", "{0123ABCD-4567-89EF-FEDC-BA9876543210} "},
        {"leading blank", " {0123ABCD-4567-89EF-FEDC-BA987654321}"},
        {"a letter behind F", "{0123ABCG-4567-89EF-FEDC-BA9876543210}"},
        {"a sign for a digit", "{+123ABCD-4567-89EF-FEDC-BA9876543210}"},
        {"hyphen out of place", "{0123ABC-D4567-89EF-FEDC-BA9876543210}"},
        {"other brackets", "(0123ABCD-4567-89EF-FEDC-BA9876543210)"},
        {"a zero byte", std::string("{0123ABCD-4567-89EF-FEDC-BA987654321\0}", 38)},
        {"a byte above ASCII", "{0123ABCD-4567-89EF-FEDC-BA987654321\xC1}"},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.why);
        GUID read = example;
        EXPECT_FALSE(guid_from_string(row.text, read));
        EXPECT_EQ(guid_to_string(read), example_text);
    }
}

TEST(guid, any_difference_in_a_byte_makes_two_unequal) {
    EXPECT_TRUE(example == example);
    std::vector<GUID> others(11, example);
    others[0].Data1 ^= 1;
    others[1].Data2 ^= 0x8000;
    others[2].Data3 ^= 1;
    for (std::size_t i = 0; i != 8; ++i) others[3 + i].Data4[i] ^= 0x80;
    for (const GUID& other : others) {
        SCOPED_TRACE(guid_to_string(other));
        EXPECT_FALSE(example == other);
        EXPECT_FALSE(other == example);
    }
}

TEST(guid, new_ids_differ_and_bear_the_marks_of_random_ones) {
    std::set<std::string> seen;
    for (int i = 0; i != 1000; ++i) {
        const GUID id = make_guid();
        EXPECT_EQ(id.Data3 & 0xF000, 0x4000) << guid_to_string(id);
        EXPECT_EQ(id.Data4[0] & 0xC0, 0x80) << guid_to_string(id);
        EXPECT_TRUE(seen.insert(guid_to_string(id)).second);
    }
}

TEST(guid, new_ids_use_all_their_bits) {
    GUID any;
    GUID all{0xFFFFFFFF, 0xFFFF, 0xFFFF, {255, 255, 255, 255, 255, 255, 255, 255}};
    for (int i = 0; i != 200; ++i) {
        const GUID id = make_guid();
        any.Data1 |= id.Data1;
        all.Data1 &= id.Data1;
        for (std::size_t k = 0; k != 8; ++k) {
            any.Data4[k] = static_cast<u8>(any.Data4[k] | id.Data4[k]);
            all.Data4[k] = static_cast<u8>(all.Data4[k] & id.Data4[k]);
        }
    }
    EXPECT_EQ(any.Data1, 0xFFFFFFFF);
    EXPECT_EQ(all.Data1, 0U);
    for (std::size_t k = 0; k != 8; ++k) {
        EXPECT_EQ(any.Data4[k], k == 0 ? 0xBF : 0xFF);
        EXPECT_EQ(all.Data4[k], k == 0 ? 0x80 : 0);
    }
}

TEST(guid, without_random_bytes_the_id_is_all_zero) {
    process().guid_source_fails = true;
    const GUID id = make_guid();
    process().guid_source_fails = false;
    EXPECT_TRUE(id == GUID{});
    EXPECT_FALSE(make_guid() == GUID{});
}

} // namespace
} // namespace kelm
