// Refusals around inherited values: by each call of a hook, and by each observer that is told.
// What the changes ask and tell when nobody refuses is inherit_preview_test and inherit_told_test.
#include "tests/object/inherit_lines.h"

#include <functional>
#include <optional>
#include <vector>

namespace kelm::test {

namespace {

using lines = std::vector<std::string>;

/// A diamond of objects with hooks below `a`, which inherits from `b` and `c`.
class diamond : public inherit_world {
protected:
    diamond() {
        give(b, "x");
        give(c, "y");
        give(d, "z");
        give(a, "own", props::definition);
        change([&] {
            return d->set_property(props::number, number(1)) &&
                   a->append_vector_element(props::list, number(1)) &&
                   a->append_vector_element(props::list, number(2));
        });
        for (object* base : {b, c}) link(a, base);
        for (object* side : {left, right}) {
            link(side, a);
            link(bottom, side);
        }
        listen({a, left, right, bottom});
        forget();
        ears.line = [this](message* said) {
            told.push_back(std::to_string(said->type()) + " " + own_name(said->object()));
            return std::string{};
        };
    }

    /// Has the hooks of all changes write down their calls; the one with this number refuses.
    void program(std::optional<std::size_t> refusing = {}) {
        asked.clear();
        for (int kind = pre_prop_set_semantic::kind; kind <= post_set_owner_semantic::kind; ++kind)
            hooks.on(kind, [this, refusing](hook_call& call) {
                if (call.kind == pre_children_get_semantic::kind ||
                    call.kind == post_children_get_semantic::kind)
                    return true;
                asked.push_back(std::to_string(call.kind) + " " + own_name(call.at));
                return asked.size() != refusing.value_or(npos) + 1;
            });
    }
    static std::string own_name(const object* of) { return as_text(of->get_own_property(props::name)); }

