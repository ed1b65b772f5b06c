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
/// \returns the value; its caller owns it
using value_factory = owned<abstract_property*> (*)();

/// Values for a new object, consumed by the call they are given to: its pointers are null afterwards.
using initial_values = std::vector<std::pair<u32, abstract_property*>>;

/// The process-wide object.
///
/// It alone makes and deletes models and objects.  What it hands out is borrowed unless marked `owned`:
/// objects as object.h tells, models until they are closed, attributes and the application meta model as long
/// as the process runs.  Everything is used from one thread.
class KELM_EXPORT framework {
public:
    /// \returns the one there is, made by the first call
    static framework& instance();

    /// Registers the built-in data types, attributes and types, then calls the builder.  A second call does
    /// nothing; one after a builder that threw tries again.
    virtual void initialise(meta_model_builder& builder) = 0;
    /// Deletes every model, then clears the application meta model.  The process cannot be initialised again.
    /// A model whose hooks refuse is closed all the same, unless a hook or observer of it is running.
    virtual void shutdown() = 0;
    /// \returns the types that all models share; without a type before initialise()
    virtual meta_model* application_meta_model() = 0;

    /// Registers an attribute without a default; another of that id is replaced, and stays where it is for
    /// who holds it.
    virtual void add_meta_attribute(u32 id, const std::string& name, bool is_inheritable) = 0;
    /// The same with a default, a clone of `value`.
    virtual void add_meta_attribute_with_default(u32 id, const std::string& name,
                                                 const abstract_property& value, bool is_inheritable) = 0;
    /// \returns null for an unknown id
    virtual meta_attribute* find_meta_attribute(u32 id) = 0;
    /// Appends all ids, ascending.
    virtual void meta_attribute_ids(std::vector<u32>& out) = 0;

    /// Makes an object of `type` as the last child of its type of `owner`, or with type 1 and no owner a model.
    ///
    /// Whether the owner's type may have such children is not asked.  What a hook or observer has rolled back
    /// without refusing is given in state 3.
    ///
    /// \param type   as the model of `owner` knows it
    /// \param owner  borrowed; null for a model
    /// \returns null when a hook or observer refused (what earlier steps made is then left to the open
    ///          transaction's rollback), for an unknown or generic type, for type 2, for a plain type without an
    ///          owner that lives in a model, for a deleted owner, and for type 1 with an owner
    /// \throws  std::runtime_error when the model has used up its ids
    /// Hooks:   obj_create_semantic; of the owner pre_ and post_add_child_semantic
    /// Message: obj_create_message, child_add_message.  A new model has no history
    /// Cost:    an object and its id, and that of object::add_child; a model costs a look at every type
    virtual object* create_object(u32 type, object* owner) = 0;
    /// Deletes an object with its subtree and every reference to it; on the object side of a model, closes
    /// the model.  A deleted object is kept, in state 3, by the history that can bring it back; what a model
    /// had is freed.
    ///
    /// \returns true also for an object that is being made or deleted, or is deleted; false for null, for an object
    ///          without an owner, when a hook or observer refused, and for a model in which a mutation is running
    /// Hooks:   obj_pre_delete_semantic, obj_delete_semantic, and those of each change on the way:
    ///          docs/mutation.md; for a model obj_pre_delete_semantic alone
    /// Message: those of docs/mutation.md, obj_delete_message last; for a model model_close_message
    /// Cost:    linear in the subtree, its values, its inheritors and what refers into it
    virtual bool delete_object(object* what) = 0;
    /// Deletes several; one that goes with another is passed over, and so is null.
    ///
    /// \returns false at the first refusal
    virtual bool delete_objects(const std::vector<object*>& objects) = 0;
    /// Makes a bare object for a reader: no message, no hooks, no owner.
    ///
    /// \param in         whose types count; null for those of the application
    /// \param assign_id  for a model: enters it under its id
    /// \returns null for an unknown or generic type, for type 2, and for a plain type with `assign_id`
    virtual object* instantiate_object(u32 type, kelm::model* in, bool assign_id) = 0;

