// The pane of the answer: what the last run returned, its chart, and the console.
import {button, emptyState, find, make} from './dom.js';
import {createChart} from './chart_view.js';
import {countText, durationText, plural} from './format.js';
import {PackedRows} from './packed_rows.js';
import {createTable} from './table_view.js';
import {tabs} from './tabs.js';
import {valueElement} from './value_view.js';

// Where a call failed, as the library names it.
const PHASES = {
  script: 'Script fault',
  cancelled: 'Stopped',
  address: 'The address is wrong',
  connect: 'No connection',
  TLS: 'No secure connection',
  send: 'The request could not be sent',
  wait: 'No answer in time',
  receive: 'The answer broke off',
  answer: 'The answer cannot be read',
  session: 'The session was rejected',
  'local file': 'A file cannot be read',
  conversion: 'A value cannot be sent',
};

function errorElement(error, goTo) {
  const phase = PHASES[error.phase] ?? 'Failed';
  const box = make(
    'div',
    {class: 'failure'},
    make('p', {class: 'failure-head', text: error.code === undefined ? phase : `${phase} ${error.code}`}),
    make('p', {class: 'failure-text', text: error.message}),
  );
  if (error.line) box.append(button(`Go to line ${error.line}`, () => goTo(error.line, error.column)));
  return box;
}

const notesElement = (notes) =>
  make('ul', {class: 'notes', 'aria-label': 'Notes'}, ...notes.map((text) => make('li', {text})));

// Returns {wait(), show(result, goTo), fail(message)}.
export function createAnswer() {
  const panel = find('value');
  const facts = find('answer-facts');
  const chart = createChart(find('chart'));
  const shown = tabs(find('answer-tabs'), (id) => id === 'chart' && chart.draw());
  let timer = null;

  function settle(text) {
    clearInterval(timer);
    panel.removeAttribute('aria-busy');
    panel.className = 'panel';
    facts.textContent = text;
  }

  function showConsole(lines) {
    find('tab-console').textContent = lines.length ? `Console (${countText(lines.length)})` : 'Console';
    find('console').replaceChildren(
      lines.length ? consoleElement(lines) : emptyState('The script wrote nothing to the console.'),
    );
  }

  function showValue(value) {
    if (!Array.isArray(value.columns)) {
      chart.set(null);
      panel.replaceChildren(valueElement(value));
      return value.type;
    }
    const table = {columns: value.columns, rows: new PackedRows(value.rows)};
    chart.set(table);
    panel.classList.add('holds-table');
    panel.replaceChildren(createTable(table));
    return `table, ${plural(table.rows.length, 'row')}`;
  }

  function show(result, goTo) {
    const took = durationText(result.milliseconds);
    showConsole(result.console ?? []);
    settle('');
    if (result.error) {
      chart.set(null);
      panel.replaceChildren(errorElement(result.error, goTo));
      facts.textContent = took;
      shown.show('value');
    } else {
      facts.textContent = `${showValue(result.value)}, ${took}`;
      if (shown.shown() === 'chart') shown.show(result.value.columns ? 'chart' : 'value');
    }
    if (result.notes?.length) panel.prepend(notesElement(result.notes));
  }

  // Not at once, since most scripts answer sooner than one can see.
  function showWaiting() {
    panel.className = 'panel waits';
    panel.replaceChildren(emptyState('The script is running.'));
  }

  function wait() {
    const start = performance.now();
    panel.setAttribute('aria-busy', 'true');
    clearInterval(timer);
    timer = setInterval(() => {
      if (!panel.classList.contains('waits')) showWaiting();
      facts.textContent = durationText(performance.now() - start);
    }, 150);
  }

  function fail(message) {
    settle('');
    chart.set(null);
    panel.replaceChildren(errorElement({message}));
    shown.show('value');
  }

  panel.append(emptyState('Run the script to see its answer here.'));
  find('console').append(emptyState('What scripts write with console.log appears here.'));
  return {wait, show, fail};
}

function consoleElement(lines) {
  const list = make('ol', {class: 'console'});
  for (const {level, text} of lines)
    list.append(
      make('li', {'data-level': level}, make('span', {class: 'level', text: level}), make('pre', {text})),
    );
  return list;
}
