// Enters the service with the token of the address, reads its state, follows its events, and tries again
// when it is gone.
import {call, exchange} from './api.js';
import {get, set, watch} from './store.js';

const FIRST_PAUSE = 500;
const LONGEST_PAUSE = 5000;

let token = '';
let events = null;
let timer = null;
let pause = FIRST_PAUSE;
let handlers = {};

function takeToken() {
  token = location.hash.slice(1);
  if (token) history.replaceState(null, '', location.pathname);
}

// The address of another start of the service is opened in this window.
function enterAgain() {
  takeToken();
  if (!token) return;
  stop();
  handlers.reset();
  set('connection', 'connecting');
  tryNow();
}

// handlers: state(answer), request(one), reset() for another service.
export function connect(its) {
  handlers = its;
  takeToken();
  addEventListener('hashchange', enterAgain);
  watch('connection', (state) => {
    if (state === 'lost') tryLater();
    if (state === 'unknown') stop();
  });
  return tryNow();
}

function stop() {
  clearTimeout(timer);
  timer = null;
  events?.close();
  events = null;
}

function tryLater() {
  if (timer) return;
  stop();
  timer = setTimeout(tryNow, pause);
  pause = Math.min(pause * 2, LONGEST_PAUSE);
}

async function tryNow() {
  timer = null;
  try {
    if (token) await exchange(token);
    token = '';
    handlers.state(await call('GET', 'state'));
    listen();
  } catch (error) {
    if (error.status === 401 || error.status === 403) set('connection', 'unknown');
    else set('connection', 'lost');
  }
}

function listen() {
  events?.close();
  events = new EventSource('api/events');
  events.addEventListener('request', (event) => handlers.request(JSON.parse(event.data)));
  events.onopen = () => {
    pause = FIRST_PAUSE;
    set('connection', 'live');
  };
  events.onerror = () => {
    set('connection', get('connection') === 'live' ? 'lost' : 'quiet');
    tryLater();
  };
}
