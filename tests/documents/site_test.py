#!/usr/bin/env python3
"""The site builds without warnings, twice alike, and its links lead somewhere. Faults of its sources are found."""

import filecmp
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# What the site is made of.
SOURCES = ["docs", "include", "scripts", "bench/README.md", "bench/chart.svg", "devservice/README.md",
           "python/README.md", "python/bench/README.md", "tools/README.md", *(path.name for path in ROOT.glob("*.md"))]
GUIDE = "guide_values.html"


def run(*command):
    return subprocess.run([str(part) for part in command], capture_output=True, text=True)


def differences(first, second):
    """Names of files that are in one folder only, or differ."""
    compared = filecmp.dircmp(first, second)
    yield from compared.left_only + compared.right_only
    _, differing, unreadable = filecmp.cmpfiles(first, second, compared.common_files, shallow=False)
    yield from differing + unreadable
    for folder in compared.common_dirs:
        yield from differences(first / folder, second / folder)


class Site(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.temporary.name)
        cls.built = run(ROOT / "scripts" / "docs", cls.folder / "site")
        cls.html = cls.folder / "site" / "html"

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def check(self, folder):
        return run(ROOT / "scripts" / "check-site", folder)

    def test_no_warnings(self):
        self.assertEqual((self.built.returncode, self.built.stderr), (0, ""))
        self.assertEqual(self.built.stdout, f"{self.html}/index.html\n")

    def test_links_lead_somewhere(self):
        checked = self.check(self.html)
        self.assertEqual((checked.returncode, checked.stderr), (0, ""))
        self.assertGreater(int(re.search(r'"links": (\d+)', checked.stdout)[1]), 5000)

    def test_every_document_is_a_page(self):
        titles = {re.search("<title>[^:]*: (.*)</title>", page.read_text())[1] for page in self.html.glob("*.html")}
        for document in [*(ROOT / "docs").rglob("*.md"), ROOT / "python/README.md", ROOT / "devservice/README.md"]:
            title = document.read_text().splitlines()[0].removeprefix("# ")
            self.assertTrue(title in titles, f"no page has the title of {document}")

    def test_comments_of_headers_are_in_the_reference(self):
        session = (self.html / "classscriptwells_1_1Session.html").read_text()
        self.assertIn("the session open: returns its id", session)
        self.assertIn("bytes of the body", (self.html / "structscriptwells_1_1Progress.html").read_text())

    def test_nothing_of_this_machine(self):
        for file in self.html.rglob("*"):
            if file.is_file():
                self.assertNotIn(str(ROOT).encode(), file.read_bytes(), file)

    def test_the_version_is_shown(self):
        self.assertRegex((self.html / "index.html").read_text(), r'projectnumber">[^<]*\d+\.\d+\.\d+<')

    def test_another_folder_is_left_alone(self):
        letters = self.folder / "other" / "html" / "letters"
        letters.mkdir(parents=True)
        refused = run(ROOT / "scripts" / "docs", self.folder / "other")
        self.assertEqual((refused.returncode, refused.stderr),
                         (1, f"docs: {self.folder}/other/html is there and is not a site\n"))
        self.assertTrue(letters.exists())

    def test_the_same_tree_gives_the_same_bytes(self):
        self.assertEqual(run(ROOT / "scripts" / "docs", self.folder / "again").returncode, 0)
        self.assertEqual(list(differences(self.html, self.folder / "again" / "html")), [])

    def damaged(self, page, old, new):
        """What the check says about a site in which a page has changed."""
        folder = self.folder / "damaged"
        shutil.copytree(self.html, folder)
        text = (folder / page).read_text()
        self.assertIn(old, text)
        (folder / page).write_text(text.replace(old, new))
        checked = self.check(folder)
        shutil.rmtree(folder)
        self.assertEqual(checked.returncode, 1)
        return checked.stderr

    def test_a_link_without_a_file_is_found(self):
        text = self.damaged(GUIDE, '"guide_tables.html"', '"none.html"')
        self.assertIn(f"{GUIDE}: none.html leads to no file", text)

    def test_a_link_without_an_anchor_is_found(self):
        text = self.damaged(GUIDE, '"guide_tables.html"', '"guide_tables.html#none"')
        self.assertIn("#none leads to no anchor", text)

    def test_a_picture_that_is_missing_is_found(self):
        self.assertIn("none.svg is missing", self.damaged(GUIDE, '"objects.svg"', '"none.svg"'))

    def test_another_host_is_found(self):
        script = '<head><script src="https://other.example/a.js"></script>'
        self.assertIn("loads https://other.example/a.js", self.damaged(GUIDE, "<head>", script))
        self.assertIn("links to //other.example/", self.damaged(GUIDE, "<body>", '<body><a href="//other.example/">'))

    def test_a_page_without_a_link_to_it_is_found(self):
        lost = self.html / "lost.html"
        lost.write_text("<html></html>")
        self.addCleanup(lost.unlink)
        self.assertIn("lost.html is reached from nowhere", self.check(self.html).stderr)

    def test_a_folder_without_a_site_is_reported(self):
        checked = self.check(self.folder)
        self.assertEqual((checked.returncode, checked.stderr),
                         (2, f"check-site: {self.folder} has no site; scripts/docs builds it\n"))


class FaultySources(unittest.TestCase):
    def build(self, file, old, new):
        """What scripts/docs says about a tree in which a file has changed."""
        with tempfile.TemporaryDirectory() as folder:
            for name in SOURCES:
                target = Path(folder, name)
                target.parent.mkdir(parents=True, exist_ok=True)
                (shutil.copytree if (ROOT / name).is_dir() else shutil.copy)(ROOT / name, target)
            text = Path(folder, file).read_text()
            self.assertIn(old, text)
            Path(folder, file).write_text(text.replace(old, new, 1))
            built = run(Path(folder, "scripts", "docs"))
            self.assertNotEqual(built.returncode, 0)
            return built.stderr

    def test_they_are_found(self):
        text = self.build("docs/guide/values.md", "(tables.md)", "(tables.md#no-such-section)")
        self.assertRegex(text, r"docs/guide/values\.md:\d+: .*guide_tables-no-such-section")

    def test_a_parameter_that_is_not_there_is_found(self):
        comment = "  // Runs a script document"
        text = self.build("include/scriptwells/session.h", comment, "  /// @param nonsense none\n" + comment)
        self.assertRegex(text, r"session\.h:\d+: .*nonsense")


if __name__ == "__main__":
    unittest.main()
