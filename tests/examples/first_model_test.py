#!/usr/bin/env python3
"""The first program prints what its reader expects.

    first_model_test.py PROGRAM
"""
import subprocess
import sys

EXPECTED = '''\
Moby Dick, 635 pages
after undo of "Add a book": 0 books
'''

done = subprocess.run([sys.argv[1]], capture_output=True, text=True, timeout=30)
if (done.returncode, done.stdout, done.stderr) != (0, EXPECTED, ""):
    sys.exit(f"exit {done.returncode}, printed {done.stdout!r}, complained {done.stderr!r}")
