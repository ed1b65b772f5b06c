// Common mutations in a transaction of their own, and objects made with values.
// What each mutation does is told with the mutation.
#include "framework/framework_impl.h"
#include "object/model_impl.h"

#include <kelm/object_helpers.h>
#include <kelm/transaction.h>

namespace kelm {

namespace {

/// Runs `work` in a transaction of its own when none is open, else in the open one.  The result of `work` counts as
/// success when it converts to true; without it a transaction opened here is rolled back.
template <class Name, class Work>
auto in_transaction(kelm::model& in, Name name, Work work) {
    transaction_object guard;
    const bool opens = !static_cast<model_impl&>(in).log().transaction_open();
    if (opens) guard.open(&in, name());
    auto result = work();
    if (result && opens) guard.commit();
    return result;
}

std::string property_name_of(const object& what, u32 id) {
    return property_name(what.type(), id, what.model());
}

std::string type_name_in(kelm::model& in, u32 type) {
    const meta_object* const meta = in.meta_model()->find_meta_object(type);
    return meta ? meta->name() : std::string{};
}

/// The values belong to the call they are given to, whatever becomes of it; the caller finds null pointers.
class consumed_values {
public:
    explicit consumed_values(initial_values* values) : values_(values) {}
    consumed_values(const consumed_values&) = delete;
    consumed_values& operator=(const consumed_values&) = delete;
    ~consumed_values() {
        if (!values_) return;
        for (auto& [id, value] : *values_) {
            delete value;
            value = nullptr;
        }
    }

private:
    initial_values* values_;
};

} // namespace

bool framework_impl::set_property_transacted(object* what, u32 id, const abstract_property& value) {
    kelm::model* const in = model_of(what);
    if (!in) return false;
    return in_transaction(
        *in, [&] { return "Change " + object_type_as_string(what) + " " + property_name_of(*what, id); },
        [&] { return what->set_property(id, value); });
}

bool framework_impl::delete_property_transacted(object* what, u32 id) {
    kelm::model* const in = model_of(what);
    if (!in) return false;
    return in_transaction(
        *in, [&] { return "Delete " + object_type_as_string(what) + " " + property_name_of(*what, id); },
        [&] { return what->delete_property(id); });
}

object* framework_impl::create_object_with_properties(u32 type, object* owner, initial_values* values) {
    const consumed_values consumed{values};
    object* const made = create_object(type, owner);
    if (!made || !values) return made;
    for (const auto& [id, value] : *values)
        if (value && !made->set_property(id, *value)) return nullptr; // the object itself stays
    return made;
}

object* framework_impl::create_object_transacted(u32 type, object* owner, initial_values* values) {
    kelm::model* const in = model_of(owner);
    if (!in) {
        const consumed_values consumed{values};
        return nullptr;
    }
    return in_transaction(
        *in, [&] { return "Create " + type_name_in(*in, type); },
        [&] { return create_object_with_properties(type, owner, values); });
}

bool framework_impl::delete_object_transacted(object* what) {
    kelm::model* const in = model_of(what);
    if (!in) return false;
    return in_transaction(
        *in, [&] { return "Delete " + type_name_in(*in, what->type()); },
        [&] { return delete_object(what); });
}

} // namespace kelm
