// What is told of the objects that were found to be concerned: inheritors, changed properties, what is left out.
// How messages are folded is told by the fold tests.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

class finished_deltas : public delta_world {
protected:
    object* inheritor(const char* name, object* of) {
        object* const made = thing(name);
        before([&] { made->add_inherits_from(of); });
        return made;
    }
    static void set(object* what, const std::string& value) { what->set_property(props::text, text(value)); }

    object* const p = thing("p");
};

TEST_F(finished_deltas, tell_of_inheritors_at_any_depth_level_by_level) {
    object* const a = inheritor("a", p);
    object* const b = inheritor("b", a);
    inheritor("c", b);
    EXPECT_EQ(told_of([&] { set(p, "new"); }), "modified p\n  10: none -> 'new'\n"
                                               "modified a\n  10: none -> 'new'\n"
                                               "modified b\n  10: none -> 'new'\n"
                                               "modified c\n  10: none -> 'new'\n");
    EXPECT_EQ(told_of([&] { set(p, "newer"); }), "modified p\n  10: 'new' -> 'newer'\n"
                                                 "modified a\n  10: 'new' -> 'newer'\n"
                                                 "modified b\n  10: 'new' -> 'newer'\n"
                                                 "modified c\n  10: 'new' -> 'newer'\n")
        << "the values of the start come along the whole line";
    EXPECT_EQ(told_of([&] { p->set_property(props::not_inheritable, text("own")); }),
              "modified p\n  16: none -> 'own'\n");
}

// The order must not depend on where objects lie: an object takes the place in memory of one that has gone.
TEST_F(finished_deltas, tell_of_inheritors_by_their_ids) {
    object* low = thing("low");
    object* high = thing("high");
    if (std::less<>{}(high, low)) std::swap(low, high);
    before([&] {
        high->set_property(props::name, text("early"));
        high->add_inherits_from(p);
        fw.delete_object(low);
    });
    object* const late = inheritor("late", p);
    EXPECT_GT(late->id(), high->id());
    EXPECT_EQ(told_of([&] { set(p, "new"); }), "modified p\n  10: none -> 'new'\n"
                                               "modified early\n  10: none -> 'new'\n"
                                               "modified late\n  10: none -> 'new'\n");
}

TEST_F(finished_deltas, leave_out_inheritors_that_saw_nothing) {
    object* const a = inheritor("a", p);
    object* const b = inheritor("b", a);
    inheritor("c", b);
    before([&] {
        set(p, "old");
        set(b, "own");
        a->set_property_not_inheritable(props::number, true);
    });
    EXPECT_EQ(told_of([&] {
                  set(p, "new");
                  p->set_property(props::number, number(1));
              }),
              "modified p\n  10: 'old' -> 'new'\n  11: none -> '1'\n"
              "modified a\n  10: 'old' -> 'new'\n");
}

TEST_F(finished_deltas, tell_an_inheritor_once_with_its_own_changes) {
    object* const a = inheritor("a", p);
    EXPECT_EQ(told_of([&] {
                  a->set_property(props::number, number(1));
                  set(p, "new");
              }),
              "modified p\n  10: none -> 'new'\n"
              "modified a\n  10: none -> 'new'\n  11: none -> '1'\n");
}

TEST_F(finished_deltas, tell_what_changed_in_the_order_of_the_type) {
    object* const a = thing("a");
    change([&] {
        a->set_property(props::definition, text("d"));
        a->set_property(props::list, *list(number(1)));
        a->set_property(props::name, text("new"));
        a->set_property(props::number, number(1));
        a->set_property(props::reference, reference(p));
        set(a, "t");
    });
    const auto all = model->delta_since(nullptr);
    std::vector<u32> declared;
    for (const meta_property* each : model->meta_model()->find_meta_object(types::thing)->properties())
        if (each->id() != props::flag && each->id() != props::real && each->id() != props::not_inheritable)
            declared.push_back(each->id());
    const auto* const found = detail_cast<detail_modified>(all->modified_details().at(0));
    EXPECT_EQ(found->changed_properties(), declared);
    EXPECT_EQ(declared[0], props::text) << "own ones first, as they were declared: not in the order of ids";
    EXPECT_EQ(declared[1], props::reference);
    EXPECT_EQ(declared[2], props::number);
}

TEST_F(finished_deltas, leave_out_properties_that_the_type_does_not_declare) {
    EXPECT_EQ(told_of([&] { p->set_property(4711, text("new")); }), "none\n");
}

