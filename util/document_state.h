// What a walk through a document has to tell behind interfaces that answer nothing: that it failed, and how deep it is.
// A stream keeps the same in itself (util/bytes.h); an element has no place for it.
#pragma once

#include "util/bytes.h"
#include "util/process_state.h"

#include <optional>

namespace kelm {

/// Reading or writing of one document, as long as it lives.  Starts without a failure; documents that hooks touch
/// meanwhile are passes of their own.
class document_pass {
public:
    document_pass() : before_(process().document) { process().document = {.is_open = true}; }
    document_pass(const document_pass&) = delete;
    document_pass& operator=(const document_pass&) = delete;
    ~document_pass() { process().document = before_; }

    static void fail() { process().document.failed = true; }
    [[nodiscard]] static bool has_failed() { return process().document.failed; }

private:
    document_state before_;
};

/// Reading or writing of a part that may stand alone: inside a pass it belongs to that, alone it is a pass of its own, so
/// that its failure ends with it.
class document_part {
public:
    document_part() {
        if (!process().document.is_open) alone_.emplace();
    }

private:
    std::optional<document_pass> alone_;
};

/// One level of values inside values in a document, as long as it lives.  The limit is that of streams.
class document_level {
public:
    /// Fails the pass when it is nested_level::deepest levels down already.
    document_level() {
        if (process().document.depth >= nested_level::deepest) document_pass::fail();
        ++process().document.depth;
    }
    document_level(const document_level&) = delete;
    document_level& operator=(const document_level&) = delete;
    ~document_level() { --process().document.depth; }
};

} // namespace kelm
