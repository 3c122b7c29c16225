// Faults to order: one fault for the next request, or odd answers for some of them.
import {call} from './api.js';
import {announce, button, field, make, select} from './dom.js';
import {plural, timeText} from './format.js';

const ACTIONS = [['', 'any request'], 'Execute', 'CreateUserSession', 'CloseUserSession'];
const MOST_REMEMBERED = 8;

// What the number and the text of a kind mean; a kind without one has no field for it.
const KINDS = {
  fault: {title: 'SOAP fault', number: 'Code', value: 5, text: 'Description'},
  status: {title: 'HTTP status', number: 'Status', value: 503, text: 'Body'},
  cut: {title: 'Answer cut off'},
  silence: {title: 'Silence, then the answer', number: 'Milliseconds', value: 2000},
};
const SPREADS = {
  count: {title: 'the next ones', label: 'How many', value: 1},
  all: {title: 'all from now on'},
  chance: {title: 'some, by chance', label: 'Chance, 0 to 1', value: 0.1},
};

const titles = (table) => Object.entries(table).map(([name, {title}]) => [name, title]);
const spreadText = (name, amount) =>
  ({
    count: plural(Number(amount), 'request'),
    all: 'all requests',
    chance: `requests by a chance of ${amount}`,
  })[name];
const actionText = (action) => (action ? `the next ${action}` : 'the next request');

// A form that sends an order, and shows why it was rejected.
function orderForm(title, parts, send) {
  const failure = make('p', {class: 'form-failure', role: 'alert'});
  return make(
    'form',
    {
      class: 'form',
      'aria-label': title,
      novalidate: true,
      on: {
        submit: async (event) => {
          event.preventDefault();
          failure.textContent = '';
          await send().catch((error) => {
            failure.textContent = error.message;
          });
        },
      },
    },
    make('h3', {text: title}),
    ...parts,
    failure,
  );
}

function faultForm(remember) {
  const kind = select(titles(KINDS), {id: 'fault-kind'});
  const action = select(ACTIONS, {id: 'fault-action'});
  const number = make('input', {id: 'fault-number', type: 'number', min: 1});
  const text = make('input', {id: 'fault-text', autocomplete: 'off'});
  const numberField = field('Code', number);
  const textField = field('Description', text, 'field wide');

  function showFields() {
    const {number: numberLabel, value, text: textLabel} = KINDS[kind.value];
    numberField.hidden = !numberLabel;
    textField.hidden = !textLabel;
    numberField.firstChild.textContent = numberLabel ?? '';
    textField.firstChild.textContent = textLabel ?? '';
    number.value = value ?? '';
  }
  kind.addEventListener('change', showFields);
  showFields();

  return orderForm(
    'Order a fault',
    [
      make(
        'div',
        {class: 'fields'},
        field('Kind', kind),
        numberField,
        field('Applies to', action),
        textField,
      ),
      make('div', {class: 'actions'}, make('button', {class: 'primary', text: 'Order fault'})),
    ],
    async () => {
      const order = {kind: kind.value, action: action.value};
      if (!numberField.hidden) order.number = Number(number.value);
      if (!textField.hidden) order.text = text.value;
      await call('POST', 'faults', order);
      remember(
        [KINDS[order.kind].title, order.number, 'for', actionText(order.action)].filter(Boolean).join(' '),
      );
    },
  );
}

function nameBoxes(names) {
  const groups = Map.groupBy ? Map.groupBy(names, (one) => one.group) : new Map();
  if (groups.size === 0)
    for (const one of names) groups.set(one.group, [...(groups.get(one.group) ?? []), one]);
  return [...groups].map(([group, members]) =>
    make(
      'details',
      {class: 'odd-group', open: group === 'answers'},
      make('summary', {text: `${group} (${members.length})`}),
      make(
        'fieldset',
        {class: 'choices'},
        make('legend', {class: 'unseen', text: group}),
        ...members.map(({name, use}) =>
          make('label', {class: 'choice', title: use}, make('input', {type: 'checkbox', value: name}), name),
        ),
      ),
    ),
  );
}

function oddForm(remember) {
  const boxes = make('div', {id: 'odd-names'}, make('p', {class: 'empty', text: 'Reading the names…'}));
  const spread = select(titles(SPREADS), {id: 'odd-spread'});
  const amount = make('input', {id: 'odd-amount', type: 'number', min: 0, step: 'any'});
  const seed = make('input', {id: 'odd-seed', type: 'number', min: 0, value: 1});
  const action = select(ACTIONS, {id: 'odd-action'});
  const amountField = field('How many', amount);
  const seedField = field('Seed', seed);

  function showFields() {
    const {label, value} = SPREADS[spread.value];
    amountField.hidden = !label;
    amountField.firstChild.textContent = label ?? '';
    amount.value = value ?? '';
    seedField.hidden = spread.value !== 'chance';
  }
  spread.addEventListener('change', showFields);
  showFields();

  async function order() {
    const names = [...boxes.querySelectorAll('input:checked')].map((box) => box.value).join('+');
    if (!names) throw new Error('Choose at least one odd answer.');
    const spreads = {
      count: {requests: Number(amount.value)},
      all: {requests: 0},
      chance: {chance: Number(amount.value), seed: Number(seed.value)},
    };
    await call('POST', 'odd', {names, action: action.value, ...spreads[spread.value]});
    remember(`${names} for ${spreadText(spread.value, amount.value)}`);
  }

  const form = orderForm(
    'Order odd answers',
    [
      boxes,
      make(
        'div',
        {class: 'fields'},
        field('Requests', spread),
        amountField,
        seedField,
        field('Applies to', action),
      ),
      make(
        'div',
        {class: 'actions'},
        make('button', {class: 'primary', text: 'Order odd answers'}),
        button('Remove all odd answers', async () => {
          await call('POST', 'odd', {names: ''}).catch((error) => announce(error.message));
          remember('All odd answers are removed');
        }),
      ),
    ],
    order,
  );
  return {form, read: async () => boxes.replaceChildren(...nameBoxes((await call('GET', 'odd')).names))};
}

// Returns {read()}, which reads the names of odd answers once.
export function createFaults(panel) {
  const remembered = make('ol', {class: 'remembered', 'aria-label': 'Ordered here'});

  function remember(text) {
    remembered.prepend(make('li', {}, make('span', {class: 'soft', text: timeText(Date.now())}), ` ${text}`));
    while (remembered.childElementCount > MOST_REMEMBERED) remembered.lastChild.remove();
    announce(`Ordered: ${text}`);
  }
  const odd = oddForm(remember);
  let isRead = false;
  panel.append(remembered, faultForm(remember), odd.form);
  return {
    async read() {
      if (isRead) return;
      isRead = true;
      await odd.read().catch(() => {
        isRead = false;
      });
    },
  };
}
