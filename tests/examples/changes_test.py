#!/usr/bin/env python3
"""What the edits of a file came to, for people and for programs.

    changes_test.py KELM_SCHEMA
"""
import json

import schema_tool

SMALL = """
CREATE TABLE author (id INTEGER PRIMARY KEY, name TEXT NOT NULL, born);
CREATE TABLE "the Bücher" (isbn TEXT PRIMARY KEY, "by whom" REFERENCES author, title, year INT);
CREATE INDEX by_title ON "the Bücher" (title DESC, year);
CREATE VIEW old AS SELECT title FROM "the Bücher" WHERE year < 1900;
CREATE TABLE waiting (x REFERENCES writer (id));
CREATE TABLE gone (a INT, "b c", UNIQUE (a, "b c"));
CREATE TRIGGER guard AFTER INSERT ON gone BEGIN SELECT 1; END;
"""

# The edits of a row and what they come to.
ROWS = (
    ("a new table's worth of parts",
     'add column author.mail VARCHAR(80)\nadd index by_mail on author (mail, name)\n'
     'add foreign key on "the Bücher" (year) to author\n',
     '+ column author.mail  VARCHAR(80)\n'
     '+ index by_mail on author (mail, name)\n'
     '\n'
     '+ foreign key on "the Bücher" (year) to author (id)\n'),
    ("what goes with its table stands below it",
     "drop table gone\n",
     "- table gone\n"
     "    - column gone.a  INT\n"
     '    - column gone."b c"\n'
     '    - unique key on gone (a, "b c")\n'
     "    - trigger guard on gone\n"),
    ("a part that goes alone",
     "drop index by_title\ndrop column author.born\n",
     "- column author.born\n"
     "\n"
     '- index by_title on "the Bücher" (title, year)\n'),
    ("foreign keys that go with their target",
     "drop table author\n",
     '- foreign key on "the Bücher" ("by whom") to author (id)\n'
     "\n"
     "- table author\n"
     "    - column author.id  INTEGER\n"
     "    - column author.name  TEXT\n"
     "    - column author.born\n"
     "    - primary key on author (id)\n"),
    ("names, of now and of before",
     'rename table gone "x y"\nrename column gone.a b\nrename column "x y".a b\n',
     None),
    ("a rename is told of the thing, and its parts are called after it",
     'rename table gone "x y"\nrename column "x y".a b\ntype column "x y".b TEXT\n',
     '~ table "x y"  renamed from gone\n'
     '~ column "x y".b  renamed from a\n'
     '~ column "x y".b  Declared Type  INT -> TEXT\n'),
    ("moves",
     "move column author.born 1\nadd column author.new INT\nmove column author.new 1\n",
     "~ column author.born  moved from position 3 to 1\n"
     "+ column author.new  INT\n"),
    ("two moves are one",
     "move column author.born 1\nmove column author.born 2\n",
     "~ column author.born  moved from position 3 to 2\n"),
    ("no type at all is told from none",
     "type column author.born INT\n",
     '~ column author.born  Declared Type  "" -> INT\n'),
    ("twice is once",
     "type column author.name INT\ntype column author.name BLOB\n",
     "~ column author.name  Declared Type  TEXT -> BLOB\n"),
    ("there and back is nothing",
     "type column author.name INT\ntype column author.name TEXT\nadd column author.x INT\ndrop column author.x\n"
     "rename table author a\nrename table a author\nmove column author.born 1\nmove column author.born 3\n",
     "nothing differs: what was done has been taken back, or shows in no value\n"),
    ("a foreign key finds its table under a new name",
     "rename table author writer\n",
     "~ table writer  renamed from author\n"
     "\n"
     "~ foreign key on waiting (x) to writer (id)  Target Table  (none) -> writer\n"
     "~ foreign key column waiting.x  Target Column  (none) -> id\n"),
    ("a domain and what it gives",
     "add domain money DECIMAL default 0 not null\nuse domain money for author.born\n",
     "+ domain money  DECIMAL\n"
     "\n"
     "~ column author.born  uses domain money\n"
     '~ column author.born  Declared Type  "" -> DECIMAL  (from domain money)\n'
     "~ column author.born  Not Null  (none) -> True  (from domain money)\n"
     "~ column author.born  Default  (none) -> 0  (from domain money)\n"),
    ("one domain in the place of another",
     "add domain a INT\nadd domain b REAL\nuse domain a for author.born\n---\nuse domain b for author.born\n",
     "~ column author.born  uses domain b\n"
     "~ column author.born  uses domain a no more\n"
     "~ column author.born  Declared Type  INT -> REAL  (from domain b)\n"),
    ("a changed domain is told with the columns that inherit from it",
     "add domain money DECIMAL\nuse domain money for author.born\nuse domain money for gone.a\n"
     "type column gone.a REAL\n---\ntype domain money INT\n",
     "~ domain money  Declared Type  DECIMAL -> INT\n"
     "\n"
     "~ column author.born  Declared Type  DECIMAL -> INT  (from domain money)\n"),
    ("a value of its own in the place of an inherited one",
     "add domain money DECIMAL\nuse domain money for author.born\n---\ntype column author.born REAL\n",
     "~ column author.born  Declared Type  DECIMAL -> REAL\n"),
    ("what users define",
     'define property owner on table, column default nobody choices (nobody, Änne)\n'
     'set property owner of author to "Änne"\nset property owner of author.id to "Änne"\n',
     "+ property owner\n"
     "\n"
     "~ table author  owner  nobody -> Änne\n"
     "~ column author.id  owner  nobody -> Änne\n"),
    ("a value that nobody has set any more",
     'define property owner on table default nobody\nset property owner of author to "Änne"\n---\n'
     "clear property owner of author\n",
     "~ table author  owner  Änne -> nobody  (by default)\n"),
    ("a property that is gone",
     'define property owner on table\nset property owner of author to x\n---\ndrop property owner\n',
     "- property owner\n"),
    ("control characters are shown, long texts cut",
     'add domain d TEXT default "1\t2"\nadd domain e TEXT\n---\ntype domain d "' + "x" * 70 + '"\n',
     "~ domain d  Declared Type  TEXT -> " + "x" * 60 + "...\n"),
)


