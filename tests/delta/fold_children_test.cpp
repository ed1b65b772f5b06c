// Folding the order of children: one record a child, from its place at the start to its place now.
// Children that come and go are fold_objects_test.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

class folded_order : public delta_world {
protected:
    void place(object* child, std::size_t position) { owner->set_child_position(child, position); }

    object* const owner = thing("o");
    object* const a = thing("a", owner);
    object* const b = thing("b", owner);
    object* const c = thing("c", owner);
};

TEST_F(folded_order, tells_each_child_once) {
    const struct {
        const char* why;
        std::function<void()> change;
        const char* told; ///< behind "modified o"; null for nothing
    } rows[] = {
        {"a move", [&] { place(a, 2); }, "  child a 0 -> 2\n"},
        {"two moves of one child",
         [&] {
             place(a, 1);
             place(a, 2);
         },
         "  child a 0 -> 2\n"},
        {"there and back",
         [&] {
             place(a, 2);
             place(a, 0);
         },
         nullptr},
        {"there and back by steps",
         [&] {
             place(a, 1);
             place(a, 2);
             place(a, 0);
         },
         nullptr},
        {"away again after it was back",
         [&] {
             place(a, 1);
             place(a, 0);
             place(a, 2);
         },
         "  child a 0 -> 2\n"},
        {"two children, the one that moved last first",
         [&] {
             place(a, 2);
             place(b, 1);
         },
         "  child b 0 -> 1\n  child a 0 -> 2\n"},
        {"a child that moves again goes to the end of the records",
         [&] {
             place(a, 1);
             place(b, 2);
             place(a, 2);
         },
         "  child b 0 -> 2\n  child a 0 -> 2\n"},
        {"a move to its own place is told", [&] { place(b, 1); }, "  child b 1 -> 1\n"},
        {"two moves to its own place are back where it was",
         [&] {
             place(b, 1);
             place(b, 1);
         },
         nullptr},
        {"three are one",
         [&] {
             place(b, 1);
             place(b, 1);
             place(b, 1);
         },
         "  child b 1 -> 1\n"},
        {"of a child that others pushed the ends of its way count",
         [&] {
             place(c, 0);
             place(b, 0);
             place(c, 2);
         },
         "  child b 2 -> 0\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        place(a, 0);
        place(b, 1);
        place(c, 2);
        EXPECT_EQ(told_of(row.change), row.told ? std::string("modified o\n") + row.told : "none\n");
    }
}

TEST_F(folded_order, is_told_of_each_owner_and_with_changed_values) {
    object* const other = thing("other");
    object* const d = thing("d", other);
    thing("e", other);
    EXPECT_EQ(told_of([&] {
                  place(a, 1);
                  owner->set_property(props::text, text("x"));
                  other->set_child_position(d, 1);
              }),
              "modified other\n  child d 0 -> 1\n"
              "modified o\n  10: none -> 'x'\n  child a 0 -> 1\n");
}

TEST_F(folded_order, forgets_what_a_deleted_child_did) {
    EXPECT_EQ(told_of([&] {
                  place(a, 2);
                  fw.delete_object(a);
              }),
              "deleted a of o at 2\n");
}

TEST_F(folded_order, forgets_what_happened_below_a_deleted_owner) {
    EXPECT_EQ(told_of([&] {
                  place(a, 2);
                  fw.delete_object(owner);
              }),
              "deleted o of root at 0\n"
              "  deleted a of nobody at 0\n"
              "  deleted c of nobody at 0\n"
              "  deleted b of nobody at 0\n")
        << "children were deleted in the order b, c, a";
}

TEST_F(folded_order, tells_what_others_did_around_a_deleted_child) {
    EXPECT_EQ(told_of([&] {
                  place(c, 0);
                  fw.delete_object(a);
              }),
              "deleted a of o at 1\n"
              "modified o\n  child c 2 -> 0\n");
}

TEST_F(folded_order, is_told_of_a_child_that_is_new) {
    EXPECT_EQ(told_of([&] {
                  object* const d = fw.create_object(types::thing, owner);
                  d->set_property(props::name, text("d"));
                  place(d, 0);
              }),
              "created d\nmodified o\n  child d 3 -> 0\n");
}

TEST_F(folded_order, below_a_new_owner_is_part_of_its_making) {
    EXPECT_EQ(told_of([&] {
                  object* const d = fw.create_object(types::thing, root);
                  d->set_property(props::name, text("d"));
                  a->set_owner(d);
                  b->set_owner(d);
                  d->set_child_position(b, 0);
              }),
              "created d\n"
              "modified b\n  owner was o\n"
              "modified a\n  owner was o\n");
}

TEST_F(folded_order, of_a_child_that_left_is_told_all_the_same) {
    object* const other = thing("other");
    EXPECT_EQ(told_of([&] {
                  place(a, 2);
                  a->set_owner(other);
              }),
              "modified a\n  owner was o\n"
              "modified o\n  child a 0 -> 2\n");
}

TEST_F(folded_order, keeps_telling_of_an_owner_that_was_deleted_before) {
    const auto delete_owner_alone = [&] {
        owner->remove_child(a);
        owner->remove_child(b);
        fw.delete_object(owner);
        owner->add_child(a);
        owner->add_child(b);
    };
    change(delete_owner_alone);
    change([&] { place(a, 1); });
    EXPECT_EQ(last_told(), "modified \n  child a 0 -> 1\n") << "it has no name any more";
    EXPECT_EQ(told(), "deleted o of root at 0\n"
                      "  deleted c of nobody at 0\n"
                      "modified \n  child a 0 -> 1\n")
        << "children that came out of it are no part of its deletion";
}

TEST_F(folded_order, counts_in_the_run_of_the_type) {
    object* const p = part("p", owner);
    part("q", owner);
    EXPECT_EQ(told_of([&] { owner->set_child_position(p, 1); }), "modified o\n  child p 0 -> 1\n");
}

} // namespace
} // namespace kelm::test
