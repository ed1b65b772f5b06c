// The user-defined properties of a model in its stream.
// The model around them is model_stream.
#include "persistence/meta_section.h"

#include "meta/meta_object_base.h"
#include "meta/meta_property_impl.h"
#include "object/model_impl.h"
#include "util/bytes.h"
#include "util/scoped_mark.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace kelm {

namespace {

std::vector<meta_property*> user_defined_properties(const meta_object_base& type) {
    std::vector<meta_property*> found;
    std::ranges::copy_if(type.properties_ref(), std::back_inserter(found),
                         [](const meta_property* each) { return each->is_user_defined(); });
    return found;
}

/// Each hook is asked, whatever the one before has said, and the mark is as before.
void tell_of_newer_model(model_impl& into, const format_version& version) {
    const semantic_table* const table = into.semantics();
    const auto* const list = table ? table->of<read_newer_model_semantic>() : nullptr;
    if (!list) return;
    const scoped_mark mark{process().in_semantic};
    for (const auto& hook : std::vector{*list})
        static_cast<read_newer_model_semantic&>(*hook).do_it(static_cast<u32>(version.version),
                                                             static_cast<u32>(version.minor_version));
}

} // namespace

void write_meta_section(model_impl& of, std::ostream& out) {
    const meta_model_impl& types = of.types();
    put_u32(out, types.version());
    put_u32(out, types.minor_version());
    put_u32(out, static_cast<u32>(types.meta_objects_ref().size()));
    for (const meta_object* type : types.meta_objects_ref()) {
        const auto own = user_defined_properties(static_cast<const meta_object_base&>(*type));
        put_u32(out, type->id());
        put_u32(out, static_cast<u32>(own.size()));
        for (const meta_property* each : own) static_cast<const meta_property_impl*>(each)->write(out);
    }
}

bool read_format_version(model_impl& into, std::istream& in, format_version& version) {
    version.version = static_cast<int>(get_u32(in));
    version.minor_version = static_cast<int>(get_u32(in));
    if (!in) return false;
    const format_version known{static_cast<int>(into.types().version()),
                               static_cast<int>(into.types().minor_version())};
    if (!(version > known)) return true;
    tell_of_newer_model(into, version);
    return false;
}

void read_user_defined_properties(model_impl& into, std::istream& in) {
    for (u32 types = get_u32(in); types != 0 && in; --types) {
        const u32 id = get_u32(in);
        for (u32 left = get_u32(in); left != 0 && in; --left) {
            auto made = std::make_unique<meta_property_impl>();
            made->read(in);
            if (!in) return;
            if (auto* const type = into.types().own_or_proxy(id))
                type->add_existing_property(std::move(made));
        }
    }
}

} // namespace kelm
