// A table as a chart of chosen columns. Chart.js is loaded for the first one.
import {axisColumns, chartData, firstChoice, KINDS, numericColumns, ROW_NUMBER} from './chart_data.js';
import {emptyState, field, make, select} from './dom.js';
import {countText} from './format.js';

let library = null;

function loadLibrary() {
  library ??= new Promise((resolve, reject) => {
    document.head.append(
      make('script', {
        src: 'lib/chart.js/chart.min.js',
        on: {
          load: () => resolve(window.Chart),
          error: () => reject(new Error('Chart.js could not be loaded.')),
        },
      }),
    );
  });
  return library;
}

const colour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();

function settingsOf(kind, data, xName) {
  const text = colour('--soft');
  const axis = (title) => ({
    ticks: {color: text},
    grid: {color: colour('--line')},
    title: {display: title !== '', text: title, color: text},
  });
  return {
    type: kind,
    data: {
      labels: kind === 'scatter' ? undefined : data.labels,
      datasets: data.series.map((one, index) => {
        const paint = colour(`--series-${(index % 6) + 1}`);
        return {
          label: one.name,
          data: one.points,
          backgroundColor: paint,
          borderColor: paint,
          borderWidth: kind === 'line' ? 2 : 0,
          pointRadius: kind === 'scatter' ? 3 : data.labels.length > 100 ? 0 : 3,
          maxBarThickness: 48,
        };
      }),
    },
    options: {
      animation: false,
      responsive: true,
      maintainAspectRatio: false,
      parsing: kind === 'scatter' ? false : undefined,
      scales: {x: axis(xName), y: axis(data.series.length === 1 ? data.series[0].name : '')},
      plugins: {legend: {display: data.series.length > 1, labels: {color: text}}},
    },
  };
}

// Returns {set(table or null), draw()}.
export function createChart(panel) {
  let table = null;
  let choice = null;
  let drawn = null;
  const frame = make('div', {class: 'chart-frame'});
  const note = make('p', {class: 'hint'});
  const nameOf = (column) => (column === ROW_NUMBER ? 'Row number' : table.columns[column].name);

  function forget() {
    drawn?.destroy();
    drawn = null;
    frame.replaceChildren();
  }

  function controls() {
    const kinds = select(Object.entries(KINDS), {
      id: 'chart-kind',
      on: {change: (event) => change({kind: event.target.value})},
    });
    kinds.value = choice.kind;
    const axis = axisColumns(table, choice.kind);
    if (!axis.includes(choice.x)) choice.x = axis[1] ?? ROW_NUMBER;
    const xs = select(
      axis.map((column) => [column, nameOf(column)]),
      {id: 'chart-x', on: {change: (event) => change({x: Number(event.target.value)})}},
    );
    xs.value = choice.x;
    const ys = make(
      'fieldset',
      {class: 'choices', id: 'chart-ys'},
      make('legend', {text: 'Values'}),
      ...numericColumns(table).map(yBox),
    );
    return make('div', {class: 'chart-controls'}, field('Kind', kinds), field('Axis', xs), ys);
  }

  function yBox(column) {
    const box = make('input', {
      type: 'checkbox',
      checked: choice.ys.includes(column),
      on: {
        change: () => {
          const ys = box.checked ? [...choice.ys, column] : choice.ys.filter((one) => one !== column);
          change({ys: ys.sort((a, b) => a - b)}, false);
        },
      },
    });
    return make('label', {class: 'choice'}, box, nameOf(column));
  }

  function change(changes, needsControls = true) {
    const focused = document.activeElement?.id;
    choice = {...choice, ...changes};
    if (needsControls) {
      panel.querySelector('.chart-controls').replaceWith(controls());
      if (focused) document.getElementById(focused)?.focus();
    }
    draw();
  }

  async function draw() {
    if (!table || panel.hidden || !panel.contains(frame)) return;
    const wanted = choice;
    const Chart = await loadLibrary().catch((error) => {
      note.textContent = error.message;
    });
    if (!Chart || wanted !== choice || !table) return;
    forget();
    const data = chartData(table, choice);
    note.textContent = data.left
      ? `The first ${countText(data.labels.length)} of ${countText(table.rows.length)} rows.`
      : '';
    if (!data.series.length) note.textContent = 'Choose at least one column of values.';
    const names = data.series.map((one) => one.name).join(', ');
    const canvas = make('canvas', {
      role: 'img',
      'aria-label': `${KINDS[choice.kind]}: ${names} by ${nameOf(choice.x)}`,
    });
    frame.replaceChildren(canvas);
    drawn = new Chart(canvas, settingsOf(choice.kind, data, nameOf(choice.x)));
  }

  function set(answer) {
    forget();
    const hadColumns = table && answer && JSON.stringify(table.columns) === JSON.stringify(answer.columns);
    table = answer;
    if (!table)
      panel.replaceChildren(emptyState('A script that answers a table can be shown as a chart here.'));
    else if (numericColumns(table).length === 0)
      panel.replaceChildren(emptyState('This table has no column of numbers to draw.'));
    else {
      choice = hadColumns && choice ? {...choice} : firstChoice(table);
      panel.replaceChildren(controls(), frame, note);
      draw();
    }
  }

  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => draw());
  set(null);
  return {set, draw};
}
