// References between objects: who points at whom, and what becomes of a reference when its target goes.
// The order of what is told then is deletion_told_test.
#include "tests/object/hook_lines.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <sstream>

namespace kelm::test {

namespace {

class references_test : public world {
protected:
    void refer(object* from, u32 id, object* to) { from->set_property(id, reference(to)); }
    void refer_to_all(object* from, const std::vector<object*>& targets) {
        vector_property list;
        for (object* each : targets) list.elements.push_back(new property<object*>(each));
        from->set_property(props::list, list);
    }
    static std::string sorted_names(std::vector<object*> of) {
        std::ranges::sort(of, {}, [](const object* each) { return each->id(); });
        return own_names(of);
    }
};

} // namespace

TEST_F(references_test, are_known_at_their_target_each_object_once) {
    object* const target = thing("target");
    object* const a = thing("a");
    object* const b = thing("b");
    EXPECT_TRUE(target->referencing_objects().empty());
    refer(a, props::reference, target);
    refer_to_all(a, {target, b, target});
    refer(b, props::reference, target);
    refer(target, props::reference, target);
    EXPECT_EQ(sorted_names(target->referencing_objects()), "target a b");
    EXPECT_EQ(own_names(b->referencing_objects()), "a");
    a->delete_property(props::list);
    EXPECT_EQ(sorted_names(target->referencing_objects()), "target a b"); // one reference of a is left
    a->delete_property(props::reference);
    EXPECT_EQ(sorted_names(target->referencing_objects()), "target b");
    refer(b, props::reference, nullptr);
    target->delete_property(props::reference);
    EXPECT_TRUE(target->referencing_objects().empty());
}

TEST_F(references_test, are_listed_in_the_order_of_properties_each_target_once) {
    object* const holder = thing("holder");
    object* const x = thing("x");
    object* const y = thing("y");
    object* const z = thing("z");
    refer_to_all(holder, {z, nullptr, x, y, z});
    refer(holder, props::reference, y);
    EXPECT_EQ(own_names(holder->referenced_objects()), "y z x");
    EXPECT_EQ(holder->referencing_property_ids(y), (std::vector<u32>{props::reference, props::list}));
    EXPECT_EQ(holder->referencing_property_ids(x), (std::vector<u32>{props::list}));
    EXPECT_TRUE(holder->referencing_property_ids(holder).empty());
    EXPECT_TRUE(x->referenced_objects().empty());
}

TEST_F(references_test, that_are_inherited_count_as_well_where_values_are_read) {
    object* const base = thing("base");
    object* const heir = thing("heir");
    object* const target = thing("target");
    refer(base, props::reference, target);
    heir->add_inherits_from(base);
    EXPECT_EQ(own_names(heir->referenced_objects()), "target");
    EXPECT_EQ(heir->referencing_property_ids(target), (std::vector<u32>{props::reference}));
    EXPECT_EQ(own_names(target->referencing_objects()), "base"); // only who stores it
}

TEST_F(references_test, outside_the_type_are_stored_and_not_read) {
    constexpr u32 undeclared = 777;
    object* const holder = thing("holder");
    object* const target = thing("target");
    refer(holder, undeclared, target);
    EXPECT_EQ(own_names(target->referencing_objects()), "holder");
    EXPECT_TRUE(holder->referenced_objects().empty());
    EXPECT_TRUE(fw.delete_object(target));
    EXPECT_FALSE(holder->defines_property(undeclared));
}

TEST_F(references_test, go_with_their_target_and_come_back_with_it) {
    object* const target = thing("target");
    object* const holder = thing("holder");
    begin();
    refer(holder, props::reference, target);
    refer(holder, 778, target);
    refer_to_all(holder, {target, root, target});
    end();
    model->clear_history();
    const std::string before = dump();
    begin();
    EXPECT_TRUE(fw.delete_object(target));
    end();
    EXPECT_FALSE(holder->defines_property(props::reference));
    EXPECT_FALSE(holder->defines_property(778));
    EXPECT_EQ(message_types(), "1 5 15 10 16 10 11 11 10 6 2");
    EXPECT_TRUE(target->referencing_objects().empty());
    expect_undone_and_redone(before);
}

TEST_F(references_test, of_what_is_deleted_as_well_go_with_it) {
    object* const top = thing("top");
    object* const child = part("child", top);
    begin();
    refer(child, props::reference, top);
    refer(top, props::reference, child);
    refer(top, 778, top);
    end();
    model->clear_history();
    const std::string before = dump();
    begin();
    EXPECT_TRUE(fw.delete_object(top));
    end();
    model->undo();
    EXPECT_EQ(dump(), before);
}

TEST_F(references_test, are_not_given_up_when_a_hook_refuses) {
    object* const target = thing("target");
    object* const holder = hooked("holder");
    begin();
    refer(holder, props::reference, target);
    end();
    model->clear_history();
    const std::string before = dump();
    for (const int kind : {15, 16}) {
        SCOPED_TRACE(kind);
        hooks.on(kind, [&](hook_call& call) { return call.numbers[0] != props::reference; });
        begin();
        EXPECT_FALSE(fw.delete_object(target));
        EXPECT_FALSE(model->in_transaction());
        EXPECT_EQ(target->state(), state::normal);
        EXPECT_EQ(dump(), before);
        hooks.clear();
    }
    refer_to_all(holder, {target, target});
    holder->delete_property(props::reference);
    model->clear_history();
    const std::string with_list = dump();
    for (const int kind : {17, 18, 15}) {
        SCOPED_TRACE(kind);
        hooks.on(kind, [&](hook_call& call) { return call.numbers[0] != props::list; });
        begin();
        EXPECT_FALSE(fw.delete_object(target));
        EXPECT_EQ(dump(), with_list);
        hooks.clear();
    }
}

TEST_F(references_test, of_one_that_a_hook_frees_on_the_way_are_passed_over) {
    object* const target = thing("target");
    object* const one = hooked("one");
    object* const two = hooked("two");
    for (object* each : {one, two}) refer(each, props::reference, target);
    hooks.on<post_prop_delete_semantic>([&](hook_call& call) {
        object* const next = call.at == one ? two : one;
        return !next->defines_property(props::reference) || next->delete_property(props::reference);
    });
    model->clear_history();
    begin();
    EXPECT_TRUE(fw.delete_object(target));
    end();
    EXPECT_EQ(message_types(), "1 5 15 10 16 10 10 6 2");
}

TEST_F(references_test, of_another_model_are_cut_when_their_target_is_closed) {
    object* const second_root = fw.create_object(type_id::model, nullptr);
    object* const target = fw.create_object(types::thing, second_root);
    object* const holder = thing("holder");
    begin();
    refer(holder, props::reference, target);
    refer_to_all(holder, {target, root});
    end();
    model->clear_history();
    EXPECT_TRUE(fw.delete_object(second_root));
    fw.set_in_semantic(false);
    ASSERT_TRUE(holder->defines_property(props::reference));
    EXPECT_EQ(own_names(holder->referenced_objects()), "model");
}

TEST_F(references_test, to_one_object_may_be_many) {
    constexpr int count = 20000;
    object* const hub = thing("hub");
    object* const holder = thing("holder");
    begin();
    refer_to_all(holder, std::vector<object*>(count, hub));
    for (int i = 0; i != count; ++i) refer(fw.create_object(types::part, holder), props::reference, hub);
    end();
    model->clear_history();
    EXPECT_EQ(hub->referencing_objects().size(), std::size_t{count} + 1);
    begin();
    EXPECT_TRUE(fw.delete_object(hub));
    end();
    EXPECT_FALSE(holder->defines_property(props::list));
    EXPECT_EQ(model->message_count(), 3u * count + 8 - count);
    model->undo();
    EXPECT_EQ(hub->referencing_objects().size(), std::size_t{count} + 1);
}

// Lists inside lists: the target is not told of such references, so nothing takes them out when it goes.

namespace {

/// A list of a list of a list that refers to `target`, and to nothing.
std::unique_ptr<vector_property> nested_list(object* target) {
    auto innermost = std::make_unique<vector_property>();
    innermost->elements.push_back(new property<object*>(target));
    innermost->elements.push_back(new property<object*>(nullptr));
    auto inner = std::make_unique<vector_property>();
    inner->elements.push_back(innermost.release());
    auto list = std::make_unique<vector_property>();
    list->elements.push_back(inner.release());
    return list;
}

object* target_in(const object& holder) {
    const value_ptr whole = holder.get_property(props::list);
    const abstract_property* at = whole.get();
    while (const auto* const list = dynamic_cast<const vector_property*>(at)) at = list->elements.at(0);
    return dynamic_cast<const property<object*>&>(*at).value;
}

} // namespace

TEST_F(references_test, keeps_those_in_lists_inside_lists_out_of_back_lists) {
    object* const target = thing("target");
    object* const holder = thing("holder");
    holder->set_property(props::list, *nested_list(target));
    EXPECT_TRUE(target->referencing_objects().empty());
    EXPECT_TRUE(holder->referenced_objects().empty());
    ASSERT_TRUE(fw.delete_object(target));
    EXPECT_EQ(target_in(*holder), target);
    EXPECT_EQ(target->state(), state::deleted);
}

TEST_F(references_test, from_lists_inside_lists_lead_to_objects_that_stay_in_memory) {
    object* const holder = thing("holder");
    const struct {
        const char* why;
        std::function<void(object*)> refer;
    } rows[] = {
        {"a value is set", [&](object* to) { holder->set_property(props::list, *nested_list(to)); }},
        {"an element is inserted",
         [&](object* to) {
             refer_to_all(holder, {});
             holder->insert_vector_element(props::list, *nested_list(to)->elements[0], 0);
         }},
        {"an element is replaced",
         [&](object* to) {
             refer_to_all(holder, {holder});
             holder->set_vector_element(props::list, *nested_list(to)->elements[0], 0);
         }},
        {"an element that is a flat list is inserted",
         [&](object* to) {
             vector_property flat;
             flat.elements.push_back(new property<object*>(to));
             refer_to_all(holder, {});
             holder->insert_vector_element(props::list, flat, 0);
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        object* const target = thing("target");
        const u32 id = target->id();
        row.refer(target);
        model->end_transaction();
        model->begin_transaction("delete");
        ASSERT_TRUE(fw.delete_object(target));
        model->end_transaction();
        model->clear_history();
        model->begin_transaction("look");
        EXPECT_EQ(model->find_object(id), nullptr);
        ASSERT_EQ(target_in(*holder), target);
        EXPECT_EQ(target->id(), id);
        EXPECT_EQ(target->state(), state::deleted);
        std::ostringstream out;
        model->end_transaction();
        EXPECT_TRUE(model->write(&out, true, 0, false, nullptr));
        model->begin_transaction("next");
    }
}

TEST_F(references_test, from_lists_inside_lists_that_were_read_do_so_too) {
    thing("holder")->set_property(props::list, *nested_list(thing("target")));
    model->end_transaction();
    std::stringstream bytes;
    ASSERT_TRUE(model->write(&bytes, false, 0, false, nullptr));
    kelm::model* const twin = fw.create_object(type_id::model, nullptr)->model();
    ASSERT_TRUE(twin->read(&bytes, nullptr));
    object* const holder = twin->as_object()->children().at(0);
    object* const target = target_in(*holder);
    ASSERT_EQ(target, twin->as_object()->children().at(1));
    twin->begin_transaction("delete");
    ASSERT_TRUE(fw.delete_object(target));
    twin->end_transaction();
    twin->clear_history();
    EXPECT_EQ(target_in(*holder), target);
    EXPECT_EQ(target->state(), state::deleted);
    std::ostringstream out;
    EXPECT_TRUE(twin->write(&out, true, 0, false, nullptr));
    fw.delete_object(twin->as_object());
    model->begin_transaction("next");
}

} // namespace kelm::test
