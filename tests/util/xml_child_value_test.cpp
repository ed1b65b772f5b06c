// A value in an element of its own.
// The value here writes a number; what the kinds of values write is tested with them.
#include "support/dom_document.h"
#include "util/xml_child_value.h"

#include <kelm/io_references.h>

#include <gtest/gtest.h>

namespace {

using kelm::u32;

/// Writes its number and the id that it was told; remembers what it was told in reading.
struct numbered {
    int number = 0;
    u32 told_id = 0;
    std::vector<kelm::reference_record>* told_references = nullptr;

    void write_xml(void* element, u32 id) const {
        kelm::add_xml_text(element, number);
        kelm::add_xml_att(element, "id", id);
    }
    void read_xml(void* element, u32 id, std::vector<kelm::reference_record>& references, kelm::object*) {
        kelm::get_xml_text(element, number);
        told_id = id;
        told_references = &references;
    }
};

TEST(xml_child_value, a_value_writes_itself_into_a_child) {
    const dom_document document;
    kelm::add_child_value(document.root(), numbered{7}, 50001);
    EXPECT_EQ(document.text(), R"(<root><value id="50001">7</value></root>)");
}

TEST(xml_child_value, a_value_reads_itself_from_the_first_such_child) {
    const dom_document document("<r><other>1</other><value>7</value><value>8</value></r>");
    numbered value;
    std::vector<kelm::reference_record> references;
    EXPECT_TRUE(kelm::read_child_value(document.root(), value, 50001, references, nullptr));
    EXPECT_EQ(value.number, 7);
    EXPECT_EQ(value.told_id, 50001U);
    EXPECT_EQ(value.told_references, &references);
}

TEST(xml_child_value, without_that_child_the_value_is_not_asked) {
    const dom_document document("<r><other><value>7</value></other></r>");
    std::vector<kelm::reference_record> references;
    for (void* element : {document.root(), static_cast<void*>(nullptr)}) {
        numbered value;
        EXPECT_FALSE(kelm::read_child_value(element, value, 50001, references, nullptr));
        EXPECT_EQ(value.told_references, nullptr);
    }
    kelm::add_child_value(nullptr, numbered{7}, 50001);
}

} // namespace
