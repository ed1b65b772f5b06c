// Domains of kelm-schema: what columns inherit from them, what they keep for themselves, and that undo knows both.
// How values are inherited in general is tested with the library's objects.
#include "tests/examples/schema_editing.h"

namespace {

using schema_test::editing;

TEST_F(editing, domains_are_listed_when_there_are_any) {
    const std::string before = all();
    EXPECT_EQ(before.find("domain"), std::string::npos);
    run_all({"add domain money DECIMAL(10, 2) DEFAULT -1.5 NOT NULL", "add domain Label VARCHAR(40)",
             "add domain stamp INT not null default \"strftime('%s')\"",
             "add domain c X default CURRENT_TIME"});
    EXPECT_NE(run("show").find("\n\n"
                               "domain money  DECIMAL(10, 2)  not null  default -1.5\n"
                               "domain Label  VARCHAR(40)\n"
                               "domain stamp  INT  not null  default strftime('%s')\n"
                               "domain c  X  default CURRENT_TIME\n\n"
                               "table person\n"),
              std::string::npos);
    all_comes_back(4, before);
}

TEST_F(editing, a_column_inherits_type_default_and_not_null) {
    run_all({"add domain money DECIMAL(10, 2) DEFAULT 0 NOT NULL", "use domain MONEY for lonely.only"});
    EXPECT_EQ(run("show lonely"),
              "table lonely\n  only  DECIMAL(10, 2)  not null  default 0  domain money\n");
    run("type domain money INT"); // all that inherit it change with it
    EXPECT_EQ(run("show lonely"), "table lonely\n  only  INT  not null  default 0  domain money\n");
    run("undo 2");
    EXPECT_EQ(run("show lonely"), "table lonely\n  only  TEXT\n");
}

TEST_F(editing, a_value_of_its_own_wins_until_the_domain_is_used_again) {
    run_all({"add domain money DECIMAL", "use domain money for pet.owner", "use domain money for pet.kind",
             "type column pet.kind BLOB", "type domain money INT"});
    EXPECT_EQ(run("show pet")
                  .find("table pet\n"
                        "  owner  INT   domain money\n"
                        "  \"a b\"  TEXT\n"
                        "  kind   BLOB  domain money\n"),
              0U);
    run("use domain money for pet.kind");
    EXPECT_NE(run("show pet").find("  kind   INT   domain money\n"), std::string::npos);
    EXPECT_EQ(complaint("use domain money for pet.kind"), "column pet.kind uses the domain already");
}

TEST_F(editing, a_column_has_one_domain) {
    run_all({"add domain a INT", "add domain b REAL", "use domain a for lonely.only",
             "use domain b for lonely.only"});
    EXPECT_EQ(run("show lonely"), "table lonely\n  only  REAL  domain b\n");
    run("type domain a BLOB");
    EXPECT_EQ(run("show lonely"), "table lonely\n  only  REAL  domain b\n");
    run("drop domain a");
    EXPECT_EQ(complaint("drop domain b"), "domain b is used by column lonely.only");
    run("drop table lonely");
    run("drop domain b");
    run("undo 2");
    EXPECT_EQ(run("show lonely"), "table lonely\n  only  REAL  domain b\n");
}

TEST_F(editing, each_edit_of_a_domain_is_one_undo) {
    each_is_one_undo({"add domain c INT", "add domain c INT DEFAULT 1 NOT NULL"});
    run_all({"add domain a INT NOT NULL", "add domain b REAL", "use domain a for lonely.only",
             "type column lonely.only BLOB"});
    each_comes_back({"use domain a for lonely.only", "use domain b for lonely.only", "drop domain b",
                     "type domain a REAL", "use domain a for person.id", "drop column pet.\"a b\"",
                     "rename column lonely.only sole", "drop table lonely"});
}

TEST_F(editing, a_wrong_line_about_domains_says_why_and_changes_nothing) {
    run_all({"add domain money DECIMAL", "use domain money for lonely.only"});
    each_is_refused({
        {"add domain MONEY INT", "there is already a domain money"},
        {"add domain d", "expected a type at the end of the line"},
        {"add domain d INT NOT", "expected null at the end of the line"},
        {"add domain d INT UNIQUE", "expected default or not null, not \"UNIQUE\""},
        {"add domain d INT DEFAULT", "expected a default at the end of the line"},
        {"add domain d INT DEFAULT (1)", "expected a default, not \"(\""},
        {"drop domain d", "there is no domain d"},
        {"drop domain money", "domain money is used by column lonely.only"},
        {"type domain d INT", "there is no domain d"},
        {"use domain d for lonely.only", "there is no domain d"},
        {"use domain money for lonely.other", "there is no column other in table lonely"},
        {"use domain money for search.text", "search is a virtual table, whose columns are not its own"},
        {"use domain money in lonely.only", "expected for, not \"in\""},
        {"use domain money for lonely.only", "column lonely.only uses the domain already"},
    });
}

} // namespace
