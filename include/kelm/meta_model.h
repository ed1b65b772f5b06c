// The run-time description of types: their properties, the children they may have, their attributes and hooks.
// Objects hold a type id; what it means is looked up here.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <map>
#include <string>
#include <vector>

namespace kelm {

/// Ids of types that the library itself gives a meaning.
namespace type_id {
inline constexpr u32 model = 1;                     ///< the root of a tree: a model
inline constexpr u32 library = 2;                   ///< reserved: objects of it cannot be made
inline constexpr u32 generic_object = 3;            ///< the base of all types; none is made
inline constexpr u32 user_defined_property = 49999; ///< the definition of a property that a user adds
inline constexpr u32 first_user_defined = 50000;    ///< from here on types are user-defined
} // namespace type_id

/// Ids of properties that the library itself gives a meaning.  The five from 49995 on are those of the type
/// user_defined_property: docs/user_properties.md.
namespace property_id {
inline constexpr u32 name = 1;                          ///< text, of every type
inline constexpr u32 definition = 2;                    ///< text, of every type: what the object means
inline constexpr u32 udp_multiline_value = 49995;       ///< bool: editors offer more than one line
inline constexpr u32 udp_id = 49996;                    ///< int: the id of the property that was made
inline constexpr u32 udp_default_value_choices = 49997; ///< vector of texts: what editors offer
inline constexpr u32 udp_object_types = 49998;   ///< vector of numbers: the types that get the property
inline constexpr u32 udp_default_value = 49999;  ///< text: what an object without a value reads
inline constexpr u32 first_user_defined = 50000; ///< the first property that users add gets the next
} // namespace property_id

/// Ids of the built-in attributes.  One that is a mark counts when its value is true.
namespace attribute_id {
inline constexpr u32 name = 0;            ///< text, of every meta thing
inline constexpr u32 definition = 1;      ///< text, of every meta thing
inline constexpr u32 property_class = 2;  ///< number: the data_type of a property's values
inline constexpr u32 generic_object = 3;  ///< mark, for applications: set_generic() is what counts
inline constexpr u32 internal = 4;        ///< mark: not for users to see
inline constexpr u32 non_persistent = 5;  ///< mark: values are not stored, and deltas leave them out
inline constexpr u32 not_inheritable = 6; ///< mark: objects do not inherit the property
inline constexpr u32 default_value = 7;   ///< any value: of a user-defined property, what a read supplies
inline constexpr u32 default_value_choices = 8;   ///< vector: what editors offer
inline constexpr u32 must_exist = 9;              ///< mark: a paste deletes an object that it is missing on
inline constexpr u32 copy_referenced_object = 10; ///< mark: what the property refers to is copied along
inline constexpr u32 alternative_name = 11;       ///< text: another name for users
inline constexpr u32 skip_in_summary = 12;        ///< mark: deltas leave the property out
inline constexpr u32 skip_in_summary_unless_local = 13; ///< mark: deltas leave it out where it is inherited
inline constexpr u32 skip_in_compare = 14;              ///< mark: for comparing
inline constexpr u32 deprecated = 15;                   ///< mark: for comparing
inline constexpr u32 compare_if_incomplete = 16;        ///< mark: for comparing
inline constexpr u32 multiline = 17;                    ///< mark: editors offer more than one line
inline constexpr u32 skip_in_compare_other = 19;        ///< mark: for comparing
} // namespace attribute_id

/// A named, typed qualifier of meta things.  The framework makes and frees it.
class KELM_EXPORT meta_attribute {
public:
    virtual ~meta_attribute() = default;
    /// \returns one of attribute_id, or an application's own
    virtual u32 id() const = 0;
    /// \returns the name, good as long as the process
    virtual const std::string& name() const = 0;
    /// \returns borrowed; null when there is none.  It is what marking stores, never what reading falls back to.
    virtual const abstract_property* default_value() const = 0;
    /// \returns whether a value on a base is seen on what derives from it
    virtual bool is_inheritable() const = 0;
};

/// A property that objects of a type may carry.  Its type makes and owns it, and frees it when the type goes,
/// or when a user-defined one is removed.
class KELM_EXPORT meta_property {
public:
    /// \returns attribute 0; "No Name!" when it has none
    virtual std::string name() const = 0;
    /// \returns attribute 1; empty when it has none
    virtual std::string definition() const = 0;
    /// \returns the id, unique among the properties of a type and its bases, and not beyond
    virtual u32 id() const = 0;
    /// \returns the data type code of its values; 0 when none is set
    virtual u32 property_class() const = 0;
    /// \returns a clone of the value, own or inherited; empty when there is none
    virtual value_ptr attribute_value(u32 attribute) const = 0;
    /// Stores a clone of `value`.  What is set here on a type of the application concerns all models.
    virtual void set_attribute_value(u32 attribute, const abstract_property& value) = 0;
    /// \returns false when the value is not set on this very thing
    virtual bool remove_attribute(u32 attribute) = 0;
    /// \returns clones of all values, own and inherited, of the attributes that the framework knows
    virtual value_map attributes() const = 0;
    /// Has this property inherit attributes.  Null, itself and what derives from it do nothing.
    ///
    /// \param base  borrowed
    virtual void add_base(meta_property* base) = 0;
    /// Ends that.  Nothing happens for null and a stranger.
    virtual void remove_base(meta_property* base) = 0;
    /// \returns the properties that this one inherits attributes from, in the order of adding
    virtual std::vector<meta_property*> bases() const = 0;
    /// \returns whether the id is 49995 or above
    virtual bool is_user_defined() const = 0;
    virtual ~meta_property() = default;
};

/// A child type that objects of a type may own; its id is the child type's.  Its type makes and owns it.  In
/// a model's own types it goes when the application's type changes.
class KELM_EXPORT meta_composition {
public:
    /// \returns attribute 0; without one the child type's name
    virtual std::string name() const = 0;
    /// \returns attribute 11; without one name()
    virtual std::string alternative_name() const = 0;
    /// \returns attribute 1; without one the child type's definition
    virtual std::string definition() const = 0;
    /// \returns the id of the child type
    virtual u32 id() const = 0;
    /// \returns a clone of the value: own, inherited, or the child type's; empty when there is none
    virtual value_ptr attribute_value(u32 attribute) const = 0;
    /// Stores a clone of `value`.
    virtual void set_attribute_value(u32 attribute, const abstract_property& value) = 0;
    /// \returns false when the value is not set on this very thing
    virtual bool remove_attribute(u32 attribute) = 0;
    /// \returns clones of all values that attribute_value() gives, of the attributes that the framework knows
    virtual value_map attributes() const = 0;
    /// Has this composition inherit attributes.  Null, itself and what derives from it do nothing.
    ///
    /// \param base  borrowed
    virtual void add_base(meta_composition* base) = 0;
    /// Ends that.  Nothing happens for null and a stranger.
    virtual void remove_base(meta_composition* base) = 0;
    /// \returns the compositions that this one inherits attributes from, in the order of adding
    virtual std::vector<meta_composition*> bases() const = 0;
    /// \returns the child type in the meta model that this composition is read through, borrowed; null when
    ///          it is gone
    virtual meta_object* child_meta_object() const = 0;
    /// \returns whether the id is 50000 or above
    virtual bool is_user_defined() const = 0;
    virtual ~meta_composition() = default;
};

/// A type.
///
/// Its meta model makes and owns it.  "All" means own and inherited; everything returned is borrowed, and
/// lives as long as its type.  Types are declared in meta_model_builder, or at least before objects of them
/// are made.
///
/// Types of a model (model::meta_model) show those of the application.  They take properties of their own, but
/// nothing else: what would declare more answers null or false, or does nothing.
class KELM_EXPORT meta_object {
public:
    /// \returns attribute 0; "No Name!" when it has none
    virtual std::string name() const = 0;
    /// \returns attribute 11, or name()
    virtual std::string alternative_name() const = 0;
    /// \returns attribute 1; empty when it has none
    virtual std::string definition() const = 0;
    /// \returns the id, unique in the meta model
    virtual u32 id() const = 0;
    /// Marks a type that is only derived from, never instantiated.
    virtual void set_generic() = 0;
    /// \returns whether it is so marked; types derived from it are not
    virtual bool is_generic() const = 0;
    /// \returns whether this type is a direct or indirect base of `type`; no type is its own, and of an
    ///          unknown one none is
    virtual bool is_base_of(u32 type) const = 0;

