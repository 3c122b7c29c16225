"""Late binding: names, arguments, values, errors, threads, references."""

import datetime
import decimal
import gc
import math
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import threading

import late_host as late
import pytest

import scriptwells
from scriptwells import DispatchError, _core, _dispatch

NAME = "QvScriptwells.QvScriptwells"


@pytest.fixture
def client(late_host):
    return late_host.client


@pytest.fixture
def echo(late_host):
    return scriptwells.Dispatch("Echo.Class")


def hresult(bits):
    return bits - (1 << 32)


# Names and arguments


def test_names_are_found_in_any_case(client):
    assert client.servername == client.SERVERNAME == client.get_servername()
    assert client.parameters().SIZE() == 0


@pytest.mark.parametrize("name", ["Nothing", "Connection Model", "", "ServerName\0", "Größe", "_private", "\ud800"])
def test_unknown_names(client, name):
    with pytest.raises(AttributeError):
        getattr(client, name)
    with pytest.raises(AttributeError):
        setattr(client, name, 1)
    assert not hasattr(client, name)


def test_a_close_name_is_named(client):
    with pytest.raises(AttributeError, match="no member 'ServrName'; did you mean ServerName?"):
        client.ServrName


def test_the_name_of_an_argument_is_no_member(client):
    with pytest.raises(DispatchError, match=r"pVal: there is no such member.*\(0x80020003\)") as caught:
        client.pVal()
    assert caught.value.hresult == hresult(0x80020003)


@pytest.mark.parametrize("arguments", [(), ("a",), ("a", 1, 2), ("a", 1, 2, 3)])
def test_wrong_counts_of_arguments(client, arguments):
    with pytest.raises(DispatchError, match=r"^Add: it takes another number of arguments \(0x8002000E\)$"):
        client.Parameters().Add(*arguments)


def test_named_arguments(client):
    parameter = client.Parameters().Add("a", 1)
    parameter.SetValues(key="b", value=2)
    assert (parameter.ParamKey, parameter.ParamValue) == ("b", 2)
    parameter.SetValues(VALUE=3, Key="c")
    assert (parameter.ParamKey, parameter.ParamValue) == ("c", 3)
    parameter.SetValues("d", value="4")
    assert (parameter.ParamKey, parameter.ParamValue) == ("d", "4")
    with pytest.raises(TypeError, match="SetValues: there is no argument 'nothing'"):
        parameter.SetValues(key="b", nothing=2)


def test_named_arguments_where_there_are_none(late_host, client):
    with pytest.raises(TypeError, match="Add: there is no argument 'key'"):
        client.Parameters().Add(key="a", value=1)
    with pytest.raises(DispatchError, match=r"Execute: it takes no named arguments \(0x80020007\)"):
        late_host.model.Execute("JavaScript", "1", execute=client.Parameters())


def test_objects_of_the_wrong_kind(late_host, client):
    for wrong in (5, "text", None, client, client.Url()):
        with pytest.raises(DispatchError, match="Execute, argument 3: the value has another type") as caught:
            late_host.model.Execute("JavaScript", "1", wrong)
        assert caught.value.argument == 3
    with pytest.raises(DispatchError) as caught:
        client.Parameters().Add(None, 1)
    assert caught.value.argument == 1


def test_a_default_property(echo, client):
    assert echo() == "the default"
    with pytest.raises(DispatchError, match="the default property: there is no such member"):
        client()


def test_what_is_called_without_being_one(client):
    with pytest.raises(TypeError):
        client.ServerName()
    with pytest.raises(AttributeError):
        del client.ServerName


# Values

POINTS = [
    datetime.date(2024, 3, 5),
    datetime.date(1, 1, 1),
    datetime.date(9999, 12, 31),
    datetime.time(10, 15, 30, 123000),
    datetime.time(0, 0),
    datetime.datetime(2024, 3, 5, 10, 15, 30, 999000),
    datetime.datetime(1899, 12, 29, 6, 0),
    datetime.datetime(1, 1, 1, 0, 0, 1),
    datetime.datetime(9999, 12, 31, 23, 59, 59),
]


@pytest.mark.parametrize(
    ("value", "tag"),
    [
        (None, 1),
        (True, 11),
        (False, 11),
        (0, 22),
        (2**31 - 1, 22),
        (-(2**31), 22),
        (2**31, 20),
        (-(2**63), 20),
        (2**63, 21),
        (2**64 - 1, 21),
        (1.5, 5),
        (math.inf, 5),
        ("", 8),
        ("Grüße \U0001f600 \0 null", 8),
        ("half \ud83d alone", 8),
        ("\ude00", 8),
        (decimal.Decimal("1.50"), 14),
        (decimal.Decimal("-79228162514264337593543950335"), 14),
        (decimal.Decimal("7.9228162514264337593543950335"), 14),
        (decimal.Decimal("-0.0000000000000000000000000001"), 14),
        *((point, 7) for point in POINTS),
    ],
)
def test_values_both_ways(echo, value, tag):
    assert echo.Tag(value) == tag
    same = echo.Same(value)
    assert same == value
    assert type(same) is type(value)
    assert str(same) == str(value)


