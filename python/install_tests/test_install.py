"""Installs the package as its README says, and uses it from there. The first build takes minutes."""

import os
import pathlib
import shutil
import subprocess
import sys

import pytest

PACKAGE = pathlib.Path(__file__).resolve().parents[1]
OF_THE_BUILD = ("PYTHONPATH", "SCRIPTWELLS_PROGRAM", "QV_REGISTRY")  # that these tests belong to
ENVIRONMENT = {name: value for name, value in os.environ.items() if name not in OF_THE_BUILD}


def run(*command, **options):
    done = subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, **options)
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


@pytest.fixture(scope="module")
def python(tmp_path_factory):
    folder = tmp_path_factory.mktemp("environment")
    run(sys.executable, "-m", "venv", "--system-site-packages", folder)
    run(folder / "bin/pip", "install", "--no-index", PACKAGE)
    return folder / "bin/python"


@pytest.fixture(scope="module")
def installed(python, tmp_path_factory):
    code = "import pathlib, scriptwells; print(pathlib.Path(scriptwells.__file__).parent)"
    return pathlib.Path(run(python, "-c", code, cwd=tmp_path_factory.mktemp("elsewhere")).strip())


def test_first_result(python, tmp_path):
    (tmp_path / "report.pdf").write_text("pages")
    code = """
import pathlib, scriptwells
with scriptwells.serve() as service, service.connect() as session:
    print(session.run("parameters.a + parameters.b", a=2, b=40))
    print(session.run("parameters.doc.size", doc=pathlib.Path("report.pdf")))
"""
    assert run(python, "-c", code, cwd=tmp_path) == "42\n5\n"


def test_late_binding(installed, python, tmp_path):
    code = """
import scriptwells
with scriptwells.serve() as service:
    client = scriptwells.Dispatch("QvScriptwells.QvScriptwells")
    client.Init(scriptwells.HostServices("joe"))
    client.ServerName = service.url
    model = client.ConnectionModel()
    model.CreateUserSession("Username=joe;Password=secret;")
    print(model.Execute("JavaScript", "6 * 7", client.Parameters()))
    model.CloseUserSession()
print(*{line.split(maxsplit=5)[5].strip() for line in open("/proc/self/maps") if "libqvscriptwells" in line})
"""
    assert run(python, "-c", code, cwd=tmp_path) == f"42\n{installed}/installed/lib/libqvscriptwells.so.1\n"


def test_what_the_wheel_holds(installed, python):
    assert python.parents[1] in installed.parents
    for name in ("py.typed", "_core.pyi", "installed/bin/scriptwells", "installed/lib/libqvscriptwells.so.1"):
        assert (installed / name).is_file(), name
    assert list(installed.glob("installed/libexec/quorvane/scriptwells-script-worker"))


def test_modules_export_their_entry_point_alone(installed):
    assert sorted(module.name.split(".")[0] for module in installed.glob("*.so")) == ["_core", "_dispatch"]
    for module in installed.glob("*.so"):
        symbols = run("nm", "-D", "--defined-only", module).split()
        assert [symbol for symbol in symbols if symbol.startswith(("_Z", "PyInit_"))] == [
            f"PyInit_{module.name.split('.')[0]}"
        ]


def test_the_plugin_is_registered(python, tmp_path):
    (tmp_path / "test_mine.py").write_text("def test_mine(scriptwells_service):\n    assert scriptwells_service.url\n")
    assert "1 passed" in run(python, "-m", "pytest", "-q", "-p", "no:cacheprovider", tmp_path, cwd=tmp_path)


def test_an_editable_installation(python, tmp_path):
    """The package is then that of the sources, with what was built beside the Python files."""
    package = PACKAGE / "scriptwells"
    if (package / "installed").exists():
        pytest.skip("these sources are installed so already")
    try:
        run(sys.executable, "-m", "venv", "--system-site-packages", tmp_path / "editable")
        run(tmp_path / "editable/bin/pip", "install", "--no-index", "--editable", PACKAGE)
        code = """
import scriptwells
with scriptwells.serve() as service, service.connect() as session:
    print(session.run("6 * 7"), scriptwells.Dispatch("QvScriptwells.QvScriptwells").Url().Url == "")
print(scriptwells.__file__)
"""
        shown = run(tmp_path / "editable/bin/python", "-c", code, cwd=tmp_path)
        assert shown == f"42 True\n{package / '__init__.py'}\n"
    finally:
        shutil.rmtree(package / "installed", ignore_errors=True)
        for module in package.glob("*.so"):
            module.unlink()


def test_the_wheel_is_complete(python, tmp_path):
    shown = run(python, "-m", "pip", "show", "-f", "scriptwells", cwd=tmp_path)
    header = (PACKAGE.parent / "include/scriptwells/version.h").read_text()
    version = header.split('SCRIPTWELLS_VERSION "')[1].split('"')[0]
    assert f"\nVersion: {version}\n" in shown
    assert run(python, "-c", "import scriptwells; print(scriptwells.__version__)", cwd=tmp_path) == f"{version}\n"
    assert "scriptwells/_core.pyi" in shown
