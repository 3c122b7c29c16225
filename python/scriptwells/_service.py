"""A development service, for tests and first steps."""

from __future__ import annotations

import os
import pathlib
from collections.abc import Mapping
from types import TracebackType
from typing import Any

from . import _core
from ._session import Session, StrPath, connect
from ._types import SeenRequest

_OWN_PROGRAM = pathlib.Path(__file__).parent / "installed" / "bin" / "scriptwells"


def _program() -> str:
    """That of this package; empty for the search of the C++ library: the variable, then PATH."""
    if os.environ.get("SCRIPTWELLS_PROGRAM") or not _OWN_PROGRAM.exists():
        return ""
    return str(_OWN_PROGRAM)


class Service:
    """A development service that runs JavaScript on this machine, in another process. `with` ends it."""

    def __init__(self, users: Mapping[str, str] | None = None, program: StrPath | None = None) -> None:
        """Use serve() instead."""
        self._users = list((users or {}).items())
        self._core = _core.Service(os.fspath(program) if program else _program(), self._users)

    @property
    def url(self) -> str:
        """Its address, such as "http://127.0.0.1:40123"."""
        return self._core.url

    @property
    def home_directory(self) -> pathlib.Path:
        """The directory with its upload scripts, for connect(home_directory=...)."""
        return pathlib.Path(self._core.home_directory)

    def connect(self, user: str = "", password: str = "", **options: Any) -> Session:
        """A session for that user, else for the first one; files can be uploaded. Options are those of connect()."""
        if not user:
            user, password = self._users[0] if self._users else ("tester", "")
        options.setdefault("home_directory", self.home_directory)
        return connect(self.url, user, password, **options)

    def counts(self) -> dict[str, int]:
        """How many requests it saw, by action ("Execute", ...)."""
        return self._core.counts()

    def requests(self) -> list[SeenRequest]:
        """The last requests, the oldest first."""
        return self._core.requests()

    def order_fault(self, kind: str = "fault", number: int = 5, text: str = "", action: str = "Execute") -> None:
        """The next request of the action ("" for any) gets a fault instead of its answer.

        kind: "fault" (of the protocol, with number and text), "status" (the HTTP status `number` with `text`), "cut"
        (the connection closes in the middle of the answer), "silence" (for `number` milliseconds).
        """
        self._core.order(kind, number, text, action)

    def order_odd(
        self, names: str, requests: int = 1, *, chance: float = 1, seed: int = 1, action: str = "Execute"
    ) -> None:
        """The next requests of the action ("" for any) get odd answers of the service.

        names: such as "cut", "stall", "drip", "spoil", "slow", "refuse", "short" or "strictxml", several joined by "+";
            an unknown one raises an Error with all of them. Names about files meet uploads and downloads. "" removes
            all that was ordered.
        requests: so many get them; 0: all to come.
        chance: below 1, each request to come gets them with this chance, and `requests` has no meaning; the same seed
            repeats the same decisions.
        """
        self._core.order_odd(names, requests, chance, seed, action)

    def close(self) -> None:
        """Ends the service."""
        self._core.close()

    def __enter__(self) -> Service:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.close()


def serve(users: Mapping[str, str] | None = None, *, program: StrPath | None = None) -> Service:
    """Starts a development service.

        with scriptwells.serve() as service, service.connect() as session:
            session.run("6 * 7")

    users: names and passwords; without them everybody may open a session.
    program: the program `scriptwells`; else that of the variable SCRIPTWELLS_PROGRAM, of this package, of PATH.
    """
    return Service(users, program)
