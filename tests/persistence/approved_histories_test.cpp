// Histories that were written by hand: read, undone to the last, redone, and written again byte for byte.
// Trees without a history are approved_streams_test, parts of histories and older forms approved_logs_test; what the library makes of its own logs is history_stream_test.
#include "tests/persistence/approved_world.h"

#include <gtest/gtest.h>

#include <set>

namespace kelm::test {
namespace {

struct history_row {
    const char* file;
    const char* why;
    const char* says;   ///< objects by id, with everything they have
    const char* log;    ///< messages: number, who made it, description
    const char* before; ///< what the model says when everything has been undone
};

const history_row history_rows[] = {
    {"history_transactions", "levels, and a change by a hook inside one", R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
  10 = '2'
  not inheritable 12
)",
     R"(
1 user:  Begin Transaction - outer
1 user:  Begin Transaction - 
7 user: Changed Thing a Text from NULL to 1
2 user:  End Transaction - 
7 library: Changed Thing a Text from 1 to 2
2 user:  End Transaction - outer
1 user:  Begin Transaction - second
13 user: Set Thing a Flag not inheritable.
2 user:  End Transaction - second
)",
     R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
)"},
    {"history_values", "each value has one owner: the object, or the message that took it out", R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  1 = 'base'
  10 = 'inherited'
  inheritors 3
3 type 100 state 0 owner 1
  1 = 'heir'
  13 = #null
  bases 2
  not inheritable 11
)",
     R"(
1 user:  Begin Transaction - texts
7 user: Changed Thing heir Text from inherited to own
7 user: Changed Thing heir Text from own to newer
10 user: Deleted Text of Thing heir
2 user:  End Transaction - texts
1 user:  Begin Transaction - references
7 user: Changed Thing heir Reference from NULL to base
7 user: Changed Thing heir Reference from base to 
2 user:  End Transaction - references
1 user:  Begin Transaction - marks
13 user: Set Thing heir Number not inheritable.
13 user: Set Thing heir Text not inheritable.
13 user: Set Thing heir Text not inheritable.
2 user:  End Transaction - marks
)",
     R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  1 = 'base'
  10 = 'inherited'
  inheritors 3
3 type 100 state 0 owner 1
  1 = 'heir'
  bases 2
)"},
    {"history_elements",
     "elements that the vector holds are found in it, those that left it in their messages", R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
  14 = ['2'|'3'|'6'|]
)",
     R"(
1 user:  Begin Transaction - elements
7 library: Changed Thing a List from NULL to 2, 3, 6
9 user: Inserted List of Thing a
9 user: Inserted List of Thing a
9 user: Inserted List of Thing a
8 user: Set List of Thing a
12 user: Changed List of Thing a from 0 to 2
11 user: Deleted List of Thing a
9 user: Inserted List of Thing a
9 user: Inserted List of Thing a
2 user:  End Transaction - elements
)",
     R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
)"},
    {"history_elements_shared", "elements of a vector that was replaced are found in the message that has it",
     R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
  14 = ['9'|]
)",
     R"(
1 user:  Begin Transaction - elements
7 library: Changed Thing a List from NULL to 2, 3, 6
9 user: Inserted List of Thing a
9 user: Inserted List of Thing a
9 user: Inserted List of Thing a
8 user: Set List of Thing a
12 user: Changed List of Thing a from 0 to 2
11 user: Deleted List of Thing a
9 user: Inserted List of Thing a
9 user: Inserted List of Thing a
2 user:  End Transaction - elements
1 user:  Begin Transaction - another list
7 user: Changed Thing a List from 2, 3, 6 to 9
8 user: Set List of Thing a
2 user:  End Transaction - another list
)",
     R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
)"},
    {"history_refresh", "what changed by other means is known to the log alone", R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
)",
     R"(
1 user:  Begin Transaction - refresh
7 user: Refresh Set Property - Number of Thing a
7 user: Refresh Set Property - Number of Thing a
10 user: Refresh Delete Property - Number of Thing a
2 user:  End Transaction - refresh
)",
     R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  1 = 'a'
)"},
    {"history_children", "children go back to their places", R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  children 5 4
  1 = 'a'
3 type 100 state 0 owner 1
  1 = 'b'
4 type 101 state 0 owner 2
  1 = 'first'
5 type 101 state 0 owner 2
  1 = 'second'
)",
     R"(
