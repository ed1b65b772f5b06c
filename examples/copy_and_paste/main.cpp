// Copies a part of one document into another: what comes along, what is left behind, and a rule that decides.
// Rules that fit a copy into a schema that has some of it already are shown by ../schema/copying.
#include <kelm/kelm.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

constexpr kelm::u32 box = 100;
constexpr kelm::u32 item = 101;
constexpr kelm::u32 lies_on = 100;

struct box_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        for (const kelm::u32 id : {box, item}) {
            kelm::meta_object* type = types->add_meta_object(id, id == box ? "Box" : "Item", "", "");
            type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        }
        types->find_meta_object(item)->add_property(lies_on, "Lies On", kelm::data_type::object_reference,
                                                    "");
        types->find_meta_object(kelm::type_id::model)->add_composition(box);
        types->find_meta_object(box)->add_composition(item);
    }
};

/// A name that the other document has already gets a tick.
struct new_name : kelm::property_paste_rule {
    int paste_property(kelm::object* what, kelm::u32 id, kelm::abstract_property* value, bool) override {
        auto* name = dynamic_cast<kelm::property<std::string>*>(value);
        if (id != kelm::property_id::name || !name) return kelm::property_paste_result::nothing;
        for (const kelm::object* other : what->owner()->children())
            if (other != what && kelm::object_name(other) == name->value) name->value += "'";
        return kelm::property_paste_result::nothing; // what is in the argument now is set
    }
    kelm::owned<kelm::property_paste_rule*> clone() const override { return new new_name; }
};

kelm::object* add(kelm::object* owner, kelm::u32 type, const std::string& name) {
    kelm::object* made = kelm::framework::instance().create_object(type, owner);
    made->set_property(kelm::property_id::name, kelm::property<std::string>(name));
    return made;
}

void show(const char* what, const kelm::object* house) {
    std::cout << what << '\n';
    for (const kelm::object* each : house->children()) {
        std::cout << "  " << kelm::object_name(each) << ':';
        for (const kelm::object* inside : each->children()) {
            const kelm::value_ptr below = inside->get_property(lies_on);
            std::cout << ' ' << kelm::object_name(inside) << (below ? " on " + below->to_string() : "")
                      << ';';
        }
        std::cout << '\n';
    }
}

int main() {
    kelm::framework& framework = kelm::framework::instance();
    box_types types;
    framework.initialise(types);
    kelm::object* attic = framework.create_object(kelm::type_id::model, nullptr);
    kelm::object* cellar = framework.create_object(kelm::type_id::model, nullptr);

    kelm::transaction_object filling(attic->model(), "Fill the attic");
    kelm::object* books = add(attic, box, "books");
    kelm::object* atlas = add(books, item, "atlas");
    kelm::object* lamp = add(add(attic, box, "odds"), item, "lamp");
    add(books, item, "map")->set_property(lies_on, kelm::property<kelm::object*>(atlas));
    add(books, item, "note")->set_property(lies_on, kelm::property<kelm::object*>(lamp));
    filling.commit();
    show("attic", attic);

    kelm::shared_ptr<kelm::copier> clip = framework.create_copier(attic->model());
    clip->copy_object(books, true);
    std::stringstream clipboard; // a snapshot holds no pointers: it can go to another process
    clip->write(clipboard);

    kelm::shared_ptr<kelm::copier> taken = framework.create_copier(cellar->model());
    taken->set_property_paste_rule(box, new_name());
    std::vector<kelm::object*> made;
    std::cout << std::boolalpha << "read: " << taken->read(clipboard) << '\n';
    std::cout << "pasted: " << taken->paste(cellar->model(), {cellar}, &made) << ", new: " << made.size()
              << '\n';
    taken->paste(cellar->model(), {cellar}, nullptr); // once more: nothing in it is used up
    show("cellar", cellar);                           // the note lies on nothing: the lamp has stayed behind
    std::cout << "undo of \"" << cellar->model()->undo_name() << "\"\n"; // a paste is one transaction
    cellar->model()->undo();
    show("cellar", cellar);
    framework.shutdown();
}
