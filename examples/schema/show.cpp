// From the database into the model, and from the model to the screen.
// The two halves share nothing but the model.
#include "show.h"

#include "json_printer.h"
#include "load.h"
#include "tree_printer.h"

namespace schema {

void show(const std::string& path, const selection& wanted, bool as_json, std::ostream& out) {
    const kelm::object& root = *load_database(path).as_object();
    (as_json ? print_json : print_tree)(out, root, listings(root, wanted));
}

} // namespace schema
