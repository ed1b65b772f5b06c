// What an object had at the start of the stretch: its own values, and those that it inherited then.
// How they are translated for display is translation_test; what changed is told by the fold tests.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

constexpr u32 its_text = props::text;

class original_values : public delta_world {
protected:
    /// The changes, together with one that has `a` told.
    const delta& after(const std::function<void()>& what) {
        model->clear_history();
        change([&] {
            what();
            a->set_property(props::number, number(++touched));
        });
        kept = model->delta_since(nullptr);
        return *kept;
    }
    std::string had(u32 id = its_text) const {
        const auto* const start = before_of(*kept, a);
        const std::string is = as_text(start->original_property(id, nullptr));
        EXPECT_EQ(start->had_property(id), is != "none");
        EXPECT_EQ(start->original_property_as_string(id, nullptr), is == "none" ? "" : is);
        return is;
    }
    bool had_its_own(u32 id = its_text) const { return before_of(*kept, a)->has_original_property(id); }

    object* const p = thing("p");
    object* const q = thing("q");
    object* const a = thing("a");
    shared_ptr<delta> kept;
    int touched = 0;
};

TEST_F(original_values, of_what_was_never_set_are_none) {
    after([] {});
    EXPECT_EQ(had(), "none");
    EXPECT_FALSE(had_its_own());
    EXPECT_EQ(had(4711), "none") << "nor of what no type declares";
    EXPECT_FALSE(had_its_own(4711));
    EXPECT_FALSE(before_of(*kept, a)->original_property(its_text, nullptr));
}

TEST_F(original_values, that_did_not_change_are_there_as_well) {
    before([&] {
        a->set_property(its_text, text("own"));
        p->set_property(props::definition, text("inherited"));
        a->add_inherits_from(p);
    });
    after([] {});
    EXPECT_EQ(had(), "own");
    EXPECT_TRUE(had_its_own());
    EXPECT_EQ(had(props::definition), "inherited");
    EXPECT_FALSE(had_its_own(props::definition));
    EXPECT_EQ(had(props::name), "a");
}

TEST_F(original_values, come_from_the_bases_as_they_were) {
    const auto inherit = [&](std::initializer_list<object*> bases) {
        a->cancel_all_inherits_from();
        for (object* each : bases) a->add_inherits_from(each);
    };
    const struct {
        const char* why;
        std::function<void()> start;
        std::function<void()> change;
        const char* had;
    } rows[] = {
        {"a base that did not change", [&] { inherit({p}); }, [] {}, "p"},
        {"one that changed", [&] { inherit({p}); }, [&] { p->set_property(its_text, text("new")); }, "p"},
        {"one that lost it", [&] { inherit({p}); }, [&] { p->delete_property(its_text); }, "p"},
        {"one that had none then",
         [&] {
             inherit({p});
             p->delete_property(its_text);
         },
         [&] { p->set_property(its_text, text("new")); }, "none"},
        {"one that is no base any more", [&] { inherit({p}); }, [&] { a->cancel_inherits_from(p); }, "p"},
        {"the first of two",
         [&] {
             inherit({q, p});
         },
         [&] { a->set_inherits_from_position(p, 0); }, "q"},
        {"the second, as the first had none then",
         [&] {
             inherit({p, q});
             p->delete_property(its_text);
         },
         [&] { p->set_property(its_text, text("new")); }, "q"},
        {"a base of the base",
         [&] {
             inherit({p});
             p->delete_property(its_text);
             p->add_inherits_from(q);
         },
         [] {}, "q"},
        {"one that changed",
         [&] {
             inherit({p});
             p->delete_property(its_text);
             p->add_inherits_from(q);
         },
         [&] { q->set_property(its_text, text("new")); }, "q"},
        {"one that was a base of the base",
         [&] {
             inherit({p});
             p->delete_property(its_text);
             p->add_inherits_from(q);
         },
         [&] {
             p->cancel_inherits_from(q);
             q->set_property(its_text, text("new"));
         },
         "q"},
        {"not one marked then, though it is not marked any more",
         [&] {
             inherit({p});
             a->set_property_not_inheritable(its_text, true);
         },
         [&] { a->set_property_not_inheritable(its_text, false); }, "none"},
        {"not one that is marked then and now",
         [&] {
             inherit({p});
             a->set_property_not_inheritable(its_text, true);
         },
         [] {}, "none"},
        {"one that is marked now", [&] { inherit({p}); },
         [&] { a->set_property_not_inheritable(its_text, true); }, "p"},
        {"not one that the base had marked",
         [&] {
             inherit({p});
             p->delete_property(its_text);
             p->add_inherits_from(q);
             p->set_property_not_inheritable(its_text, true);
         },
         [&] { p->set_property_not_inheritable(its_text, false); }, "none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        before([&] {
            for (object* each : {p, a})
                if (each->is_property_not_inheritable(its_text))
                    each->set_property_not_inheritable(its_text, false);
            p->cancel_all_inherits_from();
            p->set_property(its_text, text("p"));
            q->set_property(its_text, text("q"));
            row.start();
        });
        after(row.change);
        EXPECT_EQ(had(), row.had);
        EXPECT_FALSE(had_its_own());
    }
}