1 user:  Begin Transaction - order
17 user: Order Child - object: Part a.first of Thing a: new position 1, old position: 0
2 user:  End Transaction - order
1 user:  Begin Transaction - owner
16 library: Remove Child - Part a.first from Thing a
14 library: Added Part a.first of Thing b
18 user: Set Owner - for Part a.first to Thing:b, old owner: Thing:a
2 user:  End Transaction - owner
1 user:  Begin Transaction - out and in
16 user: Remove Child - Part a.first from Thing b
14 user: Added Part a.first of Thing a
2 user:  End Transaction - out and in
)",
     R"(
1 type 1 state 0 owner -1
  children 2 3
2 type 100 state 0 owner 1
  children 4 5
  1 = 'a'
3 type 100 state 0 owner 1
  1 = 'b'
4 type 101 state 0 owner 2
  1 = 'first'
5 type 101 state 0 owner 2
  1 = 'second'
)"},
    {"history_bases", "bases go back to their places", R"(
1 type 1 state 0 owner -1
  children 2 3 4
2 type 100 state 0 owner 1
  1 = 'a'
3 type 100 state 0 owner 1
  1 = 'heir'
  bases 4
4 type 100 state 0 owner 1
  1 = 'b'
  inheritors 3
)",
     R"(
1 user:  Begin Transaction - bases
19 user: Add Inherits - Thing heir from Thing a
21 user: Insert Inherits - Thing heir from Thing b
22 user: Inherits From Order - object: Thing heir: new position 1, old position: 0
20 user: Cancel Inherits - Thing heir from Thing b
23 user: Replace Inherits - Thing heir from: Thing a with Thing b
2 user:  End Transaction - bases
)",
     R"(
1 type 1 state 0 owner -1
  children 2 3 4
2 type 100 state 0 owner 1
  1 = 'a'
3 type 100 state 0 owner 1
  1 = 'heir'
4 type 100 state 0 owner 1
  1 = 'b'
)"},
    {"history_lifetime", "deleted objects come back from the log, with their owners", R"(
1 type 1 state 0 owner -1
  children 2
2 type 100 state 0 owner 1
  children 4
  1 = 'a'
4 type 101 state 0 owner 2
  1 = 'made'
)",
     R"(
1 user:  Begin Transaction - make
4 user: Created Part:a.made
14 library: Added Part a.made of Thing a
7 user: Changed Part a.made Name from NULL to made
2 user:  End Transaction - make
1 user:  Begin Transaction - delete
5 user: Pre Delete Thing 
15 library: Pre Remove Child - Thing  of Model 
5 library: Pre Delete Part 
15 library: Pre Remove Child - Part  of Thing 
10 library: Deleted Name of Part 
16 library: Remove Child - type (deleted) name (deleted) from type (deleted) name (deleted)
6 library: Deleted Part  owner  deleted
10 library: Deleted Name of Thing 
16 library: Remove Child - type (deleted) name (deleted) from Model 
6 library: Deleted Thing  owner Model 
2 user:  End Transaction - delete
1 user:  Begin Transaction - make and delete
4 user: Created Other:
14 library: Added Other  of Model 
7 user: Changed Other  Name from NULL to brief
5 user: Pre Delete Other 
15 library: Pre Remove Child - Other  of Model 
10 library: Deleted Name of Other 
16 library: Remove Child - type (deleted) name (deleted) from Model 
6 library: Deleted Other  owner Model 
2 user:  End Transaction - make and delete
)",
     R"(
1 type 1 state 0 owner -1
  children 2 5
2 type 100 state 0 owner 1
  1 = 'a'
3 type 101 state 0 owner 5
  1 = 'child'
5 type 100 state 0 owner 1
  children 3
  1 = 'owner'
)"},
    {"history_observers", "observers are attached again", R"(
1 type 1 state 0 owner -1
  children 2 3 4
2 type 100 state 0 owner 1
  1 = 'watched'
  observers 4
3 type 100 state 0 owner 1
  1 = 'first'
4 type 100 state 0 owner 1
  1 = 'second'
)",
     R"(
