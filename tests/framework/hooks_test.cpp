// Tables of hooks, the dispatcher, and the short way round hooks that would change nothing.
// What a refusal means to each operation is tested with the operation.
#include "framework/run_hooks.h"
#include "framework/semantic_table.h"

#include "tests/support/world.h"

#include <kelm/property_messages.h>

#include <limits>
#include <stdexcept>

namespace kelm::test {

namespace {

/// A hook with an id, of any kind that takes an object alone.
template <class Kind>
class numbered final : public Kind {
public:
    explicit numbered(u32 id) : id_(id) {}
    u32 id() const override { return id_; }
    bool do_it(object*) override { return true; }

private:
    u32 id_;
};

template <class Kind>
shared_ptr<semantic> hook(u32 id) {
    return shared_ptr<semantic>(new numbered<Kind>(id));
}

/// Says a kind that its class is not of.
class liar final : public semantic {
public:
    explicit liar(int kind) : kind_(kind) {}
    int type() const override { return kind_; }
    u32 id() const override { return 1; }

private:
    int kind_;
};

/// What an application may make of the kind that is left to it.
class validator final : public validate_semantic {
public:
    u32 id() const override { return 1; }
    bool do_it(const object* what, std::string& complaint) {
        complaint += what ? "" : "nothing to validate";
        return what != nullptr;
    }
};

std::string ids_of(const semantic_table::hooks* list) {
    if (!list) return "no list";
    std::string out;
    for (const auto& each : *list) out += std::to_string(each->id()) + " ";
    return out;
}

} // namespace

TEST(semantic_table, makes_a_list_when_its_first_hook_comes) {
    semantic_table table;
    EXPECT_TRUE(table.empty());
    for (int kind = -1; kind != 46; ++kind) EXPECT_EQ(table.of(kind), nullptr);
    EXPECT_TRUE(table.add(hook<obj_create_semantic>(7)));
    EXPECT_FALSE(table.empty());
    EXPECT_EQ(ids_of(table.of(1)), "7 ");
    EXPECT_EQ(table.of(1), table.of<obj_create_semantic>());
    EXPECT_EQ(table.of(2), nullptr);
}

TEST(semantic_table, takes_one_hook_of_an_id_for_each_kind) {
    semantic_table table;
    EXPECT_TRUE(table.add(hook<obj_delete_semantic>(7)));
    EXPECT_TRUE(table.add(hook<obj_delete_semantic>(3)));
    EXPECT_FALSE(table.add(hook<obj_delete_semantic>(7)));
    EXPECT_EQ(ids_of(table.of(2)), "7 3 ");
    EXPECT_TRUE(table.add(hook<obj_create_semantic>(7))) << "the same id of another kind";
    EXPECT_EQ(table.find(7)->type(), 1) << "the lower kind is found";
    EXPECT_EQ(table.find(3)->type(), 2);
    EXPECT_EQ(table.find(4), nullptr);
}

TEST(semantic_table, takes_no_hook_of_a_kind_that_it_is_not_of) {
    semantic_table table;
    for (const int kind : {-1, 45, 1, 5, 44}) {
        SCOPED_TRACE(kind);
        EXPECT_FALSE(table.add(shared_ptr<semantic>(new liar(kind))));
    }
    EXPECT_TRUE(table.empty());
}

TEST(semantic_table, gives_an_application_its_own_kind_to_call_as_it_likes) {
    semantic_table table;
    ASSERT_TRUE(table.add(shared_ptr<semantic>(new validator)));
    ASSERT_EQ(ids_of(table.of(43)), "1 ");
    std::string complaint;
    EXPECT_FALSE(dynamic_cast<validator&>(*table.of(43)->front()).do_it(nullptr, complaint));
    EXPECT_EQ(complaint, "nothing to validate");
}

TEST(semantic_table, merges_behind_what_it_has) {
    semantic_table table;
    semantic_table other;
    table.add(hook<obj_create_semantic>(1));
    other.add(hook<obj_create_semantic>(2));
    other.add(hook<obj_create_semantic>(1));
    other.add(hook<obj_create_semantic>(3));
    other.add(hook<obj_delete_semantic>(2));
    table.merge(other, [](const semantic& each) { return each.id() != 3; });
    EXPECT_EQ(ids_of(table.of(1)), "1 2 ");
    EXPECT_EQ(ids_of(table.of(2)), "2 ");
    EXPECT_EQ(ids_of(other.of(1)), "2 1 3 ");
}

class dispatch : public testing::Test {
protected:
    dispatch() {
        for (const u32 id : {1U, 2U, 3U}) table.add(hook<obj_create_semantic>(id));
    }
    ~dispatch() override { process().in_semantic = false; }
    /// Runs the hooks; the one with the id `refusing` answers false.
    bool run(u32 refusing) {
        return run_hooks<obj_create_semantic>(&table, [&](obj_create_semantic& each) {
            calls += std::to_string(each.id()) + (process().in_semantic ? "s " : "- ");
            return each.id() != refusing;
        });
    }

