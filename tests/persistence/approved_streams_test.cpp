// Models that were written by hand: read, looked at, and written again byte for byte.
// Histories are approved_histories_test; what the library makes of streams it wrote itself is model_stream_test.
#include "tests/persistence/approved_world.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kelm::test {
namespace {

struct tree_row {
    const char* file;
    const char* why;
    const char* says;    ///< objects by id, with everything they have
    const char* written; ///< the file that it is written as; null for the same
};

const tree_row tree_rows[] = {
    {"empty_model", "there is the model, and nothing in it", R"(
1 type 1 state 0 owner -1
)",
     nullptr},
    {"every_kind_of_value", "each kind has a form, alone and in a vector", R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  1 = 'kinds'
  2 = ''
  10 = 'ä	b'
  11 = '-2'
  12 = 'True'
  13 = #null
  14 = ['False'|'-2'|'7'|'-3'|'-4'|'-0.5'|'x'|''|#3|#null|[['1'|]|[]|]|'{04030201-0605-0807-090A-0B0C0D0E0F10}'|'TO DO'|]
  15 = '1.5'
  16 = 'stays'
3 type 100 state 0 owner 1
  10 = '32767'
  11 = '-2147483648'
  12 = '-9223372036854775808'
  13 = '{04030201-0605-0807-090A-0B0C0D0E0F10}'
  14 = []
  15 = 'TO DO'
  referencing 2
)",
     nullptr},
    {"references", "a reference may come before its target", R"(
1 type 1 state 0 owner -1
  children 2 3 5
2 type 100 state 0 owner 1
  1 = 'a'
  13 = #3
  14 = [#2|[#4|]|]
  referencing 2 4
3 type 100 state 0 owner 1
  children 4
  1 = 'b'
  13 = #3
  referencing 2 3
4 type 101 state 0 owner 3
  1 = 'c'
  13 = #2
  referencing 2
5 type 100 state 0 owner 1
  1 = 'd'
  14 = [#null|'5'|]
)",
     nullptr},
    {"bases", "bases have an order, and may come further on", R"(
1 type 1 state 0 owner -1
  children 2 3 4 5 6
2 type 100 state 0 owner 1
  1 = 'top'
  10 = 'from top'
  inheritors 3
3 type 100 state 0 owner 1
  1 = 'middle'
  bases 2
  inheritors 5
4 type 100 state 0 owner 1
  1 = 'side'
  11 = '4'
  bases 6
  inheritors 5
5 type 100 state 0 owner 1
  1 = 'bottom'
  bases 4 3
6 type 100 state 0 owner 1
  1 = 'last'
  11 = '6'
  inheritors 4
)",
     nullptr},
    {"marks", "the order of marking stays", R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  1 = 'base'
  10 = 'kept'
  11 = '1'
  15 = '2'
  inheritors 3
3 type 100 state 0 owner 1
  1 = 'heir'
  bases 2
  not inheritable 10 12 15
)",
     nullptr},
    {"observers", "an observer may come before or behind what it observes", R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  1 = 'watched'
  observers 3 4
3 type 100 state 0 owner 1
  children 4
  1 = 'both'
  observers 4
4 type 101 state 0 owner 3
  1 = 'watching'
)",
     nullptr},
    {"children", "the order of children within a run is their own", R"(
1 type 1 state 0 owner -1
  children 5 3 4 2 9
2 type 101 state 0 owner 1
  1 = 'q1'
3 type 100 state 0 owner 1
  1 = 't2'
4 type 101 state 0 owner 1
  1 = 'q2'
5 type 100 state 0 owner 1
  children 8 6 7
  1 = 't1'
6 type 101 state 0 owner 5
  1 = 'p1'
7 type 102 state 0 owner 5
  1 = 'other'
8 type 100 state 0 owner 5
  1 = 'inner thing'
9 type 102 state 0 owner 1
  1 = 'o'
)",
     nullptr},
    {"own_properties", "a definition is an object, what it makes is in the section of types", R"(
1 type 1 state 0 owner -1
  children 4 6 2 3
2 type 49999 state 0 owner 1
  1 = 'Colour'
  2 = 'what it is painted'
  49996 = '50001'
  49997 = ['red'|'green'|]
  49998 = ['100'|'101'|]
  49999 = 'red'
3 type 49999 state 0 owner 1
  1 = 'Remark'
  49995 = 'True'
  49996 = '50002'
  49998 = ['100'|]
4 type 100 state 0 owner 1
  children 5
  1 = 'painted'
  50001 = 'green'
5 type 101 state 0 owner 4
  1 = 'plain'
6 type 100 state 0 owner 1
  1 = 'remarked'
  50002 = 'two	lines'
)",
     nullptr},
    {"no_counterpart",
     "what leads nowhere is null or left out; the second of two with one id is no one's target", R"(
1 type 1 state 0 owner -1
  children 2 3 4 4
2 type 100 state 0 owner 1
  1 = 'a'
  12 = 'True'
  13 = #null
  14 = [#null|#3|]
  4711 = 'lost'
  bases 3
  observers 3
3 type 100 state 0 owner 1
  1 = 'b'
  bases 4
  inheritors 2
  referencing 2
4 type 100 state 0 owner 1
  1 = 'c'
  inheritors 3
)",
     "no_counterpart_written"},
};

