// Scenarios of user-defined properties: made, removed, undone and redone, on types that nobody, a model or other types
// look at.
// What must hold behind a failure is fault_stage.
#include "tests/faults/fault_stage.h"

namespace kelm::test {

namespace {

constexpr u32 own_base = type_id::first_user_defined + 1;
constexpr u32 own_left = type_id::first_user_defined + 2;
constexpr u32 own_right = type_id::first_user_defined + 3;
constexpr u32 own_leaf = type_id::first_user_defined + 4;
constexpr u32 made_id = property_id::first_user_defined + 1;

class plain_hook final : public obj_create_semantic {
public:
    static constexpr u32 own_id = 1000;
    u32 id() const override { return own_id; }
    bool do_it(object*) override { return true; }
};

/// Reads all that a type keeps of its bases, whenever one of them is about to change.
class reading_observer final : public observer {
public:
    bool update(subject* from, message*) override {
        const auto& type = dynamic_cast<const meta_object&>(*from);
        return !type.properties().empty() && type.find_semantic(plain_hook::own_id);
    }
};

/// Gives the model four types of its own: a leaf that derives from one base along two lines, and is read while the base
/// changes.  The others have a list of properties and of hooks.
void make_types(fault_stage& s) {
    meta_model& types = *s.model->meta_model();
    meta_object* const base = types.add_meta_object(own_base, "own base", "", "");
    meta_object* const left = types.add_meta_object(own_left, "own left", "", "");
    meta_object* const right = types.add_meta_object(own_right, "own right", "", "");
    meta_object* const leaf = types.add_meta_object(own_leaf, "own leaf", "", "");
    base->add_property(props::text, "text", data_type::string, "");
    base->add_semantic(new plain_hook);
    left->add_base_type(base);
    right->add_base_type(base);
    leaf->add_base_type(left);
    leaf->add_base_type(right);
    static reading_observer reader;
    EXPECT_TRUE(dynamic_cast<subject&>(*leaf).attach(&reader));
    EXPECT_TRUE(leaf->find_semantic(plain_hook::own_id)); // there is a merged table to put aside
}

/// Defines a property with a default.
bool define(fault_stage& s, u32 type, const char* name, u32 id) {
    meta_property* const made = s.model->add_user_defined_property(type, name, data_type::string,
                                                                   "What it means to the user, in words", id);
    return made && s.model->set_user_defined_property_attribute(s.model->meta_model()->find_meta_object(type),
                                                                made, attribute_id::default_value,
                                                                text("what it is when nothing is said"));
}
bool define(fault_stage& s, u32 type) {
    return s.change([&] { return define(s, type, "Made By The User, At Some Length", made_id); });
}
bool remove(fault_stage& s, u32 type) {
    return s.change([&] { return s.model->remove_user_defined_property(type, made_id); });
}

void define_before(fault_stage& s) { EXPECT_TRUE(define(s, types::thing)); }
void remove_before(fault_stage& s) {
    define_before(s);
    EXPECT_TRUE(remove(s, types::thing));
}
void define_for_own_types_before(fault_stage& s) {
    make_types(s);
    EXPECT_TRUE(define(s, own_base));
}
void remove_from_own_types_before(fault_stage& s) {
    define_for_own_types_before(s);
    EXPECT_TRUE(remove(s, own_base));
}

} // namespace

std::vector<fault_scenario> definition_scenarios() {
    return {
        {"define_property", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 object* const made = s.fw.create_object(type_id::user_defined_property, s.root);
                 if (!made || !made->set_property(property_id::name, text("A Property Of The User")))
                     return false;
                 return made->append_vector_element(property_id::udp_object_types,
                                                    property<unsigned>{types::thing});
             });
         }},
        {"define_property_by_hand", nullptr,
         [](fault_stage& s) {
             return s.change([&] {
                 return define(s, types::thing, "A Property Of The User", made_id) &&
                        s.a->set_property(made_id, text("a value that the user has given")) &&
                        s.model->remove_user_defined_property(types::thing, made_id);
             });
         }},
        {"define_first_property", nullptr, [](fault_stage& s) { return define(s, types::thing); }},
        {"define_another_property", define_before,
         [](fault_stage& s) {
             return s.change([&] { return define(s, types::thing, "Another", made_id + 1); });
         }},
        {"undo_of_a_definition", define_before, undo},
        {"redo_of_a_definition", undone<define_before>, redo},
        {"remove_definition", define_before, [](fault_stage& s) { return remove(s, types::thing); }},
        {"undo_of_a_removed_definition", remove_before, undo},
        {"redo_of_a_removed_definition", undone<remove_before>, redo},
        {"define_for_own_types", make_types, [](fault_stage& s) { return define(s, own_base); }},
        {"undo_of_a_definition_for_own_types", define_for_own_types_before, undo},
        {"redo_of_a_definition_for_own_types", undone<define_for_own_types_before>, redo},
        {"remove_definition_from_own_types", define_for_own_types_before,
         [](fault_stage& s) { return remove(s, own_base); }},
        {"undo_of_a_removed_definition_for_own_types", remove_from_own_types_before, undo},
        {"redo_of_a_removed_definition_for_own_types", undone<remove_from_own_types_before>, redo},
    };
}

} // namespace kelm::test
