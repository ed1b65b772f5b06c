// Elements through the DOM interfaces of Xerces-C, and text between its form and ours.
// The only source that sees those interfaces; no documents are made here.
#include "util/xml_element.h"

#include <kelm/types.h>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <array>
#include <memory>
#include <type_traits>

namespace kelm {

namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::XMLPlatformUtils;
using xercesc::XMLString;

static_assert(std::is_same_v<XMLCh, char16_t>, "wide text is handed to Xerces-C as it is");

DOMElement* dom(void* element) noexcept { return static_cast<DOMElement*>(element); }

/// Gives a transcoded text back.
struct release_text {
    template <class Char>
    void operator()(Char* text) const {
        XMLString::release(&text, XMLPlatformUtils::fgMemoryManager);
    }
};

using wide_copy = std::unique_ptr<XMLCh, release_text>;
using narrow_copy = std::unique_ptr<char, release_text>;

/// \returns where the text ends, or its first unit that is not of 7 bits. Units of 7 bits, which are nearly all, are the
///          same in every code page that Xerces-C may work in, and need no transcoder.
template <class Char>
const Char* end_of_seven_bits(const Char* text) {
    while (*text != 0 && static_cast<std::make_unsigned_t<Char>>(*text) < 0x80) ++text;
    return text;
}

std::u16string wide(const std::string& text) {
    const char* const begin = text.c_str();
    const char* const end = end_of_seven_bits(begin);
    if (*end == 0) return {begin, end};
    return wide_copy{XMLString::transcode(begin, XMLPlatformUtils::fgMemoryManager)}.get();
}

std::optional<std::string> narrow(const XMLCh* text) {
    if (!text) return std::nullopt;
    const XMLCh* const end = end_of_seven_bits(text);
    if (*end == 0) return std::string{text, end};
    return narrow_copy{XMLString::transcode(text, XMLPlatformUtils::fgMemoryManager)}.get();
}

/// A name in the form of the tree, on the stack: a document has many names, and they are short.
class wide_name {
public:
    explicit wide_name(const char* name) {
        if (widens(name ? name : "")) return;
        units_.fill(0);
        XMLString::transcode(name, units_.data(), longest, XMLPlatformUtils::fgMemoryManager);
        // Kept: longer names are cut.  The call fills one unit more with them, and does not terminate it.
        units_[longest] = 0;
    }
    [[nodiscard]] const XMLCh* get() const noexcept { return units_.data(); }

private:
    static constexpr std::size_t longest = 99;

    /// \returns false for a name that is not of 7 bits, as all of our own are, and for one that has to be cut
    bool widens(const char* name) {
        std::size_t i = 0;
        for (; i != longest && name[i] != 0 && static_cast<u8>(name[i]) < 0x80; ++i)
            units_[i] = static_cast<XMLCh>(name[i]);
        units_[i] = 0;
        return name[i] == 0;
    }

    std::array<XMLCh, longest + 2> units_; // set up to the terminator
};

bool is_called(const DOMElement* element, const wide_name& name) {
    return XMLString::equals(element->getNodeName(), name.get());
}

/// The elements right below another one, until a null comes.
/// Xerces-C's own walk looks for entity references around elements, with a dynamic cast for each level; it serves from the
/// first such reference on.
class child_elements {
public:
    explicit child_elements(const DOMElement* of) : of_(of), node_(of->getFirstChild()) {}

    DOMElement* next() {
        for (; node_ && !is_left_to_dom_; node_ = node_->getNextSibling()) {
            is_left_to_dom_ = node_->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE;
            if (node_->getNodeType() != DOMNode::ELEMENT_NODE) continue;
            last_ = static_cast<DOMElement*>(node_);
            node_ = node_->getNextSibling();
            return last_;
        }
        if (is_left_to_dom_)
            return last_ = last_ ? last_->getNextElementSibling() : of_->getFirstElementChild();
        return nullptr;
    }

private:
    const DOMElement* of_;
    DOMNode* node_;
    DOMElement* last_ = nullptr;
    bool is_left_to_dom_ = false;
};

/// The value of an attribute. Nearly every one is a single text; what more there may be is left to Xerces-C.
const XMLCh* value_of(const DOMElement* element, const wide_name& name) {
    const xercesc::DOMAttr* const attribute = element->getAttributeNode(name.get());
    if (!attribute) return element->getAttribute(name.get());
    const DOMNode* const text = attribute->getFirstChild();
    const bool is_single = text && text->getNodeType() == DOMNode::TEXT_NODE && !text->getNextSibling();
    return is_single ? text->getNodeValue() : attribute->getValue();
}

// Kept: the first child node speaks for the whole text: a comment in front of the text stands for it.
const XMLCh* first_value(void* element) {
    const DOMNode* first = element ? dom(element)->getFirstChild() : nullptr;
    return first ? first->getNodeValue() : nullptr;
}

} // namespace

xml_element xml_element::add(const char* name) const {
    const xml_element added = make(name);
    append(added);
    return added;
}

xml_element xml_element::make(const char* name) const {
    if (!element_) return xml_element{nullptr};
    return xml_element{dom(element_)->getOwnerDocument()->createElement(wide_name{name}.get())};
}

void xml_element::append(xml_element made) const {
    if (element_ && made) dom(element_)->appendChild(dom(made.get()));
}

void* xml_element::add_text(const std::string& text) const {
    if (!element_) return nullptr;
    xercesc::DOMText* added = dom(element_)->getOwnerDocument()->createTextNode(wide(text).c_str());
    dom(element_)->appendChild(added);
    return added;
}

void xml_element::add_cdata(const std::u16string& text) const {
    if (!element_) return;
    dom(element_)->appendChild(dom(element_)->getOwnerDocument()->createCDATASection(text.c_str()));
}

void xml_element::set_attribute(const char* name, const std::string& value) const {
    if (!element_) return;
    xercesc::DOMAttr* attribute = dom(element_)->getOwnerDocument()->createAttribute(wide_name{name}.get());
    attribute->setNodeValue(wide(value).c_str());
    dom(element_)->setAttributeNode(attribute);
}

xml_element xml_element::first(const char* name) const {
    if (!element_) return xml_element{nullptr};
    const wide_name wanted{name};
    child_elements below{dom(element_)};
    DOMElement* child = below.next();
    while (child && !is_called(child, wanted)) child = below.next();
    return xml_element{child};
}

void xml_element::append_children(const char* name, std::vector<void*>& out) const {
    if (!element_) return;
    const wide_name wanted{name};
    child_elements below{dom(element_)};
    while (DOMElement* const child = below.next())
        if (is_called(child, wanted)) out.push_back(child);
}

std::vector<void*> xml_element::all_below(const char* name) const {
    std::vector<void*> found;
    if (!element_) return found;
    const xercesc::DOMNodeList* const nodes = dom(element_)->getElementsByTagName(wide_name{name}.get());
    // The list is a walk that goes on from the last item asked for; its length would start it over.
    for (XMLSize_t i = 0; DOMNode* const node = nodes->item(i); ++i)
        found.push_back(static_cast<DOMElement*>(node));
    return found;
}

std::optional<std::string> xml_element::attribute(const char* name) const {
    if (!element_) return std::nullopt;
    return narrow(value_of(dom(element_), wide_name{name}));
}

std::optional<std::string> xml_element::text() const { return narrow(first_value(element_)); }

std::optional<std::u16string> xml_element::wide_text() const {
    const XMLCh* text = first_value(element_);
    if (!text) return std::nullopt;
    return text;
}

} // namespace kelm
