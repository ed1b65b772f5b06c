// The run-time description of types: their properties, the children they may have, their attributes and hooks.
// Objects hold a type id; what it means is looked up here.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <map>
#include <string>
#include <vector>

namespace kelm {

/// Ids that the library itself gives a meaning.
namespace type_id {
inline constexpr u32 model = 1;
inline constexpr u32 library = 2;
inline constexpr u32 generic_object = 3;
inline constexpr u32 user_defined_property = 49999;
inline constexpr u32 first_user_defined = 50000;
} // namespace type_id

namespace property_id {
inline constexpr u32 name = 1;
inline constexpr u32 definition = 2;
inline constexpr u32 udp_multiline_value = 49995;
inline constexpr u32 udp_id = 49996;
inline constexpr u32 udp_default_value_choices = 49997;
inline constexpr u32 udp_object_types = 49998;
inline constexpr u32 udp_default_value = 49999;
inline constexpr u32 first_user_defined = 50000;
} // namespace property_id

namespace attribute_id {
inline constexpr u32 name = 0;
inline constexpr u32 definition = 1;
inline constexpr u32 property_class = 2;
inline constexpr u32 generic_object = 3;
inline constexpr u32 internal = 4;
inline constexpr u32 non_persistent = 5;
inline constexpr u32 not_inheritable = 6;
inline constexpr u32 default_value = 7;
inline constexpr u32 default_value_choices = 8;
inline constexpr u32 must_exist = 9;
inline constexpr u32 copy_referenced_object = 10;
inline constexpr u32 alternative_name = 11;
inline constexpr u32 skip_in_summary = 12;
inline constexpr u32 skip_in_summary_unless_local = 13;
inline constexpr u32 skip_in_compare = 14;
inline constexpr u32 deprecated = 15;
inline constexpr u32 compare_if_incomplete = 16;
inline constexpr u32 multiline = 17;
inline constexpr u32 skip_in_compare_other = 19;
} // namespace attribute_id

/// A named, typed qualifier of meta things.  The framework makes and frees it.
class KELM_EXPORT meta_attribute {
public:
    virtual ~meta_attribute() = default;
    virtual u32 id() const = 0;
    virtual const std::string& name() const = 0;
    /// \returns borrowed; null when there is none.  It is what marking stores, never what reading falls back to.
    virtual const abstract_property* default_value() const = 0;
    /// \returns whether a value on a base is seen on what derives from it
    virtual bool is_inheritable() const = 0;
};

/// A property that objects of a type may carry.  Its type owns it.
class KELM_EXPORT meta_property {
public:
    virtual std::string name() const = 0;
    virtual std::string definition() const = 0;
    virtual u32 id() const = 0;
    /// \returns the data type code of its values; 0 when none is set
    virtual u32 property_class() const = 0;
    /// \returns a clone of the value, own or inherited; empty when there is none
    virtual value_ptr attribute_value(u32 attribute) const = 0;
    /// Stores a clone of `value`.
    virtual void set_attribute_value(u32 attribute, const abstract_property& value) = 0;
    /// \returns false when the value is not set on this very thing
    virtual bool remove_attribute(u32 attribute) = 0;
    /// \returns clones of all values, own and inherited, of the attributes that the framework knows
    virtual value_map attributes() const = 0;
    virtual void add_base(meta_property* base) = 0;
    virtual void remove_base(meta_property* base) = 0;
    virtual std::vector<meta_property*> bases() const = 0;
    /// \returns whether the id is 49995 or above
    virtual bool is_user_defined() const = 0;
    virtual ~meta_property() = default;
};

/// A child type that objects of a type may own; its id is the child type's.  Its type owns it.
class KELM_EXPORT meta_composition {
public:
    virtual std::string name() const = 0;
    virtual std::string alternative_name() const = 0;
    virtual std::string definition() const = 0;
    virtual u32 id() const = 0;
    /// \returns a clone of the value: own, inherited, or the child type's; empty when there is none
    virtual value_ptr attribute_value(u32 attribute) const = 0;
    virtual void set_attribute_value(u32 attribute, const abstract_property& value) = 0;
    virtual bool remove_attribute(u32 attribute) = 0;
    virtual value_map attributes() const = 0;
    virtual void add_base(meta_composition* base) = 0;
    virtual void remove_base(meta_composition* base) = 0;
    virtual std::vector<meta_composition*> bases() const = 0;
    /// \returns borrowed: the child type in the meta model that this composition is read through
    virtual meta_object* child_meta_object() const = 0;
    /// \returns whether the id is 50000 or above
    virtual bool is_user_defined() const = 0;
    virtual ~meta_composition() = default;
};

/// A type.  Its meta model owns it.  "All" means own and inherited; everything returned is borrowed.
class KELM_EXPORT meta_object {
public:
    virtual std::string name() const = 0;
    /// \returns attribute 11, or name()
    virtual std::string alternative_name() const = 0;
    virtual std::string definition() const = 0;
    virtual u32 id() const = 0;
    /// Marks a type that is only derived from, never instantiated.
    virtual void set_generic() = 0;
    virtual bool is_generic() const = 0;
    /// \returns whether this type is a direct or indirect base of `type`; no type is its own
    virtual bool is_base_of(u32 type) const = 0;

