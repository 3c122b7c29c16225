"""The pages of the site: documents, their labels, and the anchors of their headings."""

import functools
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
PATTERNS = ("*.md", "docs/**/*.md", "*/README.md", "*/*/README.md")
HEADING = re.compile(r"^(#+) +(.+?) *$")
FENCE = re.compile(r"^```")


def label_of(document: Path) -> str:
    """What the page is called: "guide_files", "python" for python/README.md, "index" for the start page."""
    path = document.relative_to(ROOT)
    if path == Path("README.md"):
        return "index"
    parts = path.parts[:-1] if path.stem == "README" else path.with_suffix("").parts
    parts = parts[1:] if parts[0] == "docs" else parts
    return "_".join(parts).lower().replace("-", "_")


def title_of(document: Path) -> str:
    return document.read_text().splitlines()[0].removeprefix("# ")


def anchor_of(heading: str) -> str:
    """As web views of Markdown name a heading: lower case, blanks as "-", without punctuation."""
    kept = re.sub(r"[^a-z0-9 _-]", "", heading.lower())
    return kept.replace(" ", "-")


def section_label(document: Path, heading: str) -> str:
    return f"{label_of(document)}-{anchor_of(heading)}"


@functools.lru_cache
def documents() -> frozenset[Path]:
    """The documents that are pages."""
    found = [path for pattern in PATTERNS for path in ROOT.glob(pattern)]
    return frozenset(path for path in found if not path.relative_to(ROOT).parts[0].startswith(("build", ".")))


def is_page(path: Path) -> bool:
    return path.resolve() in documents()


@functools.lru_cache
def members() -> dict[str, set[str]]:
    """The names in each class of the C++ library, as far as its header shows them."""
    found: dict[str, set[str]] = {}
    for header in sorted((ROOT / "include" / "scriptwells").glob("*.h")):
        text = re.sub(r"//.*", "", header.read_text())
        for match in re.finditer(r"^(?:class|struct|enum class) (?:SCRIPTWELLS_API )?(\w+)[^;{]*\{\n(.*?)^\};", text,
                                 re.MULTILINE | re.DOTALL):
            public = re.split(r"^ private:", match[2], flags=re.MULTILINE)[0]
            found[match[1]] = set(re.findall(r"\w+", public))
    return found


if __name__ == "__main__":
    print(*sorted(str(path.relative_to(ROOT)) for path in documents()))
