// A model's log into its stream or document: what was deleted, then what was done.  What was undone is not written.
// The fields of a message are its own; reading back is history_reader.
#include "message/element_index.h"
#include "message/lifetime_messages.h"
#include "message/message_table.h"
#include "object/model_impl.h"
#include "persistence/history_fields.h"
#include "persistence/object_record.h"

#include <map>
#include <optional>

namespace kelm {

namespace {

/// The newest part of a log, from `first` on.
struct log_range {
    std::size_t first = 0;
    u32 transactions = 0;
};

/// \param count  0 for the whole log
log_range range_of(const message_list& log, u32 count) {
    log_range range{.first = log.size()};
    while (range.first != 0 && (count == 0 || range.transactions != count)) {
        message_impl* const at = log[--range.first].get();
        // Kept: a part is counted by its begins, the whole by its ends; they differ where one of a pair is missing.
        const auto* const begin = as_begin(at);
        const auto* const end = as_end(at);
        const bool counts = count == 0 ? end && end->level() == 0 : begin && begin->level() == 0;
        range.transactions += counts ? 1 : 0;
    }
    return range;
}

/// The messages of a range; null for a document that has no place for them.
std::optional<binary_out::list> open_messages(binary_out log, std::size_t count, const log_range& range,
                                              bool counted) {
    log.number(nullptr, range.transactions);
    if (counted) log.number(nullptr, static_cast<u32>(count));
    return binary_out::list{log};
}

// Kept: only a log with a closed transaction gets a list; the messages of any other go to the stream.
std::optional<document_out::list> open_messages(document_out log, std::size_t count, const log_range& range,
                                                bool /*counted*/) {
    if (range.transactions == 0) return std::nullopt;
    return log.open("transactions", "message", count);
}

class history_writer {
public:
    /// \param beside  where messages go that have no place in a document; may be null
    history_writer(model_impl& model, const message_list& log, log_range range, bool for_replay,
                   std::ostream* beside)
        : model_(model), log_(log), range_(range), for_replay_(for_replay), beside_(beside) {
        positions_.model = &model;
        positions_.elements = &elements_;
    }
    history_writer(const history_writer&) = delete;
    history_writer& operator=(const history_writer&) = delete;
    ~history_writer() = default;

    template <class Archive>
    void write(Archive to) {
        collect();
        auto objects = to.open("deleted_objs", "deleted_obj", deleted_.size());
        for (const auto& [id, object] : deleted_) write_deleted(*object, objects.next());
        if (auto items = open_messages(to, log_.size() - range_.first, range_, is_stored(7, 6)))
            write_messages(*items);
        else if (beside_) {
            write_messages(binary_out::list{binary_out{*beside_}});
            if (beside_->fail()) to.fail();
        }
    }

private:
    /// An object whose deletion was refused half-way lives, and stands in the tree; one for which only the last step was
    /// refused is out of it.
    static bool is_gone(const object_impl& what) {
        return what.is_deleted() || (what.state() == state::being_deleted && !what.is_listed());
    }

    void collect() {
        for (std::size_t i = range_.first; i != log_.size(); ++i) {
            const message_impl& each = *log_[i];
            if (each.type() == message_type::obj_pre_delete)
                if (object_impl* const about = impl_of(each.object()); about && is_gone(*about))
                    deleted_.try_emplace(about->id(), about);
            each.register_values(positions_, static_cast<u32>(i - range_.first));
        }
    }

    template <class Archive>
    void write_deleted(const object_impl& what, Archive to) {
        const deleted_frame frame{what.owner_object() ? what.owner_object()->id() : 0, what.type()};
        deleted_frame::fields(frame, to);
        write_object(what, to);
    }

    template <class List>
    void write_messages(List items) {
        for (std::size_t i = range_.first; i != log_.size(); ++i)
            if (is_wanted(*log_[i])) write_message(*log_[i], items.next());
    }

    /// A replay needs what the user did; hooks will do the rest again.
    bool is_wanted(const message_impl& what) const {
        return !for_replay_ || what.is_user_created() || what.type() == message_type::tran_begin ||
               what.type() == message_type::tran_end;
    }

    template <class Archive>
    void write_message(const message_impl& what, Archive to) {
        const message_frame frame{stored_code(what), what.object() ? what.object()->id() : 0,
                                  what.is_user_created()};
        message_frame::fields(frame, to, is_stored(7, 3));
        what.write(to.stream(), positions_, to.element(), for_replay_);
    }

    bool is_stored(int version, int minor_version) const {
        return version_of(model_).stores(version, minor_version);
    }

    model_impl& model_;
    const message_list& log_;
    log_range range_;
    bool for_replay_;
    std::ostream* beside_;
    std::map<u32, const object_impl*> deleted_;
    value_position_map positions_;
    element_index elements_;
};

/// \returns where the log goes; nothing when it goes nowhere
template <class Archive>
std::optional<Archive> open_history(Archive to, bool with_history, const history_counts& counts) {
    to.present("message_history_impl", with_history);
    if (!with_history) return std::nullopt;
    Archive section = to.inner("message_history_impl");
    history_counts::fields(counts, section);
    return section;
}

} // namespace

void message_history_impl::write_history(std::ostream* out, bool with_history, u32 transaction_count,
                                         void* element) {
    const document_part pass;
    const history_counts counts{model_object_.model()->last_transaction_id(), trans_executed_};
    if (element) {
        if (const auto to = open_history(document_out{element}, with_history, counts))
            write_messages(to->element(), out, transaction_count, false);
    } else if (out) {
        if (open_history(binary_out{*out}, with_history, counts))
            write_messages(nullptr, out, transaction_count, false);
    }
}

void message_history_impl::write_messages(void* element, std::ostream* out, u32 transaction_count,
                                          bool for_replay) {
    const document_part pass;
    auto& model = *impl_of(&model_object_)->owning_model();
    history_writer writer{model, messages_, range_of(messages_, transaction_count), for_replay, out};
    if (element)
        writer.write(document_out{element});
    else if (out)
        writer.write(binary_out{*out});
}

} // namespace kelm
