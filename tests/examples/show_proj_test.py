#!/usr/bin/env python3
"""A real schema: what is shown of proj.db is what SQLite says of it.

    show_proj_test.py KELM_SCHEMA
"""
import os
import shutil
import subprocess
import sys
import unittest

import schema_oracle
import schema_tool

PROJ = "/usr/share/proj/proj.db"


@unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
class ShowProj(schema_tool.ToolTest):
    def test_has_the_known_numbers_of_everything(self):
        counts = self.json(PROJ)["counts"]
        self.assertEqual([counts[what] for what in ("tables", "triggers", "views", "indexes")], [35, 35, 7, 13])

    def test_json_agrees_with_sqlite_in_everything(self):
        self.assertEqual(schema_oracle.reduced(self.json(PROJ)), schema_oracle.Oracle(PROJ).schema())

    def test_json_tool_of_python_reads_it(self):
        shown = schema_tool.run("show", "--json", PROJ).stdout
        checked = subprocess.run([sys.executable, "-m", "json.tool"], input=shown, capture_output=True)
        self.assertEqual(checked.returncode, 0, checked.stderr)

    def test_all_foreign_keys_find_their_targets(self):
        keys = [key for table in self.json(PROJ)["tables"] for key in table["foreign_keys"]]
        self.assertEqual(len(keys), 50)
        self.assertTrue(all(key["resolved"] for key in keys))

    def test_first_line_of_the_tree_counts(self):
        shown = self.json(PROJ)["counts"]
        first = self.tree(PROJ).splitlines()[0]
        self.assertEqual(first, f"proj.db: 35 tables, {shown['columns']} columns, {shown['primary_keys']} primary keys,"
                                f" {shown['foreign_keys']} foreign keys, 13 indexes, 7 views, 35 triggers")

    def test_tree_has_a_line_for_each_thing(self):
        lines = self.lines(PROJ)
        counts = self.json(PROJ)["counts"]
        for start, what in (("table ", "tables"), ("view ", "views"), ("trigger ", "triggers"),
                            ("foreign key (", "foreign_keys"), ("primary key (", "primary_keys")):
            self.assertEqual(sum(line.startswith(start) for line in lines), counts[what], what)
        self.assertEqual(sum(line.startswith(("index ", "unique index ")) for line in lines), counts["indexes"])

    def test_shows_the_table_usage_as_a_reader_wants_it(self):
        lines = self.block(PROJ, "table usage")
        self.assertEqual(lines[:3], ["  auth_name          TEXT             pk 1",
                                     "  code               INTEGER_OR_TEXT  pk 2",
                                     "  object_table_name  TEXT             not null"])
        self.assertIn("  primary key (auth_name, code)", lines)
        self.assertIn("  foreign key (extent_auth_name, extent_code) -> extent (auth_name, code)"
                      "  on delete cascade", lines)
        self.assertFalse([line for line in lines if "autoindex" in line])

    def test_leaves_no_trace_beside_the_database(self):
        copy = self.folder / "copy.db"
        shutil.copyfile(PROJ, copy)
        self.tree(copy)
        self.assertEqual([path.name for path in self.folder.iterdir()], ["copy.db"])


schema_tool.main()
