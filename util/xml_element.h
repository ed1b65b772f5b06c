// An element of a DOM tree, behind a void* in the interface: the one place where that becomes a DOM element.
// No numbers, no escaping and no values: those are built on it (xml_helpers.cpp, xml_child_value.h).
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelm {

/// A borrowed element, or none.  To none nothing is added, nothing is found in it.  Exceptions of Xerces-C
/// pass through.  What <kelm/xml_helpers.h> says of names and of narrow text holds here.
class xml_element {
public:
    /// \param element  a `xercesc::DOMElement*` as void*; may be null
    explicit xml_element(void* element) noexcept : element_(element) {}

    [[nodiscard]] void* get() const noexcept { return element_; }
    [[nodiscard]] explicit operator bool() const noexcept { return element_ != nullptr; }

    /// Appends a new element.
    /// \returns it, or none for none
    xml_element add(const char* name) const; // NOLINT(modernize-use-nodiscard): who adds need not look at it
    /// \returns a new element of the same document, which stands nowhere yet; none for none
    [[nodiscard]] xml_element make(const char* name) const;
    /// Appends an element that make() gave.
    void append(xml_element made) const;
    /// Appends a text node.
    /// \returns it as a DOMText*, or null for none
    void* add_text(const std::string& text) const;
    /// Appends a CDATA section.
    void add_cdata(const std::u16string& text) const;
    /// Sets an attribute; one of that name is replaced.
    void set_attribute(const char* name, const std::string& value) const;

    /// \returns the first child element called `name`, or none
    [[nodiscard]] xml_element first(const char* name) const;
    /// Appends all child elements called `name`, in document order.
    void append_children(const char* name, std::vector<void*>& out) const;
    /// \returns all elements called `name` below this one, at any depth, in document order
    [[nodiscard]] std::vector<void*> all_below(const char* name) const;
    /// \returns the attribute's text; an empty one for a missing attribute; nullopt for none
    [[nodiscard]] std::optional<std::string> attribute(const char* name) const;
    /// \returns the value of the first child node; nullopt when there is none or it has no value
    [[nodiscard]] std::optional<std::string> text() const;
    /// \returns the same as the tree holds it
    [[nodiscard]] std::optional<std::u16string> wide_text() const;

private:
    void* element_;
};

} // namespace kelm
