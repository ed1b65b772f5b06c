// What comes into a snapshot along with an object: by its values, by rules, and values that it only inherits.
// The object's own part is copying_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/counted_value.h"

#include <stdexcept>

namespace kelm::test {
namespace {

class pulling : public copy_paste_world {
protected:
    std::string shape() const { return shape_of(*clip); }
    void rule(u32 type, std::function<bool(const object*, std::vector<object*>&)> what) {
        on_copy.on_call = std::move(what);
        clip->set_copy_rule(type, scripted_copy_rule{on_copy});
    }
};

TEST_F(pulling, takes_a_target_along_where_the_property_says_so) {
    object* const a = linked("a");
    set(a, props::pulled, thing("x"));
    set(a, props::left_behind, thing("not wanted"));
    set(a, props::reference, thing("not said"));
    copy(a);
    EXPECT_EQ(shape(), "x *a") << "it comes while its referrer is being copied, and is not selected";
}

TEST_F(pulling, needs_a_property_that_the_type_declares) {
    object* const a = linked("a");
    object* const b = thing("b");
    set(a, 4711, b);
    set(thing("c"), props::pulled, b); // things have no such property
    copy(a);
    copy(root->child_at(types::thing, 1));
    EXPECT_EQ(shape(), "*a *c");
}

TEST_F(pulling, goes_on_from_what_was_pulled) {
    object* const a = linked("a");
    object* const b = linked("b");
    object* const c = linked("c");
    set(a, props::pulled, b);
    set(b, props::pulled, c);
    part("child of c", c);
    copy(a);
    EXPECT_EQ(shape(), "c(child of c) b *a");
}

TEST_F(pulling, goes_by_property_id_before_children) {
    object* const a = linked("a");
    object* const child = linked("child", a);
    set(a, props::pulled_again, thing("third"));
    set(a, props::pulled, thing("first"));
    set(a, props::pulled_list, {thing("second")});
    set(child, props::pulled, thing("fourth"));
    copy(a);
    EXPECT_EQ(shape(), "first second third fourth *a(child)");
}

TEST_F(pulling, of_a_circle_ends) {
    object* const a = linked("a");
    object* const b = linked("b");
    set(a, props::pulled, b);
    set(b, props::pulled, a);
    set(b, props::pulled_again, b);
    copy(a);
    EXPECT_EQ(shape(), "b *a");
    EXPECT_FALSE(copy(b));
}

TEST_F(pulling, puts_a_target_below_its_owner_when_that_is_in_the_snapshot) {
    object* const owner = thing("owner");
    object* const a = linked("a");
    copy(owner);
    set(a, props::pulled, part("late", owner));
    copy(a);
    EXPECT_EQ(shape(), "*owner(late) *a");
}

TEST_F(pulling, leaves_a_selected_target_selected) {
    object* const a = linked("a");
    object* const x = thing("x");
    set(a, props::pulled, x);
    copy(x);
    copy(a);
    EXPECT_EQ(shape(), "*x *a");
    object* const b = linked("b");
    object* const y = thing("y");
    set(b, props::pulled, y);
    copy(b);
    EXPECT_FALSE(copy(y)) << "too late to select it";
    EXPECT_EQ(shape(), "*x *a y *b");
}

TEST_F(pulling, of_a_child_by_its_owner_lists_it_once_in_its_place) {
    object* const a = linked("a");
    part("b", a);
    object* const c = part("c", a);
    part("d", a);
    set(a, props::pulled, c);
    copy(a);
    EXPECT_EQ(shape(), "*a(b c d)");
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b c d)");
}

TEST_F(pulling, of_an_owner_by_its_child_lists_the_child_once) {
    object* const a = thing("a");
    part("b", a);
    object* const c = linked("c", a);
    set(c, props::pulled, a);
    EXPECT_TRUE(copy(c));
    EXPECT_EQ(shape(), "a(b *c)");
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b c)");
}

TEST_F(pulling, of_a_grandchild_and_an_uncle_keeps_the_tree) {
    object* const a = linked("a");
    object* const b = linked("b", a);
    object* const c = linked("c", b);
    object* const d = linked("d", a);
    set(a, props::pulled, c);
    set(c, props::pulled, d);
    copy(a);
    EXPECT_EQ(shape(), "*a(b(c) d)");
    clip = fw.create_copier(model);
    set(c, props::pulled, a);
    copy(c);
    EXPECT_EQ(shape(), "a(b(*c) d)");
}

