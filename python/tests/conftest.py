"""What all tests use. They run against the development service: PYTHONPATH names the built package."""

import late_host as late_host_module
import pytest

import scriptwells

pytest_plugins = ["scriptwells.pytest_plugin"]


@pytest.fixture
def session(scriptwells_service):
    with scriptwells_service.connect() as session:
        yield session


@pytest.fixture(scope="module")
def shared():
    """A session for tests that change nothing."""
    with scriptwells.serve() as service, service.connect() as session:
        yield session


@pytest.fixture(scope="session")
def late_host(tmp_path_factory):
    """A client of Dispatch. Only one in this process may have a model, and it stays until the end."""
    with scriptwells.serve() as service, pytest.MonkeyPatch.context() as patch:
        folder = tmp_path_factory.mktemp("registry")
        registry = late_host_module.write_registry(folder / "host.reg", service.home_directory)
        patch.setenv("QV_REGISTRY", str(registry))
        yield late_host_module.Host(service)


@pytest.fixture
def client(late_host):
    return late_host.client


@pytest.fixture
def echo(late_host):
    """An object of the class of late/echo_class.cpp."""
    return scriptwells.Dispatch("Echo.Class")
