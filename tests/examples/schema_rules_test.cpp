// What the hooks of kelm-schema keep true of a schema: what they refuse and why, how they react, and that undo takes
// reactions back as well.
// Rules that simple edits meet, as of names and of columns in use, are also in the table of schema_editor_test.cpp.
#include "tests/examples/schema_editing.h"

#include <kelm/object.h>
#include <kelm/property.h>
#include <kelm/transaction.h>

namespace {

namespace property = schema::property;
namespace type = schema::type;
using schema::referenced_drop;
using schema_test::editing;
using schema_test::shared;

TEST_F(editing, a_broken_rule_is_told_and_changes_nothing) {
    each_is_refused({
        {"add primary key on person (name)", "table person has a primary key already"},
        {"add primary key on pet (owner, kind, OWNER)", "column pet.owner stands in the list twice"},
        {"add foreign key on pet (owner) to nobody (id)", "there is no table nobody"},
        {"add foreign key on pet (owner) to \"view\" (x)", "there is no table \"view\""},
        {"add foreign key on pet (owner) to person (who)", "there is no column who in table person"},
        {"add foreign key on pet (owner, kind) to person (id)",
         "the foreign key has 2 columns, its target 1"},
        {"add foreign key on pet (owner) to person (id, name)", "the foreign key has 1 column, its target 2"},
        {"add foreign key on pet (owner, kind) to person", "the foreign key has 2 columns, its target 1"},
        {"add foreign key on pet (owner) to lonely", "table lonely has no primary key"},
        {"add foreign key on pet (owner, owner) to person (id, name)",
         "column pet.owner stands in the list twice"},
        {"add domain \"\" TEXT", "a name cannot be empty"},
        {"define property \"\" on table", "a name cannot be empty"},
    });
    EXPECT_EQ(run("history"), "no edits\n");
}

TEST_F(editing, keys_can_be_added_where_they_break_no_rule) {
    each_is_one_undo({
        "add primary key on pet (kind, owner)",
        "add foreign key on lonely (only) to person",
        "add foreign key on lonely (only) to PET (\"A B\")",
        "add foreign key on person (name, mail) to pet (owner, kind)",
        "add foreign key on person (id) to person (boss)",
    });
    EXPECT_EQ(run_all({"add primary key on lonely (only)", "add foreign key on lonely (only) to person",
                       "add foreign key on lonely (only) to person (NAME)", "show lonely"}),
              "table lonely\n"
              "  only  TEXT  pk 1\n"
              "  primary key (only)\n"
              "  foreign key (only) -> person (id)\n"
              "  foreign key (only) -> person (name)\n");
    EXPECT_EQ(complaint("add primary key on lonely (only)"), "table lonely has a primary key already");
}

TEST_F(editing, a_new_name_is_free_again_when_its_owner_has_another) {
    EXPECT_EQ(complaint("rename table lonely PERSON"), "there is already a table person");
    run_all({"rename table person people", "rename table lonely PERSON", "rename column pet.owner holder",
             "add column pet.OWNER TEXT", "drop index by_name", "add index BY_NAME on pet (kind)"});
    EXPECT_EQ(complaint("rename table people Person"), "there is already a table PERSON");
    EXPECT_EQ(complaint("rename column pet.holder owner"), "there is already a column pet.OWNER");
}

TEST_F(editing, a_referenced_table_stays_when_asked_to) {
    EXPECT_EQ(complaint("drop table person"), "table person is used by a foreign key of table pet");
    EXPECT_EQ(complaint("drop table person twice"), "table person is used by a foreign key of table pet");
    EXPECT_EQ(run("history"), "no edits\n");
}

TEST_F(editing, a_referenced_table_takes_the_foreign_keys_with_it_when_asked_to) {
    shared.on_referenced_drop = referenced_drop::drop_keys;
    run("add foreign key on lonely (only) to person (mail)");
    const std::string before = all();
    run("drop table person");
    EXPECT_EQ(run("show pet"), "table pet\n"
                               "  owner  TEXT\n"
                               "  \"a b\"  TEXT\n"
                               "  kind   TEXT\n"
                               "  foreign key (kind) -> missing (what)  unresolved: no such table\n"
                               "  index \"lower kind\" (lower(\"Kind\"))\n");
    EXPECT_EQ(run("show lonely"), "table lonely\n  only  TEXT\n");
    EXPECT_EQ(run("history"), "1  add foreign key on lonely (only) to person (mail)\n2  drop table person\n");
    const std::string after = all();
    run("undo");
    EXPECT_EQ(all(), before);
    run("redo");
    EXPECT_EQ(all(), after);
    run("drop column pet.owner"); // no key needs it any more
    run("undo 2");
    EXPECT_EQ(all(), before);
    EXPECT_EQ(complaint("drop column pet.owner"), "column pet.owner is used by a foreign key of table pet");
}

TEST_F(editing, a_reaction_goes_back_with_an_edit_that_fails_behind_it) {
    shared.on_referenced_drop = referenced_drop::drop_keys;
    const std::string before = all();
    EXPECT_EQ(complaint("drop table person now"), "expected the end of the line, not \"now\"");
    EXPECT_EQ(all(), before);
}

TEST_F(editing, columns_go_with_their_table_whatever_uses_them) {
    run("drop table pet");
    EXPECT_EQ(complaint("show pet"), "there is no table or view pet");
    shared.on_referenced_drop = referenced_drop::drop_keys;
    run("drop table person");
    EXPECT_EQ(complaint("show person"), "there is no table or view person");
}

TEST_F(editing, hooks_keep_the_rules_for_whoever_changes_the_model) {
    kelm::object& pet = *schema::find(root(), type::table, "pet");
    const std::string before = all();
    {
        const schema::rules::watch watching(shared);
        kelm::transaction_object change(root().model(), "Not by a script");
        EXPECT_FALSE(pet.set_property(kelm::property_id::name, kelm::property<std::string>("PERSON")));
        EXPECT_EQ(shared.reason(), "there is already a table person");
        EXPECT_FALSE(change.is_open()) << "a refusal rolls the transaction back";
    }
    {
        kelm::transaction_object change(root().model(), "What is read is taken as it is");
        EXPECT_TRUE(pet.set_property(kelm::property_id::name, kelm::property<std::string>("PERSON")));
    }
    EXPECT_EQ(all(), before);
}

} // namespace
