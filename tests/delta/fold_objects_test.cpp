// Folding the making, deleting and moving of objects.
// The order of children is fold_children_test; the order of the lists is that of a walk from the newest change back.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

class folded_objects : public delta_world {
protected:
    /// A new object, made inside of the change.
    object* fresh(const char* name, object* owner = nullptr) { return thing(name, owner); }
    void remove(object* what) { fw.delete_object(what); }

    struct row {
        const char* why;
        std::function<void()> change;
        const char* told;
    };
    /// Each change is undone before the next.
    void expect(const std::vector<row>& rows) {
        for (const row& each : rows) {
            SCOPED_TRACE(each.why);
            const std::string start = dump();
            EXPECT_EQ(told_of(each.change), each.told);
            model->undo();
            EXPECT_EQ(dump(), start);
        }
    }

    object* const o = thing("o");
    object* const p = thing("p");
    object* const x = thing("x", o);
    object* const c = thing("c", o);
    object* const d = thing("d", c);
};

TEST_F(folded_objects, objects_that_came) {
    object* made = nullptr;
    expect({
        {"one", [&] { fresh("n"); }, "created n\n"},
        {"one with all that was done to it since",
         [&] {
             made = fresh("n");
             made->set_property(props::text, text("t"));
             made->append_vector_element(props::list, text("t"));
             made->add_inherits_from(o);
             made->set_property_not_inheritable(props::number, true);
             made->set_child_position(fresh("m", made), 0);
             made->set_owner(p);
         },
         "created n\n  created m\n"},
        {"two, the last one first",
         [&] {
             fresh("n");
             fresh("m");
         },
         "created m\ncreated n\n"},
        {"below an old one", [&] { fresh("n", o); }, "created n\n"},
        {"below a new one, the first one first",
         [&] {
             made = fresh("n");
             fresh("m", made);
             fresh("k", made);
         },
         "created n\n  created m\n  created k\n"},
        {"deep below", [&] { fresh("k", fresh("m", fresh("n"))); },
         "created n\n  created m\n    created k\n"},
        {"below one another and not",
         [&] {
             made = fresh("n");
             fresh("m");
             fresh("k", made);
         },
         "created m\ncreated n\n  created k\n"},
        {"below where it was made, wherever it is now",
         [&] {
             made = fresh("n");
             fresh("m", made)->set_owner(o);
         },
         "created n\n  created m\n"},
        {"and not below where it has moved to",
         [&] {
             made = fresh("n");
             fresh("m")->set_owner(made);
         },
         "created m\ncreated n\n"},
    });
}

TEST_F(folded_objects, objects_that_came_and_went_are_not_told) {
    object* made = nullptr;
    object* below = nullptr;
    expect({
        {"one",
         [&] {
             made = fresh("n");
             made->set_property(props::text, text("t"));
             remove(made);
         },
         "none\n"},
        {"one that has moved",
         [&] {
             made = fresh("n");
             made->set_owner(o);
             remove(made);
         },
         "none\n"},
        {"one with others below it",
         [&] {
             made = fresh("n");
             fresh("k", fresh("m", made));
             remove(made);
         },
         "none\n"},
        {"one below another that stays",
         [&] {
             made = fresh("n");
             below = fresh("m", made);
             fresh("k", made);
             remove(below);
         },
         "created n\n  created k\n"},
        {"one below an old one that goes",
         [&] {
             fresh("n", p);
             remove(p);
         },
         "deleted p of root at 1\n"},
        {"one in the middle of others that go",
         [&] {
             made = fresh("n", p);
             x->set_owner(made);
             remove(p);
         },
         "deleted p of root at 1\ndeleted x of nobody at 0\nmodified \n  owner was o\n"},
        {"one that another new one has left",
         [&] {
             made = fresh("n");
             below = fresh("m", made);
             below->set_owner(p);
             remove(made);
         },
         "created m\n"},
        {"one that old ones had gone below, which are told on top",
         [&] {
             made = fresh("n");
             c->set_owner(made);
             remove(made);
         },
         "deleted c of nobody at 1\n  deleted d of nobody at 0\nmodified \n  owner was o\n"},
    });
}

TEST_F(folded_objects, objects_that_went) {
    expect({
        {"one", [&] { remove(d); }, "deleted d of c at 0\n"},
        {"one among others", [&] { remove(p); }, "deleted p of root at 1\n"},
        {"with what was below it", [&] { remove(c); }, "deleted c of o at 1\n  deleted d of nobody at 0\n"},
        {"with all that was below it, the last one first", [&] { remove(o); },
         "deleted o of root at 0\n"
         "  deleted c of nobody at 0\n"
         "    deleted d of nobody at 0\n"
         "  deleted x of nobody at 0\n"},
        {"two, the last one first",
         [&] {
             remove(d);
             remove(p);
         },
         "deleted p of root at 1\ndeleted d of c at 0\n"},
        {"one below another that went later",
         [&] {
             remove(d);
             remove(c);
         },
         "deleted c of o at 1\n  deleted d of nobody at 0\n"},
        {"with what it had",
         [&] {
             d->set_property(props::text, text("new"));
             remove(d);
         },
         "deleted d of c at 0\n"},
        {"one that was taken out before its owner went, and went after it",
         [&] {
             c->remove_child(d);
             remove(c);
             remove(d);
         },
         "deleted d of nobody at 0\ndeleted c of o at 1\n"},
    });
}

