// What a snapshot takes of an object, and the shape that it has.
// What values and rules pull along is pulling_test; how a snapshot is stored, approved_snapshots_test.
#include "tests/copier/copy_paste_world.h"

#include <algorithm>

namespace kelm::test {
namespace {

class copying : public copy_paste_world {
protected:
    std::string shape() const { return shape_of(*clip); }
    snapshot_node only_node() const {
        const snapshot all = contents_of(*clip);
        EXPECT_EQ(all.top_nodes.size(), 1U);
        return all.top_nodes.empty() ? snapshot_node{} : all.top_nodes[0];
    }
    std::string selection() const {
        std::vector<std::pair<u32, u32>> chosen;
        clip->selected_objects(chosen);
        std::string out;
        for (const auto& [type, id] : chosen)
            out += std::to_string(type) + "#" + std::to_string(id - first_id) + " ";
        return out;
    }
    const u32 first_id = root->id();
};

TEST_F(copying, of_nothing_is_refused) {
    EXPECT_FALSE(copy(nullptr));
    EXPECT_EQ(shape(), "");
}

TEST_F(copying, takes_type_id_owner_and_position) {
    object* const owner = thing("owner");
    part("first", owner);
    thing("of another type", owner);
    object* const second = part("second", owner);
    copy(second);
    const snapshot_node node = only_node();
    EXPECT_EQ(node.type, types::part);
    EXPECT_EQ(node.id, second->id());
    EXPECT_EQ(node.owner_id, owner->id());
    EXPECT_EQ(node.position, 1U) << "counted within its type";
    EXPECT_TRUE(node.selected);
}

TEST_F(copying, takes_own_values_and_none_that_are_inherited) {
    object* const base = thing("base");
    object* const heir = thing("heir");
    set(base, props::text, text("inherited"));
    add_base(heir, base);
    set(heir, props::number, number(7));
    set(heir, 4711, text("undeclared"));
    copy(heir);
    EXPECT_EQ(only_node().properties,
              (std::map<u32, std::string>{
                  {props::name, "'heir'"}, {props::number, "'7'"}, {4711, "'undeclared'"}}));
    EXPECT_TRUE(only_node().extra_properties.empty());
}

TEST_F(copying, takes_references_as_source_ids_also_inside_lists) {
    object* const a = thing("a");
    object* const b = thing("b");
    const std::string to_b = "->" + std::to_string(b->id());
    set(a, props::reference, b);
    vector_property list;
    auto* const inner = new vector_property;
    inner->elements = {new property<object*>{b}, new property<object*>{nullptr}};
    list.elements = {new property<int>{1}, inner, new property<object*>{a}};
    set(a, props::list, list);
    copy(a);
    EXPECT_EQ(only_node().properties[props::reference], to_b);
    EXPECT_EQ(only_node().properties[props::list],
              "['1'|[" + to_b + "|->0|]|->" + std::to_string(a->id()) + "|]");
    EXPECT_EQ(shape(), "*a") << "what is referred to stays behind";
}

TEST_F(copying, takes_a_null_reference_as_source_id_0) {
    object* const a = thing("a");
    set(a, props::reference, nullptr);
    copy(a);
    EXPECT_EQ(only_node().properties[props::reference], "->0");
}

TEST_F(copying, takes_bases_in_order_and_marks) {
    object* const a = thing("a");
    object* const b = thing("b");
    object* const c = thing("c");
    add_base(a, c);
    add_base(a, b);
    begin();
    a->set_property_not_inheritable(props::text, true);
    a->set_property_not_inheritable(props::flag, true);
    end();
    copy(a);
    EXPECT_EQ(only_node().inherits_from, (std::vector<u32>{c->id(), b->id()}));
    EXPECT_EQ(only_node().not_inheritable, a->not_inheritable_properties());
    EXPECT_EQ(only_node().not_inheritable.size(), 2U);
}

TEST_F(copying, takes_children_in_their_order_with_theirs) {
    object* const a = thing("a");
    object* const b = part("b", a);
    thing("c", a);
    part("d", a);
    part("e", b);
    begin();
    a->set_child_position(b, 1);
    end();
    copy(a);
    EXPECT_EQ(shape(), "*a(c d b(e))");
    const snapshot all = contents_of(*clip);
    const snapshot_node& node_of_b = *find_node(all.top_nodes, b->id());
    EXPECT_EQ(node_of_b.position, 1U);
    EXPECT_EQ(node_of_b.owner_id, a->id());
    EXPECT_FALSE(node_of_b.selected);
}

TEST_F(copying, of_the_model_itself_has_no_owner) {
    part("inner", thing("a"));
    EXPECT_TRUE(copy(root));
    const snapshot_node node = only_node();
    EXPECT_EQ(node.type, type_id::model);
    EXPECT_EQ(node.owner_id, 0U);
    EXPECT_EQ(node.position, 0U);
    EXPECT_EQ(shape_of(node.children), "a(inner)");
}

TEST_F(copying, of_one_object_twice_leaves_one_node) {
    object* const a = thing("a");
    EXPECT_TRUE(copy(a, false));
    EXPECT_FALSE(copy(a, true));
    EXPECT_EQ(shape(), "a") << "the mark stays as it was";
    object* const b = thing("b");
    EXPECT_TRUE(copy(b, true));
    EXPECT_FALSE(copy(b, false));
    EXPECT_EQ(shape(), "a *b");
}

TEST_F(copying, of_a_child_before_its_owner_moves_it_below_and_keeps_its_mark) {
    object* const a = thing("a");
    object* const b = thing("b", a);
    object* const c = part("c", a);
    EXPECT_TRUE(copy(c));
    EXPECT_EQ(shape(), "*c");
    EXPECT_TRUE(clip->has_selected_object(c->id()));
    EXPECT_TRUE(copy(a, false));
    EXPECT_EQ(shape(), "a(b *c)");
    EXPECT_FALSE(clip->has_selected_object(c->id())) << "it is no top node any more";
    EXPECT_EQ(selection(), "");
    EXPECT_FALSE(copy(b));
    EXPECT_EQ(shape(), "a(b *c)");
}

TEST_F(copying, of_an_owner_before_its_child_refuses_the_child) {
    object* const a = thing("a");
    object* const b = part("b", a);
    EXPECT_TRUE(copy(a));
    EXPECT_FALSE(copy(b));
    EXPECT_EQ(shape(), "*a(b)");
    EXPECT_FALSE(clip->has_selected_object(b->id()));
}

TEST_F(copying, has_the_same_shape_whatever_comes_first) {
    object* const a = thing("a");
    object* const b = thing("b", a);
    object* const c = part("c", b);
    object* const d = part("d", b);
    std::vector<object*> all{a, b, c, d};
    std::ranges::sort(all);
    do {
        clip = fw.create_copier(model);
        for (object* each : all) copy(each, false);
        EXPECT_EQ(shape(), "a(b(c d))");
    } while (std::ranges::next_permutation(all).found);
}

TEST_F(copying, of_a_grandchild_waits_for_its_own_owner) {
    object* const a = thing("a");
    object* const b = thing("b", a);
    object* const c = part("c", b);
    copy(c);
    object* const other = part("other", a);
    copy(other);
    EXPECT_EQ(shape(), "*c *other");
    copy(b);
    EXPECT_EQ(shape(), "*other *b(*c)");
    copy(a);
    EXPECT_EQ(shape(), "*a(*b(*c) *other)");
}

TEST_F(copying, of_a_child_that_came_later_puts_it_last) {
    object* const a = thing("a");
    part("b", a);
    copy(a);
    object* const first = thing("first", a);
    EXPECT_TRUE(copy(first));
    EXPECT_EQ(shape(), "*a(b *first)");
    EXPECT_FALSE(clip->has_selected_object(first->id()));
}

TEST_F(copying, of_children_of_two_owners_in_turns_finds_their_positions) {
    object* const a = thing("a");
    object* const b = thing("b");
    std::vector<std::pair<object*, u32>> children; // with their positions
    for (u32 i = 0; i != 6; ++i)
        for (object* owner : {a, b}) {
            children.emplace_back(part("p", owner), i);
            children.emplace_back(thing("t", owner), i);
        }
    const auto expect_positions = [&] {
        clip = fw.create_copier(model);
        for (const auto& [child, at] : children) copy(child);
        const snapshot all = contents_of(*clip);
        ASSERT_EQ(all.top_nodes.size(), children.size());
        for (const auto& [child, at] : children)
            EXPECT_EQ(find_node(all.top_nodes, child->id())->position, at);
    };
    expect_positions();
    std::ranges::reverse(children);
    expect_positions();
    std::rotate(children.begin(), children.begin() + 7, children.end());
    std::swap(children[2], children[20]);
    expect_positions();
}

TEST_F(copying, of_children_that_move_meanwhile_finds_where_they_are_now) {
    object* const a = thing("a");
    object* const b = thing("b");
    for (const char* name : {"0", "1", "2", "3", "4"}) {
        part(name, a);
        part(name, b);
    }
    const std::vector<object*> of_a = a->children();
    const std::vector<object*> of_b = b->children();
    const auto expect_at = [&](object* child, u32 position) {
        EXPECT_TRUE(copy(child));
        EXPECT_EQ(find_node(contents_of(*clip).top_nodes, child->id())->position, position);
    };
    expect_at(of_a[4], 4);
    expect_at(of_b[4], 4);
    expect_at(of_a[2], 2); // all positions of both are known now
    expect_at(of_b[2], 2);
    begin();
    a->set_child_position(of_a[3], 0);
    fw.delete_object(of_b[0]);
    end();
    expect_at(of_a[3], 0);
    expect_at(of_b[3], 2);
    expect_at(of_a[0], 1);
    expect_at(of_b[1], 0);
    expect_at(of_a[1], 2);
}

TEST_F(copying, holds_what_was_when_it_was_copied) {
    object* const a = thing("a");
    object* const b = part("b", a);
    copy(a);
    const std::string before = bytes_of(*clip);
    set(a, props::text, text("later"));
    begin();
    fw.delete_object(b);
    fw.delete_object(a);
    end();
    model->clear_history();
    EXPECT_EQ(bytes_of(*clip), before);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b)");
    EXPECT_EQ(own("a", props::text), "none");
}

TEST_F(copying, changes_nothing_and_records_nothing) {
    object* const a = linked("a");
    set(a, props::pulled, thing("b"));
    const std::string before = dump();
    clip->set_copy_rule(types::linked, scripted_copy_rule{on_copy});
    clip->add_extra_property(types::linked, props::text);
    copy_all({a});
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(model->message_count(), 0U);
    EXPECT_FALSE(model->is_modified());
}

TEST_F(copying, takes_what_an_open_transaction_has_made) {
    begin();
    object* const a = fw.create_object(types::thing, root);
    a->set_property(props::name, text("fresh"));
    EXPECT_TRUE(copy(a));
    model->rollback_transaction();
    EXPECT_EQ(shape(), "*fresh");
}

TEST_F(copying, takes_objects_of_another_model_as_well) {
    far(types::thing, "x");
    object* const theirs = far(types::part, "theirs", far(types::thing, "owner"));
    EXPECT_TRUE(copy(theirs));
    EXPECT_EQ(shape(), "*theirs");
    GUID own{};
    model->model_id(own);
    EXPECT_TRUE(clip->source_model_id() == own) << "that of the model it was made for";
}

TEST_F(copying, knows_its_selected_top_nodes) {
    object* const a = thing("a");
    object* const b = part("b");
    object* const c = part("c");
    copy(c, true);
    copy(a, false);
    copy(b, true);
    std::vector<std::pair<u32, u32>> chosen{{1, 2}};
    clip->selected_objects(chosen);
    EXPECT_EQ(chosen,
              (std::vector<std::pair<u32, u32>>{{1, 2}, {types::part, c->id()}, {types::part, b->id()}}))
        << "appended";
    EXPECT_TRUE(clip->has_selected_object(c->id()));
    EXPECT_FALSE(clip->has_selected_object(a->id()));
    EXPECT_FALSE(clip->has_selected_object(4711));
}

TEST_F(copying, says_where_it_can_be_pasted) {
    object* const into = far(types::thing, "into");
    EXPECT_FALSE(clip->can_paste_into(into)) << "nothing to paste";
    copy(make(types::hooked_part, "nobody owns its type"));
    EXPECT_FALSE(clip->can_paste_into(into));
    copy(part("p"), false);
    EXPECT_TRUE(clip->can_paste_into(into)) << "one of them is enough, selected or not";
    EXPECT_TRUE(clip->can_paste_into(far_root));
    EXPECT_FALSE(clip->can_paste_into(far(types::hooked_part, "has no children")));
    EXPECT_FALSE(clip->can_paste_into(nullptr));
}

TEST_F(copying, says_where_it_can_be_pasted_by_top_nodes_alone) {
    object* const a = make(types::hooked_part, "a");
    part("child", a);
    copy(a);
    EXPECT_FALSE(clip->can_paste_into(far_root));
}

TEST_F(copying, carries_numbers_for_the_application) {
    EXPECT_EQ(clip->user_value(), 0U);
    EXPECT_TRUE(clip->user_ids().empty());
    clip->set_user_value(7);
    for (const u32 each : {3U, 1U, 3U}) clip->add_user_id(each);
    EXPECT_EQ(clip->user_value(), 7U);
    EXPECT_EQ(clip->user_ids(), (std::vector<u32>{3, 1, 3}));
    EXPECT_TRUE(clip->destination_model_id() == GUID{});
}

TEST_F(copying, owns_clones_of_rules_and_frees_them) {
    for (int round = 0; round != 2; ++round) { // the second ones take the places of the first
        clip->set_copy_rule(types::thing, scripted_copy_rule{on_copy});
        clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
        clip->set_property_paste_rule(types::thing, scripted_value_rule{on_value});
        clip->set_object_order_rule(types::thing, types::part, scripted_order_rule{on_order});
        clip->set_end_transaction_rule(scripted_end_rule{on_end});
    }
    clip->set_paste_rule(types::part, scripted_paste_rule{on_paste});
    clip->set_object_order_rule(types::thing, types::thing, scripted_order_rule{on_order});
    const auto alive = [&] {
        return std::vector<int>{on_copy.alive, on_paste.alive, on_value.alive, on_order.alive, on_end.alive};
    };
    EXPECT_EQ(alive(), (std::vector<int>{1, 2, 1, 2, 1}));
    copy(thing("a"));
    EXPECT_TRUE(paste());
    EXPECT_EQ(alive(), (std::vector<int>{1, 2, 1, 2, 1}));
    clip.reset();
    EXPECT_EQ(alive(), (std::vector<int>{0, 0, 0, 0, 0}));
}

} // namespace
} // namespace kelm::test
