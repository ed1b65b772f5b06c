// The walk down the inheritors of an object, and passing a message to them.
// The walk up to the bases is base_search.
#include "object/inheritor_walk.h"

#include "meta/marked_property.h"
#include "object/model_impl.h"
#include "object/passed_message.h"

#include <kelm/meta_model.h>

namespace kelm {

bool is_inheritable(const meta_property& which) { return !is_marked(which, attribute_id::not_inheritable); }

bool may_pass(const object_impl& at, u32 id) {
    const meta_object* const type = at.meta();
    const meta_property* const which = type ? type->find_property(id) : nullptr;
    return which && is_inheritable(*which);
}

bool may_be_asked(const object_impl& at, const object_impl& base, u32 id) {
    if (base.type() == at.type()) return true;
    const meta_object* const type = base.meta();
    return type && type->has_property(id);
}

bool inheritor_walk::sees(const object_impl& inheritor) const {
    if (tests_type_ && !(origin_ && origin_->type() == inheritor.type())) {
        const meta_object* const type = inheritor.meta();
        if (!type || !type->has_property(id_)) return false;
    }
    return !inheritor.defines_property(id_) && !inheritor.is_property_not_inheritable(id_) &&
           may_pass(inheritor, id_);
}

void inheritor_walk::descend(object_impl& at) {
    const back_links* const links = at.inheritor_links();
    if (links && !links->empty()) levels_.push_back({&at, links->copy(), 0});
}

object_impl* inheritor_walk::next() {
    while (!levels_.empty()) {
        level& top = levels_.back();
        if (top.index == top.copy.size()) {
            levels_.pop_back();
            continue;
        }
        object_impl* const candidate = top.copy[top.index++];
        const back_links* const now = top.at->inheritor_links();
        if (now && now->holds(candidate) && sees(*candidate)) return candidate;
    }
    return nullptr;
}

bool object_impl::pass_to_inheritors(message_impl& said, u32 id) {
    if (!links().inheritors) return true;
    passed_message passed{model_->innermost_passed(), said};
    bool all = true;
    inheritor_walk walk{*this, id, nullptr, false};
    while (object_impl* const at = walk.next()) {
        passed.speak_of(*at);
        if (!at->notify(&said))
            all = false;
        else if (all) // Kept: behind a failure the others are told, but not those who inherit from them
            walk.descend(*at);
    }
    return all;
}

} // namespace kelm
