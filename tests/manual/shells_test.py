#!/usr/bin/env python3
"""The completion scripts in real shells. ctest runs this with its variables."""
import os
import pathlib
import re
import subprocess
import tempfile
import time
import unittest

import pexpect

BUILD = pathlib.Path(os.environ["BUILD_DIR"])
BASH = BUILD / "share/bash-completion/completions/scriptwells"
ZSH = BUILD / "share/zsh/vendor-completions"
FISH = BUILD / "share/fish/vendor_completions.d/scriptwells.fish"
TIMEOUT = 60

# Answers what completion may ask, and records every call of it: its arguments, one a line.
PROGRAM = """#!/bin/sh
printf '%s|' "$@" >> "$CALLS"
echo >> "$CALLS"
[ "$*" = "config profiles" ] && printf 'home\\nwork\\n'
exit 0
"""

TYPES = ["boolean:", "byte:", "date:", "datetime:", "double:", "duration:", "file:", "float:", "int:", "long:",
         "short:", "string:", "time:"]


class ShellTest(unittest.TestCase):
    """A folder with a program of the right name, some files, and a terminal."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.calls = self.folder / "calls"
        for name in "bin", "work", "work/answers":
            (self.folder / name).mkdir()
        for name in "notes.txt", "my script.js", "annex.txt":
            (self.folder / "work" / name).write_text("1")
        (self.folder / "bin/scriptwells").write_text(PROGRAM)
        (self.folder / "bin/scriptwells").chmod(0o755)
        self.environment = {"PATH": f"{self.folder}/bin:/usr/bin:/bin", "HOME": str(self.folder), "TERM": "dumb",
                            "CALLS": str(self.calls), "LC_ALL": "C.UTF-8", "XDG_DATA_DIRS": "/nonexistent"}

    def output(self, *words):
        done = subprocess.run([str(word) for word in words], cwd=self.folder / "work", env=self.environment,
                              capture_output=True, text=True, timeout=TIMEOUT, check=False)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    @staticmethod
    def commands():
        """Those that --help lists."""
        help_text = subprocess.run([os.environ["PROGRAM"], "--help"], capture_output=True, text=True, check=True).stdout
        names = re.findall(r"^  ([a-z-]+)", help_text.partition("\nSubcommands:\n")[2], re.MULTILINE)
        assert len(names) >= 9
        return sorted(names)

    def called(self):
        return self.calls.read_text().splitlines() if self.calls.exists() else []

    def in_terminal(self, shell, *options, start=()):
        """An interactive shell with a prompt that no output contains."""
        terminal = pexpect.spawn(shell, list(options), cwd=str(self.folder / "work"), env=self.environment,
                                 encoding="utf-8", timeout=TIMEOUT, dimensions=(60, 200))
        self.addCleanup(terminal.close, True)
        for line in start:
            terminal.sendline(line)
        terminal.expect("ready> ")
        return terminal

    def runs(self, terminal, typed, arguments):
        """What is typed, with TAB, becomes a call with these arguments."""
        before = len(self.called())
        terminal.send(typed + " \r")
        end = time.monotonic() + TIMEOUT
        while len(self.called()) == before and time.monotonic() < end:
            time.sleep(0.05)
        terminal.expect("ready> ")
        # Some shells write directories with "/" at the end.
        calls = [call.replace("/|", "|") for call in self.called()[before:]]
        self.assertEqual(calls, ["".join(word + "|" for word in arguments)], typed)

    def types_and_runs(self, terminal):
        for typed, arguments in (
                ("scriptwells reg\tli\t", ["registry", "list"]),
                ("scriptwells run --loc\t no\t", ["run", "--local", "notes.txt"]),
                ("scriptwells run my\t", ["run", "my script.js"]),
                ("scriptwells run --local -o j\t", ["run", "--local", "-o", "json"]),
                ("scriptwells run --output=cs\t", ["run", "--output=csv"]),
                ("scriptwells run --output cs\t", ["run", "--output", "csv"]),
                ("scriptwells run -p doc=fi\tno\t", ["run", "-p", "doc=file:notes.txt"]),
                ("scriptwells run -p a=int\t7 --save an\t", ["run", "-p", "a=int:7", "--save", "answers"]),
                ("scriptwells help session cl\t", ["help", "session", "close"]),
                ("scriptwells describe Parameters.Cl\t", ["describe", "Parameters.Clear"])):
            self.runs(terminal, typed, arguments)


class Bash(ShellTest):
    def offers(self, line):
        """What the function offers for this line, which is split here as bash does it."""
        words = re.findall(r"'[^']*'|[=:]+|[^\s=:']+", line) + ([""] if line.endswith(" ") else [])
        quoted = " ".join("'" + word.replace("'", "'\\''") + "'" for word in words)
        script = (f"source {BASH}; COMP_LINE=$1; COMP_POINT=${{#1}}; COMP_WORDS=({quoted}); "
                  f"COMP_CWORD={len(words) - 1}; _scriptwells; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
        return sorted(filter(None, self.output("bash", "--norc", "-c", script, "bash", line).split("\n")))

    def test_commands_and_options(self):
        self.assertEqual(self.offers("scriptwells "), self.commands())
        self.assertEqual(self.offers("scriptwells registry "), ["get", "list", "remove", "set"])
        self.assertEqual(self.offers("scriptwells registry --json s"), ["set"])
        self.assertLessEqual({"--parameter", "--password-file", "--password-stdin", "--proxy"},
                             set(self.offers("scriptwells run --p")))
        self.assertEqual(self.offers("scriptwells run --pa"), ["--page", "--parameter", "--password-command", "--password-file",
                                                               "--password-stdin"])
        self.assertEqual(self.offers("scriptwells registry get -"), ["--help", "--json", "-h"])
        self.assertEqual(self.offers("scriptwells nonsense "), [])
        self.assertEqual(self.offers("scriptwells run -- --"), [])

    def test_values(self):
        for line in "run --output ", "run -o ", "run -e '6 * 7' --output=", "run-document a.xml -o ":
            self.assertEqual(self.offers("scriptwells " + line), ["csv", "json", "table", "text"], line)
        self.assertEqual(self.offers("scriptwells map --output "), ["csv", "json"])
        self.assertEqual(self.offers("scriptwells run --output=t"), ["table", "text"])
        self.assertEqual(self.offers("scriptwells run --language "), ["JavaScript"])
        for line in "run --user ", "run --timeout ", "run --local=", "serve --port ":
            self.assertEqual(self.offers("scriptwells " + line), [], line)

    def test_parameters(self):
        self.assertEqual(self.offers("scriptwells run -p "), [])
        self.assertEqual(self.offers("scriptwells run -p a="), TYPES)
        self.assertEqual(self.offers("scriptwells run -p a=date"), ["date:", "datetime:"])
        self.assertEqual(self.offers("scriptwells run --parameter=a=b"), ["boolean:", "byte:"])
        self.assertEqual(self.offers("scriptwells run -p a=string:da"), [])

    def test_topics_and_objects(self):
        self.assertEqual(self.offers("scriptwells help session "), ["close", "open"])
        self.assertEqual(self.offers("scriptwells help run "), [])
        self.assertEqual(self.offers("scriptwells describe Param"), ["Parameter", "Parameters"])
        self.assertEqual(self.offers("scriptwells describe Parameters.C"), ["Parameters.Clear"])
        self.assertEqual(self.called(), [])

    def test_words_may_be_kept_together(self):
        script = (f"source {BASH}; COMP_WORDBREAKS=${{COMP_WORDBREAKS//[=:]/}}; COMP_LINE='scriptwells run -p a=da'; "
                  "COMP_POINT=23; COMP_WORDS=(scriptwells run -p a=da); COMP_CWORD=3; _scriptwells; "
                  "echo \"${COMPREPLY[@]}\"")
        self.assertEqual(self.output("bash", "--norc", "-c", script), "a=date: a=datetime:\n")

    def test_shellcheck_finds_nothing(self):
        self.assertEqual(self.output("shellcheck", BASH), "")

    def test_in_a_terminal(self):
        start = ("PS1='read''y> '", "bind 'set bell-style none'", "bind 'set enable-bracketed-paste off'",
                 f"source {BASH}; clear; PS1='read''y> '")
        terminal = self.in_terminal("bash", "--norc", "--noprofile", "-i", start=start)
        for _ in start[1:]:
            terminal.expect("ready> ")
        self.types_and_runs(terminal)


class Zsh(ShellTest):
    def terminal(self, functions=ZSH):
        rc = (f"fpath=({functions} $fpath)\nautoload -Uz compinit\ncompinit -u -D\nunsetopt zle_bracketed_paste prompt_sp prompt_cr\n"
              "unset zle_bracketed_paste\nsetopt no_beep\nLISTMAX=1000\nPS1='ready> '\n")
        (self.folder / ".zshrc").write_text(rc)
        return self.in_terminal("zsh", "-d", "-i")

    def test_in_a_terminal(self):
        self.types_and_runs(self.terminal())

    def test_profiles_are_those_that_the_program_names(self):
        functions = self.folder / "functions"
        functions.mkdir()
        script = (ZSH / "_scriptwells").read_text()
        user = ":NAME: "  # a value with nothing to offer
        self.assertIn(user, script)
        (functions / "_scriptwells").write_text(script.replace(user, ":PROFILE:_scriptwells_profiles"))
        terminal = self.terminal(functions)
        terminal.send("scriptwells run --user w\t")
        terminal.expect_exact("work")
        self.assertEqual(self.called(), ["config|profiles|"])

    def test_lists_have_descriptions(self):
        terminal = self.terminal()
        terminal.send("scriptwells \t")
        terminal.expect("run +-- Run a script on a server and print its answer")
        terminal.send("run --pass\t\t")
        terminal.expect("--password-file +-- The first line of this file is the password")
        terminal.send("\x15")
        terminal.send("scriptwells run -p a=\t")
        for name in TYPES:
            terminal.expect_exact(name.rstrip(":"))
        self.assertEqual(self.called(), [])


class Fish(ShellTest):
    def offers(self, line):
        text = self.output("fish", "--no-config", "-c", f"source {FISH}; complete -C $argv[1]", line)
        return dict((*row.split("\t"), "")[:2] for row in text.splitlines())

    def test_commands_and_options(self):
        commands = self.offers("scriptwells ")
        self.assertEqual(sorted(commands), self.commands())
        self.assertEqual(commands["run"], "Run a script on a server and print its answer")
        self.assertEqual(sorted(self.offers("scriptwells registry ")), ["get", "list", "remove", "set"])
        options = self.offers("scriptwells run --pass")
        self.assertEqual(options["--password-file"], "The first line of this file is the password")
        self.assertEqual(sorted(self.offers("scriptwells registry get --")), ["--help", "--json"])
        self.assertEqual(self.offers("scriptwells registry list "), {})

    def test_values(self):
        for line in "run --output ", "run -o ", "run -e '6 * 7' -o ", "run-document a.xml -o ":
            self.assertEqual(sorted(self.offers("scriptwells " + line)), ["csv", "json", "table", "text"], line)
        self.assertEqual(sorted(self.offers("scriptwells map --output ")), ["csv", "json"])
        self.assertEqual(sorted(self.offers("scriptwells run --output=t")), ["--output=table", "--output=text"])
        self.assertEqual(self.offers("scriptwells run --user "), {})
        self.assertIn("notes.txt", self.offers("scriptwells run "))
        self.assertIn("notes.txt", self.offers("scriptwells run --trace "))
        self.assertEqual(list(self.offers("scriptwells run --save ")), ["answers/"])
        self.assertEqual(list(self.offers("scriptwells download http://h/f ")), ["answers/"])

    def test_parameters(self):
        self.assertEqual(sorted(self.offers("scriptwells run -p a=")), ["a=" + name for name in TYPES])
        self.assertEqual(sorted(self.offers("scriptwells run -p a=date")), ["a=date:", "a=datetime:"])
        self.assertEqual(list(self.offers("scriptwells run -p a=file:no")), ["a=file:notes.txt"])

    def test_topics_and_objects(self):
        self.assertEqual(sorted(self.offers("scriptwells help session ")), ["close", "open"])
        self.assertEqual(sorted(self.offers("scriptwells describe Param")), ["Parameter", "Parameters"])
        self.assertEqual(list(self.offers("scriptwells describe Parameters.C")), ["Parameters.Clear"])
        self.assertEqual(self.called(), [])

    def test_in_a_terminal(self):
        config = self.folder / ".config/fish"
        config.mkdir(parents=True)
        (config / "config.fish").write_text(f"function fish_prompt; echo -n 'ready> '; end\nset fish_greeting\n"
                                            f"set -g fish_autosuggestion_enabled 0\nsource {FISH}\n")
        self.types_and_runs(self.in_terminal("fish", "-i"))


if __name__ == "__main__":
    unittest.main()
