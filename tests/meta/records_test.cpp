// The binary records of meta things and attributes, byte by byte, and what broken ones do.
// Streams of whole models are tested with persistence.
#include "support/meta_types.h"
#include "support/unregistered_value.h"

#include <sstream>

namespace kelm::test {

namespace {

using namespace std::string_literals;

// Name "ab", class 6 as an integer; the class field after it is 0.
const std::string property_record = "\x39\x30\x00\x00"s // id 12345
                                    "\x02\x00\x00\x00"s // two attributes
                                    "\x00\x00\x00\x00"s // attribute 0
                                    "\x06\x00\x00\x00"s // a string
                                    "\x02\x00\x00\x00"s +
                                    "ab" +               // of two bytes
                                    "\x02\x00\x00\x00"s  // attribute 2
                                    "\x04\x00\x00\x00"s  // an integer
                                    "\x06\x00\x00\x00"s  // 6
                                    "\x00\x00\x00\x00"s; // the stored class

std::string written(const meta_base& thing) {
    std::ostringstream out;
    thing.write(&out, nullptr);
    EXPECT_TRUE(out.good());
    return out.str();
}

/// \returns whether reading ended well
bool read_into(meta_base& thing, const std::string& bytes) {
    std::istringstream in(bytes);
    const bool whole = thing.read(&in, nullptr);
    EXPECT_EQ(whole, !in.fail());
    return whole;
}

class records : public meta_types {};

TEST_F(records, a_property_is_its_id_its_own_attributes_and_a_class_field) {
    meta_property_impl it(12345);
    it.describe("ab", "");
    it.set_attribute_value(attribute_id::property_class, property<int>(6));
    EXPECT_EQ(written(it), property_record);
}

TEST_F(records, a_property_reads_what_was_written) {
    meta_property_impl it;
    ASSERT_TRUE(read_into(it, property_record));
    EXPECT_EQ(it.id(), 12345U);
    EXPECT_EQ(it.name(), "ab");
    EXPECT_EQ(it.property_class(), data_type::string);
    EXPECT_EQ(written(it), property_record);
}

TEST_F(records, keeps_carrying_a_class_field_that_says_nothing) {
    std::string bytes = property_record;
    bytes[bytes.size() - 4] = '\x2A';
    meta_property_impl it;
    ASSERT_TRUE(read_into(it, bytes));
    EXPECT_EQ(it.property_class(), data_type::string) << "that is attribute 2";
    EXPECT_EQ(written(it), bytes);
}

TEST_F(records, other_things_have_no_class_field) {
    meta_object_impl type(7, &application);
    EXPECT_EQ(written(type), "\x07\x00\x00\x00\x00\x00\x00\x00"s);
}

TEST_F(records, inherited_attributes_are_not_written) {
    meta_property_impl base(1);
    base.describe("ab", "");
    meta_property_impl it(2);
    static_cast<meta_property&>(it).add_base(&base);
    EXPECT_EQ(written(it), "\x02\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"s);
}

TEST_F(records, an_unsigned_class_is_written_as_an_integer) {
    meta_property_impl it(12345);
    it.describe("ab", "");
    it.set_attribute_value(attribute_id::property_class, property<unsigned>(6U));
    EXPECT_EQ(written(it), property_record);
}

TEST_F(records, vectors_of_choices_come_back) {
    meta_property_impl it(50001);
    vector_property choices;
    choices.elements = {new property<std::string>("one"), new property<std::string>("two")};
    it.set_attribute_value(attribute_id::default_value_choices, choices);
    meta_property_impl copy;
    ASSERT_TRUE(read_into(copy, written(it)));
    EXPECT_EQ(text_of(copy, attribute_id::default_value_choices), "one, two");
}

TEST_F(records, a_value_that_could_not_be_read_back_fails_the_stream) {
    meta_property_impl it(1);
    it.set_attribute_value(attribute_id::default_value, unregistered_value{});
    std::ostringstream out;
    it.write(&out, nullptr);
    EXPECT_TRUE(out.fail());
}

TEST_F(records, an_unknown_code_fails_the_stream) {
    std::string bytes = property_record;
    bytes[26] = '\x63'; // the code of attribute 2
    meta_property_impl it;
    EXPECT_FALSE(read_into(it, bytes));
    EXPECT_EQ(it.name(), "ab") << "what came before it stays";
    EXPECT_FALSE(it.attribute_value(attribute_id::property_class));
}

TEST_F(records, every_shorter_record_fails) {
    for (std::size_t length = 0; length != property_record.size(); ++length) {
        meta_property_impl it;
        EXPECT_FALSE(read_into(it, property_record.substr(0, length))) << length;
    }
}

TEST_F(records, a_count_is_not_trusted) {
    meta_property_impl it;
    EXPECT_FALSE(read_into(it, "\x01\x00\x00\x00\xFF\xFF\xFF\xFF"s));
    EXPECT_TRUE(it.attributes().empty());
}

TEST_F(records, an_attribute_with_a_default) {
    const meta_attribute_impl it(9001, "abc", std::make_unique<property<bool>>(true), true);
    std::ostringstream out;
    it.write(out);
    const std::string expected = "\x29\x23\x00\x00"s
                                 "\x03\x00\x00\x00"s +
                                 "abc" +
                                 "\x01\x01"s
                                 "\x02\x00\x00\x00"s
                                 "\x01"s;
    EXPECT_EQ(out.str(), expected);

    meta_attribute_impl copy;
    std::istringstream in(expected);
    copy.read(in);
    EXPECT_FALSE(in.fail());
    EXPECT_EQ(copy.id(), 9001U);
    EXPECT_EQ(copy.name(), "abc");
    EXPECT_TRUE(copy.is_inheritable());
    ASSERT_NE(copy.default_value(), nullptr);
    EXPECT_EQ(copy.default_value()->to_string(), "True");
}

TEST_F(records, an_attribute_without_a_default) {
    const meta_attribute_impl it(7, "", nullptr, false);
    std::ostringstream out;
    it.write(out);
    EXPECT_EQ(out.str(), "\x07\x00\x00\x00\x00\x00\x00\x00\x00\x00"s);

    meta_attribute_impl copy(1, "former", std::make_unique<property<int>>(1), true);
    std::istringstream in(out.str());
    copy.read(in);
    EXPECT_EQ(copy.id(), 7U);
    EXPECT_EQ(copy.name(), "");
    EXPECT_FALSE(copy.is_inheritable());
    EXPECT_EQ(copy.default_value(), nullptr);
}

TEST_F(records, a_broken_attribute_leaves_the_row_as_it_was) {
    const std::string whole = "\x29\x23\x00\x00"s
                              "\x03\x00\x00\x00"s +
                              "abc" +
                              "\x01\x01"s
                              "\x04\x00\x00\x00"s
                              "\x05\x00\x00\x00"s;
    for (std::size_t length = 0; length != whole.size(); ++length) {
        meta_attribute_impl it(1, "former", std::make_unique<property<int>>(1), false);
        std::istringstream in(whole.substr(0, length));
        it.read(in);
        EXPECT_TRUE(in.fail()) << length;
        EXPECT_EQ(it.name(), "former");
        EXPECT_EQ(it.default_value()->to_string(), "1");
    }
}

} // namespace

} // namespace kelm::test