1 user:  Begin Transaction - observers
24 user: Add Observer - observer: Thing:first, subject: Thing:watched
24 user: Add Observer - observer: Thing:second, subject: Thing:watched
25 user: Remove Observer - observer: Thing:first, subject: Thing:watched
2 user:  End Transaction - observers
)",
     R"(
1 type 1 state 0 owner -1
  children 2 3 4
2 type 100 state 0 owner 1
  1 = 'watched'
3 type 100 state 0 owner 1
  1 = 'first'
4 type 100 state 0 owner 1
  1 = 'second'
)"},
    {"history_own_properties", "a property of the types goes and comes with its definition", R"(
1 type 1 state 0 owner -1
  children 3 2
2 type 49999 state 0 owner 1
  1 = 'Colour'
  49996 = '50001'
  49998 = ['100'|]
  49999 = 'blue'
3 type 100 state 0 owner 1
  1 = 'painted'
)",
     R"(
1 user:  Begin Transaction - define
4 user: Created User Defined Property:Colour
14 library: Added User Defined Property Colour of Model 
7 user: Changed User Defined Property Colour Name from NULL to Colour
7 user: Changed User Defined Property Colour Default Value from NULL to red
7 user: Changed User Defined Property Colour Object Types from NULL to 100
26 library: UDP Added : Colour of Thing
28 library: UDP Attribute Value Changed : Colour (red, )
7 library: Changed User Defined Property Colour User Defined Property Id from NULL to 50001
2 user:  End Transaction - define
1 user:  Begin Transaction - change
7 user: Changed User Defined Property Colour Default Value from red to blue
28 library: UDP Attribute Value Changed : Colour (blue,red )
2 user:  End Transaction - change
1 user:  Begin Transaction - add and remove
26 user: UDP Added : Size of Thing
28 user: UDP Attribute Value Changed :  (big, )
27 user: UDP Removed : Size of Thing
2 user:  End Transaction - add and remove
)",
     R"(
1 type 1 state 0 owner -1
  children 3
3 type 100 state 0 owner 1
  1 = 'painted'
)"},
};

TEST(approved_histories, say_what_they_say_and_are_written_again) {
    for (const history_row& row : history_rows) {
        SCOPED_TRACE(std::string{row.file} + ": " + row.why);
        const std::string bytes = approved_bytes(row.file);
        const model_of_stream model{bytes};
        ASSERT_TRUE(model.was_read());
        EXPECT_EQ(model.says(), row.says);
        EXPECT_EQ(model.log(), row.log);
        EXPECT_FALSE(model->is_modified());
        EXPECT_FALSE(model->can_redo());
        EXPECT_EQ(first_difference(model.written(true), bytes), "");
    }
}

TEST(approved_histories, can_be_undone_to_the_last_and_redone) {
    for (const history_row& row : history_rows) {
        SCOPED_TRACE(std::string{row.file} + ": " + row.why);
        const std::string bytes = approved_bytes(row.file);
        const model_of_stream model{bytes};
        ASSERT_TRUE(model.was_read());
        while (model->can_undo()) model->undo();
        EXPECT_EQ(model->message_count(), 0U);
        EXPECT_EQ(model.says(), row.before);
        while (model->can_redo()) model->redo();
        EXPECT_EQ(model.says(), row.says);
        EXPECT_EQ(first_difference(model.written(true), bytes), "");
    }
}

TEST(approved_histories, have_every_kind_of_message_that_is_stored) {
    std::set<u32> kinds;
    for (const history_row& row : history_rows) {
        const model_of_stream model{approved_bytes(row.file)};
        ASSERT_TRUE(model.was_read());
        for (std::size_t i = 0; i != model->message_count(); ++i) kinds.insert(model->message_at(i)->type());
    }
    std::set<u32> stored;
    for (u32 kind = message_type::tran_begin; kind <= message_type::udp_set_attribute_value; ++kind)
        if (kind != message_type::tran_rollback) stored.insert(kind);
    EXPECT_EQ(kinds, stored) << "the two refresh forms answer 7 and 10";
}

} // namespace
} // namespace kelm::test
