// A model that is written into an element of a document and read again.
// What a document has in it, item by item, is told by the tests.
#pragma once

#include "tests/persistence/copy_world.h"
#include "tests/support/canonical_text.h"
#include "tests/support/dom_document.h"

#include <sstream>
#include <string>
#include <string_view>

namespace kelm::test {

/// \returns `text` with `what` put in the place of `part`, which stands in it once
inline std::string with(std::string text, std::string_view part, std::string_view what) {
    const std::size_t at = text.find(part);
    if (at == std::string::npos || text.find(part, at + 1) != std::string::npos) {
        ADD_FAILURE() << part << " does not stand once in " << text;
        return text;
    }
    return text.replace(at, part.size(), what);
}

/// \returns `text` with `what` put in front of `part`, which stands in it once
inline std::string before(const std::string& text, std::string_view part, std::string_view what) {
    return with(text, part, std::string{what} + std::string{part});
}

/// \returns whether `part` stands in `text`
inline bool has(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

class document_world : public copy_world {
protected:
    static constexpr u32 version = newest_version;

    /// \returns the text of the element, which is called "root"
    static std::string saved(kelm::model& which, bool with_history = false, u32 transactions = 0) {
        const dom_document into;
        EXPECT_TRUE(which.write(nullptr, with_history, transactions, false, into.root()));
        return into.text();
    }
    std::string saved(bool with_history = false, u32 transactions = 0) const {
        return saved(*model, with_history, transactions);
    }
    /// Reads into a fresh model, which takes the place of the one read before.  \returns what read() answered
    bool load(const std::string& text, u32 known_version = version, u32 known_minor = 0) {
        make_copy(known_version, known_minor);
        const dom_document from{text};
        if (!from.root_element()) ADD_FAILURE() << "no document: " << text;
        return copy->read(nullptr, from.root());
    }
};

/// A document of a model, with this in its element behind the types.
inline std::string document_with(const std::string& content) {
    return R"(<m id="1" last_id="9"><meta_model version="8" minor_version="0"><meta_objects/></meta_model>)" +
           content + "</m>";
}

} // namespace kelm::test
