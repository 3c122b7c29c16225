"""The GoogleTest programs of a build, as ctest knows them."""

import json
import os
import subprocess


class TestProgram:
    """A test program that runs whole, with the environment and the directory that ctest gives its tests."""

    def __init__(self, path, environment, directory, build):
        self.path = path
        self.name = os.path.basename(path)
        self.room = os.path.relpath(os.path.dirname(path), os.path.join(build, "tests"))
        self.environment = environment
        self.directory = directory
        self.tests = []

    def command(self, *options):
        return [self.path, "--gtest_color=no", *options]


def find_test_programs(build):
    """All programs whose tests ctest runs by a GoogleTest filter, sorted by path."""
    listing = subprocess.run(["ctest", "--show-only=json-v1", "--test-dir", build], check=True,
                             stdout=subprocess.PIPE).stdout
    programs = {}
    for test in json.loads(listing)["tests"]:
        command = test.get("command")
        if command is None:
            raise SystemExit(f"{test['name']}: the program is not built")
        filters = [word.split("=", 1)[1] for word in command if word.startswith("--gtest_filter=")]
        if not filters:
            continue
        properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
        if "ENVIRONMENT_MODIFICATION" in properties:
            raise SystemExit(f"{test['name']}: ENVIRONMENT_MODIFICATION is not supported here")
        environment = dict(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
        program = programs.setdefault(
            command[0], TestProgram(command[0], {}, properties.get("WORKING_DIRECTORY", build), build))
        program.environment.update(environment)
        program.tests += filters
    if not programs:
        raise SystemExit(f"{build} has no test programs")
    return [programs[path] for path in sorted(programs)]
