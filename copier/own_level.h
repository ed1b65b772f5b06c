// The level of a transaction that a paste works in.
// Transactions of applications are guarded by transaction_object, which knows no levels.
#pragma once

#include "message/message_history_impl.h"

#include <kelm/model.h>

#include <string>

namespace kelm {

/// Opens a level, and knows when a refusal, or code of the application, has closed or rolled back that very level: what
/// is open then is the caller's, or nothing.  As long as it lives the model stays open, and what is dropped readable.
class own_level {
public:
    explicit own_level(model& in);
    own_level(const own_level&) = delete;
    own_level& operator=(const own_level&) = delete;

    /// \returns false when an observer refused: the level may be open all the same
    bool open(const std::string& name);
    bool is_open() const;
    /// Ends the level, with what is still open inside it.
    void close();
    /// Takes back the level, with what is still open inside it.  Nothing happens when it is not open.
    /// \throws  the first of what observers throw, when all is taken back
    void roll_back();

private:
    template <class Step>
    void repeat_while_open(Step step);

    bool is_at(std::size_t index) const {
        return index < log_.done().size() && log_.done()[index].get() == begin_;
    }

    model& in_;
    message_history_impl& log_;
    message_history_impl::in_use guard_;
    mutable const tran_begin_message_impl* begin_ = nullptr; // null once it is gone from the log
    mutable std::size_t index_ = 0;                          // where it was last seen in the log
};

} // namespace kelm
