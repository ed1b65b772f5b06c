// Pasting as a whole: where top nodes go, in which order, the transaction, and what was pasted.
// Values are paste_values_test, bases paste_bases_test, rules paste_rules_test and those behind it.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/stored_fields.h"

namespace kelm::test {
namespace {

class paste_test : public copy_paste_world {
protected:
    std::string names_pasted() const {
        std::string out;
        for (const object* each : pasted) out += (out.empty() ? "" : " ") + name_or_number(each);
        return out;
    }
};

TEST_F(paste_test, makes_trees_anew_with_ids_of_their_own) {
    object* const a = thing("a");
    part("b", a);
    part("c", thing("d", a));
    set(a, props::number, number(7));
    copy(a);
    far(types::part, "there before");
    const std::string before = far_dump();
    object* const made = paste_one();
    ASSERT_TRUE(made);
    EXPECT_EQ(far_tree(), "a(d(c) b) there before");
    EXPECT_EQ(made, found("a"));
    EXPECT_EQ(made->model(), far_model);
    EXPECT_EQ(own("a", props::number), "'7'");
    EXPECT_EQ(broken_links(*far_model), "");
    expect_paste_undone_and_redone(before);
}

TEST_F(paste_test, is_one_transaction_of_that_name) {
    copy(thing("a"));
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_model->undo_name(), "Paste Objects");
    EXPECT_FALSE(far_model->in_transaction());
    transaction_names names;
    far_model->undo_names(names, 0);
    EXPECT_EQ(names.size(), 1U);
    EXPECT_EQ(model->message_count(), 0U) << "nothing happens in the source";
}

TEST_F(paste_test, of_nothing_leaves_no_transaction_behind) {
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_model->message_count(), 0U) << "an empty one goes when it ends";
    EXPECT_FALSE(far_model->can_undo());
    EXPECT_TRUE(pasted.empty());
}

