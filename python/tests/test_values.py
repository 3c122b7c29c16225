"""Values as parameters and as answers."""

import datetime
import decimal
import math
import pathlib

import pytest

import scriptwells

numpy = pytest.importorskip("numpy")
pandas = pytest.importorskip("pandas")

TYPES = "parameterTypes.v + ' ' + (parameters.v instanceof Date ? parameters.v.toISOString() : String(parameters.v))"
DAY = datetime.date(2024, 3, 5)
MOMENT = datetime.datetime(2024, 3, 5, 1, 2, 3)
MOMENT_SENT = "datetime 2024-03-05T01:02:03.000Z"


@pytest.mark.parametrize(
    ("value", "sent"),
    [
        (True, "boolean true"),
        (False, "boolean false"),
        (0, "int 0"),
        (2**31 - 1, "int 2147483647"),
        (-(2**31), "int -2147483648"),
        (2**31, "long 2147483648"),
        (-(2**31) - 1, "long -2147483649"),
        (2**63 - 1, "long 9223372036854775807"),
        (-(2**63), "long -9223372036854775808"),
        (0.5, "double 0.5"),
        ("", "string "),
        ("Grüße, 世界", "string Grüße, 世界"),
        (DAY, "date 2024-03-05T00:00:00.000Z"),
        (MOMENT, MOMENT_SENT),
        (MOMENT.replace(microsecond=500_999), "datetime 2024-03-05T01:02:03.500Z"),
        (datetime.time(1, 2, 3), "time 1970-01-01T01:02:03.000Z"),
        (datetime.timedelta(days=1, hours=2, minutes=3, seconds=4, milliseconds=500), "duration P1DT2H3M4.5S"),
        (datetime.timedelta(days=-1, seconds=86395), "duration -PT5S"),
        (datetime.timedelta(), "duration P0"),
        (scriptwells.Duration(years=1, months=2, seconds=0.5), "duration P1Y2MT0.5S"),
        (scriptwells.byte(5), "byte 5"),
        (scriptwells.short(5), "short 5"),
        (scriptwells.int_(5), "int 5"),
        (scriptwells.long(5), "long 5"),
        (scriptwells.float_(5), "float 5"),
        (scriptwells.double(5), "double 5"),
        (numpy.int8(5), "int 5"),
        (numpy.uint64(2**40), "long 1099511627776"),
        (numpy.float32(0.5), "double 0.5"),
        (numpy.float64(0.5), "double 0.5"),
        (numpy.longdouble(0.5), "double 0.5"),
        (numpy.bool_(True), "boolean true"),
        (numpy.str_("text"), "string text"),
        (numpy.datetime64("2024-03-05T01:02:03.000000000"), MOMENT_SENT),
        (numpy.datetime64("2024-03-05"), "date 2024-03-05T00:00:00.000Z"),
        (numpy.timedelta64(5_000_000_000, "ns"), "duration PT5S"),
        (numpy.timedelta64(5, "M"), "duration P5M"),
        (-numpy.timedelta64(2, "Y"), "duration -P2Y"),
        (pandas.Timestamp(MOMENT), MOMENT_SENT),
        (pandas.Timedelta(seconds=5), "duration PT5S"),
    ],
    ids=repr,
)
def test_sent(shared, value, sent):
    assert shared.run(TYPES, v=value) == sent


UTC = datetime.timezone.utc


@pytest.mark.parametrize(
    ("value", "kind", "reason"),
    [
        (2**63, OverflowError, "64 bits"),
        (-(2**63) - 1, OverflowError, "64 bits"),
        (numpy.uint64(2**63), OverflowError, "64 bits"),
        (None, scriptwells.ConversionError, "argument 'v': an empty value"),
        (math.inf, scriptwells.ConversionError, "not a finite number"),
        (numpy.datetime64("NaT"), scriptwells.ConversionError, "an empty value"),
        (numpy.timedelta64("NaT", "M"), scriptwells.ConversionError, "an empty value"),
        (numpy.datetime64("12000-01-01"), scriptwells.ConversionError, "years 1 to 9999"),
        (pandas.NaT, scriptwells.ConversionError, "an empty value"),
        (pandas.NA, TypeError, "a NAType cannot be sent"),
        (MOMENT.replace(tzinfo=UTC), ValueError, r"\.astimezone\(.*\.replace\(tzinfo=None\)"),
        (pandas.Timestamp(MOMENT, tz="UTC"), ValueError, "argument 'v': a datetime with a time zone"),
        (datetime.time(1, tzinfo=UTC), ValueError, r"\.replace\(tzinfo=None\)"),
        (datetime.timedelta(days=32768), scriptwells.ConversionError, "32767 days"),
        (scriptwells.Duration(days=40000), scriptwells.ConversionError, "32767"),
        (scriptwells.Link("http://a/"), scriptwells.ConversionError, "a URL cannot be sent"),
        ([1], TypeError, "a list cannot be sent"),
        (b"bytes", TypeError, "a bytes cannot be sent"),
        (decimal.Decimal(1), TypeError, "a Decimal cannot be sent"),
        (numpy.array([1]), TypeError, "a ndarray cannot be sent"),
        (1j, TypeError, "a complex cannot be sent"),
        ("\ud800", UnicodeEncodeError, "surrogates"),
    ],
    ids=repr,
)
def test_refused(shared, value, kind, reason):
    with pytest.raises(kind, match=reason):
        shared.run("1", v=value)


