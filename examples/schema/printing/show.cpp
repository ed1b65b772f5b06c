// From the file into the model, and from the model to the screen.
// The two halves share nothing but the model.
#include "printing/show.h"

#include "files/model_file.h"
#include "printing/json_printer.h"
#include "printing/tree_printer.h"

namespace schema {

void show(const std::string& path, const selection& wanted, bool as_json, rules& shared, std::ostream& out) {
    const kelm::object& root = *load_schema(path, shared).as_object();
    (as_json ? print_json : print_tree)(out, root, listings(root, wanted));
}

} // namespace schema
