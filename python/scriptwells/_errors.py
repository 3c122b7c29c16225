"""The errors. The extension module creates them by the names that the C++ library has for them."""

from __future__ import annotations

import builtins


class Error(Exception):
    """Any failure of a call; str() is a sentence for people. After an error the session is as before."""

    phase: str
    """How far the call got: "address", "connect", "TLS", "send", "wait", "receive", "answer", "session", "script",
    "local file", "conversion" or "cancelled"."""
    code: int | None
    """The server's number of a fault."""
    server_message: str | None
    """The server's own text of a fault, which programs may compare."""
    line: int | None
    """The line in the script, where the server names it."""
    column: int | None
    """The column in that line."""
    status: int | None
    """The HTTP status of the answer, if there was one."""

    def __init__(
        self,
        message: str = "",
        *,
        phase: str = "",
        code: int | None = None,
        server_message: str | None = None,
        line: int | None = None,
        column: int | None = None,
        status: int | None = None,
    ) -> None:
        super().__init__(message)
        self.phase = phase
        self.code = code
        self.server_message = server_message
        self.line = line
        self.column = column
        self.status = status


class ConnectionError(Error, builtins.ConnectionError):
    """No connection, or one that broke: phases connect, TLS, send, wait, receive."""


class TimeoutError(Error, builtins.TimeoutError):
    """A limit of time is over; `phase` says where."""


class SessionError(Error):
    """The server refused the session."""


class ScriptError(Error):
    """The script, or the server for it, reported a fault."""


class CancelledError(Error):
    """The call was cancelled."""


class ConversionError(Error, ValueError):
    """A value that cannot be sent, or that would arrive changed under `strict`."""
