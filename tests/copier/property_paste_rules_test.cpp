// Rules about single values: when they are asked, the first time and again, and each of their answers.
// Values without rules are paste_values_test.
#include "tests/copier/copy_paste_world.h"

namespace kelm::test {
namespace {

using result = int;

class property_paste_rules : public copy_paste_world {
protected:
    /// A rule about one property of linked objects; the others are set as usual and not written down.
    void rule(u32 about, std::function<result(object*, abstract_property*, bool)> what) {
        on_value.on_call = [=, this](object* of, u32 id, abstract_property* value, bool is_last) {
            if (id == about) {
                asked_ += dump_text(value).substr(0, 1) == "#" ? "target" : dump_text(value);
                asked_ += is_last ? " last|" : "|";
            }
            return id == about ? what(of, value, is_last) : property_paste_result::nothing;
        };
        clip->set_property_paste_rule(types::linked, scripted_value_rule{on_value});
    }
    /// One that gives its answers in turn, the last one for ever.
    void rule(u32 about, std::vector<result> answers) {
        auto next = std::make_shared<std::size_t>(0);
        rule(about, [=](object*, abstract_property*, bool) {
            const result answer = answers[*next];
            if (*next + 1 < answers.size()) ++*next;
            return answer;
        });
    }
    std::string asked() { return std::exchange(asked_, {}); }

