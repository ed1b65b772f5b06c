// A model: its ids, its counters, what it keeps, and how it closes.
// Transactions are transactions_test.
#include "object/id_counter.h"
#include "object/model_impl.h"
#include "tests/support/model_hooks.h"
#include "util/process_state.h"

#include <algorithm>
#include <stdexcept>

namespace kelm::test {
namespace {

class models : public hooked_model_world {
protected:
    /// The implementation, where a counter has to be brought near its end.
    model_impl& inside() { return static_cast<model_impl&>(*model); }
    GUID id() const {
        GUID out;
        model->model_id(out);
        return out;
    }
    template <class Work>
    static std::string thrown_by(Work work) {
        try {
            work();
        } catch (const std::runtime_error& e) {
            return e.what();
        }
        return "nothing";
    }
};

TEST_F(models, a_new_one_is_empty_and_unmodified) {
    EXPECT_EQ(model->as_object(), root);
    EXPECT_EQ(root->model(), model);
    EXPECT_EQ(root->id(), 1u);
    EXPECT_EQ(root->owner(), nullptr);
    EXPECT_EQ(model->last_object_id(), 2u);
    EXPECT_EQ(model->last_transaction_id(), 1u);
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_EQ(model->message_at(0), nullptr);
    EXPECT_FALSE(model->is_modified());
    EXPECT_FALSE(model->can_undo());
    EXPECT_FALSE(model->can_redo());
    EXPECT_FALSE(model->is_undoing());
    EXPECT_FALSE(model->is_redoing());
    EXPECT_FALSE(model->is_rolling_back());
    EXPECT_EQ(model->undo_levels(), -1);
    EXPECT_EQ(model->meta_model()->name(), "Instance Meta Model");
    EXPECT_TRUE(model->history());
    EXPECT_EQ(thing("first")->id(), 3u);
}

TEST(id_counters, count_up_to_their_end_and_stay_there) {
    const struct {
        const char* why;
        u32 last, end;
        bool gives;
    } rows[] = {
        {"the first", 2, npos32, true},
        {"the last but one of all numbers", npos32 - 2, npos32, true},
        {"the next would be the last number of all", npos32 - 1, npos32, false},
        {"the next would wrap to 0", npos32, npos32, false},
        {"just before the end", 65533, 65535, true},
        {"at the end", 65534, 65535, false},
        {"set beyond the end by a stream", 70000, 65535, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        id_counter counter{row.last, row.end, "used up"};
        if (row.gives) {
            EXPECT_EQ(counter.next(), row.last + 1);
            EXPECT_EQ(counter.last(), row.last + 1);
        } else {
            EXPECT_THROW(counter.next(), std::runtime_error);
            EXPECT_EQ(counter.last(), row.last) << "unchanged";
        }
    }
}

TEST_F(models, object_ids_run_out_with_an_exception_that_changes_nothing) {
    inside().restore_ids(0xFFFFFFFD, 50000);
    object* const last = thing("last");
    EXPECT_EQ(last->id(), 0xFFFFFFFEu);
    EXPECT_EQ(model->find_object(0xFFFFFFFE), last);
    begin();
    EXPECT_EQ(thrown_by([&] { fw.create_object(types::thing, root); }),
              "Maximum Number of Model Objects Allowed Has Been Reached....");
    EXPECT_EQ(model->last_object_id(), 0xFFFFFFFEu);
    EXPECT_EQ(message_types(), "1");
    EXPECT_EQ(root->children().size(), 1u);
    EXPECT_TRUE(model->in_transaction()) << "whoever opened it closes it";
    end();
    initial_values values{{props::text, text("x").clone()}};
    EXPECT_EQ(thrown_by([&] { fw.create_object_transacted(types::thing, root, &values); }),
              "Maximum Number of Model Objects Allowed Has Been Reached....");
    EXPECT_EQ(values[0].second, nullptr) << "consumed";
    EXPECT_FALSE(model->in_transaction()) << "the guard has rolled it back";
}

TEST_F(models, ids_of_user_defined_properties_run_out) {
    inside().restore_ids(2, 65533);
    const auto add = [&](const char* name, u32 given) {
        return model->add_user_defined_property(types::thing, name, data_type::string, "", given);
    };
    EXPECT_EQ(add("last", 0)->id(), 65534u);
    EXPECT_EQ(thrown_by([&] { add("none", 0); }),
              "Maximum Number of User Defined Properties Allowed Has Been Reached....");
    EXPECT_EQ(add("with an id of its own", 51234)->id(), 51234u) << "takes no number";
}

TEST_F(models, the_first_user_defined_property_gets_50001_unless_it_brings_its_id) {
    EXPECT_EQ(model->add_user_defined_property(types::thing, "own", data_type::string, "", 51234)->id(),
              51234u);
    EXPECT_EQ(model->add_user_defined_property(types::thing, "given", data_type::string, "", 0)->id(),
              50001u);
}

TEST_F(models, transaction_ids_run_out) {
    // The counter follows the newest transaction after undo and redo; so one with a high id takes it there.
    message_history_impl& log = inside().log();
    log.add_message(std::make_unique<tran_begin_message_impl>(&inside(), 0xFFFFFFFD, "high"));
    root->set_property(props::name, text("x"));
    end();
    model->undo();
    model->redo();
    ASSERT_EQ(model->last_transaction_id(), 0xFFFFFFFDu);
    EXPECT_EQ(model->begin_transaction("last")->id(), 0xFFFFFFFEu);
    end();
    const std::size_t messages = model->message_count();
    const std::string text_of_it = "Maximum Number of Transaction Allowed Has Been Reached....";
    EXPECT_EQ(thrown_by([&] { begin(); }), text_of_it);
    EXPECT_EQ(thrown_by([&] { transaction_object guard(model, "t"); }), text_of_it);
    EXPECT_EQ(model->last_transaction_id(), 0xFFFFFFFEu);
    EXPECT_EQ(model->message_count(), messages);
    EXPECT_FALSE(model->in_transaction());
}

TEST_F(models, ids_are_not_used_again) {
    object* const a = thing("a");
    begin();
    fw.delete_object(a);
    end();
    EXPECT_EQ(thing("b")->id(), 4u);
    begin();
    object* const c = fw.create_object(types::thing, root);
    end();
    model->undo();
    EXPECT_EQ(model->last_object_id(), 5u) << "undo does not lower the counter";
    model->redo();
    EXPECT_EQ(model->find_object(5), c) << "and the object keeps its id";
}

TEST_F(models, a_deleted_object_is_found_again_when_it_comes_back) {
    object* const a = thing("a");
    begin();
    fw.delete_object(a);
    end();
    EXPECT_EQ(model->find_object(3), nullptr);
    model->undo();
    EXPECT_EQ(model->find_object(3), a);
    EXPECT_EQ(model->find_object(0), nullptr);
    EXPECT_EQ(model->find_object(npos32), nullptr);
}

TEST_F(models, the_ids_of_its_objects_are_appended_in_order) {
    object* const a = thing("a");
    part("b", a);
    thing("c");
    begin();
    fw.delete_object(a);
    end();
    std::vector<u32> ids{99};
    EXPECT_EQ(model->object_ids(ids), 2u);
    EXPECT_EQ(ids, (std::vector<u32>{99, 1, 5}));
}

TEST_F(models, a_new_model_id_changes_nothing_else) {
    thing("a");
    const std::string before = dump();
    const GUID first = id();
    EXPECT_NE(first, GUID{});
    model->generate_model_id();
    EXPECT_NE(id(), first);
    EXPECT_NE(id(), GUID{});
    EXPECT_EQ(dump(), before);
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_FALSE(model->is_modified());
}

TEST_F(models, without_random_bytes_the_model_id_is_zero) {
    process().guid_source_fails = true;
    model->generate_model_id();
    object* const other = fw.create_object(type_id::model, nullptr);
    process().guid_source_fails = false;
    EXPECT_EQ(id(), GUID{});
    ASSERT_TRUE(other);
    EXPECT_EQ(fw.find_model(GUID{}), model) << "the first of that id";
    fw.delete_object(other);
}

TEST_F(models, of_two_with_one_id_several_objects_are_deleted_in_the_first) {
    process().guid_source_fails = true;
    model->generate_model_id();
    object* const other = fw.create_object(type_id::model, nullptr);
    process().guid_source_fails = false;
    object* const mine = thing("mine");
    object* const theirs = fw.create_object(types::thing, other);
    ASSERT_EQ(mine->id(), theirs->id());
    EXPECT_TRUE(fw.delete_objects({theirs}));
    EXPECT_EQ(mine->state(), state::deleted) << "it is looked up by identity";
    EXPECT_EQ(theirs->state(), state::normal);
    fw.delete_object(other);
}

TEST_F(models, remembering_ids_is_for_the_application_alone) {
    EXPECT_TRUE(model->remember_object_ids(root));
    thing("a");
    EXPECT_TRUE(model->remember_object_ids(root));
    EXPECT_FALSE(model->remember_object_ids(nullptr));
    EXPECT_EQ(model->message_count(), 0u);
}

TEST_F(models, what_a_reader_has_built_is_entered_under_its_ids) {
    object* const a = thing("a");
    object* const b = part("b", a);
    inside().objects_by_id().leave(b->id(), static_cast<object_impl*>(b));
    ASSERT_EQ(model->find_object(b->id()), nullptr);
    EXPECT_TRUE(model->post_load());
    EXPECT_EQ(model->find_object(b->id()), b);
    EXPECT_EQ(model->message_count(), 0u);
    EXPECT_TRUE(model->post_load()) << "as often as one likes";
}

TEST_F(models, of_two_objects_with_one_id_the_first_stays_entered) {
    object* const a = thing("a");
    object* const b = thing("b");
    static_cast<object_impl*>(b)->leave_id_map();
    static_cast<object_impl*>(b)->set_id(a->id());
    EXPECT_TRUE(model->post_load());
    EXPECT_EQ(model->find_object(a->id()), a);
    static_cast<object_impl*>(b)->leave_id_map();
    EXPECT_EQ(model->find_object(a->id()), a) << "only an object itself takes its id out";
}

TEST_F(models, closing_tells_its_observers_when_it_has_left_the_list) {
    thing("a");
    recorder ear;
    ear.watch(root);
    ear.answer = false; // nobody asks
    bool told = false;
    ear.meanwhile = [&](message* what) {
        told = true;
        const auto* const closing = message_cast<model_close_message>(what);
        ASSERT_TRUE(closing);
        EXPECT_EQ(closing->model(), model);
        EXPECT_EQ(what->object(), root);
        EXPECT_FALSE(what->is_user_created());
        EXPECT_TRUE(what->is_first_run());
        EXPECT_EQ(std::ranges::count(fw.models(), model), 0);
        EXPECT_EQ(root->children().size(), 1u) << "everything stands still";
        EXPECT_EQ(model->message_count(), 0u) << "it is not recorded";
        EXPECT_TRUE(fw.delete_object(root)) << "it is closing already";
        EXPECT_TRUE(what->undo() && what->redo()) << "nothing to do";
    };
    EXPECT_TRUE(fw.delete_object(root));
    model = nullptr;
    EXPECT_TRUE(told);
    EXPECT_EQ(ear.take(), "0 first ***********  Model Close **********\n");
    EXPECT_TRUE(fw.in_semantic()) << "until the next transaction of any model";
    object* const other = fw.create_object(type_id::model, nullptr);
    EXPECT_FALSE(fw.in_semantic());
    fw.delete_object(other);
    fw.set_in_semantic(false);
}

TEST_F(models, closing_tells_nobody_of_its_objects) {
    object* const a = hooked("a");
    hooks.record(true);
    recorder ear;
    ear.watch(a);
    int deletions = 0;
    at_delete = [&](object*) { return ++deletions != 0; };
    EXPECT_TRUE(fw.delete_object(root));
    model = nullptr;
    EXPECT_EQ(ear.take(), "");
    EXPECT_EQ(ear.subjects().size(), 0u) << "but nothing is left dangling";
    EXPECT_EQ(hooks.take_log(), "");
    EXPECT_EQ(deletions, 0) << "the hooks behind a deletion do not run";
    fw.set_in_semantic(false);
}

TEST_F(models, the_hooks_before_its_deletion_can_keep_it_open) {
    object* const a = thing("a");
    recorder ear;
    ear.watch(root);
    int asked = 0;
    at_pre_delete = [&](object* closing) {
        EXPECT_EQ(closing, root);
        EXPECT_EQ(closing->state(), state::being_deleted);
        EXPECT_EQ(std::ranges::count(fw.models(), model), 1);
        EXPECT_TRUE(fw.in_semantic());
        ++asked;
        return false;
    };
    EXPECT_FALSE(fw.delete_object(root));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(root->state(), state::normal);
    EXPECT_EQ(std::ranges::count(fw.models(), model), 1);
    EXPECT_TRUE(fw.in_semantic()) << "no rollback has cleared it";
    EXPECT_EQ(ear.take(), "");

    begin();
    a->set_property(props::text, text("x"));
    EXPECT_FALSE(fw.delete_object(root));
    EXPECT_FALSE(a->defines_property(props::text)) << "the open level is rolled back";
    EXPECT_FALSE(model->in_transaction());
    EXPECT_FALSE(fw.in_semantic());
}

TEST_F(models, a_model_does_not_close_under_its_own_mutations) {
    object* const a = hooked("a");
    bool closed = true;
    hooks.on<pre_prop_set_semantic>([&](hook_call&) {
        closed = fw.delete_object(root);
        return true;
    });
    EXPECT_TRUE(a->set_property(props::text, text("x")));
    EXPECT_FALSE(closed);
    closed = true;
    at_end = [&](kelm::model*) {
        closed = fw.delete_object(root);
        return true;
    };
    begin();
    a->set_property(props::text, text("y"));
    EXPECT_TRUE(model->end_transaction());
    EXPECT_FALSE(closed);
    EXPECT_EQ(root->state(), state::normal);
}

TEST_F(models, one_that_closes_with_a_transaction_open_frees_everything) {
    begin("left open");
    object* const a = fw.create_object(types::thing, root);
    fw.create_object(types::part, a);
    fw.delete_object(a);
    fw.create_object(types::other, root);
    EXPECT_TRUE(fw.delete_object(root));
    model = nullptr;
    fw.set_in_semantic(false);
}

} // namespace
} // namespace kelm::test
