// A stream has no mark of its own, so whatever is no database and no document is tried as one.
// Its version is the first thing in it that random bytes would have to hit.
#include "files/stream_file.h"

#include "files/file_error.h"
#include "files/readable_file.h"
#include "progress/counted_stream.h"
#include "reading/load.h"
#include "schema/structure.h"

#include <istream>
#include <ostream>
#include <stdexcept>

namespace schema {

namespace {

/// Beyond this it is no version, but bytes that mean something else.
constexpr file_version last_plausible{999, 999};

bool is_plausible(const file_version& version) {
    return version.major <= last_plausible.major && version.minor <= last_plausible.minor;
}

/// What cannot be is told by the answer, what is impossible even for the library by an exception.
bool read(kelm::model& model, std::istream& in) {
    try {
        return model.read(&in, nullptr) && in.peek() == std::istream::traits_type::eof();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace

void require_whole(bool whole, kelm::model& model, const rules& shared, const std::string& path) {
    const file_version version = shared.version();
    if (version > current_version && is_plausible(version))
        throw file_error(quoted(path) + " has version " + to_string(version) + ", this program reads up to " +
                         to_string(current_version));
    if (whole && version == current_version && is_well_formed(model)) return;
    throw file_error(quoted(path) + " is neither an SQLite database nor a whole file of kelm-schema");
}

kelm::model& load_stream(const std::string& path, rules& shared) {
    const std::string content = read_whole_file(path);
    progress told("reading " + short_name(path), count_of_bytes, content.size());
    counted_input bytes(content, told);
    std::istream in(&bytes);
    kelm::model& model = new_model();
    shared.forget_version();
    const bool whole = read(model, in);
    require_whole(whole, model, shared, path);
    return model;
}

std::string to_stream(kelm::model& model) {
    progress told("writing", count_of_bytes, 0);
    counted_output bytes(told);
    std::ostream out(&bytes);
    if (!model.write(&out, true, 0, true, nullptr))
        throw std::runtime_error("the model cannot be written now");
    return std::move(bytes).take();
}

} // namespace schema
