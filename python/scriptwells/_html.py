"""Tables in notebooks."""

from __future__ import annotations

import html
import numbers
from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from ._table import Table

MOST_ROWS = 60


def cell_html(value: object) -> str:
    if value is None:
        return "<td></td>"
    is_number = isinstance(value, numbers.Number) and not isinstance(value, bool)
    align = ' style="text-align: right"' if is_number else ""
    return f"<td{align}>{html.escape(str(value))}</td>"


def table_html(table: Table) -> str:
    """An HTML table with the first rows, and a line that counts all."""
    head = "".join(f'<th title="{html.escape(c.type_name)}">{html.escape(c.name)}</th>' for c in table.columns)
    rows = "".join(f"<tr>{''.join(map(cell_html, row))}</tr>\n" for row in table[:MOST_ROWS])
    shown = f", {MOST_ROWS} shown" if len(table) > MOST_ROWS else ""
    count = f"{len(table)} rows, {len(table.columns)} columns{shown}"
    return f"<table>\n<thead><tr>{head}</tr></thead>\n<tbody>\n{rows}</tbody>\n</table>\n<p>{count}</p>"
