// The implementation of every object: overrides, the silent edits, and the state they work on.
// Each override is a line or two; what it does stands in the file of its family.
#pragma once

#include "framework/run_hooks.h"
#include "framework/values.h"
#include "message/silent_edit.h"
#include "object/back_links.h"
#include "object/child_list.h"
#include "object/object_links.h"
#include "object/value_store.h"

#include <kelm/subject.h>

#include <memory>

namespace kelm {

class model_impl;
class message_history_impl;
class object_pool;

/// An object of the graph.  Its model's pool owns it; made through framework_impl alone.
class object_impl : public silent_edit, public observer_impl, public subject_impl {
public:
    /// \param owner         null for a model and for a bare object
    /// \param no_semantics  leaves the hooks out; a reader attaches them later
    /// \param assign_id     takes 1 for a model, else the next id of the owner's model; false leaves 0
    object_impl(u32 type, object_impl* owner, bool no_semantics, bool assign_id);
    ~object_impl() override;
    static void* operator new(std::size_t size);
    static void operator delete(void* memory, std::size_t size) noexcept;

    // Values.
    bool set_property(u32 id, const abstract_property& value) override;
    bool delete_property(u32 id) override;
    bool has_property(u32 id) const override;
    bool defines_property(u32 id) const override { return values_.holds(id); }
    bool inherits_property(u32 id, bool deep) const override;
    value_ptr get_property(u32 id) const override;
    bool get_property_as_string(u32 id, std::string& out, value_ptr* value) const override;
    object* property_source(u32 id) const override;
    value_ptr get_own_property(u32 id) const override;
    void own_properties(value_map& out) const override;
    shared_ptr<value_map> own_properties() const override;
    void all_properties(value_map& out) const override;
    shared_ptr<value_map> all_properties() const override;
    bool refresh_property(u32 id, const abstract_property* new_value,
                          const abstract_property* old_value) override;

    // Elements.
    bool insert_vector_element(u32 id, const abstract_property& element, std::size_t position) override;
    bool append_vector_element(u32 id, const abstract_property& element) override;
    bool delete_vector_element(u32 id, std::size_t position) override;
    bool set_vector_element(u32 id, const abstract_property& element, std::size_t position) override;
    bool move_vector_element(u32 id, std::size_t from, std::size_t to) override;

    bool set_property_not_inheritable(u32 id, bool flag) override;
    bool is_property_not_inheritable(u32 id) const override;
    std::vector<u32> not_inheritable_properties() const override;

    // Children.
    bool add_child(object* child) override;
    bool remove_child(object* child) override;
    bool remove_children(filter* which) override;
    std::size_t children(std::vector<object*>& out, filter* leave_out, sorter* order) const override;
    std::size_t children(std::vector<object*>& out, sorter* order) const override;
    std::size_t children(std::vector<object*>& out, filter* leave_out) const override;
    std::size_t children(std::vector<object*>& out) const override;
    std::vector<object*> children(filter* leave_out, sorter* order) const override;
    std::vector<object*> children(sorter* order) const override;
    std::vector<object*> children(filter* leave_out) const override;
    std::vector<object*> children() const override;
    bool has_children() const override { return children_ && !children_->empty(); }
    bool has_children(filter* leave_out) const override { return child_count(leave_out) != 0; }
    std::size_t child_count(u32 type) const override;
    std::size_t child_count(filter* leave_out) const override;
    bool set_child_position(object* child, std::size_t position) override;
    std::size_t child_position(object* child) const override;
    object* child_at(u32 type, std::size_t index) const override;
    bool set_owner(object* new_owner) override;
    object* owner(u32 type) const override;

    // Bases.
    bool add_inherits_from(object* base) override;
    bool insert_inherits_from(object* base, std::size_t position) override;
    bool cancel_inherits_from(object* base) override;
    bool cancel_all_inherits_from() override;
    bool replace_inherits_from_at(object* base, std::size_t position) override;
    bool replace_inherits_from(object* new_base, object* old_base) override;
    bool inherits_from(object* base, bool recursive) const override;
    std::size_t inherits_from_list(std::vector<object*>& out, u32 type) const override;
    std::vector<object*> inherits_from_list(u32 type) const override;
    std::size_t inherits_from_list(std::vector<object*>& out) const override;
    bool set_inherits_from_position(object* base, std::size_t position) override;
    std::size_t inherits_from_position(object* base) const override;
    object* inherits_from_at(std::size_t position) const override;

