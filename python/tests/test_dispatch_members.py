"""Every member of every object by its name, through the library that the registry names."""

import pathlib

import pytest
from late_host import describe

import scriptwells
from scriptwells import _dispatch

DOCUMENT = pathlib.Path(__file__).parents[2] / "examples" / "document.xml"
FLAGS = {"method": 1, "read": 2, "write": 4}
INTERFACES = {interface["name"]: interface for interface in describe()}
MEMBERS = [
    pytest.param(interface["name"], member, id=f"{interface['name']}.{member['name']}")
    for interface in INTERFACES.values()
    for member in interface["members"]
]
DRIVERS = {}


def drives(interface, *members):
    """Marks the function that calls these members of the interface, each with success."""

    def register(function):
        DRIVERS.update({(interface, member): function for member in members})
        return function

    return register


@pytest.fixture
def calls(monkeypatch):
    """Flags and ids of the calls that succeed."""
    seen = []
    invoke = _dispatch.Object.invoke

    def record(self, member, place, flags, arguments, names):
        result = invoke(self, member, place, flags, arguments, names)
        seen.append((place[1], flags))
        return result

    monkeypatch.setattr(_dispatch.Object, "invoke", record)
    return seen


@pytest.mark.parametrize(("interface", "member"), MEMBERS)
def test_member(late_host, tmp_path, calls, interface, member):
    DRIVERS[interface, member["name"]](late_host, tmp_path)
    assert any(id == member["id"] and flags & FLAGS[member["kind"]] for id, flags in calls)


def test_each_driver_is_of_a_member():
    assert set(DRIVERS) == {(interface, member["name"]) for interface, member in (each.values for each in MEMBERS)}


def check_property(target, name, *values):
    """A property under each of its names."""
    for value in values:
        setattr(target, name, value)
        assert getattr(target, name) == getattr(target, f"get_{name}")() == value
        assert getattr(target, name.upper()) == value
    getattr(target, f"put_{name}")(values[0])
    assert getattr(target, name.lower()) == values[0]
    assert type(getattr(target, name)) is type(values[0])


@drives(
    "IQvScriptwells", "ConnectionModel", "Url", "Duration", "ConnectionString", "AttachedFile", "Parameters"
)
def objects_of_the_client(host, folder):
    client = host.client
    assert client.ConnectionModel() == host.model
    assert client.Url() != client.Url()
    assert client.Url().Url == ""
    assert client.Duration().Day == 0
    assert "DbReplicationId=replica;" in client.ConnectionString().ToString()
    assert client.AttachedFile().IsTicketId() is False
    assert client.Parameters().Size() == 0


@drives("IQvScriptwells", "get_ServerName", "put_ServerName", "get_Proxy", "put_Proxy")
def addresses(host, folder):
    other = host.new_client()
    check_property(other, "ServerName", "http://a:80", "http://b:81")
    check_property(other, "Proxy", "proxy:3128", "other")
    assert other.ServerName == "http://a:80"


@drives("IQvClientServiceRaw", "Init")
def services(host, folder):
    other = host.new_client()
    other.Init(scriptwells.HostServices("eve", replica_id="of eve"))
    assert "DbReplicationId=of eve;" in other.ConnectionString().ToString()


@drives("IConnectionModel", "CreateUserSession", "CloseUserSession")
def sessions(host, folder):
    host.model.CloseUserSession()
    assert host.services.session_id is None
    with pytest.raises(scriptwells.DispatchError, match="^Session does not exist.$"):
        host.run("1")
    host.open()
    assert len(host.services.session_id) == 32
    assert host.run("1") == 1


@drives("IConnectionModel", "SetUSID")
def session_ids(host, folder):
    usid = host.services.session_id
    host.model.SetUSID("0" * 32)
    with pytest.raises(scriptwells.DispatchError):
        host.run("1")
    host.model.SetUSID(usid)
    assert host.run("1") == 1


@drives("IConnectionModel", "Execute")
def scripts(host, folder):
    assert host.run("parameters.a + parameters.b", a=2, b=40) == 42


@drives("IConnectionModel", "ExecuteFile")
def documents(host, folder):
    parameters = host.client.Parameters()
    parameters.Add("a", 41)
    assert host.model.ExecuteFile(str(DOCUMENT), parameters) == "Grüße, Wörld! You sent: <a>"


@drives("IConnectionModel", "DownloadFile")
def downloads(host, folder):
    path = host.model.DownloadFile(host.run("publish('out.txt', 'text')"), str(folder))
    assert pathlib.Path(path.replace("\\", "/")).read_text() == "text"


@drives("IParameters", "Add", "Remove", "Find", "Size", "Clear")
def lists(host, folder):
    parameters = host.client.Parameters()
    first = parameters.Add("a", 1)
    parameters.Add("b", "two")
    assert parameters.Size() == 2
    assert parameters.Find(0) == first
    assert parameters.Find(1).ParamValue == "two"
    parameters.Remove(0)
    assert parameters.Find(0).ParamKey == "b"
    parameters.Clear()
    assert parameters.Size() == 0


