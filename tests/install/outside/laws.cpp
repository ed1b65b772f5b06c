// The smallest test of an application by the law kit: the built-in types alone, and one of its own.
// Exits with 1 when a law is broken.
#include <kelm/kelm.h>
#include <kelm/testing/laws.h>

#include <cstdio>

namespace {

constexpr kelm::u32 note = 100;

class note_types : public kelm::meta_model_builder {
public:
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {
        kelm::meta_model& all = *kelm::framework::instance().application_meta_model();
        kelm::meta_object& type = *all.add_meta_object(note, "Note", "", "");
        type.add_base_type(all.find_meta_object(kelm::type_id::generic_object));
        all.find_meta_object(kelm::type_id::model)->add_composition(note);
    }
};

} // namespace

int main() {
    note_types types;
    kelm::testing::law_options options;
    options.histories = 20;
    const kelm::testing::law_report report = kelm::testing::check_laws(types, options);
    std::puts(report.to_string().c_str());
    kelm::framework::instance().shutdown();
    return report.holds ? 0 : 1;
}
