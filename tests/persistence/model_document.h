// A model in a document, and documents with a single object.
// What is expected of them is told by the tests.
#pragma once

#include "tests/persistence/document_world.h"

#include <gtest/gtest.h>

#include <string>

namespace kelm::test {

class model_document : public document_world {
protected:
    /// \returns the lines of what stands behind the types, history included
    static std::string tree_of(const std::string& document) {
        const std::string lines = canonical_text(document);
        const std::size_t behind = lines.find("\n  ", lines.find("  meta_model") + 3);
        std::size_t at = behind;
        while (at != std::string::npos && lines.compare(at + 1, 4, "    ") == 0)
            at = lines.find('\n', at + 1);
        return at == std::string::npos || at + 1 == lines.size() ? std::string{} : lines.substr(at);
    }
    void give(object* to, u32 id, const abstract_property& value) {
        begin();
        ASSERT_TRUE(to->set_property(id, value));
        end();
    }
    /// Reads a document with this below the model's element.  \returns what read() answered
    bool load_content(const std::string& content) { return load(document_with(content)); }
    /// Reads one object of type thing, whose id is 2, with these items.
    object* load_object(const std::string& items) {
        const bool was_read =
            load_content("<childs><child type=\"100\" id=\"2\">" + items + "</child></childs>");
        EXPECT_TRUE(was_read) << items;
        return copied(2);
    }
    /// \returns whether reading such an object is refused
    bool refuses(const std::string& items) {
        return !load_content("<childs><child type=\"100\" id=\"2\">" + items + "</child></childs>");
    }
    GUID id_of(const kelm::model* of) const {
        GUID id;
        of->model_id(id);
        return id;
    }
};

} // namespace kelm::test
