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


class DispatchError(Error):
    """A failure of an object of Dispatch(); str() is the description, or says what the code means."""

    hresult: int
    """The result code, negative: 0x80040000 with the server's number for a fault of the server."""
    source: str | None
    """The name of the class that failed, if the registry has it."""
    description: str | None
    """The object's own message, which programs may compare; None for a failure without one."""
    argument: int | None
    """The position, from 1, of an argument that was refused."""

    def __init__(
        self,
        message: str = "",
        *,
        hresult: int = 0,
        source: str | None = None,
        description: str | None = None,
        argument: int | None = None,
    ) -> None:
        super().__init__(message)
        self.hresult = hresult
        self.source = source
        self.description = description
        self.argument = argument
