"""The pytest plugin: a test that takes `scriptwells_service` gets its own development service."""

from __future__ import annotations

from collections.abc import Iterator

import pytest

from ._service import Service, serve


@pytest.fixture
def scriptwells_service() -> Iterator[Service]:
    """A development service for this test."""
    with serve() as service:
        yield service
