// Many objects: deep, in long chains of references, and side by side.
// A snapshot of any size takes no stack.
#include "tests/copier/copy_paste_world.h"

namespace kelm::test {
namespace {

constexpr std::size_t many = 30000;
constexpr std::size_t deepest = 50000; // nothing that takes stack for each level survives that

class big_snapshots : public copy_paste_world {
protected:
    big_snapshots() {
        model->set_undo_levels(0);
        far_model->set_undo_levels(1);
    }

    std::size_t far_count() const {
        std::vector<u32> ids;
        return far_model->object_ids(ids);
    }
    /// Pastes, writes, reads, undoes.
    void expect_pasted(std::size_t count) {
        const std::string bytes = bytes_of(*clip);
        EXPECT_TRUE(paste());
        EXPECT_EQ(far_count(), count + 1);
        far_model->undo();
        EXPECT_EQ(far_count(), 1U);
        far_model->clear_history();
        std::istringstream in{bytes};
        clip = fw.create_copier(model);
        EXPECT_TRUE(clip->read(in));
        EXPECT_EQ(bytes_of(*clip), bytes);
        clip.reset();
    }
};

TEST_F(big_snapshots, of_a_deep_tree) {
    begin();
    object* const top = fw.create_object(types::thing, root);
    object* at = top;
    for (std::size_t i = 1; i != deepest; ++i) at = fw.create_object(types::thing, at);
    end();
    EXPECT_TRUE(copy(top));
    EXPECT_FALSE(copy(at));
    expect_pasted(deepest);
}

TEST_F(big_snapshots, of_a_deep_tree_from_below) {
    constexpr std::size_t some = 2000;
    begin();
    std::vector<object*> all{root};
    for (std::size_t i = 0; i != some; ++i) all.push_back(fw.create_object(types::thing, all.back()));
    end();
    for (std::size_t i = some; i != 0; --i) EXPECT_TRUE(copy(all[i]));
    EXPECT_EQ(contents_of(*clip).top_nodes.size(), 1U);
    expect_pasted(some);
}

TEST_F(big_snapshots, of_a_long_chain_of_references) {
    begin();
    std::vector<object*> all;
    for (std::size_t i = 0; i != deepest; ++i) {
        all.push_back(fw.create_object(types::linked, root));
        if (i != 0) all[i - 1]->set_property(props::pulled, reference(all[i]));
    }
    end();
    EXPECT_TRUE(copy(all[0]));
    EXPECT_FALSE(copy(all.back()));
    expect_pasted(deepest);
}

TEST_F(big_snapshots, of_a_long_chain_of_what_a_rule_says) {
    begin();
    std::vector<object*> all;
    for (std::size_t i = 0; i != deepest; ++i) all.push_back(fw.create_object(types::thing, root));
    end();
    on_copy.on_call = [&](const object* of, std::vector<object*>& out) {
        on_copy.heard.clear();
        const std::size_t at = of->id() - all[0]->id();
        if (at + 1 != deepest) out.push_back(all[at + 1]);
        return true;
    };
    clip->set_copy_rule(types::thing, scripted_copy_rule{on_copy});
    EXPECT_TRUE(copy(all[0]));
    expect_pasted(deepest);
}

TEST_F(big_snapshots, of_a_chain_through_children_and_references) {
    begin();
    std::vector<object*> all{fw.create_object(types::linked, root)};
    for (std::size_t i = 1; i != deepest; ++i) {
        all.push_back(fw.create_object(types::linked, i % 2 != 0 ? all.back() : root));
        if (i % 2 == 0) all[i - 1]->set_property(props::pulled, reference(all[i]));
    }
    end();
    EXPECT_TRUE(copy(all[0]));
    expect_pasted(deepest);
}

TEST_F(big_snapshots, of_many_siblings_below_their_owner) {
    begin();
    object* const owner = fw.create_object(types::thing, root);
    for (std::size_t i = 0; i != many; ++i) fw.create_object(i % 2 != 0 ? types::thing : types::part, owner);
    end();
    EXPECT_TRUE(copy(owner));
    expect_pasted(many + 1);
}

TEST_F(big_snapshots, of_many_siblings_one_by_one) {
    begin();
    std::vector<object*> all;
    for (std::size_t i = 0; i != many; ++i) all.push_back(fw.create_object(types::thing, root));
    end();
    for (std::size_t i = 0; i != many; i += 2) EXPECT_TRUE(copy(all[i]));
    for (std::size_t i = many; i-- != 0;) EXPECT_EQ(copy(all[i]), i % 2 != 0);
    expect_pasted(many);
}

TEST_F(big_snapshots, of_many_siblings_before_their_owner) {
    begin();
    object* const owner = fw.create_object(types::thing, root);
    std::vector<object*> all;
    for (std::size_t i = 0; i != many; ++i) all.push_back(fw.create_object(types::part, owner));
    end();
    for (object* each : all) EXPECT_TRUE(copy(each));
    EXPECT_TRUE(copy(owner));
    EXPECT_EQ(contents_of(*clip).top_nodes.size(), 1U);
    expect_pasted(many + 1);
}

TEST_F(big_snapshots, in_which_everything_waits) {
    begin();
    object* const last = fw.create_object(types::thing, root);
    std::vector<object*> all;
    for (std::size_t i = 0; i != many; ++i) {
        all.push_back(fw.create_object(types::thing, root));
        all.back()->set_property(props::reference, reference(last));
    }
    end();
    for (object* each : all) EXPECT_TRUE(copy(each));
    EXPECT_TRUE(copy(last));
    expect_pasted(many + 1);
}

TEST_F(big_snapshots, in_which_everything_is_put_off) {
    begin();
    std::vector<object*> all;
    for (std::size_t i = 0; i != many / 4; ++i) all.push_back(fw.create_object(types::thing, root));
    end();
    for (object* each : all) EXPECT_TRUE(copy(each));
    on_paste.on_call = [&](const paste_call& call) {
        on_paste.heard.clear();
        return call.is_last ? paste_action::create : paste_action::defer;
    };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    expect_pasted(many / 4);
}

TEST_F(big_snapshots, in_which_much_is_mapped) {
    far_model->begin_transaction("deep");
    object* const present = fw.create_object(types::thing, far_root);
    object* at = present;
    for (std::size_t i = 1; i != deepest; ++i) at = fw.create_object(types::thing, at);
    far_model->end_transaction();
    far_model->clear_history();
    copy(thing("a"));
    on_paste.target = present;
    on_paste.on_call = [](const paste_call&) { return paste_action::map_to_existing; };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    EXPECT_EQ(paste_one(), present);
    clip.reset();
}

} // namespace
} // namespace kelm::test
