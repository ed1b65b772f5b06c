// A model as one stream: its identity, the properties of its types, its tree, and its history.
// The sections are files of their own.
#include "object/model_impl.h"
#include "persistence/meta_section.h"
#include "persistence/object_record.h"
#include "util/bytes.h"

#include <istream>
#include <ostream>

namespace kelm {

bool object_impl::write(std::ostream* out, void* element) const {
    if (!out || element) return false;
    write_object(*this, *out);
    return !out->fail();
}

bool model_impl::write(std::ostream* out, bool with_history, u32 transaction_count, bool reset_modified,
                       void* element) {
    if (!out || element || history_.transaction_open()) return false;
    const u32 executed = history_.trans_executed();
    if (reset_modified) history_.set_trans_executed(0);
    if (write_stream(*out, with_history, transaction_count)) return true;
    history_.set_trans_executed(executed); // nothing was saved
    return false;
}

bool model_impl::save_as_new(std::ostream* out, bool with_history, u32 transaction_count, void* element) {
    if (!out || element || history_.transaction_open()) return false;
    generate_model_id();
    return write(out, with_history, transaction_count, true, element);
}

bool model_impl::write_stream(std::ostream& out, bool with_history, u32 transaction_count) {
    put_guid(out, model_guid_);
    put_u32(out, last_object_id());
    put_u32(out, last_udp_id());
    write_meta_section(*this, out);
    write_object(*this, out);
    history_.write_history(&out, with_history, transaction_count, nullptr);
    return !out.fail();
}

bool model_impl::read(std::istream* in, void* element) {
    if (!in || element) return false;
    const message_history_impl::in_use guard{history_};
    return read_stream(*in);
}

bool model_impl::read_stream(std::istream& in) {
    const GUID id = get_guid(in);
    const u32 last_object = get_u32(in);
    const u32 last_udp = get_u32(in);
    if (!in) return false;
    // Kept: these three are the stream's from here on, also when what follows is refused.
    set_model_id(id);
    restore_ids(last_object, last_udp);

    format_version version;
    if (!read_format_version(*this, in, version)) return false;
    read_user_defined_properties(*this, in);
    io_reference_manager references;
    if (!in || !read_object(*this, in, references)) return false;
    resolve_refs_post_read(this, references);
    // Kept: a hook that refuses leaves its mark, and the objects stand.
    if (!run<post_model_load_semantic>([&](post_model_load_semantic& h) {
            return h.do_it(this, static_cast<u32>(version.version), static_cast<u32>(version.minor_version));
        }))
        return false;
    clear_history();
    const bool whole = !version.is_at_least(7, 2) || read_history(in, version);
    clear_modified();
    return whole;
}

} // namespace kelm
