// Sessions: opened with a user and password, chosen for the next runs, closed.
import {call} from './api.js';
import {announce, button, emptyState, field, find, make} from './dom.js';
import {plural, timeText} from './format.js';
import {get, set, watch} from './store.js';

const nameOf = (session) => `${session.user} (${session.id})`;

export function setSessions(sessions) {
  const chosen = get('session');
  set('sessions', sessions);
  const stays = sessions.some((one) => one.id === chosen);
  set('session', stays ? chosen : sessions.length ? sessions[sessions.length - 1].id : null);
}

export async function openSession(user, password) {
  const session = await call('POST', 'sessions', {user, password});
  setSessions([...get('sessions').filter((one) => one.id !== session.id), session]);
  set('session', session.id);
  return session;
}

async function close(session) {
  await call('DELETE', `sessions/${session.id}`);
  setSessions(get('sessions').filter((one) => one.id !== session.id));
  announce(`The session of ${session.user} is closed.`);
}

function form() {
  const user = make('input', {id: 'session-user', autocomplete: 'off', required: true});
  const password = make('input', {id: 'session-password', type: 'password', autocomplete: 'off'});
  const failure = make('p', {class: 'form-failure', role: 'alert'});
  const send = make('button', {class: 'primary', text: 'Open session'});
  return make(
    'form',
    {
      class: 'form',
      'aria-labelledby': 'open-title',
      on: {
        submit: async (event) => {
          event.preventDefault();
          failure.textContent = '';
          send.disabled = true;
          try {
            const session = await openSession(user.value, password.value);
            user.value = '';
            announce(`The session of ${session.user} is open.`);
          } catch (error) {
            failure.textContent = error.message;
          }
          password.value = '';
          send.disabled = false;
        },
      },
    },
    make('h3', {id: 'open-title', text: 'Open a session'}),
    make('div', {class: 'fields'}, field('User', user), field('Password', password), send),
    failure,
  );
}

function row(session, fail) {
  const choice = make('input', {
    type: 'radio',
    name: 'session',
    on: {change: () => set('session', session.id)},
  });
  choice.checked = session.id === get('session');
  const closer = button('Close', () => close(session).catch(fail), {
    'aria-label': `Close session ${nameOf(session)}`,
  });
  return make(
    'li',
    {class: 'row'},
    make(
      'label',
      {class: 'row-main'},
      choice,
      make(
        'span',
        {},
        make('b', {text: nameOf(session)}),
        make('span', {
          class: 'soft',
          text: `opened ${timeText(session.opened)}, ${plural(session.runs, 'run')}`,
        }),
      ),
    ),
    closer,
  );
}

// The panel, and the choice at the script.
export function createSessions(panel) {
  const list = make('ul', {class: 'rows', 'aria-label': 'Open sessions'});
  const failure = make('p', {class: 'form-failure', role: 'alert'});
  const empty = emptyState('No session is open. Scripts run in a session.');
  panel.append(empty, list, failure, form());

  const fail = (error) => {
    failure.textContent = error.message;
  };
  const chooser = find('session');
  chooser.addEventListener('change', () => set('session', Number(chooser.value)));

  function show() {
    const sessions = get('sessions');
    failure.textContent = '';
    empty.hidden = sessions.length > 0;
    list.hidden = sessions.length === 0;
    list.replaceChildren(...sessions.map((session) => row(session, fail)));
    chooser.replaceChildren(
      ...sessions.map((session) => make('option', {value: session.id, text: nameOf(session)})),
    );
    if (sessions.length === 0) chooser.append(make('option', {value: '', text: 'none open'}));
    chooser.disabled = sessions.length === 0;
  }

  function choose(id) {
    chooser.value = id ?? '';
    get('sessions').forEach((session, index) => {
      list.children[index].querySelector('input').checked = session.id === id;
    });
  }
  watch('sessions', show);
  watch('session', choose);
}
