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
              io_reference_manager* references, value_fixup_map* fixups, void* element, int version,
              int minor_version) override {
        if (!references || !fixups) return true;
        read_context from{earlier, model, *references, *fixups, {version, minor_version}};
        if (element) {
            const document_part part;
            read_fields(document_in{element}, from);
        } else if (in)
            read_fields(binary_in{*in}, from);
        return true;
    }
    bool write(std::ostream* out, const value_position_map& positions, void* element,
               bool for_replay) const override {
        write_context to{positions, for_replay, this->object()};
        if (element) {
            const document_part part;
            write_fields(document_out{element}, to);
        } else if (out)
            write_fields(binary_out{*out}, to);
        return true;
    }

private:
    template <class Form>
    void read_fields(const Form& form, read_context& from) {
        message_reader<Form> archive{form, from, *this};
        Derived::fields(static_cast<Derived&>(*this), archive);
    }
    template <class Form>
    void write_fields(const Form& form, write_context& to) const {
        message_writer<Form> archive{form, to};
        Derived::fields(static_cast<const Derived&>(*this), archive);
    }
};

} // namespace kelm
