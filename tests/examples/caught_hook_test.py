#!/usr/bin/env python3
"""The program with the wrong hook tells what its reader expects, and nothing is found in the right one.

    caught_hook_test.py PROGRAM
"""
import re
import subprocess
import sys

EXPECTED = '''\
the law "repetition" is broken in 2 steps of seed N, behind N histories, N operations
// The law "repetition" is broken: the same calls lead to the same state.
'''


def run(*arguments):
    done = subprocess.run([sys.argv[1], *arguments], capture_output=True, text=True, timeout=110)
    return done.returncode, re.sub(r"(?<=seed )\d+|\d+(?= histories| operations)", "N", done.stdout), done.stderr


code, told, complained = run()
print(told)
if code != 1 or complained or not told.startswith(EXPECTED):
    sys.exit(f"exit {code}, complained {complained!r}")
for line in ("    model.begin_transaction(\"\");\n", "    fw.create_object(100, o(1));\n"):
    if told.count(line) != 1:
        sys.exit(f"there is not one line {line!r}")
if run("right") != (0, "all laws hold: N histories, N operations\n", ""):
    sys.exit(f"of the right hook is told {run('right')}")
