// A meta model of its own for each test, with the built-in attributes in place.
// Tests of objects and models start the whole process instead.
#pragma once

#include "framework/data_types.h"
#include "meta/built_ins.h"
#include "meta/meta_attribute_table.h"
#include "meta/meta_model_impl.h"
#include "meta/meta_object_impl.h"

#include <kelm/meta_model.h>
#include <kelm/property.h>
#include <kelm/semantic.h>
#include <kelm/subject.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace kelm::test {

/// \returns the ids of a list of meta things, in its order
template <class Thing>
std::vector<u32> ids_of(const std::vector<Thing*>& list) {
    std::vector<u32> ids;
    for (const Thing* thing : list) ids.push_back(thing->id());
    return ids;
}

using ids = std::vector<u32>;

/// \returns the text form of an attribute's value; "none" when it has none
template <class Thing>
std::string text_of(const Thing& thing, u32 attribute) {
    const value_ptr value = thing.attribute_value(attribute);
    return value ? value->to_string() : "none";
}

/// \returns the implementation side of a property, composition or type
template <class Thing>
meta_base& base_of(Thing& thing) {
    return dynamic_cast<meta_base&>(thing);
}

/// Counts what a meta thing tells, and may do something meanwhile.
class listener final : public observer_impl {
public:
    template <class Thing>
    explicit listener(Thing& to) : subject_(dynamic_cast<subject*>(&to)) {
        subject_->attach(this);
    }
    ~listener() override { subject_->detach(this); }
    bool update(subject*, message* what) override {
        ++told;
        if (what) ++told_a_message;
        if (meanwhile) meanwhile();
        return answer;
    }

    int told = 0;
    int told_a_message = 0;
    bool answer = true;
    std::function<void()> meanwhile;

private:
    subject* subject_;
};

/// A hook of any kind without arguments to speak of; it counts its death.
template <class Kind>
class probe final : public Kind {
public:
    explicit probe(u32 id, int* deaths = nullptr) : id_(id), deaths_(deaths) {}
    ~probe() override {
        if (deaths_) ++*deaths_;
    }
    u32 id() const override { return id_; }
    bool do_it(object*) override { return true; }

private:
    u32 id_;
    int* deaths_;
};

using create_probe = probe<obj_create_semantic>; // kind 1
using delete_probe = probe<obj_delete_semantic>; // kind 2

class meta_types : public testing::Test {
protected:
    static void SetUpTestSuite() {
        data_types::register_built_in_data_types();
        if (!meta_attributes().find(attribute_id::name)) add_built_in_attributes();
    }

    meta_object& add_type(u32 id, const std::string& name = "type") {
        return *application.add_meta_object(id, name, "", "");
    }
    meta_object& add_type_of(meta_object& base, u32 id, const std::string& name = "type") {
        meta_object& made = add_type(id, name);
        made.add_base_type(&base);
        return made;
    }

    meta_model_impl application{0, "Application Meta Model", ""};
};

} // namespace kelm::test
