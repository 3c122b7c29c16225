"""Tapes: recorded on a service, played without a network."""

import os
import pathlib
import shutil
import subprocess
import sys

import late_host
import pytest

import scriptwells

EXAMPLES = pathlib.Path(__file__).parents[1] / "examples"
RUNNER = pathlib.Path(__file__).with_name("taped_example.py")
TAPES = pathlib.Path(__file__).with_name("tapes")
WITHOUT_NETWORK = ["unshare", "--map-root-user", "--net"]
URL = "http://127.0.0.1:8080"

# With QV_RECORD_TAPES=1 their tapes are recorded again.
RECORDS = "QV_RECORD_TAPES" in os.environ
examples = pytest.mark.parametrize("name", sorted(path.name for path in EXAMPLES.glob("*.py")))


def run_example(folder, mode, tape, name, url, home, *before):
    """In a folder for this test, with the upload scripts and the class library named by the registry."""
    (folder / "report.pdf").write_text("pages")
    registry = late_host.write_registry(folder / "host.reg", home, late_host.TAPED_LIBRARY)
    shown = subprocess.run(
        [*before, sys.executable, RUNNER, mode, tape, url, EXAMPLES / name, url],
        cwd=folder,
        env={**os.environ, "HOME_DIRECTORY": str(home), "QV_REGISTRY": str(registry)},
        capture_output=True,
        text=True,
    )
    assert (shown.returncode, shown.stderr) == (0, "")
    assert shown.stdout == (EXAMPLES / name).with_suffix(".out").read_text()


@pytest.fixture(scope="module")
def upload_scripts(tmp_path_factory):
    """What a service leaves for its clients."""
    home = tmp_path_factory.mktemp("home")
    with scriptwells.serve() as service:
        shutil.copytree(service.home_directory, home, dirs_exist_ok=True)
    return home


@examples
def test_examples_with_a_service(tmp_path, name):
    tape = (TAPES if RECORDS else tmp_path) / f"{name}.tape"
    tape.unlink(missing_ok=True)
    with scriptwells.serve() as service:  # its directory has the upload scripts
        run_example(tmp_path, "record", tape, name, service.url, service.home_directory)


@examples
def test_examples_without_a_network(tmp_path, name, upload_scripts):
    run_example(tmp_path, "replay", TAPES / f"{name}.tape", name, URL, upload_scripts, *WITHOUT_NETWORK)


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
