// Completion for bash: a function that looks at the words before the cursor.
// Plain bash; the package bash-completion only finds the file.
#include "manual/manual.h"

#include "printing/text.h"

#include <sstream>

namespace schema {

namespace {

constexpr const char* head =
    R"(# Completion of kelm-schema for bash, as kelm-schema --generate bash prints it.

_kelm_schema_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}

_kelm_schema_files() {
    compopt -o filenames 2>/dev/null # tells readline to quote them; not known outside of a completion
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

# What an option takes: files, words, or something that nobody can guess. Fails for one that takes nothing.
_kelm_schema_value() {
    case $1 in
)";

constexpr const char* before_options = R"(    *) return 1 ;;
    esac
}

_kelm_schema() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command=${COMP_WORDS[1]}
    local place=0 options at
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
)";

constexpr const char* before_places = R"(    esac
    # readline makes words of --option=value
    if [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD-2]}
    elif [[ $current == = ]]; then
        current=
    fi
    _kelm_schema_value "$command $before" && return
    ((COMP_CWORD == 2)) && _kelm_schema_value "$before" && return
    if [[ $current == -* ]]; then
        _kelm_schema_words "$options"
        return
    fi
    for ((at = 2; at < COMP_CWORD; ++at)); do
        case ${COMP_WORDS[at]} in
        =) ((++at)) ;;
        -?*) ;;
        *) _kelm_schema_value "$command ${COMP_WORDS[at-1]}" || ((++place)) ;;
        esac
    done
    COMPREPLY=()
    case "$command $place" in
)";

constexpr const char* tail = R"(    esac
}

complete -F _kelm_schema kelm-schema
)";

std::string all_names(const std::vector<argument_outline>& options) {
    std::vector<std::string> names;
    for (const argument_outline& each : options)
        names.insert(names.end(), each.names.begin(), each.names.end());
    return joined(names, " ");
}

std::string action(const argument_outline& of) {
    if (of.is_file) return "_kelm_schema_files";
    return of.choices.empty() ? "return 0" : "_kelm_schema_words '" + joined(of.choices, " ") + '\'';
}

/// \param command  with a blank behind it; empty for the program itself
void write_values(std::ostream& out, const std::string& command,
                  const std::vector<argument_outline>& options) {
    for (const argument_outline& each : options)
        for (const std::string& name : each.names)
            if (!each.value.empty()) out << "    '" << command << name << "') " << action(each) << " ;;\n";
}

void write_options(std::ostream& out, const command_outline& command) {
    out << "    " << command.name << ") options='" << all_names(command.options) << "' ;;\n";
}

void write_places(std::ostream& out, const command_outline& command) {
    for (std::size_t at = 0; at != command.places.size(); ++at)
        if (command.places[at].is_file)
            out << "    '" << command.name << ' ' << at << "') _kelm_schema_files ;;\n";
}

} // namespace

std::string bash_completion(const program_outline& of) {
    std::vector<std::string> words;
    for (const command_outline& command : of.commands) words.push_back(command.name);
    std::ostringstream out;
    out << head;
    write_values(out, "", of.program.options);
    for (const command_outline& command : of.commands) write_values(out, command.name + ' ', command.options);
    out << before_options << "        _kelm_schema_words '" << joined(words, " ") << ' '
        << all_names(of.program.options) << "'\n        return\n    fi\n    case $command in\n";
    for (const command_outline& command : of.commands) write_options(out, command);
    out << before_places;
    for (const command_outline& command : of.commands) write_places(out, command);
    out << tail;
    return std::move(out).str();
}

} // namespace schema
