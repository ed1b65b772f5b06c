#!/usr/bin/env python3
"""Tables carried from one file into another, at once or over a clipboard.

    copy_test.py KELM_SCHEMA
"""
import os
import shutil
import unittest

import schema_tool
from schema_tool import SIGNED

PROJ = "/usr/share/proj/proj.db"

SHOP = """
CREATE TABLE customer (id INTEGER PRIMARY KEY, name TEXT);
CREATE TABLE kind (code PRIMARY KEY, label) WITHOUT ROWID;
CREATE TABLE sale (day TEXT, buyer REFERENCES customer, by_name REFERENCES customer (name), kind REFERENCES kind,
                   sum REAL, prior REFERENCES sale (day), ghost REFERENCES nowhere (x), UNIQUE (day));
CREATE TABLE "a line" (sale REFERENCES sale (day), n INT CHECK (n > 0) DEFAULT 1);
CREATE INDEX by_day ON sale (day DESC) WHERE sum > 0;
CREATE INDEX by_double ON sale (2 * sum);
CREATE TRIGGER guard BEFORE DELETE ON sale BEGIN SELECT RAISE(ABORT, 'no'); END;
CREATE VIEW sums AS SELECT sum FROM sale;
"""

SALE = """  day      TEXT
  buyer
  by_name
  kind
  sum      REAL
  prior
  ghost
  unique (day)
  foreign key (prior) -> sale (day)
  index by_day (day desc)  where sum > 0
  index by_double (2 * sum)
  trigger guard  BEFORE DELETE ON sale BEGIN SELECT RAISE(ABORT, 'no'); END"""

GHOST = "left out: foreign key on sale (ghost) to nowhere: there is no table nowhere\n"
LONELY = "".join(f"left out: foreign key on sale ({column}) to {table}: there is no table {table}\n"
                 for column, table in (("buyer", "customer"), ("by_name", "customer"), ("kind", "kind"))) + GHOST


def sum_of(content):
    """FNV-1a, as a clipboard has it in its first line."""
    found = 0xcbf29ce484222325
    for byte in content:
        found = (found ^ byte) * 0x100000001b3 % 2 ** 64
    return found


