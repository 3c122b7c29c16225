"""What scripts/bench measures, and the bars: tables, and nothing else."""

from collections import namedtuple

# `peers` are names of qv_bench_peer; "late" is qv_bench_late. `rows` of the answer's table: 0 is a string. `calls` are
# made per repetition.
Row = namedtuple("Row", "key title rows calls peers")

CLIENTS = ("curl", "gsoap", "stock_tree", "ours")

ROWS = (
    Row("string", "string answer", 0, 3_000, CLIENTS + ("late", "face")),
    Row("table_1k", "1,000 x 10 cells", 1_000, 100, CLIENTS),
    Row("table_10k", "10,000 x 10 cells", 10_000, 10, CLIENTS),
    Row("table_100k", "100,000 x 10 cells", 100_000, 2, CLIENTS),
    Row("walk_10k", "10,000 x 10 cells, each read", 10_000, 2, ("gsoap_walk", "ours_walk")),
    Row("walk_100k", "100,000 x 10 cells, read again", 100_000, 1, ("ours_walk_only", "face_walk")),
    Row("threads", "1,600 string answers", 0, 1, ("one_thread", "eight_threads")),
    Row("write_100k", "100,000 x 10 cells written", 100_000, 1, ("writer",)),
)

# Each repetition is a new process.
FIRST = Row("first_100k", "100,000 x 10 cells, first answer of a process", 100_000, 1, CLIENTS)

NAMES = {
    "curl": "bare libcurl", "gsoap": "gSOAP", "stock_tree": "libcurl and stock tree", "ours": "this library",
    "late": "this library, late-bound", "face": "the C++ library", "ours_walk_only": "this library",
    "face_walk": "the C++ library, by name", "one_thread": "this library, one thread",
    "eight_threads": "this library, eight threads", "gsoap_walk": "gSOAP", "ours_walk": "this library",
    "writer": "this library",
}

# Programs, by their names in the figures. SERVER and PASSWORD are replaced; the server is the development service.
EMPTY = "empty program"
PROGRAMS = {
    EMPTY: None,
    "--version": ("--version",),
    "--help": ("--help",),
    "describe": ("describe",),
    "registry list": ("registry", "list"),
    "run --server": ("run", "-e", "1", "--server", "SERVER", "--user", "joe", "--password-file", "PASSWORD"),
    "session open": ("session", "open", "--server", "SERVER", "--user", "joe", "--password-file", "PASSWORD"),
    "run --local": ("run", "--local", "-e", "1"),
}
OTHER_COMMANDS = ("--help", "describe", "registry list", "run --server", "session open")

# A bar is the most (or, where `least` is set, the least) that is acceptable of a figure. `figure` takes the measured
# figures and fails with KeyError if what it needs was not measured.
Bar = namedtuple("Bar", "title unit bar figure least", defaults=(False,))


def ratio(row, peer, limit, limit_row=None):
    """CPU time of one client as a multiple of another's."""
    return lambda all: all["calls"][row][peer]["cpu"] / all["calls"][limit_row or row][limit]["cpu"]


def ten_times(all):
    ours = [all["calls"][row]["ours"]["cpu"] for row in ("table_1k", "table_10k", "table_100k")]
    return max(ours[1] / ours[0], ours[2] / ours[1])


def written(all):
    figures = all["calls"]["write_100k"]["writer"]
    return figures["bytes"] / figures["cpu"] * 1000


def program(name, what):
    return lambda all: all["programs"][name][what]


def most_over_empty(what):
    return lambda all: max(all["programs"][name][what] for name in OTHER_COMMANDS) - all["programs"][EMPTY][what]


BARS = (
    Bar("string answer, of gSOAP's", "x", 0.85, ratio("string", "ours", "gsoap")),
    Bar("string answer, of bare libcurl's", "x", 1.2, ratio("string", "ours", "curl")),
    Bar("late-bound call, of the typed one", "x", 1.1, ratio("string", "late", "ours")),
    Bar("the C++ library's call, of the typed one", "x", 1.05, ratio("string", "face", "ours")),
    Bar("its walk through a table by name, of the typed one", "x", 2, ratio("walk_100k", "face_walk", "ours_walk_only")),
    Bar("1,000 x 10 cells, of gSOAP's", "x", 0.45, ratio("table_1k", "ours", "gsoap")),
    Bar("100,000 x 10 cells, of gSOAP's", "x", 0.45, ratio("table_100k", "ours", "gsoap")),
    Bar("the same as first answer of a process", "x", 0.45, ratio("first_100k", "ours", "gsoap")),
    Bar("peak memory of that process", "MB", 150, lambda all: all["calls"]["first_100k"]["ours"]["peak"] / 1e6),
    Bar("ten times the rows", "x", 10.5, ten_times),
    Bar("writing a table", "MB/s", 250, written, True),
    Bar("--version, CPU time", "ms", 5, program("--version", "cpu_ms")),
    Bar("--version, peak memory", "MB", 8, program("--version", "peak_mb")),
    Bar("other commands, CPU time over an empty program", "ms", 2, most_over_empty("cpu_ms")),
    Bar("other commands, peak memory over an empty program", "MB", 4, most_over_empty("peak_mb")),
    Bar("run --local -e 1, CPU time of all processes", "ms", 30, program("run --local", "cpu_ms")),
)
