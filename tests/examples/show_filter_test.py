#!/usr/bin/env python3
"""What `show` leaves out and how it sorts, as text and as JSON.

    show_filter_test.py KELM_SCHEMA
"""
import json
import os
import sqlite3
import unittest

import schema_tool

PROJ = "/usr/share/proj/proj.db"

LIBRARY = """
CREATE TABLE reader (id INTEGER PRIMARY KEY, name);
CREATE TABLE Book (id INTEGER PRIMARY KEY, title, year, shelf);
CREATE TABLE copy (book REFERENCES Book, number);
CREATE INDEX by_year ON Book (year DESC, title) WHERE year > 1900;
CREATE UNIQUE INDEX By_title ON Book (title);
CREATE INDEX a_reader ON reader (name, id, name COLLATE NOCASE);
CREATE VIEW old_books AS SELECT title FROM Book;
CREATE VIEW BOOKS AS SELECT * FROM Book;
CREATE TRIGGER z_first AFTER INSERT ON Book BEGIN SELECT 1; END;
CREATE TRIGGER on_view INSTEAD OF INSERT ON books BEGIN SELECT 1; END;
CREATE TRIGGER a_last AFTER DELETE ON reader BEGIN SELECT 1; END;
"""


class ShowFilter(schema_tool.ToolTest):
    def show(self, path, *options):
        done = schema_tool.run("show", path, *options)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode("utf-8")

    def json_of(self, path, *options):
        return json.loads(self.show(path, "--json", *options))

    def names(self, path, *options):
        """By the key of their list; and the text tells of the same in the same order."""
        found = self.json_of(path, *options)
        names = {key: [each["name"] for each in found[key]] for key in found if key not in ("file", "counts")}
        heads = [line for line in self.show(path, *options).splitlines()[1:] if line and not line.startswith(" ")]
        firsts = {"tables": ("table ", "virtual table "), "views": ("view ",), "triggers": ("trigger ",),
                  "indexes": ("index ", "unique index ")}
        for key, expected in names.items():
            lines = [line for line in heads if line.startswith(firsts[key])]
            self.assertEqual(len(lines), len(expected))
            for line, name in zip(lines, expected):
                self.assertIn(f" {name} ", line + " ")
        return names

    def test_each_option_chooses_and_sorts(self):
        source = self.make(LIBRARY)
        for options, expected in (
                ((), {"tables": ["Book", "copy", "reader"], "views": ["BOOKS", "old_books"]}),
                (("--type", "table"), {"tables": ["Book", "copy", "reader"]}),
                (("--type", "view"), {"views": ["BOOKS", "old_books"]}),
                (("--type", "index"), {"indexes": ["by_year", "By_title", "a_reader"]}),
                (("--type", "trigger"), {"triggers": ["z_first", "a_last", "on_view"]}),
                (("--type", "view", "--type", "table", "--type", "view"),
                 {"tables": ["Book", "copy", "reader"], "views": ["BOOKS", "old_books"]}),
                (("--type", "trigger,index", "--sort", "name"),
                 {"indexes": ["a_reader", "By_title", "by_year"], "triggers": ["a_last", "on_view", "z_first"]}),
                (("--sort", "name"), {"tables": ["Book", "copy", "reader"], "views": ["BOOKS", "old_books"]}),
                (("--sort", "columns"), {"tables": ["Book", "copy", "reader"], "views": ["BOOKS", "old_books"]}),
                (("--sort", "file-order"), {"tables": ["reader", "Book", "copy"], "views": ["old_books", "BOOKS"]}),
                (("--sort", "columns", "--type", "index"), {"indexes": ["a_reader", "by_year", "By_title"]}),
                (("--sort", "file-order", "--type", "trigger"), {"triggers": ["z_first", "on_view", "a_last"]}),
                (("--name", "*book*"), {"tables": ["Book"], "views": ["BOOKS", "old_books"]}),
                (("--name", "BOOK?", "--type", "view"), {"views": ["BOOKS"]}),
                (("--name", "[a-b]*", "--type", "index", "--sort", "file-order"),
                 {"indexes": ["by_year", "By_title", "a_reader"]}),
                (("--name", "copy", "--type", "table", "--type", "index"), {"tables": ["copy"], "indexes": []}),
                (("--name", ""), {"tables": [], "views": []})):
            with self.subTest(options):
                self.assertEqual(self.names(source, *options), expected)

    def test_parts_outside_their_table_tell_its_name(self):
        source = self.make(LIBRARY)
        self.assertEqual(self.show(source, "--type", "trigger", "--type", "index", "--name", "*y*").splitlines()[1:], [
            "", "index by_year on Book (year desc, title)  where year > 1900", "unique index By_title on Book (title)"])
        self.assertEqual(self.show(source, "--type", "trigger", "--name", "on*").splitlines()[1:], [
            "", "trigger on_view on BOOKS  INSTEAD OF INSERT ON books BEGIN SELECT 1; END"])
        found = self.json_of(source, "--type=index,trigger")
        self.assertEqual([(each["name"], each["table"]) for each in found["indexes"] + found["triggers"]],
                         [("by_year", "Book"), ("By_title", "Book"), ("a_reader", "reader"),
                          ("z_first", "Book"), ("a_last", "reader"), ("on_view", "BOOKS")])
        within = {each["name"]: each for table in self.json(source)["tables"] for each in table["indexes"]}
        for each in found["indexes"]:
            del each["table"]
            self.assertEqual(each, within[each["name"]])

    def test_what_is_shown_is_shown_whole(self):
        source = self.make(LIBRARY)
        blocks = self.show(source).split("\n\n")
        self.assertEqual(self.show(source, "--name", "book"), blocks[0] + "\n\n" + blocks[1] + "\n")
        self.assertEqual(self.show(source, "--type", "table,view"), self.show(source))

    def test_counts_are_those_of_the_whole_schema(self):
        source = self.make(LIBRARY)
        for options in (("--type", "index"), ("--name", "nothing"), ("--sort", "columns")):
            self.assertEqual(self.json_of(source, *options)["counts"], self.json(source)["counts"])
            self.assertEqual(self.show(source, *options).splitlines()[0], self.show(source).splitlines()[0])

    def test_nothing_to_show_is_told(self):
        source = self.make(LIBRARY)
        for options in (("--name", "nothing"), ("--name", "nothing", "--type", "index")):
            self.assertEqual(self.show(source, *options).splitlines()[1:], ["", "nothing to show"])
        empty = self.make("", "empty.db")
        self.assertEqual(self.show(empty).splitlines()[1:], ["", "no tables"])
        self.assertEqual(self.show(empty, "--type", "view").splitlines()[1:], ["", "nothing to show"])

    def test_wrong_use_is_told(self):
        source = self.make(LIBRARY)
        for options in (("--type",), ("--type", "column"), ("--type", "table,,view,x"), ("--type", "TABLE"),
                        ("--sort", "size"), ("--sort",), ("--name",)):
            with self.subTest(options):
                self.assertIn("--help", self.refused("show", source, *options))

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_a_real_schema_is_chosen_from_and_sorted_as_sqlite_does(self):
        database = sqlite3.connect(f"file:{PROJ}?mode=ro", uri=True)

        def rows(kind, order, pattern="*"):
            return [row[0] for row in database.execute(
                "SELECT name FROM sqlite_master WHERE type = ? AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'"
                f" AND lower(name) GLOB lower(?) ORDER BY {order}", (kind, pattern))]

        lists = {"table": "tables", "view": "views", "index": "indexes", "trigger": "triggers"}
        width = "(SELECT count(*) FROM pragma_table_xinfo(sqlite_master.name)) DESC, lower(name)"
        for kind, key in lists.items():
            for sort, order in (("name", "lower(name)"), ("file-order", "rowid")):
                for pattern in ("*", "*CRS*", "?o*"):
                    with self.subTest((kind, sort, pattern)):
                        expected = rows(kind, order, pattern)
                        self.assertEqual(
                            self.names(PROJ, "--type", kind, "--sort", sort, "--name", pattern), {key: expected})
        self.assertGreater(len(rows("table", "rowid", "*CRS*")), 1)
        self.assertNotEqual(rows("table", "rowid"), rows("table", "lower(name)"))
        for kind in ("table", "view"):
            self.assertEqual(self.names(PROJ, "--type", kind, "--sort", "columns"), {lists[kind]: rows(kind, width)})


schema_tool.main()
