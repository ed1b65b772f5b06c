// User-defined properties: one definition from its making to its end, step by step.
// Each step is told as the text of its history, undone and redone.
#include "meta/udp_world.h"

namespace {

using namespace kelm;
using namespace kelm::udp_world;

/// One step of a life, in a transaction of its own.
struct life_step {
    const char* why;
    std::function<bool()> edit;
    const char* history;          ///< what the step recorded between begin and end
    const char* types;            ///< what the types look like behind it
    const char* undone = nullptr; ///< what undo leaves; null for what the types looked like before
    const char* redone = nullptr; ///< what redo then leaves; null for the same as `types`
};

class a_life : public user_defined_properties {
protected:
    /// The user-defined properties of the types, a line each, with the attributes that are set.
    std::string types_text() {
        std::string out;
        for (const u32 each : {table_type, column_type, derived_type}) {
            for (const meta_property* it : type(each)->properties()) {
                if (it->id() < property_id::first_user_defined) continue;
                out += type(each)->name() + " " + std::to_string(it->id()) + " " + it->name();
                const auto add = [&](const char* what, u32 attribute) {
                    if (const value_ptr value = it->attribute_value(attribute))
                        out += std::string(", ") + what + " " + test::dump_text(value.get());
                };
                if (!it->definition().empty()) out += ", definition '" + it->definition() + "'";
                add("default", attribute_id::default_value);
                add("choices", attribute_id::default_value_choices);
                add("multiline", attribute_id::multiline);
                out += "\n";
            }
        }
        return out;
    }
    std::string recorded() {
        std::string lines;
        for (std::size_t at = 1; at + 1 < model_->message_count(); ++at)
            lines += test::line_of(model_->message_at(at)) + "\n";
        return lines;
    }
    /// Does a step, undoes it and does it again; what comes next starts from there.
    void live(const life_step& step) {
        SCOPED_TRACE(step.why);
        const std::string types_before = types_text();
        const std::string objects_before = test::dump_of(*model_);
        model_->clear_history();
        EXPECT_TRUE(change(step.edit));
        EXPECT_EQ(recorded(), step.history);
        EXPECT_EQ(types_text(), step.types);
        const std::string objects_after = test::dump_of(*model_);
        const std::size_t messages = model_->message_count();
        for (int round = 0; round != 2; ++round) {
            SCOPED_TRACE(round);
            model_->undo();
            EXPECT_EQ(types_text(), step.undone ? step.undone : types_before);
            EXPECT_EQ(test::dump_of(*model_), objects_before);
            model_->redo();
            EXPECT_EQ(types_text(), step.redone ? step.redone : step.types);
            EXPECT_EQ(test::dump_of(*model_), objects_after);
            EXPECT_EQ(model_->message_count(), messages) << "nothing is recorded anew";
        }
    }
    bool insert_choice(const char* value, std::size_t at) {
        return definition_->insert_vector_element(property_id::udp_default_value_choices, text(value), at);
    }
};

TEST_F(a_life, of_a_definition_is_told_undone_and_redone_step_by_step) {
    object* const table = make(table_type);
    object* const column = make(column_type);
    object& it = *definition_;
    constexpr u32 types = property_id::udp_object_types;
    constexpr u32 choices = property_id::udp_default_value_choices;
    const life_step steps[] = {
        {"the name", [&] { return it.set_property(property_id::name, text("Owner")); }, "", ""},
        {"a definition", [&] { return it.set_property(property_id::definition, text("Who")); }, "", ""},
        {"a default", [&] { return it.set_property(property_id::udp_default_value, text("Ann")); }, "", ""},
        {"the first type", [&] { return it.append_vector_element(types, property<unsigned>(table_type)); },
         "", ""},
        {"a second type", [&] { return it.append_vector_element(types, property<unsigned>(column_type)); },
         "", ""},
        {"values of objects",
         [&] {
             return table->set_property(first_id, text("Tom")) && column->set_property(first_id, text("Cat"));
         },
         "", ""},
        {"another definition", [&] { return it.set_property(property_id::definition, text("Whose")); }, "",
         ""},
        {"another default", [&] { return it.set_property(property_id::udp_default_value, text("Bob")); }, "",
         ""},
        {"more lines", [&] { return it.set_property(property_id::udp_multiline_value, property<bool>(true)); },
         "", ""},
        {"choices", [&] { return it.set_property(choices, *texts({"a", "b"})); }, "", ""},
        {"a choice more", [&] { return insert_choice("c", 0); }, "", ""},
        {"another choice", [&] { return it.set_vector_element(choices, text("d"), 1); }, "", ""},
        {"choices change places", [&] { return it.move_vector_element(choices, 0, 2); }, "", ""},
        {"a choice less", [&] { return it.delete_vector_element(choices, 0); }, "", ""},
        {"a rename", [&] { return it.set_property(property_id::name, text("Keeper")); }, "", ""},
        {"a type is removed", [&] { return it.delete_vector_element(types, 1); }, "", ""},
        {"a new list of types", [&] { return it.set_property(types, *ids({column_type, derived_type})); }, "",
         ""},
        {"the name goes", [&] { return it.delete_property(property_id::name); }, "", ""},
        {"the name comes back", [&] { return it.set_property(property_id::name, text("Owner")); }, "", ""},
        {"the types go", [&] { return it.delete_property(types); }, "", ""},
        {"the types come back", [&] { return it.set_property(types, *ids({table_type})); }, "", ""},
        {"the definition is deleted", [&] { return framework::instance().delete_object(&it); }, "", ""},
    };
    for (const life_step& step : steps) live(step);
    EXPECT_EQ(next_id(), first_id + 1) << "one id for all its life";
}

} // namespace
