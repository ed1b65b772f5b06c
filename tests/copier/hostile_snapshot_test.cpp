// Bytes that no copier has written, and streams that fail: they are refused, or what comes of them can be used.
// Sound bytes are approved_snapshots_test.
#include "tests/copier/copy_paste_world.h"
#include "tests/support/approved.h"
#include "tests/support/full_buffer.h"
#include "tests/support/stored_fields.h"

#include <stdexcept>

namespace kelm::test {
namespace {

const char* const files[] = {"snapshot_empty",      "snapshot_numbers",  "snapshot_every_kind_of_value",
                             "snapshot_references", "snapshot_children", "snapshot_bases",
                             "snapshot_marks"};

class hostile_snapshot : public copy_paste_world {
protected:
    bool read(const std::string& bytes) {
        clip = fw.create_copier(model);
        std::istringstream in{bytes};
        return clip->read(in);
    }
    void expect_empty() {
        EXPECT_EQ(shape_of(*clip), "");
        std::vector<std::pair<u32, u32>> chosen;
        clip->selected_objects(chosen);
        EXPECT_TRUE(chosen.empty());
        EXPECT_FALSE(clip->can_paste_into(far_root));
    }
    /// Does with what was read what an application could do.
    void use() {
        const std::string once = bytes_of(*clip);
        const shared_ptr<copier> again = fw.create_copier(model);
        std::istringstream in{once};
        EXPECT_TRUE(again->read(in));
        EXPECT_EQ(first_difference(bytes_of(*again), once), "");
        const std::string before = far_dump();
        if (paste()) {
            EXPECT_EQ(broken_links(*far_model), "");
            far_model->undo();
        }
        expect_untouched(before);
        far_model->clear_history();
        copy(linked("new"));
    }
    void expect_refused_or_useful(const std::string& bytes) { read(bytes) ? use() : expect_empty(); }

    static stored_fields head(u32 top_nodes) {
        stored_fields out;
        for (int i = 0; i != 16; ++i) out.byte(1);
        return out.word(0).word(0).word(top_nodes);
    }
    /// The fields of a node before its values.
    static stored_fields node(u32 type, u32 id) {
        return stored_fields{}.word(type).word(id).word(1).word(0).byte(1);
    }
    /// The fields of a node behind its children, with nothing in them.
    static std::string tail() { return stored_fields{}.word(0).word(0).word(0).bytes(); }
    static std::string leaf(u32 type, u32 id) { return node(type, id).word(0).word(0).bytes() + tail(); }
    /// A node with one value, the bytes of which follow its kind.
    static std::string with_value(u32 kind, const std::string& value) {
        return node(types::thing, 5).word(1).word(props::list).word(kind).bytes() + value +
               stored_fields{}.word(0).bytes() + tail();
    }
    static std::string whole(const std::vector<std::string>& nodes) {
        std::string out = head(static_cast<u32>(nodes.size())).bytes();
        for (const std::string& each : nodes) out += each;
        return out + stored_fields{}.word(0).bytes();
    }
};

TEST_F(hostile_snapshot, that_these_tests_spell_is_one) {
    ASSERT_TRUE(read(
        whole({leaf(types::thing, 5), with_value(data_type::integer, stored_fields{}.word(7).bytes())})));
    EXPECT_EQ(shape_of(*clip), "*#5 *#5");
    use();
}

TEST_F(hostile_snapshot, that_ends_early_is_refused) {
    for (const char* file : files) {
        const std::string bytes = approved_bytes(file);
        for (std::size_t length = 0; length != bytes.size(); ++length) {
            SCOPED_TRACE(std::string(file) + " " + std::to_string(length));
            EXPECT_FALSE(read(bytes.substr(0, length)));
            expect_empty();
        }
    }
}

TEST_F(hostile_snapshot, that_ends_early_takes_what_was_there_with_it) {
    copy(thing("a"));
    std::istringstream in{approved_bytes("snapshot_marks").substr(0, 100)};
    EXPECT_FALSE(clip->read(in));
    expect_empty();
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "");
    EXPECT_TRUE(copy(thing("b")));
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_tree(), "b");
}

TEST_F(hostile_snapshot, with_any_byte_changed_is_refused_or_can_be_used) {
    for (const char* file : files) {
        const std::string bytes = approved_bytes(file);
        for (std::size_t at = 0; at != bytes.size(); ++at)
            for (const int turned : {0x01, 0x80, 0xFF}) {
                SCOPED_TRACE(std::string(file) + " " + std::to_string(at) + " by " + std::to_string(turned));
                std::string changed = bytes;
                changed[at] = static_cast<char>(changed[at] ^ turned);
                expect_refused_or_useful(changed);
            }
    }
}

TEST_F(hostile_snapshot, with_counts_that_nothing_follows_is_refused) {
    const std::string bytes = approved_bytes("snapshot_children");
    for (std::size_t at = 20; at + 4 <= bytes.size(); ++at)
        for (const u32 count : {npos32, 0x7FFFFFFFU, 100000000U}) {
            SCOPED_TRACE(at);
            EXPECT_FALSE(read(bytes.substr(0, at) + stored_fields{}.word(count).bytes()));
            expect_empty();
            std::string changed = bytes;
            changed.replace(at, 4, stored_fields{}.word(count).bytes());
            expect_refused_or_useful(changed);
        }
}

TEST_F(hostile_snapshot, with_values_of_no_kind_is_refused) {
    for (const u32 kind : {0U, 9U, 77U, 1000U, 0x80000000U, npos32}) {
        SCOPED_TRACE(kind);
        EXPECT_FALSE(read(whole({with_value(kind, "1234")})));
        expect_empty();
        EXPECT_FALSE(read(
            whole({with_value(data_type::vector, stored_fields{}.word(1).word(kind).bytes() + "1234")})));
    }
}

