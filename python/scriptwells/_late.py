"""Late binding: objects of the class library, called by name."""

from __future__ import annotations

import contextlib
import difflib
from typing import Any

from . import _class_library, _core, _dispatch
from ._errors import DispatchError
from ._table import Table

# Flags of calls.
_METHOD = 1
_READ = 2
_WRITE = 4
_NEW_VALUE = (-3,)  # the name of the only argument of a write
_DEFAULT = (0, 0)  # where the default property of an object is

# An object cannot list its names, only answer whether it knows one: these are asked for.
_NAMES = """
    Add AttachedFile CleanUp Clear CloseUserSession ConnectionModel ConnectionString CreateUserSession DatabaseID
    DatabaseName Day DownloadFile Duration Execute ExecuteFile FileId Filename Find Hour Init Initialize IsTicketId Min
    Month Negative ParamKey ParamTypeAsString ParamValue Parameters Proxy Remove ReplicaID Sec ServerName SetUSID
    SetValues Size SourceFileLifeTime TicketId ToString Url UrlCaption UserName UserPassword Year
""".split()


class DispatchObject:
    """An object of the class library: attributes are its properties and methods.

        client.ServerName = "http://127.0.0.1:8080"
        model = client.ConnectionModel()

    Names are found in any case. A property is what the object also knows with "get_" before the name; such a name
    itself is a method: `client.get_ServerName()`. All else is a method. Calling the object reads its default property.
    An object belongs to the thread that made it; on another thread its use is a DispatchError.
    """

    __slots__ = ("_object",)
    _object: _dispatch.Object

    def __init__(self, object: _dispatch.Object) -> None:
        """Use Dispatch() instead."""
        _set_attribute(self, "_object", object)

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        place = self._object.find("get_" + name)
        if place:
            return _shown(self._object.invoke(name, place, _READ, (), ()))
        place = self._object.find(name)
        if not place:
            raise _no_member(self, name)
        return Member(self._object, name, place)

    def __setattr__(self, name: str, value: Any) -> None:
        place = self._object.find("put_" + name) or self._object.find(name)
        if not place:
            raise _no_member(self, name)
        self._object.invoke(name, place, _WRITE, (_given(value),), _NEW_VALUE)

    def __call__(self, *arguments: Any) -> Any:
        given = tuple(_given(argument) for argument in arguments)
        return _shown(self._object.invoke("the default property", _DEFAULT, _METHOD | _READ, given, ()))

    def __eq__(self, other: object) -> bool:
        return isinstance(other, DispatchObject) and self._object == other._object

    def __hash__(self) -> int:
        return hash(self._object)

    def __dir__(self) -> list[str]:
        return [*object.__dir__(self), *_members(self)]

    def __repr__(self) -> str:
        with contextlib.suppress(DispatchError):
            return f"<DispatchObject with {', '.join(_members(self))}>"
        return "<DispatchObject of another thread>"


class Member:
    """A method of a DispatchObject. It takes what the object's class says; docs/members.md lists the members.

    Only parameters (`IParameter`) take named arguments.
    """

    __slots__ = ("_name", "_object", "_place")

    def __init__(self, object: _dispatch.Object, name: str, place: tuple[int, int]) -> None:
        """Use the name of a DispatchObject's attribute instead."""
        self._object = object
        self._name = name
        self._place = place

    def __call__(self, *arguments: Any, **named: Any) -> Any:
        given = tuple(_given(argument) for argument in (*arguments, *named.values()))
        flags = _METHOD | _READ
        names = [self._argument(name) for name in named]
        if self._name.lower().startswith("put_"):
            flags = _WRITE
            names = names or list(_NEW_VALUE[: len(given)])
        return _shown(self._object.invoke(self._name, self._place, flags, given, names))

    def _argument(self, name: str) -> int:
        found = self._object.find_in(self._place[0], name)
        if found is None:
            raise TypeError(f"{self._name}: there is no argument {name!r}")
        return found

    def __repr__(self) -> str:
        return f"<Member {self._name}>"


_set_attribute = object.__setattr__


def Dispatch(name: str) -> DispatchObject:
    """A new object of the class that the registry has under that name.

        client = scriptwells.Dispatch("QvScriptwells.QvScriptwells")
        client.Init(scriptwells.HostServices("joe"))
        client.ServerName = "http://127.0.0.1:8080"
        model = client.ConnectionModel()
        model.CreateUserSession("Username=joe;Password=secret;")
        parameters = client.Parameters()
        parameters.Add("a", 2)
        model.Execute("JavaScript", "parameters.a + 40", parameters)
        model.CloseUserSession()

    Make one client in a process, and keep it until its end: with the end of any client all the others lose the types
    of parameters. The name may be a class id, such as "{01932093-F909-400B-B02E-7AEDABA33A36}".
    """
    if not isinstance(name, str):
        raise TypeError(f"the name of a class must be a str, not {type(name).__name__}")
    with _class_library.registry_for(name) as registry:
        return DispatchObject(_dispatch.create(name, registry) if registry else _dispatch.create(name))


def _members(target: DispatchObject) -> list[str]:
    return [name for name in _NAMES if _is_member(target._object, name)]


def _is_member(target: _dispatch.Object, name: str) -> bool:
    """The same question finds arguments, whose id is their position; those of members begin at 1."""
    found = target.find("get_" + name) or target.find(name)
    return found is not None and found[1] > 0


def _no_member(target: DispatchObject, name: str) -> AttributeError:
    near = difflib.get_close_matches(name, _members(target), 1)
    hint = f"; did you mean {near[0]}?" if near else ""
    return AttributeError(f"the object has no member {name!r}{hint}", name=name)


def _given(value: Any) -> Any:
    return value._object if isinstance(value, DispatchObject) else value


def _shown(value: Any) -> Any:
    """A result as callers see it: objects by name, but record lists as tables."""
    if not isinstance(value, _dispatch.Object):
        return value
    record_list = value.record_list()
    return DispatchObject(value) if record_list is None else Table(_core.cells_of(record_list))
