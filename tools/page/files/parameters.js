// The typed parameters of a script: rows of name, type and value.
import {announce, button, field, make, select} from './dom.js';
import {get, watch} from './store.js';

const EXAMPLES = {
  byte: '5',
  short: '5',
  int: '42',
  long: '9007199254740993',
  float: '1.5',
  double: '1.5',
  string: 'text',
  date: '2024-03-05',
  time: '10:15:30',
  datetime: '2024-03-05T10:15:30',
  duration: 'P1DT2H',
};

// Returns {values(), fill(list), add()}; `values` throws if a file is missing. `uploadFile(file)` returns the
// uploaded one.
export function createParameters(parent, uploadFile) {
  const rows = [];

  function number() {
    rows.forEach((row, index) => row.element.setAttribute('aria-label', `Parameter ${index + 1}`));
  }

  function remove(row) {
    const index = rows.indexOf(row);
    rows.splice(index, 1);
    row.end();
    row.element.remove();
    number();
    announce('Parameter removed');
    const next = rows[Math.min(index, rows.length - 1)];
    (next ? next.name : document.getElementById('add-parameter')).focus();
  }

  function add(one = {}) {
    const row = createRow(one, uploadFile, () => remove(row));
    rows.push(row);
    parent.append(row.element);
    number();
    return row;
  }

  return {
    values: () => rows.map((row) => row.value()),
    fill: (list) => list.forEach(add),
    add: () => add().name.focus(),
  };
}

function createRow(one, uploadFile, onRemove) {
  const name = make('input', {value: one.name ?? '', autocomplete: 'off', spellcheck: 'false', size: 10});
  const type = select(get('types'), {});
  type.value = one.type ?? 'string';
  const place = make('div', {class: 'parameter-value'});
  let control;

  function showControl(value) {
    control?.end?.();
    control = controlOf(type.value, value, uploadFile);
    place.replaceChildren(field('Value', control.element));
    if (control.extra) place.append(control.extra);
  }
  type.addEventListener('change', () => showControl(control.text?.() ?? ''));
  showControl(one.value ?? '');

  const element = make(
    'div',
    {class: 'parameter', role: 'group'},
    field('Name', name),
    field('Type', type),
    place,
    button('×', onRemove, {class: 'quiet', 'aria-label': 'Remove parameter', title: 'Remove'}),
  );
  const end = () => control.end?.();
  return {element, name, end, value: () => ({name: name.value, type: type.value, ...control.value()})};
}

function controlOf(type, value, uploadFile) {
  if (type === 'file') return fileControl(uploadFile);
  if (type === 'boolean') return booleanControl(value);
  const element =
    type === 'string'
      ? make('textarea', {rows: 1, spellcheck: 'false', value})
      : make('input', {autocomplete: 'off', spellcheck: 'false', value, placeholder: EXAMPLES[type] ?? ''});
  return {element, text: () => element.value, value: () => ({value: element.value})};
}

function booleanControl(value) {
  const element = select(['true', 'false']);
  element.value = value === 'false' ? 'false' : 'true';
  return {element, text: () => element.value, value: () => ({value: element.value})};
}

// A select of the files on the service, and a button that uploads one.
function fileControl(uploadFile) {
  const element = select([]);
  const show = (files) => {
    const chosen = element.value;
    element.replaceChildren(...files.map((file) => make('option', {value: file.id, text: file.name})));
    if (files.length === 0) element.append(make('option', {value: '', text: 'no file yet'}));
    if (files.some((file) => String(file.id) === chosen)) element.value = chosen;
  };
  const end = watch('files', (files) => show(files.filter((file) => file.from === 'upload')));
  const chooser = make('input', {
    type: 'file',
    class: 'unseen',
    tabindex: -1,
    'aria-label': 'File for the parameter',
  });
  chooser.addEventListener('change', async () => {
    const uploaded = await uploadFile(chooser.files[0]);
    chooser.value = '';
    if (uploaded) element.value = uploaded.id;
  });
  const extra = make(
    'span',
    {class: 'parameter-upload'},
    chooser,
    button('Upload…', () => chooser.click()),
  );
  const value = () => {
    if (!element.value) throw new Error('Choose a file for each parameter of the type file.');
    return {file: Number(element.value)};
  };
  return {element, extra, end, value};
}
