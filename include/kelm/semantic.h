// Hooks: what an application runs before and after every mutation, read and model event; a line a kind.
// Where hooks are registered is meta_model.h; what a refusal does is told with each operation.
#pragma once

#include <kelm/export.h>
#include <kelm/types.h>

#include <string>
#include <type_traits>

namespace kelm {

/// A hook.
///
/// Derive from the class of a kind below, supply id() and do_it(), and register a new one with
/// meta_object::add_semantic, which owns it from then on.  docs/hooks.md tells when each kind runs.  From
/// inside one, every object may be read and changed; the model cannot be closed.  What a hook throws passes
/// through the operation that runs it: what was done until then stays, for the transaction's guard to take
/// back.
class KELM_EXPORT semantic {
public:
    virtual ~semantic() = default;
    /// \returns the kind, 0 to 44, fixed by the class
    virtual int type() const = 0;
    /// \returns the identity of this hook: a type holds one of an id for each kind.  2 to 8 are the library's own.
    virtual u32 id() const = 0;

protected:
    semantic() = default;
    semantic(const semantic&) = default;
    semantic& operator=(const semantic&) = default;
};

/// The class of one kind: a fixed number, and do_it() with the arguments of that kind.  False refuses.
template <int Kind, class... Arguments>
class semantic_of : public semantic {
public:
    static constexpr int kind = Kind; ///< the number of the kind
    /// \returns that number
    int type() const final { return Kind; }
    /// The hook itself.  Its arguments are borrowed for the call.
    ///
    /// \returns false to refuse: what that does is told with each operation
    virtual bool do_it(Arguments... arguments) = 0;
};

// In the arguments the first object is the one whose type holds the hook; "old" is a clone of the old value, or
// empty; "origin" is the object on which the operation was called, which differs when the hook runs on an
// inheritor, and is null for a refresh.  Positions are those before the change.

/// A value that a hook is told of: borrowed for the call.
using given_value = const abstract_property&;

/// (object, subject, message)
class update_semantic : public semantic_of<0, object*, subject*, message*> {};
/// (object)
class obj_create_semantic : public semantic_of<1, object*> {};
/// (object)
class obj_delete_semantic : public semantic_of<2, object*> {};
/// (object)
class obj_pre_delete_semantic : public semantic_of<3, object*> {};
/// (object, id)
class pre_prop_get_semantic : public semantic_of<4, object*, u32> {};
/// (object, id, value): the value may be changed in place, or replaced by a new box of the hook's own
class post_prop_get_semantic : public semantic_of<5, object*, u32, abstract_property*&> {};
/// (object, id, text, value)
class post_prop_get_as_string_semantic : public semantic_of<6, object*, u32, std::string&, value_ptr> {};
/// (object, id, new value, origin)
class pre_prop_set_semantic : public semantic_of<7, object*, u32, given_value, object*> {};
/// (object, id, new value, old, origin, source object of the old value)
class post_prop_set_semantic : public semantic_of<8, object*, u32, given_value, value_ptr, object*, object*> {
};
/// (object, id, new element, position, origin)
class pre_prop_set_vecprop_semantic : public semantic_of<9, object*, u32, given_value, std::size_t, object*> {
};
/// (object, id, new element, position, old, origin)
class post_prop_set_vecprop_semantic
    : public semantic_of<10, object*, u32, given_value, std::size_t, value_ptr, object*> {};
/// (object, id, element, position, origin)
class pre_prop_insert_vecprop_semantic
    : public semantic_of<11, object*, u32, given_value, std::size_t, object*> {};
/// (object, id, element, position, origin)
class post_prop_insert_vecprop_semantic
    : public semantic_of<12, object*, u32, given_value, std::size_t, object*> {};
/// (object, id, from, to, origin)
class pre_prop_change_vecprop_elem_order_semantic
    : public semantic_of<13, object*, u32, std::size_t, std::size_t, object*> {};
/// (object, id, from, to, origin)
class post_prop_change_vecprop_elem_order_semantic
    : public semantic_of<14, object*, u32, std::size_t, std::size_t, object*> {};
/// (object, id, origin)
class pre_prop_delete_semantic : public semantic_of<15, object*, u32, object*> {};
/// (object, id, old, origin)
class post_prop_delete_semantic : public semantic_of<16, object*, u32, value_ptr, object*> {};
/// (object, id, position, origin)
class pre_prop_delete_vecprop_semantic : public semantic_of<17, object*, u32, std::size_t, object*> {};
/// (object, id, position, old, origin)
class post_prop_delete_vecprop_semantic
    : public semantic_of<18, object*, u32, std::size_t, value_ptr, object*> {};
/// (object, id, flag, origin)
class pre_prop_set_not_inheritable_semantic : public semantic_of<19, object*, u32, bool, object*> {};
/// (object, id, old, flag, origin)
class post_prop_set_not_inheritable_semantic
    : public semantic_of<20, object*, u32, value_ptr, bool, object*> {};
/// (object, child)
class pre_add_child_semantic : public semantic_of<21, object*, object*> {};
/// (object, child)
class post_add_child_semantic : public semantic_of<22, object*, object*> {};
/// (object, child)
class pre_remove_child_semantic : public semantic_of<23, object*, object*> {};
/// (object, child)
class post_remove_child_semantic : public semantic_of<24, object*, object*> {};
/// (object, child, position)
class pre_set_child_order_semantic : public semantic_of<25, object*, object*, std::size_t> {};
/// (object, child, position, old position)
class post_set_child_order_semantic : public semantic_of<26, object*, object*, std::size_t, std::size_t> {};
/// (object)
class pre_children_get_semantic : public semantic_of<27, object*> {};
/// (object)
class post_children_get_semantic : public semantic_of<28, object*> {};
/// (object, base)
class pre_add_inherits_from_semantic : public semantic_of<29, object*, object*> {};
/// (object, base)
class post_add_inherits_from_semantic : public semantic_of<30, object*, object*> {};
/// (object, base)
class pre_cancel_inherits_from_semantic : public semantic_of<31, object*, object*> {};
/// (object, base)
class post_cancel_inherits_from_semantic : public semantic_of<32, object*, object*> {};
/// (object, new base, old base)
class pre_replace_inherits_from_semantic : public semantic_of<33, object*, object*, object*> {};
/// (object, new base, old base)
class post_replace_inherits_from_semantic : public semantic_of<34, object*, object*, object*> {};
/// (object, base, position)
class pre_insert_inherits_from_semantic : public semantic_of<35, object*, object*, std::size_t> {};
/// (object, base, position)
class post_insert_inherits_from_semantic : public semantic_of<36, object*, object*, std::size_t> {};
/// (object, base, position)
class pre_set_inherits_from_order_semantic : public semantic_of<37, object*, object*, std::size_t> {};
/// (object, base, position, old position)
class post_set_inherits_from_order_semantic
    : public semantic_of<38, object*, object*, std::size_t, std::size_t> {};
/// (object, new owner)
class pre_set_owner_semantic : public semantic_of<39, object*, object*> {};
/// (object, new owner, old owner)
class post_set_owner_semantic : public semantic_of<40, object*, object*, object*> {};
/// (model, major version, minor version of what was read)
class post_model_load_semantic : public semantic_of<41, kelm::model*, u32, u32> {};
/// (model)
class post_end_transaction_semantic : public semantic_of<42, kelm::model*> {};
/// For the application alone: the library never calls it, so what an application derives from it says for
/// itself which arguments its do_it() takes.
class validate_semantic : public semantic {
public:
    static constexpr int kind = 43; ///< the number of the kind
    /// \returns that number
    int type() const final { return kind; }
};
/// (major version, minor version of the stream)
class read_newer_model_semantic : public semantic_of<44, u32, u32> {};

/// The kinds in the order of their numbers.
template <class... Kinds>
struct kind_list {
    static constexpr int size = sizeof...(Kinds); ///< how many kinds there are
    /// \returns whether each kind stands where its number says
    static constexpr bool in_order() {
        int at = 0;
        return ((Kinds::kind == at++) && ...);
    }
};

/// All kinds of hooks, 0 to 44.
using all_semantics = kind_list<
    update_semantic, obj_create_semantic, obj_delete_semantic, obj_pre_delete_semantic, pre_prop_get_semantic,
    post_prop_get_semantic, post_prop_get_as_string_semantic, pre_prop_set_semantic, post_prop_set_semantic,
    pre_prop_set_vecprop_semantic, post_prop_set_vecprop_semantic, pre_prop_insert_vecprop_semantic,
    post_prop_insert_vecprop_semantic, pre_prop_change_vecprop_elem_order_semantic,
    post_prop_change_vecprop_elem_order_semantic, pre_prop_delete_semantic, post_prop_delete_semantic,
    pre_prop_delete_vecprop_semantic, post_prop_delete_vecprop_semantic,
    pre_prop_set_not_inheritable_semantic, post_prop_set_not_inheritable_semantic, pre_add_child_semantic,
    post_add_child_semantic, pre_remove_child_semantic, post_remove_child_semantic,
    pre_set_child_order_semantic, post_set_child_order_semantic, pre_children_get_semantic,
    post_children_get_semantic, pre_add_inherits_from_semantic, post_add_inherits_from_semantic,
    pre_cancel_inherits_from_semantic, post_cancel_inherits_from_semantic, pre_replace_inherits_from_semantic,
    post_replace_inherits_from_semantic, pre_insert_inherits_from_semantic,
    post_insert_inherits_from_semantic, pre_set_inherits_from_order_semantic,
    post_set_inherits_from_order_semantic, pre_set_owner_semantic, post_set_owner_semantic,
    post_model_load_semantic, post_end_transaction_semantic, validate_semantic, read_newer_model_semantic>;
static_assert(all_semantics::size == 45 && all_semantics::in_order(), "a kind is missing or out of place");

} // namespace kelm
