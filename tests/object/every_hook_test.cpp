// What holds for the hooks of every kind: one table of operations, each asked all of this.
// What is special about single kinds stands in the tests of their operations.
#include "tests/object/hook_stage.h"

#include <stdexcept>

namespace kelm::test {

namespace {

const char* name_of(around what) {
    switch (what) {
    case around::nothing: return "outside";
    case around::a_transaction: return "in a transaction";
    case around::a_nested_level: return "in a nested level";
    }
    return "";
}

/// \returns whether a row can be run inside what is open: a transaction that ends is the outermost one
bool fits(const hook_row& row, around what) { return row.when != moment::end || what == around::nothing; }

/// Asks each row, with each thing that may be open around it, on a stage of its own.
template <class Question>
void ask_every_row(Question&& question) {
    for (const hook_row& row : hook_rows())
        for (const around open : all_around) {
            if (!fits(row, open)) continue;
            SCOPED_TRACE(std::to_string(row.kind) + " " + row.why + " " + name_of(open));
            hook_stage stage;
            stage.open(open);
            question(row, open, stage);
            stage.pass_all();
            if (testing::Test::HasFailure()) return; // one row is enough to look at
        }
}

/// Refuses; an update lets pass what is taken back, or the hook of it would refuse its own rollback.
bool refuses(hook_call& call) { return call.told && !call.told->is_first_run(); }

/// Closes what is open, and goes back and forth over all of it.  No hook but those of updates may run meanwhile.
void expect_undone_and_redone(hook_stage& stage) {
    stage.pass_all();
    stage.close();
    const std::string after = stage.dump();
    int calls = 0;
    for (int kind = 1; kind != all_semantics::size; ++kind)
        stage.on(kind, [&](hook_call&) {
            ++calls;
            return false;
        });
    const auto dump_quietly = [&] {
        EXPECT_EQ(std::exchange(calls, 0), 0) << "hooks ran in undo or redo";
        for (const int kind : {pre_children_get_semantic::kind, post_children_get_semantic::kind})
            stage.on(kind, [](hook_call&) { return true; });
        return stage.dump();
    };
    for (int round = 0; round != 2; ++round) {
        stage.model->undo();
        EXPECT_EQ(dump_quietly(), stage.before);
        stage.model->redo();
        EXPECT_EQ(dump_quietly(), after);
    }
    EXPECT_FALSE(stage.model->can_redo());
    stage.pass_all();
}

} // namespace

TEST(every_hook, is_told_its_arguments_once_with_the_mark_set_and_put_back) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        std::string lines;
        stage.on(row.kind, [&](hook_call& call) {
            lines += told(call) + (stage.fw.in_semantic() ? " marked" : "");
            return true;
        });
        EXPECT_EQ(row.run(stage), row.passed);
        EXPECT_EQ(lines, std::string(row.told) + (row.is_marked() ? " marked" : ""));
        EXPECT_FALSE(stage.fw.in_semantic());
        if (open != around::nothing) expect_undone_and_redone(stage);
    });
}

TEST(every_hook, that_passes_leaves_a_mark_that_was_set_before) {
    ask_every_row([](const hook_row& row, around, hook_stage& stage) {
        if (row.when == moment::end) return; // it begins a transaction, and that clears the mark
        std::string seen;
        stage.on(row.kind, [&](hook_call&) {
            seen += stage.fw.in_semantic() ? "marked" : "unmarked";
            return true;
        });
        stage.fw.set_in_semantic(true);
        EXPECT_EQ(row.run(stage), row.passed);
        EXPECT_EQ(seen, "marked");
        EXPECT_TRUE(stage.fw.in_semantic());
    });
}

