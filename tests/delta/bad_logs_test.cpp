// Stretches that no history has made, as a damaged stream may tell them: a summary comes to an end, and to something.
// What good logs come to is told by the fold tests.
#include "tests/delta/delta_world.h"

#include "delta/summary.h"
#include "message/inherit_messages.h"
#include "message/lifetime_messages.h"
#include "object/model_impl.h"

#include <initializer_list>

namespace kelm::test {
namespace {

class bad_logs : public delta_world {
protected:
    /// \returns what such messages come to; null for nothing
    std::unique_ptr<delta> sum_up(std::initializer_list<message_impl*> newest_first) {
        const std::vector<message_impl*> stretch{newest_first};
        return summary{*impl_of(root)->owning_model(), stretch}.make();
    }
    static silent_edit* about(object* what) { return impl_of(what); }
    /// \returns the one detail of what went that lies below no other; null, and the test fails, for none or several
    static const detail_delete* only_deleted(const delta* in) {
        const auto found = in ? in->deleted_details() : std::vector<delta_detail*>{};
        EXPECT_EQ(found.size(), 1u);
        return found.size() == 1 ? detail_cast<detail_delete>(found[0]) : nullptr;
    }

    object* const a = thing("a");
    object* const b = thing("b");
};

TEST_F(bad_logs, an_object_that_went_as_its_own_owner_lies_below_nobody) {
    obj_delete_message_impl gone{about(a), a};
    const auto all = sum_up({&gone});
    const detail_delete* const detail = only_deleted(all.get());
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->parent_detail(), nullptr);
    EXPECT_TRUE(detail->child_details().empty());
}

TEST_F(bad_logs, of_two_that_went_as_the_owners_of_each_other_the_later_one_lies_on_top) {
    obj_delete_message_impl later{about(a), b};
    obj_delete_message_impl earlier{about(b), a};
    const auto all = sum_up({&later, &earlier});
    const detail_delete* const top = only_deleted(all.get());
    ASSERT_TRUE(top);
    EXPECT_EQ(detail_cast<const delta_detail>(top)->object_id(), a->id());
    EXPECT_EQ(top->parent_detail(), nullptr);
    ASSERT_EQ(top->child_details().size(), 1u);
    EXPECT_EQ(top->child_details()[0]->object_id(), b->id());
}

TEST_F(bad_logs, an_object_that_went_twice_is_told_as_it_went_last) {
    obj_delete_message_impl later{about(a), b};
    obj_delete_message_impl earlier{about(a), root};
    const auto all = sum_up({&later, &earlier});
    const detail_delete* const detail = only_deleted(all.get());
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->owner(), b);
}

TEST_F(bad_logs, a_base_that_took_a_place_which_the_list_has_not_brings_no_other_back) {
    object* const c = thing("c");
    before([&] { a->add_inherits_from(b); });
    for (const std::size_t place : {std::size_t{1}, std::size_t{1000}, std::size_t{npos32}}) {
        SCOPED_TRACE(place);
        inherits_replace_message_impl replaced{about(a), b, c, place};
        EXPECT_EQ(sum_up({&replaced}), nullptr) << "nothing differs";
    }
}

TEST_F(bad_logs, bases_that_inherited_from_each_other_are_asked_once) {
    before([&] { b->set_property(props::text, text("of b")); });
    inherits_cancel_message_impl later{about(a), b, 0};
    inherits_cancel_message_impl earlier{about(b), a, 0};
    const auto all = sum_up({&later, &earlier});
    ASSERT_TRUE(all);
    EXPECT_EQ(as_text(before_of(*all, a)->original_property(props::text, nullptr)), "of b");
    EXPECT_FALSE(before_of(*all, a)->had_property(props::number)) << "neither has one";
}

} // namespace
} // namespace kelm::test
