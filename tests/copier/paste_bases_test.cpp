// Bases of pasted objects: found at once, waiting, missing, in circles.
// What is inherited through them is paste_values_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/stored_fields.h"

namespace kelm::test {
namespace {

class pasted_bases : public copy_paste_world {
protected:
    /// \returns the names of the bases of an object of the other model
    std::string bases(const std::string& name) const {
        const object* const heir = found(name);
        return heir ? names_of(heir->inherits_from_list(0)) : "no " + name;
    }
    /// The fields of a node behind its type and id, at the top, without values and children.
    static std::string node(u32 id, const std::vector<u32>& bases) {
        stored_fields out;
        out.word(types::hooked).word(id).word(1).word(0).byte(1);
        out.word(1)
            .word(props::name)
            .word(data_type::string)
            .text(std::string(1, static_cast<char>('a' + id)));
        out.word(0).word(static_cast<u32>(bases.size()));
        for (const u32 each : bases) out.word(each);
        return out.word(0).word(0).bytes();
    }
    /// Reads a snapshot of top nodes.
    void read(const std::vector<std::string>& nodes) {
        stored_fields head;
        for (int i = 0; i != 16; ++i) head.byte(1);
        head.word(0).word(0).word(static_cast<u32>(nodes.size()));
        std::string bytes = head.bytes();
        for (const std::string& each : nodes) bytes += each;
        std::istringstream in{bytes + stored_fields{}.word(0).bytes()};
        ASSERT_TRUE(clip->read(in));
    }
    object* const a = hooked("a");
    object* const b = hooked("b");
    object* const c = hooked("c");
};

TEST_F(pasted_bases, that_come_first_are_in_their_order) {
    add_base(c, b);
    add_base(c, a);
    copy_all({a, b, c});
    const std::string before = far_dump();
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("c"), "b a");
    EXPECT_EQ(broken_links(*far_model), "");
    expect_paste_undone_and_redone(before);
}

TEST_F(pasted_bases, that_come_later_are_added_behind_the_others) {
    add_base(b, c);
    add_base(b, a);
    copy_all({a, b, c});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("b"), "a c") << "the first of them was not there yet";
}

TEST_F(pasted_bases, that_come_later_keep_their_order_among_themselves) {
    add_base(a, c);
    add_base(a, b);
    copy_all({a, b, c});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("a"), "c b");
}

TEST_F(pasted_bases, may_be_owners_children_and_siblings) {
    object* const inner = hooked("inner", a);
    object* const innermost = hooked("innermost", inner);
    add_base(a, innermost);
    add_base(innermost, b);
    add_base(inner, innermost);
    copy_all({a, b});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("a"), "innermost");
    EXPECT_EQ(bases("inner"), "innermost");
    EXPECT_EQ(bases("innermost"), "b");
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(pasted_bases, outside_the_snapshot_are_left_out) {
    add_base(b, a);
    add_base(b, c);
    copy_all({b, c});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("b"), "c");
    EXPECT_TRUE(clip->paste(model, {root}, &pasted)) << "in the source model too";
    EXPECT_EQ(names_of(pasted[0]->inherits_from_list(0)), "c");
    EXPECT_NE(pasted[0]->inherits_from_at(0), c);
}

TEST_F(pasted_bases, are_added_before_values_are_set) {
    set(a, props::text, text("x"));
    set(b, props::text, text("x"));
    add_base(b, a);
    copy_all({a, b});
    EXPECT_TRUE(paste());
    EXPECT_FALSE(found("b")->defines_property(props::text));
}

TEST_F(pasted_bases, that_had_to_go_are_gone) {
    object* const d = linked("d");
    set(d, props::needed, thing("outside"));
    add_base(a, d);
    add_base(a, b);
    copy_all({a, d, b});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("a"), "b");
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(pasted_bases, that_are_deleted_meanwhile_are_left_out) {
    add_base(b, a);
    add_base(b, c);
    set(b, props::text, text("x"));
    copy_all({c, a, b});
    int made = 0;
    hooks.on<obj_create_semantic>([&](hook_call&) {
        if (++made == 3) fw.delete_object(found("a"));
        return true;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "c b");
    EXPECT_EQ(bases("b"), "c");
    EXPECT_EQ(own("b", props::text), "'x'");
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(pasted_bases, that_are_the_object_itself_are_left_out) {
    read({node(2, {2, 3}), node(3, {3, 3})});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("c"), "d");
    EXPECT_EQ(bases("d"), "");
}

TEST_F(pasted_bases, that_come_twice_are_one) {
    read({node(2, {3, 3}), node(3, {}), node(4, {3, 3})});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("c"), "d");
    EXPECT_EQ(bases("e"), "d");
}

TEST_F(pasted_bases, in_a_circle_fail_the_paste) {
    read({node(2, {3}), node(3, {2})});
    expect_failure();
    read({node(2, {3}), node(3, {4}), node(4, {2})});
    expect_failure();
}

TEST_F(pasted_bases, that_an_observer_refuses_end_the_node_and_not_the_paste) {
    add_base(b, a);
    set(b, props::text, text("x"));
    thing("child", b);
    copy_all({a, b, c});
    recorder ears; // gone before the model
    object* watched = nullptr;
    int made = 0;
    hooks.on<obj_create_semantic>([&](hook_call& call) {
        if (++made == 2) ears.watch(watched = call.at);
        return true;
    });
    ears.line = [&](message* what) {
        ears.answer = what->type() != message_type::inherits_add;
        return std::string{};
    };
    EXPECT_TRUE(paste());
    ASSERT_TRUE(watched);
    EXPECT_EQ(far_root->children().size(), 3U);
    EXPECT_EQ(as_text(watched->get_own_property(props::text)), "none");
    EXPECT_FALSE(watched->has_children()) << "neither values nor children";
    ASSERT_EQ(pasted.size(), 3U);
    EXPECT_EQ(pasted[1], watched) << "it stands for its node all the same";
    watched->detach(&ears);
}

TEST_F(pasted_bases, that_come_later_and_an_observer_refuses_fail_the_paste) {
    add_base(a, b);
    copy_all({a, b});
    const std::string before = far_dump();
    recorder ears;
    object* watched = nullptr;
    hooks.on<obj_create_semantic>([&](hook_call& call) {
        if (!watched) ears.watch(watched = call.at);
        return true;
    });
    ears.line = [&](message* what) {
        ears.answer = what->type() != message_type::inherits_add;
        return std::string{};
    };
    EXPECT_FALSE(paste());
    expect_untouched(before);
}

TEST_F(pasted_bases, of_what_is_being_given_another_object_follow_it) {
    add_base(b, a);
    copy_all({b, a});
    object* const present = far(types::hooked, "present");
    on_paste.target = present;
    on_paste.on_call = [](const paste_call& call) {
        return call.name() == "a" ? paste_action::map_to_existing : paste_action::create;
    };
    clip->set_paste_rule(types::hooked, scripted_paste_rule{on_paste});
    EXPECT_TRUE(paste());
    EXPECT_EQ(bases("b"), "present");
}

} // namespace
} // namespace kelm::test
