// The shared types and the model of a test.
// Everything goes through the public interface.
#include "tests/support/world.h"
#include "tests/support/consistency.h"
#include "tests/support/linked_type.h"
#include "tests/support/summed_type.h"
#include "tests/support/udp_types.h"

#include "testing/canonical_text.h"
#include "testing/links.h"

#include <kelm/testing/laws.h>

#include <stdexcept>

namespace kelm::test {

namespace {

void add_common(meta_object& type) {
    type.add_property(props::text, "Text", data_type::string, "");
    type.add_property(props::reference, "Reference", data_type::object_reference, "");
}

void add_all(meta_object& type) {
    add_common(type);
    type.add_property(props::number, "Number", data_type::integer, "");
    type.add_property(props::flag, "Flag", data_type::boolean, "");
    type.add_property(props::list, "List", data_type::vector, "");
    type.add_property(props::real, "Real", data_type::real, "");
    type.add_property(props::not_inheritable, "Stays", data_type::string, "")
        ->set_attribute_value(attribute_id::not_inheritable, property<bool>{true});
}

class test_types final : public meta_model_builder {
public:
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        meta_model* const app = framework::instance().application_meta_model();
        const auto add = [&](u32 id, const char* name, u32 base) {
            meta_object* const type = app->add_meta_object(id, name, "", "");
            type->add_base_type(app->find_meta_object(base));
            return type;
        };
        add_all(*add(types::thing, "Thing", type_id::generic_object));
        add_all(*add(types::part, "Part", type_id::generic_object));
        add_common(*add(types::other, "Other", type_id::generic_object));
        add(types::special_thing, "Special Thing", types::thing);
        add(types::abstract, "Abstract", type_id::generic_object)->set_generic();
        add_all(*add(types::hooked, "Hooked", type_id::generic_object));
        add_all(*add(types::hooked_part, "Hooked Part", type_id::generic_object));
        add_programmable_hooks(*app->find_meta_object(types::hooked));
        add_programmable_hooks(*app->find_meta_object(types::hooked_part));
        add_second_hooks(*add(types::more_hooked, "More Hooked", types::hooked));
        udp_world::declare_types(*app);
        declare_linked_type(*app);
        declare_summed_type(*app);
        for (const u32 owner : {type_id::model, types::thing, types::part, types::other, types::hooked})
            for (const u32 child : {types::thing, types::part, types::other, types::hooked})
                app->find_meta_object(owner)->add_composition(child);
    }
};

} // namespace

framework& started_framework() {
    test_types builder;
    framework::instance().initialise(builder);
    return framework::instance();
}

std::string as_text(const value_ptr& value) { return value ? value->to_string() : "none"; }

std::string names_of(const std::vector<object*>& objects) {
    std::string names;
    for (const object* each : objects) names += (names.empty() ? "" : " ") + object_name(each);
    return names;
}

std::string dump_text(const abstract_property* value) { return kelm::testing::value_text(value); }
std::string dump_of(kelm::model& of) { return kelm::testing::stored_text_of(of); }
std::string broken_links(kelm::model& of) { return kelm::testing::broken_links(of); }
std::string broken_links_of_hostile(kelm::model& of) { return kelm::testing::broken_links_of_hostile(of); }

world::world()
    : fw(started_framework()),
      root(fw.create_object(type_id::model, nullptr)),
      model(root->model()),
      hooks(hook_program::instance()) {
    hooks.clear();
}

world::~world() {
    hooks.clear();
    if (model) { // else the test has closed it
        model->rollback_transaction_all();
        fw.delete_object(root);
    }
    fw.set_in_semantic(false); // closing leaves it set
}

object* world::make(u32 type, const std::string& name, object* owner) {
    const bool opens = !model->in_transaction();
    if (opens) begin("make");
    object* const made = fw.create_object(type, owner ? owner : root);
    if (made) made->set_property(props::name, text(name));
    if (opens) {
        end();
        model->clear_history();
        model->clear_modified();
    }
    return made;
}

void world::expect_undone_and_redone(const std::string& before) {
    const std::string after = dump();
    for (int round = 0; round != 2; ++round) {
        SCOPED_TRACE(round);
        model->undo();
        EXPECT_EQ(dump(), before);
        model->redo();
        EXPECT_EQ(dump(), after);
    }
}

std::string world::history(std::size_t from) const {
    std::string lines;
    std::string text;
    for (std::size_t i = from; i < model->message_count(); ++i)
        lines +=
            std::to_string(model->message_at(i)->type()) + " " + model->message_at(i)->to_string(text) + "\n";
    return lines;
}

std::string world::message_types(std::size_t from) const {
    std::string numbers;
    for (std::size_t i = from; i < model->message_count(); ++i)
        numbers += (numbers.empty() ? "" : " ") + std::to_string(model->message_at(i)->type());
    return numbers;
}

std::string world::dump() const { return dump_of(*model); }

} // namespace kelm::test
