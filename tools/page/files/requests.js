// The last requests, the newest first, as they come in and are answered.
import {button, emptyState, make} from './dom.js';
import {envelopeElement} from './envelope.js';
import {durationText, plural, sizeText, timeText} from './format.js';

const MOST = 200;
const MOST_BYTES = 65536; // of a message that the service sends
const FAULT = /<(?:[\w.-]+:)?Fault[\s>]/;

function outcomeOf(request) {
  if (request.status === undefined) return {text: 'waiting', kind: 'waiting'};
  if (request.status === 0 || request.status === null) return {text: 'no answer', kind: 'bad'};
  const isFault = FAULT.test(request.answer ?? '');
  const isBad = isFault || request.status >= 400;
  return {text: isFault ? `${request.status} fault` : String(request.status), kind: isBad ? 'bad' : 'good'};
}

// Long messages come without their end.
function messageElement(title, text, bytes, isRaw) {
  const size =
    bytes > MOST_BYTES ? `the first ${sizeText(MOST_BYTES)} of ${sizeText(bytes)}` : sizeText(bytes);
  const content =
    text === '' ? make('p', {class: 'empty', text: 'without content'}) : envelopeElement(text, isRaw);
  content.setAttribute('role', 'region');
  content.setAttribute('aria-label', `Content of the ${title.toLowerCase()}`);
  return make('div', {class: 'message'}, make('h3', {text: `${title}, ${size}`}), content);
}

class Entry {
  constructor(request, isRaw) {
    this.isRaw = isRaw;
    this.id = `request-${request.number}`;
    this.head = make('button', {
      type: 'button',
      class: 'request',
      'aria-expanded': 'false',
      'aria-controls': this.id,
      on: {click: () => this.toggle()},
    });
    this.body = make('div', {id: this.id, class: 'request-body', hidden: true});
    this.element = make('li', {}, this.head, this.body);
    this.show(request);
  }

  show(request) {
    this.request = request;
    const outcome = outcomeOf(request);
    this.head.replaceChildren(
      make('span', {class: 'request-time', text: timeText(request.time)}),
      make(
        'span',
        {class: 'request-name'},
        make('b', {text: request.action || request.method}),
        make('span', {class: 'soft', text: ` ${request.target}`}),
      ),
      make('span', {class: 'badge', 'data-kind': outcome.kind, text: outcome.text}),
      make('span', {class: 'request-took', text: durationText(request.milliseconds)}),
    );
    if (!this.body.hidden) this.fill();
  }

  fill() {
    const {method, target, body, bodyBytes, answer, answerBytes} = this.request;
    this.body.replaceChildren(
      make('p', {class: 'request-line', text: `${method} ${target}`}),
      messageElement('Request', body, bodyBytes, this.isRaw()),
      answer === undefined
        ? emptyState('There is no answer yet.')
        : messageElement('Answer', answer, answerBytes, this.isRaw()),
    );
  }

  toggle() {
    this.body.hidden = !this.body.hidden;
    this.head.setAttribute('aria-expanded', String(!this.body.hidden));
    if (this.body.hidden) this.body.replaceChildren();
    else this.fill();
  }
}

// Returns {add(request)}. A request comes twice: when it arrives, and when it is answered.
export function createRequests(panel) {
  const entries = new Map();
  let newest = 0;
  const list = make('ol', {class: 'requests', reversed: true});
  const count = make('span', {class: 'soft', role: 'status'});
  const raw = make('input', {type: 'checkbox', id: 'raw', on: {change: showAgain}});
  const clearButton = button('Clear list', () => {
    clear();
    panel.focus();
  });
  const bar = make(
    'div',
    {class: 'bar'},
    count,
    make('label', {class: 'choice'}, raw, 'As sent'),
    clearButton,
  );
  const empty = emptyState('Requests appear here as the service gets them. Run a script to see one.');

  function update() {
    count.textContent = plural(entries.size, 'request');
    bar.hidden = entries.size === 0;
    list.hidden = entries.size === 0;
    empty.hidden = entries.size !== 0;
  }

  function showAgain() {
    for (const entry of entries.values()) entry.show(entry.request);
  }

  function clear() {
    entries.clear();
    list.replaceChildren();
    update();
  }

  function add(request) {
    const known = entries.get(request.number);
    if (known) {
      known.show(request);
      return;
    }
    if (request.number <= newest) return; // it was cleared, or is too old
    newest = request.number;
    const entry = new Entry(request, () => raw.checked);
    entries.set(request.number, entry);
    list.prepend(entry.element);
    while (entries.size > MOST) {
      const [oldest] = entries.keys();
      entries.get(oldest).element.remove();
      entries.delete(oldest);
    }
    update();
  }

  // Another service counts from 1 again.
  function reset() {
    newest = 0;
    clear();
  }

  panel.append(bar, empty, list);
  update();
  return {add, reset};
}
