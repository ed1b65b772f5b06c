#!/usr/bin/env python3
"""Names of every sort come through whole: in the JSON as they are, in the tree quoted as SQL quotes them.

    show_names_test.py KELM_SCHEMA
"""
import sqlite3

import schema_oracle
import schema_tool

# A name, and how the tree shows it.
NAMES = (
    ("plain", "plain"),
    ("Mixed_Case_9", "Mixed_Case_9"),
    ("_", "_"),
    ("two words", '"two words"'),
    (" ", '" "'),
    ("", '""'),
    ("select", '"select"'),
    ("KEY", '"KEY"'),
    ("9lives", '"9lives"'),
    ("a\"b", '"a""b"'),
    ("'", "\"'\""),
    ("a'; DROP TABLE x; --", "\"a'; DROP TABLE x; --\""),
    ("[x]", '"[x]"'),
    ("`tick`", '"`tick`"'),
    ("back\\slash", '"back\\slash"'),
    ("dot.ted", '"dot.ted"'),
    ("größe", '"größe"'),
    ("名前", '"名前"'),
    ("🦑", '"🦑"'),
    ("new\nline", '"new␊line"'),
    ("tab\there", '"tab␉here"'),
    ("bell\x07", '"bell␇"'),
    ("\x1b[31mred", '"␛[31mred"'),
    ("del\x7f", '"del␡"'),
    ("csi\x9b", '"csi\ufffd"'),
    ("%s?1", '"%s?1"'),
    ("pragma_", "pragma_"),
    ("sqlite", "sqlite"),
    ("sqliteX1", "sqliteX1"),
)


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


class ShowNames(schema_tool.ToolTest):
    def odd_database(self):
        parts = []
        for n, (name, _) in enumerate(NAMES):
            q = quoted(name)
            parts.append(f"CREATE TABLE {q} ({q} {quoted('type ' + name)}, other, PRIMARY KEY ({q}),"
                         f" FOREIGN KEY (other) REFERENCES {q} ({q}));"
                         f"CREATE INDEX {quoted('i ' + name)} ON {q} ({q}, other);"
                         f"CREATE VIEW {quoted('v ' + name)} AS SELECT {q} FROM {q};"
                         f"CREATE TRIGGER {quoted('t ' + name)} AFTER INSERT ON {q} BEGIN SELECT {n}; END;")
        return self.make("BEGIN;" + "".join(parts) + "COMMIT;", name="odd 名 ' \".db")

    def test_json_agrees_with_sqlite(self):
        path = self.odd_database()
        shown = self.json(path)
        oracle = schema_oracle.Oracle(path).schema()
        self.assertEqual(schema_oracle.reduced(shown), oracle)
        self.assertEqual(shown["counts"]["tables"], len(NAMES))
        self.assertTrue(all(key["resolved"] for table in shown["tables"] for key in table["foreign_keys"]))
        self.assertEqual(shown["file"], str(path))

    def test_tree_quotes_what_sql_quotes(self):
        path = self.odd_database()
        for name, shown in NAMES:
            with self.subTest(name):
                lines = self.block(path, f"table {shown}")
                self.assertTrue(lines[0].startswith(f"  {shown} "), lines)
                self.assertIn(f"  primary key ({shown})", lines)
                self.assertIn(f"  foreign key (other) -> {shown} ({shown})", lines)

    def test_tree_has_one_line_for_each_thing_whatever_its_name(self):
        tree = self.tree(self.odd_database())
        # counts; per table: blank, head, 2 columns, primary key, foreign key, index, trigger;
        # per view: blank, head, column, SQL
        self.assertEqual(len(tree.splitlines()), 1 + 8 * len(NAMES) + 4 * len(NAMES))
        self.assertFalse([c for c in tree if ord(c) < 32 and c != "\n" or 127 <= ord(c) < 160])

    def test_bytes_that_are_no_text_are_replaced(self):
        bad = b"a\xffb\xc0\x80\xed\xa0\x80\xf5z\xe2\x82"
        path = self.folder / "bytes.db"
        db = sqlite3.connect(path)
        db.execute(f"CREATE TABLE t ({'x' * len(bad)} TEXT)")
        db.close()
        content = path.read_bytes()
        self.assertEqual(content.count(b"x" * len(bad)), 1)
        path.write_bytes(content.replace(b"x" * len(bad), bad))
        # One sign for each byte that is not part of a character.
        expected = "a\ufffdb" + "\ufffd" * 6 + "z" + "\ufffd" * 2
        self.assertEqual(self.json(path)["tables"][0]["columns"][0]["name"], expected)
        self.assertIn(f'  "{expected}"  TEXT', self.tree(path).splitlines())

    def test_names_are_found_in_any_case(self):
        path = self.make("CREATE TABLE Parent (Id INTEGER PRIMARY KEY);"
                         "CREATE TABLE child (p REFERENCES pARENT (ID));"
                         "CREATE TRIGGER t AFTER INSERT ON CHILD BEGIN SELECT 1; END;")
        self.assertEqual(schema_oracle.reduced(self.json(path)), schema_oracle.Oracle(path).schema())
        lines = self.block(path, "table child")
        self.assertIn("  foreign key (p) -> Parent (Id)", lines)
        self.assertIn("  trigger t  AFTER INSERT ON CHILD BEGIN SELECT 1; END", lines)

    def test_tables_come_by_name(self):
        path = self.make("CREATE TABLE b (x); CREATE TABLE C (x); CREATE TABLE a (x); CREATE TABLE _z (x);")
        self.assertEqual([table["name"] for table in self.json(path)["tables"]], ["_z", "a", "b", "C"])

    def test_a_database_in_utf16_is_read_as_any_other(self):
        path = self.make("PRAGMA encoding = 'UTF-16'; CREATE TABLE \"größe\" (\"名\" TEXT DEFAULT 'ü');")
        table = self.json(path)["tables"][0]
        self.assertEqual((table["name"], table["columns"][0]["name"], table["columns"][0]["default"]),
                         ("größe", "名", "'ü'"))


schema_tool.main()
