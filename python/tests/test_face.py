"""What a reader sees: help, signatures, types."""

import inspect
import os
import pathlib
import pydoc
import re
import shutil
import subprocess
import sys

import pytest

import scriptwells

PACKAGE = pathlib.Path(scriptwells.__file__).parent
ALLOWED = pathlib.Path(__file__).parent / "stubtest_allowlist.txt"
EXAMPLES = pathlib.Path(__file__).parents[1] / "examples"


def public(kind):
    return [name for name in vars(kind) if not name.startswith("_") and callable(getattr(kind, name))]


def test_everything_has_a_docstring():
    for name in scriptwells.__all__:
        member = getattr(scriptwells, name)
        assert member.__doc__, name
        assert "Did you forget" not in member.__doc__
        if inspect.isclass(member):
            for method in public(member):
                if method not in ("count", "index", "_replace") and member.__module__ == "scriptwells":
                    assert inspect.getdoc(getattr(member, method)), f"{name}.{method}"


def test_help():
    text = pydoc.plain(pydoc.render_doc(scriptwells))
    assert text.startswith("Python Library Documentation: package scriptwells\n\nNAME\n    scriptwells - Runs scripts")
    assert "class ScriptError(Error)" in text
    assert re.search(r"run\(self, code: .*/, \*\*named", text)
    assert "PyCapsule" not in text  # functions look as Python's own
    assert "class Typed(" in text and "scriptwells._core.Typed" not in text


def test_everything_has_a_signature():
    """What a reader of help() and an editor show; scriptwells alone makes rows and typed values."""
    for name in scriptwells.__all__:
        member = getattr(scriptwells, name)
        if not callable(member) or name in ("Row", "Typed"):
            continue
        assert "*args" not in str(inspect.signature(member)), name
        if inspect.isclass(member) and member.__module__ == "scriptwells":
            for method in public(member):
                assert inspect.signature(getattr(member, method)), f"{name}.{method}"
    assert str(inspect.signature(scriptwells.byte)) == "(value: 'int', /) -> '_core.Typed'"


def test_keywords_of_run_are_parameters_only():
    kinds = [p.kind for p in inspect.signature(scriptwells.Session.run).parameters.values()]
    assert kinds[-1] is inspect.Parameter.VAR_KEYWORD
    assert set(kinds[:-1]) == {inspect.Parameter.POSITIONAL_ONLY}


def test_version():
    assert re.fullmatch(r"\d+\.\d+\.\d+", scriptwells.__version__)


def run_mypy(tmp_path, *command):
    """mypy of the system, which finds the package in its own folder: the build's has links."""
    shutil.copytree(PACKAGE, tmp_path / "path" / "scriptwells", ignore=shutil.ignore_patterns("installed"))
    (tmp_path / "mypy.ini").write_text("[mypy]\n[mypy-pandas,numpy,pytest]\nignore_missing_imports = True\n")
    environment = {**os.environ, "MYPYPATH": str(tmp_path / "path"), "PYTHONPATH": str(tmp_path / "path")}
    return subprocess.run(
        [sys.executable, *command], cwd=tmp_path, env=environment, capture_output=True, text=True
    )


@pytest.mark.skipif(not shutil.which("mypy"), reason="mypy is not installed")
def test_types_of_the_examples_and_the_package(tmp_path):
    checked = run_mypy(tmp_path, "-m", "mypy", "--strict", "--no-incremental", EXAMPLES, "path/scriptwells")
    assert checked.returncode == 0, checked.stdout + checked.stderr


@pytest.mark.skipif(not shutil.which("stubtest"), reason="mypy is not installed")
def test_the_stub_is_that_of_the_module(tmp_path):
    checked = run_mypy(
        tmp_path, "-m", "mypy.stubtest", "--mypy-config-file", "mypy.ini", "--allowlist", ALLOWED, "scriptwells"
    )
    assert checked.returncode == 0, checked.stdout + checked.stderr
