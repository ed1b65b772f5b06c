// Resolving what a reader has left open, once all objects are there.
// What is left open is told by the readers.
#include "object/model_impl.h"

#include <kelm/io_references.h>

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace kelm {

namespace {

object_impl* found(kelm::model& in, u32 id) { return impl_of(in.find_object(id)); }

void fill_references(kelm::model& in, const io_reference_manager& from) {
    for (const reference_record& each : from.references) {
        const bool is_null = each.target_id == npos32 || each.target_id == 0;
        object_impl* const target = is_null ? nullptr : found(in, each.target_id);
        if (!target) continue;
        if (!each.from_message && each.holder) impl_of(each.holder)->link_read_reference(*target);
        each.value->value = target; // never without its link
    }
}

/// The bases that wait, and which of them would close a circle: a stream may tell of such.
class waiting_bases {
public:
    waiting_bases(kelm::model& in, const io_reference_manager& from) {
        for (const auto& [id, bases] : from.inherits)
            if (object_impl* const who = found(in, id)) {
                entry& into = entries_[who];
                order_.push_back(who);
                for (const u32 base : *bases)
                    if (object_impl* const target = found(in, base)) into.bases.push_back(target);
            }
    }

    void link() {
        // Nobody leads to those that wait but they themselves: one walk over them finds all circles.
        const bool are_apart =
            std::ranges::none_of(order_, [](const object_impl* who) { return who->has_inheritors(); });
        if (are_apart)
            for (object_impl* const who : order_) open_circles_from(who);
        for (object_impl* const who : order_) who->append_bases(entries_[who].bases, !are_apart);
    }

private:
    struct entry {
        std::vector<object_impl*> bases;
        std::size_t next = 0;
        bool is_on_the_way = false;
    };

    /// Depth first, each entry once; a base that the way has come from is left out.
    void open_circles_from(object_impl* start) {
        std::vector<entry*> way;
        enter(start, way);
        while (!way.empty()) {
            entry& at = *way.back();
            if (at.next == at.bases.size()) {
                at.is_on_the_way = false;
                way.pop_back();
                continue;
            }
            const auto found_entry = entries_.find(at.bases[at.next]);
            if (found_entry != entries_.end() && found_entry->second.is_on_the_way) {
                at.bases[at.next++] = nullptr;
                continue;
            }
            ++at.next;
            if (found_entry != entries_.end()) enter(found_entry->first, way);
        }
    }

    void enter(object_impl* who, std::vector<entry*>& way) {
        entry& at = entries_[who];
        if (at.next != 0) return; // it has been walked
        at.is_on_the_way = true;
        way.push_back(&at);
    }

    std::unordered_map<object_impl*, entry> entries_;
    std::vector<object_impl*> order_; // as the ids ascend
};

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
    waiting_bases{*in, references}.link();
    attach_observers(*in, references);
    return true;
}

} // namespace kelm