    /// \returns a new value of the kind; null for an unknown code
    virtual owned<abstract_property*> create_value(u32 code) = 0;
    /// \returns the code of the value's kind; 0 when it is not registered, and for null
    virtual u32 data_type_of(const abstract_property* value) = 0;
    /// \returns the name; empty for an unknown code
    virtual std::string data_type_name(u32 code) = 0;
    /// Adds a kind of value; a code that is taken stays as it is.
    ///
    /// \param code  free are 9 to 1000 and those above 1003
    /// \param type  of the class, which derives from abstract_property
    /// \param make  makes a value of the class, which its caller owns
    /// \param name  for data_type_name()
    virtual void register_data_type(u32 code, const std::type_info& type, value_factory make,
                                    const std::string& name) = 0;

    /// Keeps a clone of `handler`, in the place of one that was set before.
    virtual void set_xml_handler(const qdxml& handler) = 0;
    /// \returns null until one is set
    virtual qdxml* xml_handler() = 0;

    /// \returns the model that the object lives in; null for a null or a bare object
    virtual kelm::model* model_of(const object* what) = 0;
    /// \returns the object itself when it is of type 2, else the nearest owner of type 2; null when there is none
    virtual kelm::model* library_of(object* what) = 0;

    // Short forms: each runs in a transaction of its own when none is open, and joins an open one.  One of
    // its own is closed when the work was done, and rolled back when not.  Each answers as the operation
    // does, and false or null for a null object, and for one in no model.

    /// object::set_property() in "Change ", the name of the type, a blank and that of the property.
    virtual bool set_property_transacted(object* what, u32 id, const abstract_property& value) = 0;
    /// object::delete_property() in "Delete ", the name of the type, a blank and that of the property.
    virtual bool delete_property_transacted(object* what, u32 id) = 0;
    /// create_object(), then sets the values in order until one is refused; in no transaction of its own.
    ///
    /// \param values  null, or consumed whatever happens; null entries are passed over
    /// \returns null when a value was refused; the object stays
    /// \throws  as create_object()
    virtual object* create_object_with_properties(u32 type, object* owner, initial_values* values) = 0;
    /// create_object_with_properties() in "Create " and the name of the type.
    ///
    /// \throws  as create_object(); its own transaction is rolled back then
    virtual object* create_object_transacted(u32 type, object* owner, initial_values* values) = 0;
    /// delete_object() in "Delete " and the name of the type.
    virtual bool delete_object_transacted(object* what) = 0;

    /// Comparing is not there yet.
    ///
    /// \returns empty
    virtual shared_ptr<compare> create_compare(object* left, object* right) = 0;
    /// Comparing is not there yet.
    ///
    /// \returns empty
    virtual shared_ptr<compare> create_compare_with_options(object* left, object* right,
                                                            const meta_types_filter& filter) = 0;
    /// \param from  the model that objects will be copied from: its id is noted, and nothing else is kept of it
    /// \returns an empty snapshot; empty for null
    virtual shared_ptr<copier> create_copier(kelm::model* from) = 0;

    /// \returns the open models in the order of their making
    virtual std::vector<kelm::model*> models() const = 0;
    /// \returns the first with that id; null when there is none
    virtual kelm::model* find_model(const GUID& id) const = 0;
    /// Takes a model out of the list and deletes nothing: it is the caller's to delete then, by delete_object().
    virtual void remove_model(kelm::model* which) = 0;

    /// \returns whether code of a hook, or a mutation on behalf of another, is running: messages that are
    ///          made now are none of the user's own
    virtual bool in_semantic() const = 0;
    /// Sets the mark; whoever does puts it back.
    virtual void set_in_semantic(bool running) = 0;

    /// \returns whether `what` is a user-defined property's definition that names `type`; false for null
    virtual bool is_object_type_of_udp(const object* what, u32 type) = 0;
    /// \returns the id of the property that the definition `what` has made; 0 when none, and for null
    virtual u32 udp_property_id(const object* what) = 0;

    /// Starts a new trace in "kelm_logger.log" of the current directory, or ends it.
    virtual void set_logging(bool on) = 0;
    /// \returns whether a trace is written
    virtual bool logging_enabled() const = 0;
    /// \returns null when logging is off; good until set_logging()
    virtual kelm_logger* logger() = 0;
    /// Traces `b` and `c` by the format `a` when logging is on; a null is an empty text.
    virtual void log(const char* a, const char* b, const char* c) = 0;
    /// Traces `b` by the format `a` when logging is on; a null is an empty text.
    virtual void log(const char* a, const char* b) = 0;
    /// Traces `a` as it stands when logging is on; a null is an empty text.
    virtual void log(const char* a) = 0;

    virtual ~framework() = default;
};

} // namespace kelm
