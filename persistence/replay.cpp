// The table of what each message means as a command.
// The commands themselves are operations of framework, model and object.
#include "persistence/replay.h"

#include "message/message_table.h"
#include "message/udp_messages.h"
#include "object/model_impl.h"

#include <kelm/framework.h>
#include <kelm/meta_model.h>
#include <kelm/property_messages.h>
#include <kelm/structure_messages.h>

#include <algorithm>
#include <array>

namespace kelm {

namespace {

/// Calls `command` with the two faces of a message that has an object.
template <class Message, class Command>
bool with(message_impl& what, Command&& command) {
    auto* const said = message_cast<Message>(&what);
    return said && what.object() && command(*what.object(), *said);
}

bool begin(message_impl& what, model_impl& on) {
    on.begin_transaction(message_cast<tran_begin_message>(&what)->name());
    return true;
}

bool end(message_impl&, model_impl& on) {
    on.end_transaction();
    return true;
}

bool create(message_impl& what, model_impl&) {
    const auto* const said = message_cast<obj_create_message>(&what);
    if (said->object_type() == type_id::model || !said->owner())
        return false; // no document inside a document
    return framework::instance().create_object(said->object_type(), said->owner()) != nullptr;
}

bool delete_object(message_impl& what, model_impl& in) {
    // The model itself would be closed while its log is being performed.
    return what.object() && what.object() != &in && framework::instance().delete_object(what.object());
}

bool set(message_impl& what, model_impl&) {
    return with<property_set_message>(what, [](object& at, const property_set_message& said) {
        const value_ptr value = said.new_value();
        return value && at.set_property(said.property_type(), *value);
    });
}

bool set_element(message_impl& what, model_impl&) {
    return with<property_set_vec_prop_message>(
        what, [](object& at, const property_set_vec_prop_message& said) {
            const value_ptr value = said.new_value();
            return value && at.set_vector_element(said.property_type(), *value, said.pos());
        });
}

bool insert_element(message_impl& what, model_impl&) {
    return with<property_insert_vec_prop_message>(
        what, [](object& at, const property_insert_vec_prop_message& said) {
            const value_ptr value = said.value();
            if (!value) return false;
            return at.defines_property(said.property_type())
                       ? at.insert_vector_element(said.property_type(), *value, said.pos())
                       : at.append_vector_element(said.property_type(), *value);
        });
}

bool delete_value(message_impl& what, model_impl&) {
    return with<property_delete_message>(what, [](object& at, const property_delete_message& said) {
        return at.delete_property(said.property_type());
    });
}

bool delete_element(message_impl& what, model_impl&) {
    return with<property_delete_vec_prop_message>(
        what, [](object& at, const property_delete_vec_prop_message& said) {
            return at.delete_vector_element(said.property_type(), said.pos());
        });
}

bool move_element(message_impl& what, model_impl&) {
    return with<element_position_vec_prop_message>(
        what, [](object& at, const element_position_vec_prop_message& said) {
            return at.move_vector_element(said.property_type(), said.old_pos(), said.new_pos());
        });
}

bool mark(message_impl& what, model_impl&) {
    return with<property_set_not_inheritable_message>(
        what, [](object& at, const property_set_not_inheritable_message& said) {
            return at.set_property_not_inheritable(said.property_type(), said.not_inheritable());
        });
}

bool add_child(message_impl& what, model_impl&) {
    return with<child_add_message>(what, [](object& at, const child_add_message& said) {
        return said.child() && at.add_child(said.child());
    });
}

bool remove_child(message_impl& what, model_impl&) {
    return with<child_remove_message>(what, [](object& at, const child_remove_message& said) {
        return said.child() && at.remove_child(said.child());
    });
}

bool order_child(message_impl& what, model_impl&) {
    return with<child_order_message>(what, [](object& at, const child_order_message& said) {
        return said.child() && at.set_child_position(said.child(), said.new_pos());
    });
}

bool set_owner(message_impl& what, model_impl&) {
    return with<owner_set_message>(what, [](object& at, const owner_set_message& said) {
        return said.new_owner() && at.set_owner(said.new_owner());
    });
}

bool add_base(message_impl& what, model_impl&) {
    return with<inherits_add_message>(what, [](object& at, const inherits_add_message& said) {
        return at.add_inherits_from(said.inherits_from());
    });
}

bool cancel_base(message_impl& what, model_impl&) {
    return with<inherits_cancel_message>(what, [](object& at, const inherits_cancel_message& said) {
        return said.inherits_from() && at.cancel_inherits_from(said.inherits_from());
    });
}

bool insert_base(message_impl& what, model_impl&) {
    return with<inherits_insert_message>(what, [](object& at, const inherits_insert_message& said) {
        return at.insert_inherits_from(said.inherits_from(), said.pos());
    });
}

bool order_base(message_impl& what, model_impl&) {
    return with<inherits_from_order_message>(what, [](object& at, const inherits_from_order_message& said) {
        return said.inherits_from() && at.set_inherits_from_position(said.inherits_from(), said.new_pos());
    });
}

bool replace_base(message_impl& what, model_impl&) {
    return with<inherits_replace_message>(what, [](object& at, const inherits_replace_message& said) {
        return at.replace_inherits_from(said.inherits_from(), said.old_inherits_from());
    });
}

bool attach(message_impl& what, model_impl&) {
    return with<observer_add_message>(what, [](object& at, const observer_add_message& said) {
        return said.observer() && at.attach(said.observer());
    });
}

bool detach(message_impl& what, model_impl&) {
    return with<observer_remove_message>(what, [](object& at, const observer_remove_message& said) {
        return said.observer() && at.detach(said.observer());
    });
}

bool add_property(message_impl& what, model_impl& on) {
    const auto* const said = message_cast<udp_add_message_impl>(&what);
    // Kept: a text, whatever class the message has.
    return said->owner_meta_type() &&
           on.add_user_defined_property(said->owner_meta_type()->id(), said->udp_name(), data_type::string,
                                        {}, said->udp_type());
}

bool remove_property(message_impl& what, model_impl& on) {
    const auto* const said = message_cast<udp_remove_message>(&what);
    return said->owner_meta_type() &&
           on.remove_user_defined_property(said->owner_meta_type()->id(), said->udp_type());
}

bool set_attribute(message_impl& what, model_impl& on) {
    const auto* const said = message_cast<udp_set_attribute_value_message>(&what);
    meta_object* const type = said->owner_meta_type();
    meta_property* const which = type ? type->find_property(said->udp_type()) : nullptr;
    const value_ptr value = said->new_value();
    return which && value && on.set_user_defined_property_attribute(type, which, said->udp_att(), *value);
}

bool nothing(message_impl&, model_impl&) { return true; }

struct command {
    u32 code;
    bool (*perform)(message_impl&, model_impl&);
};

constexpr std::array commands{
    command{message_type::tran_begin, begin},
    command{message_type::tran_end, end},
    command{message_type::obj_create, create},
    command{message_type::obj_pre_delete, delete_object},
    command{message_type::obj_delete, nothing},
    command{message_type::property_set, set},
    command{message_type::property_set_vec_prop, set_element},
    command{message_type::property_insert_vec_prop, insert_element},
    command{message_type::property_delete, delete_value},
    command{message_type::property_delete_vec_prop, delete_element},
    command{message_type::element_position_vec_prop, move_element},
    command{message_type::property_set_not_inheritable, mark},
    command{message_type::child_add, add_child},
    command{message_type::child_pre_remove, nothing},
    command{message_type::child_remove, remove_child},
    command{message_type::child_order, order_child},
    command{message_type::owner_set, set_owner},
    command{message_type::inherits_add, add_base},
    command{message_type::inherits_cancel, cancel_base},
    command{message_type::inherits_insert, insert_base},
    command{message_type::inherits_from_order, order_base},
    command{message_type::inherits_replace, replace_base},
    command{message_type::observer_add, attach},
    command{message_type::observer_remove, detach},
    command{message_type::udp_add, add_property},
    command{message_type::udp_remove, remove_property},
    command{message_type::udp_set_attribute_value, set_attribute},
    command{message_type::property_refresh_set, nothing},
    command{message_type::property_refresh_delete, nothing},
};
static_assert(std::ranges::is_sorted(commands, {}, &command::code));

} // namespace

bool replay_message(message_impl& what, model_impl& on) {
    const auto found = std::ranges::lower_bound(commands, stored_code(what), {}, &command::code);
    return found == commands.end() || found->code != stored_code(what) || found->perform(what, on);
}

} // namespace kelm
