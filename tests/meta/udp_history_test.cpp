// User-defined properties: what the history records of them, and undo and redo.
// The stored form of these messages is tested with that of the history.
#include "meta/udp_world.h"

#include <kelm/message.h>
#include <kelm/structure_messages.h>
#include <kelm/subject.h>

namespace {

using namespace kelm;
using namespace kelm::udp_world;
using testing::ElementsAre;

// Undo and redo

TEST_F(user_defined_properties, making_is_undone_and_redone) {
    ASSERT_TRUE(set(property_id::udp_default_value, text("Ann")));
    define("Owner", {table_type, column_type});
    for (int round = 0; round != 2; ++round) {
        SCOPED_TRACE(round);
        model_->undo();
        EXPECT_EQ(made_on(table_type), nullptr);
        EXPECT_EQ(made_on(column_type), nullptr);
        EXPECT_EQ(stored_id(), 0U);
        model_->redo();
        ASSERT_NE(made_on(table_type), nullptr);
        EXPECT_NE(made_on(column_type), nullptr);
        EXPECT_EQ(made_on(table_type)->name(), "Owner");
        EXPECT_EQ(made_on(table_type)->property_class(), data_type::string);
        EXPECT_EQ(text_of(made_on(table_type)->attribute_value(attribute_id::default_value)), "Ann");
        EXPECT_EQ(stored_id(), first_id);
    }
}

TEST_F(user_defined_properties, a_changed_attribute_is_undone_to_its_former_value_or_to_none) {
    define("Owner", {table_type});
    const auto default_value = [&] {
        return text_of(made_on(table_type)->attribute_value(attribute_id::default_value));
    };
    ASSERT_TRUE(set(property_id::udp_default_value, text("Ann")));
    ASSERT_TRUE(set(property_id::udp_default_value, text("Bob")));
    model_->undo();
    EXPECT_EQ(default_value(), "Ann");
    model_->undo();
    EXPECT_EQ(default_value(), "(none)");
    model_->redo();
    EXPECT_EQ(default_value(), "Ann");
    model_->redo();
    EXPECT_EQ(default_value(), "Bob");
}

TEST_F(user_defined_properties, keeps_only_the_default_when_a_removal_is_undone) {
    ASSERT_TRUE(set(property_id::definition, text("Who owns it")));
    ASSERT_TRUE(set(property_id::udp_default_value_choices, *texts({"Ann", "Bob"})));
    define("Owner", {table_type});
    ASSERT_TRUE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    model_->undo();
    const meta_property* const back = made_on(table_type);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->name(), "Owner");
    EXPECT_EQ(text_of(back->attribute_value(attribute_id::default_value)), "Ann");
    EXPECT_FALSE(back->attribute_value(attribute_id::default_value_choices));
    EXPECT_EQ(back->definition(), "");
    model_->redo();
    EXPECT_EQ(made_on(table_type), nullptr);
}

TEST_F(user_defined_properties, a_removal_without_a_default_is_undone_to_no_default) {
    define("Owner", {table_type});
    ASSERT_TRUE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    model_->undo();
    ASSERT_NE(made_on(table_type), nullptr);
    EXPECT_FALSE(made_on(table_type)->attribute_value(attribute_id::default_value));
}

TEST_F(user_defined_properties, a_refused_change_takes_back_what_was_made) {
    EXPECT_TRUE(set(property_id::name, text("Owner")));
    EXPECT_FALSE(change([&] {
        return definition_->append_vector_element(property_id::udp_object_types,
                                                  property<unsigned>(table_type)) &&
               definition_->append_vector_element(property_id::udp_object_types,
                                                  property<unsigned>(unknown_type)) &&
               definition_->delete_vector_element(property_id::udp_object_types, 1);
    }));
    EXPECT_EQ(made_on(table_type), nullptr);
    EXPECT_FALSE(definition_->defines_property(property_id::udp_object_types));
}

// Messages

/// What the history holds of user-defined properties, in order.
std::vector<message*> udp_messages(const kelm::model& in) {
    std::vector<message*> found;
    for (std::size_t at = 0; at != in.message_count(); ++at)
        if (message* const said = in.message_at(at); said->type() >= message_type::udp_add)
            found.push_back(said);
    return found;
}

