// What the tests of user-defined properties share: a model with a definition in it.
// No expectations.
#pragma once

#include "tests/support/udp_types.h"
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