TEST_F(paste_test, without_a_fitting_owner_makes_nothing) {
    copy_all({thing("a"), make(types::hooked_part, "b")});
    const struct {
        const char* why;
        std::vector<object*> owners;
    } rows[] = {
        {"no owners", {}},
        {"null", {nullptr, nullptr}},
        {"an owner of nothing", {far(types::hooked_part, "x")}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string before = far_dump();
        EXPECT_TRUE(paste(row.owners));
        EXPECT_EQ(far_dump(), before);
        EXPECT_EQ(far_model->message_count(), 0U);
        EXPECT_FALSE(far_model->in_transaction());
        EXPECT_TRUE(pasted.empty());
    }
}

TEST_F(paste_test, into_nothing_is_refused) {
    copy(thing("a"));
    pasted = {root};
    EXPECT_FALSE(clip->paste(nullptr, {far_root}, &pasted));
    EXPECT_EQ(far_tree(), "");
}

TEST_F(paste_test, puts_each_under_the_first_that_may_own_it_and_only_there) {
    object* const childless = far(types::hooked_part, "childless", far_root);
    object* const narrow = far(types::part, "narrow"); // may not own what is linked
    object* const first = far(types::thing, "first");
    object* const second = far(types::thing, "second");
    copy_all({thing("a"), linked("b"), make(types::hooked_part, "c")});
    EXPECT_TRUE(paste({nullptr, childless, narrow, first, narrow, second, first}));
    EXPECT_EQ(tree(far_root), "first(b) second narrow(a) childless");
    EXPECT_EQ(names_pasted(), "a b");
}

TEST_F(paste_test, makes_children_whatever_their_owner_may_own) {
    object* const a = part("a");
    linked("b", a);
    make(types::hooked_part, "c", a);
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(c b)");
}

TEST_F(paste_test, into_the_source_model_makes_copies_beside) {
    object* const a = thing("a");
    object* const b = part("b", a);
    set(b, props::reference, a);
    copy(a);
    const std::string before = dump();
    EXPECT_TRUE(clip->paste(model, {root}, &pasted));
    ASSERT_EQ(pasted.size(), 1U);
    EXPECT_NE(pasted[0], a);
    EXPECT_EQ(tree(root), "a(b) a(b)");
    EXPECT_EQ(dump_text(pasted[0]->children()[0]->get_own_property(props::reference).get()),
              "#" + std::to_string(pasted[0]->id()))
        << "to the copy";
    expect_undone_and_redone(before);
}

TEST_F(paste_test, twice_makes_two_independent_sets) {
    object* const a = thing("a");
    object* const b = part("b", a);
    set(b, props::reference, a);
    copy(a);
    const std::string snapshot_before = bytes_of(*clip);
    object* const first = paste_one();
    object* const second = paste_one();
    ASSERT_TRUE(first && second);
    EXPECT_NE(first, second);
    EXPECT_EQ(far_tree(), "a(b) a(b)");
    for (object* each : {first, second})
        EXPECT_EQ(dump_text(each->children()[0]->get_own_property(props::reference).get()),
                  "#" + std::to_string(each->id()));
    EXPECT_EQ(bytes_of(*clip), snapshot_before);
}

TEST_F(paste_test, into_what_was_just_pasted_nests) {
    copy(thing("a"));
    object* const first = paste_one();
    EXPECT_TRUE(paste({first}));
    EXPECT_EQ(far_tree(), "a(a)");
}

TEST_F(paste_test, knows_its_destination_while_it_runs) {
    copy(thing("a"));
    GUID seen{};
    GUID expected{};
    far_model->model_id(expected);
    on_end.on_call = [&](kelm::model* where) {
        EXPECT_EQ(where, far_model);
        seen = clip->destination_model_id();
        return true;
    };
    clip->set_end_transaction_rule(scripted_end_rule{on_end});
    EXPECT_TRUE(paste());
    EXPECT_TRUE(seen == expected);
    EXPECT_TRUE(clip->destination_model_id() == GUID{});
}

TEST_F(paste_test, goes_by_the_order_of_types_and_keeps_it) {
    copy_all({make(types::other, "o"), part("p"), thing("t"), linked("l")});
    clip->set_type_order({types::linked, 4711, types::thing, types::part, types::linked});
    EXPECT_TRUE(paste());
    EXPECT_EQ(names_pasted(), "l t p o") << "one that is not listed comes last";
    EXPECT_EQ(shape_of(*clip), "*l *t *p *o") << "the snapshot itself is in that order now";
    clip->set_type_order({types::other, types::part});
    EXPECT_TRUE(paste());
    EXPECT_EQ(names_pasted().substr(0, 3), "o p");
    EXPECT_EQ(contents_of(*clip).type_order, (std::vector<u32>{types::other, types::part})) << "replaced";
}

TEST_F(paste_test, makes_top_nodes_in_that_order) {
    copy_all({part("p"), thing("t")});
    clip->set_type_order({types::thing, types::part});
    EXPECT_TRUE(paste());
    EXPECT_LT(found("t")->id(), found("p")->id());
}

TEST_F(paste_test, tells_what_stands_for_selected_top_nodes) {
    object* const pulled = thing("pulled");
    object* const a = linked("a");
    set(a, props::pulled, pulled);
    object* const owner = thing("owner");
    object* const child = part("child", owner);
    copy_all({child, a});
    copy(owner, false);
    copy(make(types::hooked_part, "left out"));
    EXPECT_EQ(shape_of(*clip), "pulled *a owner(*child) *left out");
    EXPECT_TRUE(paste());
    EXPECT_EQ(names_pasted(), "a");
}

TEST_F(paste_test, appends_to_what_was_pasted_before_or_tells_nobody) {
    copy(thing("a"));
    std::vector<object*> all{root};
    EXPECT_TRUE(clip->paste(far_model, {far_root}, &all));
    EXPECT_TRUE(clip->paste(far_model, {far_root}, &all));
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0], root);
    EXPECT_EQ(all[1], far_root->children()[0]);
    EXPECT_EQ(all[2], far_root->children()[1]);
    EXPECT_TRUE(clip->paste(far_model, {far_root}, nullptr));
    EXPECT_EQ(far_tree(), "a a a");
}

