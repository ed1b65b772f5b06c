// Streams in memory that tell how far they have been read or written.
// What is read or written is the library's business.
#pragma once

#include "progress/progress.h"

#include <array>
#include <cstddef>
#include <streambuf>
#include <string>

namespace schema {

/// Bytes in memory to be read from, told of in pieces.
class counted_input final : public std::streambuf {
public:
    /// \param from  borrowed
    /// \param told  of the bytes that have been read; borrowed
    counted_input(const std::string& from, progress& told);

protected:
    int_type underflow() override;

private:
    const std::string& from_;
    progress& told_;
    std::size_t next_ = 0; ///< where the next piece begins
};

/// Bytes in memory to be written to, told of in pieces.
class counted_output final : public std::streambuf {
public:
    /// \param told  of the bytes that have been written; borrowed
    explicit counted_output(progress& told);

    /// \returns all that was written
    std::string take() &&;

protected:
    int_type overflow(int_type byte) override;

private:
    void keep_piece();

    std::array<char, 64 * 1024> piece_;
    std::string content_;
    progress& told_;
};

} // namespace schema
