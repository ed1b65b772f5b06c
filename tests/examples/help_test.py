#!/usr/bin/env python3
"""What the program tells of itself: help whose examples run, a manual page, completions, one table of exit statuses.

    help_test.py KELM_SCHEMA
"""
import functools
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

import schema_tool

PAGE = pathlib.Path(__file__).resolve().parents[2] / "docs" / "kelm-schema.md"
SHOP = ("CREATE TABLE client (id INTEGER PRIMARY KEY, name TEXT NOT NULL);"
        "CREATE TABLE sale (day TEXT, buyer REFERENCES client, sum REAL);")


@functools.cache
def help_of(*command):
    return schema_tool.run(*command, "--help").stdout.decode()


def commands():
    return re.findall(r"^  (\w+) +\S", help_of().partition("Subcommands:\n")[2].partition("\n\n")[0], re.M)


def options(*command):
    found = re.findall(r"^  (-\S+)", help_of(*command).partition("Options:\n")[2].partition("\n\n")[0], re.M)
    return [name for names in found for name in names.split(",")]


@functools.cache
def generated(kind):
    return schema_tool.run("--generate", kind).stdout.decode()


def plain(page):
    """The text of a manual page without its fonts and escapes, its lines joined."""
    text = re.sub(r"\\f[BIR]", "", page).replace("\\-", "-").replace("\\(aq", "'").replace("\\e", "\\").replace("\\&", "")
    return " ".join(text.split())


class Help(schema_tool.ToolTest):
    def prepare(self):
        """All that the examples speak of."""
        self.make(SHOP, "shop.db")
        self.make("", "office.db")
        for name in ("shop", "twin"):
            self.imported(self.folder / "shop.db", f"{name}.kelm")
        self.imported(self.folder / "office.db", "office.kelm")
        (self.folder / "first.edits").write_text("add column client.phone TEXT\n")
        self.apply(self.folder / "shop.kelm", "add column client.mail TEXT\nadd column sale.note TEXT\n")
        for arguments in (("log", "shop.kelm", "--replay", "-o", "shop.log"), ("convert", "shop.kelm", "shop.xml"),
                          ("copy", "shop.kelm", "client", "--to-clipboard", "clipboard")):
            self.done(*arguments, cwd=self.folder)

    def test_the_examples_of_each_help_run(self):
        self.prepare()
        programs = tempfile.TemporaryDirectory()
        self.addCleanup(programs.cleanup)
        os.symlink(schema_tool.TOOL, f"{programs.name}/kelm-schema")
        environment = schema_tool.environment(PATH=f"{programs.name}:{os.environ['PATH']}")
        self.assertGreater(len(commands()), 9)
        for command in ([], *([each] for each in commands())):
            examples = help_of(*command).partition("\nExamples:\n")[2].splitlines()
            self.assertGreater(len(examples), 0, command)
            for example in examples:
                with self.subTest(example), tempfile.TemporaryDirectory() as folder:
                    self.assertRegex(example, rf"^  .*kelm-schema {' '.join(command)}")
                    shutil.copytree(self.folder, folder, dirs_exist_ok=True)
                    done = subprocess.run(["bash", "-c", "set -o pipefail; " + example], cwd=folder, env=environment,
                                          capture_output=True, timeout=50)
                    self.assertEqual((done.returncode, done.stderr), (0, b""))

    def test_help_fits_a_terminal(self):
        for command in ([], *([each] for each in commands())):
            for line in help_of(*command).splitlines():
                with self.subTest(line):
                    self.assertLessEqual(len(line), 80)

    def test_the_version_is_that_of_the_project(self):
        project = (PAGE.parents[1] / "CMakeLists.txt").read_text()
        [version] = re.findall(r"project\(kelm\s+VERSION (\S+)", project)
        self.assertEqual(self.done("--version"), f"kelm-schema {version}\n")
        self.assertIn(f'"kelm-schema {version}"', generated("man").replace("\\-", "-"))

    def test_the_manual_page_says_what_help_says(self):
        page = generated("man")
        self.assertEqual(re.findall(r"^\.SH (.*)$", page, re.M),
                         ["NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "EXIT STATUS", "ENVIRONMENT", "FILES",
                          "EXAMPLES", "SEE ALSO"])
        for command in commands():
            [section] = re.findall(rf"^\.SS \\fBkelm\\-schema {command}\\fR(.*?)(?=^\.S[SH])", page, re.M | re.S)
            help_page = help_of(command)
            for option in options(command):
                self.assertIn(f"\\fB{option}\\fR".replace("-", "\\-"), section)
            [description] = re.findall(r"\A(.*)\n", help_page)
            self.assertIn(description, plain(section))
            for example in help_page.partition("\nExamples:\n")[2].splitlines():
                self.assertIn(plain(example), plain(page))

    def test_man_has_nothing_to_complain_of(self):
        page = self.folder / "kelm-schema.1"
        page.write_text(generated("man"))
        done = subprocess.run(["man", "-l", "--warnings", page], capture_output=True, timeout=50,
                              env={**os.environ, "MANWIDTH": "80", "LC_ALL": "C.UTF-8", "MANPAGER": "cat"})
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        shown = re.sub(r".\x08", "", done.stdout.decode())
        self.assertIn("add index I on T (C, D)", shown)
        self.assertIn("'cl*' --sort columns", shown)

    def test_the_page_and_the_manual_have_one_table_of_exit_statuses(self):
        rows = re.findall(r"^\| (\d+) \| (.*) \|$", PAGE.read_text(), re.M)
        self.assertEqual([status for status, _ in rows], ["0", "1", "141"])
        section = generated("man").partition(".SH EXIT STATUS\n")[2].partition(".SH")[0]
        told = re.findall(r"\.TP\n\\fB(\d+)\\fR\n(.*)\n", section)
        self.assertEqual([(status, plain(text)) for status, text in told],
                         [(status, text.replace("`", "")) for status, text in rows])

    def test_every_completion_knows_every_command_and_option(self):
        for shell in ("bash", "zsh", "fish"):
            text = generated(shell)
            for command in commands():
                self.assertRegex(text, rf"\b{command}\b")
                for option in options(command):
                    word = {"bash": option, "zsh": f"{option}[",
                            "fish": f"-l {option[2:]} " if option.startswith("--") else f"-s {option[1:]} "}[shell]
                    with self.subTest(shell=shell, command=command, option=option):
                        lines = [line for line in text.split("\n        " if shell == "zsh" else "\n")
                                 if command in line or shell == "zsh"]
                        self.assertTrue(any(word in line for line in lines))


