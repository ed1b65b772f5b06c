// An XML document: the tree, from text and to text.
// It and xml_parsing.cpp are the one place that knows Xerces-C.  What stands in the tree is the business of document_file.h.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

namespace schema {

/// Why a text is no document, in a few words.
class xml_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A document with a root element.  Elements are given as the library takes them, and belong to the document.
class xml_document {
public:
    /// Makes one whose root has this name and nothing in it.
    static xml_document with_root(const char* name);
    /// Reads one.  Nothing outside of the text is looked at, and a document type is refused: with it, a short text
    /// could stand for a huge one.
    /// \throws xml_error when it is not well-formed
    static xml_document from_text(const std::string& text);

    xml_document(xml_document&&) noexcept;
    ~xml_document();

    void* root() const;
    std::string root_name() const;

    /// Moves the child elements of that name, in their order, from one element to the end of another.
    void move_children(void* from, void* to, const char* name);

    /// Replaces all that is in an element by a text.
    void set_text(void* of, const std::string& text);

    /// \returns the first text that holds a character that XML has no place for; empty when there is none
    std::string impossible_text() const;
    /// \returns the document in UTF-8, an element a line
    std::string text() const;

private:
    struct tree;
    explicit xml_document(std::unique_ptr<tree> owned);

    std::unique_ptr<tree> tree_;
};

} // namespace schema
