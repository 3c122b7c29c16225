// The rows of a table in the order in which they are shown.

const NUMBERS = new Set(['byte', 'short', 'int', 'long', 'float', 'double']);
const collator = new Intl.Collator('en');

export const isNumeric = (type) => NUMBERS.has(type);

export function cellText(cell) {
  if (cell === null || cell === undefined) return '';
  if (typeof cell === 'object') return cell.value === undefined ? JSON.stringify(cell) : String(cell.value);
  return String(cell);
}

// NaN for a cell without a number.
export function cellNumber(cell) {
  if (typeof cell === 'number') return cell;
  if (typeof cell === 'boolean') return Number(cell);
  return typeof cell === 'string' && cell.trim() !== '' ? Number(cell.replace(/INF$/i, 'Infinity')) : NaN;
}

function byNumber(rows, column, sign) {
  const keys = Float64Array.from({length: rows.length}, (_, row) => cellNumber(rows.at(row)[column]));
  return (a, b) => {
    const isLastA = Number.isNaN(keys[a]);
    const isLastB = Number.isNaN(keys[b]);
    if (isLastA || isLastB) return isLastA - isLastB || a - b;
    return sign * Math.sign(keys[a] - keys[b]) || a - b;
  };
}

function byText(rows, column, sign) {
  const keys = Array.from({length: rows.length}, (_, row) => cellText(rows.at(row)[column]));
  return (a, b) => {
    if (keys[a] === '' || keys[b] === '') return (keys[a] === '') - (keys[b] === '') || a - b;
    return sign * collator.compare(keys[a], keys[b]) || a - b;
  };
}

// The indices of the rows. The direction is "ascending", "descending" or "none"; cells without a value
// come last.
export function orderOf(table, column, direction) {
  const order = Uint32Array.from({length: table.rows.length}, (_, index) => index);
  if (direction === 'none') return order;
  const compare = isNumeric(table.columns[column].type) ? byNumber : byText;
  return order.sort(compare(table.rows, column, direction === 'ascending' ? 1 : -1));
}

// The width of each column in characters, from its name and some of its cells.
export function widthsOf(table) {
  const SAMPLES = 200;
  const step = Math.max(1, Math.floor(table.rows.length / SAMPLES));
  const widths = table.columns.map((column) => column.name.length + 2);
  for (let row = 0; row < table.rows.length; row += step)
    for (let column = 0; column < widths.length; ++column)
      widths[column] = Math.max(widths[column], cellText(table.rows.at(row)[column]).length);
  return widths.map((width) => Math.min(Math.max(width, 4), 40) + 2);
}
