"""The list of mutants, and how a mutant is found in the sources and written into them.

An entry of the list is
    17 numbers.cpp
      in if («value < limit») return value;
      to value <= limit
that is: a number, the name of the file wherever it lies below src/, its text with the right code in « », and the wrong
code. "in" may go on for several lines. Code that ends with ";" is a statement, other code an expression; the wrong
statement ";" leaves the right one out. White space and comments do not count when the text is looked up.
"""

import os
import re
from dataclasses import dataclass

COMMENT_OR_TEXT = re.compile(
    r"""//[^\n]*|/\*.*?\*/|R"([^ ()\\]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'""", re.S)


@dataclass
class Mutant:
    number: int
    file: str
    before: str  # the text before the right code; it and the text after the code locate the code
    right: str
    after: str
    wrong: str

    def text(self):
        """The entry as the list has it."""
        inside = f"{self.before}«{self.right}»{self.after}".split("\n")
        lines = "".join(f"\n     {line}" for line in inside[1:])
        return f"{self.number} {self.file}\n  in {inside[0]}{lines}\n  to {self.wrong}\n"

    def switched(self):
        """The right and the wrong code, and the switch between them."""
        if self.right.endswith(";"):
            return f"{{ if (::mutation::On({self.number})) {{ {self.wrong} }} else {{ {self.right} }} }}"
        # Of the type of the right code, or both would be converted to a type that they have in common.
        same_type = f"static_cast<decltype(({' '.join(without_comments(self.right).split())}))>"
        return f"(::mutation::On({self.number}) ? {same_type}({self.wrong}) : ({self.right}))"


def read_list(path):
    with open(path, encoding="utf-8") as file:
        entries = re.sub(r"^#.*\n", "", file.read(), flags=re.M)
    mutants = []
    pattern = re.compile(r"(\d+) (\S+)\n  in (.*?)«(.*?)»(.*?)\n  to ([^\n]*)", re.S)
    for entry in re.split(r"\n(?=\d+ \S+\n)", entries.strip()):
        match = re.fullmatch(pattern, entry.strip())
        if not match:
            raise SystemExit(f"{path}: no mutant: {entry}")
        number, file, *code = match.groups()
        mutants.append(Mutant(int(number), file, *(text.replace("\n     ", "\n") for text in code)))
    numbers = [mutant.number for mutant in mutants]
    if len(set(numbers)) != len(numbers) or 0 in numbers:
        raise SystemExit(f"{path}: numbers are above 0 and stand once")
    return mutants


def without_comments(text):
    """The text with spaces in place of comments."""
    def blanked(match):
        found = match.group(0)
        return re.sub(r"[^\n]", " ", found) if found.startswith("/") else found
    return COMMENT_OR_TEXT.sub(blanked, text)


def squeezed(text):
    return re.sub(r"\s+", "", without_comments(text))


class Source:
    """A source file, searched without its white space and its comments."""

    def __init__(self, path):
        self.path = path
        with open(path, encoding="utf-8") as file:
            self.text = file.read()
        plain = without_comments(self.text)
        self.places = [at for at, unit in enumerate(plain) if not unit.isspace()]
        self.squeezed = "".join(plain[at] for at in self.places)

    def find(self, mutant):
        """The positions of the mutant's right code: (begin, end) for each."""
        before, right, after = (squeezed(code) for code in (mutant.before, mutant.right, mutant.after))
        found = []
        at = self.squeezed.find(before + right + after)
        while at != -1:
            begin = at + len(before)
            found.append((self.places[begin], self.places[begin + len(right) - 1] + 1))
            at = self.squeezed.find(before + right + after, at + 1)
        return found


def read_sources(root):
    """The C++ files below src/."""
    sources = []
    for directory, _, names in sorted(os.walk(os.path.join(root, "src"))):
        sources += [Source(os.path.join(directory, name)) for name in sorted(names) if name.endswith((".cpp", ".h"))]
    return sources


def locate(mutants, sources):
    """(places, complaints): the source and the range of each mutant, and what is wrong with those that have none.

    Code that was moved to another file is found there if it occurs only once.
    """
    places, complaints = {}, []
    for mutant in mutants:
        everywhere = [(source, place) for source in sources for place in source.find(mutant)]
        at_home = [found for found in everywhere if os.path.basename(found[0].path) == mutant.file]
        found = at_home or everywhere
        if len(found) == 1:
            places[mutant.number] = found[0]
        else:
            reason = "not found" if not found else f"found {len(found)} times"
            complaints.append(f"{reason}:\n{mutant.text()}")
    return places, complaints


def switched_texts(mutants, places):
    """The text of each source that has mutants, with a switch for each of them. No line gets another number."""
    header = os.path.join(os.path.dirname(os.path.abspath(__file__)), "mutant_switch.h")
    by_source = {}
    for mutant in mutants:
        source, place = places[mutant.number]
        by_source.setdefault(source.path, (source, []))[1].append((place, mutant))
    texts = {}
    for path, (source, edits) in by_source.items():
        text, begin_of_last = source.text, len(source.text)
        for (begin, end), mutant in sorted(edits, key=lambda edit: edit[0], reverse=True):
            if end > begin_of_last:
                raise SystemExit(f"mutant {mutant.number} overlaps another one in {path}")
            switch = Mutant(mutant.number, "", "", text[begin:end], "", mutant.wrong).switched()
            text, begin_of_last = text[:begin] + switch + text[end:], begin
        texts[path] = f'#include "{header}"\n#line 1\n{text}'
    return texts
