"""The development service for tests."""

import os
import pathlib
import subprocess
import sys

import late_host as late
import pytest

import scriptwells

pytest_plugins = ["pytester"]


def test_counts_and_requests(scriptwells_service):
    with scriptwells_service.connect() as session:
        session.run("'some text'")
    assert scriptwells_service.counts() == {"CreateUserSession": 1, "Execute": 1, "CloseUserSession": 1}
    execute = scriptwells_service.requests()[1]
    assert (execute.method, execute.action) == ("POST", "Execute")
    assert b"some text" in execute.body
    assert execute.target.endswith(".asmx")


@pytest.mark.parametrize(
    ("order", "kind", "phase"),
    [
        ({"number": 7, "text": "mine"}, scriptwells.ScriptError, "script"),
        ({"kind": "status", "number": 503, "text": "busy"}, scriptwells.Error, "answer"),
        ({"kind": "cut"}, scriptwells.ConnectionError, "receive"),
        ({"kind": "silence", "number": 3000}, scriptwells.TimeoutError, "wait"),
    ],
)
def test_faults_to_order(scriptwells_service, order, kind, phase):
    with scriptwells_service.connect(silence_timeout=0.3) as session:
        scriptwells_service.order_fault(**order)
        with pytest.raises(kind) as caught:
            session.run("1")
        assert caught.value.phase == phase
        assert session.run("1") == 1
    if kind is scriptwells.ScriptError:
        assert (caught.value.code, caught.value.server_message) == (7, "mine")


@pytest.mark.parametrize(("names", "phase"), [("cut", "receive"), ("spoil", "answer"), ("refuse", "wait")])
def test_odd_answers_to_order(scriptwells_service, names, phase):
    with scriptwells_service.connect() as session:
        scriptwells_service.order_odd(names, 2)
        for _ in range(2):
            with pytest.raises(scriptwells.Error) as caught:
                session.run("1")
            assert caught.value.phase == phase
        assert session.run("1") == 1


def odd_outcomes(service, seed):
    service.order_odd("spoil", chance=0.5, seed=seed)
    outcomes = ""
    with service.connect() as session:
        for _ in range(32):
            try:
                session.run("1")
                outcomes += "."
            except scriptwells.Error:
                outcomes += "x"
    service.order_odd("")
    return outcomes


def test_chances_repeat_with_their_seed(scriptwells_service):
    first = odd_outcomes(scriptwells_service, 7)
    assert {".", "x"} == set(first)
    assert odd_outcomes(scriptwells_service, 7) == first
    assert odd_outcomes(scriptwells_service, 8) != first


def test_unknown_odd_answers(scriptwells_service):
    with pytest.raises(scriptwells.Error, match='no odd answer of the name "frob". Names: ns2, '):
        scriptwells_service.order_odd("frob")


def test_unknown_faults(scriptwells_service):
    with pytest.raises(ValueError, match="there is no kind of fault 'odd'"):
        scriptwells_service.order_fault("odd")


def test_users():
    with scriptwells.serve(users={"joe": "secret", "ann": "other"}) as service:
        with service.connect() as session:
            assert session.run("1") == 1
        with service.connect("ann", "other") as session:
            assert session.run("1") == 1
        with pytest.raises(scriptwells.SessionError):
            service.connect("ann", "wrong")


def test_programs_that_are_not_there(tmp_path):
    with pytest.raises(scriptwells.Error, match="is not installed") as caught:
        scriptwells.serve(program=tmp_path / "none")
    assert caught.value.phase == "local file"


def test_the_end(scriptwells_service):
    url = scriptwells_service.url
    scriptwells_service.close()
    scriptwells_service.close()
    with pytest.raises(scriptwells.ConnectionError):
        scriptwells.connect(url)


def test_it_ends_with_the_process():
    code = "import os, scriptwells; print(scriptwells.serve().url, flush=True); os._exit(0)"
    url = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True).stdout.strip()
    for _ in range(50):
        try:
            scriptwells.connect(url, "joe").close()
        except scriptwells.ConnectionError:
            return
    pytest.fail("the service still answers")


def test_plugin(pytester):
    pytester.makepyfile(
        """
        def test_sum(scriptwells_service):
            with scriptwells_service.connect() as session:
                assert session.run("parameters.a + 1", a=41) == 42
        """
    )
    result = pytester.runpytest_subprocess("-p", "scriptwells.pytest_plugin")
    result.assert_outcomes(passed=1)


def test_examples(tmp_path):
    (tmp_path / "report.pdf").write_text("pages")
    examples = pathlib.Path(__file__).parents[1] / "examples"
    with scriptwells.serve() as service:
        home = str(service.home_directory)
        environment = {**os.environ, "HOME_DIRECTORY": home, "QV_REGISTRY": str(tmp_path / "registry.reg")}
        late.write_registry(tmp_path / "registry.reg", home)
        for example in sorted(examples.glob("*.py")):
            code = tmp_path / example.name
            code.write_text(example.read_text().replace("http://127.0.0.1:8080", service.url))
            shown = subprocess.run(
                [sys.executable, code, service.url], cwd=tmp_path, env=environment, capture_output=True, text=True
            )
            assert (shown.returncode, shown.stderr) == (0, "")
            assert shown.stdout == example.with_suffix(".out").read_text(), example
