// What a stretch of edits came to: the list that a user reads before he saves, or sends for review.
// Every single step is what the messages of the history tell: see docs/messages.md.
#include <kelm/kelm.h>

#include <iostream>
#include <string>

constexpr kelm::u32 dish = 100;
constexpr kelm::u32 price = 100;

struct menu_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(dish, "Dish", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        type->add_property(price, "Price", kelm::data_type::integer, "");
        types->find_meta_object(kelm::type_id::model)->add_composition(dish);
    }
};

kelm::object* add_dish(kelm::object* menu, const std::string& name, int cents) {
    kelm::transaction_object adding(menu->model(), "Add " + name);
    kelm::object* made = kelm::framework::instance().create_object(dish, menu);
    made->set_property(kelm::property_id::name, kelm::property<std::string>(name));
    made->set_property(price, kelm::property<int>(cents));
    adding.commit();
    return made;
}

void set_price(kelm::object* of, int cents) {
    kelm::framework::instance().set_property_transacted(of, price, kelm::property<int>(cents));
}

std::string name_of(const kelm::delta_detail* detail) {
    std::string name;
    detail->name(name);
    return name;
}

/// What differs, in words: the value of now is asked of the object, that of before of the summary.
void print_modified(kelm::model* in, kelm::delta_detail* detail) {
    const kelm::object* now = in->find_object(detail->object_id());
    const kelm::meta_object* type = in->meta_model()->find_meta_object(detail->object_type());
    const auto* before = kelm::detail_cast<kelm::detail_base_original_properties>(detail);
    for (const kelm::u32 id : kelm::detail_cast<kelm::detail_modified>(detail)->changed_properties())
        std::cout << "  ~ " << name_of(detail) << ": " << type->find_property(id)->name() << " was "
                  << before->original_property_as_string(id, nullptr) << ", is "
                  << now->get_property(id)->to_string() << '\n';
}

void print_changes(const char* title, kelm::model* in) {
    std::cout << title << ":\n";
    const kelm::shared_ptr<kelm::delta> changes = in->delta_since(nullptr); // of all that undo can take back
    if (!changes) {
        std::cout << "  nothing differs\n";
        return;
    }
    for (const kelm::delta_detail* each : changes->created_details())
        std::cout << "  + " << name_of(each) << '\n';
    for (const kelm::delta_detail* each : changes->deleted_details())
        std::cout << "  - " << name_of(each) << '\n';
    for (kelm::delta_detail* each : changes->modified_details()) print_modified(in, each);
}

int main() {
    kelm::framework& framework = kelm::framework::instance();
    menu_types types;
    framework.initialise(types);
    kelm::object* menu = framework.create_object(kelm::type_id::model, nullptr);
    kelm::object* soup = add_dish(menu, "soup", 450);
    kelm::object* stew = add_dish(menu, "stew", 900);
    menu->model()->clear_history(); // yesterday's edits are not to be told today

    set_price(soup, 500);
    set_price(soup, 550);                                            // what changes twice is told once
    framework.delete_object_transacted(add_dish(menu, "a joke", 1)); // made and gone again: not at all
    print_changes("the morning", menu->model());

    add_dish(menu, "salad", 700);
    framework.delete_object_transacted(stew);
    print_changes("the day", menu->model());

    while (menu->model()->can_undo()) menu->model()->undo();
    print_changes("all taken back", menu->model());
    framework.shutdown();
}
