#!/usr/bin/env python3
"""The manual pages: complete, without warnings, and the same bytes each time. ctest runs this with its variables."""
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["SOURCE_DIR"])
BUILD = pathlib.Path(os.environ["BUILD_DIR"])
README = (SOURCE / "tools/README.md").read_text()
PROTOCOL = SOURCE / "docs/protocol.md"
DATE = "1700000000"  # 2023-11-14


def run(*words, **variables):
    environment = {"PATH": os.environ["PATH"], "HOME": "/nonexistent", "LC_ALL": "C.UTF-8", **variables}
    return subprocess.run([str(word) for word in words], env=environment, capture_output=True, text=True, check=False)


def write_manual(folder, document=PROTOCOL, **variables):
    return run(os.environ["WRITER"], folder, "7.8.9", SOURCE / "tools/manual/shells", document, **variables)


def squeezed(text):
    return " ".join(text.split())


def shown(page):
    """The text of a page as a reader sees it."""
    plain = re.sub(".\b", "", run("mandoc", "-Tutf8", "-Owidth=100", page).stdout)
    return squeezed(plain)


def section(page, title):
    text = page.read_text()
    return text.split(f".SH {title}\n")[1].split("\n.SH ")[0] if f".SH {title}\n" in text else ""


def items(page, title):
    """The heads of the items of a section, without their fonts."""
    heads = re.findall(r"^\.TP\n(.*)$", section(page, title), re.MULTILINE)
    return [re.sub(r"\\f[BIR]", "", head).replace(r"\-", "-") for head in heads]


class Help:
    """A command as --help prints it."""

    def __init__(self, path):
        self.path = path
        self.text = run(os.environ["PROGRAM"], *path, "--help").stdout
        head, _, rest = self.text.partition("\nOptions:\n")
        self.arguments = re.findall(r"^  ([A-Z]+)", head.partition("\nPositionals:\n")[2], re.MULTILINE)
        blocks = rest.split("\n\n")
        self.options = re.findall(r"^  (-[^\s]*)", blocks[0], re.MULTILINE)
        self.below = []
        if len(blocks) > 1 and blocks[1].startswith("Subcommands:\n"):
            self.below = re.findall(r"^  ([a-z-]+)", blocks.pop(1), re.MULTILINE)
        self.notes = squeezed(" ".join(blocks[1:]))

    def descriptions(self):
        """What the help says of the options, line by line."""
        rows = self.text.partition("\nOptions:\n")[2].split("\n\n")[0].split("\n")
        return [row[30:].strip() for row in rows if row[28:30] == "  "]


def all_helps(path=()):
    top = Help(path)
    yield top
    for name in top.below:
        yield from all_helps((*path, name))


