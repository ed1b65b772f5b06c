// The smallest program that uses the library: starts it, makes a model, stops it.
// Exits with 1 when the model is not what a fresh model must be.
#include <kelm/kelm.h>

#include <cstdio>

namespace {

/// Adds nothing: the built-in types are enough for a model.
class empty_builder : public kelm::meta_model_builder {
public:
    void define_data_types() override {}
    void define_meta_attributes() override {}
    void define_meta_objects() override {}
};

constexpr int model_type = 1;

} // namespace

int main() {
    empty_builder builder;
    kelm::framework::instance().initialise(builder);

    const kelm::object* root = kelm::framework::instance().create_object(model_type, nullptr);
    // The helpers for XML make the program link what the library itself uses.
    const bool good = root != nullptr && root->id() == 1 && kelm::get_xml_elem(nullptr, "none") == nullptr;
    std::puts(good ? "a model with id 1" : "no model, or one with another id");

    kelm::framework::instance().shutdown();
    return good ? 0 : 1;
}
