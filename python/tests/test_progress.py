"""Progress: functions that are called, and the bar."""

import builtins
import importlib
import io
import sys
import time

import pytest

import scriptwells
from scriptwells import _progress

LONG = "'x'.repeat(3000000)"


class Terminal(io.StringIO):
    def isatty(self):
        return True


@pytest.fixture
def use_terminal(monkeypatch):
    """Makes a terminal the standard error; called in the test, since pytest has its own for each of its phases."""

    def use(terminal=None, delay=0.0):
        terminal = terminal or Terminal()
        monkeypatch.setattr(sys, "stderr", terminal)
        monkeypatch.setattr(_progress, "DELAY", delay)
        return terminal

    return use


@pytest.fixture
def no_tqdm(monkeypatch):
    for name in ("tqdm", "tqdm.notebook"):
        monkeypatch.setitem(sys.modules, name, None)


def test_a_function_is_called(session):
    seen = []
    assert len(session.with_options(progress=seen.append).run(LONG)) == 3_000_000
    answer = [progress for progress in seen if not progress.sending]
    assert answer[-1].done > 3_000_000
    assert answer[-1].total == answer[-1].done
    assert answer[-1].file is None
    assert [p.done for p in answer] == sorted(p.done for p in answer)


def test_files_are_named(session, tmp_path):
    path = tmp_path / "Größe.txt"
    path.write_bytes(b"x" * 1_000_000)
    seen = []
    session.with_options(progress=seen.append).run("1", doc=path)
    uploaded = [progress for progress in seen if progress.file == str(path) and progress.sending]
    assert uploaded[-1].done == 1_000_000


def test_what_a_function_raises_ends_the_call(session):
    def refuse(progress):
        raise LookupError("enough")

    with pytest.raises(LookupError, match="enough"):
        session.with_options(progress=refuse).run(LONG)
    assert session.run("1") == 1


def test_a_function_may_use_other_sessions(scriptwells_service, session):
    with scriptwells_service.connect() as other:
        answers = []
        session.with_options(progress=lambda progress: answers.append(other.run("6 * 7"))).run("1")
    assert answers and set(answers) == {42}


def test_a_function_cannot_use_its_own_session(session):
    with pytest.raises(RuntimeError, match="cannot use that session"):
        session.with_options(progress=lambda progress: session.run("1")).run("1")
    with pytest.raises(RuntimeError, match="cannot use that session"):
        session.with_options(progress=lambda progress: session.close()).run("1")
    assert session.run("1") == 1


def test_it_is_called_while_waiting(session):
    times = []
    with pytest.raises(scriptwells.TimeoutError):
        session.with_options(timeout=0.9, progress=lambda _: times.append(time.monotonic())).run("for (;;) ;")
    assert len(times) >= 3


def test_bar_with_tqdm(session, use_terminal):
    pytest.importorskip("tqdm")
    terminal = use_terminal()
    session.with_options(progress=True).run(LONG)
    assert "receiving script: 100%" in terminal.getvalue()


def test_bar_without_tqdm(session, use_terminal, no_tqdm):
    terminal = use_terminal()
    session.with_options(progress=True).run(LONG)
    assert "receiving script: 100% |" + "#" * 30 + "| 3.0 MB\n" in terminal.getvalue()


def test_bars_of_files(session, use_terminal, no_tqdm, tmp_path):
    terminal = use_terminal()
    path = tmp_path / "big.txt"
    path.write_bytes(b"x" * 3_000_000)
    drawn = session.with_options(progress=True)
    url = drawn.run("publish('out.txt', parameters.doc)", doc=path)
    drawn.download(url, tmp_path)
    assert "sending big.txt: 100% |" in terminal.getvalue()
    assert "receiving out.txt: 100% |" in terminal.getvalue()


def test_no_bar_for_short_calls(session, use_terminal):
    terminal = use_terminal(delay=0.5)
    session.with_options(progress=True).run("1")
    assert terminal.getvalue() == ""


def test_no_bar_without_a_terminal(session, use_terminal):
    output = use_terminal(io.StringIO())
    session.with_options(progress=True).run(LONG)
    assert output.getvalue() == ""


@pytest.fixture
def notebook(monkeypatch):
    shell = type("ZMQInteractiveShell", (), {})()
    ipython = type(builtins)("IPython")
    ipython.get_ipython = lambda: shell
    monkeypatch.setitem(sys.modules, "IPython", ipython)


def test_bar_in_a_notebook(session, use_terminal, no_tqdm, notebook):
    output = use_terminal(io.StringIO())
    session.with_options(progress=True).run(LONG)
    assert "receiving script: 100%" in output.getvalue()


def test_bar_in_a_notebook_without_widgets(session, use_terminal, notebook, monkeypatch):
    """tqdm is there, and what its bars for notebooks are made of is not."""
    pytest.importorskip("tqdm")
    monkeypatch.setattr(importlib.import_module("tqdm.notebook"), "IProgress", None)
    output = use_terminal(io.StringIO())
    session.with_options(progress=True).run(LONG)
    assert "receiving script: 100%" in output.getvalue()


def test_a_file_of_unknown_size(no_tqdm):
    output = Terminal()
    bar = _progress.PlainBar(None, "receiving", output)
    bar._begin -= 1
    bar.update(2_500_000)
    bar.close()
    assert output.getvalue().endswith("\rreceiving: 2.5 MB\n")
