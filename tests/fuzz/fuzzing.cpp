// The models and edits of fuzz targets.
// How edits are spelled in bytes may change; old inputs then only mean something else.
#include "tests/fuzz/fuzzing.h"

#include "tests/support/consistency.h"
#include "tests/support/world.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace kelm::fuzzing {

namespace {

using test::number;
using test::reference;
using test::text;
namespace props = test::props;
namespace types = test::types;

framework& fw() {
    static framework& started = test::started_framework();
    return started;
}

vector_property* list_of(std::initializer_list<int> numbers) {
    auto* const list = new vector_property;
    for (const int each : numbers) list->elements.push_back(new property<int>{each});
    return list;
}

void set_list(object& at, std::initializer_list<int> numbers) {
    const std::unique_ptr<vector_property> list{list_of(numbers)};
    at.set_property(props::list, *list);
}

/// One edit after another, the next byte saying which.
class editor {
public:
    editor(kelm::model& what, choices& script) : model_(what), script_(script) {}

    void step() {
        static constexpr std::array steps{&editor::undo,      &editor::redo,       &editor::begin,
                                          &editor::end,       &editor::roll_back,  &editor::limit,
                                          &editor::forget,    &editor::set_value,  &editor::set_list_value,
                                          &editor::element,   &editor::take_value, &editor::make,
                                          &editor::remove,    &editor::base,       &editor::child,
                                          &editor::observers, &editor::definition, &editor::say};
        (this->*steps[script_.below(steps.size())])();
    }

private:
    void undo() { model_.undo(); }
    void redo() { model_.redo(); }
    void begin() { model_.begin_transaction("fuzzed"); }
    void end() { model_.end_transaction(); }
    void roll_back() {
        switch (script_.below(3)) {
        case 0: return model_.rollback_transaction();
        case 1: return model_.rollback_transaction_all();
        default: return model_.rollback_last_transaction();
        }
    }
    void limit() { model_.set_undo_levels(static_cast<int>(script_.below(6)) - 1); }
    void forget() { model_.clear_history(); }
    void set_value() {
        object& at = any();
        changed([&] {
            switch (script_.below(3)) {
            case 0: return at.set_property(props::number, number(static_cast<int>(script_.byte())));
            case 1: return at.set_property(props::text, text(std::to_string(script_.byte())));
            default: return at.set_property(props::reference, reference(&any()));
            }
        });
    }
    void set_list_value() {
        object& at = any();
        changed([&] { set_list(at, {1, static_cast<int>(script_.byte()), 3}); });
    }
    void element() {
        object& at = any();
        const unsigned position = script_.below(4);
        changed([&] {
            switch (script_.below(4)) {
            case 0: return at.set_vector_element(props::list, number(7), position);
            case 1: return at.insert_vector_element(props::list, number(8), position);
            case 2: return at.delete_vector_element(props::list, position);
            default: return at.move_vector_element(props::list, position, script_.below(4));
            }
        });
    }
    void take_value() {
        object& at = any();
        changed([&] { at.delete_property(script_.below(2) != 0 ? props::list : props::text); });
    }
    void make() {
        object& owner = any();
        changed([&] { fw().create_object(types::thing + script_.below(3), &owner); });
    }
    void remove() {
        object* const gone = &any();
        if (gone != model_.as_object()) changed([&] { fw().delete_object(gone); });
    }
    void base() {
        object& at = any();
        object& other = any();
        changed([&] {
            switch (script_.below(3)) {
            case 0: return at.add_inherits_from(&other);
            case 1: return at.cancel_inherits_from(&other);
            default: return at.insert_inherits_from(&other, 0);
            }
        });
    }
    void child() {
        object& at = any();
        object& other = any();
        changed([&] {
            if (script_.below(2) != 0)
                at.set_child_position(&other, script_.below(3));
            else
                other.set_owner(&at);
        });
    }
    void observers() {
        object& at = any();
        auto* const who = dynamic_cast<observer*>(&any());
        changed([&] { return script_.below(2) != 0 ? at.attach(who) : at.detach(who); });
    }
    void definition() {
        const u32 id = property_id::first_user_defined + 1 + script_.below(4);
        changed([&] {
            if (!model_.remove_user_defined_property(types::thing, id))
                model_.add_user_defined_property(types::thing, "own " + std::to_string(id), 6, "", id);
        });
    }
    void say() {
        std::string words;
        for (std::size_t i = 0; i != model_.message_count(); ++i) model_.message_at(i)->to_string(words);
    }

