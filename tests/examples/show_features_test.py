#!/usr/bin/env python3
"""Each feature of an SQLite schema is shown, and agrees with what SQLite says.

    show_features_test.py KELM_SCHEMA
"""
import sqlite3
import unittest

import schema_oracle
import schema_tool


def has_module(name):
    return sqlite3.connect(":memory:").execute("SELECT count(*) FROM pragma_module_list WHERE name = ?",
                                               (name,)).fetchone()[0] > 0


class ShowFeatures(schema_tool.ToolTest):
    def checked(self, script):
        path = self.make(script)
        self.assertEqual(schema_oracle.reduced(self.json(path)), schema_oracle.Oracle(path).schema())
        return path

    def test_columns_with_all_that_they_declare(self):
        path = self.checked("CREATE TABLE t (id INTEGER PRIMARY KEY AUTOINCREMENT, n VARCHAR(20) NOT NULL,"
                            " s TEXT DEFAULT 'a''b' COLLATE NOCASE, e DEFAULT (1 +\n 2), none DEFAULT NULL, bare)")
        self.assertEqual(self.block(path, "table t"), [
            "  id    INTEGER      pk 1  autoincrement",
            "  n     VARCHAR(20)  not null",
            "  s     TEXT         default 'a''b'  collate NOCASE",
            "  e                  default 1 + 2",
            "  none               default NULL",
            "  bare",
            "  primary key (id)",
        ])
        columns = self.json(path)["tables"][0]["columns"]
        self.assertEqual([column["autoincrement"] for column in columns], [True] + 5 * [False])
        self.assertEqual([column["collation"] for column in columns], ["BINARY"] * 2 + ["NOCASE"] + ["BINARY"] * 3)
        self.assertEqual([column["default"] for column in columns][4:], ["NULL", None])

    def test_composite_keys_in_their_own_order(self):
        path = self.checked("CREATE TABLE p (a, b, c, PRIMARY KEY (c, a));"
                            "CREATE TABLE k (x, y, FOREIGN KEY (y, x) REFERENCES p (a, c) ON DELETE SET NULL"
                            " ON UPDATE CASCADE, FOREIGN KEY (x, y) REFERENCES p);")
        self.assertEqual(self.block(path, "table p"), ["  a    pk 2", "  b", "  c    pk 1", "  primary key (c, a)"])
        self.assertEqual(self.block(path, "table k")[2:], [
            "  foreign key (y, x) -> p (a, c)  on delete set null  on update cascade",
            "  foreign key (x, y) -> p (c, a)",
        ])

    def test_foreign_keys_to_oneself_and_in_a_ring(self):
        path = self.checked("CREATE TABLE node (id INTEGER PRIMARY KEY, parent REFERENCES node);"
                            "CREATE TABLE x (a PRIMARY KEY, b REFERENCES y); CREATE TABLE y (a PRIMARY KEY, b"
                            " REFERENCES x);")
        self.assertIn("  foreign key (parent) -> node (id)", self.block(path, "table node"))
        self.assertIn("  foreign key (b) -> y (a)", self.block(path, "table x"))
        self.assertIn("  foreign key (b) -> x (a)", self.block(path, "table y"))

    def test_foreign_keys_without_a_target_keep_its_name(self):
        path = self.checked("CREATE TABLE two (a, b, PRIMARY KEY (a, b)); CREATE TABLE keyless (a);"
                            "CREATE VIEW view_of_two AS SELECT * FROM two;"
                            "CREATE TABLE k (q, r, s, t, u, v,"
                            " FOREIGN KEY (q) REFERENCES \"gone table\" (id),"
                            " FOREIGN KEY (r) REFERENCES gone,"
                            " FOREIGN KEY (s) REFERENCES two (\"no col\"),"
                            " FOREIGN KEY (t) REFERENCES two,"
                            " FOREIGN KEY (u) REFERENCES keyless,"
                            " FOREIGN KEY (v) REFERENCES view_of_two (a));")
        self.assertEqual(self.block(path, "table k")[6:], [
            '  foreign key (q) -> "gone table" (id)  unresolved: no such table',
            "  foreign key (r) -> gone  unresolved: no such table",
            '  foreign key (s) -> two ("no col")  unresolved: no such column',
            "  foreign key (t) -> two  unresolved: no matching primary key",
            "  foreign key (u) -> keyless  unresolved: no matching primary key",
            "  foreign key (v) -> view_of_two (a)  unresolved: no such table",
        ])

    def test_unique_keys_are_no_indexes(self):
        path = self.checked("CREATE TABLE t (a UNIQUE, b TEXT PRIMARY KEY, c, d,"
                            " UNIQUE (d DESC, c COLLATE NOCASE));")
        self.assertEqual(self.block(path, "table t")[4:],
                         ["  primary key (b)", "  unique (a)", "  unique (d desc, c collate NOCASE)"])
        self.assertEqual(self.json(path)["counts"]["indexes"], 0)

    def test_indexes_with_all_that_they_declare(self):
        path = self.checked("CREATE TABLE t (a, b TEXT COLLATE RTRIM, c);"
                            "CREATE UNIQUE INDEX one ON t (b, a DESC);"
                            "CREATE INDEX two ON t (lower(c || ', )') /* (, */ DESC, a COLLATE nocase,"
                            " b COLLATE BINARY ASC,\n  max(a, (c)) -- last\n);"
                            "CREATE INDEX three ON t (c) WHERE a IS NOT NULL\n AND b > 'x  y';"
                            "CREATE INDEX \"on\" ON t (\"c\");")
        self.assertEqual(self.block(path, "table t")[3:], [
            "  unique index one (b, a desc)",
            "  index two (lower(c || ', )') desc, a collate nocase, b collate BINARY, max(a, (c)))",
            "  index three (c)  where a IS NOT NULL AND b > 'x  y'",
            '  index "on" (c)',
        ])
        two = self.json(path)["tables"][0]["indexes"][1]["columns"]
        self.assertEqual([term["expression"] for term in two], ["lower(c || ', )')", None, None, "max(a, (c))"])

    def test_generated_columns(self):
        path = self.checked("CREATE TABLE t (a, v INT AS (a + 1), s TEXT GENERATED ALWAYS AS (a || 'x') STORED)")
        self.assertEqual(self.block(path, "table t"), ["  a", "  v  INT   generated virtual",
                                                       "  s  TEXT  generated stored"])

    def test_kinds_of_tables(self):
        path = self.checked("CREATE TABLE w (a PRIMARY KEY, b) WITHOUT ROWID;"
                            "CREATE TABLE s (a INT) STRICT;"
                            "CREATE TABLE ws (b INT, a INT, PRIMARY KEY (a DESC, b)) STRICT, WITHOUT ROWID;")
        self.assertIn("  primary key (a)", self.block(path, "table w  without rowid"))
        self.assertEqual(self.block(path, "table s  strict"), ["  a  INT"])
        self.assertIn("  primary key (a desc, b)", self.block(path, "table ws  without rowid, strict"))

    @unittest.skipUnless(has_module("fts5"), "SQLite has no full text search")
    def test_virtual_tables_and_their_shadows(self):
        path = self.checked("CREATE VIRTUAL TABLE docs USING fts5 (title, body, tokenize = 'porter');")
        self.assertEqual(self.block(path, "virtual table docs  USING fts5 (title, body, tokenize = 'porter')")[:4],
                         ["  title", "  body", "  docs     hidden", "  rank     hidden"])
        self.assertIn("table docs_data  shadow", self.lines(path))

    def test_a_virtual_table_of_an_unknown_kind_does_not_hide_the_rest(self):
        path = self.make("CREATE TABLE earlier (a);"
                         "PRAGMA writable_schema = 1;"
                         "INSERT INTO sqlite_master VALUES ('table', 'strange', 'strange', 0,"
                         " 'CREATE VIRTUAL TABLE strange USING no_such_module (x)');")
        self.assertEqual(self.block(path, "virtual table strange  USING no_such_module (x)"),
                         ["  columns unknown: no such module: no_such_module"])
        self.assertEqual(self.block(path, "table earlier"), ["  a"])
        self.assertEqual(self.json(path)["tables"][1]["problem"], "no such module: no_such_module")

    def test_views_with_columns_sql_and_triggers(self):
        path = self.checked("CREATE TABLE t (a INT, b);"
                            "CREATE VIEW v (x, \"y z\") AS\n  SELECT a, -- first\n         b || '  '\n  FROM t;"
                            "CREATE TRIGGER put INSTEAD OF INSERT ON v BEGIN\n  INSERT INTO t VALUES (1, 2);\nEND;")
        self.assertEqual(self.block(path, "view v"), [
            "  x      INT",
            '  "y z"',
            "  (x, \"y z\") AS SELECT a, b || '  ' FROM t",
            "  trigger put  INSTEAD OF INSERT ON v BEGIN INSERT INTO t VALUES (1, 2); END",
        ])

    def test_a_broken_view_does_not_hide_the_rest(self):
        path = self.make("CREATE TABLE t (a); CREATE TABLE gone (b); CREATE VIEW a_good AS SELECT a FROM t;"
                         "CREATE VIEW bad AS SELECT b FROM gone; CREATE VIEW worse AS SELECT * FROM bad;"
                         "CREATE VIEW ring1 AS SELECT 1 AS n; DROP TABLE gone;")
        self.assertEqual(self.block(path, "view bad"),
                         ["  columns unknown: no such table: main.gone", "  AS SELECT b FROM gone"])
        self.assertEqual(self.block(path, "view a_good"), ["  a", "  AS SELECT a FROM t"])
        problems = {view["name"]: view["problem"] for view in self.json(path)["views"]}
        self.assertEqual(problems["bad"], "no such table: main.gone")
        self.assertIsNotNone(problems["worse"])
        self.assertIsNone(problems["a_good"])

    def test_long_sql_is_one_shortened_line(self):
        path = self.checked("CREATE TABLE t (a);"
                            f"CREATE VIEW v AS SELECT '{'ä' * 200}' AS text FROM t;")
        line = self.block(path, "view v")[1]
        self.assertRegex(line, r"\A  AS SELECT 'ä+\.\.\.\Z")
        self.assertLess(len(line), 100)
        self.assertIn("ä" * 200, self.json(path)["views"][0]["sql"])

    def test_internal_tables_are_left_out(self):
        path = self.checked("CREATE TABLE t (a INTEGER PRIMARY KEY AUTOINCREMENT, b); CREATE INDEX i ON t (b);"
                            "INSERT INTO t (b) VALUES (1); ANALYZE;")
        self.assertEqual([table["name"] for table in self.json(path)["tables"]], ["t"])
        self.assertNotIn("sqlite_", self.tree(path))

    def test_views_alone(self):
        path = self.checked("CREATE VIEW v AS SELECT 1 AS one")
        self.assertEqual(self.tree(path), "made.db: 0 tables, 0 columns, 0 primary keys, 0 foreign keys, 0 indexes,"
                                          " 1 view, 0 triggers\n\nno tables\n\nview v\n  one\n  AS SELECT 1 AS one\n")

    def test_a_changed_table_shows_its_new_form(self):
        path = self.checked("CREATE TABLE t (a, b); CREATE INDEX i ON t (lower(b));"
                            "ALTER TABLE t RENAME TO \"new t\"; ALTER TABLE \"new t\" RENAME b TO \"new b\";"
                            "ALTER TABLE \"new t\" ADD COLUMN c TEXT DEFAULT 'x'; ALTER TABLE \"new t\" DROP COLUMN a;")
        self.assertEqual(self.block(path, 'table "new t"'),
                         ['  "new b"', "  c        TEXT  default 'x'", '  index i (lower("new b"))'])

    def test_a_thousand_tables(self):
        path = self.checked("BEGIN;" + "".join(f"CREATE TABLE t{n} (id PRIMARY KEY, up REFERENCES t{n + 1});"
                                               for n in range(1000)) + "COMMIT;")
        keys = [key for table in self.json(path)["tables"] for key in table["foreign_keys"]]
        self.assertEqual(sum(key["resolved"] for key in keys), 999)


schema_tool.main()