    /// \returns all, own first, in the order of declaration
    virtual std::vector<meta_property*> properties() const = 0;
    /// Declares a property without attributes; an inherited one of the same id is hidden by it.
    ///
    /// \returns null when the id is declared here already
    virtual meta_property* add_property(u32 id) = 0;
    /// Declares a property with a name, a class (data_type) and, when it is not empty, a definition.
    ///
    /// \returns null when the id is declared here already
    virtual meta_property* add_property(u32 id, const std::string& name, u32 property_class,
                                        const std::string& definition) = 0;
    /// \returns the first of all with that name; null when there is none.  Names are compared byte by byte
    virtual meta_property* find_property(const std::string& name) const = 0;
    /// \returns the one of all with that id; null when there is none
    virtual meta_property* find_property(u32 id) const = 0;
    /// \returns whether find_property() finds one
    virtual bool has_property(const std::string& name) const = 0;
    /// \returns whether find_property() finds one
    virtual bool has_property(u32 id) const = 0;
    /// Declares a property that inherits the attributes of the present one of that id.
    ///
    /// \returns null when there is none, or it is declared here already
    virtual meta_property* override_property(u32 id) = 0;

    /// \returns all, own first, in the order of declaration; for a type of a model, ascending by id
    virtual std::vector<meta_composition*> compositions() const = 0;
    /// Lets objects of this type own those of another.
    ///
    /// \param child_type  a type of this meta model
    /// \param name        empty: the composition shows name and definition of the child type
    /// \param definition  counts only with a name, and then also when it is empty
    /// \returns null when the child type is unknown, or declared here already
    virtual meta_composition* add_composition(u32 child_type, const std::string& name,
                                              const std::string& definition) = 0;
    /// The same without a name.
    ///
    /// \returns as above
    virtual meta_composition* add_composition(u32 child_type) = 0;
    /// \returns the first of all with that name; null when there is none.  Names are compared byte by byte
    virtual meta_composition* find_composition(const std::string& name) const = 0;
    /// \returns the one of all for that type; null when there is none
    virtual meta_composition* find_composition(u32 child_type) const = 0;
    /// \returns the first of all with that alternative name; null when there is none
    virtual meta_composition* find_composition_by_alternative_name(const std::string& name) const = 0;
    /// \returns whether find_composition() finds one
    virtual bool has_composition(const std::string& name) const = 0;
    /// \returns whether find_composition() finds one
    virtual bool has_composition(u32 child_type) const = 0;

