// Plays steps on a model of its own, follows its transactions, and holds the laws of undo, redo and rollback.
// Single calls are step_calls.h; other laws are companions.
#pragma once

#include "testing/companion.h"
#include "testing/history_mix.h"
#include "testing/object_names.h"
#include "testing/step_calls.h"

#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/testing/laws.h>

#include <string>
#include <vector>

namespace kelm::testing {

/// How a law is broken.
struct failure {
    law broken = law::own;
    std::string what; ///< empty: it holds
    std::string difference;
    std::size_t expected_at = npos; ///< the line of code before which the text was what it should be now
};

class player {
public:
    /// \param with   borrowed
    /// \param writes whether steps are written down as code
    player(const history_mix& mix, const companions& with, bool writes);
    ~player();
    player(const player&) = delete;
    player& operator=(const player&) = delete;

    /// \returns false, with nothing done, when the step does not fit: its objects are not there, it is none for a moment
    ///          like this, or left out
    bool play(const step& what);
    /// Ends what is open, undoes everything and redoes everything.
    void finish();
    void end_all();
    /// Closes the model.
    void close();

    const history_mix& mix() const { return mix_; }
    kelm::model& model() const { return *model_; }
    object& root() const { return *root_; }
    const object_names& names() const { return names_; }
    /// \returns how many levels are open
    std::size_t levels() const { return levels_.size(); }
    /// \returns how many begins the model has without an end
    std::size_t open_levels() const;
    /// The texts of the moments between transactions, and in which of them the model stands.
    const std::string& moment(std::size_t which) const { return moments_.at(which).text; }
    std::size_t at() const { return at_; }
    std::size_t moment_count() const { return moments_.size(); }

    std::string state() const { return state_of(*model_); }
    /// \returns a canonical text of a model and what companions add to it
    std::string state_of(kelm::model& of) const;

    bool has_failed() const { return !failure_.what.empty(); }
    const failure& broken() const { return failure_; }
    /// Breaks a law; of several the first is kept.
    void fail(law which, const std::string& what, const std::string& difference = {});

    bool writes() const { return writes_; }
    /// Adds a line to what is written down.
    void note(const std::string& line) { lines_.push_back(line); }
    const std::vector<std::string>& lines() const { return lines_; }
    u64 operations() const { return operations_; }

private:
    struct moment_text {
        std::string text;
        std::size_t line;
    };

    bool may_play(const step& what);
    void play_edit(const step& what, edit_call call);
    void call(const step& what);
    void begin();
    bool has_ended(u32 number) const;
    void end();
    void undo();
    void redo();
    void roll_back(bool all);
    void roll_last_back();
    void restart();
    void settle();
    void threw(const std::string& what);
    moment_text now() const { return {state(), lines_.size()}; }
    void check(law which, const char* what, const moment_text& expected);
    template <class Call>
    void guarded(Call call);
    template <class Event>
    void tell(Event event) {
        for (const auto& each : with_) event(*each);
    }
    void tell_present();

    history_mix mix_;
    const companions& with_;
    object* root_;
    kelm::model* model_;
    object_names names_;
    std::vector<moment_text> levels_; // the moments before the begins of the open levels
    std::vector<moment_text> moments_;
    std::size_t at_ = 0;
    std::vector<std::string> lines_;
    failure failure_;
    bool writes_;
    u64 operations_ = 0;
};

} // namespace kelm::testing
