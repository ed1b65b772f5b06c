// Folding changes of the bases of an object.
// What a value inherited at the start was is original_values_test.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

class folded_bases : public delta_world {
protected:
    folded_bases() {
        before([&] {
            p->set_property(props::text, text("p"));
            q->set_property(props::text, text("q"));
        });
    }
    std::function<void()> inherits(const std::vector<object*>& bases) {
        return [this, bases] {
            a->cancel_all_inherits_from();
            for (object* each : bases) a->add_inherits_from(each);
        };
    }
    void touch() { a->set_property(props::number, number(1)); }

    object* const p = thing("p");
    object* const q = thing("q");
    object* const r = thing("r"); // has no text
    object* const a = thing("a");
};

TEST_F(folded_bases, leads_back_to_the_bases_of_the_start) {
    const struct {
        const char* why;
        std::vector<object*> start;
        std::function<void()> change;
        const char* told; ///< behind "modified a"; null for nothing
    } rows[] = {
        {"added", {}, [&] { a->add_inherits_from(p); }, "  10: none -> 'p'\n  base p -1 -> 0\n"},
        {"added behind another", {p}, [&] { a->add_inherits_from(q); }, nullptr},
        {"added, and it has nothing to give", {}, [&] { a->add_inherits_from(r); }, nullptr},
        {"added to an object that changed otherwise",
         {},
         [&] {
             a->add_inherits_from(r);
             touch();
         },
         "  11: none -> '1'\n  base r -1 -> 0\n"},
        {"inserted",
         {p},
         [&] { a->insert_inherits_from(q, 0); },
         "  10: 'p' -> 'q'\n  base p 0 -> 1\n  base q -1 -> 0\n"},
        {"cancelled", {p}, [&] { a->cancel_inherits_from(p); }, "  10: 'p' -> none\n  base p 0 -> -1\n"},
        {"cancelled in front of another",
         {p, q},
         [&] { a->cancel_inherits_from(p); },
         "  10: 'p' -> 'q'\n  base p 0 -> -1\n  base q 1 -> 0\n"},
        {"cancelled in the middle",
         {p, q, r},
         [&] {
             touch();
             a->cancel_inherits_from(q);
         },
         "  11: none -> '1'\n  base q 1 -> -1\n  base r 2 -> 1\n"},
        {"all cancelled",
         {p, q},
         [&] { a->cancel_all_inherits_from(); },
         "  10: 'p' -> none\n  base p 0 -> -1\n  base q 1 -> -1\n"},
        {"put in order",
         {p, q},
         [&] { a->set_inherits_from_position(q, 0); },
         "  10: 'p' -> 'q'\n  base p 0 -> 1\n  base q 1 -> 0\n"},
        {"put in order, the last at the end of the start",
         {q, r, p},
         [&] { a->set_inherits_from_position(p, 0); },
         "  10: 'q' -> 'p'\n  base q 0 -> 1\n  base r 1 -> 2\n  base p 2 -> 0\n"},
        {"put in order and back",
         {p, q},
         [&] {
             a->set_inherits_from_position(q, 0);
             a->set_inherits_from_position(q, 1);
         },
         nullptr},
        {"replaced",
         {p},
         [&] { a->replace_inherits_from_at(q, 0); },
         "  10: 'p' -> 'q'\n  base p 0 -> -1\n  base q -1 -> 0\n"},
        {"replaced behind another",
         {p, q},
         [&] {
             touch();
             a->replace_inherits_from(r, q);
         },
         "  11: none -> '1'\n  base q 1 -> -1\n  base r -1 -> 1\n"},
        {"added and cancelled",
         {},
         [&] {
             a->add_inherits_from(p);
             touch();
             a->cancel_inherits_from(p);
         },
         "  11: none -> '1'\n"},
        {"cancelled and added",
         {p},
         [&] {
             a->cancel_inherits_from(p);
             touch();
             a->add_inherits_from(p);
         },
         "  11: none -> '1'\n"},
        {"replaced and replaced back",
         {p},
         [&] {
             a->replace_inherits_from_at(q, 0);
             a->replace_inherits_from_at(p, 0);
         },
         nullptr},
        {"all kinds",
         {p, q},
         [&] {
             a->cancel_inherits_from(p);
             a->add_inherits_from(p);
             a->replace_inherits_from_at(r, 0);
             touch();
         },
         "  11: none -> '1'\n  base p 0 -> 1\n  base q 1 -> -1\n  base r -1 -> 0\n"},
        {"a value that another base has as well",
         {p},
         [&] {
             r->set_property(props::text, text("p"));
             a->replace_inherits_from_at(r, 0);
             r->delete_property(props::text);
             a->replace_inherits_from_at(p, 0);
         },
         nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        before([&] {
            a->delete_property(props::number);
            inherits(row.start)();
        });
        EXPECT_EQ(told_of(row.change), row.told ? std::string("modified a\n") + row.told : "none\n");
    }
}

// The message of a base that was added again says that it was added: it is taken for one that came.
TEST_F(folded_bases, a_base_that_is_added_again_is_taken_for_a_new_one) {
    before(inherits({p}));
    EXPECT_EQ(told_of([&] { a->add_inherits_from(p); }), "modified a\n  10: none -> 'p'\n  base p -1 -> 0\n");
}

TEST_F(folded_bases, a_base_that_went_gives_what_it_had) {
    before(inherits({p}));
    EXPECT_EQ(told_of([&] { fw.delete_object(p); }), "deleted p of root at 0\n"
                                                     "  10 = 'p'\n"
                                                     "modified a\n"
                                                     "  10: 'p' -> none\n"
                                                     "  base p 0 -> -1\n");
}

TEST_F(folded_bases, one_that_went_together_with_its_own_base_gives_what_that_had) {
    before([&] {
        inherits({r})();
        r->add_inherits_from(p);
    });
    EXPECT_EQ(told_of([&] {
                  p->set_property(props::text, text("new"));
                  fw.delete_object(p);
                  fw.delete_object(r);
              }),
              "deleted r of root at 1\n"
              "deleted p of root at 0\n"
              "  10 = 'p'\n"
              "modified a\n"
              "  10: 'p' -> none\n"
              "  base r 0 -> -1\n");
}

TEST_F(folded_bases, a_new_base_has_no_value_of_the_start) {
    EXPECT_EQ(told_of([&] {
                  object* const n = thing("n");
                  n->set_property(props::text, text("n"));
                  a->add_inherits_from(n);
              }),
              "created n\n"
              "modified a\n"
              "  10: none -> 'n'\n"
              "  base n -1 -> 0\n");
}

TEST_F(folded_bases, a_new_inheritor_is_only_new) {
    EXPECT_EQ(told_of([&] {
                  object* const n = thing("n");
                  n->add_inherits_from(p);
                  p->set_property(props::text, text("new"));
              }),
              "created n\n"
              "modified p\n"
              "  10: 'p' -> 'new'\n");
}

// Positions are those of the list at the time of each message.
TEST_F(folded_bases, of_a_deleted_object_come_back_in_their_order) {
    before(inherits({r, q, p}));
    change([&] { fw.delete_object(a); });
    const auto told_delta = model->delta_since(nullptr);
    ASSERT_EQ(told_delta->deleted_details().size(), 1u);
    const auto* const gone = before_of(*told_delta, a);
    EXPECT_EQ(as_text(gone->original_property(props::text, nullptr)), "q") << "r has none, and p comes later";
    EXPECT_FALSE(gone->has_original_property(props::text));
    EXPECT_TRUE(gone->had_property(props::text));
}

} // namespace
} // namespace kelm::test