@pytest.mark.parametrize(
    ("value", "same", "tag"),
    [
        (scriptwells.byte(-5), -5, 16),
        (scriptwells.short(5), 5, 2),
        (scriptwells.int_(5), 5, 22),
        (scriptwells.long(5), 5, 20),
        (scriptwells.float_(0.5), 0.5, 4),
        (scriptwells.double(0.5), 0.5, 5),
        (decimal.Decimal("1E+3"), decimal.Decimal(1000), 14),
        (datetime.datetime(2024, 3, 5), datetime.date(2024, 3, 5), 7),
        (datetime.time(1, 2, 3, 4567), datetime.time(1, 2, 3, 4000), 7),
        (datetime.date(1899, 12, 30), datetime.time(0, 0), 7),
    ],
)
def test_values_that_come_back_as_others(echo, value, same, tag):
    assert echo.Tag(value) == tag
    assert echo.Same(value) == same
    assert type(echo.Same(value)) is type(same)


@pytest.mark.parametrize(
    ("tag", "bits", "value"),
    [
        (0, 0, None),
        (1, 0, None),
        (2, -1, -1),
        (3, -5, -5),
        (6, -15000, decimal.Decimal("-1.5")),
        (6, 1, decimal.Decimal("0.0001")),
        (11, 1, True),
        (13, 0, None),
        (9, 0, None),
        (8, 0, ""),
        (16, -1, -1),
        (17, 255, 255),
        (18, 65535, 65535),
        (19, 2**32 - 1, 2**32 - 1),
        (20, 2**40, 2**40),
        (21, 2**63 - 1, 2**63 - 1),
        (23, 2**32 - 1, 2**32 - 1),
    ],
)
def test_values_of_every_tag(echo, tag, bits, value):
    assert echo.Raw(tag, bits) == value


@pytest.mark.parametrize("tag", [12, 25, 0x4003])
def test_tags_that_python_has_no_value_for(echo, tag):
    with pytest.raises(scriptwells.ConversionError, match=f"no value for the tag {tag}$"):
        echo.Raw(tag, 0)


@pytest.mark.parametrize("serial", [1e9, -1e9, math.nan, math.inf])
def test_dates_out_of_range(echo, serial):
    with pytest.raises(scriptwells.ConversionError, match="outside the years 1 to 9999"):
        echo.Raw(7, struct.unpack("<q", struct.pack("<d", serial))[0])


@pytest.mark.parametrize(
    ("value", "error", "words"),
    [
        (2**64, OverflowError, "beyond 64 bits"),
        (-(2**63) - 1, OverflowError, "beyond 64 bits"),
        (decimal.Decimal(2**96), OverflowError, "96 bits"),
        (decimal.Decimal("1E-29"), OverflowError, "28 decimal places"),
        (decimal.Decimal("1E+29"), OverflowError, "96 bits"),
        (decimal.Decimal("NaN"), scriptwells.ConversionError, "NaN is no number"),
        (decimal.Decimal("-Infinity"), scriptwells.ConversionError, "no number"),
        (b"bytes", TypeError, "a bytes cannot be passed"),
        ([1], TypeError, "a list cannot be passed"),
        (pathlib.Path("a"), TypeError, r"AttachedFile\(\)"),
        (datetime.timedelta(1), TypeError, r"Duration\(\)"),
        (datetime.datetime.now(datetime.timezone.utc), scriptwells.ConversionError, "time zone"),
        (datetime.time(tzinfo=datetime.timezone.utc), scriptwells.ConversionError, "time zone"),
    ],
)
def test_values_that_cannot_be_passed(echo, value, error, words):
    with pytest.raises(error, match=words):
        echo.Same(value)


def test_whole_numbers_of_other_types(echo):
    class Number:
        def __index__(self):
            return 7

    assert echo.Same(Number()) == 7


@pytest.mark.parametrize(
    ("code", "value"),
    [
        ("true", True),
        ("typed.short(5)", 5),
        ("6 * 7", 42),
        ("1.5", 1.5),
        ("typed.float(0.5)", 0.5),
        ("'Grüße \U0001f600'", "Grüße \U0001f600"),
        ("typed.long(5)", None),
        ("typed.byte(5)", 0),
        ("typed.date('2024-03-05')", datetime.date(2024, 3, 5)),
        ("typed.time('10:15:30')", datetime.time(10, 15, 30)),
        ("typed.datetime('2024-03-05T10:15:30')", datetime.datetime(2024, 3, 5, 10, 15, 30)),
    ],
)
def test_answers(late_host, code, value):
    answer = late_host.run(code)
    assert answer == value
    assert type(answer) is type(value)


