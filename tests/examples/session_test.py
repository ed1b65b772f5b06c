#!/usr/bin/env python3
"""The sessions that docs/kelm-schema.md shows, typed again: each command prints what the page says.

    session_test.py KELM_SCHEMA

With --write behind the program, the page gets what is printed now.
"""
import os
import pathlib
import re
import subprocess
import sys

import schema_tool

PAGE = pathlib.Path(__file__).resolve().parents[2] / "docs" / "kelm-schema.md"
BLOCK = re.compile(r"```console\n(.*?)```\n", re.S)


class Session(schema_tool.ToolTest):
    def replayed(self, session):
        (self.folder / "bin").mkdir(exist_ok=True)
        if not (self.folder / "bin" / "kelm-schema").exists():
            (self.folder / "bin" / "kelm-schema").symlink_to(schema_tool.TOOL)
        path = f"{self.folder / 'bin'}:{os.environ['PATH']}"
        typed = ""
        for command in split(session):
            done = subprocess.run(["sh", "-c", command], cwd=self.folder, env=schema_tool.environment(PATH=path),
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=50)
            typed += f"$ {command}\n{done.stdout.decode('utf-8')}"
        return typed

    def test_the_page_tells_what_happens(self):
        shown = BLOCK.findall(PAGE.read_text())
        self.assertGreater(len(shown), 3)
        for session in shown:
            self.assertEqual(self.replayed(session), session)

    def write_page(self):
        page = PAGE.read_text()
        PAGE.write_text(BLOCK.sub(lambda found: f"```console\n{self.replayed(found.group(1))}```\n", page))


def split(session):
    """The commands of a session: each begins with a dollar sign, and a here-document belongs to its command."""
    found, lines = [], iter(session.splitlines())
    for line in lines:
        if not line.startswith("$ "):
            continue
        command = line[2:]
        if "<<'END'" in command:
            for more in lines:
                command += "\n" + more
                if more == "END":
                    break
        found.append(command)
    return found


if "--write" in sys.argv:
    writer = Session("write_page")
    writer.setUp()
    writer.write_page()
    writer.doCleanups()
else:
    schema_tool.main()
