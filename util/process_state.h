// Every process-wide setting that is not a registry, in one place, so that tests can see and reset it.
// Plain fields: the whole library is used from one thread.
#pragma once

#include <kelm/types.h>

#include <ctime>
#include <exception>
#include <string>
#include <vector>

namespace kelm {

/// What the document that is being read or written has come to (util/document_state.h).
struct document_state {
    bool failed = false;
    bool is_open = false; // someone asks for the failure at the end
    long depth = 0;       // of values inside values
};

/// What the whole process shares.
struct process_state {
    /// Code of a hook, or a mutation on behalf of another, is running.
    bool in_semantic = false;
    /// Makes make_guid() behave as on a system without random bytes.
    bool guid_source_fails = false;
    /// The buffer behind fast_unsafe_object_name().
    std::string object_name;
    /// A compare runs: names are those that objects keep (util/object_names.h).
    bool use_cached_object_names = false;
    /// Objects whose name is being put together from references, which lead to further names; the innermost last.
    std::vector<const object*> names_in_making;
    document_state document;
    /// Where the walk of a log that is under way keeps the first failure of telling (message/telling.h); null outside.
    std::exception_ptr* failure_of_telling = nullptr;
    /// When the last line of the trace was written; 0 before the first.
    std::time_t last_log_time = 0;
    /// The models that stand, in the order of their making.
    std::vector<const model*> live_models;
    /// Where diagnostics for users go; null means the standard error stream.
    void (*complain)(const std::string& text) = nullptr;
};

/// \returns the one state; never destroyed, since values and messages may die after main
process_state& process();

} // namespace kelm
