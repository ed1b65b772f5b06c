#!/usr/bin/env python3
"""Schemas in files of their own: imported, shown, edited by one process after the other, and taken back.

    files_test.py KELM_SCHEMA
"""
import json
import os
import unittest

import schema_tool
from schema_tool import SIGNED

PROJ = "/usr/share/proj/proj.db"

SMALL = """
CREATE TABLE author (id INTEGER PRIMARY KEY, name TEXT NOT NULL COLLATE NOCASE, born);
CREATE TABLE "the Bücher" (isbn TEXT PRIMARY KEY, "by whom" REFERENCES author, title, year INT) WITHOUT ROWID;
CREATE INDEX by_title ON "the Bücher" (title DESC, year);
CREATE VIEW old AS SELECT title FROM "the Bücher" WHERE year < 1900;
CREATE TRIGGER guard BEFORE DELETE ON author BEGIN SELECT RAISE(ABORT, 'no'); END;
"""

EDITS = """rename table author writer
add domain money DECIMAL(10,2) default 0 not null
add column writer.fee TEXT
use domain money for writer.fee
define property owner on table, column default nobody choices (nobody, Änne)
set property owner of writer to "Änne"
drop index by_title
drop table "the Bücher"
"""


class Files(schema_tool.ToolTest):
    def state(self, path):
        return self.tree(path), self.json(path)

    def check_survives(self, database, edits):
        """Each edit by a process of its own, then each taken back by one."""
        path = self.imported(database)
        start = self.state(database)
        self.assertEqual(self.state(path), start)
        states = [start[0]]
        lines = edits.splitlines()
        for line in lines:
            self.assertEqual(self.apply(path, line + "\n"), "")
            states.append(self.tree(path))
        self.assertEqual(self.done("log", path),
                         "".join(f"{n}  {SIGNED}  {line}\n" for n, line in enumerate(lines, 1)))
        for line, before in zip(reversed(lines), states[-2::-1]):
            self.assertEqual(self.done("undo", path), f"undone: {line}\n")
            self.assertEqual(self.tree(path), before)
        self.assertEqual(self.state(path), start)
        self.assertEqual(self.done("log", path), "no edits\n")

    def test_a_saved_schema_is_that_of_its_database_and_remembers_each_edit(self):
        self.check_survives(self.make(SMALL), EDITS)

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_a_real_schema_as_well(self):
        self.check_survives(PROJ, "rename table extent area\ndrop index idx_usage_object\ndrop table usage\n")

    def test_what_users_define_is_told_to_programs(self):
        path = self.imported(self.make(SMALL))
        self.apply(path, EDITS)
        shown = self.json(path)
        self.assertEqual(shown["domains"],
                         [{"name": "money", "type": "DECIMAL(10,2)", "not_null": True, "default": "0"}])
        self.assertEqual(shown["properties"], [{"name": "owner", "on_tables": True, "on_columns": True,
                                                "default": "nobody", "choices": ["nobody", "Änne"]}])
        writer = shown["tables"][0]
        self.assertEqual((writer["name"], writer["properties"]), ("writer", {"owner": "Änne"}))
        self.assertEqual([column.get("domain") for column in writer["columns"]], [None, None, None, "money"])
        self.assertNotIn("domains", self.json(self.folder / "made.db"))

    def test_the_database_is_only_read(self):
        source = self.make(SMALL)
        content = source.read_bytes()
        self.imported(source)
        self.assertEqual(source.read_bytes(), content)
        self.assertEqual(sorted(each.name for each in self.folder.iterdir()), ["made.db", "made.kelm"])

    def test_a_script_sees_what_earlier_ones_did_and_takes_it_back(self):
        path = self.imported(self.make(SMALL))
        start = self.tree(path)
        self.apply(path, "drop index by_title\nrename table author writer\n")
        self.assertEqual(self.apply(path, "history\nundo 2\nhistory\nshow\nredo\n"),
                         "1  drop index by_title\n2  rename table author writer\n"
                         "1  drop index by_title  (undone)\n2  rename table author writer  (undone)\n" + start)
        self.assertEqual(self.done("log", path), f"1  {SIGNED}  drop index by_title\n")
        self.assertEqual(self.apply(path, "history\n"), "1  drop index by_title\n")  # the other cannot be redone

    def test_several_edits_are_taken_back_at_once_and_never_too_many(self):
        path = self.imported(self.make(SMALL))
        start = self.state(path)
        self.apply(path, EDITS)
        content = path.read_bytes()
        count = len(EDITS.splitlines())
        self.assertEqual(self.refused("undo", path, str(count + 1)),
                         f'cannot undo {count + 1} edits, there are only {count} in "{path}"')
        self.assertEqual(path.read_bytes(), content)
        self.assertEqual(self.done("undo", path, str(count)).splitlines(),
                         [f"undone: {line}" for line in reversed(EDITS.splitlines())])
        self.assertEqual(self.state(path), start)
        self.assertEqual(self.refused("undo", path), f'there is nothing to undo in "{path}"')

    def test_edits_go_into_another_file_when_one_is_named(self):
        source = self.make(SMALL)
        path = self.imported(source)
        content = path.read_bytes()
        other = self.folder / "other.kelm"
        self.apply(path, "drop index by_title\n", "-o", other)
        self.assertEqual(path.read_bytes(), content)
        self.assertEqual(self.done("log", other), f"1  {SIGNED}  drop index by_title\n")
        content = source.read_bytes()
        self.apply(source, "drop index by_title\n", "-o", other)
        self.assertEqual(source.read_bytes(), content)
        self.assertEqual(self.done("log", other), f"1  {SIGNED}  drop index by_title\n")

    def test_a_script_with_a_wrong_line_saves_nothing(self):
        path = self.imported(self.make(SMALL))
        content = path.read_bytes()
        self.assertEqual(self.refused("edit", path, "-", input=b"drop index by_title\nsing\n"),
                         'line 2: expected a command, not "sing"')
        self.assertEqual(path.read_bytes(), content)

    def test_a_script_that_changes_nothing_leaves_the_file_alone(self):
        path = self.imported(self.make(SMALL))
        before = path.stat()
        self.apply(path, "show\ndrop index by_title\nundo\n# nothing\n")
        # The counter of transactions went on, so the content is another; this script makes none.
        self.apply(path, "show\n")
        inode = path.stat().st_ino
        self.apply(path, "show\nhistory\n")
        self.assertEqual(path.stat().st_ino, inode)
        self.assertEqual(path.stat().st_mode, before.st_mode)

    def test_permissions_and_links_are_kept(self):
        path = self.imported(self.make(SMALL))
        path.chmod(0o640)
        link = self.folder / "link.kelm"
        link.symlink_to(path.name)
        self.apply(link, "drop index by_title\n")
        self.assertTrue(link.is_symlink())
        self.assertEqual(path.stat().st_mode & 0o7777, 0o640)
        self.assertIn("drop index by_title", self.done("log", path))

    def test_edits_are_signed(self):
        path = self.imported(self.make(SMALL))
        self.apply(path, "add column author.a INT\n", "--author", "Änne; time=never",
                  "--time", "1999-12-31T23:59:59Z")
        self.apply(path, "add column author.b INT\nadd column author.c INT\nundo\nredo\n")
        self.assertEqual(self.done("log", path),
                         "1  1999-12-31T23:59:59Z  Änne; time=never  add column author.a INT\n"
                         "2  2026-11-21T10:00:00Z  ann               add column author.b INT\n"
                         "3  2026-11-21T10:00:00Z  ann               add column author.c INT\n")
        for arguments, why in (
                (("--author", "two\nlines"), 'the author "two␊lines" is no plain text'),
                (("--time", "yesterday"), 'the time "yesterday" is not of the form 2026-11-21T10:00:00Z'),
                (("--time", "2026-13-01T00:00:00Z"),
                 'the time "2026-13-01T00:00:00Z" is not of the form 2026-11-21T10:00:00Z')):
            self.assertEqual(self.refused("edit", path, "-", *arguments, input=b""), why)
        self.assertEqual(self.refused("edit", path, "-", input=b"",
                                      env=schema_tool.environment(SOURCE_DATE_EPOCH="soon")),
                         'SOURCE_DATE_EPOCH is no number of seconds: "soon"')

    def test_the_log_tells_each_change(self):
        path = self.imported(self.make(SMALL))
        self.apply(path, "rename table author writer\nadd column writer.x INT\n")
        shown = self.done("log", path, "--messages").splitlines()
        self.assertEqual([line for line in shown if not line.startswith("    ")],
                         [f"1  {SIGNED}  rename table author writer", f"2  {SIGNED}  add column writer.x INT"])
        self.assertTrue(any("writer" in line and "Name" in line for line in shown if line.startswith("    ")), shown)
        last = self.done("log", path, "--messages", "--last", "1").splitlines()
        self.assertEqual(last, shown[shown.index(f"2  {SIGNED}  add column writer.x INT"):])
        data = json.loads(self.done("log", path, "--json"))
        self.assertEqual(data["file"], str(path))
        self.assertEqual([(each["number"], each["name"], each["author"], each["time"])
                          for each in data["transactions"]],
                         [(1, "rename table author writer", "ann", "2026-11-21T10:00:00Z"),
                          (2, "add column writer.x INT", "ann", "2026-11-21T10:00:00Z")])
        self.assertEqual(["    " + text for each in data["transactions"] for text in each["messages"]],
                         [line for line in shown if line.startswith("    ")])


schema_tool.main()
