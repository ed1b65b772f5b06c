#!/usr/bin/env python3
"""The program with a property of a user's own prints what its reader expects.

    user_properties_test.py PROGRAM
"""
import subprocess
import sys

EXPECTED = '''\
added: Owner = nobody
set: Owner = Ann
renamed: Keeper = Ann
in another document:
removed:
back again: Keeper = Ann
under its old name: Owner = Ann
'''

done = subprocess.run([sys.argv[1]], capture_output=True, text=True, timeout=30)
if (done.returncode, done.stdout, done.stderr) != (0, EXPECTED, ""):
    sys.exit(f"exit {done.returncode}, printed {done.stdout!r}, complained {done.stderr!r}")
