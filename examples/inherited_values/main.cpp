// Values that objects inherit from other objects: styles of a text, and who hears of a change.
// How a whole application uses it is shown by ../schema.
#include <kelm/kelm.h>

#include <iostream>

constexpr kelm::u32 style = 100;
constexpr kelm::u32 font = 100;

struct style_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(style, "Style", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        type->add_property(font, "Font", kelm::data_type::string, "");
        type->find_property(kelm::property_id::name) // of any type: nobody inherits a name
            ->set_attribute_value(kelm::attribute_id::not_inheritable, kelm::property<bool>(true));
        types->find_meta_object(kelm::type_id::model)->add_composition(style);
    }
};

/// Says which style shows another font, and where that font is set.
struct preview : kelm::observer_impl {
    bool update(kelm::subject*, kelm::message* said) override {
        const auto* change = kelm::message_cast<const kelm::property_change_message>(said);
        if (!change || change->property_type() != font) return true;
        const kelm::value_ptr now = said->object()->get_property(font);
        std::cout << "  " << kelm::object_name(said->object()) << ": " << (now ? now->to_string() : "none")
                  << ", told of " << kelm::object_name(change->real_owner()) << '\n';
        return true;
    }
};

int main() {
    kelm::framework& framework = kelm::framework::instance();
    style_types types;
    framework.initialise(types);
    kelm::model* document = framework.create_object(kelm::type_id::model, nullptr)->model();
    preview window;
    const auto make = [&](const char* name) {
        kelm::object* made = framework.create_object(style, document->as_object());
        made->set_property(kelm::property_id::name, kelm::property<std::string>(name));
        made->attach(&window);
        return made;
    };
    const auto change = [&](const char* what, auto&& how) {
        std::cout << what << '\n';
        kelm::transaction_object transaction(document, what);
        if (how()) transaction.commit();
    };

    kelm::object *body, *print, *heading, *title;
    change("Make styles", [&] {
        body = make("body"), print = make("print"), heading = make("heading"), title = make("title");
        return heading->add_inherits_from(body) && title->add_inherits_from(heading);
    });
    change("Set a font", [&] { return body->set_property(font, kelm::property<std::string>("Sans")); });
    change("Set another", [&] { return print->set_property(font, kelm::property<std::string>("Serif")); });
    change("Let print win", [&] { return heading->insert_inherits_from(print, 0); });
    std::cout << "Undo\n";
    document->undo();
    change("Keep the title apart", [&] { return title->set_property_not_inheritable(font, true); });
    std::cout << std::boolalpha << "  has a font: " << title->has_property(font) << '\n';
    std::cout << "A circle: " << body->add_inherits_from(title) << '\n';
    framework.shutdown();
}
