// The transaction of a paste, and what foreign keys need when all tables are there.
// A key that leads nowhere would break the rules of a schema, so it goes, and the user is told.
#include "copying/paste.h"

#include "files/file_error.h"
#include "hooks/hooks.h"
#include "log/signer.h"
#include "printing/shown.h"
#include "printing/text.h"
#include "schema/foreign_keys.h"
#include "schema/identifiers.h"
#include "schema/structure.h"
#include "schema/types.h"
#include "schema/values.h"

#include <kelm/transaction.h>

#include <algorithm>

namespace schema {

namespace {

std::string named(const std::string& verb, const std::vector<std::string>& tables) {
    std::string list;
    for (const std::string& table : tables) append(list, identifier(table), ", ");
    return verb + ' ' + list;
}

[[noreturn]] void refuse(const std::string& file, const std::string& why) {
    throw file_error("cannot put the tables into " + quoted(file) + ": " + why);
}

/// \returns false when there is none
bool are_tables(const std::vector<kelm::object*>& pasted) {
    return !pasted.empty() &&
           std::ranges::all_of(pasted, [](const kelm::object* each) { return each->type() == type::table; });
}

/// As a script would write it.
std::string described_key(const kelm::object& key) {
    std::string columns;
    for (const kelm::object* pair : parts(key, type::foreign_key_column)) {
        const kelm::object* column = target(*pair, property::column);
        append(columns, column ? identifier(name(*column)) : "?", ", ");
    }
    const kelm::object* table = target(key, property::target_table);
    return "foreign key on " + identifier(name(*key.owner())) + " (" + columns + ") to " +
           identifier(table ? name(*table) : text(key, property::target_name));
}

/// The keys that lead nowhere yet.
std::vector<kelm::object*> open_keys(const kelm::object& root) {
    std::vector<kelm::object*> found;
    for (const kelm::object* table : parts(root, type::table))
        for (kelm::object* key : parts(*table, type::foreign_key))
            if (!target(*key, property::target_table)) found.push_back(key);
    return found;
}

/// Keeps a key that leads somewhere.
void settle(kelm::object& key, const std::vector<kelm::object*>& pasted, rules& shared,
            paste_report& report) {
    if (!is_whole(key)) {
        report.left_out.push_back(described_key(key) + ": " + shared.reason());
        return remove(key);
    }
    const kelm::object* table = target(key, property::target_table);
    if (std::ranges::find(pasted, table) == pasted.end()) report.linked.push_back(described_key(key));
}

/// \param waiting  keys of other tables, which may have waited for one of these
void settle_keys(const std::vector<kelm::object*>& pasted, const std::vector<kelm::object*>& waiting,
                 kelm::object& root, rules& shared, paste_report& report) {
    resolve_foreign_keys(root);
    for (const kelm::object* table : pasted)
        for (kelm::object* key : parts(*table, type::foreign_key)) settle(*key, pasted, shared, report);
    for (kelm::object* key : waiting)
        if (is_whole(*key)) report.linked.push_back(described_key(*key));
}

} // namespace

paste_report paste(const clipboard& from, kelm::model& into, const std::string& file, const std::string& verb,
                   const signature& by, rules& shared) {
    kelm::object& root = *into.as_object();
    pasting state{from, root, {}, {}};
    set_paste_rules(*from.objects, state);
    const signer signing(into, by);
    const rules::watch watching(shared);
    const std::vector<kelm::object*> waiting = open_keys(root);
    kelm::transaction_object transaction(&into, named(verb, from.tables));
    std::vector<kelm::object*> pasted;
    if (!from.objects->paste(&into, {&root}, &pasted))
        refuse(file, shared.reason().empty() ? "the tables do not fit" : shared.reason());
    if (!are_tables(pasted) || !is_well_formed(into)) refuse(file, "what is to be pasted is no table");
    for (const kelm::object* table : pasted)
        state.report.copied.push_back("table " + identifier(name(*table)));
    settle_keys(pasted, waiting, root, shared, state.report);
    transaction.commit();
    return std::move(state.report);
}

void print_report(std::ostream& out, const paste_report& report) {
    const auto print = [&](const char* what, const std::vector<std::string>& lines) {
        for (const std::string& line : lines) out << what << ": " << printable(line) << '\n';
    };
    print("copied", report.copied);
    print("linked", report.linked);
    print("brought along", report.brought_along);
    print("left out", report.left_out);
}

} // namespace schema
