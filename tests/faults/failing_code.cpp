// Counting the calls, and rules of copy and paste that make them.
// Hooks are given their calls by the stage.
#include "tests/faults/failing_code.h"

#include "tests/support/linked_type.h"

namespace kelm::test {

namespace {

struct {
    code_of whom{};
    long until_failure = 0; // 0 for none
    bool for_good = false;
} code_plan;
long failed_calls = 0;

class calling_copy_rule final : public copy_rule {
public:
    bool referenced_objects(const object*, std::vector<object*>&) override {
        run_code(code_of::rule);
        return true;
    }
    owned<copy_rule*> clone() const override {
        run_code(code_of::rule);
        return new calling_copy_rule;
    }
};

class calling_paste_rule final : public paste_rule {
public:
    int paste(kelm::object*, u32, const std::map<u32, abstract_property*>&, const std::vector<kelm::object*>&,
              bool last_pass, u32 source_id) override {
        run_code(code_of::rule);
        return source_id % 2 != 0 && !last_pass ? paste_action::defer : paste_action::create;
    }
    kelm::object* object() override {
        run_code(code_of::rule);
        return nullptr;
    }
    owned<paste_rule*> clone() const override {
        run_code(code_of::rule);
        return new calling_paste_rule;
    }
};

class calling_value_rule final : public property_paste_rule {
public:
    int paste_property(object*, u32 id, abstract_property*, bool last_pass) override {
        run_code(code_of::rule);
        return id == props::list && !last_pass ? property_paste_result::defer
                                               : property_paste_result::nothing;
    }
    owned<property_paste_rule*> clone() const override {
        run_code(code_of::rule);
        return new calling_value_rule;
    }
};

class calling_order_rule final : public object_order_rule {
public:
    bool order(object*, u32, const pasted_positions&) override {
        run_code(code_of::rule);
        return true;
    }
    owned<object_order_rule*> clone() const override {
        run_code(code_of::rule);
        return new calling_order_rule;
    }
};

class calling_end_rule final : public end_transaction_rule {
public:
    bool accept(model*) override {
        run_code(code_of::rule);
        return true;
    }
    owned<end_transaction_rule*> clone() const override {
        run_code(code_of::rule);
        return new calling_end_rule;
    }
};

} // namespace

void run_code(code_of whom) {
    if (code_plan.until_failure == 0 || code_plan.whom != whom) return;
    if (code_plan.until_failure > 1) {
        --code_plan.until_failure;
        return;
    }
    if (!code_plan.for_good) code_plan.until_failure = 0;
    ++failed_calls;
    throw thrown_by_code{};
}

failing_code::failing_code(code_of whom, long until_failure, bool for_good) {
    failed_calls = 0;
    code_plan = {whom, until_failure, for_good};
}
failing_code::~failing_code() { code_plan = {}; }
long failing_code::failures() { return failed_calls; }

void code_value::enter() {
    framework::instance().register_data_type(
        700200, typeid(code_value), []() -> abstract_property* { return new code_value(0); }, "Code");
}

void give_rules(copier& to) {
    for (const u32 type : {types::thing, types::hooked, types::linked}) {
        to.set_copy_rule(type, calling_copy_rule{});
        to.set_paste_rule(type, calling_paste_rule{});
        to.set_property_paste_rule(type, calling_value_rule{});
        to.set_object_order_rule(type_id::model, type, calling_order_rule{});
    }
    to.set_end_transaction_rule(calling_end_rule{});
}

} // namespace kelm::test
