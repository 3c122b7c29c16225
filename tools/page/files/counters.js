// The counts of the service. They are read while their panel is shown, and after each request.
import {call} from './api.js';
import {make} from './dom.js';
import {countText} from './format.js';

const PAUSE = 300; // between two readings, in milliseconds

// scriptsRun becomes "scripts run".
const wordsOf = (name) => name.replace(/([a-z])([A-Z])/g, (_, end, start) => `${end} ${start.toLowerCase()}`);

// [name, number] of each count; those of the actions have the actions' own names.
function flat(counts, nameOf = wordsOf) {
  return Object.entries(counts).flatMap(([name, value]) =>
    value !== null && typeof value === 'object' ? flat(value, (own) => own) : [[nameOf(name), value]],
  );
}

// Returns {refresh()}.
export function createCounters(panel) {
  const list = make('dl', {class: 'counters'});
  const failure = make('p', {class: 'form-failure', role: 'alert'});
  let waits = false;

  async function read() {
    waits = false;
    if (panel.hidden) return;
    try {
      const counts = await call('GET', 'counts');
      list.replaceChildren(
        ...flat(counts).map(([name, value]) =>
          make(
            'div',
            {'data-count': name},
            make('dt', {text: name}),
            make('dd', {text: typeof value === 'number' ? countText(value) : String(value)}),
          ),
        ),
      );
      failure.textContent = '';
    } catch (error) {
      failure.textContent = error.message;
    }
  }

  panel.append(failure, list);
  return {
    refresh() {
      if (waits || panel.hidden) return;
      waits = true;
      setTimeout(read, list.childElementCount ? PAUSE : 0);
    },
  };
}
