// From the file into the model, and from the model to the screen.
// The two halves share nothing but the model.
#include "show.h"

#include "json_printer.h"
#include "model_file.h"
#include "tree_printer.h"

namespace schema {

void show(const std::string& path, const selection& wanted, bool as_json, rules& shared, std::ostream& out) {
    const kelm::object& root = *load_schema(path, shared).as_object();
    (as_json ? print_json : print_tree)(out, root, listings(root, wanted));
}

} // namespace schema
