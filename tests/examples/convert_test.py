#!/usr/bin/env python3
"""Schemas as XML documents, and back: nothing is lost, and what a document cannot hold is told.

    convert_test.py KELM_SCHEMA
"""
import os
import unittest
import xml.etree.ElementTree

import schema_tool

PROJ = "/usr/share/proj/proj.db"

SMALL = """
CREATE TABLE "Bücher & <Hefte>" (isbn TEXT PRIMARY KEY, "by ""whom"" then" REFERENCES author, title DEFAULT ' ' COLLATE NOCASE);
CREATE TABLE author (id INTEGER PRIMARY KEY, name TEXT NOT NULL, "日本語" INT, '😀' INT);
CREATE INDEX by_title ON "Bücher & <Hefte>" (title DESC);
CREATE VIEW old AS\r\n\tSELECT 1 -- ]]> &amp; \r  two
;
CREATE TRIGGER guard BEFORE DELETE ON author BEGIN SELECT RAISE(ABORT, 'no'); END;
"""

EDITS = """rename table author "Vögel & 'Co'"
add domain money DECIMAL(10,2) default 0 not null
add column "Vögel & 'Co'".fee TEXT
use domain money for "Vögel & 'Co'".fee
define property owner on table, column default nobody choices (nobody, Änne)
define property note on column
set property owner of "Vögel & 'Co'" to "Änne"
set property note of "Vögel & 'Co'".fee to "<b>&</b>"
drop index by_title
drop table "Bücher & <Hefte>"
define property "vorbei ö" on table
drop property "vorbei ö"
"""


