// Hooks around setting and deleting values and around elements: order, inheritors, observers between them.
// What holds for hooks of every kind is every_hook_test; hooks of reads are get_hooks_test.
#include "tests/object/value_lines.h"

namespace kelm::test {

using property_hooks = value_world;

namespace {

/// The kinds that a test of mutations records; reads in between would fill the log.
std::string without_reads(const std::string& log) {
    std::string out;
    for (std::size_t at = 0; at < log.size();) {
        const std::size_t end = log.find('\n', at) + 1;
        const std::string line = log.substr(at, end - at);
        if (!line.starts_with("4 ") && !line.starts_with("5 ") && !line.starts_with("6 ")) out += line;
        at = end;
    }
    return out;
}

} // namespace

TEST_F(property_hooks, run_before_and_behind_with_their_arguments) {
    object* const h = hooked("h");
    hooks.record(true);
    begin();
    ASSERT_TRUE(h->set_property(props::text, text("one")));
    ASSERT_TRUE(h->set_property(props::text, text("two")));
    ASSERT_TRUE(h->delete_property(props::text));
    ASSERT_TRUE(h->append_vector_element(props::list, number(1)));
    ASSERT_TRUE(h->insert_vector_element(props::list, number(2), 0));
    ASSERT_TRUE(h->set_vector_element(props::list, number(3), 1));
    ASSERT_TRUE(h->move_vector_element(props::list, 1, 0));
    ASSERT_TRUE(h->delete_vector_element(props::list, 1));
    end();
    hooks.record(false);
    EXPECT_EQ(without_reads(hooks.take_log()), "7 h h 10 'one'\n"
                                               "8 h h null 10 'one' 'none'\n"
                                               "7 h h 10 'two'\n"
                                               "8 h h h 10 'two' 'one'\n"
                                               "15 h h 10\n"
                                               "16 h h 10 'two'\n"
                                               "7 h h 14 ''\n"
                                               "8 h h null 14 '' 'none'\n"
                                               "11 h h 14 0 '1'\n"
                                               "12 h h 14 0 '1'\n"
                                               "11 h h 14 0 '2'\n"
                                               "12 h h 14 0 '2'\n"
                                               "9 h h 14 1 '3'\n"
                                               "10 h h 14 1 '3' '1'\n"
                                               "13 h h 14 1 0\n"
                                               "14 h h 14 1 0\n"
                                               "17 h h 14 1\n"
                                               "18 h h 14 1 '2'\n");
}

TEST_F(property_hooks, run_down_the_inheritors_with_the_origin) {
    object* const h = hooked("h");
    object* const i = hooked("i");
    object* const plain = thing("plain");
    prepare([&] {
        i->add_inherits_from(h);
        plain->add_inherits_from(h);
    });
    hooks.record(true);
    begin();
    ASSERT_TRUE(h->set_property(props::text, text("one")));
    ASSERT_TRUE(h->delete_property(props::text));
    ASSERT_TRUE(i->set_property(props::number, number(1)));
    ASSERT_TRUE(h->set_property(props::number, number(2))); // i has its own and sees nothing of it
    end();
    hooks.record(false);
    EXPECT_EQ(without_reads(hooks.take_log()), "7 h h 10 'one'\n"
                                               "7 i h 10 'one'\n"
                                               "8 h h null 10 'one' 'none'\n"
                                               "8 i h null 10 'one' 'none'\n"
                                               "15 h h 10\n"
                                               "15 i h 10\n"
                                               "16 h h 10 'one'\n"
                                               "16 i h 10 'one'\n"
                                               "7 i i 11 '1'\n"
                                               "8 i i null 11 '1' 'none'\n"
                                               "7 h h 11 '2'\n"
                                               "8 h h null 11 '2' 'none'\n");
}

TEST_F(property_hooks, run_for_a_deletion_of_what_is_not_own) {
    object* const h = hooked("h");
    hooks.record(true);
    EXPECT_TRUE(h->delete_property(props::text));
    hooks.record(false);
    EXPECT_EQ(hooks.take_log(), "15 h h 10\n");
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(property_hooks, run_before_a_change_of_a_deleted_object_too) {
    object* const h = hooked("h");
    begin();
    ASSERT_TRUE(fw.delete_object(h));
    hooks.record(true);
    EXPECT_TRUE(h->set_property(props::text, text("late")));
    EXPECT_TRUE(h->delete_property(props::text));
    EXPECT_TRUE(h->set_vector_element(props::list, number(1), 0));
    hooks.record(false);
    EXPECT_EQ(hooks.take_log(), "7   10 'late'\n15   10\n9   14 0 '1'\n") << "its name has gone with it";
    end();
}

/// Every mutator of a value, in a state in which it succeeds.
struct mutator {
    const char* why;
    int pre;
    int post;
    bool (*call)(object*);
};

void PrintTo(const mutator& which, std::ostream* out) { *out << which.why; }

const mutator mutators[] = {
    {"set", 7, 8, [](object* o) { return o->set_property(props::text, text("new")); }},
    {"delete", 15, 16, [](object* o) { return o->delete_property(props::number); }},
    {"insert", 11, 12, [](object* o) { return o->insert_vector_element(props::list, number(9), 1); }},
    {"append", 11, 12, [](object* o) { return o->append_vector_element(props::list, number(9)); }},
    {"delete element", 17, 18, [](object* o) { return o->delete_vector_element(props::list, 0); }},
    {"set element", 9, 10, [](object* o) { return o->set_vector_element(props::list, number(9), 1); }},
    {"move", 13, 14, [](object* o) { return o->move_vector_element(props::list, 0, 2); }},
};

class each_mutator : public value_world, public testing::WithParamInterface<mutator> {
protected:
    each_mutator() : h(hooked("h")), i(hooked("i")) {
        prepare([&] {
            h->set_property(props::number, number(1));
            h->set_property(props::list, *numbers({1, 2, 3}));
            i->add_inherits_from(h);
        });
        before = dump();
    }
    bool call() { return GetParam().call(h); }

    object* h;
    object* i;
    std::string before;
};

INSTANTIATE_TEST_SUITE_P(values, each_mutator, testing::ValuesIn(mutators), [](const auto& row) {
    std::string name;
    for (const char* c = row.param.why; *c; ++c) name += *c == ' ' ? '_' : *c;
    return name;
});

TEST_P(each_mutator, can_be_refused_by_an_inheritor) {
    for (const int kind : {GetParam().pre, GetParam().post}) {
        SCOPED_TRACE(kind);
        if (GetParam().pre == 15 && kind == 16) prepare([&] { i->delete_property(props::number); });
        hooks.on(kind, [&](hook_call& c) { return c.at != i; });
        begin();
        EXPECT_FALSE(call());
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(dump(), before);
        hooks.clear();
    }
}

TEST_P(each_mutator, ends_with_false_and_stands_when_an_observer_refuses) {
    hooks.record(true);
    ears.watch(h);
    ears.answer = false;
    begin();
    EXPECT_FALSE(call());
    EXPECT_TRUE(model->in_transaction());
    hooks.record(false);
    EXPECT_EQ(without_reads(hooks.take_log()).find("\n" + std::to_string(GetParam().post) + " "),
              std::string::npos)
        << "no hooks behind";
    end();
    EXPECT_NE(dump(), before);
    EXPECT_FALSE(fw.in_semantic());
    model->undo();
    EXPECT_EQ(dump(), before);
}

TEST_P(each_mutator, ends_with_false_and_stands_when_an_observer_of_an_inheritor_refuses) {
    ears.watch(i);
    ears.answer = false;
    begin();
    EXPECT_FALSE(call());
    EXPECT_TRUE(model->in_transaction());
    end();
    EXPECT_NE(dump(), before);
    model->undo();
    EXPECT_EQ(dump(), before);
}

TEST_P(each_mutator, is_safe_when_a_hook_behind_rolls_everything_back_and_goes_on) {
    hooks.on(GetParam().post, [&](hook_call&) {
        model->rollback_transaction_all();
        return true;
    });
    begin();
    EXPECT_TRUE(call());
    EXPECT_FALSE(model->in_transaction());
    EXPECT_EQ(dump(), before);
}

TEST_P(each_mutator, is_safe_when_an_observer_rolls_everything_back_and_forgets_it) {
    ears.watch(h);
    ears.line = [](message*) { return std::string{}; };
    ears.meanwhile = [&](message*) {
        ears.meanwhile = nullptr;
        model->rollback_transaction_all();
        model->clear_history();
    };
    begin();
    EXPECT_TRUE(call());
    EXPECT_EQ(dump(), before);
}

TEST_F(property_hooks, nested_levels_put_the_mark_back_as_they_found_it) {
    object* const h = hooked("h");
    std::string seen;
    hooks.on<post_prop_set_semantic>([&](hook_call& c) {
        seen += fw.in_semantic() ? "s" : "-";
        if (c.numbers[0] != props::text) return true;
        const bool done = h->set_property(props::number, number(1));
        seen += fw.in_semantic() ? "s" : "-";
        return done;
    });
    EXPECT_FALSE(fw.in_semantic());
    ASSERT_TRUE(change([&] { return h->set_property(props::text, text("t")); }));
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_EQ(seen, "sss");
    EXPECT_EQ(lines(), "7 first user h: 10 in h none of nobody to 't'\n"
                       "7 first hook h: 11 in h none of nobody to '1'\n");
}

TEST_F(property_hooks, a_change_inside_a_change_of_the_callers_hook_stays_marked) {
    object* const h = hooked("h");
    fw.set_in_semantic(true);
    EXPECT_TRUE(h->set_property(props::text, text("t")));
    EXPECT_TRUE(fw.in_semantic());
    fw.set_in_semantic(false);
    EXPECT_EQ(lines(), "7 first hook h: 10 in h none of nobody to 't'\n");
}

TEST_F(property_hooks, hooks_behind_get_the_callers_value_though_it_has_been_replaced_meanwhile) {
    object* const h = hooked("h");
    prepare([&] { h->set_property(props::text, text("old")); });
    ears.watch(h);
    ears.meanwhile = [&](message*) {
        ears.meanwhile = nullptr;
        EXPECT_TRUE(h->set_property(props::text, text("the observer's")));
    };
    std::string seen;
    hooks.on<post_prop_set_semantic>([&](hook_call& c) {
        seen += c.values[0] + " instead of " + c.values[1] + "\n";
        return true;
    });
    EXPECT_TRUE(change([&] { return h->set_property(props::text, text("the caller's")); }));
    EXPECT_EQ(seen, "the observer's instead of the caller's\nthe caller's instead of old\n");
    EXPECT_EQ(as_text(h->get_property(props::text)), "the observer's");
}

TEST_F(property_hooks, the_source_of_the_old_value_is_told_behind) {
    object* const base = thing("base");
    object* const h = hooked("h");
    prepare([&] {
        base->set_property(props::text, text("from base"));
        h->add_inherits_from(base);
    });
    std::string seen;
    hooks.on<post_prop_set_semantic>([&](hook_call& c) {
        seen += short_name(c.others[0]) + " " + short_name(c.others[1]) + " " + c.values[1] + "\n";
        return true;
    });
    begin();
    ASSERT_TRUE(h->set_property(props::text, text("own")));
    ASSERT_TRUE(h->set_property(props::text, text("again")));
    ASSERT_TRUE(h->set_property(props::number, number(1)));
    end();
    EXPECT_EQ(seen, "h base from base\nh h own\nh nobody none\n");
}

TEST_F(property_hooks, a_refused_making_of_a_missing_list_refuses_the_append) {
    object* const h = hooked("h");
    hooks.refuse<pre_prop_set_semantic>();
    begin();
    EXPECT_FALSE(h->append_vector_element(props::list, number(1)));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_FALSE(h->defines_property(props::list));
    EXPECT_FALSE(h->append_vector_element(props::list, number(1)));
    EXPECT_FALSE(fw.in_semantic()) << "put back even outside a transaction: the user's own work goes on";
    hooks.clear();
    ears.watch(h);
    ears.answer = false;
    EXPECT_FALSE(h->append_vector_element(props::list, number(1)));
    EXPECT_FALSE(fw.in_semantic());
    EXPECT_EQ(list(h), "[]");
}

TEST_F(property_hooks, a_list_that_a_hook_takes_away_again_refuses_the_append) {
    object* const h = hooked("h");
    hooks.on<post_prop_set_semantic>([&](hook_call& c) { return c.at->delete_property(props::list); });
    begin();
    EXPECT_FALSE(h->append_vector_element(props::list, number(1)));
    EXPECT_FALSE(model->in_transaction());
    EXPECT_FALSE(h->defines_property(props::list));
}

TEST_F(property_hooks, are_found_by_kind_and_by_id) {
    object* const h = hooked("h");
    object* const plain = thing("plain");
    std::vector<shared_ptr<semantic>> found{nullptr};
    EXPECT_TRUE(h->semantics_of_kind(7, found));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]->id(), 1007u);
    EXPECT_TRUE(h->semantics_of_kind(43, found)) << "the application's own kind";
    EXPECT_FALSE(plain->semantics_of_kind(7, found));
    EXPECT_TRUE(found.empty());
    EXPECT_FALSE(h->semantics_of_kind(45, found));
    EXPECT_FALSE(h->semantics_of_kind(-1, found));
    EXPECT_EQ(h->find_semantic(1008)->type(), 8);
    EXPECT_EQ(plain->find_semantic(8)->type(), 5) << "the default of user-defined properties";
    EXPECT_EQ(plain->find_semantic(1008), nullptr);
}

TEST_F(property_hooks, a_model_holds_the_hooks_of_its_own_type) {
    object* const h = hooked("h");
    std::vector<shared_ptr<semantic>> found;
    std::vector<shared_ptr<semantic>> of_its_type; // none, unless another test has added some
    const meta_object* const type = fw.application_meta_model()->find_meta_object(type_id::model);
    ASSERT_TRUE(h->semantics_of_kind(41, found));
    EXPECT_EQ(root->semantics_of_kind(41, found), type->semantics_of_kind(41, of_its_type));
    EXPECT_EQ(found, of_its_type);
    ASSERT_TRUE(h->find_semantic(1041));
    EXPECT_EQ(root->find_semantic(1041), nullptr);
}

} // namespace kelm::test
