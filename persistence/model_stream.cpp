// A model as one stream, or as one element of a document: its identity, the properties of its types, its tree, and its
// history.
// The sections are files of their own.
#include "object/model_impl.h"
#include "persistence/history_fields.h"
#include "persistence/history_reader.h"
#include "persistence/meta_section.h"
#include "persistence/object_record.h"

#include <istream>
#include <ostream>

namespace kelm {

namespace {

struct model_header {
    GUID id{};
    u32 last_object = 0;
    u32 last_udp = 0;

    template <class Self, class Archive>
    static void fields(Self& self, Archive& archive) {
        archive.identity("model_id", self.id);
        archive.attribute("last_id", self.last_object);
        archive.attribute("last_udp_id", self.last_udp);
    }
};

/// Puts the count of changes back unless something was saved, also where a stream or a handler throws.
class unsaved {
public:
    explicit unsaved(message_history_impl& history)
        : history_(history), executed_(history.trans_executed()) {}
    unsaved(const unsaved&) = delete;
    unsaved& operator=(const unsaved&) = delete;
    ~unsaved() {
        if (!are_saved_) history_.set_trans_executed(executed_);
    }
    void are_saved() { are_saved_ = true; }

private:
    message_history_impl& history_;
    u32 executed_;
    bool are_saved_ = false;
};

/// What a log brings.  Messages that no history has taken go with it, and the deleted objects leave the ids to others.
struct incoming_log {
    incoming_log() = default;
    incoming_log(const incoming_log&) = delete;
    incoming_log& operator=(const incoming_log&) = delete;
    ~incoming_log() {
        for (object* each : deleted) impl_of(each)->leave_id_map();
        for (const message* each : messages) delete each;
    }

    io_reference_manager references;
    std::vector<message*> messages;
    std::vector<object*> deleted;
};

} // namespace

bool object_impl::write(std::ostream* out, void* element) const {
    const document_pass pass;
    if (element)
        write_object(*this, document_out{element});
    else if (out)
        write_object(*this, binary_out{*out});
    return element ? !document_pass::has_failed() : out && !out->fail();
}

bool model_impl::write(std::ostream* out, bool with_history, u32 transaction_count, bool reset_modified,
                       void* element) {
    if ((!out && !element) || !is_between_transactions()) return false;
    const document_pass pass;
    unsaved changes{history_};
    if (reset_modified) history_.set_trans_executed(0);
    bool written = element ? write_to(document_out{element}) : write_to(binary_out{*out});
    if (written) history_.write_history(out, with_history, transaction_count, element);
    written = written && (element ? !document_pass::has_failed() : !out->fail());
    if (written) changes.are_saved();
    return written;
}

template <class Archive>
bool model_impl::write_to(Archive to) {
    const model_header header{model_guid_, last_object_id(), last_udp_id()};
    model_header::fields(header, to);
    write_meta_section(*this, to);
    write_object(*this, to);
    return to.good();
}

bool model_impl::save_as_new(std::ostream* out, bool with_history, u32 transaction_count, void* element) {
    if ((!out && !element) || !is_between_transactions()) return false;
    generate_model_id();
    return write(out, with_history, transaction_count, true, element);
}

bool model_impl::read(std::istream* in, void* element) {
    if (!in && !element) return false;
    const message_history_impl::in_use guard{history_};
    const document_pass pass;
    return element ? read_from(document_in{element}) : read_from(binary_in{*in});
}

template <class Archive>
bool model_impl::read_from(Archive from) {
    model_header header{.id = model_guid_};
    model_header::fields(header, from);
    if (!from.good()) return false;
    // Kept: these three are the stream's from here on, also when what follows is refused.
    set_model_id(header.id);
    restore_ids(header.last_object, header.last_udp);

    auto section = from.inner("meta_model");
    format_version version;
    if (!section.is_there() || !read_format_version(*this, section, version)) return false;
    read_user_defined_properties(*this, section, from);
    io_reference_manager references;
    if (!from.good() || !read_object(*this, from, references)) return false;
    resolve_refs_post_read(this, references);
    if (!pass_loading_hooks(version)) return false;
    clear_history();
    bool whole = !version.is_at_least(7, 2);
    try {
        whole = whole || read_history(from, version);
    } catch (...) {
        clear_history();
        clear_modified();
        throw;
    }
    if (!whole) clear_history();
    clear_modified();
    return whole;
}

bool model_impl::pass_loading_hooks(const format_version& version) {
    const document_pass of_the_hooks; // what they read and write is not of this document
    // Kept: a hook that refuses leaves its mark, and the objects stand.
    return run<post_model_load_semantic>([&](post_model_load_semantic& h) {
        return h.do_it(this, static_cast<u32>(version.version), static_cast<u32>(version.minor_version));
    });
}

template <class Archive>
bool model_impl::read_history(Archive from, const format_version& version) {
    if (!from.present("message_history_impl")) return from.good();
    auto section = from.inner("message_history_impl");
    history_counts counts;
    history_counts::fields(counts, section);
    restore_transaction_id(counts.last_transaction);
    history_.set_trans_executed(counts.executed);
    incoming_log log;
    read_log(section, log_target{log.messages, log.references, *this, log.deleted}, version, false);
    if (!section.good()) return false;
    resolve_refs_post_read(this, log.references);
    history_.adopt(log.messages);
    return true;
}

} // namespace kelm
