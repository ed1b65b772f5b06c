// The law kit: random histories over an application's own types and hooks, held against what the library promises of
// all histories.  For tests of applications: the target kelm::testing.
// A failing history comes back cut to its shortest form and printed as code.
#pragma once

#include <kelm/types.h>

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace kelm::testing {

/// What holds in every history.
///
/// Left out of all histories, since these cannot be undone by design: a child position behind the end; moving or
/// ordering a child that its owner does not list; an element moved to a place behind the end; changes outside a
/// transaction; a rollback of the last transaction while another one stands ready for redo.  Left out besides:
/// definitions of user-defined properties, values of the kinds "Id Map" and of kinds without a maker, and where types have
/// hooks, objects that observe one another in a circle: two that answer each other would do so for ever.
enum class law : u32 {
    /// Undo leads to the text of the model before, redo to the one behind, over the whole history and back.  The end
    /// of a transaction changes nothing, and undo and redo throw nothing.
    undo_and_redo,
    /// A rollback, and a refused call, lead to the text of the moment before the begin.  So does a call that throws, once
    /// all is rolled back.
    rollback,
    /// What the model keeps twice agrees: back-lists with values and bases, the map of ids with the tree, children
    /// with their owners, observers with what they observe.
    links,
    /// Written, read and written again gives the same bytes, and what was read is what was written.
    /// Left out: children taken out of the tree, properties that are not persistent, a base that is added twice.
    streams,
    /// What was read from a document is what was written into it, but for the history.  Held where the options have
    /// elements.  Left out: as for streams; negative long longs, and numbers whose text is not exact.
    documents,
    /// Undo and redo of what was read lead through the same states.  Left out: as for streams.
    reloading,
    /// What an observer hears of a model equals what is there.  Left out, since messages do not tell it: refresh, the
    /// deletion of a child that its deleted owner does not list, a base that is added twice; and where types have
    /// hooks, bases: what hooks change while a change of bases is being told cannot be understood.
    hearing,
    /// A delta tells what differs between then and now.  Left out: a base that is added twice, properties that
    /// summaries leave out, and types with hooks of reads, whose values are not stored.
    deltas,
    /// The same calls make the same bytes, so that nothing depends on what lies outside the model.  Left out, since
    /// addresses decide who is asked first: objects that observe others and, where types have hooks, bases.
    repetition,
    /// What the application itself says of its models, see `own_law`.
    own,
};

/// \returns the name in words
const char* name_of(law which);

/// Some of the laws.
class law_set {
public:
    /// \returns every law
    static constexpr law_set all() { return law_set{(1U << (static_cast<u32>(law::own) + 1)) - 1}; }
    /// \returns no law
    static constexpr law_set none() { return law_set{0}; }
    /// \returns whether `which` is among them
    constexpr bool has(law which) const { return (bits_ & bit(which)) != 0; }
    /// \returns these and `which`
    constexpr law_set with(law which) const { return law_set{bits_ | bit(which)}; }
    /// \returns these but for `which`
    constexpr law_set without(law which) const { return law_set{bits_ & ~bit(which)}; }

private:
    explicit constexpr law_set(u32 bits) : bits_(bits) {}
    static constexpr u32 bit(law which) { return 1U << static_cast<u32>(which); }
    u32 bits_;
};

/// Something that an application promises of its models: between transactions, and behind undo, redo and rollback.
struct own_law {
    std::string name; ///< in words, for the report
    /// \returns what is wrong; empty when all is well.  It must not change the model
    std::function<std::string(kelm::model&)> difference;
};

/// Makes a document, calls `use` with its empty root element, a `xercesc::DOMElement*` as void*, and frees the document.
using element_maker = std::function<void(const std::function<void(void* element)>& use)>;

/// How many histories of what, and which laws are held against them.
struct law_options {
    law_set laws = law_set::all();   ///< which are held
    u64 seed = 1;                    ///< of the first history; the others have the numbers behind it
    std::size_t histories = 500;     ///< how many are played, unless `operations` says more
    std::size_t steps = 60;          ///< of the longest history
    u64 operations = 0;              ///< goes on until so many have been played
    std::size_t most_replays = 3000; ///< of a failing history while it is cut
    std::vector<own_law> own_laws{}; ///< what the application promises besides
    element_maker elements{};        ///< for the law of documents, which is not held without
    std::map<u32, u32>
        element_kinds{}; ///< of lists, by property: a data type; else references, texts and numbers
    std::map<u32, std::vector<std::string>> texts{}; ///< of values to choose from, by property
    std::ostream* progress = nullptr;                ///< borrowed: gets a line each 1,000,000 operations
};

/// What came of the histories.
struct law_report {
    bool holds = true;  ///< false when a history has broken a law
    u64 histories = 0;  ///< how many were played
    u64 operations = 0; ///< calls of the library that change a model, undo and redo included

    // Of the first history that breaks a law, cut to its shortest form.
    law broken = law::own; ///< which law; without a meaning when all hold
    u64 seed = 0;          ///< with `histories` 1 and the same other options the same history is played again
    std::size_t steps = 0; ///< how many are left of it
    std::string what;      ///< what does not hold, in words
    std::string difference; ///< a line each: "-" is expected, "+" is there instead
    std::string code;       ///< a source that compiles: `std::string broken_history(kelm::model&)`

    /// \returns all of it, for a person
    std::string to_string() const;
};

/// Plays histories and holds the laws against them until one is broken.
///
/// Starts the process up with `types` if that has not been done; else the types that it has been started with are
/// used, and `types` is not asked.  Models are made and closed; the process is not shut down.
///
/// A history uses what the types declare: it makes objects where compositions allow them, and gives declared properties
/// values of their data type.  Hooks may refuse, react and throw.  Each history holds the laws of undo, rollback and
/// links, the application's own, and in turn some of the others, whose exceptions then do not narrow all of them.
law_report check_laws(meta_model_builder& types, const law_options& options = {});

// What the laws compare, and a printed history asks.

/// \returns a canonical text of all that the public interface tells of a model's objects: owners, children, own values,
///          what else a read gives, bases, marks, back-lists and the objects that observe
std::string text_of(kelm::model& of);

/// \returns the lines that differ, "-" and "+" before them, below the object that they belong to; empty for equal texts
std::string difference_of(const std::string& expected, const std::string& is);

/// \returns what a model keeps twice and does not agree, a line each; empty when all agrees
std::string broken_links(kelm::model& of);

} // namespace kelm::testing