TEST_F(paste_test, inside_a_transaction_is_a_level_of_it) {
    copy(thing("a"));
    const std::string before = far_dump();
    far_model->begin_transaction("mine");
    object* const own_object = fw.create_object(types::thing, far_root);
    own_object->set_property(props::name, text("mine"));
    EXPECT_TRUE(paste());
    EXPECT_TRUE(far_model->in_transaction());
    EXPECT_EQ(far_tree(), "mine a");
    far_model->end_transaction();
    EXPECT_EQ(far_model->undo_name(), "mine");
    expect_paste_undone_and_redone(before);
}

TEST_F(paste_test, of_a_name_less_node_leaves_no_name) {
    begin();
    object* const a = fw.create_object(types::hooked, root);
    a->set_property(props::number, number(1));
    a->delete_property(props::name);
    end();
    object* const named = hooked("named");
    copy_all({a, named});
    hooks.on<obj_create_semantic>(
        [](hook_call& call) { return call.at->set_property(props::name, text("by a hook")); });
    EXPECT_TRUE(paste());
    ASSERT_EQ(pasted.size(), 2U);
    EXPECT_FALSE(pasted[0]->defines_property(props::name));
    EXPECT_EQ(as_text(pasted[0]->get_own_property(props::number)), "1");
    EXPECT_EQ(as_text(pasted[1]->get_own_property(props::name)), "named");
}

TEST_F(paste_test, sets_marks_before_values) {
    object* const a = thing("a");
    begin();
    a->set_property_not_inheritable(props::flag, true);
    a->set_property_not_inheritable(props::text, true);
    end();
    copy(a);
    EXPECT_TRUE(paste());
    EXPECT_EQ(found("a")->not_inheritable_properties().size(), 2U);
    EXPECT_TRUE(found("a")->is_property_not_inheritable(props::flag));
    std::string types;
    for (std::size_t i = 0; i != far_model->message_count(); ++i)
        types += std::to_string(far_model->message_at(i)->type()) + " ";
    EXPECT_EQ(types, "1 4 14 13 13 7 2 ");
}

TEST_F(paste_test, of_a_type_that_cannot_be_made_fails_below_and_is_skipped_at_the_top) {
    const std::string bytes = [&] {
        object* const a = thing("a");
        make(types::special_thing, "b", a);
        copy(a);
        return bytes_of(*clip);
    }();
    const auto with_type_of_b = [&](u32 type) {
        const std::string from = stored_fields{}.word(types::special_thing).bytes();
        std::string out = bytes;
        out.replace(out.find(from), 4, stored_fields{}.word(type).bytes());
        std::istringstream in{out};
        clip = fw.create_copier(model);
        EXPECT_TRUE(clip->read(in));
    };
    for (const u32 type :
         {4711U, types::abstract, type_id::model, type_id::library, type_id::generic_object}) {
        SCOPED_TRACE(type);
        with_type_of_b(type);
        expect_failure();
    }
    with_type_of_b(types::special_thing);
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "a(b)");
}

TEST_F(paste_test, from_a_stream_is_as_from_the_copier_that_wrote_it) {
    object* const a = linked("a");
    object* const b = linked("b", a);
    set(a, props::pulled, thing("x"));
    set(b, props::list, {a, b});
    add_base(b, a);
    copy(a);
    EXPECT_TRUE(paste());
    const std::string once = far_dump();
    far_model->undo();
    std::istringstream in{bytes_of(*clip)};
    clip = fw.create_copier(model);
    ASSERT_TRUE(clip->read(in));
    EXPECT_TRUE(paste());
    std::string again = far_dump();
    EXPECT_EQ(far_tree(), "x a(b)");
    EXPECT_EQ(pasted, std::vector<object*>{found("a")});
    std::string same = once; // but for the ids, which have as many digits
    for (std::string* each : {&same, &again})
        std::erase_if(*each, [](char c) { return c >= '0' && c <= '9'; });
    EXPECT_EQ(again, same);
}

} // namespace
} // namespace kelm::test
