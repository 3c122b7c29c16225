"""The class library that a wheel holds, and the registry file that names it."""

from __future__ import annotations

import contextlib
import pathlib
import tempfile
from collections.abc import Iterator

_LIBRARY = pathlib.Path(__file__).parent / "installed" / "lib" / "libqvscriptwells.so.1"
_CLASS_ID = "{01932093-F909-400b-B02E-7AEDABA33A36}"
_NAMES = ("QvScriptwells.QvScriptwells", "QvScriptwells.QvScriptwells.1.0")

# The last key makes calls faster: the library reads it when it is loaded, as it does the one of an installation.
_REGISTRY = r"""
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\{names[0]}\CLSID]
@="{class_id}"

[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\{names[1]}\CLSID]
@="{class_id}"

[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\CLSID\{class_id}\InprocServer32]
@="{library}"

[HKEY_LOCAL_MACHINE\SOFTWARE\Quorvane\Quorvane\XmlLibrary\HoldWhileLoaded]
@="1"
"""


@contextlib.contextmanager
def registry_for(name: str) -> Iterator[str]:
    """The path of a registry file that names this package's own library, for as long as an object is created.

    Empty if the package has none (it is then the system's registry that names one), or for another class.
    """
    if name.lower() not in map(str.lower, _NAMES) or not _LIBRARY.exists():
        yield ""
        return
    library = str(_LIBRARY).replace("\\", "\\\\").replace('"', '\\"')
    text = _REGISTRY.format(names=_NAMES, class_id=_CLASS_ID, library=library)
    with tempfile.NamedTemporaryFile("w", encoding="utf-8", suffix=".reg") as file:
        file.write(text)
        file.flush()
        yield file.name
