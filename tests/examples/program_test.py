#!/usr/bin/env python3
"""An example program prints what its reader expects, and complains of nothing.

    program_test.py PROGRAM EXPECTED_TEXT
"""
import difflib
import pathlib
import subprocess
import sys

expected = pathlib.Path(sys.argv[2]).read_text()
done = subprocess.run([sys.argv[1]], capture_output=True, text=True, timeout=30)
if (done.returncode, done.stdout, done.stderr) != (0, expected, ""):
    differences = "\n".join(difflib.unified_diff(expected.splitlines(), done.stdout.splitlines(), "expected", "printed"))
    sys.exit(f"exit {done.returncode}, complained {done.stderr!r}\n{differences}")
