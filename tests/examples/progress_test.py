#!/usr/bin/env python3
"""Long work tells how far it is: on a terminal, on one line that is gone at the end, and nowhere else.

    progress_test.py KELM_SCHEMA
"""
import fcntl
import os
import pty
import re
import struct
import subprocess
import tempfile
import termios

import schema_tool

ERASE = "\x1b[K"
TABLES = 300


def on_terminal(*arguments, columns=0, **variables):
    """Runs the tool with a terminal of its own as standard error.  Returns exit code, output, and what the terminal got."""
    ours, its = pty.openpty()
    fcntl.ioctl(its, termios.TIOCSWINSZ, struct.pack("HHHH", 0, columns, 0, 0))
    environment = {**schema_tool.environment(), "TERM": "xterm", **variables}
    output = tempfile.TemporaryFile()
    process = subprocess.Popen([schema_tool.TOOL, *map(os.fsencode, arguments)], stdin=subprocess.DEVNULL,
                               stdout=output, stderr=its, env=environment)
    os.close(its)
    got = b""
    try:
        while piece := os.read(ours, 65536):
            got += piece
    except OSError:  # the other end has been closed
        pass
    os.close(ours)
    code = process.wait(timeout=50)
    with output:
        output.seek(0)
        return code, output.read().decode(), got.decode()


def screen(got):
    """What stands on a line that has been written over and over."""
    line, column = "", 0
    for part in re.split(r"(\r|\x1b\[K)", got):
        if part == "\r":
            column = 0
        elif part == ERASE:
            line = line[:column]
        else:
            line = line[:column] + part + line[column + len(part):]
            column += len(part)
    return line


class Progress(schema_tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.big = self.make("BEGIN;" + "".join(
            f"CREATE TABLE t{n} (id INTEGER PRIMARY KEY, a TEXT DEFAULT '{'x' * 1000}', b REFERENCES t{n});"
            for n in range(TABLES)) + "COMMIT;", "big.db")
        self.path = self.folder / "big.kelm"

    def lines(self, *arguments, **more):
        """The lines that were shown, of a command that goes well and leaves none of them."""
        code, _, got = on_terminal(*arguments, **more)
        self.assertEqual(code, 0, got)
        self.assertNotIn("\n", got)
        if got:
            self.assertTrue(got.endswith("\r" + ERASE), got)
            self.assertEqual(screen(got), "")
        shown = [line.removesuffix(ERASE) for line in got.split("\r") if line not in ("", ERASE)]
        return shown

    def counts(self, lines, what):
        return [int(found[1]) for line in lines if (found := re.fullmatch(what, line))]

    def test_each_long_work_counts(self):
        lines = self.lines("import", self.big, "-o", self.path)
        for what in ("columns", "keys", "foreign keys"):
            self.assertEqual(self.counts(lines, rf"reading {what}: (\d+) of {TABLES} tables"),
                             list(range(50, TABLES + 1, 50)))
        size = self.path.stat().st_size // 1024
        written = self.counts(lines, r"writing: (\d+) kB")
        self.assertGreater(len(written), 0)
        self.assertEqual(written, sorted(set(written)))
        self.assertLessEqual(written[-1], size)
        read = self.counts(self.lines("log", self.path), rf"reading big\.kelm: (\d+) of {size} kB")
        self.assertEqual(read, list(range(256, size + 1, 256)))

    def test_converting_and_replaying_count(self):
        self.imported(self.big, "big.kelm")
        document = self.folder / "big.xml"
        lines = self.lines("convert", self.path, document)
        for step in (1, 2, 3):
            self.assertIn(f"writing big.xml: step {step} of 3", lines)
        for step in (1, 2):
            self.assertIn(f"reading big.xml: step {step} of 2", self.lines("log", document))
        twin = self.imported(self.big, "twin.kelm")
        self.apply(twin, "".join(f"add column t{n}.more TEXT\n" for n in range(120)))
        log = self.folder / "log"
        self.done("log", twin, "--replay", "-o", log)
        lines = self.lines("replay", log, self.path)
        self.assertEqual(self.counts(lines, r"replaying: (\d+) edits"), [50, 100])

    def test_an_error_takes_the_line_away(self):
        self.imported(self.big, "big.kelm")
        content = self.path.read_bytes()
        self.path.write_bytes(content[:-1])
        code, _, got = on_terminal("log", self.path)
        self.assertEqual(code, 1)
        self.assertIn("reading big.kelm: 256 of", got)
        self.assertEqual(got.rpartition(ERASE)[2], f'kelm-schema: "{self.path}" is neither an SQLite database '
                                                   "nor a whole file of kelm-schema\r\n")

    def test_a_narrow_terminal_gets_a_short_line(self):
        for columns in (20, 33):
            for line in self.lines("import", self.big, "-o", self.path, columns=columns):
                self.assertLess(len(line), columns)
        self.assertIn("reading columns:...", self.lines("import", self.big, "-o", self.path, columns=20))

    def test_little_work_is_not_told(self):
        small = self.make("CREATE TABLE t (a);", "small.db")
        self.assertEqual(self.lines("import", small, "-o", self.folder / "small.kelm"), [])

    def test_nobody_is_told_who_has_not_asked(self):
        arguments = ("import", self.big, "-o", self.path)
        self.assertNotEqual(self.lines(*arguments), [])
        self.assertEqual(self.lines(*arguments, "--quiet"), [])
        self.assertEqual(self.lines("import", "-q", *arguments[1:]), [])
        for terminal in ("dumb", ""):
            self.assertEqual(self.lines(*arguments, TERM=terminal), [])
        done = schema_tool.run(*arguments, env={**schema_tool.environment(), "TERM": "xterm"})
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))

    def test_output_is_the_same_with_and_without(self):
        self.assertEqual(on_terminal("show", self.big)[1], self.done("show", self.big))


schema_tool.main()
