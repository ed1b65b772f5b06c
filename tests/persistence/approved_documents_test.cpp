// Documents that were written by hand: each says what the stream of its name says, and is written again line by line.
// What the streams say is approved_streams_test and approved_histories_test.
#include "tests/persistence/approved_world.h"

#include <kelm/message_history.h>

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace kelm::test {
namespace {

/// \returns the lines of an approved document
std::string lines_of(const std::string& name) { return canonical_text(approved_document(name)); }

const char* const trees[] = {"empty_model", "references", "bases", "marks", "observers", "children"};

/// Without deleted objects and properties of users: of these a document tells, and does not bring them back.
const char* const histories[] = {"history_transactions",    "history_values",         "history_elements",
                                 "history_elements_shared", "history_equal_elements", "history_refresh",
                                 "history_children",        "history_bases",          "history_observers"};

void expect_the_same(const char* name, bool with_history) {
    SCOPED_TRACE(name);
    const model_of_stream stream{approved_bytes(name)};
    const model_of_document document{approved_document(name)};
    ASSERT_TRUE(stream.was_read());
    ASSERT_TRUE(document.was_read());
    EXPECT_EQ(document.says(), stream.says());
    EXPECT_EQ(document.log(), stream.log());
    EXPECT_FALSE(document->is_modified());
    EXPECT_EQ(document->last_transaction_id(), stream->last_transaction_id());
    EXPECT_EQ(document.document(with_history), lines_of(name));
    EXPECT_EQ(stream.document(with_history), lines_of(name));
    EXPECT_EQ(first_difference(document.written(with_history), approved_bytes(name)), "");
}

TEST(approved_documents, of_trees_say_what_the_streams_say_and_are_written_again) {
    for (const char* name : trees) expect_the_same(name, false);
}

TEST(approved_documents, of_histories_say_what_the_streams_say_and_are_written_again) {
    for (const char* name : histories) expect_the_same(name, true);
}

TEST(approved_documents, of_histories_can_be_undone_to_the_last_and_redone) {
    for (const char* name : histories) {
        SCOPED_TRACE(name);
        const model_of_stream stream{approved_bytes(name)};
        const model_of_document document{approved_document(name)};
        ASSERT_TRUE(document.was_read());
        const std::string before = document.says();
        for (; stream->can_undo(); stream->undo(), document->undo()) {
            ASSERT_TRUE(document->can_undo());
            ASSERT_EQ(document.says(), stream.says());
        }
        EXPECT_EQ(document->message_count(), 0U);
        EXPECT_EQ(document.says(), stream.says());
        while (document->can_redo()) document->redo();
        EXPECT_EQ(document.says(), before);
        EXPECT_EQ(document.document(true), lines_of(name));
    }
}

TEST(approved_documents, have_every_kind_of_message_that_is_stored) {
    std::string all;
    for (const char* name : histories) all += lines_of(name);
    all += lines_of("history_lifetime") + lines_of("history_own_properties");
    for (u32 code = 1; code <= 30; ++code) {
        if (code == message_type::tran_rollback) continue;
        EXPECT_NE(all.find("\n        type: " + std::to_string(code) + "\n"), std::string::npos) << code;
    }
}

TEST(approved_documents, have_values_of_the_kinds_that_they_name) {
    const model_of_document model{approved_document("every_kind_of_value")};
    ASSERT_TRUE(model.was_read());
    EXPECT_EQ(model.says(), R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  1 = 'kinds'
  2 = ''
  10 = 'ä	b'
  11 = '-2'
  12 = 'True'
  13 = #null
  14 = ['False'|'-2'|'7'|'-3'|'4'|'-0.5'|'x'|''|#3|#null|[['1'|]|[]|]|'{04030201-0605-0807-090A-0B0C0D0E0F10}'|'TO DO'|]
  15 = '1.5'
  16 = 'stays'
3 type 100 state 0 owner 1
  10 = '32767'
  11 = '-2147483648'
  12 = '9223372036854775807'
  13 = '{04030201-0605-0807-090A-0B0C0D0E0F10}'
  14 = []
  15 = 'TO DO'
  referencing 2
)");
    const value_ptr list = model[2]->get_own_property(props::list);
    std::vector<u32> kinds;
    for (const abstract_property* each : dynamic_cast<const vector_property&>(*list).elements)
        kinds.push_back(framework::instance().data_type_of(each));
    EXPECT_EQ(kinds, (std::vector<u32>{2, 3, 4, 5, 1001, 7, 6, 6, 8, 8, 1, 1002, 1003}));
    EXPECT_EQ(model.document(false), lines_of("every_kind_of_value"));
}

TEST(approved_documents, tell_of_properties_that_users_added_and_do_not_bring_them_back) {
    const model_of_stream stream{approved_bytes("own_properties")};
    EXPECT_EQ(stream.document(false), lines_of("own_properties"));
    const model_of_document document{approved_document("own_properties")};
    ASSERT_TRUE(document.was_read());
    EXPECT_EQ(document.says(), stream.says()) << "values and definitions are there";
    EXPECT_EQ(document->meta_model()->find_meta_object(types::thing)->find_property(50001), nullptr);
    EXPECT_EQ(document.document(false), lines_of("own_properties_written"));
}

TEST(approved_documents, tell_of_deleted_objects_and_do_not_bring_them_back) {
    const model_of_stream stream{approved_bytes("history_lifetime")};
    EXPECT_EQ(stream.document(true), lines_of("history_lifetime"));
    EXPECT_EQ(stream.document(true, 1), lines_of("history_newest"));
    const model_of_document document{approved_document("history_lifetime")};
    ASSERT_TRUE(document.was_read());
    EXPECT_EQ(document.says(), stream.says());
    EXPECT_EQ(document->message_count(), stream->message_count());
    EXPECT_EQ(document.document(true), lines_of("history_lifetime_written"));
    while (document->can_undo()) document->undo();
    EXPECT_EQ(document.says(), R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
)");
    while (document->can_redo()) document->redo();
    EXPECT_EQ(document.says(), stream.says());
}

TEST(approved_documents, tell_what_was_done_to_properties_that_users_added) {
    const model_of_stream stream{approved_bytes("history_own_properties")};
    EXPECT_EQ(stream.document(true), lines_of("history_own_properties"));
    const model_of_document document{approved_document("history_own_properties")};
    ASSERT_TRUE(document.was_read());
    EXPECT_EQ(document.says(), stream.says());
    EXPECT_EQ(document.document(true), lines_of("history_own_properties_written"));
}

TEST(approved_documents, have_no_place_for_messages_outside_transactions) {
    const model_of_stream stream{approved_bytes("history_open")};
    EXPECT_EQ(stream->message_count(), 5U);
    const dom_document into{"<model/>"};
    stream->history()->write_history(nullptr, true, 0, into.root());
    EXPECT_EQ(canonical_text(*into.root_element()),
              "model\n  message_history_impl last_tran_id=\"5\" trans_executed=\"0\"\n");
    const model_of_document document{approved_document("history_open")};
    ASSERT_TRUE(document.was_read());
    EXPECT_EQ(document.says(), stream.says());
    EXPECT_EQ(document->message_count(), 0U);
    EXPECT_EQ(document.document(true), lines_of("history_open"));
}

TEST(approved_documents, have_the_form_of_the_example_that_the_page_shows) {
    const std::string page = approved_text("../../docs/document_format.md");
    const std::string mark = "```xml\n";
    const std::size_t first = page.find(mark) + mark.size();
    std::string text = page.substr(first, page.find("```", first) - first);
    const std::string no_types = "<meta_objects/>"; // for the eye
    text.replace(text.find(no_types), no_types.size(), approved_text("parts/types.xml"));
    const model_of_document document{text};
    ASSERT_TRUE(document.was_read());
    EXPECT_EQ(document.says(), R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  inheritors 3
  referencing 3
3 type 100 state 0 owner 1
  children 4
  1 = 'shelf'
  14 = ['7'|#2|]
  bases 2
  not inheritable 10
4 type 101 state 0 owner 3
)");
    EXPECT_EQ(document.log(), R"(
1 user:  Begin Transaction - rename
7 user: Changed Thing shelf Name from board to shelf
2 user:  End Transaction - rename
)");
    EXPECT_EQ(document.document(true), canonical_text(text));
    document->undo();
    EXPECT_EQ(object_name(document[3]), "board");
}

TEST(approved_documents, that_are_not_there_are_named) {
    EXPECT_THROW(approved_document("nothing"), std::runtime_error);
}

} // namespace
} // namespace kelm::test
