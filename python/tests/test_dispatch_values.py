"""Late binding: values of arguments and results, tables among them."""

import datetime
import decimal
import math
import pathlib
import struct
import threading

import pytest

import scriptwells
from scriptwells import _core

POINTS = [
    datetime.date(2024, 3, 5),
    datetime.date(1, 1, 1),
    datetime.date(9999, 12, 31),
    datetime.time(10, 15, 30, 123000),
    datetime.time(0, 0),
    datetime.datetime(2024, 3, 5, 10, 15, 30, 999000),
    datetime.datetime(1899, 12, 29, 6, 0),
    datetime.datetime(1, 1, 1, 0, 0, 1),
    datetime.datetime(9999, 12, 31, 23, 59, 59),
]


@pytest.mark.parametrize(
    ("value", "tag"),
    [
        (None, 1),
        (True, 11),
        (False, 11),
        (0, 22),
        (2**31 - 1, 22),
        (-(2**31), 22),
        (2**31, 20),
        (-(2**63), 20),
        (2**63, 21),
        (2**64 - 1, 21),
        (1.5, 5),
        (math.inf, 5),
        ("", 8),
        ("Grüße \U0001f600 \0 null", 8),
        ("half \ud83d alone", 8),
        ("\ude00", 8),
        (decimal.Decimal("1.50"), 14),
        (decimal.Decimal("-79228162514264337593543950335"), 14),
        (decimal.Decimal("7.9228162514264337593543950335"), 14),
        (decimal.Decimal("-0.0000000000000000000000000001"), 14),
        *((point, 7) for point in POINTS),
    ],
)
def test_values_both_ways(echo, value, tag):
    assert echo.Tag(value) == tag
    same = echo.Same(value)
    assert same == value
    assert type(same) is type(value)
    assert str(same) == str(value)


@pytest.mark.parametrize(
    ("value", "same", "tag"),
    [
        (scriptwells.byte(-5), -5, 16),
        (scriptwells.short(5), 5, 2),
        (scriptwells.int_(5), 5, 22),
        (scriptwells.long(5), 5, 20),
        (scriptwells.float_(0.5), 0.5, 4),
        (scriptwells.double(0.5), 0.5, 5),
        (decimal.Decimal("1E+3"), decimal.Decimal(1000), 14),
        (datetime.datetime(2024, 3, 5), datetime.date(2024, 3, 5), 7),
        (datetime.time(1, 2, 3, 4567), datetime.time(1, 2, 3, 4000), 7),
        (datetime.date(1899, 12, 30), datetime.time(0, 0), 7),
    ],
)
def test_values_that_come_back_as_others(echo, value, same, tag):
    assert echo.Tag(value) == tag
    assert echo.Same(value) == same
    assert type(echo.Same(value)) is type(same)


@pytest.mark.parametrize(
    ("tag", "bits", "value"),
    [
        (0, 0, None),
        (1, 0, None),
        (2, -1, -1),
        (3, -5, -5),
        (6, -15000, decimal.Decimal("-1.5")),
        (6, 1, decimal.Decimal("0.0001")),
        (11, 1, True),
        (13, 0, None),
        (9, 0, None),
        (8, 0, ""),
        (16, -1, -1),
        (17, 255, 255),
        (18, 65535, 65535),
        (19, 2**32 - 1, 2**32 - 1),
        (20, 2**40, 2**40),
        (21, 2**63 - 1, 2**63 - 1),
        (23, 2**32 - 1, 2**32 - 1),
    ],
)
def test_values_of_every_tag(echo, tag, bits, value):
    assert echo.Raw(tag, bits) == value


@pytest.mark.parametrize("tag", [12, 25, 0x4003])
def test_tags_that_python_has_no_value_for(echo, tag):
    with pytest.raises(scriptwells.ConversionError, match=f"no value for the tag {tag}$"):
        echo.Raw(tag, 0)


