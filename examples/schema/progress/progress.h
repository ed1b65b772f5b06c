// What long work tells of how far it has come, while somebody looks.
// How it is drawn is the business of terminal_line.h.
#pragma once

#include <cstddef>
#include <string>

namespace schema {

/// Where progress is drawn: a line at a time.
class progress_display {
public:
    virtual ~progress_display() = default;
    /// Takes the place of the line before.
    virtual void show(const std::string& line) = 0;
    /// Leaves nothing behind.
    virtual void clear() = 0;
};

/// From now on progress is drawn there; nowhere for null, which is the start.
/// \param where  borrowed; must outlive all work, or the next call
void show_progress_on(progress_display* where);

/// What is counted.
struct progress_unit {
    const char* name;
    /// The line is drawn anew when so much more is done; work that is less is never shown.  It is counted, not timed, so
    /// that the same work shows the same lines on every machine.
    std::size_t grain;
    std::size_t divisor; ///< what a 1 of the line stands for
};

inline constexpr progress_unit count_of_tables{"tables", 50, 1};
inline constexpr progress_unit count_of_edits{"edits", 50, 1};
inline constexpr progress_unit count_of_bytes{"kB", 256 * 1024, 1024};

/// A stretch of work.  What it has drawn is gone when it ends, however it ends.
class progress {
public:
    /// \param what   what is done: "reading shop.kelm"
    /// \param total  of the unit; 0 when nobody knows
    progress(std::string what, const progress_unit& unit, std::size_t total);
    ~progress();
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    /// Says how much is done by now.
    void reach(std::size_t done);
    /// Says that one more is done.
    void advance() { reach(done_ + 1); }

private:
    std::string line() const;

    const std::string what_;
    const progress_unit& unit_;
    const std::size_t total_;
    std::size_t done_ = 0;
    std::size_t drawn_ = 0; ///< how much was done when the line was drawn; 0 before the first
};

/// A stretch of work of a few steps, none of which can be counted.  The line tells which one it is at.
class progress_steps {
public:
    /// \param is_long  whether it is worth a line
    progress_steps(const std::string& what, int total, bool is_long);
    ~progress_steps();
    progress_steps(const progress_steps&) = delete;
    progress_steps& operator=(const progress_steps&) = delete;

    /// Says that the next step begins.
    void begin_next();

private:
    const std::string what_;
    const int total_;
    const bool is_long_;
    int begun_ = 0;
};

/// \returns the last part of a path, for a line of progress
std::string short_name(const std::string& path);

} // namespace schema
