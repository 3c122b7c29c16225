"""Tables as DataFrames."""

from __future__ import annotations

from typing import Any

from . import _core

try:
    import numpy
    import pandas
except ImportError as error:
    raise ImportError("to_pandas() needs pandas: pip install pandas") from error

# What a datetime64 of pandas holds, in milliseconds since 1970.
_EARLIEST = pandas.Timestamp.min.value // 1_000_000 + 1
_LATEST = pandas.Timestamp.max.value // 1_000_000


def _objects(values: list[Any]) -> Any:
    array = numpy.empty(len(values), dtype=object)
    array[:] = values
    return array


def _column(cells: _core.Cells, index: int) -> Any:
    kind, data, marks = cells.column_data(index)
    if kind == "O":
        return _objects(data)
    values = numpy.frombuffer(data, dtype="<i8" if kind == "<M8[ms]" else kind).copy()
    empty = numpy.frombuffer(marks, dtype=bool)
    if kind == "<M8[ms]":
        if len(values) and (values.min() < _EARLIEST or values.max() > _LATEST):
            return _objects(cells.column(cells.columns()[index].name))
        values = values.view(kind).astype("<M8[ns]")
    elif kind == "<m8[us]":
        values = values.astype("<m8[ns]")
    if not empty.any():
        return values
    if kind == "?":
        return pandas.arrays.BooleanArray(values, empty)
    if kind == "<i8":
        return pandas.arrays.IntegerArray(values, empty)
    values[empty] = numpy.nan if kind == "<f8" else numpy.array("NaT", values.dtype)
    return values


def frame_of(cells: _core.Cells) -> pandas.DataFrame:
    """A DataFrame with one typed column for each of the table's; several may have one name."""
    columns = cells.columns()
    data = {index: _column(cells, index) for index in range(len(columns))}
    frame = pandas.DataFrame(data, index=pandas.RangeIndex(len(cells)), copy=False)
    frame.columns = pandas.Index([column.name for column in columns], dtype=object)
    return frame