TEST_F(original_values, never_pass_where_the_type_forbids_it) {
    before([&] {
        p->set_property(props::not_inheritable, text("stays"));
        a->add_inherits_from(p);
    });
    after([&] { p->set_property(props::not_inheritable, text("still")); });
    EXPECT_EQ(had(props::not_inheritable), "none");
}

TEST_F(original_values, come_from_bases_of_other_types_that_know_the_property) {
    object* const o = make(types::other, "o"); // has no number
    object* const r = part("r");
    before([&] {
        for (object* each : {o, r}) {
            each->set_property(props::number, number(each == r ? 7 : 1));
            each->set_property(its_text, text("of " + object_name(each)));
            a->add_inherits_from(each);
        }
        a->delete_property(props::number);
    });
    model->clear_history();
    change([&] {
        for (object* each : {o, r}) each->set_property(props::number, number(each == r ? 8 : 2));
        a->set_property(props::flag, flag(true));
    });
    kept = model->delta_since(nullptr);
    EXPECT_EQ(had(its_text), "of o");
    EXPECT_EQ(had(props::number), "7");
    model->clear_history();
    change([&] {
        fw.delete_object(r);
        o->set_property(props::number, number(3));
    });
    kept = model->delta_since(nullptr);
    EXPECT_EQ(had(props::number), "8") << "only r has one of the kind";
}

// What is asked of a base that went is what it had when it went, also where it is told as moved.
TEST_F(original_values, ask_what_is_told_of_a_base_that_went_first) {
    before([&] {
        p->set_property(its_text, text("p"));
        a->add_inherits_from(p);
    });
    after([&] {
        p->set_owner(q);
        fw.delete_object(p);
    });
    EXPECT_EQ(had(), "p");
    EXPECT_EQ(kept->modified_details().size(), 2u) << "the one that went is told as moved";
}

TEST_F(original_values, of_an_object_that_went_with_its_base) {
    before([&] {
        p->set_property(its_text, text("p"));
        q->add_inherits_from(p);
        a->add_inherits_from(q);
        a->set_property_not_inheritable(props::flag, true);
        p->set_property(props::flag, flag(true));
    });
    change([&] {
        p->set_property(its_text, text("new"));
        fw.delete_object(p);
        fw.delete_object(q);
        fw.delete_object(a);
    });
    kept = model->delta_since(nullptr);
    EXPECT_EQ(had(), "p");
    EXPECT_EQ(had(props::flag), "none") << "it was marked";
    EXPECT_EQ(had(props::name), "a");
    EXPECT_TRUE(had_its_own(props::name));
    EXPECT_FALSE(had_its_own());
}

// A value over an inherited one is folded as if that had been the object's own.
TEST_F(original_values, inherited_ones_that_were_covered_count_as_own) {
    before([&] {
        p->set_property(its_text, text("p"));
        a->add_inherits_from(p);
    });
    after([&] { a->set_property(its_text, text("x")); });
    EXPECT_EQ(had(), "p");
    EXPECT_TRUE(had_its_own());
}

