// Definitions of properties that users add, copied and pasted: what becomes of their ids.
// What a definition does by itself is told by the tests of the meta model.
#include "tests/copier/copy_paste_world.h"

namespace kelm::test {
namespace {

class copied_definitions : public copy_paste_world {
protected:
    object* define(object* below, const std::string& name, const char* by_default = nullptr) {
        kelm::model* const in = below->model();
        in->begin_transaction("define");
        object* const made = fw.create_object(type_id::user_defined_property, below);
        vector_property types;
        types.elements = {new property<unsigned>{types::thing}};
        EXPECT_TRUE(made->set_property(props::name, text(name)));
        if (by_default) {
            EXPECT_TRUE(made->set_property(property_id::udp_default_value, text(by_default)));
        }
        EXPECT_TRUE(made->set_property(property_id::udp_object_types, types));
        in->end_transaction();
        return made;
    }
    /// Has the destination give new ids.
    void give_new_ids() {
        on_value.on_call = [](object*, u32 id, abstract_property*, bool) {
            return id == property_id::udp_id ? property_paste_result::done : property_paste_result::nothing;
        };
        clip->set_property_paste_rule(type_id::user_defined_property, scripted_value_rule{on_value});
    }
    /// \returns the properties that users gave to things of a model, "id=name"
    static std::string added_to(kelm::model& in) {
        std::string out;
        for (const meta_property* each : in.meta_model()->find_meta_object(types::thing)->properties())
            if (each->is_user_defined())
                out += (out.empty() ? "" : " ") + std::to_string(each->id()) + "=" + each->name();
        return out;
    }
    u32 id_of(const object* definition) const { return fw.udp_property_id(definition); }

    object* const source = define(root, "Owner", "nobody");
};

TEST_F(copied_definitions, go_through_a_stream_and_make_their_property) {
    copy(source);
    std::istringstream in{bytes_of(*clip)};
    clip = fw.create_copier(far_model);
    ASSERT_TRUE(clip->read(in));
    const object* const made = paste_one();
    ASSERT_TRUE(made);
    EXPECT_EQ(added_to(*far_model), "50001=Owner");
    EXPECT_EQ(as_text(far(types::thing, "t")->get_property(50001)), "nobody");
    far_model->undo();
}

TEST_F(copied_definitions, carry_the_id_of_the_source_over) {
    define(root, "Second");
    object* const third = define(root, "Third");
    copy(third);
    EXPECT_EQ(id_of(third), 50003U);
    EXPECT_EQ(id_of(paste_one()), 50003U);
    EXPECT_EQ(added_to(*far_model), "50003=Third");
}

TEST_F(copied_definitions, whose_id_another_property_has_make_none) {
    object* const plain = define(root, "Second");
    define(far_root, "There before");
    define(far_root, "There, too");
    copy(plain);
    const object* const made = paste_one();
    EXPECT_EQ(id_of(made), 50002U);
    EXPECT_EQ(added_to(*far_model), "50001=There before 50002=There, too");
}

TEST_F(copied_definitions, whose_id_another_property_has_fail_the_paste_with_a_default) {
    define(far_root, "There before");
    far_model->clear_history();
    copy(source);
    expect_failure();
}

TEST_F(copied_definitions, get_a_new_id_where_a_rule_leaves_the_old_one_out) {
    define(far_root, "There before");
    object* const holder = thing("holder");
    set(holder, 50001, text("Ann"));
    copy(source);
    EXPECT_TRUE(clip->copy_object(holder, false));
    give_new_ids();
    const object* const made = paste_one();
    EXPECT_EQ(id_of(made), 50002U);
    EXPECT_EQ(added_to(*far_model), "50001=There before 50002=Owner");
    EXPECT_EQ(own("holder", 50001), "'Ann'") << "values stay with the id that they had";
    EXPECT_EQ(own("holder", 50002), "none");
    EXPECT_EQ(id_of(define(far_root, "Next")), 50003U);
}

TEST_F(copied_definitions, in_their_own_model_share_the_property_by_its_name) {
    copy(source);
    for (const bool with_rule : {false, true}) {
        SCOPED_TRACE(with_rule);
        if (with_rule) give_new_ids();
        ASSERT_TRUE(clip->paste(model, {root}, &pasted));
        object* const made = pasted.back();
        EXPECT_EQ(id_of(made), with_rule ? 0U : 50001U);
        EXPECT_EQ(added_to(*model), "50001=Owner");
        begin();
        EXPECT_TRUE(made->set_property(props::name, text("Keeper")));
        end();
        EXPECT_EQ(added_to(*model), "50001=Keeper") << "the one that both have is renamed";
        model->undo();
        model->undo();
    }
}

TEST_F(copied_definitions, in_their_own_model_under_another_name_get_a_property_by_a_rule_alone) {
    copy(source);
    begin();
    EXPECT_TRUE(source->set_property(props::name, text("Renamed")));
    end();
    EXPECT_FALSE(clip->paste(model, {root}, &pasted)) << "the id is that of the source";
    EXPECT_EQ(added_to(*model), "50001=Renamed");
    give_new_ids();
    EXPECT_TRUE(clip->paste(model, {root}, &pasted));
    EXPECT_EQ(added_to(*model), "50001=Renamed 50002=Owner");
}

} // namespace
} // namespace kelm::test
