// Creates the parts of the page and connects them.
import {createAnswer} from './answer.js';
import {connect} from './connection.js';
import {createCopy} from './copy.js';
import {createCounters} from './counters.js';
import {find, make} from './dom.js';
import {createEditor} from './editor.js';
import {createFaults} from './faults.js';
import {createFiles, refreshFiles} from './files.js';
import {createParameters} from './parameters.js';
import {createRequests} from './requests.js';
import {createRunner} from './run.js';
import {createSessions, openSession, setSessions} from './sessions.js';
import {get, set, watch} from './store.js';
import {tabs} from './tabs.js';

const CONNECTION_TEXTS = {
  connecting: 'Connecting',
  live: 'Connected',
  lost: 'Not connected',
  quiet: 'No live requests',
  unknown: 'Not allowed',
};
const NOTICES = {
  lost: 'The service does not answer. Trying again until it does.',
  quiet: 'The service answers, but sends no live requests. Trying again.',
  unknown: 'The service does not know this page. Open the address that the program printed when it started.',
};
const FIRST_SCRIPT = '// The value of the last expression is the answer.\n6 * 7\n';

const files = createFiles(find('files'));
const counters = createCounters(find('counters'));
const faults = createFaults(find('faults'));
const requests = createRequests(find('requests'));
createSessions(find('sessions'));

const editor = createEditor(find('editor'), () => runner.run());
const parameters = createParameters(find('parameters'), files.send);
find('add-parameter').addEventListener('click', () => parameters.add());

const service = tabs(find('service-tabs'), (id) => {
  if (id === 'counters') counters.refresh();
  if (id === 'faults') faults.read();
});
const language = find('language');
language.addEventListener('change', () => editor.setLanguage(language.value));

const runner = createRunner({
  editor,
  parameters,
  answer: createAnswer(),
  language: () => language.value,
  openSessions() {
    service.show('sessions');
    find('session-user').focus();
  },
  afterRun() {
    set(
      'sessions',
      get('sessions').map((one) => (one.id === get('session') ? {...one, runs: one.runs + 1} : one)),
    );
    refreshFiles().catch(() => {});
  },
});
createCopy(runner.job);

watch('connection', (state) => {
  find('connection').dataset.state = state;
  find('connection').textContent = CONNECTION_TEXTS[state];
  find('notice').textContent = NOTICES[state] ?? '';
  find('notice').hidden = !NOTICES[state];
});

let isFirst = true;

function showState(state) {
  find('service-url').textContent = state.url;
  find('service-version').textContent = state.version;
  set('types', state.types);
  set('files', state.files);
  setSessions(state.sessions);
  if (isFirst) {
    language.replaceChildren(...state.languages.map((name) => make('option', {value: name, text: name})));
    find('language-field').hidden = state.languages.length < 2;
    const script = state.script ?? {};
    if (script.language) language.value = script.language;
    editor.setLanguage(language.value);
    editor.setText(script.code || FIRST_SCRIPT);
    parameters.fill(script.parameters ?? []);
  }
  isFirst = false;
  if (!state.needsPassword && state.sessions.length === 0) openSession('page', '').catch(() => {});
}

connect({
  state: showState,
  reset: requests.reset,
  request(one) {
    requests.add(one);
    // A download may have found out the name of a file.
    if (one.status === 200 && one.target.includes('/files/')) refreshFiles().catch(() => {});
    counters.refresh();
  },
});
