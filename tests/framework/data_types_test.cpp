// The registry of kinds: codes, names, makers.
// Registering through the framework is tested with the framework.
#include "framework/data_types.h"

#include "tests/support/box.h"

#include <kelm/property.h>

#include <gtest/gtest.h>

#include <memory>

namespace kelm {
namespace {

using test::box;

/// A kind of an application.
template <int Number>
class own_kind : public abstract_property {
public:
    owned<abstract_property*> clone() const override { return new own_kind; }
    bool equals(const abstract_property*) const override { return false; }
    std::string to_string() const override { return std::to_string(Number); }
    void to_string(std::string& out) const override { out = to_string(); }
    void from_string(const std::string&) override {}
    void write(std::ostream&) const override {}
    void read(std::istream&, std::vector<reference_record>&, object*) override {}

    static abstract_property* make() { return new own_kind; }
};

class derived_kind final : public own_kind<1> {};

class data_types_registry : public testing::Test {
protected:
    static void SetUpTestSuite() { data_types::register_built_in_data_types(); }
};

struct kind_row {
    u32 code;
    const char* name;
    const std::type_info& type;
    const char* text_of_new;
};

const kind_row built_in[] = {
    {1, "Vector", typeid(vector_property), ""},
    {2, "Boolean", typeid(property<bool>), "False"},
    {3, "Short", typeid(property<short>), "0"},
    {4, "Integer", typeid(property<int>), "0"},
    {5, "Long", typeid(property<long>), "0"},
    {6, "String", typeid(property<std::string>), ""},
    {7, "Double", typeid(property<double>), "0"},
    {8, "Object Reference", typeid(property<object*>), ""},
    {1001, "Long Long", typeid(property<long long>), "0"},
    {1002, "Model Id", typeid(property<GUID>), "{00000000-0000-0000-0000-000000000000}"},
    {1003, "Id Map", typeid(property<id_multimap>), "TO DO"},
};

TEST_F(data_types_registry, each_built_in_code_makes_its_kind) {
    for (const kind_row& row : built_in) {
        SCOPED_TRACE(row.name);
        const box made{data_types::create_value(row.code)};
        ASSERT_TRUE(made);
        const abstract_property& value = *made;
        EXPECT_EQ(typeid(value), row.type);
        EXPECT_EQ(made->to_string(), row.text_of_new);
        EXPECT_EQ(data_types::data_type_of(made.get()), row.code);
        EXPECT_EQ(data_types::data_type_name(row.code), row.name);
    }
}

TEST_F(data_types_registry, each_call_makes_a_value_of_its_own) {
    const box a{data_types::create_value(4)};
    const box b{data_types::create_value(4)};
    EXPECT_NE(a, b);
}

TEST_F(data_types_registry, unknown_codes_make_nothing_and_have_no_name) {
    for (const u32 code : {0U, 9U, 1000U, 1004U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(code);
        EXPECT_EQ(data_types::create_value(code), nullptr);
        EXPECT_EQ(data_types::data_type_name(code), "");
    }
}

TEST_F(data_types_registry, null_and_kinds_without_a_code_have_code_zero) {
    const property<unsigned> unregistered;
    EXPECT_EQ(data_types::data_type_of(nullptr), 0U);
    EXPECT_EQ(data_types::data_type_of(&unregistered), 0U);
    EXPECT_EQ(data_types::data_type_of(&unregistered), 0U) << "also when asked again";
}

TEST_F(data_types_registry, an_application_adds_kinds_of_its_own) {
    const own_kind<1> value;
    EXPECT_EQ(data_types::create_value(700001), nullptr);
    data_types::register_data_type(700001, typeid(own_kind<1>), own_kind<1>::make, "One");
    const box made{data_types::create_value(700001)};
    ASSERT_TRUE(made);
    EXPECT_EQ(made->to_string(), "1");
    EXPECT_EQ(data_types::data_type_of(&value), 700001U);
    EXPECT_EQ(data_types::data_type_name(700001), "One");
    const derived_kind derived;
    EXPECT_EQ(data_types::data_type_of(&derived), 0U) << "the exact type counts";
}

TEST_F(data_types_registry, a_kind_asked_for_before_it_was_registered_is_found_afterwards) {
    const own_kind<2> value;
    EXPECT_EQ(data_types::data_type_of(&value), 0U);
    data_types::register_data_type(700002, typeid(own_kind<2>), own_kind<2>::make, "Two");
    EXPECT_EQ(data_types::data_type_of(&value), 700002U);
}

TEST_F(data_types_registry, a_code_that_is_taken_stays_as_it_is) {
    data_types::register_data_type(4, typeid(own_kind<3>), own_kind<3>::make, "Three");
    const box made{data_types::create_value(4)};
    ASSERT_TRUE(made);
    EXPECT_NE(dynamic_cast<property<int>*>(made.get()), nullptr);
    EXPECT_EQ(data_types::data_type_name(4), "Integer");
    const own_kind<3> value;
    EXPECT_EQ(data_types::data_type_of(&value), 0U);
}

TEST_F(data_types_registry, of_two_codes_for_one_kind_the_lower_is_its_code) {
    const own_kind<4> value;
    data_types::register_data_type(700005, typeid(own_kind<4>), own_kind<4>::make, "Four, high");
    EXPECT_EQ(data_types::data_type_of(&value), 700005U);
    data_types::register_data_type(700004, typeid(own_kind<4>), own_kind<4>::make, "Four, low");
    EXPECT_EQ(data_types::data_type_of(&value), 700004U);
}

TEST_F(data_types_registry, a_code_without_a_maker_makes_nothing) {
    data_types::register_data_type(700006, typeid(own_kind<5>), nullptr, "Five");
    EXPECT_EQ(data_types::create_value(700006), nullptr);
    EXPECT_EQ(data_types::data_type_name(700006), "Five");
}

TEST_F(data_types_registry, registering_the_built_in_kinds_again_changes_nothing) {
    data_types::register_built_in_data_types();
    for (const kind_row& row : built_in) EXPECT_EQ(data_types::data_type_name(row.code), row.name);
}

} // namespace
} // namespace kelm
