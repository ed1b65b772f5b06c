// Little-endian fields: the bytes written, the values read back, and what a short stream gives.
// The formats that are made of them are tested with their owners.
#include "util/bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <list>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kelm {
namespace {

std::string written(const std::function<void(std::ostream&)>& write) {
    std::ostringstream out;
    write(out);
    EXPECT_TRUE(out.good());
    return out.str();
}

TEST(bytes, numbers_are_written_low_byte_first) {
    EXPECT_EQ(written([](auto& out) { put_u8(out, 0x81); }), std::string("\x81"));
    EXPECT_EQ(written([](auto& out) { put_u16(out, 0x8102); }), std::string("\x02\x81"));
    EXPECT_EQ(written([](auto& out) { put_u32(out, 0x84030201); }), std::string("\x01\x02\x03\x84"));
    EXPECT_EQ(written([](auto& out) { put_u64(out, 0x8807060504030201); }),
              std::string("\x01\x02\x03\x04\x05\x06\x07\x88"));
}

TEST(bytes, truth_is_a_byte_of_one_or_zero) {
    EXPECT_EQ(written([](auto& out) { put_bool(out, true); }), std::string("\x01"));
    EXPECT_EQ(written([](auto& out) { put_bool(out, false); }), std::string(1, '\0'));
}

TEST(bytes, a_text_is_its_length_and_its_bytes) {
    EXPECT_EQ(written([](auto& out) { put_string(out, "abc"); }), std::string("\x03\0\0\0abc", 7));
    EXPECT_EQ(written([](auto& out) { put_string(out, ""); }), std::string(4, '\0'));
    EXPECT_EQ(written([](auto& out) { put_string(out, std::string_view("a\0b", 3)); }),
              std::string("\x03\0\0\0a\0b", 7));
}

TEST(bytes, a_text_too_long_for_its_length_field_is_refused) {
    std::ostringstream out;
    // The bytes are never looked at: only the length counts.
    put_string(out, std::string_view("x", std::size_t{1} << 32));
    EXPECT_TRUE(out.fail());
    EXPECT_EQ(out.str(), "");
}

TEST(bytes, what_was_written_is_read_back) {
    std::stringstream stream;
    put_u8(stream, 0xFF);
    put_u16(stream, 0xFEDC);
    put_u32(stream, 0xFEDCBA98);
    put_u64(stream, 0xFEDCBA9876543210);
    put_bool(stream, true);
    put_string(stream, "text");
    put_bool(stream, false);
    EXPECT_EQ(get_u8(stream), 0xFF);
    EXPECT_EQ(get_u16(stream), 0xFEDC);
    EXPECT_EQ(get_u32(stream), 0xFEDCBA98);
    EXPECT_EQ(get_u64(stream), 0xFEDCBA9876543210);
    EXPECT_TRUE(get_bool(stream));
    EXPECT_EQ(get_string(stream), "text");
    EXPECT_FALSE(get_bool(stream));
    EXPECT_TRUE(stream.good());
}

/// A buffer of a few bytes, which hands on what it holds whenever it is full, and fetches as few at a time.
class small_buffer final : public std::streambuf {
public:
    explicit small_buffer(std::size_t size, std::string content = {})
        : room_(size), content_(std::move(content)) {
        setp(room_.data(), room_.data() + size);
    }
    std::string written() const { return content_ + std::string(pbase(), pptr()); }

private:
    int_type overflow(int_type byte) override {
        content_ = written();
        setp(room_.data(), room_.data() + room_.size());
        return sputc(traits_type::to_char_type(byte));
    }
    int_type underflow() override {
        const std::string next = content_.substr(read_, room_.size());
        if (next.empty()) return traits_type::eof();
        read_ += next.size();
        std::copy(next.begin(), next.end(), room_.begin());
        setg(room_.data(), room_.data(), room_.data() + next.size());
        return traits_type::to_int_type(next.front());
    }

