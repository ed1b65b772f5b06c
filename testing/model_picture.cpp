// Taking pictures of models.
// What is read off them is told by the laws.
#include "testing/model_picture.h"
#include "testing/canonical_text.h"

namespace kelm::testing {

u32 id_of(const object* what) { return what ? what->id() : 0; }

// Texts of random values are made of the letter x.
bool equals_nothing(const std::string& value) {
    return value.find("#null") != std::string::npos || value.find("nan") != std::string::npos;
}

model_picture picture_of(kelm::model& of) {
    model_picture out;
    std::vector<u32> ids;
    of.object_ids(ids);
    for (const u32 id : ids) {
        const object& each = *of.find_object(id);
        object_picture& at = out[id];
        at.type = each.type();
        for (const object* child : each.children()) at.children.push_back(id_of(child));
        for (const object* base : each.inherits_from_list(0)) at.bases.push_back(id_of(base));
        at.marks = each.not_inheritable_properties();
        value_map values;
        each.own_properties(values);
        for (const auto& [property, value] : values) at.own[property] = value_text(value.get());
        values.clear();
        each.all_properties(values);
        for (const auto& [property, value] : values) at.effective[property] = value_text(value.get());
    }
    return out;
}

} // namespace kelm::testing
