#!/usr/bin/env python3
"""Files that cannot be read or written: one sentence each, and what was there stays.

    file_errors_test.py KELM_SCHEMA
"""
import os
import resource
import signal

import schema_tool

NEITHER = "is neither an SQLite database nor a whole file of kelm-schema"
COMMANDS = (("show",), ("log",), ("undo",), ("edit", "-"), ("convert", "other.kelm"))


class FileErrors(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.source = self.make("CREATE TABLE t (a); CREATE INDEX i ON t (a);")
        self.path = self.imported(self.source)
        self.apply(self.path, "drop index i\n")
        self.content = self.path.read_bytes()

    def each_refuses(self, path, why, commands=COMMANDS):
        for command, *more in commands:
            with self.subTest(command):
                self.assertEqual(self.refused(command, path, *more, input=b"", cwd=self.folder), why)
        self.assertFalse((self.folder / "other.kelm").exists())

    def test_what_is_no_file_is_told(self):
        missing = self.folder / "nowhere"
        self.each_refuses(missing, f'there is no file "{missing}"')
        self.each_refuses(self.folder, f'"{self.folder}" is a directory, not a file')

    def test_a_file_that_is_cut_short_is_told(self):
        cut = self.folder / "cut.kelm"
        for length in [1, 15, 16, 31, 32, *range(40, len(self.content), 97), len(self.content) - 1]:
            cut.write_bytes(self.content[:length])
            with self.subTest(length):
                self.assertEqual(self.refused("show", cut), f'"{cut}" {NEITHER}')
        self.each_refuses(cut, f'"{cut}" {NEITHER}')

    def test_a_file_with_more_behind_its_end_is_told(self):
        self.path.write_bytes(self.content + b"\0")
        self.each_refuses(self.path, f'"{self.path}" {NEITHER}')

    def test_damage_ends_in_an_answer_or_a_sentence(self):
        hurt = self.folder / "hurt.kelm"
        outcomes = set()
        for place in range(0, len(self.content), max(1, len(self.content) // 250)):
            damaged = bytearray(self.content)
            damaged[place] ^= 0xff
            hurt.write_bytes(damaged)
            done = schema_tool.run("edit", hurt, "-", "-o", self.folder / "out.kelm", input=b"show\nhistory\nundo\n")
            outcomes.add(done.returncode)
            with self.subTest(place):
                self.assertIn(done.returncode, (0, 1), done.stderr)
                if done.returncode:
                    self.assertRegex(done.stderr, rb"\Akelm-schema: [^\n]+\n\Z")
        self.assertEqual(outcomes, {0, 1})

    def test_other_versions_are_told(self):
        for version, why in ((b"\x07\0\0\0\x0f\0\0\0", "has version 7.15, this program reads up to 7.14"),
                             (b"\x08\0\0\0\0\0\0\0", "has version 8.0, this program reads up to 7.14"),
                             (b"\x06\0\0\0\x0e\0\0\0", NEITHER)):
            other = self.folder / "version.kelm"
            other.write_bytes(self.content[:24] + version + self.content[32:])
            with self.subTest(version):
                self.each_refuses(other, f'"{other}" {why}')

    def test_a_database_has_no_edits(self):
        self.each_refuses(self.source, f'"{self.source}" is an SQLite database; kelm-schema import makes a file of it',
                          COMMANDS[1:3] + COMMANDS[4:])

    def test_a_database_is_never_written(self):
        content = self.source.read_bytes()
        why = f'"{self.source}" is an SQLite database, which is never written'
        self.assertEqual(self.refused("import", self.source, "-o", self.source), why)
        self.assertEqual(self.refused("convert", self.path, self.source), why)
        self.assertEqual(self.refused("edit", self.source, "-", "-o", self.source, input=b"show\n"), why)
        self.assertEqual(self.refused("log", self.path, "--replay", "-o", self.source), why)
        self.assertEqual(self.source.read_bytes(), content)

    def test_what_cannot_be_written_is_told_and_leaves_nothing_behind(self):
        folder = self.folder / "folder"
        folder.mkdir()
        gone = self.folder / "gone" / "x.kelm"
        before = sorted(self.folder.iterdir())
        for target, why in ((folder, "it is a directory"), (gone, "No such file or directory"),
                            ("/dev/null", "it is no regular file"), (self.path / "x", "Not a directory"),
                            ("/proc/x.kelm", None)):
            with self.subTest(target):
                sentence = self.refused("import", self.source, "-o", target)
                self.assertTrue(sentence.startswith(f'cannot write "{target}": '), sentence)
                if why:
                    self.assertEqual(sentence, f'cannot write "{target}": {why}')
                self.assertEqual(sorted(self.folder.iterdir()), before)

    def test_a_read_only_file_or_folder_keeps_what_it_has(self):
        if os.geteuid() == 0:
            self.skipTest("root may write all")
        self.path.chmod(0o444)
        self.assertEqual(self.refused("undo", self.path), f'cannot write "{self.path}": it is read-only')
        self.path.chmod(0o644)
        self.folder.chmod(0o555)
        self.assertEqual(self.refused("undo", self.path), f'cannot write "{self.path}": Permission denied')
        self.folder.chmod(0o755)
        self.assertEqual(self.path.read_bytes(), self.content)

    def test_a_disk_that_is_full_leaves_the_old_file(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500))
        before = sorted(self.folder.iterdir())
        self.assertEqual(self.refused("undo", self.path, preexec_fn=limit), f'cannot write "{self.path}": File too large')
        self.assertEqual(sorted(self.folder.iterdir()), before)
        self.assertEqual(self.path.read_bytes(), self.content)

    def test_wrong_use_is_told(self):
        for arguments in (("import", "a.db"), ("log", "a", "--replay"), ("log", "a", "-o", "b"), ("undo", "a", "0"),
                          ("undo", "a", "-1"), ("log", "a", "--last", "x"), ("convert", "a"), ("replay", "a"),
                          ("log", "a", "--replay", "-o", "b", "--json")):
            with self.subTest(arguments):
                self.assertIn("--help", self.refused(*arguments))
        for command in ("import", "edit", "undo", "log", "replay", "convert"):
            self.assertIn(command, self.done("--help"))
            self.assertIn("Options", self.done(command, "--help"))


schema_tool.main()
