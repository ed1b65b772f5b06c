// A model's log into its stream: what was deleted, then what was done.  What was undone is not written.
// The fields of a message are its own; reading back is history_reader.
#include "message/lifetime_messages.h"
#include "message/message_table.h"
#include "object/model_impl.h"
#include "persistence/object_record.h"
#include "util/bytes.h"

#include <map>
#include <ostream>

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

class history_writer {
public:
    history_writer(std::ostream& out, model_impl& model, const message_list& log, log_range range)
        : out_(out), model_(model), log_(log), range_(range) {}

    void write(bool for_replay) {
        collect();
        put_u32(out_, static_cast<u32>(deleted_.size()));
        for (const auto& [id, object] : deleted_) write_deleted(*object);
        put_u32(out_, range_.transactions);
        if (is_stored(7, 6)) put_u32(out_, static_cast<u32>(log_.size() - range_.first));
        for (std::size_t i = range_.first; i != log_.size(); ++i) write_message(*log_[i], for_replay);
    }

private:
    /// An object whose deletion was refused half-way lives, and stands in the tree.
    void collect() {
        for (std::size_t i = range_.first; i != log_.size(); ++i) {
            const message_impl& each = *log_[i];
            if (each.type() == message_type::obj_pre_delete)
                if (object_impl* const about = impl_of(each.object()); about && about->is_deleted())
                    deleted_.try_emplace(about->id(), about);
            each.register_values(positions_, static_cast<u32>(i - range_.first));
        }
    }

    void write_deleted(const object_impl& what) {
        put_u32(out_, what.owner_object() ? what.owner_object()->id() : 0);
        put_u32(out_, what.type());
        write_object(what, out_);
    }

    void write_message(const message_impl& what, bool for_replay) {
        const bool brackets =
            what.type() == message_type::tran_begin || what.type() == message_type::tran_end;
        if (for_replay && !what.is_user_created() && !brackets) return;
        put_u32(out_, stored_code(what));
        put_u32(out_, what.object() ? what.object()->id() : 0);
        if (is_stored(7, 3)) put_bool(out_, what.is_user_created());
        what.write(&out_, positions_, nullptr, for_replay);
    }

    bool is_stored(int version, int minor_version) const {
        return version_of(model_).stores(version, minor_version);
    }

    std::ostream& out_;
    model_impl& model_;
    const message_list& log_;
    log_range range_;
    std::map<u32, const object_impl*> deleted_;
    value_position_map positions_;
};

} // namespace

void message_history_impl::write_history(std::ostream* out, bool with_history, u32 transaction_count,
                                         void* element) {
    if (!out || element) return;
    put_bool(*out, with_history);
    if (!with_history) return;
    put_u32(*out, model_object_.model()->last_transaction_id());
    put_u32(*out, trans_executed_);
    write_messages(nullptr, out, transaction_count, false);
}

void message_history_impl::write_messages(void* element, std::ostream* out, u32 transaction_count,
                                          bool for_replay) {
    if (!out || element) return;
    auto& model = *impl_of(&model_object_)->owning_model();
    history_writer{*out, model, messages_, range_of(messages_, transaction_count)}.write(for_replay);
}

} // namespace kelm