    /// @{ The same eight under a second name: as the operation with "composition" in the place of
    /// "child_type", which for this one is compositions().
    virtual std::vector<meta_composition*> child_types() const = 0;
    virtual meta_composition* add_child_type(u32 child_type, const std::string& name,
                                             const std::string& definition) = 0;
    virtual meta_composition* add_child_type(u32 child_type) = 0;
    virtual meta_composition* find_child_type(const std::string& name) const = 0;
    virtual meta_composition* find_child_type(u32 child_type) const = 0;
    virtual meta_composition* find_child_type_by_alternative_name(const std::string& name) const = 0;
    virtual bool has_child_type(const std::string& name) const = 0;
    virtual bool has_child_type(u32 child_type) const = 0;
    /// @}

    /// \returns a clone of the value, own or inherited; empty when there is none.  Not every attribute is inherited
    ///          (meta_attribute::is_inheritable)
    virtual value_ptr attribute_value(u32 attribute) const = 0;
    /// Stores a clone of `value`.
    virtual void set_attribute_value(u32 attribute, const abstract_property& value) = 0;
    /// \returns false when the value is not set on this very thing
    virtual bool remove_attribute(u32 attribute) = 0;
    /// \returns clones of all values, own and inherited, of the attributes that the framework knows
    virtual value_map attributes() const = 0;

    /// Registers a hook for all objects of this type, and of types derived from it, that are made later.
    ///
    /// \param hook  on the heap
    /// \returns true and owns `hook` from then on; false, and the caller keeps it, for null, when its kind is
    ///          not 0 to 44, when the type holds one of its kind and id already, and on a type of a model
    virtual bool add_semantic(semantic* hook) = 0;
    /// Gives the hooks of a kind.
    ///
    /// \param kind  0 to 44; there is none of another
    /// \param out   replaced by all hooks of the kind, inherited first.  Where two have one id the base's stays
    /// \returns false when there is none
    virtual bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const = 0;
    /// \returns the hook with that id, own or inherited, of the lowest kind; null when there is none
    virtual semantic* find_semantic(u32 id) const = 0;

