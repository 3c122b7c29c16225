"""Runs scripts on a Scriptwells server.

    import scriptwells

    with scriptwells.connect("http://127.0.0.1:8080", user="joe", password="secret") as session:
        session.run("parameters.a + parameters.b", a=2, b=40)                 # 42
        for row in session.run("[{city: 'Rome', people: 2748109}]"):
            print(row.city, row["people"])
        session.run("parameters.doc.size", doc=pathlib.Path("report.pdf"))

`connect` opens a session, `serve` starts a development service to try it with, and `Error` is the root of the errors.
"""

from ._core import (
    CancelToken,
    Row,
    Typed,
    byte,
    double,
    float_,
    int_,
    long,
    losses_on_the_wire,
    short,
)
from ._core import version as __version__
from ._errors import (
    CancelledError,
    ConnectionError,
    ConversionError,
    Error,
    ScriptError,
    SessionError,
    TimeoutError,
)
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
    "Duration",
    "Error",
    "Exchange",
    "Link",
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