    // Hooks, identity, references, observers.
    bool semantics_of_kind(int kind, std::vector<shared_ptr<semantic>>& out) const override;
    kelm::semantic* find_semantic(u32 id) const override;
    u32 type() const override { return type_id_; }
    u32 id() const override { return object_id_; }
    u32 state() const override { return object_state_; }
    kelm::model* model() const override;
    std::vector<object*> referencing_objects() const override;
    std::vector<object*> inheritors() const override;
    std::vector<object*> referenced_objects() const override;
    std::vector<u32> referencing_property_ids(object* target) const override;
    bool attach(observer* who) override;
    bool detach_object(object* who) override;
    bool detach(observer* who) override;
    std::vector<subject*> subjects() const override { return observer_impl::subjects(); }
    std::vector<observer*> observers() const override { return subject_impl::observers(); }
    bool update(subject* from, message* what) override;
    bool post_read() override { return true; }
    bool write(std::ostream* out, void* element) const override;

    // Silent edits.
    abstract_property* own_value(u32 id) const override;
    std::unique_ptr<abstract_property> exchange_value(u32 id,
                                                      std::unique_ptr<abstract_property>& value) override;
    std::unique_ptr<abstract_property> take_value(u32 id) override;
    void keep_lost_value(std::unique_ptr<abstract_property> value) override;
    void exchange_element(u32 id, std::size_t position, std::unique_ptr<abstract_property>& element) override;
    void insert_element(u32 id, std::size_t position, std::unique_ptr<abstract_property>& element) override;
    std::unique_ptr<abstract_property> take_element(u32 id, std::size_t position,
                                                    const abstract_property* wanted) override;
    void move_element(u32 id, std::size_t from, std::size_t to) override;
    void mark_not_inheritable(u32 id, bool flag) override;
    void insert_child(object& child, std::size_t position) override;
    void take_child(object& child) override;
    void move_child(object& child, std::size_t position) override;
    void set_owner_field(object* owner) override;
    void insert_base(object& base, std::size_t position) override;
    void take_base(object& base, std::size_t position) override;
    void exchange_base(object& base, object& former, std::size_t position) override;
    void move_base(object& base, std::size_t position) override;
    inherited_values inherited_now() const override;
    bool tell_inherited_changes(const inherited_values& before, bool with_deletes, bool first_run) override;
    void attach_silently(observer& who, u32 id) override;
    void detach_silently(observer& who, u32 id) override;
    void set_state(u32 state) override { object_state_ = state & 3; }
    void enter_id_map() override;
    void leave_id_map() override;
    void destroy() override;
    subject& as_subject() override { return *this; }
    bool pass_to_inheritors(message_impl& said, u32 id) override;

    // For the mutators and the rest of this folder.
    model_impl* owning_model() const { return model_; }
    object_impl* owner_object() const { return owner_object_; }
    const semantic_table* semantics() const { return semantic_table_; }
    bool is_deleted() const { return object_state_ == state::deleted; }
    /// A deleted object that is changed all the same is named by a message newer than that of its deletion.
    void keep_if_deleted() {
        if (is_deleted()) stays_ = true;
    }
    template <class Hook>
    bool has_hooks() const {
        return semantic_table_ && semantic_table_->of<Hook>();
    }
    template <class Hook, class Call>
    bool run(Call&& call) {
        return run_hooks<Hook>(semantic_table_, static_cast<Call&&>(call));
    }
    /// The same for hooks that are given a clone of an old value, which is made only when there are any.
    template <class Hook, class Call>
    bool run_with_clone(const abstract_property* old, Call&& call) {
        if (!has_hooks<Hook>()) return true;
        const value_ptr copy = shared_clone(old);
        return run_hooks<Hook>(semantic_table_, [&](Hook& h) { return call(h, copy); });
    }
    /// Rolls the open level back.  \returns false
    bool refuse();
    /// The object that hooks of reads are given: they may change what they like, also where the question was const.
    object* face_for_hooks() const { return const_cast<object_impl*>(this); }