class Changes(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.path = self.imported(self.make(SMALL))
        self.start = self.path.read_bytes()

    def edit(self, script):
        """\\returns the number of the first edit behind the line of dashes"""
        before, _, behind = script.rpartition("---\n")
        for part in (before, behind):
            self.apply(self.path, part, "--on-referenced-drop=drop-keys")
        return before.count("\n") + 1

    def test_each_change_is_told_as_it_is(self):
        for why, script, told in ROWS:
            self.path.write_bytes(self.start)
            with self.subTest(why):
                if told is None:  # a wrong line saves nothing
                    self.refused("edit", self.path, "-", input=script.encode("utf-8"))
                    self.assertEqual(self.done("changes", self.path), "no edits\n")
                    continue
                since = self.edit(script)
                content = self.path.read_bytes()
                self.assertEqual(self.done("changes", self.path, "--since", str(since)), told)
                self.assertEqual(self.path.read_bytes(), content)
                self.done("convert", self.path, self.folder / "made.xml")
                self.assertEqual(self.done("changes", self.folder / "made.xml", "--since", str(since)), told)

    def test_they_are_told_from_an_edit_on(self):
        self.edit("add column author.x INT\nrename table author writer\ntype column writer.x REAL\ndrop index by_title\n")
        renamed = "~ table writer  renamed from author\n"
        dropped = '- index by_title on "the Bücher" (title, year)\n'
        resolved = ("\n~ foreign key on waiting (x) to writer (id)  Target Table  (none) -> writer\n"
                    "~ foreign key column waiting.x  Target Column  (none) -> id\n")
        typed = "~ column writer.x  Declared Type  INT -> REAL\n"
        for since, told in ((1, renamed + "+ column writer.x  REAL\n\n" + dropped + resolved),
                            (2, renamed + typed + "\n" + dropped + resolved), (3, typed + "\n" + dropped),
                            (4, dropped)):
            with self.subTest(since):
                self.assertEqual(self.done("changes", self.path, "--since", str(since)), told)
        self.assertEqual(self.done("changes", self.path), self.done("changes", self.path, "--since", "1"))
        self.done("undo", self.path, "4")
        self.assertEqual(self.done("changes", self.path), "no edits\n")

    def told_to_programs(self, *arguments):
        return json.loads(self.done("changes", self.path, "--json", *arguments))

    def test_programs_are_told_all_of_it(self):
        self.assertEqual(self.told_to_programs(), {"file": str(self.path), "first": 1, "last": 0, "created": [],
                                                   "dropped": [], "changed": []})
        self.edit('add domain money DECIMAL\nuse domain money for author.born\nrename table gone "x\ty"\n'
                  "move column author.born 1\nadd index by_name on author (name)\n---\ndrop index by_title\n"
                  "type domain money INT\n")
        told = self.told_to_programs()
        self.assertEqual((told["first"], told["last"]), (1, 7))
        domain, index = told["created"]
        self.assertEqual((domain["type"], domain["name"], domain["table"], domain["values"], domain["parts"]),
                         ("Domain", "money", None, {"Declared Type": "INT"}, []))
        self.assertEqual((index["type"], index["name"], index["table"]), ("Index", "by_name", "author"))
        self.assertEqual([(part["type"], part["name"], part["values"]) for part in index["parts"]],
                         [("Key Column", "name", {"Column": "name", "Collation": "BINARY"})])
        [dropped] = told["dropped"]
        self.assertEqual((dropped["name"], dropped["table"]), ("by_title", "the Bücher"))
        self.assertEqual(dropped["values"]["SQL"], 'CREATE INDEX by_title ON "the Bücher" (title DESC, year)')
        self.assertEqual([(part["name"], part["values"].get("Descending")) for part in dropped["parts"]],
                         [("title", "True"), ("year", None)])
        column, table = told["changed"]
        column.pop("id")
        self.assertEqual(column, {
            "type": "Column", "name": "born", "table": "author", "renamed_from": None, "moved_from_table": None,
            "moved": {"from": 3, "to": 1}, "new_domains": ["money"], "lost_domains": [],
            "values": [{"property": "Declared Type", "before": "", "after": "INT", "inherited_from": "money",
                        "by_default": False}]})
        self.assertEqual((table["name"], table["renamed_from"], table["values"]), ("x\ty", "gone", []))
        later = self.told_to_programs("--since", "7")
        self.assertEqual((later["first"], later["last"], later["created"], later["dropped"]), (7, 7, [], []))
        self.assertEqual([(each["name"], each["values"][0]["before"], each["values"][0]["inherited_from"])
                          for each in later["changed"]], [("money", "DECIMAL", None), ("born", "DECIMAL", "money")])

    def test_what_cannot_be_told_is_a_sentence(self):
        source = self.folder / "made.db"
        self.assertEqual(self.refused("changes", self.path, "--since", "2"),
                         f'there is no edit 2 in "{self.path}", it remembers none')
        self.edit("add column author.x INT\n")
        self.assertEqual(self.refused("changes", self.path, "--since", "2"),
                         f'there is no edit 2 in "{self.path}", the last is 1')
        self.assertRegex(self.refused("changes", self.path, "--since", "0"), r"\A--since: ")
        self.assertRegex(self.refused("changes", self.path, "--since", "x"), r"--since")
        self.assertEqual(self.refused("changes", source),
                         f'"{source}" is an SQLite database; kelm-schema import makes a file of it')
        missing = self.folder / "missing"
        self.assertEqual(self.refused("changes", missing), f'there is no file "{missing}"')


schema_tool.main()
