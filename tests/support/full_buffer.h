// A stream that runs full.
// Streams that throw are the business of the tests that need them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <streambuf>

namespace kelm::test {

/// Takes so many bytes and no more.
class full_buffer final : public std::streambuf {
public:
    explicit full_buffer(std::size_t room) : room_(room) {}

private:
    int_type overflow(int_type byte) override {
        if (room_ == 0) return traits_type::eof();
        --room_;
        return traits_type::not_eof(byte);
    }
    std::streamsize xsputn(const char*, std::streamsize count) override {
        const std::size_t taken = std::min(room_, static_cast<std::size_t>(count));
        room_ -= taken;
        return static_cast<std::streamsize>(taken);
    }

    std::size_t room_;
};

} // namespace kelm::test
