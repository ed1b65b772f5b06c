// The kit and the types of all other tests: another meta model, with a hook of each kind.
// KELM_LAW_OPERATIONS sets how many calls are played where all must hold, KELM_RANDOM_SEED the first seed.
// What the kit catches is wrong_hooks_test.cpp.
#include "tests/support/dom_document.h"
#include "tests/support/environment.h"
#include "tests/support/world.h"

#include <kelm/testing/laws.h>

#include <iostream>

namespace kelm::test {

namespace {

/// The process has been started with its types: nobody asks this one.
class nobody final : public meta_model_builder {
public:
    void define_data_types() override { FAIL(); }
    void define_meta_attributes() override { FAIL(); }
    void define_meta_objects() override { FAIL(); }
};

class law_kit : public ::testing::Test {
protected:
    law_kit() {
        started_framework();
        hooks.clear();
    }
    ~law_kit() override { hooks.clear(); }

    static kelm::testing::law_report hold(const kelm::testing::law_options& options = {}) {
        nobody types;
        return kelm::testing::check_laws(types, options);
    }
    static kelm::testing::law_options as_many_as_wanted() {
        kelm::testing::law_options options;
        options.operations = from_environment("KELM_LAW_OPERATIONS", 0);
        options.seed = from_environment("KELM_RANDOM_SEED", options.seed);
        options.progress = &std::cout;
        return options;
    }
    hook_program& hooks = hook_program::instance();
};

} // namespace

TEST_F(law_kit, finds_nothing_where_all_hooks_pass) {
    const auto report = hold(as_many_as_wanted());
    EXPECT_TRUE(report.holds) << report.to_string();
}

TEST_F(law_kit, finds_nothing_where_hooks_refuse_and_react_by_what_they_see) {
    hooks.on<obj_create_semantic>(
        [](hook_call& call) { return call.at->set_property(props::definition, text("made")); });
    hooks.on<pre_prop_set_semantic>(
        [](hook_call& call) { return call.numbers[0] != props::text || call.values[0].size() % 5 != 2; });
    hooks.on<pre_remove_child_semantic>([](hook_call& call) { return call.others[0]->id() % 4 != 0; });
    hooks.on<post_prop_set_semantic>([](hook_call& call) {
        if (call.numbers[0] != props::text) return true;
        const auto length = static_cast<int>(call.values[0].size());
        return length % 3 == 0 ? call.at->delete_property(props::flag)
                               : call.at->set_property(props::number, number(length));
    });
    const auto report = hold(as_many_as_wanted());
    EXPECT_TRUE(report.holds) << report.to_string();
}

TEST_F(law_kit, finds_nothing_in_documents) {
    kelm::testing::law_options options = as_many_as_wanted();
    options.histories = 700;
    options.elements = [](const std::function<void(void*)>& use) {
        const dom_document document;
        use(document.root());
    };
    const auto report = hold(options);
    EXPECT_TRUE(report.holds) << report.to_string();
}

/// What is remembered of a value until it is set again, and not until it is undone.
TEST_F(law_kit, catches_a_hook_that_remembers_what_was_read) {
    std::map<u32, std::string> remembered;
    hooks.on<post_prop_set_semantic>([&](hook_call& call) {
        remembered.erase(call.at->id());
        return true;
    });
    hooks.on<post_prop_get_semantic>([&](hook_call& call) {
        if (call.numbers[0] != props::text || !*call.replaceable) return true;
        const auto known = remembered.try_emplace(call.at->id(), (*call.replaceable)->to_string()).first;
        (*call.replaceable)->from_string(known->second);
        return true;
    });
    const auto report = hold({.seed = 1900, .histories = 5000});
    ASSERT_FALSE(report.holds);
    EXPECT_TRUE(report.broken == kelm::testing::law::undo_and_redo ||
                report.broken == kelm::testing::law::rollback)
        << report.to_string();
    EXPECT_NE(report.difference.find("10 "), std::string::npos) << report.to_string();
}

} // namespace kelm::test
