// What fuzz targets share: a model to read into, edits as bytes tell, and the laws that must hold afterwards.
// What the bytes mean to the library is each target's own.
#pragma once

#include <kelm/model.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The entry of a target.  \returns 0
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace kelm::fuzzing {

/// Ends the process with a word of why: a law does not hold.
[[noreturn]] void fail(const std::string& why);

/// Takes an input from the front, a number at a time; behind its end all numbers are 0.
class choices {
public:
    choices(const std::uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

    bool empty() const { return left_.empty(); }
    unsigned byte();
    /// \returns a number below `end`, which is at most 256
    unsigned below(unsigned end) { return byte() % end; }
    /// \returns as many bytes as the next byte says
    choices part();
    /// \returns all that is left
    std::string rest() { return std::string{std::exchange(left_, {})}; }

private:
    explicit choices(std::string_view left) : left_(left) {}
    std::string_view left_;
};

/// A fresh model of the test types, closed behind the input.
class fuzzed_model {
public:
    fuzzed_model();
    fuzzed_model(const fuzzed_model&) = delete;
    fuzzed_model& operator=(const fuzzed_model&) = delete;
    ~fuzzed_model();
    kelm::model* operator->() const { return model_; }
    kelm::model& operator*() const { return *model_; }

    bool read(const std::string& bytes);
    /// Gives it a few objects of each kind of link and value; with `changes`, a history of every sort of change.
    void populate(bool changes);

private:
    kelm::model* model_;
};

std::string stream_of(kelm::model& of, bool with_history);

/// Undo, redo, transactions, rollbacks, limits and edits of every sort, one for each byte or a few.
void edit_as_told(kelm::model& what, choices& script);

/// Ends what is open; says everything in words; undoes all, redoes all.  Fails where links are broken on the way.
void walk_through(kelm::model& what);

} // namespace kelm::fuzzing
