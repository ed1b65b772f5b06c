// Hooks around reads: what they may refuse, change in place, replace and supply.
// The order in which a read looks for values without them is properties_test.
#include "tests/object/value_lines.h"

namespace kelm::test {

namespace {

/// A read value that counts how many of its kind there are.
class counted final : public abstract_property {
public:
    static inline int alive = 0;

    explicit counted(std::string initial) : value(std::move(initial)) { ++alive; }
    counted(const counted& other) : abstract_property(other), value(other.value) { ++alive; }
    ~counted() override { --alive; }

    owned<abstract_property*> clone() const override { return new counted(*this); }
    bool equals(const abstract_property* other) const override {
        const auto* const same = dynamic_cast<const counted*>(other);
        return same && same->value == value;
    }
    std::string to_string() const override { return value; }
    void to_string(std::string& out) const override { out = value; }
    void from_string(const std::string& text) override { value = text; }
    void write(std::ostream&) const override {}
    void read(std::istream&, std::vector<reference_record>&, object*) override {}

    std::string value;
};

} // namespace

class get_hooks : public value_world {
protected:
    /// Programs what the hooks do behind a read of `text`; other reads pass.
    void behind(std::function<bool(abstract_property*&)> what, int rank = 0) {
        hooks.on(post_prop_get_semantic::kind + rank, [what = std::move(what)](hook_call& c) {
            return c.numbers[0] != props::text || what(*c.replaceable);
        });
    }
    static std::string read(const object* of) { return as_text(of->get_property(props::text)); }
    /// \returns where the library says that the value of `text` comes from: it is the old owner of a first own value
    object* source_seen_by(object* inheritor) {
        begin();
        inheritor->set_property(props::text, text("probe"));
        object* const source = dynamic_cast<property_set_message*>(last_message())->old_owner();
        model->rollback_transaction();
        return source;
    }
};

TEST_F(get_hooks, run_on_every_object_that_a_read_passes) {
    object* const base = hooked("base");
    object* const a = hooked("a");
    object* const last = hooked("last");
    prepare([&] {
        base->set_property(props::text, text("t"));
        a->add_inherits_from(last);
        a->add_inherits_from(base);
    });
    hooks.record(true);
    EXPECT_EQ(read(a), "t");
    EXPECT_EQ(hooks.take_log(), "4 a 10\n4 last 10\n5 last 10\n4 base 10\n5 base 10\n5 a 10\n");
    EXPECT_TRUE(a->has_property(props::text));
    EXPECT_EQ(hooks.take_log(), "4 a 10\n4 last 10\n5 last 10\n4 base 10\n5 base 10\n5 a 10\n");
    std::string out;
    EXPECT_TRUE(base->get_property_as_string(props::text, out));
    EXPECT_EQ(hooks.take_log(), "4 base 10\n5 base 10\n6 base 10 't'\n");
    a->get_own_property(props::text);
    a->defines_property(props::text);
    a->own_properties();
    EXPECT_EQ(a->property_source(props::text), base);
    EXPECT_EQ(hooks.take_log(), "") << "these run no hooks";
    hooks.record(false);
}

TEST_F(get_hooks, a_refusal_hides_even_an_own_value_and_rolls_nothing_back) {
    object* const h = hooked("h");
    prepare([&] { h->set_property(props::text, text("t")); });
    for (const int kind : {4, 5}) {
        SCOPED_TRACE(kind);
        hooks.refuse(kind);
        begin();
        h->set_property_not_inheritable(props::flag, true);
        EXPECT_EQ(read(h), "none");
        EXPECT_FALSE(h->has_property(props::text));
        EXPECT_TRUE(h->defines_property(props::text));
        EXPECT_EQ(as_text(h->get_own_property(props::text)), "t");
        std::string out = "something";
        EXPECT_FALSE(h->get_property_as_string(props::text, out));
        EXPECT_EQ(out, "");
        EXPECT_TRUE(h->all_properties()->empty());
        EXPECT_TRUE(model->in_transaction());
        model->rollback_transaction();
        hooks.clear();
    }
}

TEST_F(get_hooks, a_refusal_on_a_base_lets_the_next_base_answer) {
    object* const first = hooked("first");
    object* const second_base = thing("second");
    object* const a = hooked("a");
    prepare([&] {
        first->set_property(props::text, text("first"));
        second_base->set_property(props::text, text("second"));
        a->add_inherits_from(first);
        a->add_inherits_from(second_base);
    });
    EXPECT_EQ(read(a), "first");
    for (const int kind : {4, 5}) {
        SCOPED_TRACE(kind);
        hooks.on(kind, [&](hook_call& c) { return c.at != first; });
        EXPECT_EQ(read(a), "second");
        hooks.on(kind, [&](hook_call& c) { return c.at != a; });
        EXPECT_EQ(read(a), "none");
        hooks.clear();
    }
}

TEST_F(get_hooks, a_value_that_is_left_alone_is_a_plain_clone_with_its_source) {
    object* const base = hooked("base");
    object* const a = thing("a");
    prepare([&] {
        base->set_property(props::text, text("t"));
        a->add_inherits_from(base);
    });
    behind([](abstract_property*& value) {
        EXPECT_EQ(value->to_string(), "t");
        return true;
    });
    EXPECT_EQ(read(base), "t");
    EXPECT_EQ(source_seen_by(a), base);
    behind([](abstract_property*& value) { // changed, and changed back
        value->from_string("u");
        value->from_string("t");
        return true;
    });
    EXPECT_EQ(source_seen_by(a), base);
}

TEST_F(get_hooks, a_value_may_be_changed_in_place_and_the_stored_one_stays) {
    object* const base = hooked("base");
    object* const a = thing("a");
    prepare([&] {
        base->set_property(props::text, text("t"));
        a->add_inherits_from(base);
    });
    behind([](abstract_property*& value) {
        value->from_string("changed");
        return true;
    });
    EXPECT_EQ(read(base), "changed");
    EXPECT_EQ(read(a), "changed");
    EXPECT_EQ(as_text(base->get_own_property(props::text)), "t");
    EXPECT_EQ(source_seen_by(a), nullptr) << "nobody stores it";
    std::string out;
    value_ptr value;
    EXPECT_TRUE(base->get_property_as_string(props::text, out, &value));
    EXPECT_EQ(out + " " + as_text(value), "changed changed");
}

TEST_F(get_hooks, a_value_may_be_supplied_where_there_is_none) {
    object* const h = hooked("h");
    behind([](abstract_property*& value) {
        EXPECT_EQ(value, nullptr);
        value = new property<std::string>{"supplied"};
        return true;
    });
    EXPECT_EQ(read(h), "supplied");
    EXPECT_TRUE(h->has_property(props::text));
    EXPECT_FALSE(h->defines_property(props::text));
    ASSERT_TRUE(change([&] { return h->set_property(props::text, text("own")); }));
    EXPECT_EQ(lines(), "7 first user h: 10 in h 'supplied' of nobody to 'own'\n");
    model->undo();
    EXPECT_FALSE(h->defines_property(props::text)) << "a supplied value is not put in";
}

/// What two hooks in a row do to a stored value "t" of a counting kind, and what comes of it.
struct replacing_case {
    const char* why;
    std::function<bool(abstract_property*&)> first;
    std::function<bool(abstract_property*&)> second;
    const char* read;
    bool keeps_source;
};

TEST_F(get_hooks, replaced_values_are_freed_exactly_once) {
    const int before = counted::alive;
    object* const h = make(types::more_hooked, "h");
    object* const inheritor = thing("inheritor");
    prepare([&] {
        h->set_property(props::text, counted{"t"});
        inheritor->add_inherits_from(h);
    });
    ASSERT_EQ(counted::alive, before + 1);
    const auto pass = [](abstract_property*&) { return true; };
    const auto refuse = [](abstract_property*&) { return false; };
    const auto replace = [](abstract_property*& value) {
        value = new counted{"new"};
        return true;
    };
    const auto replace_and_refuse = [](abstract_property*& value) {
        value = new counted{"new"};
        return false;
    };
    const auto empty = [](abstract_property*& value) {
        value = nullptr;
        return true;
    };
    abstract_property* clone = nullptr;
    const auto replace_and_note = [&](abstract_property*& value) {
        clone = value;
        value = new counted{"new"};
        return true;
    };
    const auto put_back = [&](abstract_property*& value) {
        value = clone;
        return true;
    };
    const auto put_back_changed = [&](abstract_property*& value) {
        value = clone;
        value->from_string("put back");
        return true;
    };
    const auto replace_by_equal = [](abstract_property*& value) {
        value = new counted{"t"};
        return true;
    };
    const auto change_in_place = [](abstract_property*& value) {
        value->from_string(value->to_string() + "!");
        return true;
    };
    const replacing_case rows[] = {
        {"left alone", pass, pass, "t", true},
        {"replaced by the first", replace, pass, "new", false},
        {"replaced by the second", pass, replace, "new", false},
        {"replaced twice", replace, replace, "new", false},
        {"replaced and changed in place", replace, change_in_place, "new!", false},
        {"changed in place twice", change_in_place, change_in_place, "t!!", false},
        {"emptied: what was found stands", empty, pass, "t", true},
        {"replaced and emptied", replace, empty, "t", true},
        {"emptied and replaced", empty, replace, "new", false},
        {"the clone put back", replace_and_note, put_back, "t", true},
        {"the clone put back and changed", replace_and_note, put_back_changed, "put back", false},
        {"replaced by an equal one is a replacement", replace_by_equal, pass, "t", false},
        {"refused by the first", refuse, pass, "none", false},
        {"refused by the second", replace, refuse, "none", false},
        {"replaced and refused", replace_and_refuse, pass, "none", false},
        {"replaced twice and refused", replace, replace_and_refuse, "none", false},
    };
    for (const replacing_case& row : rows) {
        SCOPED_TRACE(row.why);
        behind(row.first);
        behind(row.second, second);
        EXPECT_EQ(read(h), row.read);
        EXPECT_EQ(h->has_property(props::text), std::string(row.read) != "none");
        EXPECT_EQ(read(inheritor), row.read);
        EXPECT_EQ(source_seen_by(inheritor), row.keeps_source ? h : nullptr);
        std::string out;
        EXPECT_EQ(h->get_property_as_string(props::text, out), std::string(row.read) != "none");
        EXPECT_EQ(counted::alive, before + 1) << "all but the stored one are gone";
    }
    hooks.clear();
    prepare([&] { h->delete_property(props::text); });
    EXPECT_EQ(counted::alive, before);
}

TEST_F(get_hooks, values_made_on_a_base_are_freed_when_the_inheritor_replaces_or_refuses_them) {
    const int before = counted::alive;
    object* const base = hooked("base");
    object* const a = hooked("a");
    prepare([&] { a->add_inherits_from(base); });
    bool refuses = false;
    hooks.on<post_prop_get_semantic>([&](hook_call& c) {
        if (c.numbers[0] != props::text) return true;
        if (c.at == a && refuses) return false;
        *c.replaceable = new counted{c.at == a ? "made on a" : "made on base"};
        return true;
    });
    EXPECT_EQ(read(a), "made on a");
    EXPECT_EQ(read(base), "made on base");
    refuses = true;
    EXPECT_EQ(read(a), "none");
    EXPECT_EQ(counted::alive, before);
}

TEST_F(get_hooks, a_hook_that_throws_leaks_nothing) {
    const int before = counted::alive;
    object* const h = make(types::more_hooked, "h");
    prepare([&] { h->set_property(props::text, counted{"t"}); });
    behind([](abstract_property*& value) {
        value = new counted{"new"};
        return true;
    });
    behind([](abstract_property*&) -> bool { throw std::runtime_error("thrown by a hook"); }, second);
    EXPECT_THROW(h->get_property(props::text), std::runtime_error);
    EXPECT_THROW(h->has_property(props::text), std::runtime_error);
    EXPECT_EQ(counted::alive, before + 1);
    hooks.clear();
    prepare([&] { h->delete_property(props::text); });
    EXPECT_EQ(counted::alive, before);
}

TEST_F(get_hooks, a_text_may_be_changed_and_refused_on_its_own) {
    object* const h = hooked("h");
    prepare([&] { h->set_property(props::text, text("t")); });
    hooks.on<post_prop_get_as_string_semantic>([](hook_call& c) {
        if (c.numbers[0] == props::text) *c.text += " (" + c.values[0] + ")";
        return true;
    });
    std::string out;
    value_ptr value;
    EXPECT_TRUE(h->get_property_as_string(props::text, out, &value));
    EXPECT_EQ(out, "t (t)");
    EXPECT_EQ(as_text(value), "t");
    hooks.on<post_prop_get_as_string_semantic>([](hook_call& c) {
        *c.text = "what a refusing hook leaves";
        return false;
    });
    value.reset();
    EXPECT_FALSE(h->get_property_as_string(props::text, out, &value));
    EXPECT_EQ(out, "what a refusing hook leaves");
    EXPECT_EQ(as_text(value), "t");
    hooks.clear();
    hooks.record(true);
    EXPECT_FALSE(h->get_property_as_string(props::number, out));
    hooks.record(false);
    EXPECT_EQ(hooks.take_log(), "4 h 11\n5 h 11\n") << "without a value there is no text to change";
}

TEST_F(get_hooks, run_for_a_first_own_value_and_not_for_one_that_is_stored) {
    object* const base = hooked("base");
    object* const h = hooked("h");
    prepare([&] { h->add_inherits_from(base); });
    std::string seen;
    for (const int kind : {4, 5})
        hooks.on(kind, [&, kind](hook_call& c) {
            if (c.numbers[0] == props::text) seen += std::to_string(kind) + (c.at == h ? "h " : "base ");
            return true;
        });
    begin();
    ASSERT_TRUE(h->set_property(props::text, text("one")));
    EXPECT_EQ(std::exchange(seen, {}), "4h 4base 5base 5h ");
    ASSERT_TRUE(h->set_property(props::text, text("two")));
    ASSERT_TRUE(h->delete_property(props::text));
    EXPECT_EQ(seen, "");
    end();
}

TEST_F(get_hooks, a_value_that_a_hook_stores_while_a_first_one_is_set_is_the_old_one) {
    object* const h = hooked("h");
    hooks.on<pre_prop_get_semantic>([&](hook_call& c) {
        if (c.numbers[0] != props::text || h->defines_property(props::text)) return true;
        hooks.on<pre_prop_get_semantic>([](hook_call&) { return true; });
        return h->set_property(props::text, text("the hook's"));
    });
    const std::string before = dump();
    ASSERT_TRUE(change([&] { return h->set_property(props::text, text("the caller's")); }));
    EXPECT_EQ(lines(), "7 first user h: 10 in h none of nobody to 'the hook's'\n"
                       "7 first user h: 10 in h 'the hook's' of h to 'the caller's'\n");
    hooks.clear();
    model->undo();
    EXPECT_EQ(dump(), before);
    model->redo();
    EXPECT_EQ(as_text(h->get_property(props::text)), "the caller's");
}

TEST_F(get_hooks, what_a_hook_drops_while_reading_stays_readable) {
    object* const h = hooked("h");
    prepare([&] { h->set_property(props::text, text("a text that is too long for any short form")); });
    behind([&](abstract_property*&) {
        hooks.clear();
        EXPECT_TRUE(h->delete_property(props::text));
        model->clear_history();
        return true;
    });
    EXPECT_EQ(read(h), "a text that is too long for any short form");
    EXPECT_EQ(read(h), "none");
}

TEST_F(get_hooks, a_model_is_not_closed_while_it_is_read) {
    object* const h = hooked("h");
    hooks.on<pre_prop_get_semantic>([&](hook_call&) {
        EXPECT_FALSE(fw.delete_object(root));
        return true;
    });
    EXPECT_EQ(read(h), "none");
}

} // namespace kelm::test
