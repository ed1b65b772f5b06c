// Takes the words of a line one after the other, each for what a command wants it to be.
// It knows how things are written, not which of them there are.
#pragma once

#include "edits/script_line.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace schema {

struct column_name {
    std::string table;
    std::string column;
};

/// The words of a line that no one has taken yet.  Whatever takes one throws script_error when the next word is not
/// what it should be.
class line_reader {
public:
    explicit line_reader(std::vector<word> words) : words_(std::move(words)) {}

    bool at_end() const { return next_ == words_.size(); }
    /// \returns whether the word that stands `ahead` of the next is this keyword or sign; case does not count
    bool is(std::string_view wanted, std::size_t ahead = 0) const;
    void skip(std::size_t count) { next_ += count; }
    /// Takes the next word if it is this keyword or sign.  \returns whether it was
    bool take(std::string_view wanted);
    void expect(const char* wanted);
    /// Throws unless all words have been taken.
    void expect_end() const;

    /// \param what  whose name, for the error: "the name of a table"
    std::string name(const std::string& what);
    /// Takes `table.column`.
    column_name column();
    /// Takes `(name, name)`.
    std::vector<std::string> column_list();
    std::size_t number(const std::string& what);
    /// Takes all words of a type: `UNSIGNED BIG INT`, `DECIMAL(10, 2)`.  A keyword of SQL ends it.
    std::string type();

    /// Takes a quoted text, or what stands there up to white space, a comma or a bracket: `-1.5`.
    std::string text(const std::string& what);

    /// Throws an error that says what should stand where the next word is.
    [[noreturn]] void refuse_next(const std::string& wanted) const;

private:
    const word& take_word() { return words_[next_++]; }
    bool is_type_word() const;
    void take_type_word(std::string& type);
    void take_type_number(std::string& type);

    std::vector<word> words_;
    std::size_t next_ = 0;
};

} // namespace schema
