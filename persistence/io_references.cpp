// Resolving what a reader has left open, once all objects are there.
// What is left open is told by the readers.
#include "object/model_impl.h"

#include <kelm/io_references.h>

namespace kelm {

namespace {

object_impl* found(kelm::model& in, u32 id) { return impl_of(in.find_object(id)); }

void fill_references(kelm::model& in, const io_reference_manager& from) {
    for (const reference_record& each : from.references) {
        object_impl* const target = each.target_id == npos32 ? nullptr : found(in, each.target_id);
        if (!target) continue;
        each.value->value = target;
        if (!each.from_message && each.holder) impl_of(each.holder)->link_read_reference(*target);
    }
}

// A stream may tell of circles, and of one base twice: such a link is left out.
void link_bases(kelm::model& in, const io_reference_manager& from) {
    for (const auto& [id, bases] : from.inherits) {
        object_impl* const who = found(in, id);
        if (!who) continue;
        std::vector<object_impl*> targets;
        for (const u32 base : *bases)
            if (object_impl* const target = found(in, base)) targets.push_back(target);
        who->append_bases(targets);
    }
}

void attach_observers(kelm::model& in, const io_reference_manager& from) {
    for (const auto& [id, observers] : from.observers) {
        object_impl* const subject = found(in, id);
        if (!subject) continue;
        for (const u32 observer : *observers)
            if (object_impl* const who = found(in, observer)) subject->attach_silently(*who, observer);
    }
}

} // namespace

bool resolve_refs_post_read(kelm::model* in, io_reference_manager& references) {
    if (!in) return true;
    fill_references(*in, references);
    link_bases(*in, references);
    attach_observers(*in, references);
    return true;
}

} // namespace kelm
