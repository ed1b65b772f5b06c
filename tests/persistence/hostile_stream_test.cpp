// Streams that no model could have written: they are refused, or what comes of them is a sound model.
// Histories are hostile_history_test.cpp.
#include "tests/persistence/hostile_world.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kelm::test {
namespace {

class hostile_stream : public hostile_world {
protected:
    /// The fields of an object before its children: no values, marks, bases and observers.
    static stored_fields bare(u32 id) { return stored_fields{}.word(id).word(0).word(0).word(0).word(0); }
    static std::string bare_with(u32 id, const std::string& children_and_theirs) {
        return bare(id).bytes() + children_and_theirs;
    }
    /// An object without children.
    static std::string leaf(u32 id) { return bare(id).word(0).bytes(); }
    static std::string child(u32 type, const std::string& record) {
        return stored_fields{}.word(type).bytes() + record;
    }
    /// An object with one value, the bytes of which follow its data type.
    static std::string with_value(u32 id, u32 property, u32 data_type, const std::string& value) {
        return stored_fields{}.word(id).word(1).word(property).word(data_type).bytes() + value +
               stored_fields{}.word(0).word(0).word(0).word(0).bytes();
    }
    static std::string with_bases(u32 id, const std::vector<u32>& bases,
                                  const std::vector<u32>& observers = {}) {
        stored_fields out;
        out.word(id).word(0).word(0).word(static_cast<u32>(bases.size()));
        for (const u32 each : bases) out.word(each);
        out.word(static_cast<u32>(observers.size()));
        for (const u32 each : observers) out.word(each);
        return out.word(0).bytes();
    }