    std::vector<char> room_;
    std::string content_;
    std::size_t read_ = 0;
};

TEST(bytes, numbers_may_lie_across_the_borders_of_any_buffer) {
    for (std::size_t size = 1; size != 12; ++size) {
        SCOPED_TRACE(size);
        std::ostringstream whole;
        small_buffer pieces{size};
        std::ostream out{&pieces};
        for (u32 i = 0; i != 20; ++i)
            for (std::ostream* each : {static_cast<std::ostream*>(&whole), &out}) {
                put_u32(*each, i * 0x01020304U);
                if (i % 3 == 0) put_u8(*each, 7); // so that borders fall everywhere
            }
        ASSERT_EQ(pieces.written(), whole.str());

        small_buffer source{size, whole.str()};
        std::istream in{&source};
        for (u32 i = 0; i != 20; ++i) {
            EXPECT_EQ(get_u32(in), i * 0x01020304U);
            if (i % 3 == 0) {
                EXPECT_EQ(get_u8(in), 7);
            }
        }
        EXPECT_TRUE(in.good());
        EXPECT_EQ(get_u32(in), 0U);
        EXPECT_TRUE(in.fail());
    }
}

TEST(bytes, every_byte_but_zero_reads_as_true) {
    for (int byte = 0; byte != 256; ++byte) {
        SCOPED_TRACE(byte);
        std::istringstream in(std::string(1, static_cast<char>(byte)));
        EXPECT_EQ(get_bool(in), byte != 0);
    }
}

TEST(bytes, a_short_stream_gives_zero_and_fails) {
    for (std::size_t length = 0; length != 8; ++length) {
        SCOPED_TRACE(length);
        const std::string bytes(length, '\xFF');
        const auto fails = [&](auto read) {
            std::istringstream in(bytes);
            EXPECT_EQ(read(in), 0U);
            EXPECT_TRUE(in.fail());
        };
        if (length < 1) fails(get_u8);
        if (length < 2) fails(get_u16);
        if (length < 4) fails(get_u32);
        fails(get_u64);
    }
}

TEST(bytes, all_that_is_read_after_a_failure_is_empty) {
    std::istringstream in("\x01\x02\x03\x04\x05\x06\x07\x08");
    in.setstate(std::ios_base::failbit);
    EXPECT_EQ(get_u8(in), 0);
    EXPECT_EQ(get_u16(in), 0);
    EXPECT_EQ(get_u32(in), 0U);
    EXPECT_EQ(get_u64(in), 0U);
    EXPECT_FALSE(get_bool(in));
    EXPECT_EQ(get_string(in), "");
    in.clear();
    EXPECT_EQ(get_u8(in), 1) << "nothing was taken from the stream";
}

TEST(bytes, long_texts_survive_block_wise_reading) {
    for (const std::size_t length : {65535U, 65536U, 65537U, 200000U}) {
        SCOPED_TRACE(length);
        std::string text(length, '\0');
        for (std::size_t i = 0; i != length; ++i) text[i] = static_cast<char>(i * 31 % 251);
        std::stringstream stream;
        put_string(stream, text);
        EXPECT_EQ(get_string(stream), text);
        EXPECT_TRUE(stream.good());
    }
}

TEST(bytes, a_text_that_ends_early_is_empty_and_fails) {
    std::ostringstream out;
    put_string(out, std::string(100, 'x'));
    const std::string whole = out.str();
    for (std::size_t length = 0; length != whole.size(); ++length) {
        SCOPED_TRACE(length);
        std::istringstream in(whole.substr(0, length));
        EXPECT_EQ(get_string(in), "");
        EXPECT_TRUE(in.fail());
    }
}

/// Counts the bytes that a reader asks for at once.
class counting_buffer final : public std::stringbuf {
public:
    explicit counting_buffer(const std::string& bytes) : std::stringbuf(bytes, std::ios_base::in) {}
    std::streamsize largest = 0;

private:
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        largest = std::max(largest, count);
        return std::stringbuf::xsgetn(to, count);
    }
};

TEST(bytes, a_hostile_length_is_not_believed) {
    counting_buffer buffer(std::string("\xFF\xFF\xFF\xFF", 4) + "few");
    std::istream in(&buffer);
    EXPECT_EQ(get_string(in), "");
    EXPECT_TRUE(in.fail());
    EXPECT_LE(buffer.largest, 64 * 1024);
}

TEST(bytes, a_thousand_levels_nest_and_no_more) {
    std::istringstream in("x");
    std::list<nested_level> levels;
    for (int i = 0; i != nested_level::deepest; ++i) levels.emplace_back(in);
    EXPECT_TRUE(in.good());
    levels.emplace_back(in);
    EXPECT_TRUE(in.fail());
    levels.clear();
    in.clear();
    levels.emplace_back(in);
    EXPECT_TRUE(in.good()) << "a level that is left counts no longer";
}

TEST(bytes, each_stream_counts_its_own_levels) {
    std::istringstream first("x");
    std::istringstream second("x");
    std::list<nested_level> levels;
    for (int i = 0; i != nested_level::deepest; ++i) levels.emplace_back(first);
    const nested_level other{second};
    EXPECT_TRUE(second.good());
}

TEST(bytes, a_stream_that_throws_on_failure_keeps_its_count) {
    std::istringstream in("x");
    in.exceptions(std::ios_base::failbit);
    {
        std::list<nested_level> levels;
        for (int i = 0; i != nested_level::deepest; ++i) levels.emplace_back(in);
        EXPECT_THROW(levels.emplace_back(in), std::ios_base::failure);
    }
    in.clear();
    std::list<nested_level> levels;
    for (int i = 0; i != nested_level::deepest; ++i) levels.emplace_back(in);
    EXPECT_TRUE(in.good());
}

/// A sink that keeps one place behind its end for the byte that overflows, as many do, and that may be full.
class full_sink : public std::streambuf {
public:
    full_sink() { setp(bytes.data(), bytes.data() + room - 1); }
    static constexpr std::size_t room = 16;
    std::string bytes = std::string(4 * room, '.');

private:
    int_type overflow(int_type byte) override {
        if (byte == traits_type::eof() || pptr() > epptr()) return traits_type::eof();
        *pptr() = static_cast<char>(byte);
        pbump(1);
        return traits_type::eof(); // nothing can be emptied
    }
};

TEST(bytes, are_not_put_behind_the_end_of_a_buffer_that_is_full) {
    const struct {
        const char* why;
        std::function<void(std::ostream&)> write;
    } rows[] = {
        {"a byte", [](auto& out) { put_u8(out, 'b'); }},
        {"a number", [](auto& out) { put_u32(out, 0x62626262); }},
        {"a text", [](auto& out) { put_string(out, "bbbb"); }},
        {"no text", [](auto& out) { put_string(out, ""); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        full_sink sink;
        std::ostream out{&sink};
        for (std::size_t i = 0; i != full_sink::room; ++i) put_u8(out, 'a');
        ASSERT_FALSE(out.good());
        out.clear(); // somebody tries again
        for (int i = 0; i != 3; ++i) row.write(out);
        EXPECT_TRUE(out.fail());
        EXPECT_EQ(sink.bytes, std::string(full_sink::room, 'a') + std::string(3 * full_sink::room, '.'));
    }
}

} // namespace
} // namespace kelm
