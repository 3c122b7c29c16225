"""Sessions on a server."""

from __future__ import annotations

import asyncio
import concurrent.futures
import datetime
import functools
import os
import pathlib
from collections.abc import Callable, Mapping
from types import TracebackType
from typing import Any, TypeVar

from . import _core
from ._progress import CallBar
from ._types import Exchange, Progress, Watch

Seconds = float | datetime.timedelta
StrPath = str | os.PathLike[str]
_Result = TypeVar("_Result")


class _Worker:
    """The thread of a session's run_async, which keeps the calls in their order. It starts when it is needed."""

    def __init__(self) -> None:
        self._executor: concurrent.futures.ThreadPoolExecutor | None = None

    def submit(self, call: Callable[[], _Result]) -> concurrent.futures.Future[_Result]:
        if self._executor is None:
            self._executor = concurrent.futures.ThreadPoolExecutor(1, thread_name_prefix="scriptwells")
        return self._executor.submit(call)

    def finish(self) -> None:
        executor, self._executor = self._executor, None
        if executor is not None:
            executor.shutdown()


class Session:
    """A session on a server. `connect` opens one; `with` closes it, whatever happens.

    Any number of sessions may be used on any threads. The calls of one session run one after the other. Ctrl-C ends
    the running call with KeyboardInterrupt and leaves the session open.
    """

    __slots__ = ("_core", "_worker", "_options", "_call", "_watch", "_draws", "__weakref__")

    def __init__(
        self,
        core: _core.Session,
        options: dict[str, object],
        progress: bool | Callable[[Progress], object] | None,
        listener: Callable[[Exchange], object] | None,
        worker: _Worker | None = None,
    ) -> None:
        """Use connect() instead."""
        self._core = core
        self._worker = worker or _Worker()
        self._options = options
        self._call = _core.CallOptions(options)
        self._draws = progress is True
        # Kept here, where the garbage collector sees it, and passed to each call: progress, listener, stop.
        self._watch: Watch = (None if isinstance(progress, bool) else progress, listener, None)

    def run(self, code: str, parameters: Mapping[str, Any] | None = None, /, **named: Any) -> Any:
        """Runs a script and returns its value.

        Each keyword argument is a parameter of the script, `parameters.NAME` inside it, and nothing else; the mapping
        takes names that Python has no keywords for. A `pathlib.Path` uploads that file. Options of a call are those of
        `with_options`.

        Returns bool, int, float, str, datetime.date, datetime.time, datetime.datetime, Duration, Link, Table, or None
        for an answer of a type that the protocol's clients do not read.
        """
        if self._draws:
            return self._drawn(lambda watch: self._core.run(code, parameters, named, self._call, watch))
        return self._core.run(code, parameters, named, self._call, self._watch)

    def run_document(self, path: StrPath, parameters: Mapping[str, Any] | None = None, /, **named: Any) -> Any:
        """Runs a script document: an XML file with a script and its language. Else as `run`."""
        if self._draws:
            return self._drawn(lambda watch: self._core.run_document(path, parameters, named, self._call, watch))
        return self._core.run_document(path, parameters, named, self._call, self._watch)

    async def run_async(self, code: str, parameters: Mapping[str, Any] | None = None, /, **named: Any) -> Any:
        """Like `run`, on a thread of the session. Calls keep their order; cancelling the task cancels the call."""
        stop = _core.CancelToken()
        run = functools.partial(self._core.run, code, parameters, named, self._call, (*self._watch[:2], stop))
        try:
            return await asyncio.wrap_future(self._worker.submit(run))
        except asyncio.CancelledError:
            stop.cancel()
            raise

    def download(self, url: str, directory: StrPath = ".") -> pathlib.Path:
        """Saves the file at `url` in the directory, under the name that the server gives. Returns its path.

        The session's id is sent to the server of the URL.
        """
        if self._draws:
            return pathlib.Path(self._drawn(lambda watch: self._core.download(url, directory, self._call, watch)))
        return pathlib.Path(self._core.download(url, directory, self._call, self._watch))

    def with_options(
        self,
        *,
        language: str | None = None,
        strict: bool | None = None,
        timeout: Seconds | None = None,
        cancel: _core.CancelToken | None = None,
        progress: bool | Callable[[Progress], object] | None = None,
    ) -> Session:
        """The same session with other options for its calls; what is not given stays.

        language: of `run`.
        strict: refuse what the protocol would change, in parameters and answers.
        timeout: seconds for a call with its uploads.
        cancel: its `cancel()` ends the calls, from any thread.
        progress: True draws a bar for long transfers; a function is called with `Progress`.
        """
        given = {"language": language, "strict": strict, "timeout": timeout, "cancel": cancel}
        changed = {name: value for name, value in given.items() if value is not None}
        if progress is None:
            progress = self._draws or self._watch[0]
        return Session(self._core, {**self._options, **changed}, progress, self._watch[1], self._worker)

    def close(self, timeout: Seconds | None = None) -> None:
        """Closes the session, within the time. Waits for `run_async`. Unlike `with`, reports a failure."""
        self._worker.finish()
        self._core.close(timeout, self._watch)

    def release(self) -> str:
        """Leaves the session open on the server and returns its id; further calls here raise SessionError."""
        self._worker.finish()
        return self._core.release()

    @property
    def id(self) -> str:
        """The session's id, with which another program can adopt the session: a secret."""
        return self._core.id

    @property
    def url(self) -> str:
        """The server's address."""
        return self._core.server

    def __enter__(self) -> Session:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self._worker.finish()
        self._core.close_quietly(self._watch)

    def __repr__(self) -> str:
        return f"<Session on {self.url}>"

    def _drawn(self, run: Callable[[Watch], Any]) -> Any:
        with CallBar() as bar:
            return run((bar, *self._watch[1:]))