    /// \returns all, own first, in the order of declaration
    virtual std::vector<meta_property*> properties() const = 0;
    /// Declares a property; an inherited one of the same id is hidden by it.
    /// \returns null when the id is declared here already
    virtual meta_property* add_property(u32 id) = 0;
    virtual meta_property* add_property(u32 id, const std::string& name, u32 property_class,
                                        const std::string& definition) = 0;
    virtual meta_property* find_property(const std::string& name) const = 0;
    virtual meta_property* find_property(u32 id) const = 0;
    virtual bool has_property(const std::string& name) const = 0;
    virtual bool has_property(u32 id) const = 0;
    /// Declares a property that inherits the attributes of the present one of that id.
    /// \returns null when there is none, or it is declared here already
    virtual meta_property* override_property(u32 id) = 0;

    virtual std::vector<meta_composition*> compositions() const = 0;
    /// \returns null when the child type is unknown, or declared here already
    virtual meta_composition* add_composition(u32 child_type, const std::string& name,
                                              const std::string& definition) = 0;
    virtual meta_composition* add_composition(u32 child_type) = 0;
    virtual meta_composition* find_composition(const std::string& name) const = 0;
    virtual meta_composition* find_composition(u32 child_type) const = 0;
    virtual meta_composition* find_composition_by_alternative_name(const std::string& name) const = 0;
    virtual bool has_composition(const std::string& name) const = 0;
    virtual bool has_composition(u32 child_type) const = 0;

    // The same eight under a second name.
    virtual std::vector<meta_composition*> child_types() const = 0;
    virtual meta_composition* add_child_type(u32 child_type, const std::string& name,
                                             const std::string& definition) = 0;
    virtual meta_composition* add_child_type(u32 child_type) = 0;
    virtual meta_composition* find_child_type(const std::string& name) const = 0;
    virtual meta_composition* find_child_type(u32 child_type) const = 0;
    virtual meta_composition* find_child_type_by_alternative_name(const std::string& name) const = 0;
    virtual bool has_child_type(const std::string& name) const = 0;
    virtual bool has_child_type(u32 child_type) const = 0;

    virtual value_ptr attribute_value(u32 attribute) const = 0;
    virtual void set_attribute_value(u32 attribute, const abstract_property& value) = 0;
    virtual bool remove_attribute(u32 attribute) = 0;
    virtual value_map attributes() const = 0;

    /// Registers a hook for all objects of this type that are made later.
    /// \returns true and owns `hook` from then on; false, and the caller keeps it, when its kind is not 0 to 44 or
    ///          the type holds one of its kind and id already
    virtual bool add_semantic(semantic* hook) = 0;
    /// Replaces `out` by all hooks of the kind, inherited first.
    /// \returns false when there is none
    virtual bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const = 0;
    virtual semantic* find_semantic(u32 id) const = 0;

    virtual void add_base_type(meta_object* base) = 0;
    virtual void remove_base_type(meta_object* base) = 0;
    virtual bool has_base_type(u32 type, bool recursive) const = 0;
    virtual std::vector<meta_object*> base_types() const = 0;

    // Further ids that an application keeps with a type; the library gives them no meaning.
    virtual void add_related_type(u32 type) = 0;
    virtual std::vector<u32> related_types() const = 0;
    virtual bool has_related_type(u32 type) const = 0;

    // What this type keeps for itself and does not pass on to derived types.
    virtual void exclude_composition(u32 child_type) = 0;
    virtual void exclude_child_type(u32 child_type) = 0;
    virtual void exclude_property(u32 id) = 0;
    virtual void exclude_semantic(u32 id) = 0;
    virtual bool is_composition_excluded(u32 child_type) const = 0;
    virtual bool is_child_type_excluded(u32 child_type) const = 0;
    virtual bool is_property_excluded(u32 id) const = 0;
    virtual bool is_semantic_excluded(u32 id) const = 0;

    /// \returns whether the id is 50000 or above
    virtual bool is_user_defined() const = 0;
    virtual ~meta_object() = default;
};

/// All types of the process, or of one model.
class KELM_EXPORT meta_model {
public:
    virtual std::string name() const = 0;
    virtual std::string definition() const = 0;
    virtual u32 id() const = 0;
    /// \returns the types of this meta model itself, ascending by id
    virtual std::vector<meta_object*> meta_objects() const = 0;
    virtual meta_object* find_meta_object(const std::string& name) const = 0;
    virtual meta_object* find_meta_object(u32 id) const = 0;
    /// \returns the new type; null when the id is taken
    virtual meta_object* add_meta_object(u32 id, const std::string& name, const std::string& definition,
                                         const std::string& alternative_name) = 0;
    virtual void set_version(u32 version) = 0;
    virtual void set_minor_version(u32 version) = 0;
    virtual u32 version() const = 0;
    virtual u32 minor_version() const = 0;
    /// Frees every type of this meta model.
    virtual void clear() = 0;
    virtual ~meta_model() = default;
};

/// What an application derives from to describe its types; each operation is called once, in this order, by
/// framework::initialise.
class KELM_EXPORT meta_model_builder {
public:
    virtual ~meta_model_builder() = default;
    virtual void define_data_types() = 0;
    virtual void define_meta_attributes() = 0;
    virtual void define_meta_objects() = 0;
};

} // namespace kelm
