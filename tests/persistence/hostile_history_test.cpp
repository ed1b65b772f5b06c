// Histories that no model could have written: they are refused, or undo, redo and new edits leave a sound model.
// Streams without a history are hostile_stream_test.cpp.
#include "tests/persistence/hostile_world.h"

#include <gtest/gtest.h>

namespace kelm::test {
namespace {

class hostile_history : public hostile_world {
protected:
    hostile_history() { counted_value::enter(); }

    /// A log of messages that are spelled out.
    class log {
    public:
        explicit log(u32 version = newest_version) : has_count_(version > 7) {}
        log& begin(u32 id = 1) { return message(1, 1, stored_fields{}.word(0).word(id).text("t").bytes()); }
        log& end(u32 id = 1) {
            return message(2, 1, stored_fields{}.word(0).word(id).word(0).text("").bytes());
        }
        log& message(u32 code, u32 about, const std::string& fields) {
            messages_ += stored_fields{}.word(code).word(about).byte(1).bytes() + fields;
            ++count_;
            return *this;
        }
        /// A set of props::number; the fields of the values as bytes.
        log& set(u32 about, const std::string& new_value, u32 old_owner, const std::string& old_value) {
            return message(7, about,
                           stored_fields{}.word(props::number).word(about).bytes() + new_value +
                               stored_fields{}.word(old_owner).bytes() + old_value + '\0');
        }
        /// The history section, after the byte that says that there is one.
        std::string bytes() const {
            stored_fields head;
            head.word(9).word(0).word(0).word(1);
            if (has_count_) head.word(count_);
            return head.bytes() + messages_;
        }

    private:
        bool has_count_;
        u32 count_ = 0;
        std::string messages_;
    };

    static std::string counted(int value) {
        return stored_fields{}.byte(1).byte(1).word(700100).word(static_cast<u32>(value)).bytes();
    }
    static std::string held() { return stored_fields{}.held_value().bytes(); }
    static std::string none() { return stored_fields{}.no_value().bytes(); }
    static std::string shared(u32 message, u32 value) {
        return stored_fields{}.shared_value(message, value).bytes();
    }

    /// Reads the present model with another history.
    bool load_with(const std::string& history) {
        std::string bytes = saved();
        bytes.back() = 1;
        return load(bytes + history);
    }
    void edit_copy() {
        copy->begin_transaction("new");
        EXPECT_TRUE(copied(a)->set_property(props::text, text("new")));
        copy->end_transaction();
    }
    /// The words of all messages of the copy.
    std::string words() const {
        std::string out;
        std::string line;
        for (std::size_t i = 0; i != copy->message_count(); ++i)
            out += copy->message_at(i)->to_string(line) + "\n";
        return out;
    }