TEST(approved_streams, of_trees_say_what_they_say_and_are_written_again) {
    for (const tree_row& row : tree_rows) {
        SCOPED_TRACE(std::string{row.file} + ": " + row.why);
        const std::string bytes = approved_bytes(row.file);
        const model_of_stream model{bytes};
        ASSERT_TRUE(model.was_read());
        EXPECT_EQ(model.says(), row.says);
        EXPECT_EQ(model->message_count(), 0U);
        EXPECT_FALSE(model->is_modified());
        EXPECT_EQ(first_difference(model.written(false), row.written ? approved_bytes(row.written) : bytes),
                  "");
    }
}

TEST(approved_streams, have_the_identity_and_the_counters_of_their_model) {
    const model_of_stream model{approved_bytes("own_properties")};
    ASSERT_TRUE(model.was_read());
    GUID id;
    model->model_id(id);
    const GUID expected{0x44332211, 0x6655, 0x8877, {0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x00}};
    EXPECT_TRUE(id == expected);
    EXPECT_EQ(model->last_object_id(), 6U);
    EXPECT_EQ(model->meta_model()->version(), 8U);
    EXPECT_EQ(model->add_user_defined_property(types::other, "Next", data_type::string, "", 0)->id(), 50003U);
}

TEST(approved_streams, have_values_of_the_kinds_that_they_name) {
    const model_of_stream model{approved_bytes("every_kind_of_value")};
    ASSERT_TRUE(model.was_read());
    const auto kinds_of = [](const std::vector<abstract_property*>& values) {
        std::vector<u32> kinds;
        for (const abstract_property* each : values)
            kinds.push_back(framework::instance().data_type_of(each));
        return kinds;
    };
    const value_ptr list = model[2]->get_own_property(props::list);
    EXPECT_EQ(kinds_of(dynamic_cast<const vector_property&>(*list).elements),
              (std::vector<u32>{2, 3, 4, 5, 1001, 7, 6, 6, 8, 8, 1, 1002, 1003}));
    value_map own;
    model[3]->own_properties(own);
    std::vector<abstract_property*> alone;
    for (const auto& [id, value] : own) alone.push_back(value.get());
    EXPECT_EQ(kinds_of(alone), (std::vector<u32>{3, 5, 1001, 1002, 1, 1003}));
}

TEST(approved_streams, have_integers_where_elements_were_unsigned) {
    const std::string bytes = approved_bytes("unsigned_element");
    const model_of_stream model{bytes};
    ASSERT_TRUE(model.was_read());
    vector_property unsigned_ones;
    for (const unsigned each : {100U, 0xFFFFFFFFU})
        unsigned_ones.elements.push_back(new property<unsigned>{each});
    model->begin_transaction("the same, unsigned");
    ASSERT_TRUE(model[2]->set_property(props::list, unsigned_ones));
    model->end_transaction();
    EXPECT_EQ(framework::instance().data_type_of(
                  dynamic_cast<const vector_property&>(*model[2]->get_own_property(props::list)).elements[0]),
              data_type::none);
    EXPECT_EQ(first_difference(model.written(false), bytes), "");
}

TEST(approved_streams, hand_values_down_from_bases_but_for_those_that_are_marked) {
    const model_of_stream chain{approved_bytes("bases")};
    ASSERT_TRUE(chain.was_read());
    EXPECT_EQ(as_text(chain[5]->get_property(props::text)), "from top");
    EXPECT_EQ(as_text(chain[5]->get_property(props::number)), "4");
    const model_of_stream marked{approved_bytes("marks")};
    ASSERT_TRUE(marked.was_read());
    EXPECT_EQ(as_text(marked[3]->get_property(props::number)), "1");
    EXPECT_EQ(as_text(marked[3]->get_property(props::text)), "none");
    EXPECT_EQ(as_text(marked[3]->get_property(props::real)), "none");
    EXPECT_EQ(marked[3]->not_inheritable_properties(),
              (std::vector<u32>{props::real, props::text, props::flag}));
}

TEST(approved_streams, give_types_the_properties_that_users_added) {
    const model_of_stream model{approved_bytes("own_properties")};
    ASSERT_TRUE(model.was_read());
    const auto of_type = [&](u32 type, u32 id) {
        return model->meta_model()->find_meta_object(type)->find_property(id);
    };
    for (const u32 type : {types::thing, types::part}) {
        SCOPED_TRACE(type);
        const meta_property* const colour = of_type(type, 50001);
        ASSERT_TRUE(colour);
        EXPECT_EQ(colour->name(), "Colour");
        EXPECT_EQ(colour->definition(), "what it is painted");
        EXPECT_EQ(colour->property_class(), data_type::string);
        EXPECT_EQ(as_text(colour->attribute_value(attribute_id::default_value)), "red");
        EXPECT_EQ(as_text(colour->attribute_value(attribute_id::default_value_choices)), "red, green");
    }
    ASSERT_TRUE(of_type(types::thing, 50002));
    EXPECT_EQ(as_text(of_type(types::thing, 50002)->attribute_value(attribute_id::multiline)), "True");
    EXPECT_EQ(of_type(types::part, 50002), nullptr);
    EXPECT_EQ(as_text(model[5]->get_property(50001)), "red") << "the default, from the type";
    EXPECT_EQ(as_text(model[4]->get_property(50001)), "green");
}

