// A first program: a type, a model, a change in a transaction, and its undo.
// Not how a whole application is laid out; see ../schema for that.
#include <kelm/kelm.h>

#include <iostream>

constexpr kelm::u32 book = 100;
constexpr kelm::u32 pages = 100;

struct book_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(book, "Book", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        type->add_property(pages, "Pages", kelm::data_type::integer, "");
        types->find_meta_object(kelm::type_id::model)->add_composition(book);
    }
};

int main() {
    kelm::framework& framework = kelm::framework::instance();
    book_types types;
    framework.initialise(types);
    kelm::model* shelf = framework.create_object(kelm::type_id::model, nullptr)->model();

    kelm::transaction_object change(shelf, "Add a book");
    kelm::object* novel = framework.create_object(book, shelf->as_object());
    novel->set_property(kelm::property_id::name, kelm::property<std::string>("Moby Dick"));
    novel->set_property(pages, kelm::property<int>(635));
    change.commit();

    std::cout << kelm::object_name(novel) << ", " << novel->get_property(pages)->to_string() << " pages\n";
    shelf->undo();
    std::cout << "after undo of \"" << shelf->redo_name() << "\": " << shelf->as_object()->children().size()
              << " books\n";
    framework.shutdown();
}