    object* const a = linked("a");

private:
    std::string asked_;
};

constexpr result nothing = property_paste_result::nothing;
constexpr result defer = property_paste_result::defer;
constexpr result done = property_paste_result::done;

TEST_F(property_paste_rules,
       are_asked_about_each_value_in_the_order_of_ids_also_when_it_is_inherited_by_then) {
    object* const base = thing("base");
    set(base, props::text, text("same"));
    set(a, props::text, text("same"));
    set(a, props::number, number(1));
    set(a, props::reference, base);
    set(a, props::list, {base, a});
    add_base(a, base);
    copy_all({base, a});
    clip->set_property_paste_rule(types::linked, scripted_value_rule{on_value});
    EXPECT_TRUE(paste());
    const std::string base_id = std::to_string(found("base")->id());
    const std::string id = std::to_string(found("a")->id());
    EXPECT_EQ(on_value.take(), "#" + id + " 1='a'\na 10='same'\na 11='1'\na 13=#" + base_id + "\na 14=[#" +
                                   base_id + "|#" + id + "|]\n");
    EXPECT_EQ(own("a", props::text), "none");
}

TEST_F(property_paste_rules, are_told_null_for_what_does_not_resolve_and_asked_again_when_it_does) {
    object* const b = linked("b");
    set(a, props::list, {a, b});
    copy_all({a, b});
    clip->set_property_paste_rule(types::linked, scripted_value_rule{on_value});
    EXPECT_TRUE(paste());
    const auto id = [&](const char* name) { return "#" + std::to_string(found(name)->id()); };
    EXPECT_EQ(on_value.take(), id("a") + " 1='a'\na 14=null\n" + id("b") + " 1='b'\na 14=[" + id("a") + "|" +
                                   id("b") + "|]\n");
}

TEST_F(property_paste_rules, are_asked_once_about_what_never_resolves) {
    set(a, props::reference, thing("outside"));
    copy(a);
    rule(props::reference, {nothing});
    EXPECT_TRUE(paste());
    EXPECT_EQ(asked(), "null|");
}

TEST_F(property_paste_rules, are_of_the_type_of_the_new_object) {
    object* const present = far(types::linked, "present");
    object* const b = thing("b");
    set(b, props::text, text("x"));
    copy(b);
    rule(props::text, {done});
    on_paste.target = present;
    on_paste.on_call = [](const paste_call&) { return paste_action::use_existing; };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    EXPECT_TRUE(paste());
    EXPECT_EQ(asked(), "'x'|");
    EXPECT_EQ(own("b", props::text), "none");
}

TEST_F(property_paste_rules, are_not_those_of_a_base_type) {
    copy(a);
    clip->set_property_paste_rule(types::hooked, scripted_value_rule{on_value});
    EXPECT_TRUE(paste());
    EXPECT_EQ(on_value.take(), "");
}

// Each row: the answers in turn, when the rule was asked, what the property holds behind it, whether the object with a
// property that must exist is still there.
struct answer_row {
    const char* why;
    std::vector<result> answers;
    const char* asked;
    bool is_set;
};

const answer_row plain_rows[] = {
    {"nothing: it is set", {nothing}, "'x'|", true},
    {"done: it is left alone", {done}, "'x'|", false},
    {"defer, then nothing: it is set in the first round", {defer, nothing}, "'x'|'x'|", true},
    {"defer for ever", {defer}, "'x'|'x'|'x' last|", false},
    {"defer, then done: that defers when asked again", {defer, done}, "'x'|'x'|'x' last|", false},
    {"defer to the last pass", {defer, defer, nothing}, "'x'|'x'|'x' last|", true},
    {"defer, then done, then nothing", {defer, done, nothing}, "'x'|'x'|'x' last|", true},
};

TEST_F(property_paste_rules, decide_about_plain_values) {
    set(a, props::text, text("x"));
    set(a, props::needed_text, text("x"));
    copy(a);
    for (const u32 id : {props::text, props::needed_text})
        for (const answer_row& row : plain_rows) {
            SCOPED_TRACE(std::to_string(id) + ": " + row.why);
            rule(id, row.answers);
            EXPECT_TRUE(paste());
            EXPECT_EQ(asked(), row.asked);
            const bool waits = !row.is_set && row.answers[0] == defer;
            if (id == props::needed_text && waits) {
                EXPECT_EQ(far_tree(), "") << "what waits to the end is missing";
            } else {
                EXPECT_EQ(own("a", id), row.is_set ? "'x'" : "none");
            }
            far_model->rollback_last_transaction();
        }
}

const answer_row resolved_rows[] = {
    {"nothing: it is set", {nothing}, "target|", true},
    {"done: it is left alone", {done}, "target|", false},
    {"defer, then nothing", {defer, nothing}, "target|target|", true},
    {"defer for ever", {defer}, "target|target|target last|", false},
    {"defer, then done", {defer, done}, "target|target|target last|", false},
    {"defer to the last pass", {defer, defer, nothing}, "target|target|target last|", true},
};

TEST_F(property_paste_rules, decide_about_references_that_resolve) {
    object* const b = thing("b");
    set(a, props::reference, b);
    set(a, props::needed, b);
    copy_all({b, a});
    for (const u32 id : {props::reference, props::needed})
        for (const answer_row& row : resolved_rows) {
            SCOPED_TRACE(std::to_string(id) + ": " + row.why);
            rule(id, row.answers);
            EXPECT_TRUE(paste());
            EXPECT_EQ(asked(), row.asked);
            const bool waits = !row.is_set && row.answers[0] == defer;
            if (id == props::needed && waits) {
                EXPECT_EQ(far_tree(), "b");
            } else {
                EXPECT_EQ(own("a", id), row.is_set ? "->b" : "none");
            }
            far_model->rollback_last_transaction();
        }
}

const answer_row unresolved_rows[] = {
    {"nothing, then nothing", {nothing}, "null|target|", true},
    {"done does not keep it from waiting", {done, nothing}, "null|target|", true},
    {"defer does not either", {defer, nothing}, "null|target|", true},
    {"nothing, then defer for ever", {nothing, defer}, "null|target|target last|", false},
    {"nothing, then done: that defers when asked again", {nothing, done}, "null|target|target last|", false},
    {"done for ever", {done}, "null|target|target last|", false},
    {"on the last pass", {nothing, defer, nothing}, "null|target|target last|", true},
};

TEST_F(property_paste_rules, decide_about_references_that_resolve_later) {
    object* const b = thing("b");
    for (const u32 id : {props::reference, props::needed})
        for (const answer_row& row : unresolved_rows) {
            SCOPED_TRACE(std::to_string(id) + ": " + row.why);
            object* const c = linked("c");
            set(c, id, b);
            clip = fw.create_copier(model);
            copy_all({c, b});
            rule(id, row.answers);
            EXPECT_TRUE(paste());
            EXPECT_EQ(asked(), row.asked);
            if (id == props::needed && !row.is_set) {
                EXPECT_EQ(far_tree(), "b");
            } else {
                EXPECT_EQ(own("c", id), row.is_set ? "->b" : "none");
            }
            far_model->rollback_last_transaction();
        }
}

TEST_F(property_paste_rules, are_asked_again_whenever_something_else_was_settled) {
    object* const b = thing("b");
    set(a, props::reference, b);
    set(a, props::left_behind, b);
    copy_all({a, b});
    rule(props::reference, {nothing, defer});
    EXPECT_TRUE(paste());
    EXPECT_EQ(asked(), "null|target|target|target|target last|")
        << "a round with the other one, the next round, the first and the last one without progress";
}

TEST_F(property_paste_rules, that_answer_done_for_what_never_resolves_leave_it_missing) {
    set(a, props::needed, thing("outside"));
    copy(a);
    rule(props::needed, {done});
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "");
}

TEST_F(property_paste_rules, may_set_something_else_themselves) {
    set(a, props::text, text("x"));
    copy(a);
    rule(props::text, [](object* of, abstract_property*, bool) {
        of->set_property(props::text, text("y"));
        return done;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(own("a", props::text), "'y'");
}

TEST_F(property_paste_rules, may_change_the_value_that_they_are_lent) {
    set(a, props::text, text("x"));
    copy(a);
    const std::string before = bytes_of(*clip);
    rule(props::text, [](object*, abstract_property* value, bool) {
        value->from_string("changed");
        return nothing;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(bytes_of(*clip), before) << "the snapshot keeps its own";
}

TEST_F(property_paste_rules, may_delete_the_object) {
    set(a, props::text, text("x"));
    set(a, props::number, number(1));
    part("p", a);
    copy_all({a, thing("b")});
    rule(props::text, [&](object* of, abstract_property*, bool) {
        fw.delete_object(of);
        return nothing;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "b");
    EXPECT_EQ(broken_links(*far_model), "");
}

TEST_F(property_paste_rules, that_wait_for_an_object_that_goes_are_forgotten) {
    object* const b = linked("b");
    set(a, props::text, text("x"));
    set(b, props::text, text("y"));
    copy_all({a, b});
    rule(props::text, [&](object* of, abstract_property*, bool) {
        if (name_or_number(of) == "a") return defer;
        fw.delete_object(found("a"));
        return nothing;
    });
    EXPECT_TRUE(paste());
    EXPECT_EQ(asked(), "'x'|'y'|");
    EXPECT_EQ(far_tree(), "b");
}

TEST_F(property_paste_rules, are_replaced_by_the_next_of_the_type) {
    set(a, props::text, text("x"));
    copy(a);
    value_script other;
    other.on_call = [](object*, u32, abstract_property*, bool) { return done; };
    clip->set_property_paste_rule(types::linked, scripted_value_rule{other});
    rule(props::text, {nothing});
    EXPECT_TRUE(paste());
    EXPECT_EQ(other.alive, 0);
    EXPECT_EQ(other.heard, "");
    EXPECT_EQ(own("a", props::text), "'x'");
}

TEST_F(property_paste_rules, are_told_the_last_pass_for_what_is_made_then) {
    object* const b = thing("b", a);
    linked("c", b);
    copy(a);
    on_paste.on_call = [](const paste_call& call) {
        return call.is_last ? paste_action::create : paste_action::defer;
    };
    clip->set_paste_rule(types::thing, scripted_paste_rule{on_paste});
    rule(props::name, {nothing});
    EXPECT_TRUE(paste());
    EXPECT_EQ(asked(), "'a'|'c' last|");
}

} // namespace
} // namespace kelm::test
