// Copy on write, and the compositions of a model's types.
// All other reads lead to the target, in the header.
#include "meta/meta_object_proxy.h"

#include <algorithm>
#include <utility>

namespace kelm {

meta_object_proxy::meta_object_proxy(meta_object_impl& target, kelm::meta_model& in)
    : target_(&target), meta_model_(&in) {
    target.attach(this);
}

meta_object_proxy::~meta_object_proxy() { meta_base::leave_subjects(*this); }

// The copy derives from the application's type, so that all that it does not declare is found there. It gets the
// attributes of that type once more, since some of them do not pass from a base.
// Kept: it is a derived type like any other, so what the application's type keeps from its derived types this
// model loses with the copy. The lists of exclusions do not come along.
meta_object_impl& meta_object_proxy::own_target() {
    if (own_) return *own_;
    auto made = std::make_unique<meta_object_impl>(target_->id(), meta_model_);
    made->describe(target_->name(), target_->definition());
    made->copy_marks(*target_);
    made->add_base_type(target_);
    made->attach(this); // the last that may fail
    target_->detach(this);
    own_ = std::move(made);
    target_ = own_.get();
    compositions_.clear();
    return *own_;
}

const std::vector<meta_composition*>& meta_object_proxy::compositions_ref() const {
    if (!compositions_.in_order().empty()) return compositions_.in_order();
    std::vector<meta_composition*> shown = target_->compositions();
    std::ranges::sort(shown, {}, &meta_composition::id);
    declarations<meta_composition> all; // put aside: a list that is not empty is taken for complete
    for (meta_composition* original : shown) {
        auto made = std::make_unique<meta_composition_impl>(original->id(), meta_model_);
        made->add_base(original);
        all.add(std::move(made));
    }
    compositions_ = std::move(all);
    return compositions_.in_order();
}

meta_composition* meta_object_proxy::find_composition(const std::string& name) const {
    return find_named(compositions_ref(), name);
}

meta_composition* meta_object_proxy::find_composition(u32 child_type) const {
    compositions_ref();
    return compositions_.find(child_type);
}

meta_composition* meta_object_proxy::find_composition_by_alternative_name(const std::string& name) const {
    return find_alternatively_named(compositions_ref(), name);
}

bool meta_object_proxy::update(subject*, message*) {
    compositions_.clear();
    return true;
}

} // namespace kelm
