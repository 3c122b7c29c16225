"""The types of values that Python has no type for, and what callbacks get."""

from __future__ import annotations

import dataclasses
import datetime
from collections.abc import Callable
from typing import NamedTuple

from . import _core


@dataclasses.dataclass(frozen=True)
class Duration:
    """A duration in the units of ISO 8601, all with one sign.

    Compared unit by unit: "PT60M" is not "PT1H". A `datetime.timedelta` can be sent, too.
    """

    negative: bool = False
    years: int = 0
    months: int = 0
    days: int = 0
    hours: int = 0
    minutes: int = 0
    seconds: float = 0.0

    @staticmethod
    def parse(text: str) -> Duration:
        """The duration of a text such as "P1Y2M3DT4H5M6.5S" or "-P1D"."""
        return _core.parse_duration(text)

    def to_timedelta(self) -> datetime.timedelta:
        """The same length. Raises ValueError if there are years or months, whose lengths vary."""
        if self.years or self.months:
            raise ValueError(f"{self} has years or months, whose lengths vary")
        span = datetime.timedelta(self.days, self.seconds, minutes=self.minutes, hours=self.hours)
        return -span if self.negative else span

    def __str__(self) -> str:
        return _core.duration_text(self)


@dataclasses.dataclass(frozen=True)
class Link:
    """An address with a caption. It comes in answers only, and the protocol's clients read it without both."""

    url: str = ""
    caption: str = ""

    def __str__(self) -> str:
        return self.url


class Progress(NamedTuple):
    """How far a transfer is."""

    sending: bool
    done: int
    """Bytes so far."""
    total: int | None
    """None if it is unknown."""
    file: str | None
    """The path of an upload or download; None for a script's request and answer."""


@dataclasses.dataclass(frozen=True)
class Exchange:
    """One HTTP exchange, for a listener. Passwords, session ids and tickets are "***"."""

    purpose: str
    server: str
    proxy: str
    request_head: bytes
    request_body: bytes
    answer_head: bytes
    answer_body: bytes
    status: int
    """0 if there was no answer."""
    file: str | None
    sent_bytes: int
    received_bytes: int
    failure: str
    begin: float
    """As of time.time()."""
    connecting: float
    """In seconds, as the times that follow; 0 on a kept connection."""
    waiting: float
    total: float
    summary: str
    """One line with the most important of it."""

    def __str__(self) -> str:
        return self.summary


class SeenRequest(NamedTuple):
    """A request that a development service saw."""

    method: str
    target: str
    action: str
    """Such as "Execute"; empty for a request that is not SOAP."""
    body: bytes


# What looks at a call: a function for its progress, one for each exchange, and what stops it.
Watch = tuple[
    Callable[[Progress], object] | None, Callable[[Exchange], object] | None, _core.CancelToken | None
]