    const value_store& values() const { return values_; }
    const child_list* child_objects() const { return children_.get(); }
    child_list& made_children();
    const object_links& links() const { return links_ ? *links_ : object_links::none; }
    std::vector<u32>& made_marks();
    object_links& made_links() {
        if (!links_) links_ = std::make_unique<object_links>();
        return *links_;
    }
    const std::vector<object_impl*>* bases() const { return links().inherits_from.get(); }
    const back_links* inheritor_links() const { return links().inheritors.get(); }
    const back_links* references_to_this() const { return links().referencing.get(); }
    const std::set<u32>* observer_ids() const { return links().observer_ids.get(); }
    meta_object* meta() const;
    bool may_own(const object_impl& child) const;
    /// \returns whether `child` may be below nobody, or owns this, at any distance, or is this
    bool closes_circle(const object_impl& child) const;
    /// \returns whether the list of children of some object holds this one
    bool is_listed() const { return is_listed_; }
    /// \returns whether `base` can be put into the list of bases: it is another object of this model that is not in
    ///          it, and no circle would close
    bool may_inherit_from(const object_impl& base) const;

    // For a reader: a stream may have long lists, and name one thing many times.
    /// Adds those that can be put there, in order; null stands for none.
    /// \param may_close_circles  false when the reader knows that none does
    void append_bases(const std::vector<object_impl*>& bases, bool may_close_circles);
    bool has_inheritors() const { return links().inheritors != nullptr; }
    /// Marks properties that are not marked yet, in order.
    void mark_not_inheritable(const std::vector<u32>& ids);

    /// The name that the object keeps, see cache_names(); null until it has been given one.
    const std::string* cached_name() const { return links().cached_name.get(); }
    void cache_name(const std::string& name);

    /// Enters this object in the back-list of a target that a reader has just put into one of its values.
    void link_read_reference(object_impl& target) {
        if (has_inner_lists()) target.stays_ = true;
        target.add_reference_from(*this);
    }

    /// Readers fill bare objects with these.
    void set_id(u32 id) { object_id_ = id; }
    void attach_semantics();
    /// \returns a new object of a plain type that `in` owns, in no tree and without an id; null for any other type
    static object_impl* make_stored(u32 type, model_impl& in);

    /// Breaks every link to other objects, on both sides, without a word; with `whole_model`, only those to other
    /// models, since all others go as well.
    void unlink(bool whole_model);

protected:
    void set_model(model_impl* in) { model_ = in; }

private:
    friend class object_pool; // keeps the object's place in it, and an owner as long as it is named
    void add_reference_from(object_impl& holder);
    void drop_reference_from(object_impl& holder);
    void link_references(const abstract_property* value);
    void unlink_references(const abstract_property* value);
    void clear_references_to(const object_impl& gone);
    vector_property* own_vector(u32 id) const;
    /// For an element that is a list itself.
    static void keep_inner_targets(const abstract_property* element);
    bool has_inner_lists() const;
    void leave_list();
    void link_base(object_impl& base, std::size_t position);
    void unlink_bases(bool whole_model);
    void unlink_observers(bool whole_model);
    bool is_elsewhere(const object_impl& other, bool whole_model) const;

    object_impl* owner_object_ = nullptr;
    model_impl* model_ = nullptr;
    const semantic_table* semantic_table_ = nullptr; // merged, of the type, borrowed from its meta object
    u32 type_id_;
    u32 object_id_ = 0;
    u32 pool_place_ = 0;
    u32 named_as_owner_ : 27 = 0; // by how many objects, in its list or not
    u32 stays_ : 1 =
        false; // in memory as long as the model, since something names it that no back-list knows
    u32 object_state_ : 2 = state::normal;
    u32 is_listed_ : 1 = false;
    u32 is_condemned_ : 1 = false; // goes with the last object that names it as its owner
    value_store values_;
    // Made when first needed.
    std::unique_ptr<child_list> children_;
    std::unique_ptr<object_links> links_;
};

inline object_impl* impl_of(object* what) { return static_cast<object_impl*>(what); }
inline const object_impl* impl_of(const object* what) { return static_cast<const object_impl*>(what); }

} // namespace kelm
