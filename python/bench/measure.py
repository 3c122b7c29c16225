#!/usr/bin/python3
"""Measures the package beside a C++ program that makes the same calls, and beside zeep.

    measure.py FACE_CALLS [ROUNDS]      FACE_CALLS: the program of face_calls.cpp

Each pair is measured in one run, in turns: CPU time of the client's process, per call, as the median of the rounds. The
server is another process, which repeats an answer of the development service. Exits with 1 if a bar is missed.
"""

import contextlib
import statistics
import subprocess
import sys
import time
from xml.sax.saxutils import escape

from replay import recorded, replay, with_rows_repeated

import scriptwells

SPACE = "http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0"
PATH = "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx"
SMALL = "parameters.a + parameters.b"
TABLE = """Array.from({length: 1000}, (_, n) => ({number: n, pieces: n % 7, price: n / 8 + 0.01, weight: n / 3 + 0.5,
    customer: 'customer ' + n, city: 'Rome', paid: n % 2 == 0, express: false, ordered: new Date(1.5e12 + n * 1000),
    delivered: new Date(1.6e12 + n * 1000)}))"""


class Face:
    """The C++ program on the same server."""

    def __init__(self, program, url):
        self._process = subprocess.Popen((program, url), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def cpu(self, calls):
        self._process.stdin.write(f"{calls}\n")
        self._process.stdin.flush()
        return int(self._process.stdout.readline()) / calls

    def close(self):
        self._process.stdin.close()
        self._process.wait()


class Here:
    """A call in this process."""

    def __init__(self, call):
        self._call = call
        call()

    def cpu(self, calls):
        start = time.process_time_ns()
        for _ in range(calls):
            self._call()
        return (time.process_time_ns() - start) / calls

    def close(self):
        pass


def zeep_call(service_url, url):
    """A call of a zeep client with the service's description, which posts to `url`."""
    import zeep

    client = zeep.Client(service_url + PATH + "?wsdl")
    binding = next(iter(client.wsdl.bindings))
    proxy = client.create_service(binding, url + PATH)
    document = f'<Scriptwell Language="JavaScript" xmlns="{SPACE}"><Code>{escape(SMALL)}</Code></Scriptwell>'
    return lambda: proxy.Execute("A", document)


def session_call(stack, url, read=lambda answer: answer):
    session = stack.enter_context(scriptwells.connect(url, session_id="A"))
    return lambda: read(session.run(SMALL, a=2, b=40))


def compare(body, ours, other, calls, rounds):
    """The medians in ns. `ours` and `other` make the calls for an address; each has its own server."""
    with replay(body) as here, replay(body) as there, contextlib.ExitStack() as stack:
        pair = ours(stack, here), other(there)
        figures = [[client.cpu(calls) for client in pair] for _ in range(rounds)]
        for client in pair:
            client.close()
    return [statistics.median(column) for column in zip(*figures)]


def main(program, rounds=9):
    with scriptwells.serve() as service:
        number = recorded(service, SMALL)
        table = recorded(service, TABLE)

        def face(url):
            return Face(program, url)

        def zeep(url):
            return Here(zeep_call(service.url, url))

        def plain(stack, url):
            return Here(session_call(stack, url))

        def dicts(stack, url):
            return Here(session_call(stack, url, lambda answer: answer.to_dicts()))

        def pandas(stack, url):
            return Here(session_call(stack, url, lambda answer: answer.to_pandas()))

        rows = [
            ("warm run beside C++", number, plain, face, 3000, "µs more", 15),
            ("100,000 x 10 into pandas beside C++", with_rows_repeated(table, 100), pandas, face, 1, "times", 3),
            ("1,000 x 10 beside zeep", table, plain, zeep, 30, "times", 0.5),
            ("1,000 x 10 with all cells beside zeep", table, dicts, zeep, 30, "times", 1),
        ]
        missed = False
        for name, body, ours, other, calls, unit, bar in rows:
            mine, theirs = compare(body, ours, other, calls, rounds)
            value = mine / theirs if unit == "times" else (mine - theirs) / 1000
            missed |= value > bar
            print(f"{name}: {mine / 1000:.1f} µs, {theirs / 1000:.1f} µs: {value:.2f} {unit} (at most {bar})")
    return int(missed)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], *map(int, sys.argv[2:])))
