// Rules of copy and paste that tests program: what they do and have heard is in a script that all clones of one share.
// What they are programmed to is told by the tests.
#pragma once

#include "tests/support/world.h"

#include <functional>
#include <string>
#include <vector>

namespace kelm::test {

/// What all scripts keep: how many of their rules live, and what these were asked, a line a call.
struct rule_script {
    int alive = 0;
    bool gives_clones = true;
    std::string heard;

    std::string take() { return std::exchange(heard, {}); }
};

/// A rule that is programmed by a script, which must outlive it and all its clones.
template <class Rule, class Script>
class scripted : public Rule {
public:
    explicit scripted(Script& by) : script_(by) { ++script_.alive; }
    scripted(const scripted& other) : Rule(other), script_(other.script_) { ++script_.alive; }
    scripted& operator=(const scripted&) = delete;
    ~scripted() override { --script_.alive; }

protected:
    Script& script() const { return script_; }
    template <class Self>
    Rule* clone_of(const Self& self) const {
        return script_.gives_clones ? new Self(self) : nullptr;
    }

private:
    Script& script_;
};

inline std::string name_or_number(const object* what) {
    if (!what) return "null";
    const value_ptr own = what->get_own_property(props::name);
    return own ? own->to_string() : "#" + std::to_string(what->id());
}

struct copy_script : rule_script {
    std::function<bool(const object*, std::vector<object*>&)> on_call;
};
class scripted_copy_rule final : public scripted<copy_rule, copy_script> {
public:
    using scripted::scripted;
    bool referenced_objects(const object* of, std::vector<object*>& out) override {
        script().heard += name_or_number(of) + "\n";
        return !script().on_call || script().on_call(of, out);
    }
    owned<copy_rule*> clone() const override { return clone_of(*this); }
};

/// What a paste rule is asked.
struct paste_call {
    object* owner;
    u32 type;
    const std::map<u32, abstract_property*>& values;
    const std::vector<object*>& bases;
    bool is_last;
    u32 source_id;

    /// \returns the text of a value; "none" for one that the node has not, "null" for one that does not resolve
    std::string value(u32 id) const {
        const auto found = values.find(id);
        return found == values.end() ? "none" : dump_text(found->second);
    }
    /// \returns the name that the node has
    std::string name() const {
        const auto found = values.find(props::name);
        return found == values.end() || !found->second ? "none" : found->second->to_string();
    }
};

/// The text of a call: "owner type name last values bases".
inline std::string line_of(const paste_call& call) {
    std::string out = name_or_number(call.owner) + " " + std::to_string(call.type) + " " + call.name() +
                      (call.is_last ? " last" : "");
    for (const auto& [id, value] : call.values)
        if (id != props::name) out += " " + std::to_string(id) + "=" + dump_text(value);
    for (const object* each : call.bases) out += " base " + name_or_number(each);
    return out + "\n";
}

struct paste_script : rule_script {
    std::function<int(const paste_call&)> on_call; ///< none: create
    std::function<kelm::object*()> on_object;      ///< none: `target`
    kelm::object* target = nullptr;
};
class scripted_paste_rule final : public scripted<paste_rule, paste_script> {
public:
    using scripted::scripted;
    int paste(kelm::object* owner, u32 type, const std::map<u32, abstract_property*>& values,
              const std::vector<kelm::object*>& inherits, bool last_pass, u32 source_id) override {
        const paste_call call{owner, type, values, inherits, last_pass, source_id};
        script().heard += line_of(call);
        return script().on_call ? script().on_call(call) : paste_action::create;
    }
    kelm::object* object() override { return script().on_object ? script().on_object() : script().target; }
    owned<paste_rule*> clone() const override { return clone_of(*this); }
};

struct value_script : rule_script {
    std::function<int(object*, u32, abstract_property*, bool)> on_call; ///< none: nothing
};
class scripted_value_rule final : public scripted<property_paste_rule, value_script> {
public:
    using scripted::scripted;
    int paste_property(object* what, u32 id, abstract_property* value, bool last_pass) override {
        script().heard += name_or_number(what) + " " + std::to_string(id) + "=" + dump_text(value) +
                          (last_pass ? " last\n" : "\n");
        return script().on_call ? script().on_call(what, id, value, last_pass)
                                : property_paste_result::nothing;
    }
    owned<property_paste_rule*> clone() const override { return clone_of(*this); }
};

struct order_script : rule_script {
    std::function<bool(object*, u32, const pasted_positions&)> on_call; ///< none: true
};
class scripted_order_rule final : public scripted<object_order_rule, order_script> {
public:
    using scripted::scripted;
    bool order(object* owner, u32 child_type, const pasted_positions& children) override {
        script().heard += name_or_number(owner) + " " + std::to_string(child_type) + ":";
        for (const auto& [child, position] : children)
            script().heard += " " + name_or_number(child) + "@" + std::to_string(position);
        script().heard += "\n";
        return !script().on_call || script().on_call(owner, child_type, children);
    }
    owned<object_order_rule*> clone() const override { return clone_of(*this); }
};

struct end_script : rule_script {
    std::function<bool(model*)> on_call; ///< none: true
};
class scripted_end_rule final : public scripted<end_transaction_rule, end_script> {
public:
    using scripted::scripted;
    bool accept(model* destination) override {
        script().heard += destination->in_transaction() ? "open\n" : "closed\n";
        return !script().on_call || script().on_call(destination);
    }
    owned<end_transaction_rule*> clone() const override { return clone_of(*this); }
};

} // namespace kelm::test
