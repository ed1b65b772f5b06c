// Making and closing: objects, models, bare objects, and deleting through the framework.
// The cascade of a deletion is deletion.cpp.
#include "framework/framework_impl.h"
#include "message/lifetime_messages.h"
#include "object/deletion.h"
#include "object/model_impl.h"

#include <algorithm>

namespace kelm {

namespace {

bool can_be_made(const meta_object* type) { return type && !type->is_generic(); }

/// Makes the object and has the model's pool own it.
object_impl& make_object(u32 type, object_impl& owner) {
    owner.owning_model()->pool().make_room();
    auto made = std::make_unique<object_impl>(type, &owner, false, true);
    owner.owning_model()->pool().adopt(*made);
    return *made.release();
}

/// Makes the object, which is known by its id from here on, and the message of it; or neither.
std::unique_ptr<obj_create_message_impl> make_and_tell_of(u32 type, object_impl& owner) {
    owner.owning_model()->log().make_room();
    object_impl& made = make_object(type, owner);
    try {
        made.set_state(state::being_created);
        made.enter_id_map();
        return std::make_unique<obj_create_message_impl>(&made, &owner);
    } catch (...) {
        made.destroy();
        throw;
    }
}

bool run_create_hooks(object_impl& made) {
    return made.run<obj_create_semantic>([&](obj_create_semantic& h) { return h.do_it(&made); }) ||
           made.refuse();
}

/// Puts a new object last among the children of its type.  The message of it is not the user's own doing.
bool add_to_owner(object_impl& made, object_impl& owner) {
    bool& mark = process().in_semantic;
    const bool before = mark;
    mark = true;
    // Kept: after a refusal the mark is not put back here: a rollback has cleared it, and outside a transaction it
    // stays set.
    if (!owner.add_child(&made)) return false;
    mark = before;
    return true;
}

/// A rollback on the way may have undone the creation itself.
void set_made(object_impl& made) {
    if (made.state() == state::being_created) made.set_state(state::normal);
}

object* create_plain(u32 type, object_impl& owner) {
    model_impl& in = *owner.owning_model();
    const message_history_impl::in_use guard{in.log()};
    auto message = make_and_tell_of(type, owner);
    message_impl& said = *message;
    object_impl& made = *impl_of(said.object());
    in.log().add_message(std::move(message));
    if (!made.notify(&said) || !run_create_hooks(made)) return nullptr;
    // A hook or an observer may have rolled the creation back, and say that all is well: what is deleted stays alone.
    if (!made.is_deleted() && !add_to_owner(made, owner)) return nullptr;
    set_made(made);
    return &made;
}

} // namespace

object* framework_impl::create_object(u32 type, object* owner) {
    if (type == type_id::library) return nullptr; // it could draw its id from nobody
    if (type == type_id::model) return owner ? nullptr : create_model();
    object_impl* const place = owner ? impl_of(owner) : nullptr;
    if (!place || !place->owning_model()) return nullptr;
    take_back_interrupted(*place);
    if (place->is_deleted()) return nullptr;
    if (!can_be_made(place->owning_model()->types().find_meta_object(type))) return nullptr;
    return create_plain(type, *place);
}

object* framework_impl::create_model() {
    if (!can_be_made(application_meta_model()->find_meta_object(type_id::model))) return nullptr;
    auto made = std::make_unique<model_impl>(true);
    models_.push_back(made.get());
    model_impl& in = *made;
    try {
        const message_history_impl::in_use guard{in.log()}; // a hook must not close what is being made
        in.begin_transaction("New Model");
        in.set_state(state::being_created);
        in.enter_id_map();
        if (!run_create_hooks(in)) return made.release(), nullptr; // it stays in the list
        set_made(in);
        in.end_transaction();
        in.clear_history();
    } catch (...) {
        remove_model(&in);
        throw;
    }
    in.clear_modified();
    return made.release()->as_object();
}

object* framework_impl::instantiate_object(u32 type, kelm::model* in, bool assign_id) {
    if (type == type_id::library) return nullptr;
    kelm::meta_model* const types = in ? in->meta_model() : application_meta_model();
    if (!can_be_made(types->find_meta_object(type))) return nullptr;
    if (type == type_id::model) {
        auto made = std::make_unique<model_impl>(assign_id);
        if (assign_id) made->enter_id_map();
        models_.push_back(made.get());
        return made.release()->as_object();
    }
    if (assign_id) return nullptr; // an id needs an owner
    auto made = std::make_unique<object_impl>(type, nullptr, true, false);
    bare_objects().adopt(*made);
    return made.release();
}

// A model inside a model would be one more open document: no stream can ask for that.
object_impl* object_impl::make_stored(u32 type, model_impl& in) {
    if (type == type_id::library || type == type_id::model) return nullptr;
    if (!can_be_made(application_meta_model().find_type(type))) return nullptr;
    in.pool().make_room();
    auto made = std::make_unique<object_impl>(type, nullptr, true, false);
    made->model_ = &in;
    in.pool().adopt(*made);
    return made.release();
}

bool framework_impl::delete_object(object* what) {
    if (!what) return false;
    object_impl& self = *impl_of(what);
    if (self.type() != type_id::model) take_back_interrupted(self); // a model that is closed needs it no more
    if (self.state() != state::normal) return true;
    if (self.type() == type_id::model) return close_model(self, false);
    if (!self.owner_object() || !self.owning_model()) return false;
    return delete_plain_object(self);
}

bool framework_impl::close_model(object& root, bool by_force) {
    model_impl& closing = *impl_of(&root)->owning_model();
    if (closing.log().is_in_use()) return false; // a hook or observer of this very model is running
    process().in_semantic = true;
    if (!by_force) {
        const message_history_impl::in_use guard{closing.log()};
        closing.set_state(state::being_deleted);
        bool passed = false;
        try {
            passed = closing.run<obj_pre_delete_semantic>(
                [&](obj_pre_delete_semantic& h) { return h.do_it(&root); });
        } catch (...) {
            closing.set_state(state::normal); // it can be closed later
            throw;
        }
        if (!passed) {
            closing.refuse();
            closing.set_state(state::normal);
            return false;
        }
    }
    remove_model(&closing);
    const std::unique_ptr<model_impl> goes{&closing}; // also when an observer throws
    {
        const message_history_impl::in_use guard{closing.log()};
        model_close_message_impl told{&closing};
        closing.notify(&told);
    }
    return true;
}

// An object may go with another; so the objects are noted by identity before the first one goes.
bool framework_impl::delete_objects(const std::vector<object*>& objects) {
    std::vector<std::pair<GUID, u32>> notes;
    notes.reserve(objects.size());
    for (const object* each : objects) {
        kelm::model* const in = model_of(each);
        if (!in) continue;
        take_back_interrupted(*impl_of(each));
        notes.emplace_back(GUID{}, each->id());
        in->model_id(notes.back().first);
    }
    for (const auto& [guid, id] : notes) {
        const kelm::model* const in = find_model(guid);
        object* const what = in ? in->find_object(id) : nullptr;
        if (what && !delete_object(what)) return false;
    }
    return true;
}

void framework_impl::shutdown() {
    while (!models_.empty()) {
        kelm::model* const first = models_.front();
        const bool closed = delete_object(first->as_object());
        // A hook that always refuses, or a model that was never finished, must not hold the process.
        if (!models_.empty() && models_.front() == first &&
            (!closed || first->as_object()->state() != state::normal))
            if (!close_model(*first->as_object(), true)) break;
    }
    bare_objects().destroy_all();
    application_meta_model()->clear();
}

kelm::model* framework_impl::model_of(const object* what) { return what ? what->model() : nullptr; }

kelm::model* framework_impl::library_of(object* what) {
    if (!what) return nullptr;
    object* const library = what->type() == type_id::library ? what : what->owner(type_id::library);
    return dynamic_cast<kelm::model*>(library);
}

} // namespace kelm
