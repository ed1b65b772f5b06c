#!/usr/bin/env python3
"""The program with inherited values prints what its reader expects.

    inherited_values_test.py PROGRAM
"""
import subprocess
import sys

EXPECTED = '''\
Make styles
Set a font
  body: Sans, told of body
  heading: Sans, told of body
  title: Sans, told of body
Set another
  print: Serif, told of print
Let print win
  heading: Serif, told of heading
  title: Serif, told of heading
Undo
  heading: Sans, told of heading
  title: Sans, told of heading
Keep the title apart
  has a font: false
A circle: false
'''

done = subprocess.run([sys.argv[1]], capture_output=True, text=True, timeout=30)
if (done.returncode, done.stdout, done.stderr) != (0, EXPECTED, ""):
    sys.exit(f"exit {done.returncode}, printed {done.stdout!r}, complained {done.stderr!r}")
