// What messages say of themselves where something is missing, deleted, unknown, or on the other side of undo.
// The ordinary words are tested with each family of changes.
#include "tests/support/listening_world.h"

#include "message/child_messages.h"
#include "message/inherit_messages.h"
#include "message/lifetime_messages.h"
#include "message/observer_messages.h"
#include "message/transaction_messages.h"
#include "message/udp_messages.h"
#include "message/value_messages.h"
#include "message/vector_messages.h"

namespace kelm::test {
namespace {

class descriptions : public listening_world {
protected:
    static std::string words(const message& of) {
        std::string out = "what stood here before";
        std::string& same = of.to_string(out);
        EXPECT_EQ(&same, &out);
        return out;
    }
    /// \returns the words of the n-th message of the history
    std::string words(std::size_t at) const { return words(*model->message_at(at)); }
    /// An object that is deleted, and stays in memory with its history.
    object* deleted(object* what) {
        begin();
        EXPECT_TRUE(fw.delete_object(what));
        end();
        return what;
    }
    silent_edit* edit(object* of) { return edit_of(of); }
};

TEST_F(descriptions, of_children_that_are_deleted) {
    object* const owner = thing("owner");
    object* const gone = deleted(part("gone", owner));
    const struct {
        const char* why;
        std::string said;
        const char* expected;
    } rows[] = {
        {"removed", words(child_remove_message_impl(edit(owner), gone, 3)),
         "Remove Child - type (deleted) name (deleted) from Thing owner"},
        {"ordered", words(child_order_message_impl(edit(owner), gone, 3, 2)),
         "Order Child - object: type (deleted) name (deleted) of Thing owner: new position 3, "
         "old position: 2"},
        {"the owner of what is removed", words(child_remove_message_impl(edit(gone), owner, 3)),
         "Remove Child - Thing owner from type (deleted) name (deleted)"},
        {"the owner of what is ordered", words(child_order_message_impl(edit(gone), owner, 0, 1)),
         "Order Child - object: Thing owner of type (deleted) name (deleted): new position 0, "
         "old position: 1"},
        {"one that is added has no such words", words(child_add_message_impl(edit(owner), gone, 3)),
         "Added Part owner. of Thing owner"},
        {"nor one that is about to go", words(child_pre_remove_message_impl(edit(owner), gone)),
         "Pre Remove Child - Part owner. of Thing owner"},
        {"nor one that changes its owner", words(owner_set_message_impl(edit(gone), owner, root)),
         "Set Owner - for Part owner. to Thing:owner, old owner: Model:"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(row.said, row.expected);
    }
}

TEST_F(descriptions, of_objects_that_come_and_go) {
    object* const owner = thing("owner");
    object* const child = part("child", owner);
    object* const gone = deleted(thing("gone"));
    EXPECT_EQ(words(obj_create_message_impl(edit(child), owner)), "Created Part:owner.child");
    EXPECT_EQ(words(obj_pre_delete_message_impl(edit(child), owner)), "Pre Delete Part owner.child");
    EXPECT_EQ(words(obj_delete_message_impl(edit(child), owner)),
              "Deleted Part owner.child owner Thing owner");
    EXPECT_EQ(words(obj_delete_message_impl(edit(child), root)), "Deleted Part owner.child owner Model ");
    EXPECT_EQ(words(obj_delete_message_impl(edit(child), gone)), "Deleted Part owner.child owner  deleted")
        << "two blanks in a row";
}

TEST_F(descriptions, of_bases_with_whole_paths) {
    object* const owner = thing("owner");
    object* const a = part("a", owner);
    object* const b = part("b", owner);
    object* const c = thing("c");
    EXPECT_EQ(words(inherits_add_message_impl(edit(a), b, 0)),
              "Add Inherits - Part owner.a from Part owner.b");
    EXPECT_EQ(words(inherits_insert_message_impl(edit(a), b, 0)),
              "Insert Inherits - Part owner.a from Part owner.b");
    EXPECT_EQ(words(inherits_cancel_message_impl(edit(a), c, 0)),
              "Cancel Inherits - Part owner.a from Thing c");
    EXPECT_EQ(words(inherits_replace_message_impl(edit(a), b, c, 0)),
              "Replace Inherits - Part owner.a from: Thing c with Part owner.b");
    EXPECT_EQ(words(inherits_from_order_message_impl(edit(a), b, 0, 1)),
              "Inherits From Order - object: Part owner.a: new position 0, old position: 1")
        << "the base is not named";
}

// Positions of all ones stand for "none".
TEST_F(descriptions, print_positions_with_a_sign) {
    object* const a = thing("a");
    object* const b = thing("b");
    EXPECT_EQ(words(child_order_message_impl(edit(a), b, npos, 0)),
              "Order Child - object: Thing b of Thing a: new position -1, old position: 0");
    EXPECT_EQ(words(child_order_message_impl(edit(a), b, 0, npos - 1)),
              "Order Child - object: Thing b of Thing a: new position 0, old position: -2");
    EXPECT_EQ(words(inherits_from_order_message_impl(edit(a), b, npos, npos - 2)),
              "Inherits From Order - object: Thing a: new position -1, old position: -3");
    EXPECT_EQ(words(element_position_vec_prop_message_impl(edit(a), props::list, npos, 0x80000000, false)),
              "Changed List of Thing a from -1 to -2147483648");
}

TEST_F(descriptions, of_values_that_are_not_there) {
    object* const a = thing("a");
    property<int> one{1};
    abstract_property* const none = nullptr;
    EXPECT_EQ(words(property_set_message_impl(edit(a), none, &one, props::number, nullptr)),
              "Changed Thing a Number from NULL to 1");
    EXPECT_EQ(words(property_set_message_impl(edit(a), &one, none, props::number, a)),
              "Changed Thing a Number from 1 to NULL");
    EXPECT_EQ(words(property_set_message_impl(edit(a), none, none, props::number, a)),
              "Changed Thing a Number from NULL to NULL");
}

TEST_F(descriptions, of_lists_and_references_are_their_texts) {
    object* const a = thing("a");
    vector_property list;
    list.elements.push_back(new property<int>{1});
    list.elements.push_back(new property<std::string>{"x"});
    begin();
    ASSERT_TRUE(a->set_property(props::list, list));
    ASSERT_TRUE(a->set_property(props::reference, reference(a)));
    end();
    EXPECT_EQ(words(1), "Changed Thing a List from NULL to " + list.to_string());
    EXPECT_EQ(words(2), "Changed Thing a Reference from NULL to " + reference(a).to_string());
}

// Names are those that the application has declared for the type of the object.
TEST_F(descriptions, leave_the_name_of_a_property_out_that_only_the_model_knows) {
    object* const a = thing("a");
    const meta_property* const own =
        model->add_user_defined_property(types::thing, "Own", data_type::string, "", 0);
    ASSERT_TRUE(own);
    model->clear_history();
    begin();
    ASSERT_TRUE(a->set_property(own->id(), text("x")));
    ASSERT_TRUE(a->set_property_not_inheritable(own->id(), true));
    ASSERT_TRUE(a->delete_property(own->id()));
    ASSERT_TRUE(a->append_vector_element(own->id(), number(1)));
    ASSERT_TRUE(a->set_vector_element(own->id(), number(2), 0));
    ASSERT_TRUE(a->move_vector_element(own->id(), 0, 0));
    ASSERT_TRUE(a->delete_vector_element(own->id(), 0));
    const property<int> now{4};
    ASSERT_TRUE(a->refresh_property(own->id(), &now, nullptr));
    ASSERT_TRUE(a->refresh_property(own->id(), nullptr, &now));
    end();
    // The former value is the default that reads of such a property give, an empty text.
    EXPECT_EQ(history(1), "7 Changed Thing a  from  to x\n"
                          "13 Set Thing a  not inheritable.\n"
                          "10 Deleted  of Thing a\n"
                          "7 Changed Thing a  from  to \n"
                          "9 Inserted  of Thing a\n"
                          "8 Set  of Thing a\n"
                          "12 Changed  of Thing a from 0 to 0\n"
                          "11 Deleted  of Thing a\n"
                          "7 Refresh Set Property -  of Thing a\n"
                          "10 Refresh Delete Property -  of Thing a\n"
                          "2  End Transaction - t\n");
}

TEST_F(descriptions, of_values_are_the_same_on_both_sides_of_undo) {
    object* const a = thing("a");
    object* const base = thing("base");
    begin();
    base->set_property(props::text, text("inherited"));
    a->add_inherits_from(base);
    a->set_property(props::number, number(1));
    end();
    model->clear_history();
    begin();
    ASSERT_TRUE(a->set_property(props::number, number(2)));
    ASSERT_TRUE(a->set_property(props::text, text("own")));
    ASSERT_TRUE(a->set_property(props::flag, flag(true)));
    ASSERT_TRUE(a->delete_property(props::number));
    end();
    std::vector<message*> all;
    for (std::size_t i = 0; i != model->message_count(); ++i) all.push_back(model->message_at(i));
    const std::string said =
        " Begin Transaction - t\nChanged Thing a Number from 1 to 2\n"
        "Changed Thing a Text from inherited to own\nChanged Thing a Flag from NULL to " +
        flag(true).to_string() + "\nDeleted Number of Thing a\n End Transaction - t\n";
    const auto say_all = [&] {
        std::string lines;
        for (const message* each : all) lines += words(*each) + "\n";
        return lines;
    };
    EXPECT_EQ(say_all(), said);
    model->undo();
    EXPECT_EQ(say_all(), said);
    model->redo();
    EXPECT_EQ(say_all(), said);
}

TEST_F(descriptions, of_observers_that_a_reader_did_not_find) {
    object* const a = thing("a");
    EXPECT_EQ(words(observer_add_message_impl(edit(a), nullptr, 0)),
              "Add Observer - observer: :, subject: Thing:a");
    EXPECT_EQ(words(observer_remove_message_impl(edit(a), nullptr, 0)),
              "Remove Observer - observer: :, subject: Thing:a");
}

TEST_F(descriptions, of_transactions_without_a_partner) {
    EXPECT_EQ(words(tran_end_message_impl(edit(root))), " End Transaction - ");
    EXPECT_EQ(words(tran_begin_message_impl(edit(root), 7, "")), " Begin Transaction - ");
    EXPECT_EQ(words(tran_rollback_message_impl(edit(root), nullptr, true)),
              "*******   Rollback Transaction - Level 0, 0");
    tran_begin_message_impl begun{edit(root), 0xFFFFFFFE, "x"};
    EXPECT_EQ(words(tran_rollback_message_impl(edit(root), &begun, false)),
              "*******   Rollback Transaction - Level 0, -2");
}

TEST_F(descriptions, of_user_defined_properties_that_are_not_there) {
    meta_object* const type = model->meta_model()->find_meta_object(types::thing);
    const auto made = [](int value) { return std::make_unique<property<int>>(value); };
    using attribute_message = udp_set_attribute_value_message_impl;
    EXPECT_EQ(words(udp_add_message_impl(edit(root), type, 50001, "Own", data_type::string)),
              "UDP Added : Own of Thing");
    EXPECT_EQ(words(udp_remove_message_impl(edit(root), type, 50001, "Own", data_type::string, made(1))),
              "UDP Removed : Own of Thing");
    EXPECT_EQ(words(udp_add_message_impl(edit(root), nullptr, 50001, "Own", data_type::string)),
              "UDP Added : Own of ");
    EXPECT_EQ(
        words(attribute_message(edit(root), type, 50001, attribute_id::default_value, made(2), made(1))),
        "UDP Attribute Value Changed :  (2,1 )");
    EXPECT_EQ(
        words(attribute_message(edit(root), type, 50001, attribute_id::default_value, made(2), nullptr)),
        "UDP Attribute Value Changed :  (2, )");
}

} // namespace
} // namespace kelm::test
