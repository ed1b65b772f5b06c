// A model's log back from its stream.
// Performing it on a live model is replay.
#include "message/message_table.h"
#include "object/model_impl.h"
#include "persistence/object_record.h"
#include "persistence/replay.h"
#include "util/bytes.h"

#include <kelm/framework.h>

#include <istream>
#include <limits>
#include <unordered_set>

namespace kelm {

namespace {

class history_reader {
public:
    history_reader(std::istream& in, std::vector<message*>& messages, io_reference_manager& references,
                   model_impl& model, format_version version, std::vector<object*>& deleted)
        : in_(in),
          messages_(messages),
          first_(messages.size()),
          references_(references),
          model_(model),
          version_(version),
          deleted_(deleted) {}

    void read_deleted_objects() {
        std::vector<std::pair<object_impl*, u32>> owners;
        for (u32 left = get_u32(in_); left != 0 && in_; --left) {
            const u32 owner = get_u32(in_);
            const u32 type = get_u32(in_);
            object_impl* const made = in_ ? make_stored_object(type, model_) : nullptr;
            if (!made) return in_.setstate(std::ios_base::failbit);
            made->set_state(state::deleted);
            deleted_.push_back(made);
            owners.emplace_back(made, owner);
            if (!read_object(*made, in_, references_)) return;
        }
        place_below_owners(owners);
    }

    /// \returns false when the replay of a message failed
    bool read_messages(bool replay) {
        static_cast<void>(get_u32(in_)); // the number of transactions, which nobody needs
        const bool counted = version_.is_at_least(7, 6);
        const u32 count = counted ? get_u32(in_) : npos32;
        for (u32 i = 0; i != count && in_; ++i) {
            if (in_.peek() == std::istream::traits_type::eof()) {
                // A log for replay has fewer messages than it says, an old one does not say.
                if (counted && !replay) in_.setstate(std::ios_base::failbit);
                break;
            }
            message_impl* const made = read_message();
            if (made && replay && !perform(*made)) return false;
        }
        return true;
    }

    /// Gives messages the values that others hold.
    void share_values() {
        for (std::size_t i = first_; i != messages_.size(); ++i) {
            message_impl& at = impl_at(i);
            for (const int index : {0, 1}) {
                if (const auto found = fixups_.find({messages_[i], index}); found != fixups_.end())
                    take_shared(at, i, index, found->second);
                own_if_needed(at, index);
            }
        }
    }

private:
    message_impl& impl_at(std::size_t index) const { return *message_cast<message_impl>(messages_[index]); }

    // Owners come second: one with a higher id has been read by then.
    void place_below_owners(const std::vector<std::pair<object_impl*, u32>>& owners) {
        for (const auto& [what, owner_id] : owners)
            if (object* const owner = owner_id == 0 ? nullptr : model_.find_object(owner_id))
                what->set_owner_field(owner);
    }

    /// \returns null for a number that no message has, and at the end of the stream
    message_impl* read_message() {
        const u32 code = get_u32(in_);
        const u32 id = get_u32(in_);
        const bool user_created = version_.is_at_least(7, 3) && get_bool(in_);
        const message_row* const row = in_ ? message_row_of(code) : nullptr;
        if (!row) return nullptr;
        auto made = row->blank(edit_of(model_.find_object(id)));
        made->set_user_created(user_created);
        const std::size_t records = references_.references.size();
        made->read(&in_, messages_, &model_, &references_, &fixups_, nullptr, version_.version,
                   version_.minor_version);
        if (!in_) { // it goes, and the records point into it
            references_.references.resize(records);
            fixups_.erase({made.get(), 0});
            fixups_.erase({made.get(), 1});
            return nullptr;
        }
        messages_.push_back(made.get());
        return made.release();
    }

    bool perform(message_impl& what) {
        if (!resolve_refs_post_read(&model_, references_)) {
            framework::instance().log("resolve_refs_post_read - failed");
            return false;
        }
        references_.clear();
        return replay_message(what, model_);
    }

    void take_shared(message_impl& into, std::size_t place, int index, const value_position& from) {
        const std::size_t source = first_ + from.msg_index;
        if (source >= messages_.size()) return;
        abstract_property* const value = impl_at(source).get_value(static_cast<int>(from.prop_index),
                                                                   static_cast<int>(from.prop_sub_index));
        if (!value) return;
        into.set_value(index, value);
        // An older message goes first, and would take the value along.
        if (source <= place)
            if (value_custody* const held = into.custody(index)) held->take_back(clone(value));
    }

    /// What a message has to own it cannot share, whatever the stream says.
    static void own_if_needed(message_impl& what, int index) {
        value_custody* const held = what.custody(index);
        if (!held || !held->get() || held->holds()) return;
        if ((message_row_of(stored_code(what))->owned_when_done >> index & 1) != 0)
            held->take_back(clone(held->get()));
    }

    std::istream& in_;
    std::vector<message*>& messages_;
    std::size_t first_; // what was there before does not count
    io_reference_manager& references_;
    model_impl& model_;
    format_version version_;
    std::vector<object*>& deleted_;
    value_fixup_map fixups_;
};

} // namespace

bool message_history::read_transactions(void* element, std::istream& in, std::vector<message*>& messages,
                                        io_reference_manager& references, kelm::model* into, int version,
                                        int minor_version, std::vector<object*>& deleted, bool replay) {
    framework::instance().log("message_history::read_transactions");
    if (!into || element) return false;
    model_impl& model = *impl_of(into->as_object())->owning_model();
    history_reader reader{in, messages, references, model, {version, minor_version}, deleted};
    reader.read_deleted_objects();
    // In a replay the objects that are made anew need the ids of those that are gone.
    if (replay)
        for (object* each : deleted) impl_of(each)->leave_id_map();
    if (!reader.read_messages(replay)) return false;
    if (replay) return true;
    reader.share_values();
    framework::instance().log("message_history::read_transactions - returned true");
    return true;
}

bool model_impl::read_history(std::istream& in, const format_version& version) {
    if (!get_bool(in)) return !in.fail();
    restore_transaction_id(get_u32(in));
    history_.set_trans_executed(get_u32(in));
    io_reference_manager references;
    std::vector<message*> messages;
    std::vector<object*> deleted;
    message_history::read_transactions(nullptr, in, messages, references, this, version.version,
                                       version.minor_version, deleted, false);
    const bool whole = !in.fail();
    if (whole) resolve_refs_post_read(this, references);
    for (object* each : deleted) impl_of(each)->leave_id_map();
    history_.adopt(messages);
    if (!whole) clear_history();
    return whole;
}

} // namespace kelm
