// The library fills and reads the element of a document; around it stands what Xerces-C does.
// A document is never trusted to hold everything: it is compared with the stream.
#include "document/document_file.h"

#include "document/document_gaps.h"
#include "document/document_names.h"
#include "document/xml_document.h"
#include "files/file_error.h"
#include "files/readable_file.h"
#include "files/stream_file.h"
#include "printing/text.h"
#include "progress/progress.h"
#include "reading/load.h"

#include <kelm/framework.h>
#include <kelm/qdxml.h>

#include <stdexcept>

namespace schema {

namespace {

constexpr const char* root_name = "kelm_schema";

// From here on it takes long enough to be told how far it is.
constexpr std::size_t long_text = 256 * 1024;
constexpr kelm::u32 many_objects = 1000;

/// The serialiser escapes what needs it, in any language; the library's own escaping is for 7-bit text.
class plain_texts final : public kelm::qdxml {
public:
    kelm::owned<kelm::qdxml*> clone() const override { return new plain_texts; }
    bool needs_xml_processing(kelm::u32) const override { return false; }
};

bool read(kelm::model& model, xml_document& document) {
    try {
        fill_gaps(document, model);
        return model.read(nullptr, document.root());
    } catch (const std::exception&) {
        return false;
    }
}

kelm::model& load(const std::string& text, const std::string& path, rules& shared) {
    progress_steps told("reading " + short_name(path), 2, text.size() >= long_text);
    told.begin_next();
    xml_document document = xml_document::from_text(text);
    if (document.root_name() != root_name)
        throw file_error(quoted(path) + " is an XML document, but none of kelm-schema");
    kelm::framework::instance().set_xml_handler(plain_texts());
    kelm::model& model = new_model();
    shared.forget_version();
    told.begin_next();
    const bool whole = read(model, document);
    require_whole(whole, model, shared, path);
    return model;
}

std::string written(kelm::model& model, const std::string& path, progress_steps& told) {
    told.begin_next();
    xml_document document = xml_document::with_root(root_name);
    kelm::framework::instance().set_xml_handler(plain_texts());
    if (!model.write(nullptr, true, 0, true, document.root()))
        throw std::runtime_error("the model cannot be written now");
    told.begin_next();
    write_names(document, model);
    const std::string text = document.impossible_text();
    if (!text.empty())
        throw file_error("cannot write " + quoted(path) +
                         ": XML has no place for a character of the text \"" +
                         shortened(printable(text), 60) + '"');
    return document.text();
}

/// \returns whether the document says all that the stream says
bool is_same(const std::string& document, kelm::model& model, const std::string& path, rules& shared) {
    kelm::model& again = load(document, path, shared);
    const bool same = to_stream(again) == to_stream(model);
    kelm::framework::instance().delete_object(again.as_object());
    return same;
}

} // namespace

kelm::model& load_document(const std::string& path, rules& shared) {
    const std::string text = read_whole_file(path);
    try {
        return load(text, path, shared);
    } catch (const xml_error& error) {
        throw file_error(quoted(path) + " is no XML document: " + error.what());
    }
}

std::string to_document(kelm::model& model, const std::string& path, rules& shared) {
    progress_steps told("writing " + short_name(path), 3, model.last_object_id() >= many_objects);
    const std::string text = written(model, path, told);
    told.begin_next();
    if (is_same(text, model, path, shared)) return text;
    throw file_error(
        "cannot write " + quoted(path) +
        ": as XML it would not be the same, as a text holds a zero byte, is no UTF-8, or an edit has "
        "an escape like &lt; in its name");
}

} // namespace schema
