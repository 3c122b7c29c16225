"""A first program: runs scripts, reads a table, uploads a file and downloads another.

It reads report.pdf and writes into results/, in the current directory.
    first_call.py http://127.0.0.1:8080
"""

import os
import pathlib
import sys

import scriptwells


def make_first_calls(server: str) -> None:
    with scriptwells.connect(server, "joe", "secret", home_directory=os.environ.get("HOME_DIRECTORY", "")) as session:
        print(session.run("parameters.a + parameters.b", a=2, b=40))  # 42

        table = session.run("[{city: 'Rome', people: 2748109}]")
        for row in table:
            print(row.city, row["people"])

        print(session.run("parameters.doc.size", doc=pathlib.Path("report.pdf")))
        pathlib.Path("results").mkdir(exist_ok=True)
        print(session.download(session.run("publish('out.txt', 'text')"), "results").name)


if __name__ == "__main__":
    try:
        make_first_calls(sys.argv[1] if len(sys.argv) > 1 else "http://127.0.0.1:8080")
    except scriptwells.Error as error:
        sys.exit(f"failed: {error}")