TEST_F(original_values, that_are_left_out_are_known_only_where_a_message_speaks_of_them) {
    object* const s = summed("s");
    before([&] {
        s->set_property(props::skipped, text("then"));
        s->set_property(props::fleeting, text("then"));
    });
    change([&] {
        s->set_property(props::told, text("x"));
        s->set_property(props::skipped, text("now"));
    });
    const auto all = model->delta_since(nullptr);
    const auto* const start = before_of(*all, s);
    EXPECT_EQ(as_text(start->original_property(props::skipped, nullptr)), "then");
    EXPECT_FALSE(start->had_property(props::fleeting)) << "no message, and not looked at";
    EXPECT_FALSE(start->original_property(props::fleeting, nullptr));
}

TEST_F(original_values, are_handed_out_as_clones) {
    before([&] { a->set_property(its_text, text("own")); });
    after([&] { a->set_property(its_text, text("new")); });
    const auto* const start = before_of(*kept, a);
    const value_ptr once = start->original_property(its_text, nullptr);
    const value_ptr again = start->original_property(its_text, nullptr);
    EXPECT_NE(once.get(), again.get());
    once->from_string("broken");
    EXPECT_EQ(had(), "own");
    model->undo();
    EXPECT_EQ(as_text(a->get_property(its_text)), "own");
}

// Values are shared with messages: only lists that elements went back in are copied, once each.
TEST_F(original_values, are_not_copied_but_for_lists) {
    before([&] {
        a->set_property(its_text, counted_value{1});
        a->set_property(props::list, *list(counted_value{2}, counted_value{3}));
        p->set_property(props::real, counted_value{4});
        a->add_inherits_from(p);
    });
    change([&] {
        a->set_property(its_text, counted_value{5});
        a->set_property(its_text, counted_value{6});
        p->set_property(props::real, counted_value{7});
    });
    const long alive = counted_value::alive;
    {
        const auto none_copied = model->delta_since(nullptr);
        EXPECT_EQ(counted_value::alive, alive);
        const auto* const start = before_of(*none_copied, a);
        EXPECT_EQ(as_text(start->original_property(props::real, nullptr)), "counted 4");
        EXPECT_TRUE(start->had_property(its_text));
        EXPECT_EQ(start->original_property_as_string(its_text, nullptr), "counted 1");
        EXPECT_EQ(counted_value::alive, alive);
    }
    EXPECT_EQ(counted_value::alive, alive);
    change([&] {
        a->append_vector_element(props::list, counted_value{8});
        a->delete_vector_element(props::list, 0);
    });
    const long then = counted_value::alive;
    {
        const auto one_list = model->delta_since(nullptr);
        EXPECT_EQ(counted_value::alive, then + 2) << "the list as it was";
        EXPECT_EQ(as_text(before_of(*one_list, a)->original_property(props::list, nullptr)),
                  list(counted_value{2}, counted_value{3})->to_string());
    }
    EXPECT_EQ(counted_value::alive, then);
    a->set_property(props::list, *list());
    change([&] { a->append_vector_element(props::list, counted_value{9}); });
    const long last = counted_value::alive;
    {
        const auto two_lists = model->delta_since(nullptr);
        EXPECT_EQ(counted_value::alive, last + 2) << "the copy behind the set is gone";
        EXPECT_EQ(as_text(before_of(*two_lists, a)->original_property(props::list, nullptr)),
                  list(counted_value{2}, counted_value{3})->to_string());
    }
    EXPECT_EQ(counted_value::alive, last);
}

// A hook of a base makes a value for each read; it is freed on every way out.
TEST_F(original_values, that_a_hook_makes_are_freed) {
    object* const h = hooked("h");
    const auto supply = [&] {
        hooks.on<post_prop_get_semantic>([h](hook_call& call) {
            if (call.at == h && call.numbers.at(0) == props::real && !*call.replaceable)
                *call.replaceable = new counted_value(1);
            return true;
        });
    };
    supply();
    before([&] {
        p->add_inherits_from(h);
        a->add_inherits_from(p);
    });
    after([] {});
    const long alive = counted_value::alive;
    EXPECT_EQ(had(props::real), "counted 1");
    EXPECT_EQ(counted_value::alive, alive);
    kept.reset();
    hooks.clear();
    // Asked by way of a base that went: what is passed up must be freed as well.
    supply();
    const long without = counted_value::alive;
    after([&] { fw.delete_object(p); });
    EXPECT_EQ(had(props::real), "counted 1");
    kept.reset();
    EXPECT_EQ(counted_value::alive, without);
}

} // namespace
} // namespace kelm::test
