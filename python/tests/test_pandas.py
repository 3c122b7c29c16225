"""Tables as DataFrames."""

import datetime
import subprocess
import sys

import pytest

numpy = pytest.importorskip("numpy")
pandas = pytest.importorskip("pandas")


def frame(shared, columns, rows):
    return shared.run(f"typed.table({columns}, {rows})").to_pandas()


@pytest.mark.parametrize(
    ("kind", "cell", "dtype", "value"),
    [
        ("boolean", "true", "bool", True),
        ("short", "5", "int64", 5),
        ("int", "-5", "int64", -5),
        ("double", "0.5", "float64", 0.5),
        ("string", "'text'", "object", "text"),
        ("date", "'2024-03-05'", "datetime64[ns]", pandas.Timestamp(2024, 3, 5)),
        ("datetime", "'2024-03-05T01:02:03'", "datetime64[ns]", pandas.Timestamp(2024, 3, 5, 1, 2, 3)),
        ("datetime", "'1500-03-05T01:02:03'", "object", datetime.datetime(1500, 3, 5, 1, 2, 3)),
        ("date", "'1500-03-05'", "object", datetime.date(1500, 3, 5)),
        ("time", "'01:02:03'", "object", datetime.time(1, 2, 3)),
        ("duration", "'-P1DT2H'", "timedelta64[ns]", -pandas.Timedelta(days=1, hours=2)),
        ("long", "5", "object", None),
    ],
)
def test_types(shared, kind, cell, dtype, value):
    column = frame(shared, f"{{a: '{kind}'}}", f"[[{cell}], [{cell}]]")["a"]
    assert column.dtype == dtype
    assert list(column) == [value, value]


def test_durations_with_months_stay_durations(shared):
    column = frame(shared, "{a: 'duration'}", "[['P1M'], ['P1D']]")["a"]
    assert column.dtype == object
    assert [str(value) for value in column] == ["P1M", "P1D"]


def test_columns_with_one_name(shared):
    data = shared.run("[{a: 1, b: 'x'}, {a: 2, b: 'y'}]").to_pandas()
    assert list(data.columns) == ["a", "b"]
    assert data.shape == (2, 2)
    assert data.a.sum() == 3


def test_no_rows(shared):
    data = frame(shared, "{a: 'int', b: 'date', c: 'string'}", "[]")
    assert data.shape == (0, 3)
    assert list(data.dtypes.astype(str)) == ["int64", "datetime64[ns]", "object"]


def test_a_frame_may_be_changed(shared):
    data = frame(shared, "{a: 'int', b: 'boolean', c: 'double'}", "[[1, true, 0.5]]")
    data.loc[0, "a"] = 7
    data.loc[0, "b"] = False
    data.loc[0, "c"] = 1.5
    assert list(data.loc[0]) == [7, False, 1.5]


class Cells:
    """The C++ half of a table with empty cells, which no answer of the service has."""

    KINDS = {"?": bool, "<i8": "<i8", "<f8": "<f8", "<M8[ms]": "<i8", "<m8[us]": "<i8"}

    def __len__(self):
        return 2

    def columns(self):
        return [type("Column", (), {"name": kind}) for kind in self.KINDS]

    def column_data(self, index):
        kind, dtype = list(self.KINDS.items())[index]
        return kind, numpy.array([1, 0], dtype).tobytes(), b"\0\1"


def test_empty_cells():
    from scriptwells import _pandas

    data = _pandas.frame_of(Cells())
    assert list(data.dtypes.astype(str)) == ["boolean", "Int64", "float64", "datetime64[ns]", "timedelta64[ns]"]
    assert list(data.isna().loc[1]) == [True] * 5
    assert list(data.isna().loc[0]) == [False] * 5


def test_the_package_does_not_import_pandas():
    code = "import sys, scriptwells; sys.exit('pandas' in sys.modules or 'numpy' in sys.modules)"
    assert subprocess.run([sys.executable, "-c", code]).returncode == 0


def test_without_pandas():
    code = (
        "import sys, scriptwells; sys.modules['pandas'] = None\n"
        "try: scriptwells._table.Table(None).to_pandas()\n"
        "except ImportError as error: print(error)"
    )
    shown = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True).stdout
    assert shown == "to_pandas() needs pandas: pip install pandas\n"