class Copy(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.shop = self.imported(self.make(SHOP), "shop.kelm")
        self.empty = self.imported(self.make("", "empty.db"), "empty.kelm")
        self.clipboard = self.folder / "clipboard"

    def other(self, script):
        return self.imported(self.make(script, "other.db"), "other.kelm")

    def state(self, path):
        return self.tree(path), self.json(path)

    def carried(self, path, *tables):
        """\\returns what is told, the same at once and over a clipboard"""
        twin = shutil.copy(path, self.folder / "twin.kelm")
        content = self.shop.read_bytes()
        told = self.done("copy", self.shop, *tables, "--to", path)
        self.assertEqual(self.done("copy", self.shop, *tables, "--to-clipboard", self.clipboard), "")
        self.assertEqual(self.done("paste", self.clipboard, twin), told)
        self.assertEqual(self.state(twin), self.state(path))
        self.assertEqual(self.shop.read_bytes(), content)
        return told

    def test_a_table_goes_with_all_its_parts(self):
        self.assertEqual(self.carried(self.empty, "SALE"), "copied: table sale\n" + LONELY)
        self.assertEqual("\n".join(self.block(self.empty, "table sale")), SALE)
        mine, there = self.json(self.shop)["tables"], self.json(self.empty)["tables"]
        [mine] = [each for each in mine if each["name"] == "sale"]
        kept = [each for each in mine["foreign_keys"] if each["target_table"] == "sale"]
        self.assertEqual(there, [{**mine, "foreign_keys": kept}])

    def test_it_is_one_edit_that_undo_takes_back(self):
        before = self.state(self.empty)
        self.done("copy", self.shop, "sale", "a line", "--to", self.empty)
        after = self.state(self.empty)
        self.assertEqual(self.done("log", self.empty), f'1  {SIGNED}  copy table sale, "a line"\n')
        self.assertEqual(self.done("undo", self.empty), 'undone: copy table sale, "a line"\n')
        self.assertEqual(self.state(self.empty), before)
        self.done("copy", self.shop, "sale", "--to-clipboard", self.clipboard)
        self.done("paste", self.clipboard, self.empty, "--author", "eve")
        self.assertEqual(self.done("log", self.empty), "1  2026-11-21T10:00:00Z  eve  paste table sale\n")
        self.assertEqual(self.apply(self.empty, "undo\nredo\nundo\nhistory\n"), "1  paste table sale  (undone)\n")
        self.done("copy", self.shop, "sale", "a line", "--to", self.empty)
        self.assertEqual(self.state(self.empty), after)

    def test_an_edit_of_a_copy_goes_on_as_any_other(self):
        twin = shutil.copy(self.empty, self.folder / "twin.kelm")
        self.done("copy", self.shop, "sale", "--to", self.empty)
        self.apply(self.empty, "rename column sale.ghost spirit\ndrop index by_day\n")
        log = self.folder / "log"
        self.done("log", self.empty, "--replay", "-o", log)
        self.assertEqual(self.done("replay", log, twin), "replayed 3 edits\n")
        self.assertEqual(self.state(twin), self.state(self.empty))
        document = self.folder / "empty.xml"
        self.done("convert", self.empty, document)
        self.assertEqual(self.done("copy", self.shop, "a line", "kind", "--to", document),
                         'copied: table "a line"\ncopied: table kind\nlinked: foreign key on "a line" (sale) to sale\n')
        self.done("undo", document, "4")
        self.assertEqual(self.tree(document), self.tree(self.folder / "empty.db"))

    def test_foreign_keys_lead_to_what_came_along(self):
        self.assertEqual(self.carried(self.empty, "a line", "sale", "kind", "customer", "sale"),
                         'copied: table "a line"\ncopied: table sale\ncopied: table kind\ncopied: table customer\n' + GHOST)
        mine = [line for line in self.lines(self.shop) if line.startswith("foreign key")]
        there = [line for line in self.lines(self.empty) if line.startswith("foreign key")]
        self.assertEqual(sorted(there), sorted(line for line in mine if "nowhere" not in line))

    def test_foreign_keys_lead_to_a_table_of_that_name(self):
        path = self.other("CREATE TABLE client (other, title TEXT, nr INTEGER PRIMARY KEY); CREATE TABLE nowhere (y);"
                          "CREATE TABLE kind (a, b, PRIMARY KEY (a, b));")
        self.apply(self.shop, "rename table customer CLIENT\nrename column client.name title\n")
        self.assertEqual(self.carried(path, "sale"),
                         "copied: table sale\n"
                         "linked: foreign key on sale (buyer) to client\n"
                         "linked: foreign key on sale (by_name) to client\n"
                         "left out: foreign key on sale (kind) to kind: "
                         "the foreign key has 1 column, its target 2\n"
                         "left out: foreign key on sale (ghost) to nowhere: there is no column x in table nowhere\n")
        self.assertEqual([line for line in self.block(path, "table sale") if "foreign" in line],
                         ["  foreign key (buyer) -> client (nr)", "  foreign key (by_name) -> client (title)",
                          "  foreign key (prior) -> sale (day)"])
        self.apply(path, "rename column client.title caption\n")
        self.assertIn("  foreign key (by_name) -> client (caption)", self.block(path, "table sale"))

    def test_foreign_keys_that_waited_find_the_table(self):
        path = self.other("CREATE TABLE bill (whose REFERENCES sale (day), what REFERENCES sale (no));")
        self.assertEqual(self.carried(path, "sale"),
                         "copied: table sale\n"
                         "linked: foreign key on bill (whose) to sale\n" + LONELY)
        self.done("undo", path)
        self.assertIn("  foreign key (whose) -> sale (day)  unresolved: no such table", self.block(path, "table bill"))

    def test_domains_come_along_or_are_there(self):
        self.apply(self.shop, "add domain money DECIMAL(10,2) default 0 not null\nuse domain money for sale.sum\n"
                              "add domain unused INT\nuse domain money for kind.label\ntype column kind.label TEXT\n")
        path = self.other("")
        self.assertEqual(self.carried(path, "sale", "kind"),
                         "copied: table sale\ncopied: table kind\nbrought along: domain money\n"
                         + "".join(line + "\n" for line in LONELY.splitlines() if "to kind" not in line))
        self.assertEqual(self.json(path)["domains"], self.json(self.shop)["domains"][:1])
        self.assertIn("  label  TEXT  not null  default 0  domain money",
                      self.block(path, "table kind  without rowid"))
        self.apply(path, "type domain money INT\n")
        self.assertIn("  sum      INT   not null  default 0  domain money", self.block(path, "table sale"))
        same = self.other("")
        self.apply(same, "add domain MONEY DECIMAL(10,2) not null default 0\n")
        self.assertEqual(self.carried(same, "kind"), "copied: table kind\nlinked: domain money\n")
        different = self.other("")
        self.apply(different, "add domain money REAL\n")
        self.assertEqual(self.carried(different, "sale").splitlines()[:2],
                         ["copied: table sale", "linked: domain money, which says something else there"])
        self.assertIn("  sum      REAL  domain money", self.block(different, "table sale"))

    def test_values_find_the_property_of_their_name(self):
        self.apply(self.shop, "define property first on table\ndefine property owner on table, column choices (ann, bob)\n"
                              "define property note on column\nset property owner of kind to bob\n"
                              "set property owner of kind.code to ann\nset property note of kind.label to \"x y\"\n")
        path = self.other("")
        self.assertEqual(self.carried(path, "kind"),
                         "copied: table kind\nbrought along: property owner\nbrought along: property note\n")
        shown = self.json(path)
        self.assertEqual(shown["properties"], self.json(self.shop)["properties"][1:])
        self.assertEqual(shown["tables"][0]["properties"], {"owner": "bob"})
        self.assertEqual([each["properties"] for each in shown["tables"][0]["columns"]],
                         [{"owner": "ann"}, {"note": "x y"}])
        self.assertEqual(self.refused("edit", path, "-", input=b"set property owner of kind to eve\n"),
                         "line 1: eve is none of the choices of property owner")
        other = self.other("")
        # The numbers of these are those of others at home.
        self.apply(other, "define property NOTE on table\ndefine property owner on column, table choices (eve, ann)\n")
        self.assertEqual(self.carried(other, "kind"),
                         "copied: table kind\n"
                         "linked: property owner, which says something else there\n"
                         "linked: property note, which says something else there\n"
                         "left out: property owner of table kind: bob is none of its choices there\n"
                         "left out: property note of column kind.label: it is not defined for columns there\n")
        shown = self.json(other)["tables"][0]
        self.assertEqual((shown.get("properties"), [each.get("properties") for each in shown["columns"]]),
                         (None, [{"owner": "ann"}, None]))

    def test_what_is_in_the_way_is_told_and_nothing_changes(self):
        path = self.other("CREATE TABLE Kind (x); CREATE TABLE t (y); CREATE INDEX by_day ON t (y);"
                          "CREATE VIEW \"a line\" AS SELECT 1;")
        content = path.read_bytes()
        for table, why in (("kind", "there is already a table Kind"), ("sale", "there is already an index by_day"),
                           ("a line", 'there is already a view "a line"')):
            told = f'cannot put the tables into "{path}": {why}'
            with self.subTest(table):
                self.assertEqual(self.refused("copy", self.shop, "customer", table, "--to", path), told)
                self.done("copy", self.shop, "customer", table, "--to-clipboard", self.clipboard)
                self.assertEqual(self.refused("paste", self.clipboard, path), told)
                self.assertEqual(path.read_bytes(), content)
        self.assertEqual(self.refused("copy", self.shop, "sale", "--to", self.shop),
                         f'cannot put the tables into "{self.shop}": there is already a table sale')

    def test_wrong_arguments_are_told(self):
        source, missing = self.folder / "made.db", self.folder / "missing"
        database = f'"{source}" is an SQLite database'
        for arguments, why in (
                (("copy", self.shop, "no table", "--to", self.empty), 'there is no table "no table"'),
                (("copy", self.shop, "sale", "sums", "--to", self.empty), "sums is a view, not a table"),
                (("copy", self.shop, "sale", "--to", missing), f'there is no file "{missing}"'),
                (("copy", missing, "sale", "--to", self.empty), f'there is no file "{missing}"'),
                (("paste", missing, self.empty), f'there is no file "{missing}"'),
                (("copy", self.shop, "sale"),
                 "--to or --to-clipboard is required; kelm-schema copy --help tells more"),
                (("copy", self.shop, "sale", "--to", self.empty, "--time", "now"),
                 'the time "now" is not of the form 2026-11-21T10:00:00Z')):
            with self.subTest(arguments[1:]):
                content = self.empty.read_bytes()
                self.assertEqual(self.refused(*arguments), why)
                self.assertEqual(self.empty.read_bytes(), content)
                self.assertFalse(missing.exists())
        content = source.read_bytes()
        for arguments in (("copy", self.shop, "sale", "--to", source), ("paste", self.clipboard, source),
                          ("copy", self.shop, "sale", "--to-clipboard", source)):
            with self.subTest(arguments[0]):
                self.done("copy", self.shop, "sale", "--to-clipboard", self.clipboard)
                self.assertTrue(self.refused(*arguments).startswith(database))
                self.assertEqual(source.read_bytes(), content)
        self.assertRegex(self.refused("copy", self.shop, "sale", "--to", self.empty, "--to-clipboard", self.clipboard),
                         r"\A--to(-clipboard)? excludes --to")
        self.assertRegex(self.refused("copy", self.shop, "--to", self.empty), r"\ATABLE is required")

    def test_a_database_is_a_source_as_well(self):
        told = self.done("copy", self.folder / "made.db", "customer", "kind", "--to", self.empty)
        self.assertEqual(told, "copied: table customer\ncopied: table kind\n")

    def test_what_is_no_whole_clipboard_is_told(self):
        self.done("copy", self.shop, "sale", "customer", "--to-clipboard", self.clipboard)
        content = self.clipboard.read_bytes()
        start = self.empty.read_bytes()
        first, body = content.split(b"\n", 1)
        self.assertEqual(first, b"kelm-schema clipboard 7 14 %x" % sum_of(body))
        damaged = [b"", b"kelm-schema clipboard ", content[:-1], content + b"\0", b"x" + content, start,
                   first + b"\n", first, b"kelm-schema clipboard 7 14 0\n" + body]
        for place in range(len(first) + 1, len(content), 23):
            damaged.append(content[:place] + bytes([content[place] ^ 1]) + content[place + 1:])
        for bytes_of in damaged:
            self.clipboard.write_bytes(bytes_of)
            with self.subTest(bytes_of[:40]):
                self.assertEqual(self.refused("paste", self.clipboard, self.empty),
                                 f'"{self.clipboard}" is not a whole clipboard of kelm-schema')
        self.clipboard.write_bytes(content.replace(b" 7 14 ", b" 7 15 ", 1))
        self.assertEqual(self.refused("paste", self.clipboard, self.empty),
                         f'"{self.clipboard}" is a clipboard of version 7.15, this program pastes 7.14')
        self.assertEqual(self.empty.read_bytes(), start)
        self.clipboard.write_bytes(content)
        self.done("paste", self.clipboard, self.empty)

    def test_a_made_up_clipboard_ends_in_an_answer_or_a_sentence(self):
        self.apply(self.shop, "add domain money DECIMAL\nuse domain money for kind.label\n"
                              "define property owner on table choices (ann, bob)\nset property owner of kind to bob\n")
        self.done("copy", self.shop, "kind", "--to-clipboard", self.clipboard)
        body = self.clipboard.read_bytes().split(b"\n", 1)[1]
        start = self.empty.read_bytes()
        answers = set()
        for place in range(body.index(b"snapshot\n") + 9, len(body), 19):
            damaged = body[:place] + bytes([body[place] ^ (0xff if place % 2 else 1)]) + body[place + 1:]
            self.clipboard.write_bytes(b"kelm-schema clipboard 7 14 %x\n" % sum_of(damaged) + damaged)
            self.empty.write_bytes(start)
            done = schema_tool.run("paste", self.clipboard, self.empty)
            answers.add(done.returncode)
            with self.subTest(place):
                if done.returncode == 0:
                    self.done("undo", self.empty)
                    continue
                self.assertRegex(done.stderr, rb"\Akelm-schema: [^\n]+\n\Z")
                self.assertEqual((done.returncode, self.empty.read_bytes()), (1, start))
        self.assertEqual(answers, {0, 1})

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_a_whole_real_schema(self):
        tables = [each["name"] for each in self.json(PROJ)["tables"]]
        told = self.done("copy", PROJ, *tables, "--to", self.empty)
        self.assertEqual(told, "".join(f"copied: table {table}\n" for table in tables))
        mine, there = self.json(PROJ)["tables"], self.json(self.empty)["tables"]
        self.assertEqual(there, mine)
        self.done("undo", self.empty)
        self.assertEqual(self.tree(self.empty), self.tree(self.folder / "empty.db"))


schema_tool.main()
