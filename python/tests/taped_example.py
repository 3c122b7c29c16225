"""Runs an example with a tape, in a process for itself.

    taped_example.py record TAPE URL PROGRAM ARGUMENT...
    taped_example.py replay TAPE URL PROGRAM ARGUMENT...

URL takes the place of the address that the program's text has. All sessions get the tape. On replay no service is
started: what the program does with one beside its sessions does nothing.
"""

import functools
import os
import pathlib
import sys

import scriptwells
from scriptwells import _service

WRITTEN_ADDRESS = "http://127.0.0.1:8080"


class NoService:
    """In place of a development service whose answers are on the tape."""

    def connect(self):
        return scriptwells.connect("http://no.server", "tester")

    def order_fault(self, *order):
        pass

    def __enter__(self):
        return self

    def __exit__(self, *error):
        pass


def main(mode, tape, url, program, *arguments):
    scriptwells.connect = functools.partial(scriptwells.connect, **{mode: tape})
    _service.connect = scriptwells.connect
    if mode == "replay":
        scriptwells.serve = NoService
    os.environ[f"SCRIPTWELLS_{mode.upper()}"] = tape  # for the library of classes, see late_host.TAPED_LIBRARY
    sys.argv = [program, *arguments]
    text = pathlib.Path(program).read_text(encoding="utf-8").replace(WRITTEN_ADDRESS, url)
    exec(compile(text, program, "exec"), {"__name__": "__main__"})


if __name__ == "__main__":
    main(*sys.argv[1:])
