// The editor of kelm-schema on a schema made by hand: what each edit does, what each wrong line says and leaves.
// The command around it, files and exit codes, is tested by edit_test.py; rules, domains and properties beside it.
#include "tests/examples/schema_editing.h"

namespace {

using schema_test::editing;

TEST_F(editing, a_wrong_line_says_why_and_changes_nothing) {
    each_is_refused({
        // names
        {"drop table nobody", "there is no table nobody"},
        {"drop table \"no body\"", "there is no table \"no body\""},
        {"drop table view", "\"view\" is a view, not a table"},
        {"drop column nobody.x", "there is no table nobody"},
        {"drop column person.x", "there is no column x in table person"},
        {"drop column \"view\".x", "\"view\" is a view, not a table"},
        {"drop index by_id", "there is no index by_id"},
        {"show nobody", "there is no table or view nobody"},
        {"rename table person PET", "there is already a table pet"},
        {"rename table person View", "there is already a view \"view\""},
        {"rename table person By_Name", "there is already an index by_name"},
        {"rename table person \"\"", "a name cannot be empty"},
        {"rename table person SQLite_person", "names that begin with sqlite_ are SQLite's own"},
        {"rename column person.id NAME", "there is already a column person.name"},
        {"rename column person.id \"\"", "a name cannot be empty"},
        {"add column person.NAME TEXT", "there is already a column person.name"},
        {"add column person.\"\" TEXT", "a name cannot be empty"},
        {"add index By_Name on pet (owner)", "there is already an index by_name"},
        {"add index Pet on pet (owner)", "there is already a table pet"},
        {"add index sqlite_i on pet (owner)", "names that begin with sqlite_ are SQLite's own"},
        {"add index i on nobody (owner)", "there is no table nobody"},
        {"add index i on pet (owner, who)", "there is no column who in table pet"},
        {"add index i on pet (owner, kind, OWNER)", "column pet.owner stands in the list twice"},
        {"drop column search.text", "search is a virtual table, whose columns are not its own"},
        {"add column search.more TEXT", "search is a virtual table, whose columns are not its own"},
        {"add index i on search (text)", "search is a virtual table, whose columns are not its own"},
        // what is in use
        {"drop table person", "table person is used by a foreign key of table pet"},
        {"drop column person.id", "column person.id is used by the primary key of table person"},
        {"drop column person.mail", "column person.mail is used by a unique key of table person"},
        {"drop column person.name", "column person.name is used by index by_name"},
        {"drop column person.boss", "column person.boss is used by a foreign key of table person"},
        {"drop column pet.owner", "column pet.owner is used by a foreign key of table pet"},
        {"drop column lonely.only", "column lonely.only is the last of its table"},
        {"rename column person.boss chief", "column person.boss is used by the SQL of index by_name"},
        {"rename column pet.kind sort", "column pet.kind is used by the SQL of index \"lower kind\""},
        // numbers
        {"move column person.id 0", "position 0 is not between 1 and 4"},
        {"move column person.id 5", "position 5 is not between 1 and 4"},
        {"move column person.id -1", "expected a position, not \"-\""},
        {"move column person.id first", "expected a position, not \"first\""},
        {"move column person.id \"1\"", "expected a position, not the name \"1\""},
        {"move column person.id", "expected a position at the end of the line"},
        {"move column person.id 99999999999999999999999", "99999999999999999999999 is too large"},
        {"undo 0", "0 times is no undo"},
        {"undo", "there is nothing to undo"},
        {"redo", "there is nothing to redo"},
        {"redo x", "expected how often, not \"x\""},
        // types
        {"add column pet.age", "expected a type at the end of the line"},
        {"add column pet.age \"\"", "expected a type, not the name \"\""},
        {"add column pet.age (3)", "expected a type, not \"(\""},
        {"add column pet.age INT NOT NULL", "expected the end of the line, not \"NOT\""},
        {"type column pet.kind", "expected a type at the end of the line"},
        {"type column pet.kind VARCHAR(x)", "expected a number, not \"x\""},
        {"type column pet.kind VARCHAR(3", "expected ) at the end of the line"},
        {"type column pet.kind DECIMAL(3, 4, 5)", "expected ), not \",\""},
        {"type column pet.kind VARCHAR(3) (4)", "expected the end of the line, not \"(\""},
        // commands
        {"sing", "expected a command, not \"sing\""},
        {"\"drop\" table lonely", "expected a command, not the name \"drop\""},
        {"drop", "expected table or column or index or domain or property at the end of the line"},
        {"drop \"table\" lonely",
         "expected table or column or index or domain or property, not the name \"table\""},
        {"drop view view", "expected table or column or index or domain or property, not \"view\""},
        {"type table person TEXT", "expected column or domain, not \"table\""},
        {"drop table", "expected the name of a table at the end of the line"},
        {"drop table (", "expected the name of a table, not \"(\""},
        {"drop table 1st", "expected the name of a table, not \"1st\""},
        {"rename table person", "expected a new name at the end of the line"},
        {"rename column person id", "expected ., not \"id\""},
        {"rename column person.name", "expected a new name at the end of the line"},
        {"add index i pet (owner)", "expected on, not \"pet\""},
        {"add index i on pet owner", "expected (, not \"owner\""},
        {"add index i on pet ()", "expected the name of a column, not \")\""},
        {"add index i on pet (owner", "expected , at the end of the line"},
        {"add index i on pet (owner kind)", "expected ,, not \"kind\""},
        // words behind the end
        {"rename table lonely alone now", "expected the end of the line, not \"now\""},
        {"rename column lonely.only one.two", "expected the end of the line, not \".\""},
        {"drop table lonely now", "expected the end of the line, not \"now\""},
        {"drop column pet.\"a b\" now", "expected the end of the line, not \"now\""},
        {"drop index by_name now", "expected the end of the line, not \"now\""},
        {"move column pet.kind 1 2", "expected the end of the line, not \"2\""},
        {"add index i on pet (owner) where", "expected the end of the line, not \"where\""},
        {"undo 1 2", "expected the end of the line, not \"2\""},
        {"history all", "expected the end of the line, not \"all\""},
        {"show pet person", "expected the end of the line, not \"person\""},
        // characters
        {"drop table lonely;", "unexpected character ;"},
        {"drop table 'lonely'", "unexpected character '"},
        {"drop table \"lonely", "a quoted name does not end"},
        {"drop table \"lonely\"\"", "a quoted name does not end"},
        {"drop table lonely \"# no comment", "a quoted name does not end"},
        {"drop table \xff", "the line is not UTF-8"},
        {std::string("drop table lonely\0", 18), "the line holds a zero byte"},
    });
    EXPECT_EQ(run("history"), "no edits\n");
}

TEST_F(editing, each_edit_is_one_undo_whatever_it_changes) {
    each_is_one_undo({
        "rename table person people",
        "rename table person person",
        "rename table person PERSON",
        "rename table pet missing",
        "rename column person.id no",
        "rename column pet.kind KIND",
        "drop table pet",
        "drop column pet.\"a b\"",
        "drop index by_name",
        "add column lonely.what INT",
        "add index i on pet (owner, \"A B\")",
        "move column person.mail 1",
        "move column person.id 4",
        "move column person.id 1",
        "type column person.id DECIMAL(3, -2)",
        "type column person.id TEXT",
    });
}

TEST_F(editing, a_foreign_key_follows_its_target) {
    EXPECT_EQ(run_all({"rename table person Leute", "rename column leute.id no", "move column leute.no 3",
                       "show pet"}),
              "table pet\n"
              "  owner  TEXT\n"
              "  \"a b\"  TEXT\n"
              "  kind   TEXT\n"
              "  foreign key (owner) -> Leute (\"no\")\n"
              "  foreign key (kind) -> missing (what)  unresolved: no such table\n"
              "  index \"lower kind\" (lower(\"Kind\"))\n");
}

TEST_F(editing, a_foreign_key_finds_a_target_that_gets_its_name) {
    run("rename table lonely MISSING");
    EXPECT_NE(run("show pet").find("(kind) -> MISSING (what)  unresolved: no such column\n"),
              std::string::npos);
    run("add column missing.what TEXT");
    EXPECT_NE(run("show pet").find("(kind) -> MISSING (what)\n"), std::string::npos);
    EXPECT_EQ(complaint("drop column missing.what"),
              "column MISSING.what is used by a foreign key of table pet");
    run("undo 2");
    EXPECT_NE(run("show pet").find("(kind) -> missing (what)  unresolved: no such table\n"),
              std::string::npos);
}

TEST_F(editing, what_was_in_use_can_go_when_its_user_has_gone) {
    EXPECT_EQ(run_all({"drop table pet", "drop table person", "history"}),
              "1  drop table pet\n2  drop table person\n");
    EXPECT_EQ(run_all({"undo 2", "drop index by_name", "drop column person.name", "show person"}),
              "table person\n"
              "  id    TEXT  pk 1\n"
              "  boss  TEXT\n"
              "  mail  TEXT\n"
              "  primary key (id)\n"
              "  unique (mail)\n"
              "  foreign key (boss) -> person (id)\n"
              "  trigger t  AFTER\n");
}

TEST_F(editing, a_new_column_is_the_last_and_can_be_moved_and_indexed) {
    EXPECT_EQ(run_all({"add column lonely.x DECIMAL( 10 , -2 )",
                       "add column lonely.\"y\"\"z\" unsigned  big \"int\"", "move column lonely.x 1",
                       "type column lonely.only VARCHAR (3)", "add index \"in\" on lonely (X, \"Y\"\"Z\")",
                       "show lonely"}),
              "table lonely\n"
              "  x       DECIMAL( 10 , -2 )\n"
              "  only    VARCHAR (3)\n"
              "  \"y\"\"z\"  unsigned big int\n"
              "  index \"in\" (x, \"y\"\"z\")\n");
}

TEST_F(editing, keywords_may_be_in_any_case_and_blanks_and_comments_anywhere) {
    EXPECT_EQ(run(""), "");
    EXPECT_EQ(run(" \t\r"), "");
    EXPECT_EQ(run("  # drop table lonely"), "");
    run("\tReName  TABLE\tLonely \"# not\"\"a comment\"# this is one \"");
    run("add INDEX i ON pet(owner,kind)\r");
    EXPECT_EQ(run("HISTORY"),
              "1  ReName TABLE Lonely \"# not\"\"a comment\"\n2  add INDEX i ON pet(owner,kind)\n");
    EXPECT_EQ(run("Show \"# NOT\"\"a comment\""), "table \"# not\"\"a comment\"\n  only  TEXT\n");
    run("UnDo 2");
}

TEST_F(editing, a_view_can_be_shown_alone) {
    EXPECT_EQ(run("show \"VIEW\"").substr(0, 16), "view \"view\"\n  x\n");
}

TEST_F(editing, undo_and_redo_go_several_steps_and_never_too_far) {
    run_all({"drop index by_name", "drop table pet", "drop table lonely"});
    EXPECT_EQ(complaint("undo 4"), "cannot undo 4 edits, there are only 3");
    run("undo 2");
    EXPECT_EQ(run("history"),
              "1  drop index by_name\n2  drop table pet  (undone)\n3  drop table lonely  (undone)\n");
    EXPECT_EQ(complaint("undo 2"), "cannot undo 2 edits, there is only 1");
    EXPECT_EQ(complaint("redo 3"), "cannot redo 3 edits, there are only 2");
    run("redo");
    EXPECT_EQ(run("history"), "1  drop index by_name\n2  drop table pet\n3  drop table lonely  (undone)\n");
    run("type column person.id INT"); // what was undone is given up
    EXPECT_EQ(run("history"), "1  drop index by_name\n2  drop table pet\n3  type column person.id INT\n");
    EXPECT_EQ(complaint("redo"), "there is nothing to redo");
    run("undo 3");
    EXPECT_EQ(complaint("undo"), "there is nothing to undo");
}

} // namespace
