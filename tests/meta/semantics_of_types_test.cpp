// Hooks of types: registering, passing on, excluding, and how long a merged table lives.
// What the hooks do is tested where they run.
#include "support/meta_types.h"
#include "tests/support/world.h"

namespace kelm::test {

namespace {

/// A hook that claims a kind that does not exist.
class stray_hook final : public semantic {
public:
    explicit stray_hook(int kind) : kind_(kind) {}
    int type() const override { return kind_; }
    u32 id() const override { return 1; }

private:
    int kind_;
};

class semantics_of_types : public meta_types {
protected:
    static constexpr int create = obj_create_semantic::kind;
    static constexpr int erase = obj_delete_semantic::kind;

    static const semantic_table* merged(meta_object& type) {
        return dynamic_cast<meta_object_base&>(type).merged_semantics();
    }
    /// \returns the ids of the hooks of a kind; empty when the type says that there is none
    static ids hooks(const meta_object& type, int kind) {
        std::vector<shared_ptr<semantic>> list;
        ids out;
        if (type.semantics_of_kind(kind, list))
            for (const auto& hook : list) out.push_back(hook->id());
        return out;
    }
    static semantic* only_hook(const meta_object& type, int kind) {
        std::vector<shared_ptr<semantic>> list;
        return type.semantics_of_kind(kind, list) && list.size() == 1 ? list[0].get() : nullptr;
    }

