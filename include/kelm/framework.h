// The process: start-up, the registry of values and attributes, and the making and deleting of objects.
// The one entry point of the library.
#pragma once

#include <kelm/export.h>
#include <kelm/guid.h>
#include <kelm/types.h>

#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace kelm {

/// Makes a new value of one kind.
using value_factory = owned<abstract_property*> (*)();

/// Values for a new object, consumed by the call they are given to: its pointers are null afterwards.
using initial_values = std::vector<std::pair<u32, abstract_property*>>;

/// The process-wide object.  It alone makes and deletes models and objects; what it hands out is borrowed
/// unless marked `owned`.  Everything is used from one thread.
class KELM_EXPORT framework {
public:
    static framework& instance();

    /// Registers the built-in data types, attributes and types, then calls the builder.  A second call does nothing.
    virtual void initialise(meta_model_builder& builder) = 0;
    /// Deletes every model, then clears the application meta model.  The process cannot be initialised again.
    virtual void shutdown() = 0;
    virtual meta_model* application_meta_model() = 0;

    virtual void add_meta_attribute(u32 id, const std::string& name, bool is_inheritable) = 0;
    /// Stores a clone of `value` as the default.
    virtual void add_meta_attribute_with_default(u32 id, const std::string& name,
                                                 const abstract_property& value, bool is_inheritable) = 0;
    virtual meta_attribute* find_meta_attribute(u32 id) = 0;
    /// Appends all ids, ascending.
    virtual void meta_attribute_ids(std::vector<u32>& out) = 0;

    /// Makes an object of `type` as the last child of its type of `owner`, or with type 1 and no owner a model.
    /// \returns null when a hook or observer refused (what earlier steps made is then left to the open
    ///          transaction's rollback), for an unknown or generic type, for type 2, for a plain type without an
    ///          owner that lives in a model, and for type 1 with an owner
    /// \throws  std::runtime_error when the model has used up its ids
    virtual object* create_object(u32 type, object* owner) = 0;
    /// Deletes an object with its subtree and every reference to it; on the object side of a model, closes the
    /// model.  A deleted object is kept, in state 3, by the history that can bring it back.
    /// \returns true also for an object that is being made or deleted, or is deleted; false for null, for an object
    ///          without an owner, when a hook or observer refused, and for a model in which a mutation is running
    virtual bool delete_object(object* what) = 0;
    /// Deletes several; one that goes with another is passed over.
    /// \returns false at the first refusal
    virtual bool delete_objects(const std::vector<object*>& objects) = 0;
    /// Makes a bare object for a reader: no message, no hooks, no owner.
    /// \returns null for an unknown or generic type, for type 2, and for a plain type with `assign_id`
    virtual object* instantiate_object(u32 type, kelm::model* in, bool assign_id) = 0;

    /// \returns a new value of the kind; null for an unknown code
    virtual owned<abstract_property*> create_value(u32 code) = 0;
    /// \returns the code of the value's kind; 0 when it is not registered
    virtual u32 data_type_of(const abstract_property* value) = 0;
    /// \returns the name; empty for an unknown code
    virtual std::string data_type_name(u32 code) = 0;
    /// Adds a kind of value; a code that is taken stays as it is.
    virtual void register_data_type(u32 code, const std::type_info& type, value_factory make,
                                    const std::string& name) = 0;

    /// Keeps a clone of `handler`.
    virtual void set_xml_handler(const qdxml& handler) = 0;
    /// \returns null until one is set
    virtual qdxml* xml_handler() = 0;

    /// \returns null for a null object
    virtual kelm::model* model_of(const object* what) = 0;
    /// \returns the object itself when it is of type 2, else the nearest owner of type 2; null when there is none
    virtual kelm::model* library_of(object* what) = 0;

    // Short forms: each runs in a transaction of its own when none is open, and joins an open one.
    virtual bool set_property_transacted(object* what, u32 id, const abstract_property& value) = 0;
    virtual bool delete_property_transacted(object* what, u32 id) = 0;
    /// create_object(), then sets the values in order until one is refused.  `values` may be null; they are freed
    /// whatever happens.
    /// \returns null when a value was refused; the object stays
    virtual object* create_object_with_properties(u32 type, object* owner, initial_values* values) = 0;
    virtual object* create_object_transacted(u32 type, object* owner, initial_values* values) = 0;
    virtual bool delete_object_transacted(object* what) = 0;

    virtual shared_ptr<compare> create_compare(object* left, object* right) = 0;
    virtual shared_ptr<compare> create_compare_with_options(object* left, object* right,
                                                            const meta_types_filter& filter) = 0;
    virtual shared_ptr<copier> create_copier(kelm::model* from) = 0;

    /// \returns the open models in the order of their making
    virtual std::vector<kelm::model*> models() const = 0;
    /// \returns the first with that id, or null
    virtual kelm::model* find_model(const GUID& id) const = 0;
    /// Takes a model out of the list and deletes nothing.
    virtual void remove_model(kelm::model* which) = 0;

    /// \returns whether code of a hook, or a mutation on behalf of another, is running
    virtual bool in_semantic() const = 0;
    virtual void set_in_semantic(bool running) = 0;

    /// \returns whether `what` is a user-defined property's definition that names `type`
    virtual bool is_object_type_of_udp(const object* what, u32 type) = 0;
    /// \returns the id of the property that the definition `what` has made; 0 when none
    virtual u32 udp_property_id(const object* what) = 0;

    /// Starts a new trace, or ends it.
    virtual void set_logging(bool on) = 0;
    virtual bool logging_enabled() const = 0;
    virtual kelm_logger* logger() = 0;
    /// Traces texts when logging is on.  Of two or three, the first is the format for the others.
    virtual void log(const char* a, const char* b, const char* c) = 0;
    virtual void log(const char* a, const char* b) = 0;
    virtual void log(const char* a) = 0;

    virtual ~framework() = default;
};

} // namespace kelm
