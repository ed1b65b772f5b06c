// Two hooks: one refuses a change that makes no sense, one reacts to a change with another.
// How hooks are used in a whole application is shown by ../schema.
#include <kelm/kelm.h>

#include <iostream>

constexpr kelm::u32 shelf = 100;
constexpr kelm::u32 book = 101;
constexpr kelm::u32 pages = 100; // of a book; of a shelf, those of all its books

int number_of_pages(const kelm::object* of) {
    const kelm::value_ptr value = of->get_property(pages);
    const auto* number = dynamic_cast<const kelm::property<int>*>(value.get());
    return number ? number->value : 0;
}

/// Before a value is set: a book has at least one page.
struct has_pages : kelm::pre_prop_set_semantic {
    kelm::u32 id() const override { return 100; }
    bool do_it(kelm::object*, kelm::u32 id, const kelm::abstract_property& value, kelm::object*) override {
        const auto* number = dynamic_cast<const kelm::property<int>*>(&value);
        return id != pages || (number && number->value > 0);
    }
};

/// Behind: the shelf counts anew.  What is changed here belongs to the same transaction.
struct counts_pages : kelm::post_prop_set_semantic {
    kelm::u32 id() const override { return 100; }
    bool do_it(kelm::object* changed, kelm::u32 id, const kelm::abstract_property&, kelm::value_ptr,
               kelm::object*, kelm::object*) override {
        if (id != pages) return true;
        int sum = 0;
        for (const kelm::object* each : changed->owner()->children()) sum += number_of_pages(each);
        return changed->owner()->set_property(pages, kelm::property<int>(sum));
    }
};

struct library_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        for (const kelm::u32 id : {shelf, book}) {
            kelm::meta_object* type = types->add_meta_object(id, id == shelf ? "Shelf" : "Book", "", "");
            type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
            type->add_property(pages, "Pages", kelm::data_type::integer, "");
        }
        types->find_meta_object(kelm::type_id::model)->add_composition(shelf);
        types->find_meta_object(shelf)->add_composition(book);
        types->find_meta_object(book)->add_semantic(new has_pages); // the type owns them now
        types->find_meta_object(book)->add_semantic(new counts_pages);
    }
};

bool change_pages(kelm::object* of, int to) {
    kelm::transaction_object change(of->model(), "Change pages");
    const bool changed = of->set_property(pages, kelm::property<int>(to));
    if (changed) change.commit(); // else the refusal has rolled the transaction back
    return changed;
}

int main() {
    kelm::framework& framework = kelm::framework::instance();
    library_types types;
    framework.initialise(types);
    kelm::object* house = framework.create_object(kelm::type_id::model, nullptr);
    kelm::transaction_object start(house->model(), "Start");
    kelm::object* novels = framework.create_object(shelf, house);
    kelm::object* novel = framework.create_object(book, novels);
    kelm::object* other = framework.create_object(book, novels);
    start.commit();

    std::cout << std::boolalpha;
    std::cout << "635 pages: " << change_pages(novel, 635) << ", shelf " << number_of_pages(novels) << '\n';
    std::cout << "300 pages: " << change_pages(other, 300) << ", shelf " << number_of_pages(novels) << '\n';
    std::cout << "-1 pages: " << change_pages(other, -1) << ", shelf " << number_of_pages(novels) << '\n';
    house->model()->undo();
    std::cout << "after undo: book " << number_of_pages(other) << ", shelf " << number_of_pages(novels)
              << '\n';
    framework.shutdown();
}