    meta_object& base = add_type(10);
    meta_object& derived = add_type_of(base, 11);
};

TEST_F(semantics_of_types, a_type_without_hooks_has_no_table) {
    EXPECT_EQ(merged(base), nullptr);
    EXPECT_EQ(merged(derived), nullptr);
    std::vector<shared_ptr<semantic>> list{shared_ptr<semantic>(new create_probe(1))};
    EXPECT_FALSE(derived.semantics_of_kind(create, list));
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(derived.find_semantic(1), nullptr);
}

TEST_F(semantics_of_types, a_hook_belongs_to_the_type_that_took_it) {
    int deaths = 0;
    EXPECT_TRUE(base.add_semantic(new create_probe(1, &deaths)));
    EXPECT_EQ(hooks(base, create), ids{1});
    EXPECT_EQ(deaths, 0);
    application.clear();
    EXPECT_EQ(deaths, 1);
}

TEST_F(semantics_of_types, a_refused_hook_stays_with_the_caller) {
    int deaths = 0;
    {
        EXPECT_TRUE(base.add_semantic(new create_probe(1)));
        create_probe second(1, &deaths); // on the stack: it would not survive being owned
        EXPECT_FALSE(base.add_semantic(&second));
        EXPECT_EQ(deaths, 0);
        EXPECT_EQ(hooks(base, create), ids{1});
        EXPECT_NE(only_hook(base, create), &second);
    }
    EXPECT_EQ(deaths, 1);
}

TEST_F(semantics_of_types, a_kind_out_of_range_and_null_are_refused) {
    listener hears(base);
    for (const int kind : {-1, 45, 1000}) {
        stray_hook hook(kind);
        EXPECT_FALSE(base.add_semantic(&hook)) << kind;
    }
    EXPECT_FALSE(base.add_semantic(nullptr));
    EXPECT_EQ(merged(base), nullptr);
    EXPECT_EQ(hears.told, 0);
}

TEST_F(semantics_of_types, a_hook_that_only_claims_a_kind_is_refused) {
    stray_hook hook(create);
    EXPECT_FALSE(base.add_semantic(&hook));
    EXPECT_EQ(merged(base), nullptr);
}

TEST_F(semantics_of_types, an_id_counts_for_each_kind_alone) {
    EXPECT_TRUE(base.add_semantic(new delete_probe(1)));
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    EXPECT_EQ(hooks(base, create), ids{1});
    EXPECT_EQ(hooks(base, erase), ids{1});
    EXPECT_EQ(base.find_semantic(1)->type(), create) << "the lower kind is found first";
}

TEST_F(semantics_of_types, a_kind_out_of_range_has_no_hooks) {
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    std::vector<shared_ptr<semantic>> list;
    EXPECT_FALSE(base.semantics_of_kind(-1, list));
    EXPECT_FALSE(base.semantics_of_kind(45, list));
    EXPECT_FALSE(base.semantics_of_kind(erase, list));
}

TEST_F(semantics_of_types, inherited_hooks_come_first) {
    meta_object& second_base = add_type(9);
    derived.add_base_type(&second_base);
    EXPECT_TRUE(derived.add_semantic(new create_probe(1)));
    EXPECT_TRUE(second_base.add_semantic(new create_probe(2)));
    EXPECT_TRUE(base.add_semantic(new create_probe(3)));
    EXPECT_EQ(hooks(derived, create), (ids{3, 2, 1}));
    EXPECT_EQ(derived.find_semantic(2)->id(), 2U);
    EXPECT_EQ(hooks(base, create), ids{3});
}

TEST_F(semantics_of_types, keeps_the_hook_of_the_base_when_ids_are_equal) {
    auto* const above = new create_probe(1);
    EXPECT_TRUE(base.add_semantic(above));
    EXPECT_TRUE(derived.add_semantic(new create_probe(1))) << "own hooks are all that counts";
    EXPECT_EQ(only_hook(derived, create), above);
    meta_property* const own = derived.add_property(5);
    base.add_property(5);
    EXPECT_EQ(derived.find_property(5), own) << "with properties it is the other way round";
}

TEST_F(semantics_of_types, excluding_the_inherited_hook_lets_the_own_one_through) {
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    auto* const own = new create_probe(1);
    EXPECT_TRUE(derived.add_semantic(own));
    base.exclude_semantic(1);
    EXPECT_EQ(only_hook(derived, create), own);
}

TEST_F(semantics_of_types, an_excluded_hook_stays_with_the_base) {
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    EXPECT_TRUE(base.add_semantic(new delete_probe(1)));
    EXPECT_TRUE(base.add_semantic(new create_probe(2)));
    meta_object& grandchild = add_type_of(derived, 12);
    EXPECT_EQ(hooks(grandchild, create), (ids{1, 2}));
    base.exclude_semantic(1);
    EXPECT_TRUE(base.is_semantic_excluded(1));
    EXPECT_FALSE(derived.is_semantic_excluded(1));
    EXPECT_EQ(hooks(base, create), (ids{1, 2}));
    EXPECT_EQ(hooks(derived, create), ids{2});
    EXPECT_EQ(hooks(grandchild, create), ids{2});
    EXPECT_TRUE(hooks(grandchild, erase).empty()) << "the id is excluded in every kind";
    base.exclude_semantic(2);
    EXPECT_EQ(merged(derived), nullptr) << "nothing is left";
}

TEST_F(semantics_of_types, later_hooks_reach_types_that_were_read_already) {
    EXPECT_EQ(merged(derived), nullptr);
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    EXPECT_EQ(hooks(derived, create), ids{1});
    EXPECT_TRUE(base.add_semantic(new create_probe(2)));
    EXPECT_EQ(hooks(derived, create), (ids{1, 2}));
    derived.remove_base_type(&base);
    EXPECT_EQ(merged(derived), nullptr);
}

TEST_F(semantics_of_types, what_was_read_while_it_was_told_is_forgotten) {
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    listener hears(derived);
    ids seen;
    hears.meanwhile = [&] { seen = hooks(derived, create); };
    EXPECT_TRUE(base.add_semantic(new create_probe(2)));
    EXPECT_EQ(seen, ids{1});
    EXPECT_EQ(hooks(derived, create), (ids{1, 2}));
    create_probe again(2);
    EXPECT_FALSE(base.add_semantic(&again));
    EXPECT_EQ(hears.told, 2) << "told before it was tried";
}

TEST_F(semantics_of_types, where_there_was_no_hook_a_later_one_is_found) {
    meta_object& second = add_type(9);
    EXPECT_EQ(merged(derived), nullptr);
    EXPECT_TRUE(derived.add_semantic(new create_probe(1)));
    EXPECT_EQ(hooks(derived, create), ids{1});
    meta_object& other = add_type(8);
    EXPECT_EQ(merged(other), nullptr);
    EXPECT_TRUE(second.add_semantic(new create_probe(2)));
    other.add_base_type(&second);
    EXPECT_EQ(hooks(other, create), ids{2});
}

TEST_F(semantics_of_types, a_merged_table_is_made_once) {
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    EXPECT_EQ(merged(derived), merged(derived));
}

TEST_F(semantics_of_types, an_old_table_stays_good_for_those_who_borrowed_it) {
    EXPECT_TRUE(base.add_semantic(new create_probe(1)));
    const semantic_table* const old = merged(derived);
    EXPECT_TRUE(base.add_semantic(new create_probe(2)));
    EXPECT_TRUE(derived.add_semantic(new create_probe(3)));
    derived.remove_base_type(&base);
    EXPECT_NE(merged(derived), old);
    ASSERT_NE(old->of<obj_create_semantic>(), nullptr);
    EXPECT_EQ(old->of<obj_create_semantic>()->size(), 1U);
    EXPECT_EQ(old->find(1)->id(), 1U);
}

TEST_F(semantics_of_types, the_process_answers_for_the_types_of_the_application) {
    // Nothing is added to the meta model of the process: it keeps what it is given, for all other tests as well.
    started_framework();
    meta_object* const generic = kelm::application_meta_model().find_meta_object(type_id::generic_object);
    ASSERT_NE(application_semantics(type_id::generic_object), nullptr);
    EXPECT_EQ(application_semantics(type_id::generic_object), merged(*generic));
    EXPECT_EQ(application_semantics(types::hooked),
              merged(*kelm::application_meta_model().find_type(types::hooked)));
    EXPECT_NE(application_semantics(types::hooked), application_semantics(types::thing));
    EXPECT_EQ(application_semantics(type_id::library)->find(8)->id(), 8U);
    EXPECT_EQ(application_semantics(48123), nullptr) << "unknown";
}

} // namespace

} // namespace kelm::test
