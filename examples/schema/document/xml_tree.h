// What the two halves of xml_document.h share: the tree of Xerces-C.
// Only they include this.
#pragma once

#include "document/xml_document.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <string>

namespace schema {

namespace xml = xercesc;

/// Keeps Xerces-C running as long as it lives.
class xerces {
public:
    xerces() { xml::XMLPlatformUtils::Initialize(); }
    ~xerces() { xml::XMLPlatformUtils::Terminate(); }
    xerces(const xerces&) = delete;
    xerces& operator=(const xerces&) = delete;
};

struct releaser {
    template <class T>
    void operator()(T* what) const {
        what->release();
    }
};
template <class T>
using released = std::unique_ptr<T, releaser>;

/// \returns the text in UTF-8
std::string narrow(const XMLCh* text);

struct xml_document::tree {
    xerces running; // before all that needs it
    released<xml::DOMDocument> document;

    static xml::DOMImplementation& maker() {
        return *xml::DOMImplementationRegistry::getDOMImplementation(u"LS");
    }
};

} // namespace schema
