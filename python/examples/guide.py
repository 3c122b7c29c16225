"""What the documents show: calls with and without a server, their options, and a test.

    guide.py http://127.0.0.1:8080
"""

import pathlib

import pytest

import scriptwells


def call_without_a_server() -> None:
    with scriptwells.serve() as service, service.connect() as session:  # or scriptwells.connect("http://...", "joe", "secret")
        session.run("parameters.a + parameters.b", a=2, b=40)  # 42
        for row in session.run("[{city: 'Rome', people: 2748109}]"):
            print(row.city, row["people"])

    with scriptwells.serve() as service, service.connect() as session:
        session.run("6 * 7")


def call_a_server() -> None:
    with scriptwells.connect("http://127.0.0.1:8080", user="joe", password="secret") as session:
        session.run("parameters.a + parameters.b", a=2, b=40)  # 42
        table = session.run("[{city: 'Rome', people: 2748109}]")
        table.to_pandas()
        for row in table:
            print(row.city, row["people"])
        session.run("parameters.doc.size", doc=pathlib.Path("report.pdf"))


def set_options(session: scriptwells.Session, code: str) -> None:
    session.with_options(language="JavaScript", strict=True, timeout=5, progress=True).run(code)


def call_by_name() -> None:
    client = scriptwells.Dispatch("QvScriptwells.QvScriptwells")
    client.Init(scriptwells.HostServices("joe"))
    client.ServerName = "http://127.0.0.1:8080"
    model = client.ConnectionModel()
    model.CreateUserSession("Username=joe;Password=secret;")
    parameters = client.Parameters()
    parameters.Add("a", 2)
    model.Execute("JavaScript", "parameters.a + 40", parameters)  # 42
    model.CloseUserSession()


def test_report(scriptwells_service: scriptwells.Service) -> None:
    with scriptwells_service.connect() as session:
        scriptwells_service.order_fault("silence", 3000)
        with pytest.raises(scriptwells.TimeoutError):
            session.with_options(timeout=1).run("6 * 7")


if __name__ == "__main__":
    call_without_a_server()
    call_a_server()
    with scriptwells.serve() as service, service.connect() as session:
        set_options(session, "6 * 7")
        test_report(service)
    call_by_name()
