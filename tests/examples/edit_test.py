#!/usr/bin/env python3
"""Scripts of edits: what they print, what they refuse, and that undo brings all of it back.

    edit_test.py KELM_SCHEMA

What each edit does and each wrong line says is tested line by line in schema_editor_test.cpp.
"""
import os
import subprocess
import unittest

import schema_tool

PROJ = "/usr/share/proj/proj.db"

SMALL = """
CREATE TABLE author (id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE COLLATE NOCASE, born);
CREATE TABLE "the books" (isbn TEXT PRIMARY KEY, "by whom" REFERENCES author, title, year INT,
                          FOREIGN KEY (year) REFERENCES years (number)) WITHOUT ROWID;
CREATE INDEX by_title ON "the books" (title DESC, year);
CREATE UNIQUE INDEX recent ON "the books" (lower(title)) WHERE year > 2000;
CREATE VIEW old AS SELECT title FROM "the books" WHERE year < 1900;
CREATE TRIGGER guard BEFORE DELETE ON author BEGIN SELECT RAISE(ABORT, 'no'); END;
"""

EDITS = """
rename table author "a ""person\"""     # with a quote inside
rename column "A ""Person\""".ID number
type column "a ""person\""".number BIGINT(20)
move column "a ""person\""".born 1
ADD COLUMN "the books".pages DECIMAL(5, 0)
Add Index by_pages On "the books" (pages, "by whom")
drop index BY_TITLE
drop index recent
drop column "the books".title
rename table "the books" books
"""


