"""Runs scripts on a Scriptwells server.

    import scriptwells

    with scriptwells.connect("http://127.0.0.1:8080", user="joe", password="secret") as session:
        session.run("parameters.a + parameters.b", a=2, b=40)                 # 42
        for row in session.run("[{city: 'Rome', people: 2748109}]"):
            print(row.city, row["people"])
        session.run("parameters.doc.size", doc=pathlib.Path("report.pdf"))

`connect` opens a session, `serve` starts a development service to try it with, and `Error` is the root of the errors.
`Dispatch` is for programs that call the objects below this by name.
"""

from ._core import CancelToken, Row, Typed
from ._core import version as __version__
from ._dispatch import HostServices
from ._errors import (
    CancelledError,
    ConnectionError,
    ConversionError,
    DispatchError,
    Error,
    ScriptError,
    SessionError,
    TimeoutError,
)
from ._late import Dispatch, DispatchObject, Member
from ._makers import byte, double, float_, int_, long, losses_on_the_wire, short
from ._service import Service, serve
from ._session import Session, connect
from ._table import Column, Table
from ._types import Duration, Exchange, Link, Progress, SeenRequest

__all__ = [
    "CancelToken",
    "CancelledError",
    "Column",
    "ConnectionError",
    "ConversionError",
    "Dispatch",
    "DispatchError",
    "DispatchObject",
    "Duration",
    "Error",
    "Exchange",
    "HostServices",
    "Link",
    "Member",
    "Progress",
    "Row",
    "ScriptError",
    "SeenRequest",
    "Service",
    "Session",
    "SessionError",
    "Table",
    "TimeoutError",
    "Typed",
    "byte",
    "connect",
    "double",
    "float_",
    "int_",
    "long",
    "losses_on_the_wire",
    "serve",
    "short",
]

for _name in __all__:
    if hasattr(globals()[_name], "__module__"):
        globals()[_name].__module__ = __name__  # what help() and tracebacks show
del _name
