// A DOM document with one empty element, for tests of what goes into elements and comes out of them.
// The library makes none itself: an application does it this way.
#pragma once

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <memory>
#include <string>

/// Keeps Xerces-C running as long as it lives.
class xerces {
public:
    xerces() { xercesc::XMLPlatformUtils::Initialize(); }
    xerces(const xerces&) = delete;
    xerces& operator=(const xerces&) = delete;
    ~xerces() { xercesc::XMLPlatformUtils::Terminate(); }
};

class dom_document {
public:
    /// A document whose only element is an empty "root".
    dom_document() : document_(implementation()->createDocument(nullptr, u"root", nullptr)) {}
    dom_document(const dom_document&) = delete;
    dom_document& operator=(const dom_document&) = delete;
    ~dom_document() { document_->release(); }

    /// The document that `text` spells; without a root element when it does not parse.
    explicit dom_document(const std::string& text) {
        xercesc::XercesDOMParser parser;
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                                "test");
        parser.parse(source);
        document_ = parser.adoptDocument();
    }

    [[nodiscard]] xercesc::DOMDocument* dom() const { return document_; }
    [[nodiscard]] xercesc::DOMElement* root_element() const { return document_->getDocumentElement(); }
    /// The root in the form that the library takes.
    [[nodiscard]] void* root() const { return root_element(); }

    /// The XML text of the root element, without a declaration.
    [[nodiscard]] std::string text() const {
        const auto release = [](auto* each) { each->release(); };
        const std::unique_ptr<xercesc::DOMLSSerializer, decltype(release)> writer(
            implementation()->createLSSerializer(), release);
        XMLCh* written = writer->writeToString(root_element());
        char* narrow = xercesc::XMLString::transcode(written);
        const std::string result = narrow;
        xercesc::XMLString::release(&narrow);
        xercesc::XMLString::release(&written);
        return result;
    }

private:
    static xercesc::DOMImplementation* implementation() {
        return xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
    }

    xerces running_;
    xercesc::DOMDocument* document_ = nullptr;
};