TEST_F(pulling, of_a_list_goes_in_its_order_over_null_and_what_is_no_reference) {
    object* const a = linked("a");
    object* const x = thing("x");
    object* const y = thing("y");
    vector_property list;
    auto* const inner = new vector_property;
    inner->elements = {new property<object*>{thing("inside")}};
    list.elements = {new property<object*>{nullptr}, new property<object*>{y}, new property<int>{1}, inner,
                     new property<object*>{x}};
    set(a, props::pulled_list, list);
    copy(a);
    EXPECT_EQ(shape(), "y x *a");
}

TEST_F(pulling, keeps_what_is_hidden_behind_an_element_that_is_there) {
    object* const a = linked("a");
    object* const x = thing("x");
    object* const y = thing("y");
    object* const z = thing("z");
    copy(y);
    set(a, props::pulled_list, {x, y, z});
    copy(a);
    EXPECT_EQ(shape(), "*y x *a") << "the walk ends at the first that is there";
    object* const b = linked("b");
    set(b, props::pulled_list, {z, z, thing("w")});
    copy(b);
    EXPECT_EQ(shape(), "*y x *a z *b") << "one that comes twice hides the rest as well";
}

TEST_F(pulling, looks_at_what_a_value_is_and_not_at_what_was_declared) {
    object* const a = linked("a");
    object* const x = thing("x");
    set(a, props::pulled, {x}); // a list where a reference was declared
    set(a, props::pulled_list, text("text"));
    set(a, props::pulled_again, number(1));
    copy(a);
    EXPECT_EQ(shape(), "x *a");
}

TEST_F(pulling, by_rule_takes_what_it_says_in_that_order) {
    object* const a = thing("a");
    object* const x = thing("x");
    object* const y = part("y");
    rule(types::thing, [&](const object* of, std::vector<object*>& out) {
        if (of == a) out = {nullptr, y, y, x, a};
        return true;
    });
    copy(a);
    EXPECT_EQ(shape(), "y x *a");
    EXPECT_EQ(on_copy.take(), "a\nx\n") << "each object of the type is asked about, once";
}

TEST_F(pulling, by_rule_takes_nothing_when_it_says_so) {
    object* const x = thing("x");
    rule(types::part, [&](const object*, std::vector<object*>& out) {
        out = {x};
        return false;
    });
    copy(part("a"));
    EXPECT_EQ(shape(), "*a");
}

TEST_F(pulling, by_rule_comes_behind_values_and_before_children) {
    object* const a = linked("a");
    object* const b = linked("b", a);
    set(a, props::pulled, thing("by value"));
    set(b, props::pulled, thing("by child"));
    object* const x = thing("by rule");
    rule(types::linked, [&](const object* of, std::vector<object*>& out) {
        if (of == a) out.push_back(x);
        return true;
    });
    copy(a);
    EXPECT_EQ(shape(), "by value by rule by child *a(b)");
}

TEST_F(pulling, by_rule_is_for_one_type_and_for_none_derived_from_it) {
    rule(types::thing, [](const object*, std::vector<object*>&) { return true; });
    copy(make(types::special_thing, "special"));
    EXPECT_EQ(on_copy.take(), "");
}

TEST_F(pulling, by_rule_may_copy_by_itself_and_neither_paste_nor_read) {
    object* const a = thing("a");
    object* const b = part("b", a);
    object* const c = part("c");
    rule(types::thing, [&](const object*, std::vector<object*>&) {
        EXPECT_TRUE(copy(b));
        EXPECT_TRUE(copy(c));
        EXPECT_FALSE(copy(a));
        EXPECT_FALSE(paste());
        std::istringstream in{"nothing"};
        EXPECT_FALSE(clip->read(in));
        return true;
    });
    EXPECT_TRUE(copy(a));
    EXPECT_EQ(shape(), "*c *a(*b)");
}