class Pages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.share = pathlib.Path(cls.temporary.name, "share")
        done = write_manual(cls.share, SOURCE_DATE_EPOCH=DATE)
        assert done.returncode == 0, done.stderr
        cls.pages = sorted(cls.share.glob("man/man?/*"))
        cls.helps = list(all_helps())

    def page(self, name="scriptwells", number=1):
        return self.share / f"man/man{number}/{name}.{number}"

    def pages_with_help(self):
        return [(self.page("-".join(("scriptwells", *one.path))), one) for one in self.helps]

    def test_there_is_one_page_for_each_command(self):
        self.assertGreaterEqual(len(self.helps), 16)
        self.assertEqual({page for page, _ in self.pages_with_help()}, set(self.pages) - {self.page("scriptwells-protocol", 7)})
        self.assertEqual(len(self.pages), len(self.helps) + 1)

    def test_mandoc_has_no_warnings(self):
        for page in self.pages:
            self.assertEqual(run("mandoc", "-Tlint", "-Wwarning", page).stdout, "")

    def test_man_has_no_warnings(self):
        for page in self.pages:
            for width in "80", "60":
                done = run("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page, MANWIDTH=width)
                self.assertEqual((done.returncode, done.stderr), (0, ""), page)

    def test_a_page_has_the_options_of_the_help(self):
        for page, one in self.pages_with_help():
            names = [re.sub("[ =].*", "", head.replace(", ", ",")) for head in items(page, "OPTIONS")]
            self.assertEqual(names, one.arguments + one.options, page)
            self.assertIn("-h,--help", names)

    def test_a_page_has_the_texts_of_the_help(self):
        for page, one in self.pages_with_help():
            text = shown(page)
            for line in one.descriptions():
                self.assertIn(squeezed(line), text, page)
            if one.path:  # the notes of the program are the exit statuses
                self.assertIn(one.notes, text, page)
            examples = one.text.partition("\nExamples:\n")[2].partition("\n\n")[0]
            self.assertIn(squeezed(examples), text, page)

    def test_a_page_names_the_commands_below(self):
        for page, one in self.pages_with_help():
            self.assertEqual(items(page, "COMMANDS"), one.below)

    def test_the_tables_are_those_of_the_document(self):
        def cells(head):
            table = README.split(f"| {head} |")[1].split("\n\n")[0]
            return [name for cell in re.findall(r"^\| ([^|]+) \|", table, re.MULTILINE)
                    for name in re.findall(r"[\w-]+", cell) if not name.startswith("-")]
        main, run_page = self.page(), self.page("scriptwells-run")
        self.assertEqual(items(main, "EXIT STATUS"), cells("Exit code"))
        self.assertEqual(set(cells("Variable")) - set(items(main, "ENVIRONMENT")), set())
        self.assertEqual(items(run_page, "PARAMETER TYPES"), cells("Type"))
        self.assertEqual(sorted(items(run_page, "OUTPUT FORMATS")), ["csv", "json", "table", "text"])

    def test_what_makes_no_call_has_no_tables_of_calls(self):
        page = self.page("scriptwells-registry-get")
        self.assertEqual(items(page, "EXIT STATUS"), ["0", "1", "2", "6"])
        self.assertNotIn("SCRIPTWELLS_SERVER", items(page, "ENVIRONMENT"))
        self.assertEqual(items(page, "PARAMETER TYPES"), [])

    def test_the_protocol_has_every_word_of_its_document(self):
        page = shown(self.page("scriptwells-protocol", 7)).replace(" ", "")
        paragraphs = PROTOCOL.read_text().split("\n", 1)[1]
        paragraphs = re.sub(r"(?m)^(#+ |- |```.*|\|[-|]+\|$)|\*\*", "", paragraphs)
        count = 0
        for cell in re.split(r"\n\n| \||\| |(?m:^)\n|\n", paragraphs.replace("`", "")):
            self.assertIn(re.sub(r"\s", "", cell), page)
            count += bool(cell.strip())
        self.assertGreater(count, 200)

    def test_dates_are_those_of_the_variable_or_none(self):
        self.assertIn(' "2023-11-14" ', self.page().read_text().split("\n")[0])
        with tempfile.TemporaryDirectory() as folder:
            write_manual(folder)
            head = pathlib.Path(folder, "man/man1/scriptwells.1").read_text().split("\n")[0]
            self.assertEqual(head, '.TH "SCRIPTWELLS" "1" "" "scriptwells 7.8.9" "User Commands"')

    def test_the_same_is_written_again_and_old_pages_go(self):
        with tempfile.TemporaryDirectory() as folder:
            write_manual(folder, SOURCE_DATE_EPOCH=DATE)
            old = pathlib.Path(folder, "man/man1/scriptwells-old.1")
            old.write_text("old")
            write_manual(folder, SOURCE_DATE_EPOCH=DATE)
            self.assertFalse(old.exists())
            self.assertEqual(run("diff", "-r", folder, self.share).stdout, "")

    def test_wrong_input_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            for done, message in (
                    (write_manual(folder, SOURCE_DATE_EPOCH="soon"), "SOURCE_DATE_EPOCH is not a number of seconds: soon"),
                    (write_manual(folder, folder + "/none.md"), f"cannot read {folder}/none.md"),
                    (write_manual(folder, os.devnull), "the document does not begin with a title"),
                    (write_manual("/proc/none"), "filesystem error"),
                    (run(os.environ["WRITER"]), "usage: write-manual DIRECTORY VERSION SHELLS DOCUMENT")):
                self.assertEqual(done.returncode, 1)
                self.assertIn(message, done.stderr)

    def test_man_finds_the_pages_of_the_build(self):
        found = run("man", "-M", BUILD / "share/man", "-w", "scriptwells-session-open", "scriptwells-protocol")
        self.assertEqual(found.stdout.split(), [str(BUILD / "share/man/man1/scriptwells-session-open.1"),
                                                str(BUILD / "share/man/man7/scriptwells-protocol.7")])

    def test_they_are_installed(self):
        with tempfile.TemporaryDirectory() as prefix:
            done = run(os.environ["CMAKE"], f"-DCMAKE_INSTALL_PREFIX={prefix}", "-DCMAKE_INSTALL_COMPONENT=program", "-P",
                       BUILD / "tools/manual/cmake_install.cmake")
            self.assertEqual(done.returncode, 0, done.stderr)
            share = pathlib.Path(prefix, "share")
            self.assertEqual({path.name for path in share.glob("man/man?/*")}, {path.name for path in self.pages})
            for name in ("bash-completion/completions/scriptwells", "zsh/vendor-completions/_scriptwells",
                         "fish/vendor_completions.d/scriptwells.fish"):
                self.assertEqual((share / name).read_bytes(), (self.share / name).read_bytes())


if __name__ == "__main__":
    unittest.main()
