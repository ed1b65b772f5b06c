"""Runs kelm-schema for the tests beside this file; the program is their first argument."""
import json
import os
import pathlib
import sqlite3
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else ""


def run(*arguments, **options):
    return subprocess.run([TOOL, *map(os.fsencode, arguments)], capture_output=True, timeout=50, **options)


def environment(**more):
    """For edits that are signed the same in every run."""
    return {**os.environ, "USER": "ann", "SOURCE_DATE_EPOCH": "1795255200", **more}


SIGNED = "2026-11-21T10:00:00Z  ann"


class ToolTest(unittest.TestCase):
    """Gives each test a folder of its own."""
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def make(self, script, name="made.db"):
        path = self.folder / name
        connection = sqlite3.connect(path)
        connection.executescript("PRAGMA synchronous = OFF;" + script)
        connection.close()
        return path

    def tree(self, path):
        done = run("show", path)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode("utf-8")

    def lines(self, path):
        return [line.strip() for line in self.tree(path).splitlines()]

    def block(self, path, first_line):
        """The lines of one table or view."""
        for block in self.tree(path).split("\n\n"):
            lines = block.rstrip("\n").split("\n")
            if lines[0] == first_line:
                return lines[1:]
        return self.fail(f"no block begins with {first_line!r}:\n{self.tree(path)}")

    def json(self, path):
        """Read by the strictest reader at hand: no repeated keys, no constants beyond JSON."""
        def once(pairs):
            self.assertEqual(len(pairs), len({key for key, _ in pairs}))
            return dict(pairs)

        done = run("show", path, "--json")
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return json.loads(done.stdout.decode("utf-8"), object_pairs_hook=once, parse_constant=self.fail)

    def done(self, *arguments, **options):
        """What a command prints that goes well."""
        done = run(*arguments, **{"env": environment(), **options})
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return done.stdout.decode("utf-8")

    def imported(self, database, name="made.kelm"):
        path = self.folder / name
        self.assertEqual(self.done("import", database, "-o", path), "")
        return path

    def apply(self, source, script, *arguments):
        return self.done("edit", source, "-", *arguments, input=script.encode("utf-8"))

    def refused(self, *arguments, **options):
        """The one sentence on stderr."""
        done = run(*arguments, **options)
        self.assertEqual(done.returncode, 1, done)
        self.assertEqual(done.stdout, b"")
        sentence = done.stderr.decode("utf-8", "replace")
        self.assertRegex(sentence, r"\Akelm-schema: [^\n]+\n\Z")
        return sentence[len("kelm-schema: "):-1]


def main():
    unittest.main(argv=sys.argv[:1])
