"""Prints the figures of a run and the bars."""

from rows import BARS, FIRST, NAMES, PROGRAMS, ROWS


def shown_time(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}" if nanoseconds < 1000 * size else f"{nanoseconds / size:.0f} {unit}"
    return f"{nanoseconds / 1e3:.3g} µs"


def shown_count(count):
    return "-" if count is None else f"{count:,.0f}"


def print_calls(all):
    print(f"\n{'per call':<28}{'CPU':>10}{'wall':>10}{'instructions':>16}{'allocations':>13}{'peak':>9}")
    for row in (*ROWS, FIRST):
        figures = all["calls"].get(row.key, {})
        if figures:
            print(row.title)
        for peer in row.peers:
            if peer not in figures:
                continue
            one = figures[peer]
            peak = f"{one['peak'] / 1e6:.0f} MB" if "peak" in one else ""
            print(f"  {NAMES[peer]:<26}{shown_time(one['cpu']):>10}{shown_time(one['wall']):>10}"
                  f"{shown_count(one['instructions']):>16}{shown_count(one['allocations']):>13}{peak:>9}")


def print_programs(all):
    if not all["programs"]:
        return
    print(f"\n{'program':<28}{'CPU':>10}{'peak':>10}")
    for name in PROGRAMS:
        one = all["programs"][name]
        print(f"  {name:<26}{one['cpu_ms']:>7.1f} ms{one['peak_mb']:>7.1f} MB")


def judged(all):
    """The bars with their figures; None for one that was not measured."""
    rows = []
    for bar in BARS:
        try:
            figure = bar.figure(all)
        except KeyError:
            figure = None
        is_met = None if figure is None else (figure >= bar.bar if bar.least else figure <= bar.bar)
        rows.append({"title": bar.title, "unit": bar.unit, "bar": bar.bar, "least": bar.least, "figure": figure,
                     "ok": is_met})
    return rows


def print_bars(rows):
    print("\nbars (ratios are of CPU time)")
    for row in rows:
        figure = "-" if row["figure"] is None else f"{row['figure']:.3g}"
        verdict = {None: "not measured", True: "ok", False: "MISSED"}[row["ok"]]
        limit = f"{'at least' if row['least'] else 'at most'} {row['bar']:g} {row['unit']}"
        print(f"  {row['title']:<52}{figure:>7} {row['unit']:<5}{limit:<20}{verdict}")