@pytest.mark.parametrize(
    "value", [True, 5, 2**40, "text", 1.5, datetime.date(2024, 3, 5), datetime.time(10, 15), scriptwells.byte(5)]
)
def test_parameters_on_the_wire(late_host, client, value):
    with scriptwells.connect(late_host.url, "joe") as session:
        expected = session.run("String(parameters.a)", a=value)
    assert late_host.run("String(parameters.a)", a=value) == expected


def test_a_table_is_a_table(late_host):
    code = "[{city: 'Rome', people: 2748109, since: typed.duration('P1Y')}, {city: 'Oslo', people: 5, since: null}]"
    code = code.replace(", since: null", ", since: typed.duration('PT5M')")
    table = late_host.run(code)
    with scriptwells.connect(late_host.url, "joe") as session:
        assert table == session.run(code)
    assert type(table) is scriptwells.Table
    assert [row.city for row in table] == ["Rome", "Oslo"]
    assert table.column("since")[1] == scriptwells.Duration(minutes=5)
    in_thread = []
    thread = threading.Thread(target=lambda: in_thread.append(table.to_dicts()))
    thread.start()
    thread.join()
    assert in_thread == [table.to_dicts()]


def test_only_record_lists_become_tables():
    with pytest.raises(TypeError):
        _core.cells_of(object())
    with pytest.raises(TypeError, match="this is no record list"):
        _core.cells_of(datetime.datetime_CAPI)


# Errors


def test_faults_of_the_server(late_host):
    with pytest.raises(DispatchError) as caught:
        late_host.run("throw new Error('my fault')")
    error = caught.value
    assert "my fault" in error.description
    assert str(error) == error.description
    assert error.source is None  # the model is of no class that has a name
    assert error.hresult & 0xFFFF0000 == 0x80040000
    assert isinstance(error, scriptwells.Error)
    assert error.argument is None


def test_fixed_texts(client):
    with pytest.raises(DispatchError) as caught:
        client.Parameters().Find(0)
    assert (str(caught.value), caught.value.hresult) == ("The are no parameters.", hresult(0x80020009))


def test_the_source_of_an_error(late_host):
    """In a process of its own: a model that fails to be made takes the types of values with it."""
    code = """
import scriptwells
try:
    scriptwells.Dispatch("QvScriptwells.QvScriptwells").ConnectionModel()
except scriptwells.DispatchError as error:
    print(error.source, hex(error.hresult + (1 << 32)), str(error) == error.description, error, sep="|")
"""
    shown = late.run_python(code, os.environ["QV_REGISTRY"])
    assert shown == f"{NAME}|0x80020009|True|Cannot parse url, expecting 'http://' after protocol name.\n"


def test_records(echo):
    with pytest.raises(DispatchError) as caught:
        echo.Fail()
    assert (caught.value.source, str(caught.value)) == ("Echo.Class", "it is äußerst \U0001f600 bad")
    with pytest.raises(DispatchError, match="^filled in later$") as caught:
        echo.Late()
    assert (caught.value.hresult, caught.value.source) == (hresult(0x80004005), None)


def test_classes_that_are_not_there(client, tmp_path, monkeypatch):
    with pytest.raises(DispatchError, match="No.Such.Class") as caught:
        scriptwells.Dispatch("No.Such.Class")
    assert caught.value.hresult == hresult(0x800401F3)
    with pytest.raises(DispatchError, match="QV_REGISTRY") as caught:
        scriptwells.Dispatch("{00000000-0000-0000-0000-000000000001}")
    assert caught.value.hresult == hresult(0x80040154)
    with pytest.raises(DispatchError):
        scriptwells.Dispatch("{no id}")
    with pytest.raises(DispatchError):
        scriptwells.Dispatch("")
    with pytest.raises(TypeError, match="must be a str, not int"):
        scriptwells.Dispatch(5)
    registry = late.write_registry(tmp_path / "other.reg", library=tmp_path / "missing.so")
    monkeypatch.setenv("QV_REGISTRY", str(registry))
    with pytest.raises(DispatchError, match="missing.so") as caught:
        scriptwells.Dispatch(NAME)
    assert caught.value.hresult == hresult(0x800401F8)


def test_a_class_by_its_id(client):
    assert scriptwells.Dispatch(late.CLASS_ID).Parameters().Size() == 0
    assert scriptwells.Dispatch(late.CLASS_ID.lower()).Proxy == ""


# Objects and threads


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
    assert error.hresult == hresult(0x8001010E)
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
import gc, pathlib, threading, scriptwells
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


# The module and the library


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
