// Who is who in a history: objects by the steps that made them.
// The names themselves are step.h.
#pragma once

#include "testing/step.h"

#include <kelm/model.h>
#include <kelm/object.h>

#include <map>

namespace kelm::testing {

/// Names of the objects of one model.  An id is given once in the life of a model.
class object_names {
public:
    explicit object_names(kelm::model& of) : model_(of) {
        ids_[{}] = of.as_object()->id();
        names_[of.as_object()->id()] = {};
    }

    /// Names all objects that were made since `last_id` was the newest id.
    void enter_made(u32 step, u32 last_id) {
        for (u32 id = last_id + 1; id <= model_.last_object_id(); ++id) {
            const object_name name{step, id - last_id - 1};
            ids_[name] = id;
            names_[id] = name;
        }
    }
    /// \returns null when the object is not in the model now
    object* find(const object_name& name) const {
        const auto found = ids_.find(name);
        return found == ids_.end() ? nullptr : model_.find_object(found->second);
    }
    /// \returns the name; that of the root for an object that no step has made
    object_name name_of(const object& what) const {
        const auto found = names_.find(what.id());
        return found == names_.end() ? object_name{} : found->second;
    }
    kelm::model& model() const { return model_; }

private:
    kelm::model& model_;
    std::map<object_name, u32> ids_;
    std::map<u32, object_name> names_;
};

} // namespace kelm::testing
