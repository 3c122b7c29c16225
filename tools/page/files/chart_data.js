// What a chart shows of a table.
import {countText} from './format.js';
import {cellNumber, cellText, isNumeric} from './table_model.js';

export const KINDS = {bar: 'Bars', line: 'Line', scatter: 'Scatter'};
const MOST_POINTS = {bar: 500, line: 2000, scatter: 5000};
export const ROW_NUMBER = -1; // in place of a column

const indices = (table, accepts) =>
  table.columns.flatMap((column, index) => (accepts(column.type) ? [index] : []));

export const numericColumns = (table) => indices(table, isNumeric);

// The columns that a chart may have on its x axis.
export function axisColumns(table, kind) {
  const columns = kind === 'scatter' ? numericColumns(table) : table.columns.map((_, index) => index);
  return [ROW_NUMBER, ...columns];
}

// A first choice: texts or dates along the axis, numbers as heights.
export function firstChoice(table) {
  const numbers = numericColumns(table);
  const others = indices(table, (type) => !isNumeric(type));
  return {kind: 'bar', x: others[0] ?? ROW_NUMBER, ys: numbers.slice(0, 1)};
}

const height = (cell) => {
  const number = cellNumber(cell);
  return Number.isFinite(number) ? number : null;
};

// {labels, series: [{name, points}], left}: `left` rows are not shown.
export function chartData(table, {kind, x, ys}) {
  const rows = table.rows.slice(0, MOST_POINTS[kind]);
  const position = (row, index) => (x === ROW_NUMBER ? index + 1 : height(row[x]));
  const label = (row, index) => (x === ROW_NUMBER ? countText(index + 1) : cellText(row[x]));
  const series = ys.map((y) => ({
    name: table.columns[y].name,
    points:
      kind === 'scatter'
        ? rows
            .map((row, index) => ({x: position(row, index), y: height(row[y])}))
            .filter((p) => p.x !== null && p.y !== null)
        : rows.map((row) => height(row[y])),
  }));
  return {labels: rows.map(label), series, left: table.rows.length - rows.length};
}
