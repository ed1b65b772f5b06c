// A stream whose buffer throws where it has nothing more to give, and no more room.
// Buffers that just run full are full_buffer.h.
#pragma once

#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

namespace kelm::test {

/// What such buffers, and handlers, throw: nothing that a stream throws itself.
struct out_of_order : std::runtime_error {
    using runtime_error::runtime_error;
};

/// Gives the bytes of a text, takes as many, and throws.
class throwing_buffer final : public std::streambuf {
public:
    explicit throwing_buffer(std::string bytes) : bytes_(std::move(bytes)) {
        setg(bytes_.data(), bytes_.data(), bytes_.data() + bytes_.size());
        setp(bytes_.data(), bytes_.data() + bytes_.size());
    }

private:
    int_type overflow(int_type) override { throw out_of_order{"disk"}; }
    int_type underflow() override { throw out_of_order{"disk"}; }

    std::string bytes_;
};

} // namespace kelm::test
