// Makes a model that knows where it comes from, and fills it.
// The database is closed again when it has been read.
#include "reading/load.h"

#include "reading/reader.h"
#include "schema/values.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>

#include <filesystem>
#include <stdexcept>

namespace schema {

kelm::model& new_model() {
    kelm::object* root = kelm::framework::instance().create_object(kelm::type_id::model, nullptr);
    if (!root) throw std::runtime_error("there is no model");
    return *root->model();
}

kelm::model& load_database(const std::string& path) {
    const database from(path);
    kelm::model& model = new_model();
    set_text(*model.as_object(), kelm::property_id::name, std::filesystem::path(path).filename().string());
    set_text(*model.as_object(), kelm::property_id::definition, path);
    read_schema(from, model);
    model.clear_history(); // what made the schema is not to be undone
    return model;
}

} // namespace schema