    semantic_table table;
    std::string calls;
};

TEST_F(dispatch, calls_hooks_in_the_order_of_the_list_with_the_mark_set) {
    EXPECT_TRUE(run(0));
    EXPECT_EQ(calls, "1s 2s 3s ");
    EXPECT_FALSE(process().in_semantic);
    process().in_semantic = true;
    EXPECT_TRUE(run(0));
    EXPECT_TRUE(process().in_semantic) << "as it was found";
}

TEST_F(dispatch, keeps_the_mark_set_behind_a_refusal) {
    EXPECT_FALSE(run(2));
    EXPECT_EQ(calls, "1s 2s ");
    EXPECT_TRUE(process().in_semantic);
}

TEST_F(dispatch, keeps_the_mark_set_behind_an_exception) {
    const auto throwing = [](obj_create_semantic&) -> bool { throw std::runtime_error("thrown by a hook"); };
    EXPECT_THROW(run_hooks<obj_create_semantic>(&table, throwing), std::runtime_error);
    EXPECT_TRUE(process().in_semantic);
}

TEST_F(dispatch, leaves_the_mark_alone_where_hooks_are_only_asked) {
    for (const bool mark : {false, true}) {
        process().in_semantic = mark;
        EXPECT_FALSE(ask_hooks<obj_create_semantic>(&table, [&](obj_create_semantic& each) {
            EXPECT_EQ(process().in_semantic, mark);
            return each.id() != 2;
        }));
        EXPECT_EQ(process().in_semantic, mark);
    }
}

TEST_F(dispatch, passes_where_there_is_no_table_or_no_list) {
    const auto never = [](auto&) {
        ADD_FAILURE() << "there is nothing to call";
        return false;
    };
    EXPECT_TRUE(run_hooks<obj_create_semantic>(nullptr, never));
    EXPECT_TRUE(run_hooks<obj_delete_semantic>(&table, never));
    EXPECT_TRUE(ask_hooks<obj_create_semantic>(nullptr, never));
    EXPECT_TRUE(ask_hooks<obj_delete_semantic>(&table, never));
}

TEST_F(dispatch, does_not_run_hooks_that_come_meanwhile) {
    u32 next = 10;
    EXPECT_TRUE(run_hooks<obj_create_semantic>(&table, [&](obj_create_semantic& each) {
        calls += std::to_string(each.id()) + " ";
        for (int i = 0; i != 20; ++i) table.add(hook<obj_create_semantic>(next++));
        return true;
    }));
    EXPECT_EQ(calls, "1 2 3 ");
    EXPECT_EQ(table.of(1)->size(), 63u);
}

/// Reads of a thing have only the library's own hook, which is passed over where it would do nothing; reads of a
/// hooked object run a hook that does nothing.
class plain_reads : public world {
protected:
    plain_reads() : plain(thing("plain")), slow(hooked("slow")), target(thing("target")) {}

    /// \returns what reads tell of the value of an id, and where the library says it comes from
    std::string reads_of(object* of, u32 id) {
        std::string out;
        const bool done = of->get_property_as_string(id, out);
        const value_ptr value = of->get_property(id);
        out += std::string(done ? " text" : " no text") + (of->has_property(id) ? " has" : " has not") +
               (value ? " value " : " no value ") + as_text(value);
        object* const inheritor = of == plain ? plain_heir() : slow_heir();
        begin();
        inheritor->set_property(id, text("probe"));
        const auto* const said = dynamic_cast<property_set_message*>(last_message());
        out += said->old_owner() == of ? " of it" : said->old_owner() ? " of another" : " of nobody";
        out += " was " + as_text(said->old_value());
        model->rollback_transaction();
        return out;
    }