class BashCompletion(schema_tool.ToolTest):
    """Bash's function is called as readline would call it, with the cursor behind the last word."""

    def words(self, *typed):
        script = ("source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                  "function=$(complete -p kelm-schema); function=${function#*-F }; ${function% *}; "
                  "printf '%s\\n' \"${COMPREPLY[@]}\"")
        completion = self.folder / "completion"
        completion.write_text(generated("bash"))
        inside = self.folder / "inside"
        inside.mkdir(exist_ok=True)
        for name in ("shop.db", "shop.kelm", "a b.kelm"):
            (inside / name).touch()
        done = subprocess.run(["bash", "--norc", "-c", script, "bash", completion, "kelm-schema", *typed], cwd=inside,
                              capture_output=True, timeout=50)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        return sorted(word for word in done.stdout.decode().split("\n") if word)

    def test_the_first_word_is_a_command_or_an_option_of_the_program(self):
        self.assertEqual(self.words(""), sorted([*commands(), *options()]))
        self.assertEqual(self.words("co"), ["convert", "copy"])
        self.assertEqual(self.words("--g"), ["--generate"])
        self.assertEqual(self.words("--generate", "z"), ["zsh"])

    def test_a_dash_asks_for_the_options_of_the_command(self):
        for command in commands():
            with self.subTest(command):
                self.assertEqual(self.words(command, "-"), sorted(options(command)))
        self.assertEqual(self.words("edit", "shop.kelm", "--o"), ["--on-referenced-drop", "--output"])

    def test_an_option_asks_for_its_value(self):
        files = ["a b.kelm", "shop.db", "shop.kelm"]
        for typed, expected in ((("show", "--sort", ""), ["columns", "file-order", "name"]),
                                (("show", "--type", "t"), ["table", "trigger"]),
                                (("show", "--sort", "=", "n"), ["name"]),
                                (("show", "--sort", "="), ["columns", "file-order", "name"]),
                                (("replay", "--on-referenced-drop", "d"), ["drop-keys"]),
                                (("import", "shop.db", "-o", ""), files),
                                (("copy", "shop.kelm", "sale", "--to", "shop."), ["shop.db", "shop.kelm"]),
                                (("edit", "--author", ""), []), (("changes", "--since", ""), [])):
            with self.subTest(typed):
                self.assertEqual(self.words(*typed), expected)

    def test_a_place_for_a_file_asks_for_files(self):
        files = ["a b.kelm", "shop.db", "shop.kelm"]
        for typed, expected in ((("show", ""), files), (("edit", "shop.kelm", ""), files), (("show", "a"), files[:1]),
                                (("show", "--sort", "name", ""), files), (("show", "--sort", "=", "name", ""), files),
                                (("undo", "shop.kelm", ""), []), (("show", "shop.kelm", ""), []),
                                (("copy", "shop.kelm", ""), []), (("edit", "--author", "eve", "-", ""), files),
                                (("sing", ""), [])):
            with self.subTest(typed):
                self.assertEqual(self.words(*typed), expected)


schema_tool.main()