TEST_F(finished_deltas, leave_out_what_properties_are_marked_with) {
    object* const s = summed("s");
    object* const base = summed("base");
    before([&] {
        s->add_inherits_from(base);
        s->set_property(props::fleeting, text("f"));
    });
    const struct {
        const char* why;
        std::function<void()> change;
        const char* told;
    } rows[] = {
        {"not marked", [&] { s->set_property(props::told, text("x")); },
         "modified s\n  43101: none -> 'x'\n"},
        {"marked with a no", [&] { s->set_property(props::said_told, text("x")); },
         "modified s\n  43102: none -> 'x'\n"},
        {"skipped", [&] { s->set_property(props::skipped, text("x")); }, "none\n"},
        {"skipped, changed", [&] { s->set_property(props::skipped, text("y")); }, "none\n"},
        {"skipped, deleted", [&] { s->delete_property(props::skipped); }, "none\n"},
        {"not persistent", [&] { s->set_property(props::fleeting, text("x")); }, "none\n"},
        {"not persistent, deleted", [&] { s->delete_property(props::fleeting); }, "none\n"},
        {"local, of the base", [&] { base->set_property(props::local, text("b")); },
         "modified base\n  43104: none -> 'b'\n"},
        {"local, which was inherited", [&] { s->set_property(props::local, text("x")); },
         "modified s\n  43104: 'b' -> 'x'\n"},
        {"local, changed", [&] { s->set_property(props::local, text("y")); },
         "modified s\n  43104: 'x' -> 'y'\n"},
        {"local, deleted, so that it is not the object's own", [&] { s->delete_property(props::local); },
         "none\n"},
        {"local, of the base and inherited", [&] { base->delete_property(props::local); }, "none\n"},
        {"inherited, skipped", [&] { base->set_property(props::skipped, text("x")); }, "none\n"},
        {"together with what is told",
         [&] {
             s->set_property(props::skipped, text("z"));
             s->set_property(props::told, text("z"));
             s->set_property(props::fleeting, text("z"));
         },
         "modified s\n  43101: 'x' -> 'z'\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(told_of(row.change), row.told);
    }
    EXPECT_EQ(told_of([&] { fw.delete_object(s); }), "deleted s of root at 0\n"
                                                     "  43101 = 'z'\n"
                                                     "  43102 = 'x'\n"
                                                     "  43103 = 'z'\n"
                                                     "  43105 = 'z'\n")
        << "what went is told whole";
}

// No such value equals another, nor itself: wherever its object is looked at, it is told as changed.
TEST_F(finished_deltas, tell_of_null_references_and_of_what_is_no_number_with_every_change_of_the_object) {
    object* const a = inheritor("a", p);
    before([&] {
        p->set_property(props::reference, reference(nullptr));
        p->set_property(props::real, not_a_number());
        p->set_property(props::list, *list(reference(nullptr)));
    });
    change([&] { a->set_property(props::number, number(1)); });
    const auto of_a = model->delta_since(nullptr);
    ASSERT_EQ(of_a->modified_details().size(), 1u) << "the base was not looked at";
    using ids = std::vector<u32>;
    EXPECT_EQ(detail_cast<detail_modified>(modified(*of_a, a))->changed_properties(),
              (ids{props::reference, props::number, props::list, props::real}));
    model->clear_history();
    change([&] {
        set(p, "x");
        p->delete_property(props::text);
    });
    const auto of_p = model->delta_since(nullptr);
    ASSERT_TRUE(of_p) << "nothing changed in the end, but they were looked at";
    ASSERT_EQ(of_p->modified_details().size(), 2u);
    for (const object* each : {p, a})
        EXPECT_EQ(detail_cast<detail_modified>(modified(*of_p, each))->changed_properties(),
                  (ids{props::reference, props::list, props::real}));
}

TEST_F(finished_deltas, a_value_that_a_hook_supplies_is_told_when_it_differs_from_one_read_to_the_next) {
    object* const h = hooked("h");
    int reads = 0;
    const auto answers = [&](bool same) {
        hooks.on<post_prop_get_semantic>([&, same](hook_call& call) {
            if (call.numbers.at(0) == props::real && !*call.replaceable)
                *call.replaceable = new counted_value(same ? 0 : ++reads);
            return true;
        });
    };
    const long alive = counted_value::alive;
    answers(true);
    EXPECT_EQ(told_of([&] { h->set_property(props::number, number(1)); }), "modified h\n  11: none -> '1'\n");
    EXPECT_EQ(counted_value::alive, alive);
    answers(false);
    change([&] { h->set_property(props::number, number(2)); });
    {
        const auto all = model->delta_since(nullptr);
        const auto found = detail_cast<detail_modified>(modified(*all, h))->changed_properties();
        EXPECT_EQ(found, (std::vector<u32>{props::number, props::real}));
        EXPECT_TRUE(before_of(*all, h)->has_original_property(props::real));
        EXPECT_EQ(counted_value::alive, alive + 1) << "what was read at the end is kept for the start";
    }
    EXPECT_EQ(counted_value::alive, alive);
}

TEST_F(finished_deltas, a_hook_that_hides_a_value_hides_its_change) {
    object* const h = hooked("h");
    before([&] { h->set_property(props::text, text("old")); });
    hooks.on<pre_prop_get_semantic>([](hook_call& call) { return call.numbers.at(0) != props::text; });
    EXPECT_EQ(told_of([&] { h->set_property(props::text, text("new")); }),
              "modified h\n  10: 'old' -> none\n");
    EXPECT_EQ(told_of([&] { h->set_property(props::number, number(1)); }), "modified h\n  11: none -> '1'\n");
}

TEST_F(finished_deltas, of_no_net_effect_are_none) {
    object* const a = inheritor("a", p);
    EXPECT_EQ(told_of([&] {
                  set(a, "y");
                  set(p, "x");
                  a->delete_property(props::text);
                  p->delete_property(props::text);
              }),
              "none\n");
}

} // namespace
} // namespace kelm::test
