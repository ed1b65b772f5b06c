// Streams that run full, end or throw at each byte: writing changes nothing, reading leaves a model that can be closed, and
// nothing leaks.
// Which answers a model gives, and its mark of changes, are tests/persistence/failing_streams_test.
#include "tests/faults/failing_memory.h"
#include "tests/faults/fault_stage.h"
#include "tests/support/full_buffer.h"
#include "tests/support/throwing_buffer.h"

#include <kelm/message_history.h>

#include <gtest/gtest.h>

#include <ostream>

namespace kelm::test {
namespace {

/// \returns whether a buffer is to throw there as well, and not only to end
bool throws_at(std::size_t place) { return place % 5 == 0 || all_faults_wanted(); }

void nothing(fault_stage&) {}

void with_snapshot(fault_stage& s) {
    s.clip = s.fw.create_copier(s.model);
    for (object* each : {s.a, s.b, s.linked}) EXPECT_TRUE(s.clip->copy_object(each, true));
}

struct written_row {
    const char* name;
    void (*prepare)(fault_stage&);
    bool (*write)(fault_stage&, std::ostream&);
};
void PrintTo(const written_row& row, std::ostream* out) { *out << row.name; }

const written_row written_rows[] = {
    {"model", nothing,
     [](fault_stage& s, std::ostream& out) { return s.model->write(&out, false, 0, true, nullptr); }},
    {"model_with_history", nothing,
     [](fault_stage& s, std::ostream& out) { return s.model->write(&out, true, 0, true, nullptr); }},
    {"model_with_some_history", nothing,
     [](fault_stage& s, std::ostream& out) { return s.model->write(&out, true, 2, true, nullptr); }},
    {"other_model", nothing,
     [](fault_stage& s, std::ostream& out) { return s.model->save_as_new(&out, true, 0, nullptr); }},
    {"object", nothing, [](fault_stage& s, std::ostream& out) { return s.a->write(&out, nullptr); }},
    {"history", nothing,
     [](fault_stage& s, std::ostream& out) {
         s.model->history()->write_history(&out, true, 0, nullptr);
         return out.good();
     }},
    {"log_for_replay", nothing,
     [](fault_stage& s, std::ostream& out) {
         s.model->history()->write_messages(nullptr, &out, 0, true);
         return out.good();
     }},
    {"snapshot", with_snapshot, [](fault_stage& s, std::ostream& out) { return s.clip->write(out); }},
};

class written : public testing::TestWithParam<written_row> {
protected:
    written() { GetParam().prepare(stage); }
    bool write(std::ostream& out) { return GetParam().write(stage, out); }
    std::string bytes() {
        std::ostringstream out;
        EXPECT_TRUE(write(out));
        return out.str();
    }
    template <class Write>
    void expect_nothing_changed(Write&& write_and_fail) {
        const long blocks = live_blocks();
        write_and_fail();
        EXPECT_EQ(live_blocks(), blocks) << "blocks are left";
        EXPECT_EQ(stage.model->message_count(), messages);
    }

