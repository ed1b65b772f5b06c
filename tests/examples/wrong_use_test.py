#!/usr/bin/env python3
"""Whatever is typed: an answer, or one sentence on standard error and exit status 1, and no file is hurt.

    wrong_use_test.py KELM_SCHEMA
"""
import os
import pathlib
import sqlite3
import subprocess

import schema_tool

NAMES = ("plain", "two words", "o'clock", 'say "so"', "two\nlines", "\u00fcber \u8868", "{}", "[z]", "[[a,b]]", "[]", "-dash",
         "--to", "show", "x" * 300)


def quoted(name):
    return '"' + name.replace('"', '""') + '"'


class WrongUse(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.source = self.make("CREATE TABLE t (a PRIMARY KEY, b REFERENCES t); CREATE INDEX i ON t (b);", "s.db")
        self.path = self.imported(self.source, "s.kelm")
        self.apply(self.path, "drop index i\n")
        self.content = self.path.read_bytes()

    def told(self, *arguments, **options):
        sentence = self.refused(*arguments, cwd=self.folder, **options)
        self.assertEqual(self.path.read_bytes(), self.content)
        return sentence

    def test_wrong_use_is_told_with_a_way_to_read_more(self):
        more = "kelm-schema {}--help tells more"
        for arguments, why, command in (
                ((), "a command is required", ""),
                (("sing",), 'there is no command "sing"', ""),
                (("--sing",), "there is no option --sing", ""),
                (("",), 'there is no command ""', ""),
                (("two\nlines",), 'there is no command "two\u240alines"', ""),
                (("--json", "show", "s.kelm"), "The following argument was not expected: --json", "show "),
                (("show",), "FILE is required", "show "),
                (("show", "s.db", "s.kelm"), "The following argument was not expected: s.kelm", "show "),
                (("show", "s.db", "[x]"), "The following argument was not expected: [x]", "show "),
                (("show", "s.db", "--sort", "size"), "--sort: size not in {columns,file-order,name}", "show "),
                (("show", "s.db", "--type", "table,x"), "--type: x not in {index,table,trigger,view}", "show "),
                (("show", "s.db", "--json=maybe"), "Could not convert: --json = maybe", "show "),
                (("import", "s.db"), "--output is required", "import "),
                (("import", "s.db", "-o"), "--output needs a value", "import "),
                (("import", "s.db", "-o", "a", "-o", "b"), "--output is given more than once", "import "),
                (("log", "s.kelm", "-o", "x"), "--output requires --replay", "log "),
                (("log", "s.kelm", "--replay", "--json", "-o", "x"), "--json excludes --replay", "log "),
                (("copy", "s.kelm", "t"), "--to or --to-clipboard is required", "copy "),
                (("--generate", "x"), "--generate: x not in {man,bash,zsh,fish}", "")):
            with self.subTest(arguments):
                self.assertEqual(self.told(*arguments), f"{why}; {more.format(command)}")

    def test_a_count_is_a_number_from_1_on(self):
        for arguments, name, command in ((("changes", "s.kelm", "--since"), "--since", "changes"),
                                         (("log", "s.kelm", "--last"), "--last", "log"), (("undo", "s.kelm"), "N", "undo")):
            for given in ("0", "00", "x", "1x", "1.5", "0x1", "", " 1", "99999999999999999999999"):
                with self.subTest(arguments=arguments, given=given):
                    self.assertEqual(self.told(*arguments, given), f'{name}: a number from 1 on is wanted, not "{given}"; '
                                                                   f"kelm-schema {command} --help tells more")
        self.assertIn("-1", self.told("undo", "s.kelm", "-1"))

    def test_any_name_can_be_given(self):
        source = self.make("".join(f"CREATE TABLE {quoted(name)} (a);" for name in NAMES), "names.db")
        for name in NAMES:
            with self.subTest(name):
                other = self.imported(self.make("", "empty.db"), "other.kelm")
                self.done("copy", source, "--to", other, "--", name)
                [there] = self.json(other)["tables"]
                self.assertEqual(there["name"], name)
        for name in (name for name in NAMES if "\n" not in name and len(name) < 200):
            with self.subTest(file=name):
                os.makedirs(self.folder / "named", exist_ok=True)
                path = pathlib.Path("named") / name
                self.done("import", source, "-o", path, cwd=self.folder)
                self.assertEqual(self.done("log", path, cwd=self.folder), "no edits\n")

    def test_output_never_goes_where_input_comes_from(self):
        link = self.folder / "link"
        link.symlink_to(self.path)
        for target in ("s.kelm", "./s.kelm", link):
            self.assertEqual(self.told("log", "s.kelm", "--replay", "-o", target),
                             f'"{target}" is the file that is read; the log needs one of its own')
            self.assertEqual(self.told("copy", "s.kelm", "t", "--to-clipboard", target),
                             f'"{target}" is the file that is read; the clipboard needs one of its own')
        self.assertEqual(self.told("import", "s.kelm", "-o", "s.kelm"), '"s.kelm" is not an SQLite database')
        self.assertEqual(self.done("convert", "s.kelm", "s.kelm", cwd=self.folder), "")
        self.assertEqual(self.path.read_bytes(), self.content)

    def test_a_file_of_another_kind_is_told(self):
        self.done("copy", "s.kelm", "t", "--to-clipboard", "clip", cwd=self.folder)
        self.done("log", "s.kelm", "--replay", "-o", "log", cwd=self.folder)
        neither = "is neither an SQLite database nor a whole file of kelm-schema"
        for arguments, why in ((("show", "clip"), f'"clip" {neither}'), (("undo", "log"), f'"log" {neither}'),
                               (("paste", "log", "s.kelm"), '"log" is not a whole clipboard of kelm-schema'),
                               (("paste", "s.kelm", "s.kelm"), '"s.kelm" is not a whole clipboard of kelm-schema'),
                               (("replay", "clip", "s.kelm"), '"clip" is not a whole replay log of kelm-schema'),
                               (("replay", "s.db", "s.kelm"), '"s.db" is not a whole replay log of kelm-schema'),
                               (("replay", "log", "clip"), f'"clip" {neither}')):
            with self.subTest(arguments):
                self.assertEqual(self.told(*arguments), why)

    def test_an_empty_file_is_an_empty_database_and_nothing_else(self):
        (self.folder / "empty").touch()
        self.assertIn("0 tables", self.done("show", "empty", cwd=self.folder))
        self.assertIn("is an SQLite database", self.told("undo", "empty"))
        self.assertEqual(self.told("paste", "empty", "s.kelm"), '"empty" is not a whole clipboard of kelm-schema')
        self.assertEqual(self.told("replay", "empty", "s.kelm"), '"empty" is not a whole replay log of kelm-schema')

    def test_no_place_to_write_is_told(self):
        for arguments in (("import", "s.db", "-o"), ("convert", "s.kelm"), ("edit", "s.kelm", os.devnull, "-o"),
                          ("log", "s.kelm", "--replay", "-o"), ("copy", "s.kelm", "t", "--to-clipboard")):
            for target, why in (("/dev/full", "it is no regular file"), (".", "it is a directory"),
                                ("nowhere/x", "No such file or directory"), ("s.db/x", "Not a directory")):
                with self.subTest(arguments=arguments, target=target):
                    self.assertEqual(self.told(*arguments, target), f'cannot write "{target}": {why}')
        self.assertEqual(self.told("convert", "s.kelm", ""), "a file to write needs a name")

    def test_a_script_that_cannot_be_read_is_told(self):
        for script, why in (("nowhere", 'cannot read script "nowhere": No such file or directory'),
                            (".", 'cannot read script ".": Is a directory'),
                            ("s.kelm", "line 1: the line is not UTF-8")):
            self.assertEqual(self.told("edit", "s.kelm", script), why)
        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        self.assertEqual(self.told("edit", "s.kelm", "-", stdin=folder), 'cannot read script "-": Is a directory')
        long = self.told("edit", "s.kelm", "-", input=b"x" * 100000)
        self.assertEqual(long, f'line 1: expected a command, not "{"x" * 60}..."')

    def test_a_script_may_begin_with_a_mark_of_utf_8(self):
        self.done("edit", self.path, "-", input="\ufeffrename table t \u00fc\n".encode())
        self.assertIn('table "\u00fc"\n', self.tree(self.path))
        self.assertIn("line 2: ", self.refused("edit", self.path, "-", input="# nothing\n\ufeffshow\n".encode()))

    def test_output_that_nobody_reads_ends_the_program(self):
        columns = ", ".join(f"{'c' * 60}{n}" for n in range(1500))  # more than a pipe holds
        big = self.make(f"CREATE TABLE t ({columns})", "big.db")
        shell = f"'{schema_tool.TOOL}' show '{big}' | head -1; echo ${{PIPESTATUS[0]}}"
        for prepared, status in (("", "141"), ("trap '' PIPE; ", "1")):
            done = subprocess.run(["bash", "-c", prepared + shell], capture_output=True, timeout=50, restore_signals=True)
            self.assertEqual(done.stdout.decode().splitlines()[1], status)
            self.assertEqual(done.stderr, b"" if status == "141" else b"kelm-schema: cannot write the output\n")

    def test_output_that_cannot_be_written_is_told_by_every_command(self):
        before = self.content
        for arguments in (("--help",), ("--version",), ("--generate", "man"), ("log", "s.kelm"), ("changes", "s.kelm"),
                          ("undo", "s.kelm")):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                done = subprocess.run([schema_tool.TOOL, *arguments], cwd=self.folder, stdout=full, stderr=subprocess.PIPE)
                self.assertEqual((done.returncode, done.stderr), (1, b"kelm-schema: cannot write the output\n"))
        self.assertNotEqual(self.path.read_bytes(), before)  # the last had saved before it had something to say

    def test_a_database_with_thousands_of_tables_makes_the_round(self):
        tables = 2000
        source = self.make("BEGIN;" + "".join(f"CREATE TABLE t{n} (a, b REFERENCES t{n // 2});" for n in range(tables))
                           + "COMMIT;", "many.db")
        path = self.imported(source, "many.kelm")
        self.apply(path, f"rename table t0 first\ndrop column t{tables - 1}.a\n")
        self.assertEqual(self.done("log", path).count("\n"), 2)
        self.done("undo", path, "2")
        self.assertEqual(self.tree(path), self.tree(source))

    def test_what_is_locked_is_told_by_every_reader(self):
        writer = sqlite3.connect(self.source, isolation_level=None)
        self.addCleanup(writer.close)
        writer.execute("BEGIN EXCLUSIVE")
        for arguments in (("import", "s.db", "-o", "x"), ("edit", "s.db", os.devnull), ("copy", "s.db", "t", "--to", "s.kelm")):
            with self.subTest(arguments):
                self.assertEqual(self.told(*arguments), '"s.db" is locked by another program')


schema_tool.main()
