#!/usr/bin/env python3
"""Rules, domains and properties in scripts: what the user is told, what a drop takes with it, and that undo brings it
back.

    edit_rules_test.py KELM_SCHEMA

Each rule is tested line by line in schema_rules_test.cpp.
"""
import os
import unittest

import schema_tool

PROJ = "/usr/share/proj/proj.db"

SHOP = """
CREATE TABLE customer (id INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE item (number INTEGER PRIMARY KEY, price REAL DEFAULT 1.0 NOT NULL);
CREATE TABLE sale (customer REFERENCES customer, item INT REFERENCES item (number), gone REFERENCES nowhere,
                   again REFERENCES customer (id), price);
"""


class EditRules(schema_tool.ToolTest):
    def edit(self, source, script, *options):
        """Exit code, output and the sentence on stderr."""
        path = self.folder / "script.edits"
        path.write_text(script)
        done = schema_tool.run("edit", *options, source, path)
        return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")

    def test_a_broken_rule_is_one_sentence_with_the_number_of_its_line(self):
        source = self.make(SHOP)
        for line, why in (("rename table sale ITEM", "there is already a table item"),
                          ("add index Sale on item (price)", "there is already a table sale"),
                          ("add column sale.GONE TEXT", "there is already a column sale.gone"),
                          ("add primary key on item (price)", "table item has a primary key already"),
                          ("add foreign key on sale (price) to price", "there is no table price"),
                          ("add foreign key on sale (price, item) to item",
                           "the foreign key has 2 columns, its target 1"),
                          ("drop table customer", "table customer is used by a foreign key of table sale"),
                          ("drop domain d", "domain d is used by column sale.price"),
                          ("set property state of item to new", "new is none of the choices of property state")):
            with self.subTest(line):
                good = "add domain d INT\nuse domain d for sale.price\n" \
                       "define property state on table choices (a, b)\n\n"
                self.assertEqual(self.edit(source, good + line + "\nshow\n"),
                                 (1, "", f"kelm-schema: line 5: {why}\n"))

    def test_a_schema_that_breaks_a_rule_can_be_read_and_edited(self):
        code, shown, error = self.edit(self.make(SHOP), "rename column sale.gone left\nshow sale")
        self.assertEqual((code, error), (0, ""))
        self.assertIn("foreign key (\"left\") -> nowhere  unresolved: no such table\n", shown)

    def test_a_drop_takes_foreign_keys_with_it_when_asked_to(self):
        source = self.make(SHOP)
        code, shown, error = self.edit(
            source, "show\ndrop table customer\nshow sale\nundo\nshow\nredo\nshow sale\nhistory\n",
            "--on-referenced-drop=drop-keys")
        sale = ("table sale\n  customer\n  item      INT\n  gone\n  again\n  price\n"
                "  foreign key (item) -> item (number)\n"
                "  foreign key (gone) -> nowhere  unresolved: no such table\n")
        self.assertEqual((code, error), (0, ""))
        self.assertEqual(shown, self.tree(source) + sale + self.tree(source) + sale + "1  drop table customer\n")

    def test_a_drop_is_refused_when_nothing_else_is_asked_for(self):
        source = self.make(SHOP)
        expected = (1, "", "kelm-schema: line 1: table item is used by a foreign key of table sale\n")
        self.assertEqual(self.edit(source, "drop table item"), expected)
        self.assertEqual(self.edit(source, "drop table item", "--on-referenced-drop=refuse"), expected)
        for bad in ("", "0", "1", "cascade"):
            with self.subTest(bad):
                code, shown, error = self.edit(source, "", f"--on-referenced-drop={bad}")
                self.assertEqual((code, shown), (1, ""))
                self.assertRegex(error, r"\Akelm-schema: [^\n]*--on-referenced-drop[^\n]*--help tells more\n\Z")

    def test_domains_and_properties_are_shown_and_taken_back(self):
        source = self.make(SHOP)
        code, shown, error = self.edit(source, """
add domain money "DECIMAL(10, 2)" DEFAULT 0 NOT NULL
use domain money for item.price
use domain money for sale.price
type column sale.price TEXT
type domain money BIGINT
define property owner on table default nobody
define property tags on column
set property owner of item to Ann
set property tags of item.price to "shown, taxed"
show item
show
undo 9
show
""")
        self.assertEqual((code, error), (0, ""))
        item = ("table item\n  number  INTEGER  pk 1\n"
                "  price   BIGINT   not null  default 0  domain money  tags = shown, taxed\n"
                "  primary key (number)\n  property owner = Ann\n")
        self.assertTrue(shown.startswith(item + "made.db: "), shown)
        self.assertIn("\n\ndomain money  BIGINT  not null  default 0\n"
                      "\nproperty owner on table  default nobody\nproperty tags on column\n\n", shown)
        self.assertIn("  price     TEXT  not null  default 0  domain money\n", shown)
        self.assertTrue(shown.endswith(self.tree(source)))

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_a_real_schema_loses_a_table_with_all_that_refers_to_it_and_gets_it_back(self):
        before = self.tree(PROJ)
        keys = before.count(" -> unit_of_measure (")
        self.assertGreater(keys, 1)
        code, shown, error = self.edit(
            PROJ, "drop table unit_of_measure\nshow\nadd domain code TEXT\nuse domain code for scope.scope\n"
            "define property owner on table\nset property owner of extent to Ann\n"
            "undo 5\nshow\n", "--on-referenced-drop", "drop-keys")
        self.assertEqual((code, error), (0, ""))
        self.assertTrue(shown.endswith(before))
        after = shown[:-len(before)]
        self.assertNotIn(" -> unit_of_measure (", after)
        self.assertEqual(after.count("\n  foreign key"), before.count("\n  foreign key") - keys)


schema_tool.main()
