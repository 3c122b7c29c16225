#!/usr/bin/env python3
"""`scriptwells shell` on a terminal: editing, history, completion, Ctrl-C. ctest runs this with its variables."""
import base64
import json
import os
import pathlib
import signal
import stat
import subprocess
import tempfile
import time
import unittest
import urllib.request

import pexpect

PROGRAM = os.environ["PROGRAM"]
TIMEOUT = 60
PROMPT = "scriptwells> "
MORE = r"        \.\.\.> "
UP = "\x1b[A"
PASSWORD = "canary-password"


class TerminalTest(unittest.TestCase):
    """Each test has its own folder, and a shell on a terminal."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.history = self.folder / "state/scriptwells/history"
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "TERM": "xterm",
                            "XDG_STATE_HOME": str(self.folder / "state"), "LC_ALL": "C.UTF-8",
                            "QV_REGISTRY": "/dev/null", "TMPDIR": str(self.folder),
                            **{name: os.environ[name] for name in ["LSAN_OPTIONS"] if name in os.environ}}

    def shell(self, *options, **variables):
        terminal = pexpect.spawn(PROGRAM, ["shell", *options], cwd=str(self.folder), encoding="utf-8", timeout=TIMEOUT,
                                 env={**self.environment, **variables}, dimensions=(40, 100))
        self.addCleanup(terminal.close, True)
        terminal.expect(PROMPT)
        return terminal

    def local(self, *options):
        return self.shell("--local", *options)

    def answer(self, terminal, script, pattern):
        """Types the script, and expects the answer in its own line."""
        terminal.sendline(script)
        terminal.expect(r"\n" + pattern + r"\r\n")
        terminal.expect(PROMPT)

    def end(self, terminal, exit_code=0):
        terminal.sendeof()
        terminal.expect(pexpect.EOF)
        terminal.close()
        self.assertEqual((terminal.exitstatus, terminal.signalstatus), (exit_code, None))

    def serve(self, *options):
        service = subprocess.Popen([PROGRAM, "serve", *options], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                   text=True, env=self.environment)
        self.addCleanup(service.wait)
        self.addCleanup(service.terminate)
        self.addCleanup(service.stdout.close)
        return service.stdout.readline().strip()

    def users(self):
        file = self.folder / "users"
        file.write_text(f"joe:{PASSWORD}\n")
        return str(file)


class ShellTest(TerminalTest):
    def test_scripts_and_editing(self):
        terminal = self.local()
        self.answer(terminal, "6 * 7", "42")
        terminal.send("'edXted'")
        terminal.send("\x1b[D" * 4 + "\x7f" + "i")  # left, backspace
        self.answer(terminal, "", "edited")
        terminal.send("'\u00fcber'")
        self.answer(terminal, "", "\u00fcber")
        self.end(terminal)

    def test_several_lines(self):
        terminal = self.local()
        terminal.sendline("(function () {")
        terminal.expect(MORE)
        terminal.sendline("return 11 * 11")
        terminal.expect(MORE)
        self.answer(terminal, "})()", "121")
        terminal.send(UP)
        self.answer(terminal, "", "121")
        terminal.sendline(":{")
        terminal.expect(MORE)
        terminal.sendline("[1, 2, 3]")
        terminal.expect(MORE)
        terminal.sendline("  .length")
        terminal.expect(MORE)
        self.answer(terminal, ":}", "3")
        self.end(terminal)

    def test_failure_shows_its_line_and_the_shell_goes_on(self):
        terminal = self.local()
        terminal.sendline("var a = `")
        terminal.expect(MORE)
        terminal.sendline("`; foo.bar()")
        terminal.expect_exact("Can't find variable: foo (line 2)\r\n  2 | `; foo.bar()\r\n    | ^^^^^^^^^^^^\r\n")
        terminal.expect(PROMPT)
        terminal.sendline(":tiem")
        terminal.expect_exact("scriptwells: no command :tiem; did you mean :time?\r\n")
        terminal.expect(PROMPT)
        self.answer(terminal, "1", "1")
        self.end(terminal)

    def test_history_is_kept(self):
        terminal = self.local()
        self.answer(terminal, "100 + 23", "123")
        self.answer(terminal, " 'not' + 'kept'", "notkept")
        terminal.sendline("[1,")
        terminal.expect(MORE)
        self.answer(terminal, "2].length", "2")
        self.end(terminal)
        self.assertEqual(self.history.read_text(), "100 + 23\n[1,\\n2].length\n")
        self.assertEqual(stat.S_IMODE(self.history.stat().st_mode), 0o600)
        terminal = self.local()
        terminal.send(UP + UP)
        self.answer(terminal, "", "123")
        self.end(terminal)
        terminal = self.local("--no-history")
        self.answer(terminal, "'un' + 'written'", "unwritten")
        self.end(terminal)
        self.assertNotIn("written", self.history.read_text())

    def test_history_has_no_secrets(self):
        url = self.serve("--users-file", self.users())
        usid = subprocess.run([PROGRAM, "session", "open", "--server", url, "--user", "joe"], capture_output=True,
                              text=True, check=True,
                              env={**self.environment, "SCRIPTWELLS_PASSWORD": PASSWORD}).stdout.strip()
        terminal = self.shell("--server", url, "--user", "joe", SCRIPTWELLS_PASSWORD=PASSWORD)
        self.answer(terminal, f"'{PASSWORD}'.length", str(len(PASSWORD)))
        self.answer(terminal, "'first'", "first")
        self.end(terminal)
        terminal = self.shell("--server", url, SCRIPTWELLS_USID=usid)
        self.answer(terminal, f"'{usid}'.length", str(len(usid)))
        self.answer(terminal, "'second'", "second")
        terminal.sendline(":session")
        terminal.expect(PROMPT)
        self.assertNotIn(usid, terminal.before)
        self.answer(terminal, "'http://a/7?ticket=4711'.length", "22")
        self.answer(terminal, "'Password=another;'.length", "17")
        self.answer(terminal, "'<usid>another</usid>'.length", "20")
        self.end(terminal)
        self.assertEqual(self.history.read_text(), "'first'\n'second'\n:session\n")

    def test_history_has_no_tickets(self):
        (self.folder / "a.txt").write_text("content")
        terminal = self.local()
        terminal.sendline(":upload doc=a.txt")
        terminal.expect(PROMPT)
        for script in "parameters.doc.ticket", "uploadUrl()":
            terminal.sendline(script)
            terminal.expect(r"\n(?:http\S+ticket=)?([0-9a-f]{32})\r\n")
            ticket = terminal.match[1]
            terminal.expect(PROMPT)
            for form in (ticket, "\\x" + format(ord(ticket[0]), "x") + ticket[1:], "%" + format(ord(ticket[0]), "x") + ticket[1:],
                         base64.b64encode(b"?" + ticket.encode()).decode(), f"ticket={ticket}"):
                self.answer(terminal, f"'{form}' + '.'", r"\S+\.")
        self.answer(terminal, f"'{ticket[:-1]}'.length", "31")
        self.end(terminal)
        self.assertEqual(self.history.read_text().splitlines(),
                         [":upload doc=a.txt", "parameters.doc.ticket", "uploadUrl()", f"'{ticket[:-1]}'.length"])

    def test_history_forgets_what_turns_out_to_be_a_secret(self):
        url = self.serve()
        usid = subprocess.run([PROGRAM, "session", "open", "--server", url, "--user", "joe"], capture_output=True,
                              text=True, check=True,
                              env={**self.environment, "SCRIPTWELLS_PASSWORD": ""}).stdout.strip()
        terminal = self.local()
        self.answer(terminal, f"'{usid}'.length", str(len(usid)))
        self.answer(terminal, "'kept'", "kept")
        self.end(terminal)
        self.assertIn(usid, self.history.read_text())
        self.end(self.shell("--server", url, SCRIPTWELLS_USID=usid))
        self.assertEqual(self.history.read_text(), "'kept'\n")

    def test_password_is_asked_for(self):
        url = self.serve("--users-file", self.users())
        terminal = pexpect.spawn(PROGRAM, ["shell", "--server", url, "--user", "joe"], encoding="utf-8",
                                 timeout=TIMEOUT, env=self.environment)
        self.addCleanup(terminal.close, True)
        terminal.expect("Password of joe: ")
        terminal.sendline(PASSWORD)
        terminal.expect(PROMPT)
        self.assertNotIn(PASSWORD, terminal.before)
        self.answer(terminal, "1", "1")
        self.end(terminal)

    def test_completion(self):
        (self.folder / "a report.js").write_text("5 * 5")
        terminal = self.local("-p", "year=int:2024")
        terminal.send(":ope\ta r\t")
        self.answer(terminal, "", "25")
        terminal.send("parameters.ye\t")
        self.answer(terminal, "", "2024")
        terminal.send(":outp\tj\t")
        terminal.sendline("")
        terminal.expect(PROMPT)
        self.answer(terminal, "[{city: 'Rome', citizens: 5}]", r'\{"type":"recordlist".*\}')
        terminal.send("'ci\t\t")
        terminal.expect(r"citizens +city\r\n")
        terminal.send("y\t")
        self.answer(terminal, "'", r'\{"type":"string","value":"city".*\}')
        self.end(terminal)

    def test_tab_at_the_start_of_a_line_is_a_tab(self):
        terminal = self.local()
        terminal.sendline("`a")
        terminal.expect(MORE)
        self.answer(terminal, "\tb`.charCodeAt(2)", "9")
        self.end(terminal)

    def test_ctrl_c_clears_the_line(self):
        terminal = self.local()
        terminal.send("this is nothing")
        terminal.sendcontrol("c")
        terminal.expect(r"\^C\r\n" + PROMPT)
        terminal.sendline("f({")
        terminal.expect(MORE)
        terminal.sendcontrol("c")
        terminal.expect(r"\^C\r\n" + PROMPT)
        self.answer(terminal, "2", "2")
        self.end(terminal)

    def test_ctrl_c_cancels_the_script_and_the_session_stays(self):
        url = self.serve("--script-timeout", "600")
        terminal = self.shell("--server", url, "--user", "joe", SCRIPTWELLS_PASSWORD="")
        for number in 1, 2:
            terminal.sendline("for (;;);")
            while self.count(url, "Execute") < number:
                time.sleep(0.05)
            begin = time.monotonic()
            terminal.sendcontrol("c")
            terminal.sendcontrol("c")
            terminal.expect(r"scriptwells: interrupted(\^C)?\r\n")  # the terminal shows the second key where it comes
            terminal.expect(PROMPT)
            self.assertLess(time.monotonic() - begin, 5)
        self.answer(terminal, "3", "3")
        self.end(terminal)
        self.assertEqual(self.count(url, "CreateUserSession"), self.count(url, "CloseUserSession"))

    def test_signals_that_end_it_close_the_session(self):
        for number, code in (signal.SIGTERM, 130), (signal.SIGHUP, 130):
            url = self.serve()
            terminal = self.shell("--server", url, "--user", "joe", SCRIPTWELLS_PASSWORD="")
            terminal.kill(number)
            terminal.expect(pexpect.EOF)
            terminal.close()
            self.assertEqual((terminal.exitstatus, terminal.signalstatus), (code, None))
            self.assertEqual(self.count(url, "CloseUserSession"), 1)

    def test_window_and_stop(self):
        terminal = self.local()
        terminal.send("'half")
        terminal.setwinsize(20, 60)
        terminal.kill(signal.SIGSTOP)
        terminal.kill(signal.SIGCONT)
        self.answer(terminal, " and half'", "half and half")
        self.end(terminal)

    def test_output_may_be_a_file(self):
        script = f"{PROGRAM} shell --local > {self.folder}/out"
        terminal = pexpect.spawn("/bin/sh", ["-c", script], encoding="utf-8", timeout=TIMEOUT, env=self.environment)
        self.addCleanup(terminal.close, True)
        terminal.expect(PROMPT)
        terminal.sendline("6 * 7")
        terminal.expect(PROMPT)
        self.end(terminal)
        self.assertEqual((self.folder / "out").read_text(), "42\n")

    @staticmethod
    def count(url, name):
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(url + "/stats") as page:
            return json.load(page)["actions"][name]


if __name__ == "__main__":
    unittest.main()
