// Snapshots that were written by hand: made by copying, read, looked at, and written again byte for byte.
// Bytes that no copier has written are hostile_snapshot_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/persistence/approved_world.h"

namespace kelm::test {
namespace {

struct snapshot_row {
    const char* file;
    const char* model; ///< the approved model that it was taken of
    const char* why;
    const char* shape;
    std::vector<std::pair<u32, bool>> copied; ///< ids, and whether they were selected
    std::vector<u32> extras;                  ///< of things
};

const snapshot_row rows[] = {
    {"snapshot_empty", "empty_model", "there is nothing but the head", "", {}, {}},
    {"snapshot_every_kind_of_value",
     "every_kind_of_value",
     "each kind has a form, alone and in a vector",
     "*kinds #3",
     {{2, true}, {3, false}},
     {}},
    {"snapshot_references",
     "references",
     "a reference is an id, in vectors inside vectors too",
     "d *c *a",
     {{5, false}, {4, true}, {2, true}},
     {}},
    {"snapshot_children",
     "children",
     "children lie inside their owner",
     "t1(inner thing *p1 other) q1 *o",
     {{6, true}, {5, false}, {2, false}, {9, true}},
     {}},
    {"snapshot_bases",
     "bases",
     "bases are ids in their order; what is inherited comes behind them",
     "*bottom side middle",
     {{5, true}, {4, false}, {3, false}},
     {props::number, props::text}},
    {"snapshot_marks",
     "marks",
     "marks are in the order of the object",
     "*base *heir",
     {{2, true}, {3, true}},
     {}},
};

shared_ptr<copier> copier_of(const model_of_stream& from) {
    return framework::instance().create_copier(from.operator->());
}

/// A copier of a model that has nothing to do with what is read.
class reading_copier : public world {
protected:
    const shared_ptr<copier> clip = fw.create_copier(model);
    bool read(const std::string& bytes) const {
        std::istringstream in{bytes};
        return clip->read(in);
    }
};

TEST(approved_snapshots, are_what_copying_makes) {
    for (const snapshot_row& row : rows) {
        SCOPED_TRACE(std::string{row.file} + ": " + row.why);
        const model_of_stream from{approved_bytes(row.model)};
        ASSERT_TRUE(from.was_read());
        const shared_ptr<copier> clip = copier_of(from);
        for (const u32 id : row.extras) clip->add_extra_property(types::thing, id);
        for (const auto& [id, selected] : row.copied) EXPECT_TRUE(clip->copy_object(from[id], selected));
        EXPECT_EQ(first_difference(bytes_of(*clip), approved_bytes(row.file)), "");
        EXPECT_EQ(shape_of(*clip), row.shape);
    }
}

using approved_snapshots_read = reading_copier;

TEST_F(approved_snapshots_read, are_written_again) {
    for (const snapshot_row& row : rows) {
        SCOPED_TRACE(std::string{row.file} + ": " + row.why);
        const std::string bytes = approved_bytes(row.file);
        EXPECT_TRUE(read(bytes));
        EXPECT_EQ(first_difference(bytes_of(*clip), bytes), "");
        const GUID expected{0x44332211, 0x6655, 0x8877, {0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x00}};
        EXPECT_TRUE(clip->source_model_id() == expected);
    }
}

TEST_F(approved_snapshots_read, know_what_they_hold) {
    EXPECT_TRUE(read(approved_bytes("snapshot_children")));
    std::vector<std::pair<u32, u32>> chosen;
    clip->selected_objects(chosen);
    EXPECT_EQ(chosen, (std::vector<std::pair<u32, u32>>{{types::other, 9}}));
    EXPECT_TRUE(clip->has_selected_object(9));
    EXPECT_FALSE(clip->has_selected_object(6)) << "below its owner";
    EXPECT_FALSE(clip->has_selected_object(5));
    EXPECT_TRUE(clip->can_paste_into(root));
    std::vector<object*> pasted;
    EXPECT_TRUE(clip->paste(model, {root}, &pasted));
    EXPECT_EQ(names_of(root->children()), "t1 q1 o");
    EXPECT_EQ(names_of(root->children()[0]->children()), "inner thing p1 other");
    EXPECT_EQ(names_of(pasted), "o");
}

TEST_F(approved_snapshots_read, take_the_place_of_what_was_there) {
    clip->copy_object(thing("before"), true);
    clip->set_type_order({types::other});
    clip->set_user_value(1);
    EXPECT_TRUE(read(approved_bytes("snapshot_numbers")));
    EXPECT_EQ(first_difference(bytes_of(*clip), approved_bytes("snapshot_numbers")), "");
    EXPECT_EQ(clip->user_value(), 7U);
    EXPECT_EQ(clip->user_ids(), (std::vector<u32>{3, 0xFFFFFFFF, 3}));
    EXPECT_TRUE(read(approved_bytes("snapshot_empty")));
    EXPECT_EQ(clip->user_value(), 0U);
    EXPECT_EQ(contents_of(*clip).type_order, std::vector<u32>{});
}

TEST_F(approved_snapshots_read, append_their_numbers_to_those_that_are_there) {
    clip->add_user_id(9);
    EXPECT_TRUE(read(approved_bytes("snapshot_numbers")));
    EXPECT_EQ(clip->user_ids(), (std::vector<u32>{9, 3, 0xFFFFFFFF, 3}));
    EXPECT_TRUE(read(approved_bytes("snapshot_numbers")));
    EXPECT_EQ(clip->user_ids().size(), 7U);
}

TEST_F(approved_snapshots_read, leave_rules_in_place) {
    paste_script script;
    {
        const shared_ptr<copier> ruled = fw.create_copier(model);
        ruled->set_paste_rule(types::thing, scripted_paste_rule{script});
        std::istringstream in{approved_bytes("snapshot_marks")};
        EXPECT_TRUE(ruled->read(in));
        EXPECT_TRUE(ruled->paste(model, {root}, nullptr));
    }
    EXPECT_EQ(script.heard, "#1 100 base 10='kept' 11='1' 15='2'\n#1 100 heir base base\n");
}

TEST_F(approved_snapshots_read, can_be_added_to) {
    EXPECT_TRUE(read(approved_bytes("snapshot_numbers")));
    object* const mine = thing("mine");
    EXPECT_TRUE(clip->copy_object(mine, true));
    EXPECT_FALSE(clip->copy_object(mine, true));
    EXPECT_EQ(shape_of(*clip), "*mine");
}

TEST_F(approved_snapshots_read, end_where_they_end) {
    const std::string bytes = approved_bytes("snapshot_marks");
    std::istringstream in{bytes + "more"};
    EXPECT_TRUE(clip->read(in));
    std::string rest;
    in >> rest;
    EXPECT_EQ(rest, "more") << "what follows in a stream is the application's";
}

} // namespace
} // namespace kelm::test
