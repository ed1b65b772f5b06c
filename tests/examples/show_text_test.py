#!/usr/bin/env python3
"""The whole tree of a small schema, line by line.

    show_text_test.py KELM_SCHEMA
"""
import schema_tool

SCRIPT = """
CREATE TABLE author (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL COLLATE NOCASE
);
CREATE TABLE book (
    id INTEGER PRIMARY KEY,
    title TEXT NOT NULL,
    author INTEGER NOT NULL REFERENCES author ON DELETE CASCADE,
    "order" INTEGER DEFAULT 0,
    UNIQUE (author, title)
);
CREATE INDEX book_title ON book (title);
CREATE VIEW shelf AS SELECT b.title, a.name FROM book b JOIN author a ON a.id = b.author;
CREATE TRIGGER no_empty_title BEFORE INSERT ON book WHEN new.title = '' BEGIN
    SELECT RAISE(ABORT, 'a book has a title');
END;
"""

TREE = """\
library.db: 2 tables, 6 columns, 2 primary keys, 1 foreign key, 1 index, 1 view, 1 trigger

table author
  id    INTEGER  pk 1
  name  TEXT     not null  collate NOCASE
  primary key (id)

table book
  id       INTEGER  pk 1
  title    TEXT     not null
  author   INTEGER  not null
  "order"  INTEGER  default 0
  primary key (id)
  unique (author, title)
  foreign key (author) -> author (id)  on delete cascade
  index book_title (title)
  trigger no_empty_title  BEFORE INSERT ON book WHEN new.title = '' BEGIN SELECT RAISE(ABORT, 'a b...

view shelf
  title  TEXT
  name   TEXT
  AS SELECT b.title, a.name FROM book b JOIN author a ON a.id = b.author
"""


class ShowText(schema_tool.ToolTest):
    def test_the_tree_is_this(self):
        self.assertEqual(self.tree(self.make(SCRIPT, "library.db")), TREE)

    def test_two_runs_print_the_same(self):
        path = self.make(SCRIPT, "library.db")
        self.assertEqual(self.tree(path), self.tree(path))
        self.assertEqual(self.json(path), self.json(path))


schema_tool.main()