TEST(every_hook, that_refuses_takes_the_open_level_back) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        if (row.when != moment::mutation || open == around::nothing) return;
        const bool is_nested = open == around::a_nested_level;
        stage.on(row.kind, refuses);
        EXPECT_EQ(row.run(stage), row.refused);
        stage.pass_all();
        EXPECT_FALSE(stage.fw.in_semantic()) << "the rollback has cleared it";
        EXPECT_EQ(stage.model->in_transaction(), is_nested);
        EXPECT_EQ(stage.outer_changes(), is_nested ? "outer " : "") << "the level, and no other";
        stage.close();
        if (is_nested) {
            EXPECT_EQ(stage.model->message_count(), 3u) << "begin, the outer change, end";
            stage.model->undo();
        } else {
            EXPECT_EQ(stage.model->message_count(), 0u);
        }
        EXPECT_EQ(stage.dump(), stage.before);
    });
}

TEST(every_hook, keeps_what_was_done_and_the_mark_when_it_refuses_outside_a_transaction) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        if (row.when != moment::mutation || open != around::nothing) return;
        stage.on(row.kind, refuses);
        EXPECT_EQ(row.run(stage), row.refused);
        stage.pass_all();
        EXPECT_TRUE(stage.fw.in_semantic());
        EXPECT_EQ(stage.dump() != stage.before, row.leaves_something);
        stage.model->begin_transaction("next");
        EXPECT_FALSE(stage.fw.in_semantic()) << "the next outermost transaction clears it";
    });
}

TEST(every_hook, that_refuses_a_read_takes_nothing_back) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        if (row.when != moment::reading) return;
        const std::size_t messages = stage.model->message_count();
        const std::string changes = stage.outer_changes();
        stage.on(row.kind, refuses);
        EXPECT_EQ(row.run(stage), row.refused);
        stage.pass_all();
        EXPECT_EQ(stage.fw.in_semantic(), row.is_marked());
        EXPECT_EQ(stage.model->in_transaction(), open != around::nothing);
        EXPECT_EQ(stage.model->message_count(), messages);
        EXPECT_EQ(stage.outer_changes(), changes);
    });
}

TEST(every_hook, that_refuses_the_end_has_the_transaction_undone) {
    ask_every_row([](const hook_row& row, around, hook_stage& stage) {
        if (row.when != moment::end) return;
        stage.on(row.kind, refuses);
        EXPECT_EQ(row.run(stage), row.refused);
        EXPECT_FALSE(stage.fw.in_semantic()) << "the undo has cleared it";
        EXPECT_EQ(stage.dump(), stage.before);
        EXPECT_EQ(stage.model->redo_name(), "whole");
    });
}

TEST(every_hook, may_change_and_delete_others_in_the_same_transaction) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        bool has_reacted = false;
        stage.on(row.kind, [&](hook_call&) {
            has_reacted = has_reacted || stage.react();
            return true;
        });
        EXPECT_EQ(row.run(stage), row.passed);
        stage.pass_all();
        EXPECT_TRUE(has_reacted);
        EXPECT_FALSE(stage.fw.in_semantic());
        EXPECT_EQ(stage.victim->state(), state::deleted);
        int reactions = 0;
        for (std::size_t i = 0; i != stage.model->message_count(); ++i) {
            const message* const each = stage.model->message_at(i);
            const auto* const change = dynamic_cast<const property_set_message*>(each);
            if (!change || change->property_type() != props::real) continue;
            EXPECT_EQ(each->is_user_created(), !row.is_marked());
            ++reactions;
        }
        EXPECT_EQ(reactions, 1);
        if (open != around::nothing) expect_undone_and_redone(stage);
    });
}

TEST(every_hook, that_reacts_and_refuses_has_its_reaction_taken_back) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        if (row.when != moment::mutation || open == around::nothing) return;
        stage.on(row.kind, [&](hook_call& call) { return refuses(call) || !stage.react(); });
        EXPECT_EQ(row.run(stage), row.refused);
        stage.pass_all();
        EXPECT_EQ(stage.victim->state(), state::normal);
        stage.close();
        if (open == around::a_nested_level) stage.model->undo();
        EXPECT_EQ(stage.dump(), stage.before);
    });
}

