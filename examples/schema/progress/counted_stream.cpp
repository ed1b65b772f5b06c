// A piece at a time: the one who reads comes by when it is used up.
// Nothing is sought: the library reads and writes from front to back.
#include "progress/counted_stream.h"

#include <algorithm>
#include <utility>

namespace schema {

namespace {

constexpr std::size_t piece = 64 * 1024;

} // namespace

counted_input::counted_input(const std::string& from, progress& told) : from_(from), told_(told) {}

counted_input::int_type counted_input::underflow() {
    told_.reach(next_);
    if (next_ == from_.size()) return traits_type::eof();
    const std::size_t length = std::min(piece, from_.size() - next_);
    char* begin = const_cast<char*>(from_.data()) + next_; // a stream buffer asks for it, and does not write
    setg(begin, begin, begin + length);
    next_ += length;
    return traits_type::to_int_type(*begin);
}

counted_output::counted_output(progress& told) : told_(told) { keep_piece(); }

std::string counted_output::take() && {
    keep_piece();
    return std::move(content_);
}

void counted_output::keep_piece() {
    content_.append(pbase(), pptr());
    told_.reach(content_.size());
    setp(piece_.data(), piece_.data() + piece_.size());
}

counted_output::int_type counted_output::overflow(int_type byte) {
    keep_piece();
    return traits_type::eq_int_type(byte, traits_type::eof()) ? traits_type::not_eof(byte)
                                                              : sputc(traits_type::to_char_type(byte));
}

} // namespace schema
