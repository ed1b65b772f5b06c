// The messages of bases.
// How the lists of both sides are kept in step is the object's business.
#include "message/inherit_messages.h"

#include "message/message_text.h"

namespace kelm {

using namespace message_text;

namespace {

std::string link_text(const char* what, const message_impl& said, const object* base) {
    return what + type_and_path(said.object()) + " from " + type_and_path(base);
}

} // namespace

void inherits_add_message_impl::inverse() {
    tell_inverse<inherits_cancel_message_impl>(&edit(), inherits_from(), std::size_t{place()});
}

std::string& inherits_add_message_impl::to_string(std::string& out) const {
    return out = link_text("Add Inherits - ", *this, inherits_from());
}

void inherits_cancel_message_impl::inverse() {
    tell_inverse<inherits_add_message_impl>(&edit(), inherits_from(), std::size_t{place()});
}

std::string& inherits_cancel_message_impl::to_string(std::string& out) const {
    return out = link_text("Cancel Inherits - ", *this, inherits_from());
}

void inherits_insert_message_impl::inverse() {
    tell_inverse<inherits_cancel_message_impl>(&edit(), inherits_from(), std::size_t{place()});
}

std::string& inherits_insert_message_impl::to_string(std::string& out) const {
    return out = link_text("Insert Inherits - ", *this, inherits_from());
}

std::string& inherits_from_order_message_impl::to_string(std::string& out) const {
    return out = "Inherits From Order - object: " + type_and_path(object()) +
                 both_positions(new_pos(), old_pos());
}

void inherits_replace_message_impl::forward() {
    if (base_ && former_) edit().exchange_base(*base_, *former_, pos_);
}

void inherits_replace_message_impl::backward() {
    if (base_ && former_) edit().exchange_base(*former_, *base_, pos_);
}

void inherits_replace_message_impl::inverse() {
    tell_inverse<inherits_replace_message_impl>(&edit(), former_, base_, std::size_t{pos_});
}

std::string& inherits_replace_message_impl::to_string(std::string& out) const {
    return out = "Replace Inherits - " + type_and_path(object()) + " from: " + type_and_path(former_) +
                 " with " + type_and_path(base_);
}

} // namespace kelm
