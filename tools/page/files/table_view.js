// A table of any length: only the rows in sight are elements. The grid has the focus and names its active
// cell to screen readers, so all keys work however many rows there are.
import {announce, make} from './dom.js';
import {countText, plural} from './format.js';
import {cellText, isNumeric, orderOf, widthsOf} from './table_model.js';
import {TableRows} from './table_rows.js';

const ROW_HEIGHT = 28;
const SPARE_ROWS = 4;
const TALLEST = 15_000_000; // browsers limit the height of an element
const MOST_COLUMNS = 200;
const NEXT_DIRECTION = {none: 'ascending', ascending: 'descending', descending: 'none'};

let tables = 0;

class Table {
  constructor(table) {
    this.table = {...table, columns: table.columns.slice(0, MOST_COLUMNS)};
    this.hidden = table.columns.length - this.table.columns.length;
    this.id = `table-${++tables}`;
    this.order = orderOf(this.table, 0, 'none');
    this.sorted = {column: -1, direction: 'none'};
    this.active = {row: 0, column: 0}; // row -1 is the header
    this.rows = new TableRows(this.table.columns);
    this.element = this.create();
    new ResizeObserver(() => this.render()).observe(this.grid);
  }

  create() {
    const {columns, rows} = this.table;
    this.head = make(
      'div',
      {role: 'row', 'aria-rowindex': 1, class: 'table-row'},
      make('div', {role: 'columnheader', 'aria-colindex': 1, class: 'row-number', text: '#'}),
      ...columns.map((column, index) => this.headCell(column, index)),
    );
    this.body = make('div', {role: 'rowgroup', class: 'table-body'}, this.rows.element);
    this.grid = make(
      'div',
      {
        role: 'grid',
        tabindex: 0,
        class: 'table',
        'aria-label': `Answer, ${plural(rows.length, 'row')}`,
        'aria-rowcount': rows.length + 1,
        'aria-colcount': columns.length + 1,
        on: {
          scroll: () => this.later(),
          keydown: (event) => this.onKey(event),
          click: (event) => this.onClick(event),
          focus: () => this.render(),
          blur: () => this.render(),
        },
      },
      make('div', {role: 'rowgroup', class: 'table-head'}, this.head),
      this.body,
    );
    const height = rows.length * ROW_HEIGHT;
    this.scale = Math.max(1, height / TALLEST);
    this.body.style.height = `${Math.min(height, TALLEST)}px`;
    const widths = widthsOf(this.table);
    const numberWidth = countText(rows.length).length + 3;
    const total = widths.reduce((sum, width) => sum + width, numberWidth);
    const tracks = widths.map((width) => `minmax(${width}ch, ${width}fr)`);
    this.grid.style.setProperty('--columns', [`${numberWidth}ch`, ...tracks].join(' '));
    this.grid.style.setProperty('--width', `${total}ch`);
    this.detail = make('p', {class: 'cell-detail'});
    return make('div', {class: 'table-box'}, this.grid, this.detail);
  }

  headCell(column, index) {
    return make(
      'div',
      {
        role: 'columnheader',
        'aria-colindex': index + 2,
        'aria-sort': 'none',
        class: isNumeric(column.type) ? 'number' : '',
        title: `${column.name}, ${column.type}: sort`,
        'data-column': index,
      },
      make('span', {class: 'column-name', text: column.name}),
    );
  }

  later() {
    if (this.waits) return;
    this.waits = true;
    requestAnimationFrame(() => {
      this.waits = false;
      this.render();
    });
  }

  // The first row in sight, and how many there are.
  sight() {
    const room = Math.max(0, this.grid.clientHeight - this.head.offsetHeight);
    return {
      first: Math.floor((this.grid.scrollTop * this.scale) / ROW_HEIGHT),
      count: Math.ceil(room / ROW_HEIGHT),
    };
  }

  render(mustFill = false) {
    const {first, count} = this.sight();
    const from = Math.max(0, first - SPARE_ROWS);
    const to = Math.min(this.order.length, first + count + SPARE_ROWS);
    // A table that is too tall moves its rows with the scroll bar.
    const shift = this.scale > 1 ? this.grid.scrollTop - first * ROW_HEIGHT : 0;
    if (mustFill || shift !== 0 || from !== this.rows.from || to !== this.rows.to)
      this.rows.show(this.table, this.order, from, to, from * ROW_HEIGHT + shift);
    this.markActive();
  }

