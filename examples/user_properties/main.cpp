// A user gives the books of one document a property of his own, changes his mind, and takes that back.
// What an application declares itself is shown by ../first_model.
#include <kelm/kelm.h>

#include <initializer_list>
#include <iostream>
#include <string>

constexpr kelm::u32 book = 100;

struct library_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(book, "Book", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        types->find_meta_object(kelm::type_id::model)->add_composition(book);
    }
};

kelm::property<std::string> text(const std::string& value) { return kelm::property<std::string>(value); }

bool change(kelm::object* of, kelm::u32 property, const kelm::abstract_property& value) {
    return kelm::framework::instance().set_property_transacted(of, property, value);
}

/// \returns the definition; null when something refused it, and then nothing is left of it
kelm::object* define(kelm::object* document, const std::string& name, const std::string& by_default,
                     std::initializer_list<kelm::u32> types) {
    kelm::transaction_object defining(document->model(), "Add property " + name);
    kelm::object* definition =
        kelm::framework::instance().create_object(kelm::type_id::user_defined_property, document);
    kelm::vector_property listed;
    for (const kelm::u32 type : types) listed.elements.push_back(new kelm::property<unsigned>(type));
    if (!definition || !definition->set_property(kelm::property_id::name, text(name)) ||
        !definition->set_property(kelm::property_id::udp_default_value, text(by_default)) ||
        !definition->set_property(kelm::property_id::udp_object_types, listed))
        return nullptr;
    defining.commit();
    return definition;
}

/// What a property sheet shows.
void show(const char* why, const kelm::object* of) {
    std::cout << why << ':';
    for (const kelm::meta_property* each :
         of->model()->meta_model()->find_meta_object(of->type())->properties())
        if (const kelm::value_ptr value = of->get_property(each->id()); value && each->is_user_defined())
            std::cout << ' ' << each->name() << " = " << value->to_string();
    std::cout << '\n';
}

int main() {
    kelm::framework& framework = kelm::framework::instance();
    library_types types;
    framework.initialise(types);
    kelm::object* house = framework.create_object(kelm::type_id::model, nullptr);
    kelm::object* other_house = framework.create_object(kelm::type_id::model, nullptr);
    kelm::object* novel = framework.create_object_transacted(book, house, nullptr);
    kelm::object* atlas = framework.create_object_transacted(book, other_house, nullptr);

    kelm::object* definition = define(house, "Owner", "nobody", {book});
    const kelm::u32 owner = framework.udp_property_id(definition);
    show("added", novel);
    change(novel, owner, text("Ann"));
    show("set", novel);
    change(definition, kelm::property_id::name, text("Keeper"));
    show("renamed", novel);
    show("in another document", atlas);
    framework.delete_object_transacted(definition);
    show("removed", novel);
    house->model()->undo();
    show("back again", novel);
    house->model()->undo();
    show("under its old name", novel);
    framework.shutdown();
}
