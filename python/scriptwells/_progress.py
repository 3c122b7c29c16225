"""A bar that shows how far a call is, for progress=True."""

from __future__ import annotations

import importlib
import sys
import time
from typing import Any, TextIO

from ._types import Progress

DELAY = 0.5  # seconds: a short call shows nothing


def in_notebook() -> bool:
    ipython = sys.modules.get("IPython")
    shell = ipython.get_ipython() if ipython is not None else None
    return shell is not None and type(shell).__name__ == "ZMQInteractiveShell"


def _tqdm() -> Any:
    try:
        if in_notebook():
            notebook = importlib.import_module("tqdm.notebook")
            if notebook.IProgress is not None:  # without ipywidgets its bar raises an error
                return notebook.tqdm
        return importlib.import_module("tqdm").tqdm
    except ImportError:
        return None


class PlainBar:
    """One line of text, where tqdm is not installed."""

    WIDTH = 30

    def __init__(self, total: int | None, desc: str, file: TextIO) -> None:
        self._total = total
        self._desc = desc
        self._file = file
        self._shown = 0.0
        self._begin = time.monotonic()
        self.n = 0

    def update(self, count: int) -> None:
        self.n += count
        now = time.monotonic()
        if now - self._begin >= DELAY and now - self._shown >= 0.1:
            self._shown = now
            print("\r" + self._line(), end="", file=self._file, flush=True)

    def close(self) -> None:
        if self._shown:
            print("\r" + self._line(), file=self._file, flush=True)

    def _line(self) -> str:
        done = f"{self.n / 1e6:.1f} MB"
        if not self._total:
            return f"{self._desc}: {done}"
        full = min(self.n / self._total, 1.0)
        bar = ("#" * round(full * self.WIDTH)).ljust(self.WIDTH)
        return f"{self._desc}: {full:4.0%} |{bar}| {done}"


class CallBar:
    """The bars of one call: one for each transfer. Nothing is drawn where nobody would see it."""

    def __init__(self, file: TextIO | None = None) -> None:
        self._file = sys.stderr if file is None else file
        self._visible = in_notebook() or self._file.isatty()
        self._transfer: tuple[bool, str | None] | None = None
        self._bar: Any = None

    def __enter__(self) -> CallBar:
        return self

    def __exit__(self, *_: object) -> None:
        self._close()

    def __call__(self, progress: Progress) -> None:
        if not self._visible:
            return
        transfer = (progress.sending, progress.file)
        if transfer != self._transfer:
            self._close()
            self._transfer = transfer
            self._bar = self._make(progress)
        if progress.done > self._bar.n:
            self._bar.update(progress.done - self._bar.n)

    def _make(self, progress: Progress) -> Any:
        name = progress.file.rsplit("/", 1)[-1] if progress.file else "script"
        text = f"{'sending' if progress.sending else 'receiving'} {name}"
        tqdm = _tqdm()
        if tqdm is None:
            return PlainBar(progress.total, text, self._file)
        return tqdm(
            total=progress.total, desc=text, file=self._file, unit="B", unit_scale=True, delay=DELAY
        )

    def _close(self) -> None:
        if self._bar is not None:
            self._bar.close()
        self._bar = None
