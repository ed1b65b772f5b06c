// Chooses the way in and the way out.
// Nothing is known here of bytes or elements.
#include "files/model_file.h"

#include "document/document_file.h"
#include "files/file_error.h"
#include "files/file_kind.h"
#include "files/stream_file.h"
#include "files/whole_file.h"
#include "reading/load.h"

namespace schema {

kelm::model& load_schema(const std::string& path, rules& shared) {
    switch (kind_of_file(path)) {
    case file_kind::database: return load_database(path);
    case file_kind::document: return load_document(path, shared);
    case file_kind::stream: break;
    }
    return load_stream(path, shared);
}

kelm::model& load_saved(const std::string& path, rules& shared) {
    if (kind_of_file(path) == file_kind::database)
        throw file_error(quoted(path) + " is an SQLite database; kelm-schema import makes a file of it");
    return load_schema(path, shared);
}

void save_schema(kelm::model& model, const std::string& path, rules& shared) {
    const bool is_document = kind_to_write(path) == file_kind::document;
    write_whole_file(path, is_document ? to_document(model, path, shared) : to_stream(model));
}

} // namespace schema
