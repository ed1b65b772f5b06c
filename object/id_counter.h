// Numbers that are handed out once.
// Where they are stored is the model's business.
#pragma once

#include <kelm/types.h>

#include <stdexcept>

namespace kelm {

/// Counts upwards to a limit.
class id_counter {
public:
    /// \param end        the first number that is not given
    /// \param exhausted  the text of the exception; a literal
    id_counter(u32 last, u32 end, const char* exhausted) : last_(last), end_(end), exhausted_(exhausted) {}

    u32 last() const { return last_; }
    void set_last(u32 last) { last_ = last; }
    /// \throws std::runtime_error, with the counter unchanged, when there are no more.  A stream may have set the
    ///         counter beyond its end, or to the last number of all, which would wrap to 0: that is refused as well.
    u32 next() {
        const u32 number = last_ + 1;
        if (number >= end_ || number == 0) throw std::runtime_error(exhausted_);
        return last_ = number;
    }

private:
    u32 last_;
    u32 end_;
    const char* exhausted_;
};

} // namespace kelm
