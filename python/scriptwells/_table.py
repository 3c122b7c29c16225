"""Tables in answers."""

from __future__ import annotations

from collections.abc import Iterator, Sequence
from typing import TYPE_CHECKING, Any, NamedTuple, overload

from . import _core

if TYPE_CHECKING:
    import pandas


class Column(NamedTuple):
    """A column of a table."""

    name: str
    type: str
    """Of its values: "string", "int", ..., or "empty" for a type that the protocol's clients do not read."""
    type_name: str
    """On the wire."""


class Table(Sequence[_core.Row]):
    """A table that a script answered with: a sequence of rows.

        for row in table:
            print(row.city, row["people"], row[0])

    Cells have Python's own types; None is an empty cell. Nothing in a table changes.
    """

    __slots__ = ("_cells",)
    __hash__ = None  # type: ignore[assignment]

    def __init__(self, cells: _core.Cells) -> None:
        self._cells = cells

    @property
    def columns(self) -> tuple[Column, ...]:
        """Name and type of each column."""
        return self._cells.columns()

    def __len__(self) -> int:
        return len(self._cells)

    @overload
    def __getitem__(self, index: int) -> _core.Row: ...
    @overload
    def __getitem__(self, index: slice) -> list[_core.Row]: ...
    def __getitem__(self, index: int | slice) -> _core.Row | list[_core.Row]:
        if isinstance(index, slice):
            return [self._cells.row(i) for i in range(*index.indices(len(self)))]
        if not hasattr(index, "__index__"):
            raise TypeError(f"a row is found by its position, not by a {type(index).__name__}; see column()")
        return self._cells.row(index)

    def __iter__(self) -> Iterator[_core.Row]:
        return self._cells.rows()

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Table):
            return NotImplemented
        return self._cells == other._cells

    def column(self, name: str) -> list[Any]:
        """The values of one column."""
        return self._cells.column(name)

    def to_dicts(self) -> list[dict[str, Any]]:
        """Each row as a dict; of several columns with one name the first."""
        return self._cells.to_dicts()

    def to_pandas(self) -> pandas.DataFrame:
        """The table as a DataFrame with typed columns. Needs pandas.

        Whole numbers and booleans with empty cells have the types Int64 and boolean, dates and datetimes are
        datetime64, durations without years and months timedelta64. All else are Python's own objects.
        """
        from . import _pandas

        return _pandas.frame_of(self._cells)

    def to_csv(self, null: str = "") -> str:
        """CSV with the names first (RFC 4180). `null` is written for empty cells."""
        return self._cells.to_csv(null)

    def to_json(self) -> str:
        """JSON with columns and rows."""
        return self._cells.to_json()

    def __str__(self) -> str:
        return str(self._cells)

    def __repr__(self) -> str:
        names = ", ".join(column.name for column in self.columns)
        return f"<Table of {len(self)} rows: {names}>"

    def _repr_html_(self) -> str:
        from . import _html

        return _html.table_html(self)
