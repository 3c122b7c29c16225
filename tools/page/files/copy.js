// "Copy as": the script and its parameters as a command line or a program.
import {call} from './api.js';
import {announce, button, find, make} from './dom.js';
import {tabs} from './tabs.js';

const FORMS = {command: 'Command line', cpp: 'C++', python: 'Python', curl: 'curl'};

async function copy(text) {
  try {
    await navigator.clipboard.writeText(text);
    announce('Copied.');
    return 'Copied';
  } catch {
    announce('The browser does not allow copying. Select the text instead.');
    return 'Not allowed';
  }
}

function content(texts, close) {
  const names = Object.keys(FORMS).filter((name) => typeof texts[name] === 'string');
  const list = make(
    'div',
    {class: 'tabs', role: 'tablist', 'aria-labelledby': 'copy-title'},
    ...names.map((name) =>
      make('button', {
        type: 'button',
        role: 'tab',
        id: `tab-copy-${name}`,
        'aria-controls': `copy-${name}`,
        text: FORMS[name],
      }),
    ),
  );
  const panels = names.map((name) =>
    make(
      'div',
      {role: 'tabpanel', id: `copy-${name}`, 'aria-labelledby': `tab-copy-${name}`},
      make('pre', {class: 'envelope', tabindex: 0, text: texts[name]}),
    ),
  );
  const copyButton = button(
    'Copy',
    async () => {
      const shown = panels.find((panel) => !panel.hidden);
      copyButton.textContent = await copy(shown.textContent);
    },
    {class: 'primary'},
  );
  return [
    make('div', {class: 'pane-head'}, make('h2', {id: 'copy-title', text: 'Copy as'}), list),
    ...panels,
    names.some((name) => texts[name].includes('PASSWORD'))
      ? make('p', {class: 'hint', text: 'PASSWORD is a placeholder. Put your own in its place.'})
      : '',
    make('div', {class: 'actions'}, copyButton, button('Close', close)),
  ];
}

// `job()` returns the script and its parameters.
export function createCopy(job) {
  const dialog = find('copy-dialog');
  find('copy-as').addEventListener('click', async () => {
    try {
      const texts = await call('POST', 'copy', job());
      dialog.replaceChildren(...content(texts, () => dialog.close()));
      tabs(dialog.querySelector('[role=tablist]'), () => {
        dialog.querySelector('.primary').textContent = 'Copy';
      });
      dialog.showModal();
    } catch (error) {
      dialog.replaceChildren(
        make('h2', {id: 'copy-title', text: 'Copy as'}),
        make('p', {class: 'failure', role: 'alert', text: error.message}),
        make(
          'div',
          {class: 'actions'},
          button('Close', () => dialog.close()),
        ),
      );
      dialog.showModal();
    }
  });
  // The text may be long; nothing of it stays after the dialog.
  dialog.addEventListener('close', () => dialog.replaceChildren());
}
