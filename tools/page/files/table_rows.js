// The rows of a table that are in sight. The same elements are filled again while the table scrolls, so that
// the browser's memory stays the same however far one scrolls.
import {make} from './dom.js';
import {countText} from './format.js';
import {cellText, isNumeric} from './table_model.js';

export class TableRows {
  constructor(columns) {
    this.columns = columns;
    this.rows = [];
    this.from = 0;
    this.to = 0;
    this.element = make('div', {class: 'table-window', role: 'presentation'});
  }

  add() {
    const cells = this.columns.map((column, index) =>
      make(
        'div',
        {
          role: 'gridcell',
          'aria-colindex': index + 2,
          class: isNumeric(column.type) ? 'number' : '',
          'data-column': index,
        },
        document.createTextNode(''),
      ),
    );
    const number = make(
      'div',
      {role: 'rowheader', 'aria-colindex': 1, class: 'row-number'},
      document.createTextNode(''),
    );
    const element = make('div', {role: 'row', class: 'table-row'}, number, ...cells);
    this.rows.push({element, number, cells});
    this.element.append(element);
  }

  // Shows the rows `from` to `to` of the order, the first of them `top` pixels below the start.
  show(table, order, from, to, top) {
    while (this.rows.length < to - from) this.add();
    this.rows.forEach(({element, number, cells}, index) => {
      const row = from + index;
      element.hidden = row >= to;
      if (row >= to) return;
      element.setAttribute('aria-rowindex', row + 2);
      number.firstChild.data = countText(order[row] + 1);
      const source = table.rows.at(order[row]);
      cells.forEach((cell, column) => {
        cell.firstChild.data = cellText(source[column]);
      });
    });
    this.element.style.transform = `translateY(${top}px)`;
    this.from = from;
    this.to = to;
  }

  // The cell of a row of the order, or nothing if it is not in sight.
  cell(row, column) {
    return row >= this.from && row < this.to ? this.rows[row - this.from].cells[column] : undefined;
  }

  // The row of the order that an element belongs to.
  rowOf(element) {
    return this.from + this.rows.findIndex((row) => row.element.contains(element));
  }
}
