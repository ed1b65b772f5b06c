// From the database into the model, and from the model to the screen.
// The two halves share nothing but the model.
#include "show.h"

#include "json_printer.h"
#include "reader.h"
#include "tree_printer.h"
#include "values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <filesystem>
#include <stdexcept>

namespace schema {

namespace {

kelm::model& new_model(const std::string& path) {
    kelm::object* root = kelm::framework::instance().create_object(kelm::type_id::model, nullptr);
    if (!root) throw std::runtime_error("there is no model");
    set_text(*root, kelm::property_id::name, std::filesystem::path(path).filename().string());
    set_text(*root, kelm::property_id::definition, path);
    return *root->model();
}

} // namespace

void show(const std::string& path, bool as_json, std::ostream& out) {
    const database from(path);
    kelm::model& model = new_model(path);
    read_schema(from, model);
    (as_json ? print_json : print_tree)(out, *model.as_object());
}

} // namespace schema
