// Properties that a script defines: their values on tables and columns, their choices, and that undo knows all of it.
// How definitions work in general is tested with the library's meta model.
#include "tests/examples/schema_editing.h"

namespace {

using schema_test::editing;

TEST_F(editing, properties_are_shown_where_they_are_set) {
    const std::string before = all();
    run_all(
        {"define property owner on table", "define property comment on column, table default none",
         "define property state on column choices (draft, \"in use\", old) # the first is what is meant else",
         "set property owner of lonely to \"Ann \"\"A\"\" Lee\"", "set property comment of lonely to short",
         "set property Comment of lonely.only to \"none\"",
         "set property state of lonely.only to \"in use\""});
    EXPECT_EQ(run("show lonely"), "table lonely\n"
                                  "  only  TEXT  comment = none  state = in use\n"
                                  "  property owner = Ann \"A\" Lee\n"
                                  "  property comment = short\n");
    EXPECT_NE(run("show").find("\n\n"
                               "property owner on table\n"
                               "property comment on table, column  default none\n"
                               "property state on column  default draft  choices (draft, \"in use\", old)\n\n"
                               "table person\n"),
              std::string::npos);
    EXPECT_EQ(run("show pet").find("property"), std::string::npos);
    all_comes_back(7, before);
}

TEST_F(editing, a_value_can_be_changed_and_cleared) {
    run_all({"define property owner on table",
             "set property owner of search to Ann", // of a virtual table as well
             "set property owner of search to Bob"});
    EXPECT_NE(run("show search").find("  property owner = Bob\n"), std::string::npos);
    run("clear property owner of search");
    EXPECT_EQ(run("show search").find("property"), std::string::npos);
    EXPECT_EQ(complaint("clear property owner of search"), "property owner of search is not set");
    run("undo 2");
    EXPECT_NE(run("show search").find("  property owner = Ann\n"), std::string::npos);
}

TEST_F(editing, a_dropped_property_comes_back_with_its_values_and_its_choices) {
    run_all({"define property state on table, column default b choices (a, b)",
             "set property state of pet to a", "set property state of pet.kind to b"});
    const std::string before = all();
    run("drop property STATE");
    EXPECT_EQ(all().find("state"), std::string::npos);
    EXPECT_EQ(complaint("set property state of pet to a"), "there is no property state");
    run("undo");
    EXPECT_EQ(all(), before);
    EXPECT_EQ(complaint("set property state of pet to c"), "c is none of the choices of property state");
    run("set property state of person to b");
    run_all(
        {"undo", "drop property state", "define property State on table", "set property state of pet to c"});
    EXPECT_NE(run("show pet").find("  property State = c\n"), std::string::npos);
    run("undo 3");
    EXPECT_EQ(all(), before);
}

TEST_F(editing, values_go_and_come_back_with_their_table) {
    run_all({"define property owner on table, column", "set property owner of lonely to Ann",
             "set property owner of lonely.only to Bob"});
    const std::string before = all();
    run("drop table lonely");
    EXPECT_EQ(all().find("Ann"), std::string::npos);
    run("undo");
    EXPECT_EQ(all(), before);
}

TEST_F(editing, each_edit_of_a_property_is_one_undo) {
    each_is_one_undo({"define property p on table", "define property p on column, table default x",
                      "define property p on table choices (a, b)",
                      "define property p on table choices (a, b) default b",
                      "define property p on column default b choices (a, b)"});
    run_all({"define property p on table, column choices (a, b)", "set property p of pet to a"});
    each_comes_back({"set property p of pet to b", "set property p of pet.kind to a",
                     "clear property p of pet", "drop property p", "define property q on table"});
}

TEST_F(editing, a_wrong_line_about_properties_says_why_and_changes_nothing) {
    run_all({"define property owner on table", "define property state on column choices (a, b)"});
    each_is_refused({
        {"define property Owner on column", "there is already a property owner"},
        {"define property NAME on table", "there is already a property NAME"},
        {"define property \"declared type\" on table", "there is already a property \"declared type\""},
        {"define property p", "expected on at the end of the line"},
        {"define property p on", "expected table or column at the end of the line"},
        {"define property p on view", "expected table or column, not \"view\""},
        {"define property p on table default", "expected a default at the end of the line"},
        {"define property p on table choices", "expected ( at the end of the line"},
        {"define property p on table choices ()", "expected a choice, not \")\""},
        {"define property p on table choices (a b)", "expected ), not \"b\""},
        {"define property p on table default c choices (a, b)", "c is none of the choices of property p"},
        {"define property p on table choices (a) default c", "c is none of the choices of property p"},
        {"define property p on table sometimes", "expected default or choices, not \"sometimes\""},
        {"set property p of pet to x", "there is no property p"},
        {"set property owner of nobody to x", "there is no table nobody"},
        {"set property owner of pet.kind to x", "property owner is not one of columns"},
        {"set property state of pet to a", "property state is not one of tables"},
        {"set property state of pet.kind to c", "c is none of the choices of property state"},
        {"set property state of pet.kind to A", "A is none of the choices of property state"},
        {"set property owner of pet", "expected to at the end of the line"},
        {"set property owner of pet to", "expected a text at the end of the line"},
        {"set property owner of pet to Ann Lee", "expected the end of the line, not \"Lee\""},
        {"clear property owner of pet", "property owner of pet is not set"},
        {"drop property p", "there is no property p"},
    });
}

} // namespace
