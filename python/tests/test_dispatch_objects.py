"""Late binding: identity, threads, references, and the library that is loaded."""

import gc
import os
import pathlib
import shutil
import subprocess
import sys
import threading

import late_host as late
import pytest

import scriptwells
from scriptwells import DispatchError, _dispatch

NAME = "QvScriptwells.QvScriptwells"


def test_identity(client, echo):
    assert echo.Same(client) == client
    assert echo.Same(client) is not client
    assert hash(echo.Same(client)) == hash(client)
    assert client != echo
    assert client != 5
    assert len({client, echo.Same(client), echo}) == 2


def test_how_an_object_shows(client, echo):
    assert repr(client.Url()) == "<DispatchObject with ToString, Url, UrlCaption>"
    assert repr(client.Url) == "<Member Url>"
    assert "<DispatchObject with >" == repr(echo)


def in_thread(function):
    caught = []

    def run():
        try:
            function()
        except Exception as error:
            caught.append(error)

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    return caught


@pytest.mark.parametrize(
    "use",
    [
        lambda client, services: client.ServerName,
        lambda client, services: client.Url(),
        lambda client, services: setattr(client, "Proxy", "a"),
        lambda client, services: client(),
        lambda client, services: scriptwells.Dispatch("Echo.Class").Same(client),
        lambda client, services: scriptwells.Dispatch("Echo.Class").Same(services),
        lambda client, services: services.session_id,
    ],
)
def test_other_threads_cannot_use_an_object(late_host, use):
    (error,) = in_thread(lambda: use(late_host.client, late_host.services))
    assert isinstance(error, DispatchError)
    assert "the object belongs to another thread" in str(error)
    assert error.hresult == 0x8001010E - (1 << 32)
    assert not in_thread(lambda: repr(late_host.client))
    assert late_host.client.ServerName == late_host.url


def test_a_thread_has_objects_of_its_own(client):
    names = []

    def work():
        own = scriptwells.Dispatch(NAME)
        own.ServerName = "http://thread"
        names.append(own.ServerName)

    assert not in_thread(work)
    assert names == ["http://thread"]
    assert client.ServerName != "http://thread"


def test_other_threads_run_during_a_call(late_host):
    ticks = []
    done = threading.Event()

    def tick():
        while not done.wait(0.01):
            ticks.append(1)

    thread = threading.Thread(target=tick)
    thread.start()
    try:
        late_host.run("const end = Date.now() + 500; while (Date.now() < end) ; 1")
    finally:
        done.set()
        thread.join()
    assert len(ticks) > 10


LOADED = """
import gc, pathlib, threading, time, scriptwells
from scriptwells import _dispatch
def is_loaded():
    _dispatch.free_unused_libraries()
    return "libqvscriptwells" in pathlib.Path("/proc/self/maps").read_text()
before = is_loaded()
"""


def test_the_library_is_loaded_and_unloaded(late_host):
    """It stays for as long as one object has a reference."""
    code = """
client = scriptwells.Dispatch("QvScriptwells.QvScriptwells")
kept = [is_loaded()]
parameters = client.Parameters()
parameters.Add("a", client.Url())
del client
kept.append(is_loaded())
for _ in range(1000):
    parameters.Add("b", parameters.Find(0).ParamValue)
    parameters.Find(0) == parameters.Find(0)
    dir(parameters)
    try:
        parameters.Find(-1)
    except scriptwells.DispatchError:
        pass
kept.append(is_loaded())
del parameters, _
gc.collect()
print(before, *kept, is_loaded())
"""
    assert late.run_python(LOADED + code, os.environ["QV_REGISTRY"]) == "False True True True False\n"