TEST(every_hook, may_delete_the_object_that_it_runs_on) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        if (row.when == moment::end) return; // its object is the model, which cannot be closed meanwhile
        bool is_first = true;
        stage.on(row.kind, [&](hook_call& call) {
            if (std::exchange(is_first, false))
                stage.fw.delete_object(call.at); // deleting runs hooks as well
            return true;
        });
        EXPECT_EQ(row.run(stage), row.gone);
        EXPECT_FALSE(is_first);
        EXPECT_FALSE(stage.fw.in_semantic());
        if (open != around::nothing) expect_undone_and_redone(stage);
    });
}

TEST(every_hook, keeps_the_mark_set_when_it_throws) {
    ask_every_row([](const hook_row& row, around open, hook_stage& stage) {
        stage.on(row.kind, [](hook_call&) -> bool { throw std::runtime_error("thrown by a hook"); });
        EXPECT_THROW(row.run(stage), std::runtime_error);
        stage.pass_all();
        EXPECT_EQ(stage.fw.in_semantic(), row.is_marked());
        for (const object* each : {stage.h, stage.child})
            EXPECT_NE(each->state(), state::being_deleted) << "a deletion on the way is given up";
        if (open == around::nothing) return;
        EXPECT_TRUE(stage.model->in_transaction()) << "ending it is up to who catches";
        stage.model->rollback_transaction_all();
        EXPECT_FALSE(stage.fw.in_semantic());
        EXPECT_EQ(stage.dump(), stage.before);
    });
}

TEST(every_hook, of_a_base_type_runs_before_those_of_the_type_itself_until_one_refuses) {
    constexpr int nobody = -1;
    for (const hook_row& row : hook_rows()) {
        if (row.when == moment::end) continue; // all models are of one type
        SCOPED_TRACE(std::to_string(row.kind) + " " + row.why);
        for (const int refusing : {nobody, row.kind, row.kind + second}) {
            hook_stage stage(types::more_hooked);
            std::string order;
            for (const int each : {row.kind, row.kind + second})
                stage.on(each, [&, each](hook_call&) {
                    order += each < second ? "inherited " : "own ";
                    return each != refusing;
                });
            EXPECT_EQ(row.run(stage), refusing == nobody ? row.passed : row.refused);
            EXPECT_EQ(order, refusing == row.kind ? "inherited " : "inherited own ");
        }
    }
}

TEST(every_hook, keeps_later_hooks_from_a_deleted_object_behind_setting_a_value_alone) {
    for (const hook_row& row : hook_rows()) {
        if (row.when != moment::mutation || row.kind < pre_prop_set_semantic::kind) continue;
        SCOPED_TRACE(std::to_string(row.kind) + " " + row.why);
        hook_stage stage(types::more_hooked);
        int deletions = 0;
        int later = 0;
        stage.on(row.kind, [&](hook_call& call) {
            if (deletions++ == 0) stage.fw.delete_object(call.at);
            later = 0; // the deletion runs hooks of many kinds
            return true;
        });
        stage.on(row.kind + second, [&](hook_call&) {
            ++later;
            return true;
        });
        EXPECT_EQ(row.run(stage), row.gone);
        EXPECT_EQ(later, row.kind == post_prop_set_semantic::kind ? 0 : 1);
    }
}

TEST(every_hook, keeps_the_mark_set_when_an_update_refuses_its_own_rollback_too) {
    for (const around open : {around::a_transaction, around::a_nested_level}) {
        hook_stage stage;
        stage.open(open);
        int told = 0;
        stage.on(update_semantic::kind, [&](hook_call&) {
            ++told;
            return false;
        });
        EXPECT_FALSE(stage.watched->set_property(props::text, text("new")));
        EXPECT_EQ(told, 2) << "of the change, and of its being taken back";
        EXPECT_TRUE(stage.fw.in_semantic());
        EXPECT_FALSE(stage.watched->defines_property(props::text)) << "it is taken back all the same";
        stage.pass_all();
    }
}

TEST(every_hook, that_no_operation_of_a_model_in_memory_runs_is_found_all_the_same) {
    hook_stage stage;
    for (const int kind : {41, 43, 44}) {
        std::vector<shared_ptr<semantic>> found;
        ASSERT_TRUE(stage.h->semantics_of_kind(kind, found)) << kind;
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0]->type(), kind);
    }
}

} // namespace kelm::test
