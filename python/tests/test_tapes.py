"""Tapes: recorded on a service, played without a network."""

import os
import pathlib
import subprocess
import sys

import pytest

import scriptwells

EXAMPLES = pathlib.Path(__file__).parents[1] / "examples"
WITHOUT_NETWORK = ["unshare", "--map-root-user", "--net"]

# A program whose sessions have one more option: python -c RUN OPTION TAPE PROGRAM ARGUMENT...
RUN = """
import functools, runpy, sys
import scriptwells
option, tape, *sys.argv = sys.argv[1:]
scriptwells.connect = functools.partial(scriptwells.connect, **{option: tape})
runpy.run_path(sys.argv[0], run_name="__main__")
"""


def run_example(folder, option, name, url, home, *before):
    shown = subprocess.run(
        [*before, sys.executable, "-c", RUN, option, folder / "a.tape", EXAMPLES / name, url],
        cwd=folder,
        env={**os.environ, "HOME_DIRECTORY": home},
        capture_output=True,
        text=True,
    )
    assert (shown.returncode, shown.stderr) == (0, "")
    assert shown.stdout == (EXAMPLES / name).with_suffix(".out").read_text()


@pytest.mark.parametrize("name", ["first_call.py", "many_calls.py"])
def test_examples_without_a_network(tmp_path, name):
    (tmp_path / "report.pdf").write_text("pages")
    with scriptwells.serve() as service:  # its directory has the upload scripts
        home = str(service.home_directory)
        run_example(tmp_path, "record", name, service.url, home)
        run_example(tmp_path, "replay", name, service.url, home, *WITHOUT_NETWORK)


def test_other_requests_are_refused(tmp_path):
    tape = tmp_path / "a.tape"
    with scriptwells.serve() as service, scriptwells.connect(service.url, "joe", "secret", record=tape) as session:
        assert session.run("parameters.a + 1", a=41) == 42
    text = tape.read_text()
    assert "  a = int 41\n" in text
    assert "secret" not in text
    with scriptwells.connect("http://no.server", "joe", "another", replay=tape) as session:
        assert session.run("parameters.a + 1", a=41) == 42
        with pytest.raises(scriptwells.Error, match="is not on the tape"):
            session.run("parameters.a + 2", a=41)
