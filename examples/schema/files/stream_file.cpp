// A stream has no mark of its own, so whatever is no database and no document is tried as one.
// Its version is the first thing in it that random bytes would have to hit.
#include "files/stream_file.h"

#include "files/file_error.h"
#include "files/readable_file.h"
#include "reading/load.h"
#include "schema/structure.h"

#include <new>
#include <sstream>
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
    std::istringstream in(read_whole_file(path));
    kelm::model& model = new_model();
    shared.forget_version();
    const bool whole = read(model, in);
    require_whole(whole, model, shared, path);
    return model;
}

std::string to_stream(kelm::model& model) {
    std::ostringstream out;
    if (!model.write(&out, true, 0, true, nullptr))
        throw std::runtime_error("the model cannot be written now");
    return std::move(out).str();
}

} // namespace schema
