// A hook that looks right, and the law kit that finds out why it is not.
// The kit is for tests of an application; what its laws say is told in docs/testing.md.
#include <kelm/kelm.h>
#include <kelm/testing/laws.h>

#include <iostream>

constexpr kelm::u32 letter = 100;
constexpr kelm::u32 number = 100; // of a letter: the first one in the house is 1

/// Numbers the letters as they come.  The count outlives the model that it counts for, is not taken back with a letter
/// that an undo takes back, and is nobody's in a model that is loaded.
struct numbers_letters : kelm::obj_create_semantic {
    kelm::u32 id() const override { return 100; }
    bool do_it(kelm::object* made) override {
        return made->set_property(number, kelm::property<int>(++count_));
    }

private:
    int count_ = 0;
};

/// The same from what the model itself tells.
struct numbers_letters_right : kelm::obj_create_semantic {
    kelm::u32 id() const override { return 100; }
    bool do_it(kelm::object* made) override {
        const auto before = static_cast<int>(made->owner()->child_count(letter));
        return made->set_property(number, kelm::property<int>(before + 1));
    }
};

struct office_types : kelm::meta_model_builder {
    explicit office_types(bool right) : right_(right) {}
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model* types = kelm::framework::instance().application_meta_model();
        kelm::meta_object* type = types->add_meta_object(letter, "Letter", "", "");
        type->add_base_type(types->find_meta_object(kelm::type_id::generic_object));
        type->add_property(number, "Number", kelm::data_type::integer, "");
        types->find_meta_object(kelm::type_id::model)->add_composition(letter);
        if (right_)
            type->add_semantic(new numbers_letters_right);
        else
            type->add_semantic(new numbers_letters);
    }

private:
    bool right_;
};

int main(int argc, char**) {
    office_types types(argc > 1); // any argument: the hook that is right
    const kelm::testing::law_report report = kelm::testing::check_laws(types);
    std::cout << report.to_string();
    kelm::framework::instance().shutdown();
    return report.holds ? 0 : 1;
}