    object* a = thing("a");
    object* b = part("b", a);
};

// The newer of two transactions goes, the older one stays and knows a value that the newer one owned.
TEST_F(hostile_history, value_of_a_message_that_goes_stays_for_those_that_know_it) {
    begin();
    ASSERT_TRUE(a->set_property(props::number, counted_value{3}));
    end();
    const u32 id = a->id();
    struct {
        const char* why;
        log history;
        const char* words;
    } const rows[] = {
        {"an old value, owned by a set that had no own value before",
         log{}.begin().set(id, held(), id, shared(4, 0)).end().begin(2).set(id, held(), 0, counted(5)).end(2),
         "from counted 5 to counted 3"},
        {"the object's value, which the newer message takes out",
         log{}.begin().set(id, held(), id, counted(1)).end().begin(2).set(id, held(), 0, counted(5)).end(2),
         "from counted 1 to counted 3"},
        {"a deleted value",
         log{}
             .begin()
             .set(id, held(), id, shared(4, 0))
             .end()
             .begin(2)
             .message(10, b->id(),
                      stored_fields{}.word(props::number).word(b->id()).bytes() + counted(5) + '\1')
             .end(2),
         "from counted 5 to counted 3"},
    };
    const struct {
        const char* why;
        void (*drop)(kelm::model&);
    } roads[] = {
        {"undone, then new work", [](kelm::model& of) { of.undo(); }},
        {"rolled back", [](kelm::model& of) { of.rollback_last_transaction(); }},
    };
    for (const auto& row : rows)
        for (const auto& road : roads) {
            SCOPED_TRACE(row.why);
            SCOPED_TRACE(road.why);
            ASSERT_TRUE(load_with(row.history.bytes()));
            const long alive = counted_value::alive;
            road.drop(*copy);
            edit_copy();
            EXPECT_EQ(counted_value::alive, alive);
            EXPECT_NE(words().find(row.words), std::string::npos) << words();
            EXPECT_EQ(broken_links(*copy), "");
            copy->clear_history();
            EXPECT_LT(counted_value::alive, alive) << "what nobody knows any more goes";
        }
}

TEST_F(hostile_history, value_that_is_driven_out_stays_for_those_that_know_it) {
    begin();
    ASSERT_TRUE(a->set_property(props::number, counted_value{3}));
    end();
    const u32 id = a->id();
    // Redo puts the new value in and has two to keep: what leaves the object, and what it owned before.
    ASSERT_TRUE(load_with(log{}
                              .begin()
                              .set(b->id(), counted(1), 0, shared(4, 0))
                              .end()
                              .begin(2)
                              .set(id, counted(6), id, counted(5))
                              .end(2)
                              .bytes()));
    const long alive = counted_value::alive;
    copy->undo();
    copy->redo();
    EXPECT_EQ(counted_value::alive, alive);
    EXPECT_NE(words().find("from counted 5 to counted 1"), std::string::npos) << words();
}

TEST_F(hostile_history, limit_frees_what_was_read_once_all_of_it_has_gone) {
    const u32 id = a->id();
    log history;
    for (u32 i = 1; i != 5; ++i) history.begin(i).set(id, counted(1), 0, counted(2)).end(i);
    const long before = counted_value::alive;
    ASSERT_TRUE(load_with(history.bytes()));
    const long alive = counted_value::alive;
    EXPECT_EQ(alive, before + 8);
    copy->set_undo_levels(2);
    for (int i = 0; i != 2; ++i) {
        EXPECT_EQ(counted_value::alive, alive);
        edit_copy();
    }
    EXPECT_EQ(counted_value::alive, before);
}

// The ends ask for begins that are not there: each would look at all messages before it.
TEST_F(hostile_history, ends_without_begins_take_no_more_time_than_there_are) {
    constexpr u32 count = 200000;
    log history;
    history.begin(7);
    for (u32 i = 0; i != count; ++i) history.end(1000 + i);
    history.end(7);
    ASSERT_TRUE(load_with(history.bytes()));
    EXPECT_TRUE(copy->can_undo());
}

TEST_F(hostile_history, end_finds_the_newest_begin_of_its_id) {
    ASSERT_TRUE(load_with(log{}.begin(1).begin(2).begin(1).begin(3).end(1).end(2).end(9).bytes()));
    const auto partner_of = [&](std::size_t end) {
        return message_cast<tran_end_message>(copy->message_at(end))->begin_message();
    };
    const auto begin_at = [&](std::size_t at) {
        return message_cast<tran_begin_message>(copy->message_at(at));
    };
    EXPECT_EQ(partner_of(4), begin_at(2));
    EXPECT_EQ(partner_of(5), begin_at(1));
    EXPECT_EQ(partner_of(6), nullptr);
}

TEST_F(hostile_history, cut_anywhere_is_refused) {
    const std::string bytes = rich_stream();
    for (std::size_t length = 0; length != bytes.size(); ++length) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(load(bytes.substr(0, length)));
        use();
    }
    EXPECT_TRUE(load(bytes));
    use();
}

class changed_byte : public hostile_world, public ::testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(with, changed_byte, ::testing::Values(0xFF, 0x01, 0x80));

TEST_P(changed_byte, leaves_a_sound_model) {
    const std::string bytes = rich_stream();
    for (std::size_t at = 0; at != bytes.size(); ++at) {
        SCOPED_TRACE(at);
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ GetParam());
        load(changed);
        use();
    }
}

class changed_number : public hostile_world, public ::testing::WithParamInterface<u32> {};
INSTANTIATE_TEST_SUITE_P(to, changed_number, ::testing::Values(0U, 1U, 0x7FFFFFFFU, npos32));

TEST_P(changed_number, leaves_a_sound_model) {
    const std::string bytes = rich_stream();
    const std::string number = stored_fields{}.word(GetParam()).bytes();
    for (std::size_t at = GetParam() % 2; at + 4 <= bytes.size();
         at += 2) { // the others hit the places between
        SCOPED_TRACE(at);
        std::string changed = bytes;
        load(changed.replace(at, number.size(), number));
        use();
    }
}

TEST_F(hostile_history, announced_messages_that_do_not_come_are_refused) {
    const std::string one = log{}.begin().end().bytes();
    for (const u32 count : {3U, 0x7FFFFFFFU, npos32}) {
        SCOPED_TRACE(count);
        std::string bytes = one;
        bytes.replace(16, 4, stored_fields{}.word(count).bytes());
        EXPECT_FALSE(load_with(bytes));
        EXPECT_EQ(copy->message_count(), 0U);
    }
}

TEST_F(hostile_history, numbers_that_no_message_has_are_passed_over) {
    log history;
    for (const u32 code : {0U, 3U, 31U, 0x80000000U, npos32}) history.message(code, 1, "");
    ASSERT_TRUE(load_with(history.begin().end().bytes()));
    EXPECT_EQ(copy->message_count(), 2U);
    use();
}

TEST_F(hostile_history, transaction_id_at_its_end_is_the_last_one) {
    std::string bytes = log{}.bytes();
    bytes.replace(0, 4, stored_fields{}.word(npos32).bytes());
    ASSERT_TRUE(load_with(bytes));
    EXPECT_THROW(copy->begin_transaction("one more"), std::runtime_error);
    EXPECT_FALSE(copy->in_transaction());
}

} // namespace
} // namespace kelm::test
