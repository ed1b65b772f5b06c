// A mark that is set for the length of a scope.
// It goes back to what it was also when code of an application throws.
#pragma once

namespace kelm {

class scoped_mark {
public:
    explicit scoped_mark(bool& mark) : mark_(mark), before_(mark) { mark_ = true; }
    scoped_mark(const scoped_mark&) = delete;
    scoped_mark& operator=(const scoped_mark&) = delete;
    ~scoped_mark() { mark_ = before_; }

    /// Leaves the mark set behind the scope.
    void stay_set() { before_ = true; }

private:
    bool& mark_;
    bool before_;
};

} // namespace kelm