def test_names_of_parameters(shared):
    code = "parameterList.map(p => p.name + '=' + p.value).join(' ')"
    assert shared.run(code, {"a b": 1, "ä": 2}, code=3, self=4, parameters=5, language=6) == (
        "a b=1 ä=2 code=3 self=4 parameters=5 language=6"
    )
    with pytest.raises(scriptwells.ConversionError, match="'a' is given twice"):
        shared.run("1", {"a": 1}, a=2)
    with pytest.raises(TypeError, match="the name of a parameter must be a str, not int"):
        shared.run("1", {1: 2})


@pytest.mark.parametrize(
    ("script", "value"),
    [
        ("true", True),
        ("42", 42),
        ("typed.short(-5)", -5),
        ("0.5", 0.5),
        ("typed.float(0.5)", 0.5),
        ("'Grüße, 世界'", "Grüße, 世界"),
        ("''", ""),
        ("typed.date('2024-03-05')", DAY),
        ("typed.time('01:02:03')", datetime.time(1, 2, 3)),
        ("typed.datetime('2024-03-05T01:02:03')", MOMENT),
        ("typed.duration('-P1Y2M3DT4H5M6.5S')", scriptwells.Duration(True, 1, 2, 3, 4, 5, 6.5)),
        ("typed.url('http://a/')", scriptwells.Link()),
        ("typed.long(5)", None),
    ],
)
def test_received(shared, script, value):
    answer = shared.run(script)
    assert answer == value
    assert type(answer) is type(value)


def test_strict_refuses_what_would_be_lost(shared):
    strict = shared.with_options(strict=True)
    for value, reason in [
        (MOMENT.replace(microsecond=1), "microseconds"),
        (datetime.time(1, 2, 3, 1), "microseconds"),
        (0.1234567, "6 significant digits"),
        (pandas.Timestamp("2024-03-05T01:02:03.000000001"), "nanoseconds"),
        (pandas.Timedelta(1, "ns"), "nanoseconds"),
        (numpy.datetime64("2024-03-05T01:02:03.000000001"), "nanoseconds"),
        (numpy.timedelta64(1, "ns"), "nanoseconds"),
    ]:
        shared.run("1", v=value)
        with pytest.raises(scriptwells.ConversionError, match=reason):
            strict.run("1", v=value)


def test_losses():
    for value in (1, MOMENT, numpy.datetime64("NaT"), pandas.Timedelta(1, "us"), numpy.timedelta64(1, "us")):
        assert scriptwells.losses_on_the_wire(value) == []
    assert scriptwells.losses_on_the_wire(MOMENT.replace(microsecond=1)) == ["travels without its microseconds"]
    assert scriptwells.losses_on_the_wire(pandas.Timedelta(1, "ns")) == ["travels without its nanoseconds"]
    assert scriptwells.losses_on_the_wire(0.1234567) == ["travels with 6 significant digits"]


def test_makers():
    typed = scriptwells.byte(5)
    assert (typed.value, typed.type, repr(typed)) == (5, "byte", "scriptwells.byte(5)")
    assert repr(scriptwells.int_(5)) == "scriptwells.int_(5)"
    assert typed == scriptwells.byte(5) != scriptwells.short(5)
    with pytest.raises(scriptwells.ConversionError):
        scriptwells.byte(128)
    with pytest.raises(OverflowError, match="an int beyond 64 bits cannot be sent"):
        scriptwells.long(2**63)
    with pytest.raises(OverflowError):
        scriptwells.double(2**2000)
    with pytest.raises(TypeError, match="'float' object cannot be interpreted as an integer"):
        scriptwells.byte(1.5)
    with pytest.raises(TypeError, match="must be real number, not str"):
        scriptwells.double("1.5")


def test_durations():
    duration = scriptwells.Duration.parse("-P1DT2H")
    assert duration == scriptwells.Duration(negative=True, days=1, hours=2)
    assert str(duration) == "-P1DT2H"
    assert duration.to_timedelta() == -datetime.timedelta(days=1, hours=2)
    assert len({duration, scriptwells.Duration.parse("-P1DT2H")}) == 1
    with pytest.raises(ValueError, match="P1M has years or months"):
        scriptwells.Duration(months=1).to_timedelta()
    with pytest.raises(scriptwells.ConversionError):
        scriptwells.Duration.parse("1 day")


@pytest.mark.parametrize("count", [2**40, "1", None, 1.5])
def test_durations_with_odd_counts(shared, count):
    with pytest.raises(TypeError, match="a Duration with years="):
        shared.run("1", v=scriptwells.Duration(years=count))


def test_durations_with_negative_counts(shared):
    with pytest.raises(scriptwells.ConversionError, match="argument 'v'"):
        shared.run("1", v=scriptwells.Duration(years=-1))


def test_files_are_uploaded(shared, tmp_path):
    path = tmp_path / "Größe.txt"
    path.write_text("content")
    assert shared.run("parameters.doc.text() + parameters.n", doc=path, n=1) == "content1"
    assert isinstance(path, pathlib.Path)