def test_references_that_another_thread_drops(late_host):
    code = """
held = [scriptwells.Dispatch("QvScriptwells.QvScriptwells"), scriptwells.HostServices()]
other = held[0].Url()
thread = threading.Thread(target=held.clear)
thread.start()
thread.join()
print(before, is_loaded(), end=" ")
del other
print(is_loaded(), end=" ")
again = scriptwells.Dispatch("QvScriptwells.QvScriptwells")
again.Proxy
del again
print(is_loaded())
"""
    # The reference of the other thread waits for a use of an object here.
    assert late.run_python(LOADED + code, os.environ["QV_REGISTRY"]) == "False True True False\n"


def test_references_that_outlive_their_thread(late_host):
    code = """
held = []
thread = threading.Thread(target=lambda: held.append(scriptwells.Dispatch("QvScriptwells.QvScriptwells")))
thread.start()
thread.join()
print(before, is_loaded(), end=" ")
held.clear()
for _ in range(100):  # what Python calls the end of a thread comes before that of the system's thread
    if is_loaded():
        time.sleep(0.05)
print(is_loaded())
"""
    assert late.run_python(LOADED + code, os.environ["QV_REGISTRY"]) == "False True False\n"


def test_python_references_return(client):
    text = "a text that is passed"
    watched = [client, text, None]
    for _ in range(100):
        client.Parameters().Add(text, text)
    gc.collect()
    before = [sys.getrefcount(each) for each in watched]
    for _ in range(2000):
        client.Parameters().Add(text, text)
        with pytest.raises(DispatchError):
            client.Parameters().Add(None, text)
    gc.collect()
    for count, each in zip(before, watched):
        assert abs(sys.getrefcount(each) - count) < 20, each


def test_the_process_has_the_library_of_the_registry(client):
    assert os.path.realpath(late.CLASS_LIBRARY) in late.maps()


def test_the_module_links_the_platform_layer_alone():
    needed = subprocess.check_output(["readelf", "-d", _dispatch.__file__], text=True)
    for library in ("scriptwells", "xerces", "curl", "icu"):
        assert library not in "".join(line for line in needed.splitlines() if "NEEDED" in line).lower()
    symbols = subprocess.check_output(["nm", "-C", _dispatch.__file__], text=True)
    assert "qv::CoCreateInstance" in symbols
    for name in ("qv::QvScriptwells", "qv::ConnectionModelImpl", "xercesc", "curl_"):
        assert name not in symbols


def test_a_package_names_its_own_library(tmp_path, monkeypatch):
    """A copy of the package that holds the library, as a wheel does."""
    package = tmp_path / "scriptwells"
    shutil.copytree(pathlib.Path(scriptwells.__file__).parent, package)
    library = package / "installed" / "lib" / "libqvscriptwells.so.1"
    library.parent.mkdir(parents=True)
    shutil.copy(late.CLASS_LIBRARY, library)
    code = """
import os, pathlib, sys, scriptwells
client = scriptwells.Dispatch(sys.argv[1] if len(sys.argv) > 1 else "qvscriptwells.qvscriptwells.1.0")
mapped = {line.split(maxsplit=5)[5] for line in open("/proc/self/maps") if "libqvscriptwells" in line}
print(*mapped, os.environ.get("QV_REGISTRY") or "no", scriptwells.Dispatch("QvScriptwells.QvScriptwells").Url().Url == "")
"""
    path = {"PYTHONPATH": str(tmp_path), "XDG_CONFIG_HOME": str(tmp_path)}
    assert late.run_python(code, "", **path).replace("\n", "") == f"{library} no True"
    # The user's file stays, whether it has the class or not; and counts if it has it.
    without = tmp_path / "without.reg"
    without.write_text("")
    assert late.run_python(code, without, **path).replace("\n", "") == f"{library} {without} True"
    named = late.write_registry(tmp_path / "named.reg")
    named.write_text(named.read_text() + late.class_keys(NAME + ".1.0", late.CLASS_ID, late.CLASS_LIBRARY))
    shown = late.run_python(code, named, **path).replace("\n", "")
    assert shown == f"{os.path.realpath(late.CLASS_LIBRARY)} {named} True"