TEST_F(pulling, by_a_rule_that_throws_leaves_a_snapshot_that_works) {
    object* const a = linked("a");
    object* const early = thing("early", a);
    object* const child = thing("child", a);
    set(a, props::pulled, thing("pulled"));
    copy(early);
    rule(types::thing, [&](const object* of, std::vector<object*>&) {
        if (of == child) throw std::runtime_error("rule");
        return true;
    });
    EXPECT_THROW(copy(a), std::runtime_error);
    EXPECT_EQ(shape(), "*early") << "nothing of the call stays, and what was there is where it was";
    EXPECT_TRUE(copy(part("p")));
    const std::string bytes = bytes_of(*clip);
    EXPECT_EQ(shape(), "*early *p");
    const shared_ptr<copier> again = fw.create_copier(model);
    std::istringstream in{bytes};
    EXPECT_TRUE(again->read(in));
    EXPECT_EQ(bytes_of(*again), bytes);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "early p");
    on_copy.on_call = nullptr;
    EXPECT_TRUE(copy(a));
    EXPECT_EQ(shape(), "*p pulled *a(*early child)") << "another time it goes well";
}

class extra_values : public pulling {
protected:
    extra_values() {
        set(base, props::text, text("inherited"));
        add_base(heir, base);
    }
    std::map<u32, std::string> extras_of(const object* what) const {
        const snapshot all = contents_of(*clip);
        const snapshot_node* const node = find_node(all.top_nodes, what->id());
        return node ? node->extra_properties : std::map<u32, std::string>{};
    }
    object* const base = linked("base");
    object* const heir = linked("heir");
};

TEST_F(extra_values, are_effective_values_that_the_object_does_not_define) {
    clip->add_extra_property(types::linked, props::text);
    clip->add_extra_property(types::linked, props::text);
    clip->add_extra_property(types::linked, props::number); // nobody has one
    copy(heir);
    copy(base);
    EXPECT_EQ(extras_of(heir), (std::map<u32, std::string>{{props::text, "'inherited'"}}));
    EXPECT_TRUE(extras_of(base).empty()) << "it defines the value itself";
}

TEST_F(extra_values, are_taken_from_the_default_of_a_type_too) {
    begin();
    ASSERT_TRUE(model->add_user_defined_property(types::linked, "Colour", data_type::string, "", 50123));
    model->meta_model()
        ->find_meta_object(types::linked)
        ->find_property(50123)
        ->set_attribute_value(attribute_id::default_value, text("red"));
    end();
    ASSERT_EQ(as_text(heir->get_property(50123)), "red");
    clip->add_extra_property(types::linked, 50123);
    copy(heir);
    EXPECT_EQ(extras_of(heir), (std::map<u32, std::string>{{50123, "'red'"}}));
}

TEST_F(extra_values, are_of_one_type_alone) {
    clip->add_extra_property(types::hooked, props::text);
    copy(heir);
    EXPECT_TRUE(extras_of(heir).empty());
}

TEST_F(extra_values, pull_their_targets_along) {
    set(base, props::pulled_again, thing("last"));
    set(base, props::pulled, thing("x"));
    set(base, props::reference, thing("stays"));
    for (const u32 id : {props::pulled_again, props::pulled, props::reference})
        clip->add_extra_property(types::linked, id);
    set(heir, props::pulled_list, {thing("own")});
    copy(heir);
    EXPECT_EQ(shape(), "own last x *heir") << "behind its own values, in the order of asking for them";
    EXPECT_EQ(extras_of(heir).size(), 3U);
}

TEST_F(extra_values, of_a_hook_are_taken_and_freed) {
    counted_value::enter();
    const long before = counted_value::alive;
    hooks.on<post_prop_get_semantic>([](hook_call& call) {
        if (call.numbers[0] == props::real && !*call.replaceable) *call.replaceable = new counted_value{5};
        return true;
    });
    clip->add_extra_property(types::linked, props::real);
    copy(heir);
    EXPECT_EQ(extras_of(heir), (std::map<u32, std::string>{{props::real, "'counted 5'"}}));
    EXPECT_EQ(counted_value::alive, before + 1) << "the snapshot has one";
    clip.reset();
    EXPECT_EQ(counted_value::alive, before);
}

} // namespace
} // namespace kelm::test
