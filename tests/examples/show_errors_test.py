#!/usr/bin/env python3
"""What cannot be read is told in one sentence; what is empty is no error; nothing is ever written.

    show_errors_test.py KELM_SCHEMA
"""
import os
import shutil
import sqlite3
import subprocess
import unittest

import schema_tool

EMPTY = "0 tables, 0 columns, 0 primary keys, 0 foreign keys, 0 indexes, 0 views, 0 triggers"

MANY = "BEGIN;" + "".join(f"CREATE TABLE table_{n} (a, b, c);" for n in range(300)) + "COMMIT;"


class ShowErrors(schema_tool.ToolTest):
    def test_a_wrong_path_is_told_and_not_made(self):
        path = self.folder / "nowhere.db"
        self.assertEqual(self.refused("show", path), f'there is no file "{path}"')
        self.assertEqual(self.refused("show", path, "--json"), f'there is no file "{path}"')
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_names_that_sqlite_reads_in_its_own_way_are_files(self):
        for name in ("", ":memory:", "file:made.db?mode=rwc"):
            with self.subTest(name):
                self.assertEqual(self.refused("show", name, cwd=self.folder), f'there is no file "{name}"')
        self.assertEqual(list(self.folder.iterdir()), [])
        for name in (":memory:", "file:made.db?mode=rwc", "a %41?#&.db"):
            with self.subTest(name):
                self.make("CREATE TABLE t (a)").rename(self.folder / name)
                self.assertIn(b"1 table, 1 column,", schema_tool.run("show", name, cwd=self.folder).stdout)

    def test_what_is_no_file_is_told(self):
        self.assertEqual(self.refused("show", self.folder), f'"{self.folder}" is a directory, not a file')
        self.assertEqual(self.refused("show", "/dev/null"), '"/dev/null" is not a regular file')
        below = self.make("CREATE TABLE t (a)") / "below.db"
        self.assertIn(str(below), self.refused("show", below))

    def test_an_unreadable_file_is_told(self):
        path = self.make("CREATE TABLE t (a)")
        path.chmod(0)
        other = {}
        if os.geteuid() == 0:  # root may read all
            self.folder.chmod(0o755)
            other = {"user": 65534, "group": 65534, "extra_groups": []}
            try:
                subprocess.run([schema_tool.TOOL, "--help"], check=True, capture_output=True, **other)
            except (OSError, subprocess.CalledProcessError):
                self.skipTest("the program is out of reach for another user")
        self.assertEqual(self.refused("show", path, **other), f'cannot read "{path}": Permission denied')

    def test_what_is_no_database_is_told(self):
        path = self.folder / "text.db"
        path.write_bytes(b"SQLite format 3\0" + b"\xff" * 4080)
        self.assertEqual(self.refused("show", path), f'"{path}" is not an SQLite database')
        for content in (b"hello\n", b"CREATE TABLE t (a);\n" * 500, b"\0" * 5000):
            path.write_bytes(content)
            with self.subTest(content[:20]):
                self.assertEqual(self.refused("show", path),
                                 f'"{path}" is neither an SQLite database nor a whole file of kelm-schema')

    def test_a_truncated_database_is_told(self):
        whole = self.make(MANY).read_bytes()
        self.assertGreater(len(whole), 100000)
        for length in (4096, 20480, len(whole) // 2, len(whole) - 4096):
            path = self.folder / "cut.db"
            path.write_bytes(whole[:length])
            with self.subTest(length):
                self.assertEqual(self.refused("show", path), f'"{path}" is damaged: database disk image is malformed')
                self.refused("show", path, "--json")

    def test_a_database_damaged_in_its_midst_is_told(self):
        path = self.make(MANY)
        content = bytearray(path.read_bytes())
        at = content.index(b"CREATE TABLE table_250")
        page = at // 4096 * 4096
        content[page:page + 4096] = b"\x5a" * 4096
        path.write_bytes(content)
        self.assertIn(f'"{path}" is damaged: ', self.refused("show", path))

    def test_damaged_sql_in_the_schema_is_told(self):
        path = self.make("CREATE TABLE fine (a); CREATE TABLE other (b);")
        content = path.read_bytes()
        self.assertEqual(content.count(b"CREATE TABLE other"), 1)
        path.write_bytes(content.replace(b"CREATE TABLE other", b"CREATE TABLE (ther"))
        self.assertIn("malformed database schema (other)", self.refused("show", path))

    def test_a_format_of_the_future_is_told(self):
        path = self.make("CREATE TABLE t (a)")
        content = bytearray(path.read_bytes())
        content[44:48] = (9).to_bytes(4, "big")
        path.write_bytes(content)
        self.assertEqual(self.refused("show", path), f'cannot read "{path}": unsupported file format')

    def test_a_sentence_is_one_line_whatever_the_names(self):
        self.assertEqual(self.refused("show", "two\nlines \x1b[31m"), 'there is no file "two␊lines ␛[31m"')
        self.assertEqual(self.refused("show", b"\xff.db"), 'there is no file "\ufffd.db"')

    def test_any_damage_of_the_schema_ends_in_an_answer_or_a_sentence(self):
        """Bytes of the first pages are overwritten one by one."""
        whole = self.make("CREATE TABLE a (b PRIMARY KEY, c REFERENCES a (b)); CREATE INDEX i ON a (lower(c), b);"
                          "CREATE VIEW v AS SELECT * FROM a; CREATE TRIGGER t AFTER DELETE ON a BEGIN SELECT 1; END;"
                          ).read_bytes()
        path = self.folder / "hurt.db"
        places = list(range(16, 116, 4)) + list(range(3600, 4096, 12))
        outcomes = set()
        for place in places:
            content = bytearray(whole)
            content[place] ^= 0xff
            path.write_bytes(content)
            done = schema_tool.run("show", path)
            outcomes.add(done.returncode)
            with self.subTest(place):
                self.assertIn(done.returncode, (0, 1), done.stderr)
                if done.returncode:
                    self.assertEqual(done.stdout, b"")
                    self.assertRegex(done.stderr, rb"\Akelm-schema: [^\n]+\n\Z")
        self.assertEqual(outcomes, {0, 1})

    def test_an_empty_database_has_no_tables(self):
        nothing = self.folder / "nothing.db"
        nothing.write_bytes(b"")
        for path in (nothing, self.make("CREATE TABLE t (a); DROP TABLE t;")):
            self.assertEqual(self.tree(path), f"{path.name}: {EMPTY}\n\nno tables\n")
            shown = self.json(path)
            self.assertEqual((shown["file"], shown["tables"], shown["views"]), (str(path), [], []))
            self.assertEqual(set(shown["counts"].values()), {0})
        self.assertEqual(nothing.read_bytes(), b"")

    def test_a_database_with_a_log_is_read_without_a_trace(self):
        path = self.make("PRAGMA journal_mode = WAL; CREATE TABLE t (a);")
        self.assertIn("1 table, 1 column", self.tree(path))
        self.assertEqual([entry.name for entry in self.folder.iterdir()], [path.name])

    def test_a_log_in_use_is_read_and_a_lost_one_is_not_taken_over(self):
        path = self.folder / "live.db"
        writer = sqlite3.connect(path)
        writer.executescript("PRAGMA journal_mode = WAL; CREATE TABLE t (a);")
        self.assertIn("1 table, 1 column", self.tree(path))
        lost = self.folder / "lost.db"
        shutil.copy(path, lost)
        shutil.copy(f"{path}-wal", f"{lost}-wal")
        writer.close()
        self.assertEqual(self.refused("show", lost),
                         f'"{lost}" has a log that only a program that may write can take over')
        self.assertFalse(os.path.exists(f"{lost}-shm"))

    def test_a_locked_database_is_told(self):
        path = self.make("CREATE TABLE t (a)")
        writer = sqlite3.connect(path, isolation_level=None)
        writer.execute("BEGIN EXCLUSIVE")
        self.assertEqual(self.refused("show", path), f'"{path}" is locked by another program')
        writer.close()

    def test_wrong_use_is_told(self):
        for arguments in ((), ("show",), ("show", "a.db", "b.db"), ("show", "--xml", "a.db"), ("sing",)):
            with self.subTest(arguments):
                self.assertIn("--help", self.refused(*arguments))

    def test_help_is_no_error(self):
        for arguments in (("--help",), ("show", "--help")):
            done = schema_tool.run(*arguments)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            self.assertIn(b"show", done.stdout)

    def test_output_that_cannot_be_written_is_told(self):
        path = self.make("CREATE TABLE t (a)")
        with open("/dev/full", "wb") as full:
            done = subprocess.run([schema_tool.TOOL, "show", path], stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (1, b"kelm-schema: cannot write the output\n"))


schema_tool.main()
