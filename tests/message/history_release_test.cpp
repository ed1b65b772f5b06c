// When what a message holds is freed: not while a mutator, a hook or an observer may still look at it.
// What is freed at all is told by the tests of each family and by the random laws.
#include "object/model_impl.h"
#include "tests/object/transaction_world.h"
#include "tests/support/consistency.h"
#include "tests/support/counted_value.h"

namespace kelm::test {
namespace {

class history_release : public transaction_world {
protected:
    history_release() : before_(counted_value::alive) {}

    std::size_t objects() { return static_cast<model_impl&>(*model).pool().size(); }
    long alive() const { return counted_value::alive - before_; }
    void set_counted(object* of, int value) { of->set_property(props::text, counted_value(value)); }
    /// Two values, of which a message keeps the older.
    void keep_a_value() {
        begin("kept");
        set_counted(a, 1);
        set_counted(a, 2);
        end();
    }

private:
    const long before_;
};

TEST_F(history_release, with_nothing_under_way_it_is_at_once) {
    keep_a_value();
    EXPECT_EQ(alive(), 2);
    model->clear_history();
    EXPECT_EQ(alive(), 1);
    keep_a_value();
    model->set_undo_levels(5);
    change("1");
    EXPECT_EQ(alive(), 3) << "all are kept, for undo";
    model->set_undo_levels(1);
    EXPECT_EQ(alive(), 1) << "but the one that the last transaction replaced";
}

TEST_F(history_release, what_an_observer_drops_waits_for_the_end_of_the_operation_that_tells_it) {
    object* const other = thing("other");
    object* const child = part("child", a);
    const struct {
        const char* why;
        std::function<void()> prepare;
        std::function<void()> operation;
    } rows[] = {
        {"a mutator", [] {}, [&] { set("x"); }},
        {"a begin", [] {}, [&] { begin(); }},
        {"an end", [&] { begin(), set("x"); }, [&] { end(); }},
        {"an end of an empty one", [&] { begin(); }, [&] { end(); }},
        {"undo", [&] { change("x"); }, [&] { model->undo(); }},
        {"redo", [&] { change("x"), model->undo(); }, [&] { model->redo(); }},
        {"a rollback", [&] { begin(), set("x"); }, [&] { model->rollback_transaction(); }},
        {"a rollback of the last", [&] { change("x"); }, [&] { model->rollback_last_transaction(); }},
        {"a creation", [] {}, [&] { fw.create_object(types::part, a); }},
        {"a deletion", [] {}, [&] { fw.delete_object(child); }},
        {"a new owner", [] {}, [&] { other->set_owner(a); }},
        {"a base", [] {}, [&] { a->add_inherits_from(other); }},
    };
    ear.watch(root);
    ear.watch(a);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        keep_a_value();
        row.prepare();
        long meanwhile = 0;
        ear.meanwhile = [&](message* what) {
            if (meanwhile == 0) {
                meanwhile = alive();
                model->clear_history();
            }
            EXPECT_EQ(alive(), meanwhile) << "nothing is freed while somebody is told";
            std::string words;
            EXPECT_FALSE(what->to_string(words).empty()) << "what is told can be read";
        };
        row.operation();
        EXPECT_GT(meanwhile, 0);
        EXPECT_LT(alive(), meanwhile) << "but behind it";
        ear.meanwhile = nullptr;
        model->rollback_transaction_all();
        a->delete_property(props::text);
        model->clear_history();
        EXPECT_EQ(alive(), 0);
    }
}

TEST_F(history_release, what_a_hook_drops_waits_for_the_outermost_operation) {
    object* const b = hooked("b");
    b->set_property(props::text, counted_value(5));
    model->clear_history();
    const struct {
        const char* why;
        std::function<void()> drop;
    } rows[] = {
        {"forgotten", [&] { model->clear_history(); }},
        {"beyond the limit", [&] { model->set_undo_levels(1); }},
        {"rolled back", [&] { model->rollback_transaction_all(); }},
        {"taken back as the last", [&] { end(), model->rollback_last_transaction(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        model->set_undo_levels(7);
        keep_a_value();
        begin("outer");
        set_counted(a, 3);
        long before = 0;
        int calls = 0;
        // Behind the change of b that a hook of a makes, the history is cut; both hooks still look around.
        hooks.on<post_prop_set_semantic>([&](hook_call& call) {
            ++calls;
            if (call.at == a) {
                b->set_property(props::number, number(1));
            } else {
                before = alive();
                row.drop();
            }
            EXPECT_EQ(alive(), before);
            return true;
        });
        a->set_property(props::flag, flag(true));
        hooks.clear();
        EXPECT_EQ(calls, 2);
        EXPECT_LT(alive(), before);
        model->rollback_transaction_all();
        a->delete_property(props::text);
        model->clear_history();
        EXPECT_EQ(alive(), 1) << "the one of b";
    }
}

TEST_F(history_release, objects_wait_as_values_do) {
    object* const b = part("b");
    begin();
    fw.delete_object(b);
    end();
    const std::size_t before = objects();
    ear.watch(a);
    ear.meanwhile = [&](message*) {
        model->clear_history();
        EXPECT_EQ(objects(), before);
        EXPECT_EQ(b->state(), state::deleted) << "it can be asked";
        EXPECT_EQ(b->owner(), root);
    };
    set("x");
    ear.meanwhile = nullptr;
    EXPECT_EQ(objects(), before - 1);
}

TEST_F(history_release, the_redo_side_goes_when_the_operation_that_ends_it_has_ended) {
    keep_a_value();
    model->undo();
    EXPECT_EQ(alive(), 2);
    listen();
    ear.meanwhile = [&](message* what) {
        if (what->type() == message_type::tran_begin) {
            EXPECT_FALSE(model->can_redo());
            EXPECT_EQ(alive(), 2);
        }
    };
    begin();
    ear.meanwhile = nullptr;
    EXPECT_EQ(alive(), 0);
}

// Its pointer may be in the application's hands; the message that is recorded speaks of it from then on.
TEST_F(history_release, an_object_that_only_redo_has_outlives_an_operation_on_itself) {
    const struct {
        const char* why;
        std::function<void(object*)> operation;
        const char* types;
    } rows[] = {
        {"watched", [&](object* x) { x->attach(dynamic_cast<observer*>(a)); }, "24"},
        {"watching", [&](object* x) { a->attach(dynamic_cast<observer*>(x)); }, "24"},
        {"added", [&](object* x) { root->add_child(x); }, "14"},
        {"moved", [&](object* x) { x->set_owner(root); }, "14 18"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::size_t before = objects();
        begin();
        object* const x = fw.create_object(types::thing, a);
        end();
        model->undo();
        row.operation(x);
        EXPECT_FALSE(model->can_redo());
        EXPECT_EQ(objects(), before + 1);
        EXPECT_EQ(x->state(), state::deleted);
        EXPECT_EQ(message_types(), row.types);
        EXPECT_FALSE(history().empty()) << "the messages can be read";
        model->clear_history();
        EXPECT_EQ(objects(), before + 1) << "it goes with the model";
    }
}

/// Something of an application's that objects watch, and that acts when one leaves.
class watched_by_objects final : public subject_impl {
public:
    bool detach(observer* who) override {
        if (when_left) when_left();
        return subject_impl::detach(who);
    }
    std::function<void()> when_left;
};

TEST_F(history_release, freeing_may_run_code_of_an_application_that_changes_the_model) {
    watched_by_objects outside;
    const std::size_t before = objects();
    begin();
    object* watchers[3];
    for (object*& each : watchers) {
        each = fw.create_object(types::part, a);
        outside.attach(dynamic_cast<observer*>(each));
    }
    set_counted(a, 1);
    end();
    model->undo(); // only the redo side has the objects
    int calls = 0;
    outside.when_left = [&] {
        set(std::to_string(++calls));
        model->clear_history();
    };
    begin("ends the possibility of redo");
    EXPECT_EQ(calls, 3) << "once for each";
    EXPECT_EQ(value(), "3");
    EXPECT_EQ(objects(), before);
    EXPECT_EQ(alive(), 0);
    EXPECT_TRUE(outside.observers().empty());
    EXPECT_FALSE(model->in_transaction()) << "forgotten as well";
}

TEST_F(history_release, so_it_may_when_nothing_is_under_way) {
    watched_by_objects outside;
    const std::size_t before = objects();
    const struct {
        const char* why;
        std::function<void()> drop;
    } rows[] = {
        {"the history is forgotten", [&] { model->clear_history(); }},
        {"the limit cuts", [&] { model->set_undo_levels(1); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        model->set_undo_levels(9);
        object* watchers[3];
        for (object*& each : watchers) each = part("watcher", a);
        begin();
        for (object* each : watchers) fw.delete_object(each);
        end();
        change("behind");
        for (object* each : watchers) outside.attach(dynamic_cast<observer*>(each));
        int calls = 0;
        outside.when_left = [&] {
            set(std::to_string(++calls));
            EXPECT_GE(model->message_count(), 1u);
            model->find_transaction(4711, nullptr); // looks at every message
        };
        row.drop();
        EXPECT_EQ(calls, 3);
        EXPECT_EQ(value(), "3");
        EXPECT_EQ(objects(), before);
        outside.when_left = nullptr;
        model->clear_history();
    }
}

/// A value of an application's own kind that acts when it is freed.
class acting_value final : public abstract_property {
public:
    static inline std::function<void()> when_freed;

    acting_value() = default;
    acting_value(const acting_value&) = default;
    ~acting_value() override {
        if (when_freed) when_freed();
    }
    owned<abstract_property*> clone() const override { return new acting_value(*this); }
    bool equals(const abstract_property*) const override { return false; }
    std::string to_string() const override { return "acting"; }
    void to_string(std::string& out) const override { out = to_string(); }
    void from_string(const std::string&) override {}
    void write(std::ostream&) const override {}
    void read(std::istream&, std::vector<reference_record>&, object*) override {}
};

TEST_F(history_release, freeing_a_value_may_run_such_code_as_well) {
    object* const b = part("b");
    const struct {
        const char* why;
        std::function<void()> drop;
    } rows[] = {
        {"the history is forgotten", [&] { model->clear_history(); }},
        {"the limit cuts", [&] { model->set_undo_levels(1); }},
        {"a transaction closes under a limit",
         [&] {
             model->set_undo_levels(2);
             change("1"), change("2"), change("3");
         }},
        {"a rollback", [&] { model->rollback_last_transaction(); }},
        {"the redo side goes", [&] { model->undo(), begin(), end(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        model->set_undo_levels(9);
        for (int i = 0; i != 3; ++i) { // of each transaction the log has a value, and so has redo
            begin();
            b->set_property(props::number, acting_value());
            b->set_property(props::real, acting_value());
            b->delete_property(props::number);
            end();
        }
        int calls = 0;
        acting_value::when_freed = [&] {
            if (++calls > 20) return; // what is dropped here drops more
            a->set_property(props::number, number(calls));
            change("freed " + std::to_string(calls));
            model->find_transaction(4711, nullptr); // looks at every message
            model->clear_history();
        };
        row.drop();
        EXPECT_GT(calls, 0);
        EXPECT_EQ(as_text(a->get_property(props::number)), std::to_string(std::min(calls, 20)));
        acting_value::when_freed = nullptr;
        EXPECT_EQ(broken_links(*model), "");
        model->rollback_transaction_all();
        model->clear_history();
        change("behind");
        model->undo();
        EXPECT_FALSE(model->in_transaction());
        for (const u32 id : {props::number, props::real}) b->delete_property(id);
        model->clear_history();
    }
}

} // namespace
} // namespace kelm::test
