// Any bytes as a snapshot: it is refused and nothing is left of it, or it can be written, read again and pasted.
// The input: the length of the script that rules answer by, the script, the snapshot.
#include "tests/copier/scripted_rules.h"
#include "tests/fuzz/fuzzing.h"

#include <kelm/copier.h>

#include <sstream>

using namespace kelm;
using namespace kelm::fuzzing;

namespace {

std::string bytes_of(const copier& what) {
    std::ostringstream out;
    if (!what.write(out)) fail("a snapshot cannot be written");
    return out.str();
}

bool read(copier& into, const std::string& bytes) {
    std::istringstream in{bytes};
    return into.read(in);
}

void expect_nothing(const copier& what, const object& owner) {
    std::vector<std::pair<u32, u32>> chosen;
    what.selected_objects(chosen);
    if (!chosen.empty() || what.can_paste_into(&owner)) fail("something is left of what was refused");
}

/// Rules that do what the next byte says, and let everything pass behind the end of the script.
class told_rules {
public:
    told_rules(kelm::model& in, choices& script) : model_(in), script_(script) {
        on_paste_.on_call = [this](const test::paste_call&) {
            return act(static_cast<int>(script_.below(8)));
        };
        on_paste_.on_object = [this] { return any(); };
        on_value_.on_call = [this](object*, u32, abstract_property*, bool) {
            return act(static_cast<int>(script_.below(4)));
        };
        on_order_.on_call = [this](object* owner, u32, const pasted_positions& children) {
            for (const auto& [child, position] : children) owner->set_child_position(child, script_.below(3));
            return act(script_.below(8) != 7);
        };
        on_end_.on_call = [this](kelm::model*) { return act(script_.below(8) != 7); };
    }
    void set_on(copier& what) {
        for (const u32 type : {test::types::thing, test::types::part}) {
            what.set_paste_rule(type, test::scripted_paste_rule{on_paste_});
            what.set_property_paste_rule(type, test::scripted_value_rule{on_value_});
            for (const u32 owner : {type_id::model, test::types::thing})
                what.set_object_order_rule(owner, type, test::scripted_order_rule{on_order_});
        }
        what.set_end_transaction_rule(test::scripted_end_rule{on_end_});
    }

private:
    /// Now and then a rule changes the model, or its transactions.
    template <class Answer>
    Answer act(Answer answer) {
        switch (script_.below(12)) {
        case 8: framework::instance().delete_object(any()); break;
        case 9: model_.rollback_transaction(); break;
        case 10: model_.begin_transaction("rule"); break;
        case 11: model_.end_transaction(); break;
        default: break;
        }
        return answer;
    }
    object* any() {
        std::vector<u32> ids;
        model_.object_ids(ids);
        return model_.find_object(ids[script_.byte() % ids.size()]);
    }

    kelm::model& model_;
    choices& script_;
    test::paste_script on_paste_;
    test::value_script on_value_;
    test::order_script on_order_;
    test::end_script on_end_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    choices input{data, size};
    choices script = input.part();
    fuzzed_model into;
    into.populate(false);
    object* const root = into->as_object();
    told_rules rules{*into, script}; // outlives the copier
    const shared_ptr<copier> what = framework::instance().create_copier(&*into);
    if (!read(*what, input.rest())) {
        expect_nothing(*what, *root);
        return 0;
    }
    const std::string once = bytes_of(*what);
    const shared_ptr<copier> again = framework::instance().create_copier(&*into);
    if (!read(*again, once)) fail("what was written cannot be read");
    if (bytes_of(*again) != once) fail("what was read is written otherwise");
    again->paste(&*into, {root}, nullptr); // without rules
    rules.set_on(*what);
    for (int round = 0; round != 2; ++round) {
        what->paste(&*into, {root->children().empty() ? nullptr : root->children().front(), root}, nullptr);
        for (object* const each : root->children()) what->copy_object(each, false);
    }
    walk_through(*into);
    return 0;
}
