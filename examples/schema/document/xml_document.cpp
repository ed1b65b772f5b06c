// Trees of Xerces-C: made, looked into, serialised.
// Texts go through the transcoder of the library's helpers: see <kelm/xml_helpers.h>.
#include "document/xml_document.h"

#include "document/xml_tree.h"

#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <kelm/xml_helpers.h>

#include <vector>

namespace schema {

namespace {

xml::DOMElement* element(void* of) { return static_cast<xml::DOMElement*>(of); }

bool is_possible(const XMLCh* at) {
    if (*at == u'\t' || *at == u'\n' || *at == u'\r') return true;
    return *at >= 0x20 && *at < 0xFFFE;
}

bool is_possible_text(const XMLCh* text) {
    for (; *text; ++text)
        if (!is_possible(text)) return false;
    return true;
}

} // namespace

std::string narrow(const XMLCh* text) {
    const xml::TranscodeToStr converted(text, "UTF-8");
    return {reinterpret_cast<const char*>(converted.str()), converted.length()};
}

xml_document::xml_document(std::unique_ptr<tree> owned) : tree_(std::move(owned)) {}
xml_document::xml_document(xml_document&&) noexcept = default;
xml_document::~xml_document() = default;

xml_document xml_document::with_root(const char* name) {
    auto made = std::make_unique<tree>();
    const std::u16string wide(name, name + std::char_traits<char>::length(name));
    made->document.reset(tree::maker().createDocument(nullptr, wide.c_str(), nullptr));
    return xml_document(std::move(made));
}

void* xml_document::root() const { return tree_->document->getDocumentElement(); }

std::string xml_document::root_name() const { return narrow(element(root())->getTagName()); }

void xml_document::move_children(void* from, void* to, const char* name) {
    std::vector<void*> moved;
    kelm::get_child_elems_by_name(from, name, moved);
    for (void* each : moved) element(to)->appendChild(element(each));
}

void xml_document::set_text(void* of, const std::string& text) {
    if (!of) return;
    while (xml::DOMNode* inner = element(of)->getFirstChild()) element(of)->removeChild(inner)->release();
    if (!text.empty()) kelm::add_xml_text(of, text);
}

std::string xml_document::impossible_text() const {
    const released<xml::DOMTreeWalker> walker(
        tree_->document->createTreeWalker(element(root()), xml::DOMNodeFilter::SHOW_TEXT, nullptr, true));
    while (const xml::DOMNode* text = walker->nextNode())
        if (!is_possible_text(text->getNodeValue())) return narrow(text->getNodeValue());
    return {};
}

std::string xml_document::text() const {
    xml::DOMImplementation& maker = tree::maker();
    const released<xml::DOMLSSerializer> writer(maker.createLSSerializer());
    writer->getDomConfig()->setParameter(xml::XMLUni::fgDOMWRTFormatPrettyPrint, true);
    writer->getDomConfig()->setParameter(xml::XMLUni::fgDOMWRTXercesPrettyPrint, false);
    writer->setNewLine(u"\n");
    const released<xml::DOMLSOutput> output(maker.createLSOutput());
    xml::MemBufFormatTarget bytes;
    output->setByteStream(&bytes);
    output->setEncoding(u"UTF-8");
    if (!writer->write(tree_->document.get(), output.get())) throw xml_error("it cannot be written");
    return {reinterpret_cast<const char*>(bytes.getRawBuffer()), bytes.getLen()};
}

} // namespace schema
