"""Tables: rows, cells, and their forms."""

import datetime
from collections.abc import Sequence

import pytest

import scriptwells

SCRIPT = """typed.table(
    {city: 'string', people: 'int', keys: 'boolean', born: 'date', share: 'double', other: 'long'},
    [['Rome', 2748109, true, '0753-04-21', 0.5, 1], ['<Bern>', 134591, false, '1191-01-01', 0.25, 2]])"""


@pytest.fixture(scope="module")
def table(shared):
    return shared.run(SCRIPT)


def test_is_a_sequence(table):
    assert isinstance(table, Sequence)
    assert len(table) == 2
    assert [row.city for row in table] == ["Rome", "<Bern>"]
    assert [row.city for row in reversed(table)] == ["<Bern>", "Rome"]
    assert table[-1].city == "<Bern>"
    assert [row.city for row in table[:1]] == ["Rome"]
    assert table[0] in table
    assert table.index(table[1]) == 1
    for index in (2, -3):
        with pytest.raises(IndexError, match=f"there is no row {index}; there are 2"):
            table[index]
    with pytest.raises(TypeError, match=r"a row is found by its position, not by a str; see column\(\)"):
        table["city"]


def test_columns(table):
    assert [column.name for column in table.columns] == ["city", "people", "keys", "born", "share", "other"]
    assert [column.type for column in table.columns] == ["string", "int", "boolean", "date", "double", "empty"]
    assert table.columns[0].type_name == "string"
    assert table.column("people") == [2748109, 134591]
    with pytest.raises(KeyError, match="there is no column 'none'; the table has 'city'"):
        table.column("none")


def test_rows(table):
    row = table[0]
    assert row.city == row["city"] == row[0] == row[-6] == "Rome"
    assert row.born == datetime.date(753, 4, 21)
    assert row.other is None
    assert list(row) == ["Rome", 2748109, True, datetime.date(753, 4, 21), 0.5, None]
    assert len(row) == 6
    assert row["keys"] is True
    assert row.keys() == ["city", "people", "keys", "born", "share", "other"]
    assert dict(row) == row.to_dict()
    assert "people" in dir(row)
    assert repr(row).startswith("Row(city='Rome', people=2748109, keys=True, ")
    assert row == table[0] != table[1]
    assert row != "Rome"
    with pytest.raises(AttributeError, match="no column 'none'"):
        print(row.none)
    with pytest.raises(KeyError):
        print(row["none"])
    with pytest.raises(IndexError, match="there is no column 6"):
        print(row[6])
    with pytest.raises(TypeError, match="a column is found by its name or position, not by a slice"):
        print(row[1:2])
    with pytest.raises(TypeError):
        hash(row)


def test_rows_outlive_their_table(shared):
    row = next(iter(shared.run("[{a: 'x'}]")))
    assert row.a == "x"


def test_as_dicts(table):
    assert table.to_dicts()[1] == {
        "city": "<Bern>",
        "people": 134591,
        "keys": False,
        "born": datetime.date(1191, 1, 1),
        "share": 0.25,
        "other": None,
    }


def test_texts(table):
    assert table.to_csv().splitlines()[1] == "Rome,2748109,true,0753-04-21,0.5,"
    assert table.to_csv(null="NULL").splitlines()[1].endswith(",NULL")
    assert table.to_json().startswith('{"columns":[{"name":"city"')
    assert str(table).splitlines()[1].split()[:2] == ["Rome", "2748109"]
    assert repr(table) == "<Table of 2 rows: city, people, keys, born, share, other>"


def test_html(table, shared):
    html = table._repr_html_()
    assert "<th title=\"string\">city</th>" in html
    assert "<td>&lt;Bern&gt;</td>" in html
    assert '<td style="text-align: right">134591</td>' in html
    assert "<p>2 rows, 6 columns</p>" in html
    assert html.count("<tr>") == 3
    many = shared.run("Array.from({length: 100}, (_, n) => ({n}))")._repr_html_()
    assert many.count("<tr>") == 61
    assert "<p>100 rows, 1 columns, 60 shown</p>" in many


def test_equality(table, shared):
    assert table == shared.run(SCRIPT)
    assert table != shared.run("[{a: 1}]")
    assert table != 5
    with pytest.raises(TypeError):
        hash(table)


def test_no_rows(shared):
    table = shared.run("typed.table({a: 'int'}, [])")
    assert (len(table), list(table), table.to_dicts(), table.column("a")) == (0, [], [], [])
    assert scriptwells.Column("a", "int", "int") == table.columns[0]
