// Saves a document and reads it again: objects, references, and the history, so that undo goes on.
// How a file is written without losing the old one is shown by ../schema/files.
#include <kelm/kelm.h>

#include <iostream>
#include <sstream>
#include <string>

constexpr kelm::u32 note = 100;
constexpr kelm::u32 see_also = 100;

struct note_types : kelm::meta_model_builder {
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(note, "Note", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        type->add_property(see_also, "See Also", kelm::data_type::object_reference, "");
        types->find_meta_object(kelm::type_id::model)->add_composition(note);
        types->set_version(
            7); // stands in the file: the history is stored from 7.2 on, all of it from 7.14 on,
        types->set_minor_version(14); // and a program with an older version refuses the file
    }
};

kelm::model* new_document() {
    return kelm::framework::instance().create_object(kelm::type_id::model, nullptr)->model();
}

kelm::object* add_note(kelm::model* to, const std::string& text) {
    kelm::object* made = kelm::framework::instance().create_object(note, to->as_object());
    made->set_property(kelm::property_id::name, kelm::property<std::string>(text));
    return made;
}

void show(const char* when, kelm::model* document) {
    std::cout << when << ":\n";
    for (const kelm::object* each : document->as_object()->children()) {
        std::cout << "  " << each->id() << ' ' << kelm::object_name(each);
        if (const kelm::value_ptr other = each->get_property(see_also))
            std::cout << ", see " << other->to_string();
        std::cout << '\n';
    }
}

int main() {
    kelm::framework& framework = kelm::framework::instance();
    note_types types;
    framework.initialise(types);
    kelm::model* diary = new_document();
    kelm::transaction_object writing(diary, "Write");
    kelm::object* rain = add_note(diary, "rain");
    kelm::object* sun = add_note(diary, "sun");
    sun->set_property(see_also, kelm::property<kelm::object*>(rain));
    writing.commit();
    framework.delete_object_transacted(rain); // the reference to it goes as well
    show("before it is saved", diary);

    std::stringstream file; // any stream that is open in binary
    const bool whole_history = true;
    const kelm::u32 all = 0;
    const bool reset_modified = true; // a document that has just been saved has nothing to save
    std::cout << std::boolalpha << "modified: " << diary->is_modified() << '\n';
    std::cout << "saved: " << diary->write(&file, whole_history, all, reset_modified, nullptr) << '\n';
    std::cout << "modified: " << diary->is_modified() << '\n';

    kelm::model* again = new_document(); // as in another process, years later
    std::cout << "read: " << again->read(&file, nullptr) << '\n';
    show("as it was saved", again);
    std::cout << "undo of \"" << again->undo_name() << "\"\n";
    again->undo();
    show("the note is back, under its number, and the reference with it", again);

    // A file that was cut off is told by the answer; what was read until then is not to be used.
    std::istringstream half(file.str().substr(0, file.str().size() / 2));
    kelm::model* broken = new_document();
    std::cout << "half a file: " << broken->read(&half, nullptr) << '\n';
    framework.delete_object(broken->as_object());
    framework.shutdown();
}
