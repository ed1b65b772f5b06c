// Elements as lines.
// What the lines must be is told by the tests.
#include "tests/support/canonical_text.h"

#include <map>

namespace kelm::test {

namespace {

std::string narrow(const XMLCh* text) {
    char* bytes = xercesc::XMLString::transcode(text);
    std::string result = bytes;
    xercesc::XMLString::release(&bytes);
    return result;
}

std::string escaped(const std::string& text) {
    std::string out;
    for (const char each : text) {
        switch (each) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '"': out += "&quot;"; break;
        case '\r': out += "&#13;"; break;
        case '\n': out += "&#10;"; break;
        default: out += each;
        }
    }
    return out;
}

std::string attributes_of(const xercesc::DOMElement& of) {
    std::map<std::string, std::string> sorted;
    const xercesc::DOMNamedNodeMap* const all = of.getAttributes();
    for (XMLSize_t i = 0; i != all->getLength(); ++i)
        sorted[narrow(all->item(i)->getNodeName())] = narrow(all->item(i)->getNodeValue());
    std::string out;
    for (const auto& [name, value] : sorted) out += " " + name + "=\"" + escaped(value) + "\"";
    return out;
}

/// \returns the text between the elements below; none where it only lays them out
std::string text_of(const xercesc::DOMElement& of) {
    std::string out;
    for (const auto* each = of.getFirstChild(); each; each = each->getNextSibling()) {
        const auto type = each->getNodeType();
        if (type == xercesc::DOMNode::TEXT_NODE || type == xercesc::DOMNode::CDATA_SECTION_NODE)
            out += narrow(each->getNodeValue());
    }
    const bool lays_out = of.getFirstElementChild() && out.find_first_not_of(" \t\r\n") == std::string::npos;
    return lays_out ? std::string{} : out;
}

void append(std::string& out, const xercesc::DOMElement& of, std::size_t depth) {
    out += std::string(2 * depth, ' ') + narrow(of.getNodeName()) + attributes_of(of);
    if (const std::string text = text_of(of); !text.empty()) out += ": " + escaped(text);
    out += '\n';
    for (const auto* each = of.getFirstElementChild(); each; each = each->getNextElementSibling())
        append(out, *each, depth + 1);
}

} // namespace

std::string canonical_text(const xercesc::DOMElement& of) {
    std::string out;
    append(out, of, 0);
    return out;
}

std::string canonical_text(const std::string& document) {
    const dom_document parsed{document};
    return parsed.root_element() ? canonical_text(*parsed.root_element()) : "no document: " + document;
}

} // namespace kelm::test
