// The list of bases: its operations, what they refuse, and undo and redo of each.
// What observers and hooks hear of them is inherit_told_test.
#include "tests/object/inherit_lines.h"

#include <functional>
#include <vector>

namespace kelm::test {

class inherit_list : public inherit_world {
protected:
    inherit_list() : a(thing("a")), b(thing("b")), c(thing("c")), d(thing("d")) {}

    /// Expects a refusal that rolls the open level back.
    void expect_refused(const std::function<bool()>& what) {
        const std::string before = dump();
        begin();
        d->set_property(props::number, number(1)); // goes with the level
        EXPECT_FALSE(what());
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
        if (model->in_transaction()) end();
    }
    /// Makes a change, takes it back and makes it again, looking at the whole model each time.
    void expect_reversible(const std::function<bool()>& what) {
        const std::string before = dump();
        ASSERT_TRUE(change(what));
        EXPECT_NE(dump(), before);
        expect_undone_and_redone(before);
    }

    object *const a, *const b, *const c, *const d;
};

TEST_F(inherit_list, bases_stand_in_the_order_of_adding_and_know_their_inheritors) {
    link(a, b);
    link(a, c);
    link(d, b);
    EXPECT_EQ(bases_of(a), "b c");
    EXPECT_EQ(c->inheritors(), std::vector<object*>{a});
    EXPECT_EQ(b->inheritors().size(), 2u);
    EXPECT_EQ(a->inherits_from_position(b), 0u);
    EXPECT_EQ(a->inherits_from_position(c), 1u);
    EXPECT_EQ(a->inherits_from_position(d), npos);
    EXPECT_EQ(b->inherits_from_position(a), npos) << "it has no list";
    EXPECT_EQ(a->inherits_from_at(0), b);
    EXPECT_EQ(a->inherits_from_at(1), c);
    EXPECT_EQ(a->inherits_from_at(2), nullptr);
    EXPECT_EQ(b->inherits_from_at(0), nullptr);
}

TEST_F(inherit_list, inheriting_is_asked_for_directly_or_in_turn) {
    link(a, b);
    link(b, c);
    EXPECT_TRUE(a->inherits_from(b, false));
    EXPECT_FALSE(a->inherits_from(c, false));
    EXPECT_TRUE(a->inherits_from(c, true));
    EXPECT_FALSE(c->inherits_from(a, true));
    EXPECT_FALSE(a->inherits_from(a, true));
    EXPECT_FALSE(a->inherits_from(nullptr, false));
    EXPECT_FALSE(a->inherits_from(nullptr, true));
}

TEST_F(inherit_list, lists_are_given_by_type) {
    object* const other = make(types::other, "o");
    link(a, b);
    link(a, other);
    EXPECT_EQ(names_of(a->inherits_from_list(types::thing)), "b");
    EXPECT_EQ(names_of(a->inherits_from_list(types::other)), "o");
    EXPECT_EQ(names_of(a->inherits_from_list(types::part)), "");
    std::vector<object*> out{d};
    EXPECT_EQ(a->inherits_from_list(out, types::other), 2u) << "appends";
    EXPECT_EQ(names_of(out), "d o");
    EXPECT_EQ(a->inherits_from_list(out, 0), 4u);
    EXPECT_EQ(a->inherits_from_list(out), 2u) << "replaces";
    EXPECT_EQ(names_of(out), "b o");
    EXPECT_EQ(b->inherits_from_list(out), 0u);
    EXPECT_TRUE(out.empty());
}

TEST_F(inherit_list, every_change_can_be_undone_and_redone) {
    expect_reversible([&] { return a->add_inherits_from(b); });
    expect_reversible([&] { return a->insert_inherits_from(c, 0); });
    expect_reversible([&] { return a->set_inherits_from_position(c, 1); });
    expect_reversible([&] { return a->replace_inherits_from_at(d, 0); });
    expect_reversible([&] { return a->replace_inherits_from(b, c); });
    EXPECT_EQ(bases_of(a), "d b");
    expect_reversible([&] { return a->cancel_inherits_from(d); });
    expect_reversible([&] { return a->add_inherits_from(c); });
    expect_reversible([&] { return a->cancel_all_inherits_from(); });
    EXPECT_EQ(bases_of(a), "");
    while (model->can_undo()) model->undo();
    EXPECT_EQ(bases_of(a), "");
    EXPECT_TRUE(b->inheritors().empty());
}

TEST_F(inherit_list, a_circle_is_refused_and_rolls_back) {
    link(a, b);
    link(b, c);
    expect_refused([&] { return c->add_inherits_from(a); });
    expect_refused([&] { return c->insert_inherits_from(a, 0); });
    expect_refused([&] { return b->replace_inherits_from_at(a, 0); });
    expect_refused([&] { return b->set_inherits_from_position(a, 0); });
    EXPECT_EQ(bases_of(c), "");
}

TEST_F(inherit_list, nothing_and_itself_are_no_bases) {
    link(a, b);
    for (object* bad : {static_cast<object*>(nullptr), a}) {
        expect_refused([&] { return a->add_inherits_from(bad); });
        expect_refused([&] { return a->insert_inherits_from(bad, 0); });
        expect_refused([&] { return a->replace_inherits_from_at(bad, 0); });
        expect_refused([&] { return a->set_inherits_from_position(bad, 0); });
        forget();
        EXPECT_TRUE(a->cancel_inherits_from(bad)) << "there is nothing to do";
        EXPECT_EQ(model->message_count(), 0u);
    }
}

TEST_F(inherit_list, a_base_of_another_model_is_refused) {
    object* const elsewhere = fw.create_object(type_id::model, nullptr);
    object* const stranger = fw.create_object(types::thing, elsewhere);
    link(a, b);
    expect_refused([&] { return a->add_inherits_from(stranger); });
    expect_refused([&] { return a->insert_inherits_from(stranger, 0); });
    expect_refused([&] { return a->replace_inherits_from_at(stranger, 0); });
    fw.delete_object(elsewhere);
}

TEST_F(inherit_list, a_deleted_object_is_no_base_and_takes_none) {
    link(a, b);
    ASSERT_TRUE(change([&] { return fw.delete_object(d); }));
    begin();
    EXPECT_FALSE(a->add_inherits_from(d));
    EXPECT_FALSE(a->insert_inherits_from(d, 0));
    EXPECT_FALSE(a->replace_inherits_from_at(d, 0));
    EXPECT_FALSE(model->in_transaction());
    const std::size_t before = model->message_count();
    begin();
    EXPECT_TRUE(d->add_inherits_from(b));
    EXPECT_TRUE(d->insert_inherits_from(b, 0));
    EXPECT_TRUE(d->cancel_inherits_from(b));
    EXPECT_TRUE(d->set_property_not_inheritable(props::text, true));
    const property<std::string> value = text("x");
    EXPECT_TRUE(d->refresh_property(props::text, &value, nullptr));
    end();
    EXPECT_EQ(model->message_count(), before) << "an empty transaction leaves nothing";
    EXPECT_EQ(bases_of(d), "");
    EXPECT_FALSE(d->is_property_not_inheritable(props::text));
}

TEST_F(inherit_list, keeps_the_list_when_a_base_is_added_twice_and_records_it_all_the_same) {
    link(a, b);
    link(a, c);
    forget();
    const std::string before = dump();
    listen({a});
    ASSERT_TRUE(change([&] { return a->add_inherits_from(b); }));
    EXPECT_EQ(message_types(), "1 19 2");
    EXPECT_EQ(ears.take(), "19 first a: + b\n");
    EXPECT_EQ(dump(), before);
    model->undo();
    EXPECT_EQ(ears.take(), "20 again a: - b\n");
    EXPECT_EQ(dump(), before) << "undo of an add that changed nothing takes nothing away";
    model->redo();
    EXPECT_EQ(ears.take(), "19 again a: + b\n");
    EXPECT_EQ(dump(), before);
}

TEST_F(inherit_list, inserting_or_replacing_by_a_base_that_is_there_does_nothing) {
    link(a, b);
    link(a, c);
    forget();
    EXPECT_TRUE(a->insert_inherits_from(b, 1));
    EXPECT_TRUE(a->insert_inherits_from(b, 99));
    EXPECT_TRUE(a->replace_inherits_from_at(b, 1));
    EXPECT_TRUE(a->replace_inherits_from_at(c, 1));
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(bases_of(a), "b c");
}

TEST_F(inherit_list, insertion_takes_a_position_up_to_the_size) {
    EXPECT_TRUE(change([&] { return a->insert_inherits_from(b, 0); }));
    EXPECT_TRUE(change([&] { return a->insert_inherits_from(c, 1); }));
    EXPECT_TRUE(change([&] { return a->insert_inherits_from(d, 1); }));
    EXPECT_EQ(bases_of(a), "b d c");
    object* const e = thing("e");
    expect_refused([&] { return a->insert_inherits_from(e, 4); });
}

TEST_F(inherit_list, replacement_needs_something_to_replace) {
    expect_refused([&] { return a->replace_inherits_from_at(b, 0); });
    link(a, b);
    expect_refused([&] { return a->replace_inherits_from_at(c, 1); });
    begin();
    d->set_property(props::number, number(1));
    EXPECT_FALSE(a->replace_inherits_from(c, d));
    EXPECT_TRUE(model->in_transaction()) << "an unknown former base is a plain no";
    end();
    EXPECT_TRUE(d->defines_property(props::number));
}

TEST_F(inherit_list, an_order_is_counted_without_the_base_that_moves) {
    link(a, b);
    link(a, c);
    link(a, d);
    struct row {
        const char* why;
        object* base;
        std::size_t to;
        const char* then;
    };
    for (const row& r : {row{"to the front", d, 0, "d b c"}, row{"one back", d, 1, "b d c"},
                         row{"to where it is", d, 1, "b d c"}, row{"to the end", b, 2, "d c b"},
                         row{"the whole size is the end as well", d, 3, "c b d"}}) {
        SCOPED_TRACE(r.why);
        EXPECT_TRUE(change([&] { return a->set_inherits_from_position(r.base, r.to); }));
        EXPECT_EQ(bases_of(a), r.then);
    }
    expect_refused([&] { return a->set_inherits_from_position(b, 4); });
    expect_refused([&] { return a->set_inherits_from_position(thing("stranger"), 0); });
    expect_refused([&] { return b->set_inherits_from_position(c, 0); });
    while (model->can_undo()) model->undo();
    EXPECT_EQ(bases_of(a), "");
}

TEST_F(inherit_list, cancelling_all_goes_from_the_last_to_the_first) {
    link(a, b);
    link(a, c);
    forget();
    listen({a});
    ASSERT_TRUE(change([&] { return a->cancel_all_inherits_from(); }));
    EXPECT_EQ(ears.take(), "20 first a: - c\n20 first a: - b\n");
    EXPECT_TRUE(a->cancel_all_inherits_from()) << "there is no list";
    EXPECT_TRUE(b->inheritors().empty());
    EXPECT_TRUE(c->inheritors().empty());
}

TEST_F(inherit_list, cancelling_all_ends_at_the_first_refusal) {
    object* const h = hooked("h");
    link(h, b);
    link(h, c);
    hooks.refuse<pre_cancel_inherits_from_semantic>();
    begin();
    EXPECT_FALSE(h->cancel_all_inherits_from());
    EXPECT_EQ(bases_of(h), "b c");
    hooks.clear();
}

TEST_F(inherit_list, deleting_a_base_cancels_and_one_undo_brings_it_back) {
    give(b, "x");
    link(a, b);
    link(b, c);
    const std::string before = dump();
    ASSERT_TRUE(change([&] { return fw.delete_object(b); }));
    EXPECT_EQ(bases_of(a), "");
    EXPECT_TRUE(c->inheritors().empty());
    const std::string after = dump();
    model->undo();
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(as_text(a->get_property(props::text)), "x");
    model->redo();
    EXPECT_EQ(dump(), after);
}

TEST_F(inherit_list, a_base_that_a_hook_has_linked_meanwhile_is_not_linked_twice) {
    object* const h = hooked("h");
    hooks.on<pre_insert_inherits_from_semantic>([&](hook_call&) {
        hooks.clear();
        return h->add_inherits_from(b);
    });
    EXPECT_TRUE(change([&] { return h->insert_inherits_from(b, 0); }));
    EXPECT_EQ(bases_of(h), "b");
    EXPECT_EQ(b->inheritors(), std::vector<object*>{h});
    model->undo();
    EXPECT_EQ(bases_of(h), "");
    EXPECT_TRUE(b->inheritors().empty());
}

TEST_F(inherit_list, a_circle_that_a_hook_has_closed_meanwhile_is_refused) {
    object* const h = hooked("h");
    hooks.on<pre_insert_inherits_from_semantic>([&](hook_call&) {
        hooks.clear();
        return b->add_inherits_from(h);
    });
    expect_refused([&] { return h->insert_inherits_from(b, 0); });
}

TEST_F(inherit_list, cancelling_all_takes_one_undo_and_tells_each_value_that_is_lost) {
    give(b, "x");
    give(c, "y");
    give(c, "more", props::definition);
    link(a, b);
    link(a, c);
    link(d, a);
    listen({a, d});
    expect_reversible([&] {
        const bool done = a->cancel_all_inherits_from();
        EXPECT_EQ(ears.take(), "20 first a: - c\n10 first a: 2 lost more\n10 first d: 2 lost more\n"
                               "20 first a: - b\n10 first a: 10 lost x\n10 first d: 10 lost x\n");
        return done;
    });
}

TEST_F(inherit_list, cancelling_all_ends_where_an_observer_refuses_and_leaves_the_rest) {
    link(a, b);
    link(a, c);
    link(a, d);
    listen({a});
    int heard = 0;
    ears.meanwhile = [&](message*) { ears.answer = ++heard != 2; };
    begin();
    EXPECT_FALSE(a->cancel_all_inherits_from());
    EXPECT_TRUE(model->in_transaction());
    end();
    ears.meanwhile = nullptr;
    EXPECT_EQ(bases_of(a), "b") << "what was refused was done";
}

TEST_F(inherit_list, cancelling_all_outside_a_transaction_keeps_what_went_before_a_hook_refused) {
    object* const h = hooked("h");
    link(h, b);
    link(h, c);
    hooks.on<pre_cancel_inherits_from_semantic>([&](hook_call& call) { return call.others[0] != b; });
    EXPECT_FALSE(h->cancel_all_inherits_from());
    EXPECT_EQ(bases_of(h), "b");
    hooks.clear();
    begin();
    end();
}

TEST_F(inherit_list, what_may_be_a_base_is_asked_before_the_hooks_or_behind_them) {
    object* const h = hooked("h");
    link(h, b);
    link(d, h);
    forget();
    hooks.record(true);
    struct row {
        const char* why;
        std::function<bool()> what;
        bool answer;
        const char* asked;
    };
    object* const nobody = nullptr;
    for (const row& r : {
             row{"add nothing", [&] { return h->add_inherits_from(nobody); }, false, "29 h null\n"},
             row{"add itself", [&] { return h->add_inherits_from(h); }, false, "29 h h\n"},
             row{"add an inheritor", [&] { return h->add_inherits_from(d); }, false, "29 h d\n"},
             row{"add again", [&] { return h->add_inherits_from(b); }, true, "29 h b\n30 h b\n"},
             row{"insert nothing", [&] { return h->insert_inherits_from(nobody, 0); }, false, ""},
             row{"insert itself", [&] { return h->insert_inherits_from(h, 0); }, false, ""},
             row{"insert an inheritor", [&] { return h->insert_inherits_from(d, 0); }, false, ""},
             row{"insert again", [&] { return h->insert_inherits_from(b, 0); }, true, ""},
             row{"insert too far", [&] { return h->insert_inherits_from(c, 2); }, false, "35 h c 2\n"},
             row{"replace by nothing", [&] { return h->replace_inherits_from(nobody, b); }, false, ""},
             row{"replace by itself", [&] { return h->replace_inherits_from(h, b); }, false, ""},
             row{"replace by an inheritor", [&] { return h->replace_inherits_from(d, b); }, false, ""},
             row{"replace by the same", [&] { return h->replace_inherits_from(b, b); }, true, ""},
             row{"replace too far", [&] { return h->replace_inherits_from_at(c, 1); }, false, ""},
             row{"replace what is no base", [&] { return h->replace_inherits_from(c, d); }, false, ""},
             row{"cancel nothing", [&] { return h->cancel_inherits_from(nobody); }, true, "31 h null\n"},
             row{"cancel itself", [&] { return h->cancel_inherits_from(h); }, true, "31 h h\n"},
             row{"move nothing", [&] { return h->set_inherits_from_position(nobody, 0); }, false, ""},
             row{"move itself", [&] { return h->set_inherits_from_position(h, 0); }, false, ""},
             row{"move an inheritor", [&] { return h->set_inherits_from_position(d, 0); }, false, ""},
             row{"move what is no base", [&] { return h->set_inherits_from_position(c, 0); }, false,
                 "37 h c 0\n"},
             row{"move too far", [&] { return h->set_inherits_from_position(b, 2); }, false, "37 h b 2\n"},
         }) {
        SCOPED_TRACE(r.why);
        begin();
        EXPECT_EQ(r.what(), r.answer);
        EXPECT_EQ(hook_log(), r.asked);
        if (model->in_transaction()) end();
        EXPECT_EQ(bases_of(h), "b");
    }
}

} // namespace kelm::test