def connect(
    url: str,
    user: str = "",
    password: str = "",
    *,
    replica: str = "",
    session_id: str | None = None,
    language: str = "JavaScript",
    strict: bool = False,
    timeout: Seconds = 0,
    cancel: _core.CancelToken | None = None,
    progress: bool | Callable[[Progress], object] | None = None,
    connect_timeout: Seconds = 30,
    silence_timeout: Seconds = 60,
    close_timeout: Seconds = 2,
    least_bytes_per_second: int = 16,
    most_answer_bytes: int = 512 << 20,
    proxy: str = "",
    authorities: StrPath = "",
    certificate: StrPath = "",
    key: StrPath = "",
    home_directory: StrPath = "",
    replace_files: bool = True,
    hidden_files: bool = False,
    listener: Callable[[Exchange], object] | None = None,
    listener_bodies: bool = True,
    show_secrets: bool = False,
    record: StrPath = "",
    replay: StrPath = "",
) -> Session:
    """Opens a session on a server.

    url: "http://name", "http://name:port" or https.
    user, password, replica: who opens the session.
    session_id: use this open session instead; it stays open, unless close() is called.
    language, strict, timeout, cancel, progress: as of `Session.with_options`, for all calls.
    connect_timeout, silence_timeout, close_timeout: seconds for a connection, without a byte in either direction, and
        for the end of `with`. All times are numbers of seconds or datetime.timedelta; 0 means no limit.
    least_bytes_per_second: a slower answer is a timeout.
    most_answer_bytes: a longer answer is an error.
    proxy: "name" (port 80) or "name:port".
    authorities, certificate, key: PEM files, for https. The authorities replace those of the system.
    home_directory: where the upload scripts are, else those of the installation.
    replace_files, hidden_files: whether `download` replaces files, and saves names that begin with ".".
    listener: is called with each HTTP exchange. Without `listener_bodies` it gets neither heads nor bodies.
    show_secrets: passwords, session ids and tickets are not masked in them.
    record: a tape, to whose end all exchanges are written, with masked secrets; it is created if it is not there.
    replay: a tape from which all answers come; nothing is sent.
    """
    core = _core.Session(
        url,
        user,
        password,
        replica,
        session_id or "",
        {
            "language": language,
            "strict": strict,
            "timeout": timeout,
            "connect_timeout": connect_timeout,
            "silence_timeout": silence_timeout,
            "close_timeout": close_timeout,
            "least_bytes_per_second": least_bytes_per_second,
            "most_answer_bytes": most_answer_bytes,
            "proxy": proxy,
            "authorities": authorities or None,
            "certificate": certificate or None,
            "key": key or None,
            "home_directory": home_directory or None,
            "replace_files": replace_files,
            "hidden_files": hidden_files,
            "listens": listener is not None,
            "listener_bodies": listener_bodies,
            "show_secrets": show_secrets,
            "record": record or None,
            "replay": replay or None,
        },
        (None, listener, None),
    )
    return Session(core, {"cancel": cancel}, progress, listener)
