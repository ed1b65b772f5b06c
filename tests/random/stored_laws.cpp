// The laws of streams: written, read and written again gives the same bytes; what was read is what was written; and undo
// and redo of it lead through the same states.
// The histories are made by random_edits.cpp.
#include "tests/random/random_edits.h"
#include "tests/random/read_model.h"
#include "tests/support/stored_fields.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace kelm::test {

namespace {

/// \returns whether every living object is in the tree.  One whose deletion was refused half-way is not, nor is a child
///          that was taken out; no stream tells of them.
bool is_all_in_the_tree(kelm::model& of) {
    std::vector<u32> ids;
    of.object_ids(ids);
    std::size_t found = 0;
    std::vector<object*> to_visit{of.as_object()};
    while (!to_visit.empty()) {
        object* const at = to_visit.back();
        to_visit.pop_back();
        ++found;
        const std::vector<object*> below = at->children();
        to_visit.insert(to_visit.end(), below.begin(), below.end());
    }
    return found == ids.size();
}

std::string stream_of(kelm::model& of) {
    std::ostringstream out;
    return of.write(&out, true, 0, false, nullptr) ? out.str() : "not written";
}

} // namespace

std::string first_difference(const std::string& wanted, const std::string& is) {
    const auto at = static_cast<std::size_t>(std::ranges::mismatch(wanted, is).in1 - wanted.begin());
    const std::size_t from = at < 40 ? 0 : at - 40;
    return "at " + std::to_string(at) + "\nexpected " + hex(wanted.substr(from, 80)) + "\nbut it is " +
           hex(is.substr(from, 80)) + "\n";
}

bool random_run::has_declared(const object& what, u32 id) const {
    const meta_object* const type = model_->meta_model()->find_meta_object(what.type());
    return type && type->find_property(id);
}

void random_run::check_stored() {
    if (!is_all_in_the_tree(*model_)) return;
    counted_value::enter();
    model_->meta_model()->set_version(newest_version);
    model_->clear_modified(); // a model that has been read counts from 0
    const std::string bytes = stream_of(*model_);
    const read_model copy;
    std::istringstream in{bytes};
    if (!copy->read(&in, nullptr)) return void(failure_ = "broken: what was written can be read");
    const auto compare = [&](const char* what, const std::string& expected) {
        const std::string now = state_of(*copy);
        if (failure_.empty() && now != expected)
            failure_ = std::string("broken: ") + what + "\nexpected\n" + expected + "but it is\n" + now;
    };
    compare("what is read is what was written", state());
    std::ostringstream again;
    if (failure_.empty() && (!copy->write(&again, true, 0, false, nullptr) || again.str() != bytes))
        failure_ =
            "broken: what is read is written in the same bytes\n" + first_difference(bytes, again.str());
    std::size_t at = at_;
    for (; failure_.empty() && at != 0 && copy->can_undo(); --at) {
        copy->undo();
        compare("undo of what was read leads to the state before", states_[at - 1]);
    }
    for (; failure_.empty() && copy->can_redo(); ++at) {
        copy->redo();
        compare("redo of what was read leads to the state behind", states_[at + 1]);
    }
}

} // namespace kelm::test
