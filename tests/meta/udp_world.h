// What the tests of user-defined properties share: four types, a model, and a definition in it.
// No expectations.
#pragma once

#include "tests/support/world.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/property.h>
#include <kelm/semantic.h>

#include <gmock/gmock.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace kelm::udp_world {

inline constexpr u32 table_type = 41001;
inline constexpr u32 column_type = 41002;   ///< the application gives it a property "Colour"
inline constexpr u32 derived_type = 41003;  ///< derived from the table
inline constexpr u32 stubborn_type = 41004; ///< keeps its user-defined values, and supplies absent ones
inline constexpr u32 unknown_type = 41999;
inline constexpr u32 colour_property = 41100;
inline constexpr u32 first_id = 50001;

class keeps_user_values final : public pre_prop_delete_semantic {
public:
    u32 id() const override { return 41200; }
    bool do_it(object*, u32 id, object*) override { return id < property_id::first_user_defined; }
};

class supplies_absent_values final : public post_prop_get_semantic {
public:
    u32 id() const override { return 41201; }
    bool do_it(object*, u32, abstract_property*& value) override {
        if (!value) value = new property<std::string>("supplied");
        return true;
    }
};

/// Adds them to those of all tests, once a process.
inline void declare_types() {
    meta_model& types = *framework::instance().application_meta_model();
    if (types.find_meta_object(table_type)) return;
    meta_object& base = *types.find_meta_object(type_id::generic_object);
    const auto declare = [&](u32 id, const char* name, meta_object& from) -> meta_object& {
        meta_object& made = *types.add_meta_object(id, name, "", "");
        made.add_base_type(&from);
        return made;
    };
    meta_object& table = declare(table_type, "Udp Table", base);
    declare(column_type, "Udp Column", base).add_property(colour_property, "Colour", data_type::string, "");
    declare(derived_type, "Udp Derived Table", table);
    meta_object& stubborn = declare(stubborn_type, "Udp Stubborn", base);
    ASSERT_TRUE(stubborn.add_semantic(new keeps_user_values));
    ASSERT_TRUE(stubborn.add_semantic(new supplies_absent_values));
}

inline property<std::string> text(const char* value) { return property<std::string>(value); }

inline std::string text_of(const value_ptr& value) { return value ? value->to_string() : "(none)"; }

inline std::unique_ptr<vector_property> texts(std::initializer_list<const char*> values) {
    auto list = std::make_unique<vector_property>();
    for (const char* value : values) list->elements.push_back(new property<std::string>(value));
    return list;
}

inline std::unique_ptr<vector_property> ids(std::initializer_list<u32> values) {
    auto list = std::make_unique<vector_property>();
    for (const u32 value : values) list->elements.push_back(new property<unsigned>(value));
    return list;
}

inline std::vector<std::string> elements_of(const value_ptr& value) {
    std::vector<std::string> out;
    if (const auto* list = dynamic_cast<const vector_property*>(value.get()))
        for (const abstract_property* element : list->elements) out.push_back(element->to_string());
    return out;
}

class user_defined_properties : public testing::Test {
protected:
    void SetUp() override {
        test::started_framework();
        declare_types();
        root_ = framework::instance().create_object(type_id::model, nullptr);
        ASSERT_NE(root_, nullptr);
        model_ = root_->model();
        definition_ = make(type_id::user_defined_property);
        ASSERT_NE(definition_, nullptr);
    }
    void TearDown() override {
        framework::instance().delete_object(root_);
        framework::instance().set_in_semantic(false);
    }

    /// Runs a change in a transaction of its own, which a refusal takes back.
    bool change(const std::function<bool()>& what) {
        model_->begin_transaction("Change");
        const bool done = what();
        if (model_->in_transaction()) model_->end_transaction();
        return done;
    }
    object* make(u32 type) {
        object* made = nullptr;
        change([&] { return (made = framework::instance().create_object(type, root_)) != nullptr; });
        return made;
    }
    bool set(object* what, u32 id, const abstract_property& value) {
        return change([&] { return what->set_property(id, value); });
    }
    bool set(u32 id, const abstract_property& value) { return set(definition_, id, value); }
    bool append(u32 id, const abstract_property& element) {
        return change([&] { return definition_->append_vector_element(id, element); });
    }
    /// Completes the definition.
    void define(const char* name, std::initializer_list<u32> types) {
        ASSERT_TRUE(set(property_id::name, text(name)));
        ASSERT_TRUE(set(property_id::udp_object_types, *ids(types)));
    }

    meta_object* type(u32 id) { return model_->meta_model()->find_meta_object(id); }
    meta_property* made_on(u32 type_number, u32 id = first_id) {
        return type(type_number)->find_property(id);
    }
    /// The id that the next automatic numbering gives.
    u32 next_id() {
        const meta_property* const made =
            model_->add_user_defined_property(column_type, "Probe", data_type::string, "", 0);
        return made ? made->id() : 0;
    }
    /// \returns the messages of the history, one line each
    std::string history() const {
        std::string lines;
        for (std::size_t at = 0; at != model_->message_count(); ++at)
            lines += test::line_of(model_->message_at(at)) + "\n";
        return lines;
    }
    u32 stored_id() { return framework::instance().udp_property_id(definition_); }

    object* root_ = nullptr;
    kelm::model* model_ = nullptr;
    object* definition_ = nullptr;
};

} // namespace kelm::udp_world