TEST_F(user_defined_properties, each_change_of_a_type_is_recorded_with_its_words) {
    ASSERT_TRUE(set(property_id::udp_default_value, text("Ann")));
    define("Owner", {table_type});
    ASSERT_TRUE(set(property_id::udp_default_value, text("Bob")));
    const std::vector<message*> made = udp_messages(*model_);
    std::vector<std::string> words;
    for (const message* const said : made) {
        std::string description;
        words.push_back(said->to_string(description));
        EXPECT_EQ(said->object(), root_);
        EXPECT_FALSE(said->is_first_run());
        EXPECT_FALSE(said->is_user_created());
    }
    EXPECT_THAT(words,
                ElementsAre("UDP Added : Owner of Udp Table", "UDP Attribute Value Changed : Owner (Ann, )",
                            "UDP Attribute Value Changed : Owner (Bob,Ann )"));

    auto* const added = message_cast<udp_add_message>(made.at(0));
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(made.at(0)->type(), message_type::udp_add);
    EXPECT_EQ(added->owner_meta_type(), type(table_type));
    EXPECT_EQ(added->udp_type(), first_id);

    auto* const changed = message_cast<udp_set_attribute_value_message>(made.at(1));
    ASSERT_NE(changed, nullptr);
    EXPECT_EQ(made.at(1)->type(), message_type::udp_set_attribute_value);
    EXPECT_EQ(changed->owner_meta_type(), type(table_type));
    EXPECT_EQ(changed->udp_type(), first_id);
    EXPECT_EQ(changed->udp_att(), attribute_id::default_value);
    EXPECT_EQ(text_of(changed->new_value()), "Ann");
    EXPECT_FALSE(changed->old_value());
}

TEST_F(user_defined_properties, a_removal_is_recorded_behind_the_deletion_of_the_values) {
    define("Owner", {table_type});
    object* const table = make(table_type);
    ASSERT_TRUE(set(table, first_id, text("Ann")));
    model_->clear_history();
    ASSERT_TRUE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    std::vector<u32> kinds;
    for (std::size_t at = 0; at != model_->message_count(); ++at)
        kinds.push_back(model_->message_at(at)->type());
    EXPECT_THAT(kinds,
                ElementsAre(message_type::tran_begin, message_type::property_delete, message_type::udp_remove,
                            message_type::property_delete, message_type::tran_end));
    auto* const removed = message_cast<udp_remove_message>(model_->message_at(2));
    ASSERT_NE(removed, nullptr);
    EXPECT_EQ(removed->owner_meta_type(), type(table_type));
    EXPECT_EQ(removed->udp_type(), first_id);
    std::string words;
    EXPECT_EQ(model_->message_at(2)->to_string(words), "UDP Removed : Owner of Udp Table");
}

TEST_F(user_defined_properties, a_direct_call_is_a_users_work) {
    ASSERT_NE(model_->add_user_defined_property(table_type, "Owner", data_type::string, "", 0), nullptr);
    EXPECT_TRUE(udp_messages(*model_).at(0)->is_user_created());
}

/// Counts what it hears of user-defined properties, and of anything.
class listener final : public observer_impl {
public:
    bool update(subject*, message* said) override {
        ++heard;
        if (said && said->type() >= message_type::udp_add) ++heard_of_udp;
        return true;
    }
    int heard = 0;
    int heard_of_udp = 0;
};

TEST_F(user_defined_properties, nobody_hears_of_changes_of_a_type) {
    listener ears;
    ASSERT_TRUE(root_->attach(&ears));
    define("Owner", {table_type});
    ASSERT_TRUE(set(property_id::udp_default_value, text("Ann")));
    ASSERT_TRUE(change([&] { return definition_->delete_property(property_id::udp_object_types); }));
    for (int step = 0; step != 3; ++step) model_->undo();
    for (int step = 0; step != 3; ++step) model_->redo();
    root_->detach(&ears);
    EXPECT_GT(ears.heard, 0) << "transactions are heard of";
    EXPECT_EQ(ears.heard_of_udp, 0);
}

} // namespace