TEST(approved_streams, with_runs_of_children_mixed_up_are_the_same_model) {
    const model_of_stream model{approved_bytes("children_in_another_order")};
    ASSERT_TRUE(model.was_read());
    EXPECT_EQ(names_of(model[1]->children()), "t1 t2 q2 q1 o");
    EXPECT_EQ(first_difference(model.written(false), approved_bytes("children")), "");
}

TEST(approved_streams, of_a_version_without_histories_end_behind_the_tree) {
    const std::string bytes = approved_bytes("version_7_1");
    const model_of_stream model{bytes};
    ASSERT_TRUE(model.was_read());
    EXPECT_EQ(names_of(model[1]->children()), "made");
    EXPECT_EQ(first_difference(model.written(false), approved_bytes("version_7_1_written")), "");
    const model_of_stream again{approved_bytes("version_7_1_written")};
    EXPECT_TRUE(again.was_read()) << "what follows the tree is not looked at";
    EXPECT_EQ(again.says(), model.says());
}

TEST(approved_streams, of_every_version_are_refused_by_older_applications) {
    for (const char* file : {"version_7_1", "version_7_13", "version_7_14", "empty_model"}) {
        SCOPED_TRACE(file);
        const std::string bytes = approved_bytes(file);
        EXPECT_TRUE(model_of_stream(bytes).was_read());
        EXPECT_TRUE(model_of_stream(bytes, 9, 0).was_read());
        EXPECT_FALSE(model_of_stream(bytes, 7, 0).was_read());
    }
}

// Each byte of a tree counts: none is passed over, none is put right in silence.  (References are, which lead nowhere.)
TEST(approved_streams, with_a_bit_turned_in_the_tree_are_refused_or_written_otherwise) {
    const std::size_t head = approved_bytes("parts/types").size() + 32;
    for (const char* file : {"bases", "marks", "observers", "children"}) {
        const std::string bytes = approved_bytes(file);
        for (std::size_t at = head; at != bytes.size() - 1; ++at) {
            std::string turned = bytes;
            turned[at] = static_cast<char>(turned[at] ^ 1);
            const model_of_stream model{turned};
            EXPECT_TRUE(!model.was_read() || model.written(false) != bytes) << file << " at " << at;
        }
    }
}

TEST(approved_streams, that_differ_say_where) {
    EXPECT_EQ(first_difference("abc", "abd"), "byte 2 of 3 is 99, should be 100 (of 3 bytes)");
    EXPECT_EQ(first_difference("ab", "abd"), "byte 2 of 2 is the end, should be 100 (of 3 bytes)");
    EXPECT_EQ(first_difference("abd", "ab"), "byte 2 of 3 is 100, should be the end (of 2 bytes)");
}

/// \returns what the reader of approved files says of a text; empty when it takes it
std::string refusal_of(std::string_view text) {
    try {
        bytes_of_fields(text, "x.hex");
    } catch (const std::runtime_error& refused) {
        return refused.what();
    }
    return {};
}

TEST(approved_files, are_bytes_with_what_they_are) {
    EXPECT_EQ(bytes_of_fields("# a comment\n\n  0a ff  # a field\n7f # the last", "x.hex"), "\x0a\xff\x7f");
    EXPECT_EQ(bytes_of_fields("", "x.hex"), "");
    EXPECT_EQ(bytes_of_fields("include parts/types.hex\n", "x.hex"), approved_bytes("parts/types"));
}

TEST(approved_files, with_a_bad_line_are_refused_with_its_number) {
    const struct {
        const char* text;
        const char* refusal;
        const char* why;
    } rows[] = {
        {"00 # fine\n0 # half", "x.hex:2: a byte that is not two hexadecimal digits", "half a byte"},
        {"000 # one and a half", "x.hex:1: bytes without a blank between them", "three digits"},
        {"0000 # two", "x.hex:1: bytes without a blank between them", "two bytes at once"},
        {"0g # no digit", "x.hex:1: a byte that is not two hexadecimal digits", "no digit"},
        {"0A # a capital", "x.hex:1: a byte that is not two hexadecimal digits", "one form is enough"},
        {"00  00 # wide", "x.hex:1: a byte that is not two hexadecimal digits", "two blanks"},
        {"00", "x.hex:1: bytes without '#' and what they are", "nothing said"},
        {"00 #  ", "x.hex:1: bytes without '#' and what they are", "nothing said after all"},
        {"include nothing.hex", "no approved file nothing.hex", "a file that is not there"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(refusal_of(row.text), row.refusal);
    }
    EXPECT_THROW(approved_bytes("nothing"), std::runtime_error);
}

} // namespace
} // namespace kelm::test
