// A model's log back from its stream or document.
// Performing it on a live model is replay.
#include "persistence/history_reader.h"

#include "message/message_table.h"
#include "message/read_elements.h"
#include "object/model_impl.h"
#include "persistence/history_fields.h"
#include "persistence/object_record.h"
#include "persistence/replay.h"

#include <kelm/framework.h>

#include <istream>
#include <map>

namespace kelm {

namespace {

binary_in::list open_deleted_objects(binary_in log) { return log.open("deleted_objs", "deleted_obj"); }

// Kept: the objects stand in the list, and are looked for beside it: deleted objects of a document are not read.
document_in::list open_deleted_objects(document_in log) {
    return {log.inner("deleted_objs").is_there() ? log.element() : nullptr, "deleted_obj"};
}

/// \returns the messages; their number is npos32 in streams that do not tell it
binary_in::list open_messages(binary_in log, const format_version& version) {
    u32 transactions = 0; // nobody needs it
    log.number(nullptr, transactions);
    u32 count = npos32;
    if (version.is_at_least(7, 6)) log.number(nullptr, count);
    return {log, count};
}

document_in::list open_messages(document_in log, const format_version&) {
    return log.open("transactions", "message");
}

/// \returns whether there are fewer messages than were announced
bool is_at_end(const binary_in& item) { return item.stream()->peek() == std::istream::traits_type::eof(); }
bool is_at_end(const document_in&) { return false; }

template <class Archive>
class history_reader {
public:
    history_reader(Archive from, const log_target& into, format_version version)
        : from_(from), into_(into), first_(into.messages.size()), version_(version) {
        for (message* each : into_.messages) remember(*each);
        into_.references.newest_begins = &begins_;
    }
    history_reader(const history_reader&) = delete;
    history_reader& operator=(const history_reader&) = delete;
    ~history_reader() { into_.references.newest_begins = nullptr; }

    void read_deleted_objects() {
        std::vector<std::pair<object_impl*, u32>> owners;
        auto items = open_deleted_objects(from_);
        while (auto item = items.next()) {
            deleted_frame frame;
            deleted_frame::fields(frame, *item);
            object_impl* const made =
                item->good() ? object_impl::make_stored(frame.type, into_.model) : nullptr;
            if (!made) return from_.fail();
            made->set_state(state::deleted);
            into_.deleted.push_back(made);
            owners.emplace_back(made, frame.owner);
            if (!read_object(*made, *item, into_.references)) return;
            delete_below(*made);
        }
        place_below_owners(owners);
    }

    /// \returns false when the replay of a message failed
    bool read_messages(bool replay) {
        auto items = open_messages(from_, version_);
        while (auto item = items.next()) {
            if (is_at_end(*item)) {
                // A log for replay has fewer messages than it says, an old one does not say.
                if (version_.is_at_least(7, 6) && !replay) from_.fail();
                break;
            }
            message_impl* const made = read_message(*item);
            if (made && replay && !perform(*made)) return false;
        }
        return from_.good() || !replay;
    }

    /// Gives messages the values that others hold.
    void share_values() {
        for (std::size_t i = first_; i != into_.messages.size(); ++i) {
            message_impl& at = impl_at(i);
            for (const int index : {0, 1}) {
                if (const auto found = fixups_.find({into_.messages[i], index}); found != fixups_.end())
                    take_shared(at, index, found->second);
                own_if_needed(at, index);
            }
        }
        find_read_elements(into_.messages, first_);
    }

private:
    message_impl& impl_at(std::size_t index) const {
        return *message_cast<message_impl>(into_.messages[index]);
    }

    // Nothing that lives is below a deleted object, whatever the stream says.
    void delete_below(object_impl& top) {
        std::vector<object_impl*> open{&top};
        while (!open.empty()) {
            const child_list* const children = open.back()->child_objects();
            open.pop_back();
            std::vector<object*> below;
            if (children) children->append_to(below);
            for (object* each : below) {
                impl_of(each)->set_state(state::deleted);
                into_.deleted.push_back(each);
                open.push_back(impl_of(each));
            }
        }
    }