@pytest.mark.parametrize("serial", [1e9, -1e9, math.nan, math.inf])
def test_dates_out_of_range(echo, serial):
    with pytest.raises(scriptwells.ConversionError, match="outside the years 1 to 9999"):
        echo.Raw(7, struct.unpack("<q", struct.pack("<d", serial))[0])


@pytest.mark.parametrize(
    ("value", "error", "words"),
    [
        (2**64, OverflowError, "beyond 64 bits"),
        (-(2**63) - 1, OverflowError, "beyond 64 bits"),
        (decimal.Decimal(2**96), OverflowError, "96 bits"),
        (decimal.Decimal("1E-29"), OverflowError, "28 decimal places"),
        (decimal.Decimal("1E+29"), OverflowError, "96 bits"),
        (decimal.Decimal("NaN"), scriptwells.ConversionError, "NaN is no number"),
        (decimal.Decimal("-Infinity"), scriptwells.ConversionError, "no number"),
        (b"bytes", TypeError, "a bytes cannot be passed"),
        ([1], TypeError, "a list cannot be passed"),
        (pathlib.Path("a"), TypeError, r"AttachedFile\(\)"),
        (datetime.timedelta(1), TypeError, r"Duration\(\)"),
        (datetime.datetime.now(datetime.timezone.utc), scriptwells.ConversionError, "time zone"),
        (datetime.time(tzinfo=datetime.timezone.utc), scriptwells.ConversionError, "time zone"),
    ],
)
def test_values_that_cannot_be_passed(echo, value, error, words):
    with pytest.raises(error, match=words):
        echo.Same(value)


def test_whole_numbers_of_other_types(echo):
    class Number:
        def __index__(self):
            return 7

    assert echo.Same(Number()) == 7


@pytest.mark.parametrize(
    ("code", "value"),
    [
        ("true", True),
        ("typed.short(5)", 5),
        ("6 * 7", 42),
        ("1.5", 1.5),
        ("typed.float(0.5)", 0.5),
        ("'Grüße \U0001f600'", "Grüße \U0001f600"),
        ("typed.long(5)", None),
        ("typed.byte(5)", 0),
        ("typed.date('2024-03-05')", datetime.date(2024, 3, 5)),
        ("typed.time('10:15:30')", datetime.time(10, 15, 30)),
        ("typed.datetime('2024-03-05T10:15:30')", datetime.datetime(2024, 3, 5, 10, 15, 30)),
    ],
)
def test_answers(late_host, code, value):
    answer = late_host.run(code)
    assert answer == value
    assert type(answer) is type(value)


@pytest.mark.parametrize(
    "value", [True, 5, 2**40, "text", 1.5, datetime.date(2024, 3, 5), datetime.time(10, 15), scriptwells.byte(5)]
)
def test_parameters_on_the_wire(late_host, client, value):
    with scriptwells.connect(late_host.url, "joe") as session:
        expected = session.run("String(parameters.a)", a=value)
    assert late_host.run("String(parameters.a)", a=value) == expected


def test_a_table_is_a_table(late_host):
    code = "[{city: 'Rome', people: 2748109, since: typed.duration('P1Y')}, {city: 'Oslo', people: 5, since: null}]"
    code = code.replace(", since: null", ", since: typed.duration('PT5M')")
    table = late_host.run(code)
    with scriptwells.connect(late_host.url, "joe") as session:
        assert table == session.run(code)
    assert type(table) is scriptwells.Table
    assert [row.city for row in table] == ["Rome", "Oslo"]
    assert table.column("since")[1] == scriptwells.Duration(minutes=5)
    in_thread = []
    thread = threading.Thread(target=lambda: in_thread.append(table.to_dicts()))
    thread.start()
    thread.join()
    assert in_thread == [table.to_dicts()]


def test_only_record_lists_become_tables():
    with pytest.raises(TypeError):
        _core.cells_of(object())
    with pytest.raises(TypeError, match="this is no record list"):
        _core.cells_of(datetime.datetime_CAPI)
