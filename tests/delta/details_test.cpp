// What every detail tells of itself and of its place.
// Values are original_values_test and translation_test; which details there are is told by the fold tests.
#include "tests/delta/delta_world.h"

namespace kelm::test {
namespace {

class details : public delta_world {
protected:
    std::string name_of(const delta_detail* what) {
        std::string name = "a name before";
        what->name(name);
        return name;
    }

    object* const o = thing("o");
    object* const c = part("c", o);
    object* const d = part("d", o);
    object* const other = thing("other");
};

TEST_F(details, tell_kind_type_id_and_delta) {
    object* made = nullptr;
    change([&] {
        made = part("n", other);
        other->set_property(props::text, text("x"));
        fw.delete_object(o);
    });
    const auto all = model->delta_since(nullptr);
    ASSERT_EQ(all->deleted_details().size(), 1u);
    ASSERT_EQ(all->created_details().size(), 1u);
    ASSERT_EQ(all->modified_details().size(), 1u);
    const struct {
        delta_detail* detail;
        int kind;
        const object* about;
        u32 type;
    } rows[] = {
        {all->deleted_details()[0], 0, o, types::thing},
        {all->created_details()[0], 1, made, types::part},
        {all->modified_details()[0], 2, other, types::thing},
        {detail_cast<detail_delete>(all->deleted_details()[0])->child_details().at(0), 0, d, types::part},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(name_of(row.detail));
        EXPECT_EQ(row.detail->kind(), row.kind);
        EXPECT_EQ(row.detail->object_type(), row.type) << "also of what is gone";
        EXPECT_EQ(row.detail->object_id(), row.about->id());
        EXPECT_EQ(row.detail->owning_delta(), all.get());
        EXPECT_EQ(detail_cast<detail_delete>(row.detail) != nullptr, row.kind == delta_detail::deleted);
        EXPECT_EQ(detail_cast<detail_create>(row.detail) != nullptr, row.kind == delta_detail::created);
        EXPECT_EQ(detail_cast<detail_modified>(row.detail) != nullptr, row.kind == delta_detail::modified);
        EXPECT_EQ(detail_cast<detail_base_original_properties>(row.detail) == nullptr,
                  row.kind == delta_detail::created);
    }
    EXPECT_EQ(detail_cast<detail_delete>(static_cast<delta_detail*>(nullptr)), nullptr);
    auto* const faces = detail_cast<detail_modified>(rows[2].detail);
    EXPECT_EQ(detail_cast<delta_detail>(faces), rows[2].detail) << "and back";
}

TEST_F(details, tell_parents_and_children) {
    change([&] {
        object* const n = thing("n");
        part("m", n);
        part("k", n);
        fw.delete_object(o);
    });
    const auto all = model->delta_since(nullptr);
    const auto* const gone = detail_cast<detail_delete>(all->deleted_details().at(0));
    EXPECT_EQ(gone->parent_detail(), nullptr);
    EXPECT_EQ(gone->owner(), root);
    EXPECT_EQ(gone->position(), 0u);
    ASSERT_EQ(gone->child_details().size(), 2u);
    for (const delta_detail* each : gone->child_details()) {
        const auto* const child = detail_cast<const detail_delete>(each);
        EXPECT_EQ(child->parent_detail(), all->deleted_details()[0]);
        EXPECT_EQ(child->owner(), nullptr) << "it is not in the model any more";
        EXPECT_EQ(child->position(), 0u) << "the other one had left before";
        EXPECT_TRUE(child->child_details().empty());
    }
    const auto* const made = detail_cast<detail_create>(all->created_details().at(0));
    EXPECT_EQ(made->parent_detail(), nullptr);
    ASSERT_EQ(made->child_details().size(), 2u);
    for (const delta_detail* each : made->child_details())
        EXPECT_EQ(detail_cast<const detail_create>(each)->parent_detail(), all->created_details()[0]);
}

TEST_F(details, are_named_as_now_what_is_gone_as_then) {
    object* const nameless = thing("");
    object* const numbered = thing("");
    before([&] {
        nameless->delete_property(props::name);
        numbered->set_property(props::name, number(12));
    });
    change([&] {
        object* const made = thing("first");
        made->set_property(props::name, text("made"));
        other->set_property(props::name, text("renamed"));
        for (object* each : {c, d, nameless, numbered}) {
            each->set_property(props::name, text("at the end"));
            if (each != c) fw.delete_object(each);
        }
        c->delete_property(props::name);
    });
    EXPECT_EQ(told(), "deleted 12 of root at 2\n"
                      "deleted <unknown name> of root at 2\n"
                      "deleted d of o at 1\n"
                      "created made\n"
                      "modified \n"
                      "  1: 'c' -> none\n"
                      "modified renamed\n"
                      "  1: 'other' -> 'renamed'\n");
}

TEST_F(details, of_what_is_gone_are_named_by_an_inherited_name_as_well) {
    object* const base = thing("base");
    before([&] {
        c->delete_property(props::name);
        c->add_inherits_from(base);
    });
    change([&] {
        base->set_property(props::name, text("renamed"));
        fw.delete_object(c);
    });
    const auto all = model->delta_since(nullptr);
    EXPECT_EQ(name_of(all->deleted_details().at(0)), "base");
}

TEST_F(details, tell_the_changes_of_bases_as_they_were_at_the_first_call) {
    before([&] { c->add_inherits_from(d); });
    change([&] {
        c->add_inherits_from(other);
        c->set_property(props::text, text("x"));
    });
    const auto all = model->delta_since(nullptr);
    const auto again = model->delta_since(nullptr);
    const auto* const asked = detail_cast<detail_modified>(modified(*all, c));
    const auto* const not_asked = detail_cast<detail_modified>(modified(*again, c));
    const auto lines = [](const detail_modified& of) {
        std::string out;
        for (const inherits_change& each : of.inherits_changes())
            out += object_name(each.object) + " " + std::to_string(each.old_pos) + " " +
                   std::to_string(each.new_pos) + "\n";
        return out;
    };
    EXPECT_EQ(lines(*asked), "other -1 1\n");
    change([&] { c->cancel_inherits_from(d); });
    EXPECT_EQ(lines(*asked), "other -1 1\n") << "kept";
    EXPECT_EQ(lines(*not_asked), "d 0 -1\nother -1 0\n") << "found out now";
    EXPECT_EQ(lines(*not_asked), "d 0 -1\nother -1 0\n");
}

TEST_F(details, keep_that_no_base_had_changed) {
    change([&] { c->set_property(props::text, text("x")); });
    const auto all = model->delta_since(nullptr);
    const auto* const asked = detail_cast<detail_modified>(modified(*all, c));
    EXPECT_TRUE(asked->inherits_changes().empty());
    change([&] { c->add_inherits_from(d); });
    EXPECT_TRUE(asked->inherits_changes().empty());
}

TEST_F(details, are_freed_with_their_delta) {
    const long alive = counted_value::alive;
    before([&] { c->set_property(props::list, *list(counted_value{1})); });
    change([&] { c->append_vector_element(props::list, counted_value{2}); });
    EXPECT_EQ(counted_value::alive, alive + 2);
    delta* const made = model->make_delta(model->message_at(0));
    EXPECT_EQ(counted_value::alive, alive + 3);
    delete_delta(made);
    EXPECT_EQ(counted_value::alive, alive + 2);
    delete_delta(nullptr);
}

} // namespace
} // namespace kelm::test