    object* plain;
    object* slow;
    object* target;

private:
    object* heir_of(object* base, object*& heir) {
        if (heir) return heir;
        heir = thing("heir");
        begin();
        heir->add_inherits_from(base);
        end();
        return heir;
    }
    object* plain_heir() { return heir_of(plain, plain_heir_); }
    object* slow_heir() { return heir_of(slow, slow_heir_); }

    object* plain_heir_ = nullptr;
    object* slow_heir_ = nullptr;
};

TEST_F(plain_reads, give_the_same_as_reads_through_a_hook_that_does_nothing) {
    EXPECT_FALSE(plain->semantics_of_kind(4, *std::make_unique<std::vector<shared_ptr<semantic>>>()));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    const auto list = [](std::initializer_list<const abstract_property*> values) {
        auto out = std::make_unique<vector_property>();
        for (const abstract_property* each : values) out->elements.push_back(each ? each->clone() : nullptr);
        return out;
    };
    property<object*> to_nobody{nullptr};
    property<object*> to_target{target};
    property<int> one{1};
    property<double> no_number{nan};
    struct row {
        const char* why;
        std::unique_ptr<abstract_property> value;
        bool keeps_source;
    };
    std::vector<row> rows;
    const auto add = [&](const char* why, owned<abstract_property*> value, bool keeps_source) {
        rows.push_back({why, std::unique_ptr<abstract_property>(value), keeps_source});
    };
    add("text", new property<std::string>{"t"}, true);
    add("empty text", new property<std::string>, true);
    add("integer", new property<int>{-1}, true);
    add("short", new property<short>{short{2}}, true);
    add("long", new property<long>{3}, true);
    add("long long", new property<long long>{4}, true);
    add("unsigned", new property<unsigned>{5U}, true);
    add("flag", new property<bool>{true}, true);
    add("number", new property<double>{0.5}, true);
    add("negative zero", new property<double>{-0.0}, true);
    add("no number", new property<double>{nan}, false);
    add("infinite", new property<double>{infinite},
        property<double>{infinite}.equals(std::make_unique<property<double>>(infinite).get()));
    add("reference", to_target.clone(), true);
    add("null reference equals nothing", to_nobody.clone(), false);
    add("identity", new property<GUID>, true);
    add("map of ids", new property<id_multimap>,
        property<id_multimap>{}.equals(std::make_unique<property<id_multimap>>().get()));
    add("empty list", new vector_property, true);
    add("list", list({&one, &to_target}).release(), true);
    add("list with a null reference", list({&one, &to_nobody}).release(), false);
    add("list with no number", list({&no_number}).release(), false);
    add("list with a null element", list({nullptr}).release(), false);
    for (const row& each : rows) {
        SCOPED_TRACE(each.why);
        begin();
        ASSERT_TRUE(plain->set_property(props::text, *each.value));
        ASSERT_TRUE(slow->set_property(props::text, *each.value));
        end();
        const std::string read = reads_of(plain, props::text);
        EXPECT_EQ(read, reads_of(slow, props::text));
        EXPECT_NE(read.find(each.keeps_source ? " of it" : " of nobody"), std::string::npos) << read;
    }
    begin();
    plain->delete_property(props::text);
    slow->delete_property(props::text);
    end();
    EXPECT_EQ(reads_of(plain, props::text), reads_of(slow, props::text));
    EXPECT_EQ(reads_of(plain, 4711), reads_of(slow, 4711)) << "an id that no type knows";
    EXPECT_EQ(reads_of(plain, property_id::first_user_defined + 4711),
              reads_of(slow, property_id::first_user_defined + 4711));
}

TEST_F(plain_reads, give_the_default_of_a_user_defined_property_on_both_ways) {
    std::string seen;
    for (object* const each : {plain, slow}) {
        meta_property* const made =
            model->add_user_defined_property(each->type(), "Colour", data_type::string, "", 0);
        ASSERT_TRUE(made);
        seen += as_text(each->get_property(made->id())) + ";";
        EXPECT_TRUE(each->has_property(made->id()));
        EXPECT_FALSE(each->defines_property(made->id()));
        begin();
        ASSERT_TRUE(each->set_property(made->id(), text("red")));
        end();
        seen += as_text(each->get_property(made->id())) + ";";
    }
    EXPECT_EQ(seen, ";red;;red;");
}

} // namespace kelm::test