    /// Derives this type from another of the same meta model.  Null, itself and what derives from it do nothing.
    virtual void add_base_type(meta_object* base) = 0;
    /// Ends that.  Nothing happens for null and a stranger.
    virtual void remove_base_type(meta_object* base) = 0;
    /// \param recursive  also looks at the bases of bases
    /// \returns whether the type of that id is a base
    virtual bool has_base_type(u32 type, bool recursive) const = 0;
    /// \returns the direct bases in the order of adding
    virtual std::vector<meta_object*> base_types() const = 0;

    // Further ids that an application keeps with a type; the library gives them no meaning.

    /// Keeps an id, once.
    virtual void add_related_type(u32 type) = 0;
    /// \returns all, own and inherited, ascending
    virtual std::vector<u32> related_types() const = 0;
    /// \returns whether it is among all
    virtual bool has_related_type(u32 type) const = 0;

    // What this type keeps for itself and does not pass on to derived types.  The questions are about this
    // very type.

    /// Keeps a composition from derived types.
    virtual void exclude_composition(u32 child_type) = 0;
    /// The same as exclude_composition().
    virtual void exclude_child_type(u32 child_type) = 0;
    /// Keeps a property from derived types.
    virtual void exclude_property(u32 id) = 0;
    /// Keeps the hooks of an id, of all kinds, from derived types.
    virtual void exclude_semantic(u32 id) = 0;
    /// \returns whether exclude_composition() has been called for it
    virtual bool is_composition_excluded(u32 child_type) const = 0;
    /// \returns the same as is_composition_excluded()
    virtual bool is_child_type_excluded(u32 child_type) const = 0;
    /// \returns whether exclude_property() has been called for it
    virtual bool is_property_excluded(u32 id) const = 0;
    /// \returns whether exclude_semantic() has been called for it
    virtual bool is_semantic_excluded(u32 id) const = 0;

    /// \returns whether the id is 50000 or above
    virtual bool is_user_defined() const = 0;
    virtual ~meta_object() = default;
};

/// All types of the process, or of one model.
///
/// The framework owns that of the application, each model its own, which shows what the application had when
/// the model was made.
class KELM_EXPORT meta_model {
public:
    /// \returns "Application Meta Model" or "Instance Meta Model"
    virtual std::string name() const = 0;
    /// \returns an empty text
    virtual std::string definition() const = 0;
    /// \returns 0 for the application's, 1 for a model's
    virtual u32 id() const = 0;
    /// \returns the types of this meta model itself, ascending by id
    virtual std::vector<meta_object*> meta_objects() const = 0;
    /// \returns the first type with that name, compared byte by byte; null when there is none
    virtual meta_object* find_meta_object(const std::string& name) const = 0;
    /// \returns the type with that id; null when there is none.  A model asks the application for what it
    ///          does not show
    virtual meta_object* find_meta_object(u32 id) const = 0;
    /// Adds a type without a base.
    ///
    /// \param id                below 50000, or it counts as user-defined
    /// \param name              of the type
    /// \param definition        may be empty
    /// \param alternative_name  empty for none
    /// \returns the new type; null when the id is taken
    virtual meta_object* add_meta_object(u32 id, const std::string& name, const std::string& definition,
                                         const std::string& alternative_name) = 0;
    /// Sets the version that models are stored with, which have it from when they were made.
    virtual void set_version(u32 version) = 0;
    /// Sets what follows the point in it.
    virtual void set_minor_version(u32 version) = 0;
    /// \returns 0 until it is set
    virtual u32 version() const = 0;
    /// \returns 0 until it is set
    virtual u32 minor_version() const = 0;
    /// Frees every type of this meta model.
    virtual void clear() = 0;
    virtual ~meta_model() = default;
};

/// What an application derives from to describe its types; each operation is called once, in this order, by
/// framework::initialise, when the built-in types are there.  What one throws passes through it.
class KELM_EXPORT meta_model_builder {
public:
    virtual ~meta_model_builder() = default;
    /// For framework::register_data_type.
    virtual void define_data_types() = 0;
    /// For framework::add_meta_attribute.
    virtual void define_meta_attributes() = 0;
    /// For the types of framework::application_meta_model, their properties, compositions and hooks.
    virtual void define_meta_objects() = 0;
};

} // namespace kelm
