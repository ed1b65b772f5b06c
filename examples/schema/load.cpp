// Makes a model that knows where it comes from, and fills it.
// The database is closed again when it has been read.
#include "load.h"

#include "reader.h"
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

kelm::model& load_database(const std::string& path) {
    const database from(path);
    kelm::model& model = new_model(path);
    read_schema(from, model);
    return model;
}

} // namespace schema
