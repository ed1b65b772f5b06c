// Hooks before a deletion: what is in use stays, with the reason told, or its users go with it.
// What goes with its owner is not asked about: the owner was.
#include "hooks/hooks.h"
#include "schema/identifiers.h"
#include "schema/lookup.h"
#include "schema/types.h"
#include "schema/users.h"
#include "schema/values.h"

#include <algorithm>
#include <vector>

namespace schema {

namespace {

class drop_rule : public rule<kelm::obj_pre_delete_semantic> {
public:
    using rule::rule;

    bool do_it(kelm::object* what) final {
        if (!hold() || what->owner()->state() == kelm::state::being_deleted) return true;
        return may_go(*what);
    }

protected:
    virtual bool may_go(kelm::object& what) = 0;

    /// \param user  empty when there is none
    bool is_unused(const std::string& what, const std::string& user) {
        return user.empty() || refuse(what + " is used by " + user);
    }
};

/// A referenced table stays, or takes the foreign keys with it.  They are deleted in the transaction of the drop, so
/// that one undo brings all of it back.
class table_drops final : public drop_rule {
public:
    using drop_rule::drop_rule;

private:
    bool may_go(kelm::object& what) override {
        const std::vector<kelm::object*> keys = foreign_keys_to(what);
        if (shared().on_referenced_drop == referenced_drop::drop_keys)
            return kelm::framework::instance().delete_objects(keys);
        return is_unused("table " + identifier(name(what)),
                         keys.empty() ? std::string() : described(*keys.front()));
    }
};

class column_drops final : public drop_rule {
public:
    using drop_rule::drop_rule;

private:
    bool may_go(kelm::object& what) override {
        const std::string shown = "column " + full_name(what);
        if (!is_unused(shown, user_of_column(what)) || !is_unused(shown, text_user_of_column(what)))
            return false;
        return what.owner()->child_count(type::column) > 1 || refuse(shown + " is the last of its table");
    }
};

class domain_drops final : public drop_rule {
public:
    using drop_rule::drop_rule;

private:
    bool may_go(kelm::object& what) override {
        return is_unused("domain " + identifier(name(what)), user_of_domain(what));
    }
};

} // namespace

void add_drop_hooks(rules& shared) {
    add_hook<table_drops>(type::table, shared);
    add_hook<column_drops>(type::column, shared);
    add_hook<domain_drops>(type::domain, shared);
}

} // namespace schema