    // Owners come second: one with a higher id has been read by then.
    void place_below_owners(const std::vector<std::pair<object_impl*, u32>>& owners) {
        for (const auto& [what, owner_id] : owners)
            if (object* const owner = owner_id == 0 ? nullptr : into_.model.find_object(owner_id))
                what->set_owner_field(owner);
    }

    /// \returns null for a number that no message has, and at the end of the stream
    message_impl* read_message(Archive& item) {
        message_frame frame;
        message_frame::fields(frame, item, version_.is_at_least(7, 3));
        const message_row* const row = item.good() ? message_row_of(frame.code) : nullptr;
        if (!row) return nullptr;
        auto made = row->blank(edit_of(into_.model.find_object(frame.object_id)));
        made->set_user_created(frame.user_created);
        auto& records = into_.references.references;
        const std::size_t first = records.size();
        made->read(item.stream(), into_.messages, &into_.model, &into_.references, &fixups_, item.element(),
                   version_.version, version_.minor_version);
        if (!item.good()) { // it goes, and the records point into it
            records.resize(first);
            fixups_.erase({made.get(), 0});
            fixups_.erase({made.get(), 1});
            return nullptr;
        }
        into_.messages.push_back(made.get());
        message_impl* const read = made.release(); // it is theirs
        remember(*read);
        return read;
    }

    void remember(message& what) {
        if (const auto* const begin = message_cast<tran_begin_message>(&what))
            begins_.insert_or_assign(begins_.end(), begin->id(), &what); // ids of an honest log ascend
    }

    bool perform(message_impl& what) {
        if (!resolve_refs_post_read(&into_.model, into_.references)) {
            framework::instance().log("resolve_refs_post_read - failed");
            return false;
        }
        into_.references.clear();
        const document_pass of_the_hooks; // what they do is not of this document
        return replay_message(what, into_.model);
    }

    void take_shared(message_impl& into, int index, const value_position& from) {
        const std::size_t source = first_ + from.msg_index;
        if (source >= into_.messages.size()) return;
        abstract_property* const value = impl_at(source).get_value(static_cast<int>(from.prop_index),
                                                                   static_cast<int>(from.prop_sub_index));
        if (!value) return;
        into.set_value(index, value);
    }

    /// What a message has to own it cannot share, whatever the stream says.
    static void own_if_needed(message_impl& what, int index) {
        value_custody* const held = what.custody(index);
        if (!held || !held->get() || held->holds()) return;
        if ((message_row_of(stored_code(what))->owned_when_done >> index & 1) != 0)
            held->take_back(clone(held->get()));
    }

    Archive from_;
    const log_target& into_;
    std::size_t first_; // what was there before does not count
    format_version version_;
    value_fixup_map fixups_;
    std::map<u32, message*> begins_; // the newest of each id, so that an end need not search
};

} // namespace

template <class Archive>
bool read_log(Archive from, const log_target& into, format_version version, bool replay) {
    framework::instance().log("message_history::read_transactions");
    history_reader<Archive> reader{from, into, version};
    reader.read_deleted_objects();
    // In a replay the objects that are made anew need the ids of those that are gone.
    if (replay)
        for (object* each : into.deleted) impl_of(each)->leave_id_map();
    if (!reader.read_messages(replay)) return false;
    if (replay) return true;
    reader.share_values();
    framework::instance().log("message_history::read_transactions - returned true");
    return true;
}

template bool read_log(binary_in, const log_target&, format_version, bool);
template bool read_log(document_in, const log_target&, format_version, bool);

bool message_history::read_transactions(void* element, std::istream& in, std::vector<message*>& messages,
                                        io_reference_manager& references, kelm::model* into, int version,
                                        int minor_version, std::vector<object*>& deleted, bool replay) {
    if (!into) return false;
    const document_pass pass;
    const log_target target{messages, references, *impl_of(into->as_object())->owning_model(), deleted};
    const format_version stamp{version, minor_version};
    return element ? read_log(document_in{element}, target, stamp, replay)
                   : read_log(binary_in{in}, target, stamp, replay);
}

} // namespace kelm