@drives("IParameter", "SetValues", "get_ParamKey", "get_ParamValue", "get_ParamTypeAsString")
def parameters(host, folder):
    parameter = host.client.Parameters().Add("a", 1)
    assert (parameter.ParamKey, parameter.ParamValue, parameter.ParamTypeAsString) == ("a", 1, "int")
    parameter.SetValues("b", "two")
    assert (parameter.get_ParamKey(), parameter.get_ParamValue()) == ("b", "two")
    assert parameter.get_ParamTypeAsString() == "string"


NAMES_OF_LOGIN = ("UserName", "UserPassword", "DatabaseName", "ReplicaID", "DatabaseID")


@drives("IConnectionString", *(f"{way}_{name}" for way in ("get", "put") for name in NAMES_OF_LOGIN))
def logins(host, folder):
    login = host.client.ConnectionString()
    for name in NAMES_OF_LOGIN:
        check_property(login, name, f"a {name}", "b")


@drives("IConnectionString", "ToString")
def login_texts(host, folder):
    login = host.client.ConnectionString()
    login.UserName = "joe"
    login.UserPassword = "secret"
    login.ReplicaID = "r"
    assert login.ToString() == "DbReplicationId=r;Username=joe;Password=secret;"


@drives("IConnectionStringRaw", "Initialize")
def login_parsing(host, folder):
    login = host.client.ConnectionString()
    login.Initialize("Username=ann;Password=p;")
    assert (login.UserName, login.UserPassword) == ("ann", "p")


@drives("IAttachedFile", "Init", "IsTicketId")
def uploads(host, folder):
    (folder / "report.txt").write_text("pages")
    file = host.client.AttachedFile()
    file.Init(str(folder / "report.txt"))
    assert not file.IsTicketId()
    assert host.run("parameters.doc.size", doc=file) == 5


@drives(
    "IAttachedFile",
    *(f"{way}_{name}" for way in ("get", "put") for name in ("Filename", "FileId", "SourceFileLifeTime")),
    *(f"{way}_{name}" for way in ("get", "put") for name in ("CleanUp", "TicketId")),
)
def files(host, folder):
    file = host.client.AttachedFile()
    check_property(file, "Filename", "/a", "/b")
    check_property(file, "FileId", "one", "two")
    check_property(file, "SourceFileLifeTime", 5, -1)
    check_property(file, "CleanUp", 1, 0)
    check_property(file, "TicketId", "ticket", "other")
    assert file.Filename == "/a"


@drives(
    "IDuration",
    *(f"{way}_{name}" for way in ("get", "put") for name in ("Day", "Month", "Year", "Hour", "Min", "Sec")),
    *("get_Negative", "put_Negative"),
)
def durations(host, folder):
    duration = host.client.Duration()
    for number, name in enumerate(("Day", "Month", "Year", "Hour", "Min"), 1):
        check_property(duration, name, number, 7)
    check_property(duration, "Sec", 6.5, 0.25)
    check_property(duration, "Negative", True, False)
    assert host.run("String(parameters.span)", span=duration) == "-P3Y2M1DT4H5M6.5S"
    answer = host.run("typed.duration('P1Y2M3DT4H5M6.5S')")
    assert (answer.Year, answer.Month, answer.Day, answer.Hour, answer.Min, answer.Sec) == (1, 2, 3, 4, 5, 6.5)


@drives("IUrl", "get_UrlCaption", "put_UrlCaption", "get_Url", "put_Url", "ToString")
def links(host, folder):
    url = host.client.Url()
    check_property(url, "UrlCaption", "a caption", "b")
    check_property(url, "Url", "http://host:80/path", "http://other:81/path")
    assert url.ToString() == url.Url


@pytest.mark.parametrize("interface", INTERFACES)
def test_dir_lists_the_members(late_host, interface):
    client = late_host.client
    target = {
        "IQvScriptwells": lambda: client,
        "IQvClientServiceRaw": lambda: client,
        "IConnectionModel": lambda: late_host.model,
        "IParameter": lambda: client.Parameters().Add("a", 1),
        "IConnectionStringRaw": client.ConnectionString,
    }.get(interface, lambda: getattr(client, interface[1:])())()
    mates = {"IQvScriptwells": "IQvClientServiceRaw", "IConnectionString": "IConnectionStringRaw"}
    mates.update({second: first for first, second in mates.items()})
    members = INTERFACES[interface]["members"] + INTERFACES.get(mates.get(interface), {"members": []})["members"]
    listed = set(dir(target)) - set(dir(object)) - {"_object"}
    assert listed - set(dir(scriptwells.DispatchObject)) == {
        member["name"].removeprefix("get_").removeprefix("put_") for member in members
    }
