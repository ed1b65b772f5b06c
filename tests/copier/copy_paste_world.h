// A model to copy from, another one to paste into, a copier, and scripts for its rules.
// What is copied and how it must come out is told by the tests.
#pragma once

#include "tests/copier/scripted_rules.h"
#include "tests/copier/snapshot_text.h"
#include "tests/support/consistency.h"
#include "tests/support/linked_type.h"

#include <kelm/copier.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace kelm::test {

class copy_paste_world : public world {
protected:
    copy_paste_world()
        : far_root(fw.create_object(type_id::model, nullptr)),
          far_model(far_root->model()),
          clip(fw.create_copier(model)) {}
    ~copy_paste_world() override {
        clip.reset();
        hooks.clear();
        far_model->rollback_transaction_all();
        fw.delete_object(far_root);
        fw.set_in_semantic(false);
    }

    object* linked(const std::string& name, object* owner = nullptr) {
        return make(types::linked, name, owner);
    }
    /// An object of the model that is pasted into.
    object* far(u32 type, const std::string& name, object* owner = nullptr) {
        const bool opens = !far_model->in_transaction();
        if (opens) far_model->begin_transaction("far");
        object* const made = fw.create_object(type, owner ? owner : far_root);
        made->set_property(props::name, text(name));
        if (opens) {
            far_model->end_transaction();
            far_model->clear_history();
            far_model->clear_modified();
        }
        return made;
    }
    /// Sets a value of a source object.
    void set(object* what, u32 id, const abstract_property& value) {
        model->begin_transaction("set");
        EXPECT_TRUE(what->set_property(id, value));
        model->end_transaction();
        model->clear_history();
        model->clear_modified();
    }
    void set(object* what, u32 id, object* target) { set(what, id, reference(target)); }
    /// A list of references.
    void set(object* what, u32 id, std::initializer_list<object*> targets) {
        vector_property list;
        for (object* each : targets) list.elements.push_back(new property<object*>{each});
        set(what, id, list);
    }
    void add_base(object* heir, object* base) {
        model->begin_transaction("base");
        EXPECT_TRUE(heir->add_inherits_from(base));
        model->end_transaction();
        model->clear_history();
    }

    bool copy(object* what, bool selected = true) { return clip->copy_object(what, selected); }
    /// Copies each by itself, which must be new to the snapshot.
    void copy_all(std::initializer_list<object*> all) {
        for (object* each : all) EXPECT_TRUE(copy(each)) << object_name(each);
    }
    /// Pastes below the root of the other model.  \returns what paste() answered
    bool paste() { return paste({far_root}); }
    bool paste(const std::vector<object*>& owners) {
        pasted.clear();
        return clip->paste(far_model, owners, &pasted);
    }
    /// \returns the one object that was pasted for a selected node; null, and the test fails, for none or several
    object* paste_one() {
        EXPECT_TRUE(paste());
        EXPECT_EQ(pasted.size(), 1U);
        return pasted.size() == 1 ? pasted[0] : nullptr;
    }
    /// \returns the object of that name in the other model; null when there is none
    object* found(const std::string& name) const {
        std::vector<u32> ids;
        far_model->object_ids(ids);
        for (const u32 id : ids)
            if (name_or_number(far_model->find_object(id)) == name) return far_model->find_object(id);
        return nullptr;
    }
    /// \returns the text of an own value of an object of the other model, a target by name; "none" without a value
    std::string own(const std::string& name, u32 id) const {
        const object* const holder = found(name);
        if (!holder) return "no " + name;
        const value_ptr value = holder->get_own_property(id);
        return value ? own_text(value.get()) : "none";
    }
    std::string far_dump() const { return dump_of(*far_model); }
    /// \returns a text of the tree of the other model: names, children in parentheses
    std::string far_tree() const { return tree(far_root); }
    static std::string tree(const object* of) {
        std::string out;
        for (const object* each : of->children()) {
            out += (out.empty() ? "" : " ") + name_or_number(each);
            if (each->has_children()) out += "(" + tree(each) + ")";
        }
        return out;
    }

    /// Expects that a paste fails and leaves the other model as it was.
    void expect_failure() {
        const std::string before = far_dump();
        const std::size_t messages = far_model->message_count();
        EXPECT_FALSE(paste());
        expect_untouched(before, messages);
    }
    /// Expects the other model as it was before a paste, and the copier at rest.
    void expect_untouched(const std::string& before, std::size_t messages = 0) {
        EXPECT_EQ(far_dump(), before);
        EXPECT_EQ(far_model->message_count(), messages);
        EXPECT_FALSE(far_model->in_transaction());
        EXPECT_TRUE(clip->destination_model_id() == GUID{});
        EXPECT_EQ(broken_links(*far_model), "");
    }
    /// Expects that undo of the last paste leads back to `before`, and redo to what is now.
    void expect_paste_undone_and_redone(const std::string& before) {
        const std::string after = far_dump();
        for (int round = 0; round != 2; ++round) {
            SCOPED_TRACE(round);
            far_model->undo();
            EXPECT_EQ(far_dump(), before);
            far_model->redo();
            EXPECT_EQ(far_dump(), after);
            EXPECT_EQ(broken_links(*far_model), "");
        }
    }

    // Scripts outlive the copier.
    copy_script on_copy;
    paste_script on_paste;
    value_script on_value;
    order_script on_order;
    end_script on_end;

    object* const far_root;
    kelm::model* const far_model;
    shared_ptr<copier> clip;
    std::vector<object*> pasted; ///< by the last paste

private:
    static std::string own_text(const abstract_property* value) {
        if (const auto* const target = dynamic_cast<const property<object*>*>(value))
            return "->" + name_or_number(target->value);
        const auto* const list = dynamic_cast<const vector_property*>(value);
        if (!list) return dump_text(value);
        std::string out = "[";
        for (const abstract_property* each : list->elements) out += own_text(each) + "|";
        return out + "]";
    }
};

} // namespace kelm::test
