#!/usr/bin/env python3
"""The program with two hooks prints what its reader expects.

    refusing_hook_test.py PROGRAM
"""
import subprocess
import sys

EXPECTED = '''\
635 pages: true, shelf 635
300 pages: true, shelf 935
-1 pages: false, shelf 935
after undo: book 0, shelf 635
'''

done = subprocess.run([sys.argv[1]], capture_output=True, text=True, timeout=30)
if (done.returncode, done.stdout, done.stderr) != (0, EXPECTED, ""):
    sys.exit(f"exit {done.returncode}, printed {done.stdout!r}, complained {done.stderr!r}")
