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
                if (!it->definition().empty()) out += " (" + it->definition() + ")";
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
        {"the name", [&] { return it.set_property(property_id::name, text("Owner")); },
         "7 first Changed User Defined Property Owner Name from NULL to Owner\n", ""},
        {"a definition", [&] { return it.set_property(property_id::definition, text("Who")); },
         "7 first Changed User Defined Property Owner Definition from NULL to Who\n", ""},
        {"a default", [&] { return it.set_property(property_id::udp_default_value, text("Ann")); },
         "7 first Changed User Defined Property Owner Default Value from NULL to Ann\n", ""},
        {"the first type", [&] { return it.append_vector_element(types, property<unsigned>(table_type)); },
         "7 first Changed User Defined Property Owner Object Types from NULL to 41001\n"
         "9 first Inserted Object Types of User Defined Property Owner\n"
         "26 again UDP Added : Owner of Udp Table\n"
         "28 again UDP Attribute Value Changed : Owner (Ann, )\n"
         "7 first Changed User Defined Property Owner User Defined Property Id from NULL to 50001\n",
         "Udp Table 50001 Owner (Who), default 'Ann'\n", nullptr, "Udp Table 50001 Owner, default 'Ann'\n"},
        {"a second type", [&] { return it.append_vector_element(types, property<unsigned>(column_type)); },
         "9 first Inserted Object Types of User Defined Property Owner\n"
         "26 again UDP Added : Owner of Udp Column\n"
         "28 again UDP Attribute Value Changed : Owner (Ann, )\n",
         "Udp Table 50001 Owner, default 'Ann'\n"
         "Udp Column 50001 Owner (Who), default 'Ann'\n",
         nullptr,
         "Udp Table 50001 Owner, default 'Ann'\n"
         "Udp Column 50001 Owner, default 'Ann'\n"},
        {"values of objects",
         [&] {
             return table->set_property(first_id, text("Tom")) && column->set_property(first_id, text("Cat"));
         },
         "7 first Changed Udp Table   from Ann to Tom\n"
         "7 first Changed Udp Column   from Ann to Cat\n",
         "Udp Table 50001 Owner, default 'Ann'\n"
         "Udp Column 50001 Owner, default 'Ann'\n"},
        {"another definition", [&] { return it.set_property(property_id::definition, text("Whose")); },
         "7 first Changed User Defined Property Owner Definition from Who to Whose\n"
         "28 again UDP Attribute Value Changed : Owner (Whose, )\n"
         "28 again UDP Attribute Value Changed : Owner (Whose, )\n",
         "Udp Table 50001 Owner (Whose), default 'Ann'\n"
         "Udp Column 50001 Owner (Whose), default 'Ann'\n"},
        {"another default", [&] { return it.set_property(property_id::udp_default_value, text("Bob")); },
         "7 first Changed User Defined Property Owner Default Value from Ann to Bob\n"
         "28 again UDP Attribute Value Changed : Owner (Bob,Ann )\n"
         "28 again UDP Attribute Value Changed : Owner (Bob,Ann )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob'\n"},
        {"more lines",
         [&] { return it.set_property(property_id::udp_multiline_value, property<bool>(true)); },
         "7 first Changed User Defined Property Owner Multiline Value from NULL to True\n"
         "28 again UDP Attribute Value Changed : Owner (True, )\n"
         "28 again UDP Attribute Value Changed : Owner (True, )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', multiline 'True'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob', multiline 'True'\n"},
        {"choices",
         [&] {
             return it.set_property(choices, *texts({"a", "b"}));
         },
         "7 first Changed User Defined Property Owner Default Value Choices from NULL to a, b\n"
         "10 first Deleted Multiline Value of User Defined Property Owner\n"
         "28 again UDP Attribute Value Changed : Owner (a, b, )\n"
         "28 again UDP Attribute Value Changed : Owner (a, b, )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', choices ['a'|'b'|], multiline 'True'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob', choices ['a'|'b'|], multiline 'True'\n"},
        {"a choice more", [&] { return insert_choice("c", 0); },
         "9 first Inserted Default Value Choices of User Defined Property Owner\n"
         "28 again UDP Attribute Value Changed : Owner (c, a, b,a, b )\n"
         "28 again UDP Attribute Value Changed : Owner (c, a, b,a, b )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', choices ['c'|'a'|'b'|], multiline 'True'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob', choices ['c'|'a'|'b'|], multiline 'True'\n"},
        {"another choice", [&] { return it.set_vector_element(choices, text("d"), 1); },
         "8 first Set Default Value Choices of User Defined Property Owner\n"
         "28 again UDP Attribute Value Changed : Owner (c, d, b,c, a, b )\n"
         "28 again UDP Attribute Value Changed : Owner (c, d, b,c, a, b )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', choices ['c'|'d'|'b'|], multiline 'True'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob', choices ['c'|'d'|'b'|], multiline 'True'\n"},
        {"choices change places", [&] { return it.move_vector_element(choices, 0, 2); },
         "12 first Changed Default Value Choices of User Defined Property Owner from 0 to 2\n"
         "28 again UDP Attribute Value Changed : Owner (d, b, c,c, d, b )\n"
         "28 again UDP Attribute Value Changed : Owner (d, b, c,c, d, b )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', choices ['d'|'b'|'c'|], multiline 'True'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob', choices ['d'|'b'|'c'|], multiline 'True'\n"},
        {"a choice less", [&] { return it.delete_vector_element(choices, 0); },
         "28 again UDP Attribute Value Changed : Owner (b, c,d, b, c )\n"
         "28 again UDP Attribute Value Changed : Owner (b, c,d, b, c )\n"
         "11 first Deleted Default Value Choices of User Defined Property Owner\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', choices ['b'|'c'|], multiline 'True'\n"
         "Udp Column 50001 Owner (Whose), default 'Bob', choices ['b'|'c'|], multiline 'True'\n"},
        {"a rename", [&] { return it.set_property(property_id::name, text("Keeper")); },
         "7 first Changed User Defined Property Keeper Name from Owner to Keeper\n"
         "28 again UDP Attribute Value Changed : Keeper (Keeper,Owner )\n"
         "28 again UDP Attribute Value Changed : Keeper (Keeper,Owner )\n",
         "Udp Table 50001 Keeper (Whose), default 'Bob', choices ['b'|'c'|], multiline 'True'\n"
         "Udp Column 50001 Keeper (Whose), default 'Bob', choices ['b'|'c'|], multiline 'True'\n"},
        {"a type is removed", [&] { return it.delete_vector_element(types, 1); },
         "10 first Deleted  of Udp Column \n"
         "27 again UDP Removed : Keeper of Udp Column\n"
         "11 first Deleted Object Types of User Defined Property Keeper\n",
         "Udp Table 50001 Keeper (Whose), default 'Bob', choices ['b'|'c'|], multiline 'True'\n",
         "Udp Table 50001 Keeper (Whose), default 'Bob', choices ['b'|'c'|], multiline 'True'\n"
         "Udp Column 50001 Keeper, default 'Bob'\n"},
        {"a new list of types",
         [&] {
             return it.set_property(types, *ids({column_type, derived_type}));
         },
         "7 first Changed User Defined Property Keeper Object Types from 41001 to 41002, 41003\n"
         "10 first Deleted  of Udp Table \n"
         "27 again UDP Removed : Keeper of Udp Table\n"
         "26 again UDP Added : Keeper of Udp Column\n"
         "28 again UDP Attribute Value Changed : Keeper (b, c, )\n"
         "28 again UDP Attribute Value Changed : Keeper (Bob, )\n"
         "26 again UDP Added : Keeper of Udp Derived Table\n"
         "28 again UDP Attribute Value Changed : Keeper (b, c, )\n"
         "28 again UDP Attribute Value Changed : Keeper (Bob, )\n",
         "Udp Column 50001 Keeper (Whose), default 'Bob', choices ['b'|'c'|]\n"
         "Udp Derived Table 50001 Keeper (Whose), default 'Bob', choices ['b'|'c'|]\n",
         "Udp Table 50001 Keeper, default 'Bob'\n",
         "Udp Column 50001 Keeper, default 'Bob', choices ['b'|'c'|]\n"
         "Udp Derived Table 50001 Keeper, default 'Bob', choices ['b'|'c'|]\n"},
        {"the name goes", [&] { return it.delete_property(property_id::name); },
         "27 again UDP Removed : Keeper of Udp Column\n"
         "27 again UDP Removed : Keeper of Udp Derived Table\n"
         "10 first Deleted Name of User Defined Property \n",
         "",
         "Udp Column 50001 Keeper, default 'Bob'\n"
         "Udp Derived Table 50001 Keeper, default 'Bob'\n"},
        {"the name comes back", [&] { return it.set_property(property_id::name, text("Owner")); },
         "7 first Changed User Defined Property Owner Name from NULL to Owner\n"
         "26 again UDP Added : Owner of Udp Column\n"
         "28 again UDP Attribute Value Changed : Owner (b, c, )\n"
         "28 again UDP Attribute Value Changed : Owner (Bob, )\n"
         "26 again UDP Added : Owner of Udp Derived Table\n"
         "28 again UDP Attribute Value Changed : Owner (b, c, )\n"
         "28 again UDP Attribute Value Changed : Owner (Bob, )\n",
         "Udp Column 50001 Owner (Whose), default 'Bob', choices ['b'|'c'|]\n"
         "Udp Derived Table 50001 Owner (Whose), default 'Bob', choices ['b'|'c'|]\n",
         nullptr,
         "Udp Column 50001 Owner, default 'Bob', choices ['b'|'c'|]\n"
         "Udp Derived Table 50001 Owner, default 'Bob', choices ['b'|'c'|]\n"},
        {"the types go", [&] { return it.delete_property(types); },
         "27 again UDP Removed : Owner of Udp Column\n"
         "27 again UDP Removed : Owner of Udp Derived Table\n"
         "10 first Deleted Object Types of User Defined Property Owner\n",
         "",
         "Udp Column 50001 Owner, default 'Bob'\n"
         "Udp Derived Table 50001 Owner, default 'Bob'\n"},
        {"the types come back", [&] { return it.set_property(types, *ids({table_type})); },
         "7 first Changed User Defined Property Owner Object Types from NULL to 41001\n"
         "26 again UDP Added : Owner of Udp Table\n"
         "28 again UDP Attribute Value Changed : Owner (b, c, )\n"
         "28 again UDP Attribute Value Changed : Owner (Bob, )\n",
         "Udp Table 50001 Owner (Whose), default 'Bob', choices ['b'|'c'|]\n", nullptr,
         "Udp Table 50001 Owner, default 'Bob', choices ['b'|'c'|]\n"},
        {"the definition is deleted", [&] { return framework::instance().delete_object(&it); },
         "5 first Pre Delete User Defined Property \n"
         "15 first Pre Remove Child - User Defined Property  of Model \n"
         "27 again UDP Removed : Owner of Udp Table\n"
         "10 first Deleted Name of User Defined Property \n"
         "10 first Deleted Definition of User Defined Property \n"
         "10 first Deleted User Defined Property Id of User Defined Property \n"
         "10 first Deleted Default Value Choices of User Defined Property \n"
         "10 first Deleted Object Types of User Defined Property \n"
         "10 first Deleted Default Value of User Defined Property \n"
         "16 first Remove Child - type (deleted) name (deleted) from Model \n"
         "6 first Deleted User Defined Property  owner Model \n",
         "", "Udp Table 50001 Owner, default 'Bob'\n"},
    };
    for (const life_step& step : steps) live(step);
    EXPECT_EQ(next_id(), first_id + 1) << "one id for all its life";
}

} // namespace