    /// A change belongs into a transaction; it may be refused.
    template <class Change>
    void changed(Change&& change) {
        const bool opens = !model_.in_transaction();
        if (opens) begin();
        change();
        if (opens) end();
    }
    object& any() {
        std::vector<u32> ids;
        model_.object_ids(ids);
        object* const found = ids.empty() ? nullptr : model_.find_object(ids[script_.byte() % ids.size()]);
        return found ? *found : *model_.as_object();
    }

    kelm::model& model_;
    choices& script_;
};

/// Says everything, and looks at all links.
void check(kelm::model& what, const char* when) {
    std::string words;
    for (std::size_t i = 0; i != what.message_count(); ++i) what.message_at(i)->to_string(words);
    test::dump_of(what);
    if (const std::string wrong = test::broken_links_of_hostile(what); !wrong.empty())
        fail(std::string(when) + "\n" + wrong);
}

} // namespace

void fail(const std::string& why) {
    std::fprintf(stderr, "fuzzing: %s\n", why.c_str());
    std::abort();
}

unsigned choices::byte() {
    if (left_.empty()) return 0;
    const auto value = static_cast<unsigned char>(left_.front());
    left_.remove_prefix(1);
    return value;
}

choices choices::part() {
    const std::size_t size = std::min<std::size_t>(byte(), left_.size());
    const choices out{left_.substr(0, size)};
    left_.remove_prefix(size);
    return out;
}

fuzzed_model::fuzzed_model() : model_(fw().create_object(type_id::model, nullptr)->model()) {
    model_->meta_model()->set_version(8);
}

fuzzed_model::~fuzzed_model() {
    model_->rollback_transaction_all();
    if (!fw().delete_object(model_->as_object())) fail("a model cannot be closed");
    fw().set_in_semantic(false);
}

bool fuzzed_model::read(const std::string& bytes) {
    std::istringstream in{bytes};
    return model_->read(&in, nullptr);
}

void fuzzed_model::populate(bool changes) {
    model_->begin_transaction("populate");
    object* const root = model_->as_object();
    object* const a = fw().create_object(types::thing, root);
    object* const b = fw().create_object(types::part, a);
    object* const c = fw().create_object(types::thing, root);
    a->set_property(props::name, text("a"));
    a->set_property(props::number, number(1));
    set_list(*a, {1, 2, 3});
    b->set_property(props::reference, reference(a));
    c->add_inherits_from(a);
    c->attach(dynamic_cast<observer*>(b));
    c->set_property_not_inheritable(props::text, true);
    model_->end_transaction();
    if (!changes) return model_->clear_history();
    const std::vector<std::uint8_t> one_of_each{
        7, 2, 0, 9,  7, 2, 1,  5, 7, 1,  2, 4,  8, 1, 4, 9,  1, 1, 0, 9,  1, 2, 1, 9,  1, 0,  2, 9,  1,
        3, 3, 1, 10, 1, 1, 11, 1, 0, 12, 4, 13, 3, 1, 0, 14, 1, 3, 0, 15, 1, 2, 1, 16, 1, 16, 2, 16, 1};
    choices script{one_of_each.data(), one_of_each.size()};
    edit_as_told(*model_, script);
}

std::string stream_of(kelm::model& of, bool with_history) {
    std::ostringstream out;
    of.write(&out, with_history, 0, false, nullptr);
    return out.str();
}

// A counter that a stream has set to its end makes edits throw: what is open then stays so.
void edit_as_told(kelm::model& what, choices& script) {
    editor edits{what, script};
    while (!script.empty()) {
        try {
            edits.step();
        } catch (const std::runtime_error&) {
            what.rollback_transaction_all();
        }
    }
}

void walk_through(kelm::model& what) {
    for (std::size_t left = what.message_count(); left != 0 && what.in_transaction(); --left)
        what.end_transaction();
    check(what, "before the walk");
    // As many walks as there are messages, and as could have been undone before.
    std::size_t left = 2 * what.message_count() + 10000;
    for (; what.can_undo(); --left) {
        if (left == 0) fail("undo does not end");
        what.undo();
    }
    check(what, "with all undone");
    for (; what.can_redo(); --left) {
        if (left == 0) fail("redo does not end");
        what.redo();
    }
    check(what, "with all redone");
}

} // namespace kelm::fuzzing