    /// A whole stream: the root with the children told.
    static std::string stream(u32 last_id, u32 last_udp_id, const std::vector<std::string>& children) {
        stored_fields out;
        for (int i = 0; i != 16; ++i) out.byte(1);
        out.word(last_id).word(last_udp_id).word(newest_version).word(0).word(0);
        std::string tree;
        for (const std::string& each : children) tree += each;
        return out.bytes() + bare(1).word(static_cast<u32>(children.size())).bytes() + tree + '\0';
    }
    static std::string stream(const std::vector<std::string>& children) {
        return stream(100, 60000, children);
    }
};

TEST_F(hostile_stream, what_these_tests_spell_is_a_stream) {
    ASSERT_TRUE(load(stream({child(types::thing, leaf(3)), child(types::thing, leaf(4))})));
    EXPECT_EQ(copy->find_object(4)->owner(), copy->as_object());
    use();
}

TEST_F(hostile_stream, types_that_no_object_can_have_are_refused) {
    for (const u32 type : {0U, 1U, 2U, 3U, types::abstract, 99999U, npos32}) {
        SCOPED_TRACE(type);
        EXPECT_FALSE(load(stream({child(type, leaf(3))})));
        use();
        EXPECT_EQ(fw.models().size(), 2U);
    }
}

TEST_F(hostile_stream, data_types_that_nobody_knows_are_refused) {
    for (const u32 code : {0U, 77U, 0x80000000U, npos32}) {
        SCOPED_TRACE(code);
        EXPECT_FALSE(load(stream({child(types::thing, with_value(3, props::number, code, "1234"))})));
        use();
    }
}

TEST_F(hostile_stream, counts_that_nothing_follows_are_refused) {
    const std::string bytes = rich_stream();
    const std::size_t tree = saved().size();
    for (std::size_t at = 24; at + 4 <= bytes.size(); ++at) {
        SCOPED_TRACE(at);
        // Whatever is read here announces as much as it can, and the stream ends.
        const bool whole = load(bytes.substr(0, at) + stored_fields{}.word(npos32).word(npos32).bytes());
        EXPECT_FALSE(whole && at < tree);
        use();
    }
}

TEST_F(hostile_stream, ids_that_come_twice_belong_to_the_first) {
    ASSERT_TRUE(load(stream({child(types::thing, leaf(3)), child(types::thing, leaf(3)),
                             child(types::part, leaf(1)), child(types::part, leaf(0))})));
    EXPECT_EQ(copy->find_object(1), copy->as_object());
    EXPECT_EQ(copy->find_object(3), copy->as_object()->children()[0]);
    for (object* const each : copy->as_object()->children()) { // all of them can go
        copy->begin_transaction("");
        EXPECT_TRUE(fw.delete_object(each));
        copy->end_transaction();
    }
    EXPECT_FALSE(copy->as_object()->has_children());
    copy->undo();
    copy->undo();
}

TEST_F(hostile_stream, ids_beyond_the_last_one_can_be_used) {
    ASSERT_TRUE(load(stream(2, 60000, {child(types::thing, leaf(3)), child(types::thing, leaf(npos32))})));
    copy->begin_transaction("");
    // The counter hands out 3, which is taken: the first keeps it.
    object* const made = fw.create_object(types::thing, copy->as_object());
    copy->end_transaction();
    EXPECT_NE(copy->find_object(3), made);
    EXPECT_TRUE(copy->find_object(npos32));
}

TEST_F(hostile_stream, counters_at_their_end_give_nothing_more) {
    for (const u32 last : {0xFFFFFFFEU, npos32}) {
        SCOPED_TRACE(last);
        ASSERT_TRUE(load(stream(last, last, {})));
        copy->begin_transaction("");
        EXPECT_THROW(fw.create_object(types::thing, copy->as_object()), std::runtime_error);
        EXPECT_THROW(copy->add_user_defined_property(types::thing, "own", 6, "", 0), std::runtime_error);
        copy->rollback_transaction_all();
        use();
    }
}

TEST_F(hostile_stream, circles_of_bases_are_left_open) {
    ASSERT_TRUE(
        load(stream({child(types::thing, with_bases(3, {4, 3, 77, 4})),
                     child(types::thing, with_bases(4, {5})), child(types::thing, with_bases(5, {3}))})));
    object* const three = copy->find_object(3);
    EXPECT_FALSE(three->inherits_from(three, true));
    EXPECT_EQ(three->get_property(props::text), nullptr); // the search ends
    use();
}

TEST_F(hostile_stream, observers_that_nobody_has_are_left_out) {
    ASSERT_TRUE(load(stream({child(types::thing, with_bases(3, {}, {3, 3, 1, 0, 88, npos32}))})));
    use();
}

TEST_F(hostile_stream, references_may_lead_anywhere) {
    for (const u32 target : {0U, 1U, 3U, 77U, npos32}) {
        SCOPED_TRACE(target);
        ASSERT_TRUE(
            load(stream({child(types::thing, with_value(3, props::reference, data_type::object_reference,
                                                        stored_fields{}.word(target).bytes()))})));
        use();
    }
}

TEST_F(hostile_stream, ids_that_are_far_apart_take_no_more_than_their_objects) {
    std::vector<std::string> children;
    for (u32 i = 1; i != 20000; ++i) children.push_back(child(types::thing, leaf(i * 200003U)));
    ASSERT_TRUE(load(stream(children)));
    EXPECT_TRUE(copy->find_object(200003U * 19999U));
    EXPECT_FALSE(copy->find_object(200003U * 19999U + 1));
}

TEST_F(hostile_stream, trees_may_be_deep) {
    constexpr u32 depth = 100000;
    std::string tree;
    for (u32 i = 0; i != depth; ++i)
        tree += child(types::thing, bare(3 + i).word(i + 1 == depth ? 0 : 1).bytes());
    ASSERT_TRUE(load(stream({tree})));
    object* const deepest = copy->find_object(3 + depth - 1);
    ASSERT_TRUE(deepest);
    EXPECT_FALSE(deepest->has_children());
    std::ostringstream out;
    EXPECT_TRUE(copy->write(&out, false, 0, false, nullptr));
}

TEST_F(hostile_stream, values_may_not_lie_too_deep) {
    constexpr u32 depth = 100000;
    stored_fields nested;
    for (u32 i = 0; i != depth; ++i) nested.word(1).word(data_type::vector);
    EXPECT_FALSE(
        load(stream({child(types::thing, with_value(3, props::list, data_type::vector, nested.bytes()))})));
    use();
}

// Each entry would be looked for in all those before it.
TEST_F(hostile_stream, long_lists_take_no_more_time_than_there_is_to_read) {
    constexpr u32 count = 50000;
    std::vector<u32> ids;
    std::vector<std::string> children{""};
    for (u32 i = 0; i != count; ++i) {
        ids.push_back(10 + i);
        children.push_back(child(types::part, leaf(10 + i)));
    }
    stored_fields lists = stored_fields{}.word(3).word(0);
    for (int list = 0; list != 3; ++list) { // marks, bases, observers
        lists.word(count);
        for (const u32 each : ids) lists.word(each);
    }
    children[0] = child(types::thing, lists.word(0).bytes());
    ASSERT_TRUE(load(stream(children)));
    object* const three = copy->find_object(3);
    EXPECT_EQ(three->not_inheritable_properties().size(), count);
    EXPECT_EQ(three->inherits_from_list(0).size(), count);
    EXPECT_EQ(three->observers().size(), count);
}

TEST_F(hostile_stream, entries_that_come_twice_count_once) {
    ASSERT_TRUE(load(stream({child(types::thing, stored_fields{}
                                                     .word(3)
                                                     .word(0)
                                                     .word(3) // marks
                                                     .word(props::text)
                                                     .word(props::number)
                                                     .word(props::text)
                                                     .word(4) // bases
                                                     .word(5)
                                                     .word(4)
                                                     .word(5)
                                                     .word(3)
                                                     .word(0)
                                                     .word(0)
                                                     .bytes()),
                             child(types::thing, leaf(4)), child(types::thing, leaf(5))})));
    object* const three = copy->find_object(3);
    EXPECT_EQ(three->not_inheritable_properties(), (std::vector<u32>{props::text, props::number}));
    EXPECT_EQ(three->inherits_from_list(0),
              (std::vector<object*>{copy->find_object(5), copy->find_object(4)}));
    use();
}

TEST_F(hostile_stream, bases_in_a_long_row_are_searched_to_their_end) {
    constexpr u32 count = 2000;
    std::vector<std::string> children;
    for (u32 i = 0; i != count; ++i) children.push_back(child(types::thing, with_bases(3 + i, {4 + i})));
    ASSERT_TRUE(load(stream(children)));
    EXPECT_EQ(copy->find_object(3)->get_property(props::text), nullptr);
}

} // namespace
} // namespace kelm::test