TEST_F(folded_objects, what_went_is_told_with_the_values_of_the_start) {
    before([&] {
        d->set_property(props::number, number(1));
        d->set_property(props::text, text("t"));
        d->set_property(props::definition, text("it is"));
        d->append_vector_element(props::list, reference(x));
    });
    EXPECT_EQ(told_of([&] {
                  d->set_property(props::name, text("renamed"));
                  d->set_property(props::number, number(2));
                  d->delete_property(props::text);
                  d->append_vector_element(props::list, reference(o));
                  d->set_property(props::flag, flag(true));
                  remove(d);
              }),
              "deleted d of c at 0\n"
              "  10 = 't'\n"
              "  11 = '1'\n"
              "  14 = [->x]\n"
              "  2 = 'it is'\n");
}

TEST_F(folded_objects, objects_that_moved) {
    expect({
        {"to another owner", [&] { c->set_owner(p); }, "modified c\n  owner was o\n"},
        {"twice, and the first owner is told",
         [&] {
             c->set_owner(p);
             c->set_owner(root);
         },
         "modified c\n  owner was o\n"},
        {"there and back, which is told all the same",
         [&] {
             c->set_owner(p);
             c->set_owner(o);
         },
         "modified c\n  owner was o\n"},
        {"below a new one", [&] { c->set_owner(fresh("n")); }, "created n\nmodified c\n  owner was o\n"},
        {"out of what went",
         [&] {
             c->set_owner(p);
             remove(o);
         },
         "deleted o of root at 0\n  deleted x of nobody at 0\nmodified c\n  owner was o\n"},
        {"without being told so: taken out", [&] { o->remove_child(c); }, "none\n"},
        {"without being told so: put in elsewhere",
         [&] {
             o->remove_child(c);
             p->add_child(c);
         },
         "none\n"},
    });
}

// What is said of owners does not ask whether the object went: it is told as gone and as changed.
TEST_F(folded_objects, an_object_that_moved_and_went_is_told_twice) {
    change([&] {
        c->set_owner(p);
        remove(c);
    });
    EXPECT_EQ(told(), "deleted c of p at 1\n" // its place at the old owner: the oldest removal wins
                      "  deleted d of nobody at 0\n"
                      "modified \n" // it has no name any more
                      "  owner was o\n");
    const auto all = model->delta_since(nullptr);
    EXPECT_EQ(all->deleted_details()[0]->object_id(), c->id());
    EXPECT_EQ(all->modified_details()[0]->object_id(), c->id());
}

TEST_F(folded_objects, the_place_of_what_went_is_unknown_when_its_removal_is_older) {
    change([&] { remove(d); });
    std::size_t removal = 0;
    while (model->message_at(removal)->type() != message_type::child_remove) ++removal;
    const std::unique_ptr<delta> since{model->make_delta(model->message_at(removal))};
    EXPECT_EQ(text_of(since.get(), *model), "deleted <unknown name> of c\n");
    EXPECT_EQ(detail_cast<detail_delete>(since->deleted_details()[0])->position(), npos32);
}

TEST_F(folded_objects, references_go_with_their_targets) {
    before([&] {
        x->set_property(props::reference, reference(d));
        x->append_vector_element(props::list, reference(d));
        x->append_vector_element(props::list, reference(c));
        p->append_vector_element(props::list, reference(d));
    });
    EXPECT_EQ(told_of([&] { remove(d); }), "deleted d of c at 0\n"
                                           "modified x\n"
                                           "  13: ->d -> none\n"
                                           "  14: [->d ->c] -> [->c]\n"
                                           "modified p\n"
                                           "  14: [->d] -> none\n");
}

TEST_F(folded_objects, what_is_not_of_objects_is_not_told) {
    expect({
        {"an observer comes", [&] { o->attach(dynamic_cast<observer*>(p)); }, "none\n"},
        {"a property of the user's",
         [&] { model->add_user_defined_property(types::thing, "Mine", data_type::string, "", 0); }, "none\n"},
    });
}

// Lists of a delta tell newest first; so does the list of what was changed.
TEST_F(folded_objects, changed_objects_are_told_the_last_one_first) {
    EXPECT_EQ(told_of([&] {
                  o->set_property(props::number, number(1));
                  p->set_property(props::number, number(1));
                  o->set_property(props::number, number(2));
                  x->set_property(props::number, number(1));
              }),
              "modified x\n  11: none -> '1'\n"
              "modified o\n  11: none -> '2'\n"
              "modified p\n  11: none -> '1'\n");
}

} // namespace
} // namespace kelm::test
