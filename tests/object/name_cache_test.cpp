// The names that objects keep, and that are given out while the mark is set.
// All other names are object_names_test.
#include "tests/support/world.h"
#include "util/object_names.h"
#include "util/process_state.h"
#include "util/scoped_mark.h"

#include <kelm/object_helpers.h>

namespace kelm::test {
namespace {

class name_cache_test : public world {
protected:
    ~name_cache_test() override { process().use_cached_object_names = false; }

    object* const top = thing("top");
    object* const below = part("below", top);
    object* const beside = thing("beside");

    /// \returns both forms of the name, which agree
    static std::string name_while_marked(const object* of) {
        const scoped_mark mark{process().use_cached_object_names};
        const std::string name = object_name(of);
        EXPECT_EQ(fast_unsafe_object_name(of), name);
        return name;
    }
};

TEST_F(name_cache_test, a_name_is_kept_only_on_request) {
    EXPECT_EQ(cached_name(*top), "");
    EXPECT_EQ(name_while_marked(top), "") << "before the first request";
    EXPECT_EQ(object_name(top), "top") << "without the mark";
}

TEST_F(name_cache_test, a_whole_tree_keeps_its_names) {
    root->set_property(props::name, text("model"));
    cache_names(*top);
    EXPECT_EQ(cached_name(*top), "top");
    EXPECT_EQ(cached_name(*below), "below");
    EXPECT_EQ(cached_name(*beside), "");
    cache_names(*root);
    EXPECT_EQ(name_while_marked(beside), "beside");
    EXPECT_EQ(name_while_marked(root), "model");
}

TEST_F(name_cache_test, keeps_old_names_while_the_mark_is_set) {
    cache_names(*root);
    top->set_property(props::name, text("renamed"));
    object* const late = thing("late");
    EXPECT_EQ(name_while_marked(top), "top");
    EXPECT_EQ(name_while_marked(late), "") << "made since";
    EXPECT_EQ(object_name(top), "renamed");
    cache_names(*root);
    EXPECT_EQ(name_while_marked(top), "renamed");
    EXPECT_EQ(name_while_marked(late), "late");
}

TEST_F(name_cache_test, keeps_the_names_of_the_deleted_while_the_mark_is_set) {
    cache_names(*root);
    begin();
    ASSERT_TRUE(fw.delete_object(below));
    end();
    EXPECT_EQ(name_while_marked(below), "below");
    EXPECT_EQ(object_name(below), "");
}

TEST_F(name_cache_test, nobody_has_no_name_with_the_mark_either) {
    cache_names(*root);
    EXPECT_EQ(name_while_marked(nullptr), "");
    const scoped_mark mark{process().use_cached_object_names};
    owner_owner_obj_sort_name_no_case order; // asks for owners that are not there
    EXPECT_TRUE(order.do_it(root, top)) << "the empty name of the model, and two points";
    EXPECT_FALSE(order.do_it(top, root));
}

TEST_F(name_cache_test, a_kept_name_is_given_out_as_it_lies_and_nothing_is_read) {
    object* const asked = hooked("asked");
    cache_names(*root);
    int reads = 0;
    hooks.on<pre_prop_get_semantic>([&](hook_call&) { return ++reads != 0; });
    const scoped_mark mark{process().use_cached_object_names};
    const std::string& one = fast_unsafe_object_name(asked);
    const std::string& two = fast_unsafe_object_name(top);
    EXPECT_EQ(one + two, "askedtop") << "no buffer that the second would overwrite";
    EXPECT_EQ(&one, &cached_name(*asked));
    EXPECT_EQ(reads, 0);
    hooks.clear();
}

TEST_F(name_cache_test, sorters_paths_and_references_use_kept_names) {
    beside->set_property(props::reference, reference(below));
    cache_names(*root);
    below->set_property(props::name, text("z"));
    top->set_property(props::name, text("y"));
    const scoped_mark mark{process().use_cached_object_names};
    obj_sort_name order;
    EXPECT_TRUE(order.do_it(below, top));
    EXPECT_EQ(object_full_path_name(below, nullptr, false), "top.below");
    EXPECT_EQ(as_text(beside->get_property(props::reference)), "below");
    EXPECT_EQ(child_by_name(root, "top", 0, false), top);
    EXPECT_FALSE(obj_filter_name_and_type(types::part, "below").do_it(below));
}

TEST_F(name_cache_test, what_hooks_supply_is_kept_and_so_are_children_that_they_make) {
    object* const lazy = hooked("lazy");
    hooks.on<post_prop_get_semantic>([](hook_call& call) {
        *call.replaceable = new property<std::string>("supplied");
        return true;
    });
    object* made = nullptr;
    hooks.on<pre_children_get_semantic>([&](hook_call& call) {
        if (!made) (made = fw.create_object(types::part, call.at))->set_property(props::name, text("made"));
        return true;
    });
    cache_names(*root);
    ASSERT_TRUE(made);
    EXPECT_EQ(cached_name(*lazy), "supplied");
    EXPECT_EQ(cached_name(*made), "made");
    hooks.clear();
}

TEST_F(name_cache_test, survives_a_hook_that_deletes_what_is_still_to_come) {
    model->set_undo_levels(0);
    object* const first = hooked("first");
    object* const last = make(types::hooked_part, "last"); // behind the first, and with children to come
    part("below the last", last);
    hooks.on<pre_prop_get_semantic>([&](hook_call& call) {
        if (call.at == first && last->state() == state::normal) fw.delete_object_transacted(last);
        return true;
    });
    cache_names(*root);
    EXPECT_EQ(cached_name(*first), "first");
    EXPECT_EQ(last->state(), state::deleted);
    hooks.clear();
}

TEST_F(name_cache_test, trees_deeper_than_the_stack_keep_their_names) {
    constexpr int levels = 100000;
    object* lowest = root;
    begin();
    for (int i = 0; i != levels; ++i) lowest = fw.create_object(types::thing, lowest);
    ASSERT_TRUE(lowest->set_property(props::name, text("lowest")));
    end();
    model->clear_history();
    cache_names(*root);
    EXPECT_EQ(cached_name(*lowest), "lowest");
}

} // namespace
} // namespace kelm::test