class Edit(schema_tool.ToolTest):
    def edit(self, source, script):
        """What a script prints that has no wrong line."""
        done = schema_tool.run("edit", source, self.write(script))
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode("utf-8")

    def write(self, script):
        path = self.folder / "script.edits"
        path.write_bytes(script if isinstance(script, bytes) else script.encode("utf-8"))
        return path

    def wrong(self, source, script):
        """What a script prints before its wrong line, and the sentence about that."""
        done = schema_tool.run("edit", source, self.write(script))
        self.assertEqual(done.returncode, 1, done)
        sentence = done.stderr.decode("utf-8")
        self.assertRegex(sentence, r"\Akelm-schema: line [0-9]+: [^\n]+\n\Z")
        return done.stdout.decode("utf-8"), sentence[len("kelm-schema: "):-1]

    def check_comes_back(self, source, edits):
        """Each state that the edits pass is met again on the way back and on the way forth, byte for byte."""
        lines = [line for line in edits.splitlines() if line]
        shown = self.edit(source, "show\n" + "".join(f"{line}\nshow\n" for line in lines) +
                          "undo\nshow\n" * len(lines) + "redo\nshow\n" * len(lines) + f"undo {len(lines)}\nshow\n")
        start = self.tree(source).split("\n")[0].split(" ")[0]
        states = [start + rest for rest in shown.split(start)[1:]]
        self.assertEqual(len(states), 3 * len(lines) + 2)
        there = states[:len(lines) + 1]
        self.assertEqual(there[0], self.tree(source))
        self.assertEqual(len(set(there)), len(there))
        self.assertEqual(states, there + there[-2::-1] + there[1:] + there[:1])

    def test_show_prints_what_the_command_show_prints(self):
        source = self.make(SMALL)
        self.assertEqual(self.edit(source, "show"), self.tree(source))
        self.assertEqual(self.edit(source, 'show "THE books"\nshow OLD\nshow author\n').splitlines(),
                         [line for first in ('table "the books"  without rowid', "view old", "table author")
                          for line in (first, *self.block(source, first))])

    def test_every_edit_is_seen(self):
        self.assertEqual(self.edit(self.make(SMALL), EDITS + 'show "a ""person"""\nshow books\n').splitlines(), [
            'table "a ""person"""',
            "  born",
            "  number  BIGINT(20)  pk 1",
            "  name    TEXT        not null  collate NOCASE",
            "  primary key (number)",
            "  unique (name)",
            "  trigger guard  BEFORE DELETE ON author BEGIN SELECT RAISE(ABORT, 'no'); END",
            "table books  without rowid",
            "  isbn       TEXT           not null  pk 1",
            '  "by whom"',
            "  year       INT",
            "  pages      DECIMAL(5, 0)",
            "  primary key (isbn)",
            '  foreign key ("by whom") -> "a ""person""" (number)',
            "  foreign key (year) -> years (number)  unresolved: no such table",
            '  index by_pages (pages, "by whom")',
        ])

    def test_a_new_index_has_the_collations_of_its_columns(self):
        shown = self.edit(self.make(SMALL), "add index i on author (name, born)\nshow author")
        self.assertIn("  index i (name, born)\n", shown)

    def test_edits_undone_leave_every_byte_as_it_was(self):
        self.check_comes_back(self.make(SMALL), EDITS)

    def test_a_dropped_table_comes_back_with_all_it_owned(self):
        self.check_comes_back(self.make(SMALL), 'drop table "the books"\ndrop table author\n')

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_edits_of_a_real_schema_undone_leave_every_byte_as_it_was(self):
        self.check_comes_back(PROJ, "\n".join((
            "rename table extent area",
            "rename table metadata \"meta data\"",
            "rename column area.code \"area code\"",
            "drop index idx_usage_object",
            "drop column usage.object_code",
            "move column area.deprecated 1",
            "type column area.south_lat \"DOUBLE PRECISION\"",
            "add column area.remarks VARCHAR(200)",
            "add index idx_area_remarks on area (remarks, deprecated)",
            "drop table usage",
            "drop table area")))

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_a_rename_reaches_every_foreign_key_of_a_real_schema(self):
        before = self.tree(PROJ).splitlines()
        after = self.edit(PROJ, "rename table ellipsoid figure\nshow").splitlines()
        self.assertEqual(len(before), len(after))
        changed = [(a, b) for a, b in zip(before, after) if a != b]
        self.assertEqual([b for _, b in changed if not b.startswith("  foreign key")], ["table figure  without rowid"])
        self.assertGreater(len(changed), 1)
        for a, b in changed[1:]:
            self.assertEqual(a.replace("-> ellipsoid (", "-> figure ("), b)

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_what_a_real_schema_needs_cannot_be_dropped(self):
        for line, why in (("drop table extent", "table extent is used by a foreign key of table usage"),
                          ("drop column extent.code", "column extent.code is used by the primary key of table extent"),
                          ("drop column usage.scope_code",
                           "column usage.scope_code is used by a foreign key of table usage"),
                          ("drop column usage.object_code",
                           "column usage.object_code is used by index idx_usage_object")):
            with self.subTest(line):
                self.assertEqual(self.wrong(PROJ, line), ("", f"line 1: {why}"))

    def test_history_marks_what_can_be_redone(self):
        edits = ("drop index recent\n  drop   INDEX\tby_title  # gone\n"
                 "rename table author \"a # b\"\n")
        self.assertEqual(self.edit(self.make(SMALL), "history\n" + edits + "undo 2\nredo\nhistory\n"),
                         "no edits\n1  drop index recent\n2  drop INDEX by_title\n"
                         "3  rename table author \"a # b\"  (undone)\n")

    def test_a_wrong_line_ends_the_script_with_its_number(self):
        source = self.make(SMALL)
        good = "# one\n\nrename table author writer\r\nshow writer\n"
        changed = self.edit(source, good)
        self.assertTrue(changed.startswith("table writer\n"))
        for line, why in (("drop table nobody", "there is no table nobody"),
                          ("rename table writer \"The Books\"", "there is already a table \"the books\""),
                          ("drop table author", "there is no table author"),
                          ("drop table writer", "table writer is used by a foreign key of table \"the books\""),
                          ("drop column writer.id", "column writer.id is used by the primary key of table writer"),
                          ("drop column \"the books\".title",
                           "column \"the books\".title is used by index by_title"),
                          ("rename column \"the books\".year \"when\"",
                           "column \"the books\".year is used by the SQL of index recent"),
                          ("move column writer.born 4", "position 4 is not between 1 and 3"),
                          ("add column writer.x", "expected a type at the end of the line"),
                          ("add column writer.x INT PRIMARY KEY", "expected the end of the line, not \"PRIMARY\""),
                          ("add index recent on writer (born)", "there is already an index recent"),
                          ("drop index recent now", "expected the end of the line, not \"now\""),
                          ("undo 2", "cannot undo 2 edits, there is only 1"),
                          ("redo", "there is nothing to redo"),
                          ("drop table \"writer", "a quoted name does not end"),
                          ("drop table \"two\x1b[31m\"", "there is no table \"two␛[31m\""),
                          ("sing", "expected a command, not \"sing\"")):
            with self.subTest(line):
                self.assertEqual(self.wrong(source, f"{good}{line}\nshow\nsing\n"), (changed, f"line 5: {why}"))
        self.assertEqual(self.wrong(source, b"show author\ndrop table \xff\n")[1], "line 2: the line is not UTF-8")

    def test_a_script_may_be_empty_and_its_last_line_need_not_end(self):
        source = self.make(SMALL)
        for script in ("", "\n", "# nothing", " \t\n#\n"):
            self.assertEqual(self.edit(source, script), "")
        self.assertEqual(self.wrong(source, "\n\nsing"), ("", 'line 3: expected a command, not "sing"'))

    def test_a_script_may_come_from_standard_input(self):
        source = self.make(SMALL)
        done = schema_tool.run("edit", source, "-", input=b"drop index recent\nhistory\nsing\n")
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (1, b"1  drop index recent\n", b'kelm-schema: line 3: expected a command, not "sing"\n'))
        done = schema_tool.run("edit", source, "-", input=b"")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))

    def test_the_database_stays_as_it_is(self):
        source = self.make(SMALL)
        content = source.read_bytes()
        self.edit(source, EDITS)
        self.assertEqual(source.read_bytes(), content)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["made.db", "script.edits"])

    def test_what_cannot_be_read_is_told_in_one_sentence(self):
        source = self.make(SMALL)
        script = self.write("show\n")
        missing = self.folder / "nowhere"
        self.assertEqual(self.refused("edit", missing, script), f'there is no file "{missing}"')
        self.assertEqual(self.refused("edit", script, script), f'"{script}" is neither an SQLite database nor a whole file of kelm-schema')
        self.assertEqual(self.refused("edit", source, missing),
                         f'cannot read script "{missing}": No such file or directory')
        self.assertEqual(self.refused("edit", source, self.folder),
                         f'cannot read script "{self.folder}": Is a directory')

    def test_wrong_use_is_told_and_help_is_no_error(self):
        for arguments in (("edit",), ("edit", "a.db"), ("edit", "a.db", "b", "c"), ("edit", "--json", "a.db", "b")):
            with self.subTest(arguments):
                self.assertIn("--help", self.refused(*arguments))
        done = schema_tool.run("edit", "--help")
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        for word in (b"rename column T.C D", b"add index I on T (C, D)", b"undo [N]", b"history"):
            self.assertIn(word, done.stdout)

    def test_output_that_cannot_be_written_is_told(self):
        source = self.make(SMALL)
        with open("/dev/full", "wb") as full:
            done = subprocess.run([schema_tool.TOOL, "edit", source, self.write("show")], stdout=full,
                                  stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (1, b"kelm-schema: cannot write the output\n"))


schema_tool.main()
