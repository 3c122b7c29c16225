"""Nothing is left of calls: references return, and memory stays the same."""

import gc
import os
import pathlib
import sys
import tracemalloc

import pytest

import scriptwells


def resident():
    pages = int(pathlib.Path("/proc/self/statm").read_text().split()[1])
    return pages * os.sysconf("SC_PAGE_SIZE")


def succeed(session, text, count, names):
    session.run("parameters.text", names, text=text, count=count)


def fail(session, text, count, names):
    try:
        session.run("throw parameters.text", names, text=text, count=count)
    except scriptwells.ScriptError:
        pass


def refuse(session, text, count, names):
    try:
        session.run("1", names, text=text, count=count, bad=[])
    except TypeError:
        pass


def read_a_table(session, text, count, names):
    table = session.run("[{a: 1, b: 'x'}, {a: 2, b: 'y'}]", names, text=text, count=count)
    [(row.a, row["b"]) for row in table]
    table.to_dicts()
    table._cells.column_data(0)


def report(session, text, count, names):
    session.with_options(progress=lambda progress: None).run("1", names, text=text, count=count)


# Together 10,000 calls.
@pytest.mark.parametrize(
    ("call", "calls"), [(succeed, 3000), (fail, 2000), (refuse, 3000), (read_a_table, 1000), (report, 1000)]
)
def test_calls(session, call, calls):
    text = "some text that is sent"
    count = 123456789
    names = {"a name": "and its value"}
    for _ in range(300):  # caches are full
        call(session, text, count, names)
    gc.collect()
    watched = [session, session._core, session._call, text, count, names, None, True, scriptwells.Duration]
    references = [sys.getrefcount(each) for each in watched]
    tracemalloc.start()
    traced = tracemalloc.get_traced_memory()[0]
    used = resident()
    for _ in range(calls):
        call(session, text, count, names)
    gc.collect()
    grown = tracemalloc.get_traced_memory()[0] - traced
    tracemalloc.stop()
    for before, each in zip(references, watched):
        assert abs(sys.getrefcount(each) - before) < 20, each
    assert grown < 20_000  # a byte or two for each call
    assert resident() - used < 2_000_000


def test_sessions_and_services():
    with scriptwells.serve() as service:
        for _ in range(50):
            service.connect().close()
        used = resident()
        for _ in range(500):
            service.connect(listener=lambda exchange: None).close()
        assert resident() - used < 2_000_000


def test_circles_through_functions_are_collected(scriptwells_service):
    class Report:
        def __init__(self):
            self.session = scriptwells_service.connect(listener=self.tell).with_options(progress=self.tell)

        def tell(self, event):
            pass

    report = Report()
    report.session.run("1")
    del report
    gc.collect()
    assert scriptwells_service.counts()["CloseUserSession"] == 1