class Convert(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.path = self.imported(self.make(SMALL))
        self.document = self.folder / "made.XML"

    def check_round_trip(self, path):
        self.assertEqual(self.done("convert", path, self.document), "")
        self.assertEqual(self.tree(self.document), self.tree(path))
        back = self.folder / "back.kelm"
        self.done("convert", self.document, back)
        self.assertEqual(back.read_bytes(), path.read_bytes())
        again = self.folder / "again.xml"
        self.done("convert", back, again)
        self.assertEqual(again.read_bytes(), self.document.read_bytes())

    def test_there_and_back_gives_every_byte(self):
        self.check_round_trip(self.path)

    def test_edits_domains_and_properties_of_users_come_along(self):
        self.apply(self.path, EDITS)
        self.check_round_trip(self.path)
        self.assertEqual(self.done("log", self.document, "--messages"), self.done("log", self.path, "--messages"))

    @unittest.skipUnless(os.path.exists(PROJ), "the package proj-data is not installed")
    def test_a_real_schema_gives_every_byte(self):
        path = self.imported(PROJ, "proj.kelm")
        self.apply(path, "drop table usage\ndrop column extent.description\n")
        self.check_round_trip(path)

    def test_a_document_is_edited_and_taken_back_like_any_file(self):
        start = self.tree(self.path)
        self.done("convert", self.path, self.document)
        self.apply(self.document, EDITS)
        self.apply(self.path, EDITS)
        self.assertEqual(self.tree(self.document), self.tree(self.path))
        count = str(len(EDITS.splitlines()))
        self.assertEqual(self.done("undo", self.document, count), self.done("undo", self.path, count))
        self.assertEqual(self.tree(self.document), start)

    def test_a_database_may_be_imported_as_a_document(self):
        direct = self.imported(self.folder / "made.db", "direct.xml")
        self.assertEqual(self.tree(direct), self.tree(self.path))

    def test_a_document_is_xml_that_others_can_read(self):
        self.apply(self.path, EDITS)
        self.done("convert", self.path, self.document)
        content = self.document.read_bytes()
        self.assertTrue(content.startswith(b"<?xml"), content[:50])
        root = xml.etree.ElementTree.fromstring(content)
        self.assertEqual(root.tag, "kelm_schema")
        self.assertEqual((root.find("meta_model").get("version"), root.find("meta_model").get("minor_version")),
                         ("7", "14"))
        self.assertIn("Vögel & 'Co'", [value.text for value in root.iter("value")])
        self.assertGreater(content.count(b"\n"), 100)

    def test_what_xml_has_no_place_for_is_told(self):
        for text, why in (("a\\x01b", 'XML has no place for a character of the text "a␁b"'),):
            source = self.make(f'CREATE TABLE "{text}" (a)'.replace("\\x01", "\x01"), "control.db")
            self.assertEqual(self.refused("import", source, "-o", self.document),
                             f'cannot write "{self.document}": {why}')
            self.assertFalse(self.document.exists())
            path = self.imported(source, "control.kelm")
            self.assertEqual(self.refused("convert", path, self.document), f'cannot write "{self.document}": {why}')
            # What the history remembers counts as well.
            self.apply(path, 'rename table "a\x01b" fine\n')
            self.assertIn("XML has no place", self.refused("convert", path, self.document))

    def test_text_that_would_not_come_back_is_told(self):
        source = self.folder / "bytes.db"
        self.make("CREATE TABLE abc (a)", "bytes.db")
        source.write_bytes(source.read_bytes().replace(b"abc", b"a\xffc"))
        path = self.imported(source, "bytes.kelm")
        self.assertEqual(self.refused("convert", path, self.document),
                         f'cannot write "{self.document}": as XML it would not be the same, '
                         "as a text holds a zero byte, is no UTF-8, or an edit has an escape like &lt; in its name")
        self.assertFalse(self.document.exists())

    def test_names_of_edits_may_be_any_text_but_the_escapes_of_the_library(self):
        self.apply(self.path, 'define property note on table\nset property note of author to "R&D & <b> &amp; \\t ü"\n')
        self.check_round_trip(self.path)
        self.apply(self.path, 'set property note of author to "&lt;"\n')
        self.assertIn("an escape like &lt; in its name", self.refused("convert", self.path, self.document))

    def test_documents_that_are_none_are_told(self):
        self.done("convert", self.path, self.document)
        good = self.document.read_bytes()
        bomb = (b'<!DOCTYPE kelm_schema [<!ENTITY a "aaaaaaaaaa">' +
                b"".join(b'<!ENTITY %c "%s">' % (98 + n, b"&%c;" % (97 + n) * 10) for n in range(9)) +
                b"]><kelm_schema>&j;</kelm_schema>")
        secret = self.folder / "secret"
        secret.write_text("secret")
        neither = "is neither an SQLite database nor a whole file of kelm-schema"
        for content, why in (
                (b"hello", "is no XML document: line 1: "),
                (b"<a>", "is no XML document: line 1: "),
                (good[:len(good) // 2], "is no XML document: line "),
                (good + b"<a/>", "is no XML document: line "),
                (b'<?xml version="1.0" encoding="UTF-8"?><a>\xff</a>', "is no XML document: "),
                (b"<a/>", "is an XML document, but none of kelm-schema"),
                (b"<kelm_schema/>", neither),
                (good.replace(b"<meta_model ", b"<other_model ").replace(b"</meta_model>", b"</other_model>"), neither),
                (good.replace(b'minor_version="14"', b'minor_version="15"'),
                 "has version 7.15, this program reads up to 7.14"),
                (good.replace(b'minor_version="14"', b'minor_version="13"'), neither),
                (bomb, "is no XML document: "),
                (b'<!DOCTYPE kelm_schema><kelm_schema/>', "is no XML document: it has a document type"),
                (b'<!DOCTYPE kelm_schema [<!ENTITY s SYSTEM "file://%s">]><kelm_schema>&s;</kelm_schema>'
                 % os.fsencode(secret), "is no XML document: ")):
            self.document.write_bytes(content)
            with self.subTest(content[:60]):
                sentence = self.refused("show", self.document)
                self.assertTrue(sentence.startswith(f'"{self.document}" {why}'), sentence)
        self.document.write_bytes(good)
        self.tree(self.document)

    def test_remarks_and_white_space_of_others_do_no_harm(self):
        self.done("convert", self.path, self.document)
        tree = self.tree(self.document)
        content = self.document.read_bytes()
        self.document.write_bytes(content.replace(b"<value>", b"<value><!-- mine -->").replace(b"<prop ", b"\n\n<prop "))
        self.assertEqual(self.tree(self.document), tree)


schema_tool.main()
