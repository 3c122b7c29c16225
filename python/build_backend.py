"""Builds the wheel with CMake, for pip and its like (PEP 517 and 660). Needs no other package.

It builds in build/python of the project, or in the directory of the variable SCRIPTWELLS_BUILD_DIRECTORY.
"""

import base64
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import sysconfig
import tempfile
import tomllib
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
VERSION_HEADER = ROOT / "include/scriptwells/version.h"


class Wheel:
    """A wheel that is being written, with its list of files."""

    def __init__(self, directory, project):
        name = f"{project['name']}-{project['version']}"
        self.info = f"{name}.dist-info"
        self.file = f"{name}-{tag()}.whl"
        self._zip = zipfile.ZipFile(pathlib.Path(directory, self.file), "w", zipfile.ZIP_DEFLATED)
        self._record = []

    def add(self, name, content, mode=0o644):
        entry = zipfile.ZipInfo(name)  # of 1980: the same files make the same wheel
        entry.external_attr = (0o100000 | mode) << 16
        entry.compress_type = zipfile.ZIP_DEFLATED
        self._zip.writestr(entry, content)
        digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
        self._record.append(f"{name},sha256={digest},{len(content)}")

    def add_tree(self, folder):
        for path in sorted(folder.rglob("*")):
            if path.is_file():
                self.add(path.relative_to(folder).as_posix(), path.read_bytes(), path.stat().st_mode & 0o777)

    def close(self):
        record = f"{self.info}/RECORD"
        self._zip.writestr(record, "\n".join([*self._record, f"{record},,"]) + "\n")
        self._zip.close()


def tag():
    platform = sysconfig.get_platform().replace("-", "_").replace(".", "_")
    version = f"cp{sys.version_info.major}{sys.version_info.minor}"
    return f"{version}-{version}-{platform}"


def read_project():
    project = tomllib.loads((HERE / "pyproject.toml").read_text())["project"]
    project["version"] = re.search(r'SCRIPTWELLS_VERSION "([\d.]+)"', VERSION_HEADER.read_text())[1]
    return project


def metadata(project):
    lines = [
        "Metadata-Version: 2.1",
        f"Name: {project['name']}",
        f"Version: {project['version']}",
        f"Summary: {project['description']}",
        f"Requires-Python: {project['requires-python']}",
    ]
    for extra, packages in project["optional-dependencies"].items():
        lines.append(f"Provides-Extra: {extra}")
        lines += [f"Requires-Dist: {package}; extra == '{extra}'" for package in packages]
    lines += ["Description-Content-Type: text/markdown", ""]
    return "\n".join(lines) + "\n" + (HERE / "README.md").read_text()


def entry_points(project):
    groups = []
    for group, points in project["entry-points"].items():
        groups += [f"[{group}]", *(f"{name} = {target}" for name, target in points.items())]
    return "\n".join(groups) + "\n"


def info_files(project):
    return {
        "METADATA": metadata(project),
        "WHEEL": f"Wheel-Version: 1.0\nGenerator: scriptwells\nRoot-Is-Purelib: false\nTag: {tag()}\n",
        "entry_points.txt": entry_points(project),
    }


# Without this pip would build twice.
def prepare_metadata_for_build_wheel(metadata_directory, config_settings=None):
    project = read_project()
    info = pathlib.Path(metadata_directory, f"{project['name']}-{project['version']}.dist-info")
    info.mkdir(parents=True)
    for name, text in info_files(project).items():
        (info / name).write_text(text)
    return info.name


prepare_metadata_for_build_editable = prepare_metadata_for_build_wheel


def run(*command):
    subprocess.run(command, check=True)


def build_into(folder):
    """Builds the library, the service and the module, and installs what a wheel holds of them."""
    build = os.environ.get("SCRIPTWELLS_BUILD_DIRECTORY") or str(ROOT / "build" / "python")
    generator = ["-G", "Ninja"] if shutil.which("ninja") and not pathlib.Path(build, "CMakeCache.txt").exists() else []
    run("cmake", "-S", str(ROOT), "-B", build, *generator, "-DCMAKE_BUILD_TYPE=Release",
        "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG", "-DQV_QUICK_BUILD=ON", "-DQV_BUILD_TESTS=OFF",
        "-DQV_BUILD_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}")  # fmt: skip
    run("cmake", "--build", build, "--target", "scriptwells_python", "--parallel", str(os.cpu_count() or 1))
    for component in ("python", "wheel"):
        run("cmake", "--install", build, "--component", component, "--prefix", str(folder), "--strip")


def make_wheel(wheel_directory, fill):
    project = read_project()
    wheel = Wheel(wheel_directory, project)
    fill(wheel)
    for name, text in info_files(project).items():
        wheel.add(f"{wheel.info}/{name}", text.encode())
    wheel.close()
    return wheel.file


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    with tempfile.TemporaryDirectory() as folder:
        build_into(pathlib.Path(folder))
        return make_wheel(wheel_directory, lambda wheel: wheel.add_tree(pathlib.Path(folder)))


def build_editable(wheel_directory, config_settings=None, metadata_directory=None):
    """A wheel that names this folder. What was built lies beside the Python files."""
    with tempfile.TemporaryDirectory() as folder:
        build_into(pathlib.Path(folder))
        package = pathlib.Path(folder, "scriptwells")
        shutil.copytree(package / "installed", HERE / "scriptwells" / "installed", dirs_exist_ok=True)
        for module in package.glob("*.so"):
            shutil.copy2(module, HERE / "scriptwells")
    return make_wheel(wheel_directory, lambda wheel: wheel.add("scriptwells.pth", f"{HERE}\n".encode()))


def build_sdist(sdist_directory, config_settings=None):
    raise NotImplementedError("the sources are those of the whole project: build from a checkout of it")