  // Screen readers follow the id of the active cell.
  markActive() {
    const {row, column} = this.active;
    const cell = row < 0 ? this.head.children[column + 1] : this.rows.cell(row, column);
    this.marked?.removeAttribute('id');
    this.marked?.classList.remove('active');
    this.marked = cell;
    if (cell) {
      cell.id = `${this.id}-${row}-${column}`;
      this.grid.setAttribute('aria-activedescendant', cell.id);
      cell.classList.toggle('active', document.activeElement === this.grid);
    } else this.grid.removeAttribute('aria-activedescendant');
    this.detail.textContent = this.detailText();
  }

  detailText() {
    const {row, column} = this.active;
    const more = this.hidden ? ` ${plural(this.hidden, 'more column')} not shown.` : '';
    if (row < 0 || row >= this.order.length || !this.table.columns.length) return more.trim();
    const source = this.order[row];
    const text = cellText(this.table.rows.at(source)[column]);
    return `Row ${countText(source + 1)}, ${this.table.columns[column].name}: ${text || 'empty'}.${more}`;
  }

  onClick(event) {
    const cell = event.target.closest('[data-column]');
    if (!cell) return;
    const column = Number(cell.dataset.column);
    this.active = {row: this.head.contains(cell) ? -1 : this.rows.rowOf(cell), column};
    if (this.active.row < 0) this.sort(column);
    else this.markActive();
  }

  onKey(event) {
    const {row, column} = this.active;
    const {count} = this.sight();
    const lastRow = this.order.length - 1;
    const lastColumn = this.table.columns.length - 1;
    const far = event.ctrlKey || event.metaKey;
    const moves = {
      ArrowDown: [row + 1, column],
      ArrowUp: [row - 1, column],
      ArrowLeft: [row, column - 1],
      ArrowRight: [row, column + 1],
      PageDown: [row + Math.max(1, count - 1), column],
      PageUp: [Math.max(0, row - Math.max(1, count - 1)), column],
      Home: [far ? 0 : row, 0],
      End: [far ? lastRow : row, lastColumn],
    };
    if ((event.key === 'Enter' || event.key === ' ') && row < 0) this.sort(column);
    else if (moves[event.key])
      this.goTo(Math.min(moves[event.key][0], lastRow), Math.min(moves[event.key][1], lastColumn));
    else return;
    event.preventDefault();
  }

  goTo(row, column) {
    this.active = {row: Math.max(-1, row), column: Math.max(0, column)};
    this.scrollToActive();
    this.render();
  }

  scrollToActive() {
    const {row, column} = this.active;
    const room = this.grid.clientHeight - this.head.offsetHeight;
    const top = (Math.max(0, row) * ROW_HEIGHT) / this.scale;
    const bottom = ((row + 1) * ROW_HEIGHT) / this.scale;
    if (top < this.grid.scrollTop) this.grid.scrollTop = top;
    else if (bottom > this.grid.scrollTop + room) this.grid.scrollTop = bottom - room;
    const head = this.head.children[column + 1];
    const covered = this.head.children[0].offsetWidth;
    if (head.offsetLeft - covered < this.grid.scrollLeft) this.grid.scrollLeft = head.offsetLeft - covered;
    else if (head.offsetLeft + head.offsetWidth > this.grid.scrollLeft + this.grid.clientWidth)
      this.grid.scrollLeft = head.offsetLeft + head.offsetWidth - this.grid.clientWidth;
  }

  sort(column) {
    const direction = column === this.sorted.column ? NEXT_DIRECTION[this.sorted.direction] : 'ascending';
    this.sorted = {column, direction};
    this.order = orderOf(this.table, column, direction);
    for (const head of this.head.querySelectorAll('[data-column]'))
      head.setAttribute('aria-sort', Number(head.dataset.column) === column ? direction : 'none');
    this.render(true);
    announce(
      direction === 'none'
        ? 'The rows are in their own order.'
        : `Sorted by ${this.table.columns[column].name}, ${direction}.`,
    );
  }
}

// `table`: {columns: [{name, type}], rows: [[cell, ...], ...]}
export function createTable(table) {
  return new Table(table).element;
}
