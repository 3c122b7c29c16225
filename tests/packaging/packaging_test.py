#!/usr/bin/env python3
"""The Debian packages agree with the rest of the tree: dependencies, components, exports, changelog, README."""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Not needed to build: a compiler is there anyway, the others only help.
NOT_FOR_PACKAGES = {"g++", "ccache", "ca-certificates"}
# The second section of packages.txt is for tests; the Python module and the site need these.
ALSO_FOR_PACKAGES = {"python3-dev", "pybind11-dev", "doxygen"}
# Documents are copied, not installed.
WITHOUT_COMPONENT = {"scriptwells-doc"}


def read(name):
    return (ROOT / name).read_text()


def paragraphs():
    """The fields of each paragraph of debian/control."""
    for paragraph in read("debian/control").strip().split("\n\n"):
        fields = re.split(r"^(\S+):", paragraph, flags=re.MULTILINE)[1:]
        yield dict(zip(fields[::2], fields[1::2]))


def names(dependencies):
    """Without versions and substitutions."""
    words = (word.strip().split(" ")[0] for word in dependencies.split(","))
    return {word for word in words if word and not word.startswith("$")}


def section(name):
    """The packages of a section of packages.txt."""
    text = re.search(rf"^\[{name}\]\n(.*?)(?:^\[|\Z)", read("packages.txt"), re.MULTILINE | re.DOTALL)[1]
    return {line.split()[0] for line in text.splitlines() if line.split("#")[0].strip()}


def run(*command):
    return subprocess.run(command, cwd=ROOT, capture_output=True, text=True)


def changelog(version="9.8.7~test", seconds="1700000000"):
    return run("scripts/debian-changelog", version, seconds)


def install_line():
    return next(line for line in read("README.md").splitlines() if line.startswith("apt install "))


class Dependencies(unittest.TestCase):
    def test_what_the_build_needs_is_in_the_list_of_packages(self):
        needed = names(next(paragraphs())["Build-Depends"]) - {"debhelper-compat", "dh-sequence-python3"}
        self.assertEqual(needed, section("build") - NOT_FOR_PACKAGES | ALSO_FOR_PACKAGES)
        self.assertLessEqual(ALSO_FOR_PACKAGES, section("checks"))


class Components(unittest.TestCase):
    def test_each_package_is_a_component_that_something_installs(self):
        rules = read("debian/rules")
        filled = dict(re.findall(r"install_component,([^,]+),(\w+)\)", rules))
        filled["python3-scriptwells"] = re.search(r"--component (python) --prefix", rules)[1]
        packages = {fields["Package"].strip() for fields in paragraphs() if "Package" in fields}
        self.assertEqual(set(filled), packages - WITHOUT_COMPONENT)
        build = "".join(read(name) for name in ("cmake/Install.cmake", "tools/CMakeLists.txt", "python/CMakeLists.txt"))
        self.assertLessEqual(set(filled.values()), set(re.findall(r"COMPONENT (\w+)", build)))


def exports(library):
    return sorted(read(f"abi/{library}.exports").splitlines())


class Symbols(unittest.TestCase):
    def test_the_library_has_the_exports_of_the_list(self):
        found = re.findall(r'^ \(c\+\+\)"(.+)@Base" ', read("debian/libscriptwells0.symbols"), re.MULTILINE)
        # The tools disagree on this name.
        stream = "std::basic_ostream<char, std::char_traits<char> >"
        self.assertEqual(sorted(name.replace(stream, "std::ostream") for name in found), exports("libscriptwells.so.0"))

    def test_the_library_of_classes_has_its_entry_points(self):
        found = re.findall(r"^ (\w+)@Base ", read("debian/libqvscriptwells1.symbols"), re.MULTILINE)
        self.assertEqual(sorted(found), exports("libqvscriptwells.so.1"))


class Changelog(unittest.TestCase):
    def test_debian_reads_it(self):
        with tempfile.NamedTemporaryFile("w") as file:
            file.write(changelog().stdout)
            file.flush()
            parsed = run("dpkg-parsechangelog", "--all", "-l", file.name)
        self.assertEqual((parsed.returncode, parsed.stderr), (0, ""))
        self.assertIn("Source: scriptwells\n", parsed.stdout)
        self.assertIn("Version: 9.8.7~test\n", parsed.stdout)
        self.assertIn("Date: Tue, 14 Nov 2023 22:13:20", parsed.stdout)
        self.assertIn("Maintainer:" + next(paragraphs())["Maintainer"], parsed.stdout)

    def test_it_has_every_word_of_the_changelog(self):
        entry = re.sub(r"[`*#]|\[|\]\([^)]*\)", "", read("CHANGELOG.md").split("\n## ", 1)[1].split("\n", 1)[1])
        text = " ".join(changelog().stdout.split())
        for words in re.split(r"\n(?=\n|- )", entry):
            words = " ".join(words.split()).removeprefix("- ")
            if not re.match(r"[0-9.]+\b", words):  # the heading of an older version
                self.assertIn(words, text)

    def test_its_lines_are_short(self):
        lines = (line for line in changelog().stdout.splitlines() if not line.startswith(" -- "))
        self.assertLessEqual(max(map(len, lines)), 80)

    def test_wrong_arguments_are_refused(self):
        for arguments in [], ["1.0"], ["1.0", "yesterday"]:
            done = run("scripts/debian-changelog", *arguments)
            self.assertEqual(done.returncode, 1)
            self.assertIn("VERSION SECONDS", done.stderr)


class Package(unittest.TestCase):
    def test_wrong_arguments_are_refused(self):
        for arguments in ["--version"], ["--nonsense", "x"], ["--version", "not a version"]:
            done = run("scripts/package", *arguments)
            self.assertEqual(done.returncode, 2, arguments)
            self.assertNotEqual(done.stderr, "")


class Readme(unittest.TestCase):
    def test_it_installs_packages_that_there_are(self):
        patterns = install_line().removeprefix("apt install ").split()
        packages = {fields["Package"].strip() for fields in paragraphs() if "Package" in fields}
        for pattern in patterns:
            self.assertIn(re.fullmatch(r"\./([a-z0-9-]+)_\*\.deb", pattern)[1], packages)

    def test_its_packages_need_no_other_of_ours(self):
        given = set(re.findall(r"\./([a-z0-9-]+)_", install_line()))
        for fields in paragraphs():
            if fields.get("Package", "").strip() in given:
                ours = {name for name in names(fields["Depends"]) if "scriptwells" in name}
                self.assertLessEqual(ours, given)


class Copyright(unittest.TestCase):
    def test_its_holder_is_the_maintainer(self):
        holder = re.search(r"^Copyright: [0-9-]+ (.+)$", read("debian/copyright"), re.MULTILINE)[1]
        self.assertEqual(holder, next(paragraphs())["Maintainer"].strip())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "--quiet"])