TEST_F(hostile_snapshot, with_types_that_nobody_knows_is_skipped_or_fails) {
    for (const u32 type : {0U, type_id::model, type_id::library, types::abstract, 4711U, npos32}) {
        SCOPED_TRACE(type);
        ASSERT_TRUE(read(whole({leaf(type, 5)})));
        EXPECT_TRUE(paste()) << "nobody may own it";
        EXPECT_EQ(far_tree(), "");
        use();
        ASSERT_TRUE(read(whole({node(types::thing, 4).word(0).word(1).bytes() + leaf(type, 5) + tail()})));
        EXPECT_FALSE(paste());
        use();
    }
}

TEST_F(hostile_snapshot, with_one_id_twice_makes_both) {
    const std::string reference = with_value(data_type::object_reference, stored_fields{}.word(9).bytes());
    const std::string bytes =
        whole({leaf(types::thing, 9), leaf(types::part, 9), reference,
               node(types::thing, 9).word(0).word(1).bytes() + leaf(types::part, 9) + tail()});
    ASSERT_TRUE(read(bytes));
    EXPECT_EQ(first_difference(bytes_of(*clip), bytes), "");
    EXPECT_TRUE(paste());
    EXPECT_EQ(far_root->children().size(), 4U);
    far_model->undo();
    use();
}

TEST_F(hostile_snapshot, with_ids_at_both_ends_can_be_used) {
    for (const u32 id : {0U, 1U, npos32}) {
        SCOPED_TRACE(id);
        ASSERT_TRUE(read(whole({node(types::thing, id)
                                    .word(1)
                                    .word(props::list)
                                    .word(8)
                                    .word(id)
                                    .word(0)
                                    .word(1)
                                    .word(id)
                                    .word(0)
                                    .word(1)
                                    .word(id)
                                    .bytes()})));
        EXPECT_TRUE(clip->has_selected_object(id));
        use();
    }
}

TEST_F(hostile_snapshot, may_be_deep) {
    constexpr u32 depth = 100000;
    std::string bytes = head(1).bytes();
    for (u32 i = 0; i != depth; ++i)
        bytes += node(types::thing, 10 + i).word(0).word(i + 1 == depth ? 0 : 1).bytes();
    for (u32 i = 0; i != depth; ++i) bytes += tail();
    bytes += stored_fields{}.word(0).bytes();
    ASSERT_TRUE(read(bytes));
    EXPECT_EQ(first_difference(bytes_of(*clip), bytes), "");
    EXPECT_TRUE(paste());
    std::vector<u32> ids;
    EXPECT_EQ(far_model->object_ids(ids), depth + 1);
    EXPECT_FALSE(read(bytes.substr(0, bytes.size() - 5)));
    expect_empty();
}

TEST_F(hostile_snapshot, with_values_that_lie_deep_is_refused_or_can_be_used) {
    for (const u32 depth : {900U, 100000U}) {
        SCOPED_TRACE(depth);
        stored_fields nested;
        for (u32 i = 0; i != depth; ++i)
            nested.word(1).word(i + 1 == depth ? data_type::integer : data_type::vector);
        nested.word(7);
        const bool taken = read(whole({with_value(data_type::vector, nested.bytes())}));
        EXPECT_TRUE(taken || depth > 1000);
        taken ? use() : expect_empty();
    }
}

TEST_F(hostile_snapshot, takes_no_more_than_there_is_to_read) {
    // Each announces as much as it can, and holds nothing.
    const std::string half = head(1).bytes() + node(types::thing, 5).bytes();
    const u32 much = 0xFFFFFFF0U;
    for (const std::string& each :
         {stored_fields{}.word(much).bytes(), stored_fields{}.word(0).word(much).bytes(),
          stored_fields{}.word(0).word(0).word(much).bytes(),
          stored_fields{}.word(0).word(0).word(0).word(much).bytes(),
          stored_fields{}.word(1).word(10).word(1).word(much).bytes(),
          stored_fields{}.word(1).word(10).word(6).word(much).bytes()})
        EXPECT_FALSE(read(half + each));
}

// Streams that fail

TEST_F(hostile_snapshot, that_fills_its_stream_is_told) {
    const std::string bytes = approved_bytes("snapshot_bases");
    ASSERT_TRUE(read(bytes));
    for (std::size_t room = 0; room <= bytes.size(); ++room) {
        SCOPED_TRACE(room);
        full_buffer buffer{room};
        std::ostream out{&buffer};
        EXPECT_EQ(clip->write(out), room == bytes.size());
    }
}

TEST_F(hostile_snapshot, of_a_stream_that_throws_leaves_nothing) {
    const std::string bytes = approved_bytes("snapshot_bases");
    for (std::size_t length = 0; length < bytes.size(); length += 3) {
        SCOPED_TRACE(length);
        clip = fw.create_copier(model);
        std::istringstream in{bytes.substr(0, length)};
        in.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
        try {
            EXPECT_FALSE(clip->read(in));
        } catch (const std::ios_base::failure&) { // as the application wanted
        }
        expect_empty();
    }
    ASSERT_TRUE(read(bytes));
    full_buffer none{0};
    std::ostream out{&none};
    out.exceptions(std::ios::failbit | std::ios::badbit);
    EXPECT_THROW(clip->write(out), std::ios_base::failure);
    use();
}

TEST_F(hostile_snapshot, of_a_stream_that_has_failed_is_refused) {
    std::istringstream in{approved_bytes("snapshot_marks")};
    in.setstate(std::ios::failbit);
    copy(thing("a"));
    EXPECT_FALSE(clip->read(in));
    expect_empty();
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    EXPECT_FALSE(clip->write(out));
}

} // namespace
} // namespace kelm::test
