// Deleting an object: the cascade through its subtree and links, and clearing of references to it.
// The order of the messages is a promise to observers.
#pragma once

namespace kelm {

class object_impl;

/// Deletes a living object that has an owner.
/// \returns false when a hook or an observer refused; the object is then normal again, save that a refusal of the
///          very last message leaves it in the state of being deleted
bool delete_plain_object(object_impl& what);

} // namespace kelm
