// Undo and redo as an Edit menu has them: a list of names, levels that nest, and a change that fails.
// What a hook adds to a change is undone with it: see ../refusing_hook.
#include <kelm/kelm.h>

#include <iostream>
#include <string>

constexpr kelm::u32 task = 100;
constexpr kelm::u32 hours = 100;

struct plan_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(task, "Task", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        type->add_property(hours, "Hours", kelm::data_type::integer, "");
        types->find_meta_object(kelm::type_id::model)->add_composition(task);
    }
};

/// A level: inside the open transaction it can be taken back alone, but is undone with the whole.
kelm::object* add_task(kelm::object* plan, const std::string& name, int effort) {
    kelm::model* document = plan->model();
    document->begin_transaction("Add " + name);
    kelm::object* made = kelm::framework::instance().create_object(task, plan);
    made->set_property(kelm::property_id::name, kelm::property<std::string>(name));
    if (effort <= 0) {
        document->rollback_transaction();
        return nullptr;
    }
    made->set_property(hours, kelm::property<int>(effort));
    document->end_transaction();
    return made;
}

/// What the menu and the document look like.
void show(const char* when, kelm::object* plan) {
    kelm::model* document = plan->model();
    std::cout << when << ":";
    for (const kelm::object* each : plan->children())
        std::cout << ' ' << kelm::object_name(each) << " (" << each->get_property(hours)->to_string() << ')';
    std::cout << "\n  Undo [" << document->undo_name() << "]  Redo [" << document->redo_name() << "]\n";
}

int main() {
    kelm::framework& framework = kelm::framework::instance();
    plan_types types;
    framework.initialise(types);
    kelm::object* plan = framework.create_object(kelm::type_id::model, nullptr);
    kelm::model* document = plan->model();
    show("a new document", plan);

    kelm::transaction_object start(document, "Plan a house"); // one entry of the menu, with all its levels
    add_task(plan, "walls", 80);
    kelm::object* roof = add_task(plan, "roof", 40);
    if (!add_task(plan, "magic", 0)) std::cout << "magic takes no time, and is no task\n";
    start.commit();
    show("planned", plan);

    framework.set_property_transacted(roof, hours, kelm::property<int>(60));
    framework.delete_object_transacted(roof);
    show("changed", plan);

    kelm::transaction_names names; // the newest first, each with the id of its transaction
    document->undo_names(names, 0);
    std::cout << "could be undone: " << names.size() << '\n';
    document->undo();
    show("the roof is back", plan);
    document->undo();
    show("and takes 40 hours", plan);
    document->redo();
    show("no, 60", plan);

    add_task(plan, "garden", 8); // on its own it is a transaction; what was undone cannot be redone any more
    show("a garden", plan);
    while (document->can_undo()) document->undo();
    show("all taken back", plan);
    while (document->can_redo()) document->redo();
    show("and done again", plan);
    framework.shutdown();
}
