#!/usr/bin/env python3
"""scripts/check-rooms on small trees: a wrong include makes it fail, and it names both files."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECKER = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "check-rooms"
RIGHT = [("src/soap/a.h", "src/text/b.h"), ("devservice/endpoint.h", "devservice/js/b.h"),
         ("tools/transfer/a.h", "tools/input/b.h"), ("tools/service/a.h", "devservice/service.h"),
         ("tools/transfer/c.h", "include/scriptwells/session.h"), ("tools/report/c.h", "face/text/b.h"),
         ("tools/registry_command.cpp", "include/qvscriptwells/registry.h")]
WRONG = [("src/text/a.h", "src/soap/b.h"), ("src/text/a.h", "tools/report/b.h"),
         ("devservice/values/a.h", "devservice/http/b.h"), ("devservice/js/a.h", "devservice/service.h"),
         ("devservice/values/a.h", "src/text/b.h"), ("devservice/workers/a.h", "tools/report/b.h"),
         ("tools/report/a.h", "tools/system/b.h"), ("tools/options/a.h", "tools/transfer/b.h"),
         ("tools/transfer/a.h", "tools/options/b.h"), ("tools/output/a.h", "tools/program.h"),
         ("tools/output/a.h", "src/text/b.h"), ("tools/transfer/a.h", "include/qvscriptwells/session.h"),
         ("tools/input/a.h", "face/values/b.h")]


def check(pairs):
    """The checker's result and lines for a tree in which the first file of each pair includes the second."""
    with tempfile.TemporaryDirectory() as tree:
        for pair in pairs:
            for name, text in (pair[1], ""), (pair[0], f'#include "{pair[1].removeprefix("src/")}"\n'):
                path = pathlib.Path(tree, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text((path.read_text() if path.exists() else "") + text)
        done = subprocess.run([sys.executable, CHECKER, "--root", tree], capture_output=True, text=True)
        return done.returncode, sorted(line.removeprefix("check-rooms: ") for line in done.stderr.splitlines())


class CheckRooms(unittest.TestCase):
    def test_includes_of_lower_rooms_pass(self):
        self.assertEqual(check(RIGHT), (0, []))

    def test_wrong_includes_fail(self):
        self.assertEqual(check(RIGHT + WRONG), (1, sorted(f"{file} may not include {other}" for file, other in WRONG)))

    def test_circles_fail(self):
        for room in "src/text", "devservice/values", "tools/report":
            self.assertEqual(check([(f"{room}/a.h", f"{room}/b.h"), (f"{room}/b.cpp", f"{room}/a.h")]),
                             (1, [f"a circle: {room}/a, {room}/b"]))

    def test_a_folder_that_is_no_room_fails(self):
        self.assertEqual(check([("tools/new/a.h", "tools/report/b.h")]), (1, ["tools/new/a.h lies in no room"]))


unittest.main()
