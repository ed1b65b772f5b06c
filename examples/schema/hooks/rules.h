// What the hooks of a schema share with the one who edits it: when they hold, why they refused, what is to be checked.
// What the rules say is told in the files of the hooks, from hooks.h on.
#pragma once

#include "files/file_version.h"

#include <kelm/object.h>

#include <string>
#include <utility>
#include <vector>

namespace schema {

/// What becomes of foreign keys of other tables when the table goes that they refer to.
enum class referenced_drop {
    refuse,    ///< the table stays
    drop_keys, ///< they go with it
};

/// Hooks belong to types, and so to the process; this is what they and an editor tell each other.  It must outlive the
/// library.
class rules {
public:
    /// While one of these lives, the rules hold.  What is read from a database is as SQLite has it, and what is
    /// closed needs no rules.
    class watch {
    public:
        explicit watch(rules& shared) : rules_(shared) { rules_.begin(); }
        ~watch() { rules_.hold_ = false; }
        watch(const watch&) = delete;
        watch& operator=(const watch&) = delete;

    private:
        rules& rules_;
    };

    bool hold() const { return hold_; }

    /// Keeps why a hook refuses.  \returns false, which is what the hook answers
    bool refuse(std::string why) {
        reason_ = std::move(why);
        return false;
    }
    /// \returns the last reason since the watch began; empty when there is none
    const std::string& reason() const { return reason_; }

    /// Keeps an object that cannot be whole yet, to be checked when the edit ends.
    void note_unfinished(const kelm::object& made) { unfinished_.push_back(made.id()); }
    /// \returns ids, as an object may be gone again by then
    const std::vector<kelm::u32>& unfinished() const { return unfinished_; }

    /// Keeps the version of a file, which only hooks are told.
    void note_version(file_version of_file) { version_ = of_file; }
    void forget_version() { version_ = {}; }
    /// \returns that of the file that was read last; 0.0 when reading did not come so far
    file_version version() const { return version_; }

    referenced_drop on_referenced_drop = referenced_drop::refuse;

private:
    void begin() {
        hold_ = true;
        reason_.clear();
        unfinished_.clear();
    }

    bool hold_ = false;
    std::string reason_;
    std::vector<kelm::u32> unfinished_;
    file_version version_;
};

} // namespace schema