    object *const a = hooked("a"), *const b = hooked("b"), *const c = hooked("c"), *const d = hooked("d");
    object *const left = hooked("left"), *const right = make(types::hooked_part, "right");
    object *const bottom = hooked("bottom"), *const plain = thing("plain");
    lines asked; ///< "kind object"
    lines told;  ///< "type object"
};

struct change_row {
    const char* why;
    std::function<bool(object* a, object* b, object* c, object* d)> run;
};

const property<std::string> old_text{"old"}, new_text{"new"};

const change_row changes[] = {
    {"add", [](object* a, object*, object*, object* d) { return a->add_inherits_from(d); }},
    {"insert", [](object* a, object*, object*, object* d) { return a->insert_inherits_from(d, 0); }},
    {"cancel", [](object* a, object* b, object*, object*) { return a->cancel_inherits_from(b); }},
    {"cancel all", [](object* a, object*, object*, object*) { return a->cancel_all_inherits_from(); }},
    {"replace", [](object* a, object* b, object*, object* d) { return a->replace_inherits_from(d, b); }},
    {"order", [](object* a, object*, object* c, object*) { return a->set_inherits_from_position(c, 0); }},
    {"mark",
     [](object* a, object*, object*, object*) { return a->set_property_not_inheritable(props::text, true); }},
    {"refresh", [](object* a, object*, object*,
                   object*) { return a->refresh_property(props::text, &new_text, &old_text); }},
    {"refresh of what is gone", [](object* a, object*, object*,
                                   object*) { return a->refresh_property(props::text, nullptr, &old_text); }},
    {"set", [](object* a, object*, object*, object*) { return a->set_property(props::text, new_text); }},
    {"set on a base",
     [](object*, object* b, object*, object*) { return b->set_property(props::text, new_text); }},
    {"delete", [](object* a, object*, object*, object*) { return a->delete_property(props::definition); }},
    {"set element",
     [](object* a, object*, object*, object*) { return a->set_vector_element(props::list, number(7), 0); }},
    {"insert element", [](object* a, object*, object*,
                          object*) { return a->insert_vector_element(props::list, number(7), 0); }},
    {"move element",
     [](object* a, object*, object*, object*) { return a->move_vector_element(props::list, 0, 1); }},
    {"delete element",
     [](object* a, object*, object*, object*) { return a->delete_vector_element(props::list, 0); }},
};

} // namespace

TEST_F(diamond, a_refusal_at_any_call_of_a_hook_ends_there_and_takes_the_level_back) {
    const std::string before = dump();
    for (const change_row& row : changes) {
        program();
        begin();
        ASSERT_TRUE(row.run(a, b, c, d)) << row.why;
        end();
        const lines all = asked;
        model->undo();
        ASSERT_EQ(dump(), before) << row.why;
        ASSERT_GE(all.size(), 4u) << row.why;
        for (std::size_t n = 0; n != all.size(); ++n) {
            SCOPED_TRACE(std::string{row.why} + ", call " + std::to_string(n) + ": " + all[n]);
            program(n);
            begin("outer");
            plain->set_property(props::number, number(1));
            begin("inner");
            plain->set_property(props::number, number(2));
            EXPECT_FALSE(row.run(a, b, c, d));
            EXPECT_EQ(asked, lines(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(n) + 1));
            EXPECT_EQ(as_text(plain->get_property(props::number)), "1") << "the inner level alone is gone";
            program();
            model->rollback_transaction_all();
            EXPECT_EQ(dump(), before);
        }
    }
}

TEST_F(diamond, a_refusal_of_any_observer_ends_the_change_which_stands) {
    for (const change_row& row : changes) {
        if (row.why == std::string{"cancel all"}) continue; // these are several changes
        const std::string before = dump();
        program();
        told.clear();
        ASSERT_TRUE(change([&] { return row.run(a, b, c, d); })) << row.why;
        const lines all = told;
        lines before_change;
        for (const std::string& each : asked)
            if (std::stoi(each) % 2 == 1) before_change.push_back(each); // hooks before have odd numbers
        const std::string after = dump();
        model->undo();
        for (std::size_t n = 0; n != all.size(); ++n) {
            SCOPED_TRACE(std::string{row.why} + ", refused at " + std::to_string(n) + ": " + all[n]);
            program();
            told.clear();
            ears.meanwhile = [&](message*) { ears.answer = told.size() != n + 1; };
            begin();
            EXPECT_FALSE(row.run(a, b, c, d));
            EXPECT_TRUE(model->in_transaction()) << "nothing is rolled back";
            ears.meanwhile = nullptr;
            ears.answer = true;
            end();
            EXPECT_EQ(asked, before_change) << "no hooks behind";
            EXPECT_EQ(lines(told.begin(), told.begin() + static_cast<std::ptrdiff_t>(n) + 1),
                      lines(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(n) + 1));
            EXPECT_EQ(dump(), after);
            model->undo();
            EXPECT_EQ(dump(), before);
        }
    }
}

TEST_F(diamond, behind_a_refusing_observer_siblings_are_told_and_nobody_deeper) {
    const bool is_left_first = std::less<>{}(left, right);
    const std::string one = is_left_first ? "left" : "right", two = is_left_first ? "right" : "left";
    const std::string at_a = "7 a", at_one = "7 " + one, at_two = "7 " + two, at_bottom = "7 bottom";
    const auto refuse_at = [&](const std::string& who) {
        told.clear();
        ears.meanwhile = [this, who](message* said) { ears.answer = own_name(said->object()) != who; };
        begin();
        EXPECT_FALSE(a->set_property(props::text, text("mine")));
        ears.meanwhile = nullptr;
        ears.answer = true;
        end();
        const lines heard = told;
        model->undo();
        return heard;
    };
    EXPECT_EQ(refuse_at("a"), (lines{at_a})) << "its own observer ends it before anybody else is told";
    EXPECT_EQ(refuse_at(one), (lines{at_a, at_one, at_two})) << "neither road goes on";
    EXPECT_EQ(refuse_at("bottom"), (lines{at_a, at_one, at_bottom, at_two})) << "the other road is cut";
    EXPECT_EQ(refuse_at(two), (lines{at_a, at_one, at_bottom, at_two}));
    told.clear();
    change([&] { return a->set_property(props::text, text("mine")); });
    EXPECT_EQ(told, (lines{at_a, at_one, at_bottom, at_two, at_bottom})) << "all, when nobody refuses";
}

TEST_F(diamond, the_first_refused_value_ends_what_is_told_of_a_changed_list) {
    give(b, "more", props::definition);
    ASSERT_TRUE(change([&] { return a->delete_property(props::definition) && a->cancel_inherits_from(b); }));
    forget();
    told.clear();
    ears.meanwhile = [&](message* said) {
        ears.answer = said->type() != message_type::property_set || own_name(said->object()) != "bottom";
    };
    begin();
    EXPECT_FALSE(a->insert_inherits_from(b, 0));
    ears.meanwhile = nullptr;
    ears.answer = true;
    end();
    ASSERT_EQ(told.size(), 5u) << "the list, then one value: here, one side, below it, the other side";
    EXPECT_EQ(told[0], "21 a");
    EXPECT_EQ(told[1], "7 a");
    EXPECT_EQ(told[3], "7 bottom");
    EXPECT_TRUE(a->inherits_from(b, false));
}

} // namespace kelm::test
