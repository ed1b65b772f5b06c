// The kind that refers to an object: a name as text, an id in a stream.
// Who is referred to by whom is kept by objects, not by values.
#include "framework/property_members.h"
#include "util/bytes.h"
#include "util/text.h"

#include <kelm/framework.h>
#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/object_helpers.h>
#include <kelm/xml_helpers.h>

#include <istream>
#include <ostream>

namespace kelm {

template <>
struct value_rules<object*> {
    // Kept: by id, so that references into two models compare; and nothing equals a null reference, a second
    // null reference included.
    static bool same(const object* a, const object* b) { return a && b && a->id() == b->id(); }
    static bool same_elsewhere(const object*, const abstract_property&) { return false; }

    static void text(const object* target, std::string& out) { out = fast_unsafe_object_name(target); }

    /// Reads an id, and looks in the first open model only: a text knows of no other.
    static void parse(object*& target, const std::string& text) {
        target = nullptr;
        const std::vector<model*> models = framework::instance().models();
        if (models.empty()) return;
        target = models.front()->find_object(static_cast<u32>(parse_long(text)));
    }

    static void write(const object* target, std::ostream& out) {
        put_u32(out, target ? target->id() : npos32);
    }

    /// The target may not exist yet: whoever reads the whole fills the box from the record.
    static void read(property<object*>& box, std::istream& in, std::vector<reference_record>& references,
                     object* holder) {
        box.value = nullptr;
        const u32 id = get_u32(in);
        if (in) references.push_back({&box, id, holder});
    }

    /// A null reference has no text, and reads as the id 0, which nobody has.
    static void write_xml(const object* target, void* element, u32) {
        if (target) add_xml_text(element, static_cast<long long>(target->id()));
    }
    static void read_xml(property<object*>& box, void* element, u32,
                         std::vector<reference_record>& references, object* holder) {
        box.value = nullptr;
        unsigned long id = 0;
        get_xml_text(element, id);
        references.push_back({&box, static_cast<u32>(id), holder});
    }
};

template class KELM_EXPORT property<object*>;

} // namespace kelm
