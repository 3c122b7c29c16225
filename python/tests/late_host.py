"""A host that calls by name: its registry files, its client, and the list of members."""

import json
import os
import pathlib
import subprocess
import sys

import scriptwells

CLASS_ID = "{01932093-F909-400b-B02E-7AEDABA33A36}"
ECHO_ID = "{3B2F7C11-9C1E-4A7D-8A55-0E6C5F1D2A90}"
CLASS_LIBRARY = os.environ.get("SCRIPTWELLS_CLASS_LIBRARY", "")
# The class library with tapes, by the variables SCRIPTWELLS_RECORD and SCRIPTWELLS_REPLAY.
TAPED_LIBRARY = os.environ.get("SCRIPTWELLS_TAPED_LIBRARY", "")
ECHO_LIBRARY = os.environ.get("SCRIPTWELLS_ECHO_LIBRARY", "")
CLASSES = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\"


def key(path, text):
    return f'[{path}]\n@="{text}"\n\n'


def class_keys(name, class_id, library):
    return (
        key(f"{CLASSES}{name}\\CLSID", class_id)
        + key(f"{CLASSES}CLSID\\{class_id}\\InprocServer32", library)
        + key(f"{CLASSES}CLSID\\{class_id}\\ProgID", name)
    )


def write_registry(path, home="", library=CLASS_LIBRARY):
    text = class_keys("QvScriptwells.QvScriptwells", CLASS_ID, library)
    text += class_keys("Echo.Class", ECHO_ID, ECHO_LIBRARY)
    if home:
        text += key("HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir", home)
    path.write_text(text)
    return path


def run_python(code, registry="", **variables):
    """What a program of its own writes."""
    environment = {**os.environ, "QV_REGISTRY": str(registry), **variables}
    done = subprocess.run([sys.executable, "-P", "-c", code], env=environment, capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout


def describe():
    """The interfaces that `scriptwells describe` lists."""
    program = os.environ.get("SCRIPTWELLS_PROGRAM", "scriptwells")
    return json.loads(subprocess.check_output([program, "describe", "--json"]))["interfaces"]


class Host:
    """One client with an open session."""

    def __init__(self, service):
        self.url = service.url
        self.services = scriptwells.HostServices("joe", database_id="db", replica_id="replica")
        self._others = []
        self.client = self.new_client()
        self.client.Init(self.services)
        self.client.ServerName = service.url
        self.model = self.client.ConnectionModel()
        self.open()

    def new_client(self):
        """It stays to the end: with any client that had Init the others would lose the types of values."""
        self._others.append(scriptwells.Dispatch("QvScriptwells.QvScriptwells"))
        return self._others[-1]

    def open(self):
        self.model.CreateUserSession("Username=joe;Password=secret;")

    def run(self, code, **values):
        parameters = self.client.Parameters()
        for name, value in values.items():
            parameters.Add(name, value)
        return self.model.Execute("JavaScript", code, parameters)


def maps():
    return pathlib.Path("/proc/self/maps").read_text()
