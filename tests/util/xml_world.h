// A DOM document for the tests of the interface's functions, and what they read from it.
// What the functions do is in xml_helpers_test.cpp and xml_reading_test.cpp.
#pragma once

#include "support/dom_document.h"

#include <kelm/xml_helpers.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace kelm::test {

struct free_bytes {
    void operator()(unsigned char* bytes) const { std::free(bytes); }
};

/// What get_xml_value answers, owned.
struct fetched_value {
    std::unique_ptr<unsigned char, free_bytes> bytes;
    int size = 0;
};

inline fetched_value fetch(void* element) {
    unsigned char before = 0;
    void* data = &before;
    int size = -7;
    get_xml_value(element, data, size);
    return {std::unique_ptr<unsigned char, free_bytes>(static_cast<unsigned char*>(data)), size};
}

/// An empty element of a fresh document.
class xml_world : public testing::Test {
protected:
    /// A new element below the root with this text, or without any for null.
    void* holding(const char* text) {
        void* element = add_xml_elem(root, "e");
        if (text) add_xml_text(element, std::string(text));
        return element;
    }

    /// Gives the root an attribute of any text.
    void set_attribute(const XMLCh* name, const XMLCh* value) {
        document.root_element()->setAttribute(name, value);
    }

    dom_document document;
    void* root = document.root();
};

} // namespace kelm::test
