"""Values whose type on the wire is chosen, and what the wire changes in values."""

from __future__ import annotations

from typing import Any

from . import _core


def byte(value: int, /) -> _core.Typed:
    """A whole number of 8 bits."""
    return _core.byte(value)


def short(value: int, /) -> _core.Typed:
    """A whole number of 16 bits."""
    return _core.short(value)


def int_(value: int, /) -> _core.Typed:
    """A whole number of 32 bits."""
    return _core.int_(value)


def long(value: int, /) -> _core.Typed:
    """A whole number of 64 bits."""
    return _core.long(value)


def float_(value: float, /) -> _core.Typed:
    """A floating-point number of 32 bits."""
    return _core.float_(value)


def double(value: float, /) -> _core.Typed:
    """A floating-point number of 64 bits."""
    return _core.double(value)


def losses_on_the_wire(value: Any, /) -> list[str]:
    """What sending a value would change, one sentence each. Often none."""
    return _core.losses_on_the_wire(value)
