// A definition object: what it says of a user-defined property, and what becomes of it in the model's types.
// When each of these is done is the business of udp_semantics.cpp.
#pragma once

#include <kelm/meta_model.h>
#include <kelm/object.h>

#include <memory>
#include <string>
#include <vector>

namespace kelm::udp {

/// \returns a whole number (int, unsigned or long) as an id; 0 for null and for any other kind
u32 id_in(const abstract_property* value);

/// \returns whether the list of types of the definition `what` holds `type`; false for null
bool is_object_type_of_udp(const object* what, u32 type);

/// \returns the id of the property that the definition `what` has made; 0 when there is none, and for null
u32 udp_property_id(const object* what);

/// \returns the type of `what` in its model; null when it lives in none, or the model does not know the type
meta_object* type_of(const object& what);

/// \returns whether `types`, the meta model of a model, owns the property.  It sees those of the application as
///          well, but they are every model's: none may change them.
bool is_own(const meta_property& which, const meta_model& types);

/// \returns a copy of `value` for an attribute, in which each reference is the text of its target: types know nothing of
///          objects, and outlive them
std::unique_ptr<abstract_property> attribute_copy(const abstract_property& value);

/// A property that a definition stands for, on one of its types.
struct meta_property_of_type {
    meta_object* type;
    meta_property* property;
};

/// A view of one definition object.  It keeps nothing of its own: each question reads the object as it is.
///
/// The types are changed through the model alone, so that each change is recorded.  An answer of false
/// refuses the change of the definition that brought it about.
class definition {
public:
    /// \param self  borrowed
    explicit definition(object& self) : self_(self) {}

    /// \returns whether it has a name and at least one type; until then nothing is made of it
    bool is_complete() const;
    std::string name() const;
    bool has_default_value() const;
    /// \returns a copy of its list of types, in order; 0 for an element that is no id
    std::vector<u32> object_types() const;
    /// \returns a copy of its choices; empty when it has none
    value_ptr choices() const;

    /// \param name  empty for the present name
    /// \returns on each of its types, in order, the model's own property of that name; types that have none are
    ///          left out, and an incomplete definition has none
    std::vector<meta_property_of_type> find(const std::string& name = {}) const;
    /// The same for the types of a list that it had before and no longer has, each type once.
    /// \param before  a former list of types; may be null
    std::vector<meta_property_of_type> find_left_out(const abstract_property* before) const;
    /// \returns whether it is complete and stands for nothing because the application has declared a property of
    ///          its name on every one of its types
    bool is_passed_over() const;

    /// Makes the property on each of its types that has none of its name; all get the same id, which the
    /// definition stores when it is new.  The definition is complete.
    /// \returns false when the definition did not take the id
    /// \throws  std::runtime_error when the model's ids are used up
    bool make();
    /// The same for one type.
    bool make_for(u32 type);

    /// Stores a value in the definition itself, as an ordinary recorded change.
    bool set(u32 property, const abstract_property& value);
    /// Sets an attribute on each of `those`.
    /// \returns false at the first failure
    bool set_attribute(const std::vector<meta_property_of_type>& those, u32 attribute,
                       const abstract_property& value);
    /// Takes `those` away from their types, with all values that objects have of them.
    /// \returns false at the first failure
    bool remove(const std::vector<meta_property_of_type>& those);
    /// The same for the property of its name on one type.
    /// \returns false also when that type has none, or has it from the application
    bool remove_from(u32 type);
    /// Hands its choices to the properties it stands for.
    bool pass_on_choices();

private:
    /// What the property is to be like, read once for all types.
    struct plan;

    /// \returns what has the name on a type, whoever owns it; nulls when there is none
    meta_property_of_type named(const std::string& name, u32 type) const;
    std::vector<meta_property_of_type> find(const std::string& name, const std::vector<u32>& types) const;
    plan read_plan() const;
    bool make_for(u32 type, plan& wanted);
    meta_object* type(u32 id) const;

    object& self_;
};

} // namespace kelm::udp
