#!/usr/bin/env python3
"""Logs of edits, replayed on other files.

    replay_test.py KELM_SCHEMA
"""
import shutil

import schema_tool
from schema_tool import SIGNED

SMALL = """
CREATE TABLE author (id INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE book (isbn TEXT PRIMARY KEY, by_whom REFERENCES author, title);
CREATE INDEX by_title ON book (title);
"""

EDITS = """rename table author "the \\ ""writer\"""
add column book.pages INT
move column book.pages 1
add index by_pages on book (pages, title)
add domain money DECIMAL(10,2) default 0
add column book.price TEXT
use domain money for book.price
define property owner on table, column choices (ann, bob)
set property owner of book to bob
set property owner of book.price to ann
drop index by_title
add foreign key on book (title) to "the \\ ""writer\"""
add column book.more TEXT
drop column book.more
"""


class Replay(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.source = self.make(SMALL)
        self.path = self.imported(self.source)
        self.log = self.folder / "edits.log"

    def copy(self):
        return shutil.copy(self.path, self.folder / "twin.kelm")

    def state(self, path):
        return self.tree(path), self.json(path)["tables"]

    def take_log(self, *arguments):
        self.assertEqual(self.done("log", self.path, "--replay", "-o", self.log, *arguments), "")

    def does_not_fit(self, path, why, *arguments):
        with open(path, "rb") as file:
            content = file.read()
        self.assertEqual(self.refused("replay", self.log, path, *arguments), f'the log does not fit "{path}": {why}')
        with open(path, "rb") as file:
            self.assertEqual(file.read(), content)

    def test_a_copy_becomes_the_same(self):
        twin = self.copy()
        start = self.state(twin)
        self.apply(self.path, EDITS)
        self.take_log()
        count = len(EDITS.splitlines())
        self.assertEqual(self.done("replay", self.log, twin), f"replayed {count} edits\n")
        self.assertEqual(self.state(twin), self.state(self.path))
        self.assertEqual(self.done("log", twin), self.done("log", self.path))
        self.done("undo", twin, str(count))
        self.assertEqual(self.state(twin), start)

    def test_another_import_becomes_the_same_but_for_its_name(self):
        self.apply(self.path, EDITS)
        self.take_log()
        other = self.imported(self.source.rename(self.folder / "renamed.db"), "other.kelm")
        self.done("replay", self.log, other)
        self.assertEqual(self.state(other)[0].replace("renamed.db", "made.db", 1), self.state(self.path)[0])

    def test_the_last_edits_fit_where_the_earlier_ones_were_made(self):
        self.apply(self.path, "rename table author writer\n")
        twin = self.copy()
        self.apply(self.path, "add column writer.born INT\nrename column writer.born birth\n")
        self.take_log("--last", "1")
        self.does_not_fit(twin, f"it has no object {self.born()}")
        self.take_log("--last", "2")
        self.assertEqual(self.done("replay", self.log, twin, "--author", "eve"), "replayed 2 edits\n")
        self.assertEqual(self.state(twin), self.state(self.path))
        self.assertEqual(self.done("log", twin),
                         f"1  {SIGNED}  rename table author writer\n"
                         f"2  {SIGNED.replace('ann', 'eve')}  add column writer.born INT\n"
                         f"3  {SIGNED.replace('ann', 'eve')}  rename column writer.born birth\n")

    def born(self):
        """The number of the newest column, which the log of its renaming knows it by."""
        return [int(line.split()[1]) for line in self.log.read_bytes().split(b"messages")[0].splitlines()[1:]
                if b'"born"' in line][0]

    def test_a_log_that_does_not_fit_changes_nothing(self):
        self.apply(self.path, "add column author.x INT\ndrop index by_title\n")
        self.take_log()
        other = self.imported(self.source, "other.kelm")
        self.apply(other, "add column author.y INT\nundo\n")  # its number is not given again
        first = int(self.log.read_bytes().split(b"makes ")[1].split()[0])
        self.does_not_fit(other, f"the edits make objects from number {first} on, "
                                 f"the next one there is number {first + 1}")
        renamed = self.imported(self.source, "renamed.kelm")
        self.apply(renamed, "rename table author writer\n")
        self.assertRegex(self.refused("replay", self.log, renamed),
                         r"\Athe log does not fit .*: object [0-9]+ is called writer there, not author\Z")
        poor = self.imported(self.make("", "poor.db"), "poor.kelm")
        self.assertRegex(self.refused("replay", self.log, poor), r": it has no object [0-9]+\Z")
        views = self.imported(self.make("CREATE VIEW v AS SELECT 1", "views.db"), "views.kelm")
        self.assertRegex(self.refused("replay", self.log, views), r": object [0-9]+ is something else there\Z")
        self.assertRegex(self.refused("replay", self.log, self.path), r": it has no object [0-9]+\Z")

    def test_rules_hold_and_hooks_do_again_what_they_did(self):
        twin = self.copy()
        self.apply(self.path, "drop table author\n", "--on-referenced-drop=drop-keys")
        self.take_log()
        self.does_not_fit(twin, "table author is used by a foreign key of table book")
        self.assertEqual(self.done("replay", self.log, twin, "--on-referenced-drop=drop-keys"), "replayed 1 edit\n")
        self.assertEqual(self.state(twin), self.state(self.path))

    def test_edits_with_others_undone_between_them_make_no_log(self):
        self.apply(self.path, "add column author.x INT\nadd column author.y INT\nundo\nadd column author.z INT\n")
        self.assertEqual(self.refused("log", self.path, "--replay", "-o", self.log),
                         "these edits fit no other file, as between them others were made and undone")
        self.assertFalse(self.log.exists())
        self.take_log("--last", "1")

    def test_a_log_changes_no_file_that_it_is_taken_from(self):
        self.apply(self.path, EDITS)
        content = self.path.read_bytes()
        self.take_log()
        self.assertEqual(self.path.read_bytes(), content)
        empty = self.imported(self.source, "empty.kelm")
        self.assertEqual(self.refused("log", empty, "--replay", "-o", self.log), "there are no edits to replay")

    def test_what_is_no_whole_log_is_told(self):
        twin = self.copy()
        self.apply(self.path, EDITS)
        self.take_log()
        content = self.log.read_bytes()
        for damaged in (b"", b"kelm-schema replay log", content[:40], content[:len(content) // 2], content[:-1],
                        content + b"\0", b"x" + content, content.replace(b"knows", b"thinks", 1),
                        self.path.read_bytes(), b"kelm-schema replay log 7 14\nmessages 0\n"):
            self.log.write_bytes(damaged)
            with self.subTest(damaged[:30]):
                self.assertEqual(self.refused("replay", self.log, twin),
                                 f'"{self.log}" is not a whole replay log of kelm-schema')
        self.log.write_bytes(content.replace(b"log 7 14", b"log 7 15", 1))
        self.assertEqual(self.refused("replay", self.log, twin),
                         f'"{self.log}" is a replay log of version 7.15, this program replays 7.14')
        self.log.write_bytes(content)
        self.assertEqual(self.refused("replay", self.log, self.source),
                         f'"{self.source}" is an SQLite database; kelm-schema import makes a file of it')

    def test_damage_inside_ends_in_an_answer_or_a_sentence(self):
        self.apply(self.path, "add column author.x INT\nrename column author.x y\ndrop column author.y\n")
        self.take_log()
        twin = self.imported(self.source, "twin.kelm")
        start, content = twin.read_bytes(), self.log.read_bytes()
        begin = content.index(b"messages ") + 14
        for place in range(begin, len(content), 5):
            damaged = bytearray(content)
            damaged[place] ^= 0xff
            self.log.write_bytes(damaged)
            twin.write_bytes(start)
            done = schema_tool.run("replay", self.log, twin)
            with self.subTest(place):
                self.assertIn(done.returncode, (0, 1), done.stderr)
                if done.returncode:
                    self.assertRegex(done.stderr, rb"\Akelm-schema: [^\n]+\n\Z")
                    self.assertEqual(twin.read_bytes(), start)


schema_tool.main()
