// Writes valid inputs for the fuzz targets, one folder a target.
// Inputs that once went wrong are added by hand.
#include "tests/fuzz/fuzzing.h"
#include "tests/support/dom_document.h"

#include <kelm/copier.h>
#include <kelm/framework.h>
#include <kelm/message_history.h>
#include <kelm/object.h>
#include <kelm/property.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace kelm::fuzzing;

std::filesystem::path root;

void write(const char* target, const char* name, const std::string& bytes) {
    std::filesystem::create_directories(root / target);
    std::ofstream{root / target / name, std::ios::binary} << bytes;
}

/// A script with its length before it.
std::string script(std::initializer_list<unsigned char> bytes) {
    return std::string(1, static_cast<char>(bytes.size())) + std::string(bytes.begin(), bytes.end());
}

std::string log_of(kelm::model& of, unsigned count, bool for_replay) {
    std::ostringstream out;
    of.history()->write_messages(nullptr, &out, count, for_replay);
    return out.str();
}

/// The snapshot of the objects below the root, the last one first.
std::string snapshot_of(kelm::model& of) {
    const kelm::shared_ptr<kelm::copier> all = kelm::framework::instance().create_copier(&of);
    const std::vector<kelm::object*> children = of.as_object()->children();
    for (std::size_t i = children.size(); i-- != 0;) all->copy_object(children[i], i % 2 != 0);
    for (const unsigned each : {101U, 100U}) all->add_user_id(each);
    all->set_type_order({100, 101});
    std::ostringstream out;
    all->write(out);
    return out.str();
}

std::string document_of(kelm::model& of, bool with_history = true) {
    const dom_document document;
    of.write(nullptr, with_history, 2, false, document.root()); // inputs should be small
    return document.text();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) return std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n"), 2;
    root = arguments[1];
    fuzzed_model empty;
    fuzzed_model plain;
    plain.populate(false);
    fuzzed_model changed;
    changed.populate(true);
    fuzzed_model short_log;
    short_log.populate(false);
    short_log->begin_transaction("short");
    short_log->as_object()->children()[0]->set_property(1, kelm::property<std::string>{"b"});
    short_log->end_transaction();

    write("stream", "empty", stream_of(*empty, false));
    write("stream", "plain", stream_of(*plain, false));
    write("stream", "changed", stream_of(*changed, true));

    const xerces running;
    write("document", "empty", document_of(*empty, false));
    write("document", "plain", document_of(*plain, false));
    write("document", "changed", document_of(*changed));
    write("document", "two_messages", document_of(*short_log));

    const std::string counts(8, '\1');
    const std::string log = log_of(*changed, 0, false);
    write("history", "whole", script({}) + counts + log);
    write("history", "undone", script({0, 0, 0, 1, 1, 0}) + counts + log);
    write("history", "edited", script({0, 0, 7, 2, 0, 9, 0, 1, 17, 4, 2}) + counts + log);
    write("history", "limited", script({5, 3, 7, 2, 0, 9, 11, 1, 0, 0, 17}) + counts + log);
    write("history", "part", script({0, 7, 1, 0, 3}) + counts + log_of(*changed, 3, false));

    // Performed on a model that has the same changes behind it, the newest ones fit best.
    for (const unsigned newest : {1U, 3U, 8U}) {
        const std::string bytes = log_of(*changed, newest, true);
        write("replay", ("newest_" + std::to_string(newest)).c_str(),
              std::string(1, '\0') + script({}) + bytes);
    }
    write("replay", "whole", std::string(1, '\0') + script({0, 0, 1}) + log_of(*changed, 0, true));
    write("replay", "beside", std::string(1, '\2') + script({}) + log);

    const std::string snapshot = snapshot_of(*plain);
    write("snapshot", "empty", script({}) + snapshot_of(*empty));
    write("snapshot", "plain", script({}) + snapshot);
    write("snapshot", "changed", script({}) + snapshot_of(*changed));
    write("snapshot", "rules", script({3, 0, 0, 0, 2, 0, 2, 1, 0, 4, 0, 1, 0, 0, 1, 0, 2, 0}) + snapshot);
    write("snapshot", "upheaval", script({0, 10, 0, 8, 2, 1, 11, 0, 9, 0, 0, 5, 0}) + snapshot);

    write("base64", "empty", "");
    write("base64", "ends", "AB[[CD*-");
    write("base64", "bytes", std::string{"\0\1\2\xFD\xFE\xFF", 6});
    return 0;
}
