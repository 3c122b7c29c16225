"""What all tests use. They run against the development service: PYTHONPATH names the built package."""

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