    fault_stage stage;
    const std::size_t messages = stage.model->message_count();
};

TEST_P(written, streams_that_fail_at_each_byte_change_nothing) {
    const std::string before = stage.dump();
    const std::size_t size = bytes().size();
    ASSERT_NE(size, 0U);
    for (std::size_t room = 0; room != size && !HasFailure(); ++room) {
        SCOPED_TRACE(room);
        expect_nothing_changed([&] {
            full_buffer full{room};
            std::ostream out{&full};
            EXPECT_FALSE(write(out)) << "a stream that runs full";
        });
        if (!throws_at(room)) continue;
        expect_nothing_changed([&] {
            throwing_buffer throws{std::string(room, ' ')};
            std::ostream out{&throws};
            EXPECT_FALSE(write(out)) << "a buffer that throws into its stream";
        });
        expect_nothing_changed([&] {
            throwing_buffer throws{std::string(room, ' ')};
            std::ostream out{&throws};
            out.exceptions(std::ios::badbit);
            EXPECT_THROW(write(out), out_of_order) << "and through it";
        });
    }
    EXPECT_EQ(stage.dump(), before);
    EXPECT_EQ(bytes().size(), size) << "and it can be written";
}

INSTANTIATE_TEST_SUITE_P(faults, written, testing::ValuesIn(written_rows),
                         [](const auto& row) { return std::string{row.param.name}; });

struct read_row {
    const char* name;
    void (*prepare)(fault_stage&); ///< leaves the bytes
    bool (*read)(fault_stage&, std::istream&);
};
void PrintTo(const read_row& row, std::ostream* out) { *out << row.name; }

const read_row read_rows[] = {
    {"model", [](fault_stage& s) { s.keep_bytes(true); },
     [](fault_stage& s, std::istream& in) { return s.other->read(&in, nullptr); }},
    {"model_without_history", [](fault_stage& s) { s.keep_bytes(false); },
     [](fault_stage& s, std::istream& in) { return s.other->read(&in, nullptr); }},
    {"snapshot",
     [](fault_stage& s) {
         with_snapshot(s);
         std::ostringstream out;
         EXPECT_TRUE(s.clip->write(out));
         s.bytes = out.str();
     },
     [](fault_stage& s, std::istream& in) { return s.fw.create_copier(s.other)->read(in); }},
    {"messages",
     [](fault_stage& s) {
         std::ostringstream out;
         s.model->history()->write_messages(nullptr, &out, 0, false);
         s.bytes = out.str();
     },
     [](fault_stage& s, std::istream& in) { return s.read_log(in, false) && in.good(); }},
};

class read : public testing::TestWithParam<read_row> {
protected:
    read() { GetParam().prepare(stage); }
    /// Reads into a model that is made for it and closed behind it.
    template <class Read>
    void expect_nothing_left(Read&& read_somehow) {
        const long blocks = live_blocks();
        stage.open_other();
        read_somehow();
        EXPECT_TRUE(stage.fw.delete_object(stage.other->as_object()));
        stage.other = nullptr;
        stage.fw.set_in_semantic(false);
        EXPECT_EQ(live_blocks(), blocks) << "blocks are left";
    }
    bool read_from(std::istream& in) { return GetParam().read(stage, in); }
    void expect_whole_read() {
        std::istringstream in{stage.bytes};
        EXPECT_TRUE(read_from(in));
    }

    fault_stage stage;
};

TEST_P(read, streams_that_fail_at_each_byte_leave_nothing_behind) {
    const std::string before = stage.dump();
    stage.open_other();
    expect_whole_read(); // what is made once a process is made now
    EXPECT_TRUE(stage.fw.delete_object(stage.other->as_object()));
    for (std::size_t length = 0; length != stage.bytes.size() && !HasFailure(); ++length) {
        SCOPED_TRACE(length);
        const std::string part = stage.bytes.substr(0, length);
        expect_nothing_left([&] {
            std::istringstream in{part};
            EXPECT_FALSE(read_from(in)) << "a stream that ends";
        });
        if (!throws_at(length)) continue;
        expect_nothing_left([&] {
            throwing_buffer throws{part};
            std::istream in{&throws};
            EXPECT_FALSE(read_from(in)) << "a buffer that throws into its stream";
        });
        expect_nothing_left([&] {
            throwing_buffer throws{part};
            std::istream in{&throws};
            in.exceptions(std::ios::badbit);
            EXPECT_THROW(read_from(in), out_of_order) << "and through it";
        });
    }
    expect_nothing_left([&] { expect_whole_read(); });
    EXPECT_EQ(stage.dump(), before);
}

INSTANTIATE_TEST_SUITE_P(faults, read, testing::ValuesIn(read_rows),
                         [](const auto& row) { return std::string{row.param.name}; });

} // namespace
} // namespace kelm::test
