"""Late binding: names, arguments and errors."""

import os

import late_host as late
import pytest

import scriptwells
from scriptwells import DispatchError

NAME = "QvScriptwells.QvScriptwells"


def hresult(bits):
    return bits - (1 << 32)


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
    """In another process: a model that fails to be made removes the types of values."""
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
