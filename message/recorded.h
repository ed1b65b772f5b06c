// Reading and writing of messages that name their fields.
// What the verbs do with a field is told by the archives.
#pragma once

#include "message/archives.h"
#include "message/message_impl.h"

namespace kelm {

/// Supplies read() and write() from Derived::fields(self, archive), which names what the message stores, in stream
/// order, with the names of documents.  Self is const when writing.
template <class Derived, class Base = message_impl>
class recorded : public Base {
public:
    using Base::Base;

    bool read(std::istream* in, std::vector<message*>& earlier, kelm::model* model,
              io_reference_manager* references, value_fixup_map* fixups, void* /*element*/, int version,
              int minor_version) override {
        if (!in || !references || !fixups) return true;
        read_context from{*in, earlier, model, *references, *fixups, {version, minor_version}};
        binary_reader archive{from, *this};
        Derived::fields(static_cast<Derived&>(*this), archive);
        return true;
    }
    bool write(std::ostream* out, const value_position_map& positions, void* /*element*/,
               bool for_replay) const override {
        if (!out) return true;
        write_context to{*out, positions, for_replay, this->object()};
        binary_writer archive{to};
        Derived::fields(static_cast<const Derived&>(*this), archive);
        return true;
    }
};

} // namespace kelm
