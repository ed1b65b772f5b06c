// Any text as a document that a model is read from: it is refused, or what was read can be used, written and read again.
// Parsing it is Xerces-C's business, and goes without entities from outside and without a network.
#include "tests/fuzz/fuzzing.h"
#include "tests/support/dom_document.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

using namespace kelm::fuzzing;

namespace {

/// A text as a tree; what is not well-formed ends where that shows.
class parsed_text {
public:
    parsed_text(const std::uint8_t* data, std::size_t size) {
        limits_.setEntityExpansionLimit(100);
        parser_.setSecurityManager(&limits_);
        parser_.setLoadExternalDTD(false);
        parser_.setDisableDefaultEntityResolution(true);
        const xercesc::MemBufInputSource source(data, size, "fuzzed");
        try {
            parser_.parse(source);
        } catch (const xercesc::XMLException&) { // what came before it stands
        }
    }
    /// \returns null when there is none
    xercesc::DOMElement* root() {
        xercesc::DOMDocument* const document = parser_.getDocument();
        return document ? document->getDocumentElement() : nullptr;
    }

private:
    xercesc::SecurityManager limits_;
    xercesc::XercesDOMParser parser_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const xerces running; // starting up takes longer than a run
    parsed_text text{data, size};
    if (!text.root()) return 0;
    fuzzed_model what;
    const bool whole = what->read(nullptr, text.root());
    walk_through(*what);
    const dom_document written;
    if (!whole || !what->write(nullptr, true, 0, false, written.root())) return 0;
    fuzzed_model again;
    if (!again->read(nullptr, written.root())) fail("what was written cannot be read");
    walk_through(*again);
    return 0;
}
