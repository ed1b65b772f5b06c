// From text to a tree, with everything turned off that reaches beyond the text.
// What is wrong with a text is told in the words of Xerces-C.
#include "document/xml_tree.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/SecurityManager.hpp>

namespace schema {

namespace {

/// Every fault ends the reading.
class strict final : public xml::ErrorHandler {
public:
    void warning(const xml::SAXParseException&) override {}
    void error(const xml::SAXParseException& fault) override { refuse(fault); }
    void fatalError(const xml::SAXParseException& fault) override { refuse(fault); }
    void resetErrors() override {}

private:
    [[noreturn]] static void refuse(const xml::SAXParseException& fault) {
        throw xml_error("line " + std::to_string(fault.getLineNumber()) + ": " + narrow(fault.getMessage()));
    }
};

void forbid_all_but_the_text(xml::XercesDOMParser& parser, xml::SecurityManager& limits) {
    limits.setEntityExpansionLimit(1000);
    parser.setSecurityManager(&limits);
    parser.setValidationScheme(xml::XercesDOMParser::Val_Never);
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setLoadSchema(false);
    parser.setLoadExternalDTD(false);
    parser.setSkipDTDValidation(true);
    parser.setDisableDefaultEntityResolution(true);
    parser.setCreateEntityReferenceNodes(false);
    parser.setCreateCommentNodes(false); // somebody's remark must not stand before a value
}

} // namespace

xml_document xml_document::from_text(const std::string& text) {
    auto made = std::make_unique<tree>();
    try {
        xml::SecurityManager limits; // outlives the parser, which borrows both
        strict faults;
        xml::XercesDOMParser parser;
        forbid_all_but_the_text(parser, limits);
        parser.setErrorHandler(&faults);
        const xml::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                            "document");
        parser.parse(source);
        made->document.reset(parser.adoptDocument());
    } catch (const xml::XMLException& fault) {
        throw xml_error(narrow(fault.getMessage()));
    } catch (const xml::DOMException& fault) {
        throw xml_error(narrow(fault.getMessage()));
    } catch (const xml::OutOfMemoryException&) {
        throw xml_error("it is too large");
    }
    if (!made->document || !made->document->getDocumentElement()) throw xml_error("it has no root element");
    if (made->document->getDoctype()) throw xml_error("it has a document type");
    return xml_document(std::move(made));
}

} // namespace schema
