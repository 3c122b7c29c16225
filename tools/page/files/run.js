// Runs the script, and stops it.
import {call} from './api.js';
import {announce, find} from './dom.js';
import {durationText} from './format.js';
import {get, set, watch} from './store.js';

let count = 0;

// `parts`: editor, parameters, answer, language(), openSessions(), afterRun().
// Returns {run(), job()}; a job is what the service is sent.
export function createRunner(parts) {
  const {editor, parameters, answer} = parts;
  let current = null;

  const job = () => ({code: editor.text(), language: parts.language(), parameters: parameters.values()});

  function finish(result) {
    editor.clearFault();
    answer.show(result, (line, column) => editor.goTo(line, column));
    const took = durationText(result.milliseconds);
    if (!result.error) {
      announce(`The script answered after ${took}.`);
      return;
    }
    const {line, column, message} = result.error;
    editor.markFault(line, column, message);
    announce(`The script failed: ${message}`);
  }

  async function run() {
    if (current) return;
    if (get('session') === null) {
      answer.fail('There is no open session. Open one under Sessions, then run the script again.');
      parts.openSessions();
      return;
    }
    current = `r${Date.now().toString(36)}-${++count}`;
    set('running', true);
    answer.wait();
    try {
      finish(await call('POST', 'run', {session: get('session'), run: current, ...job()}));
    } catch (error) {
      answer.fail(error.message);
      announce(error.message);
    }
    current = null;
    set('running', false);
    parts.afterRun();
  }

  async function stop() {
    if (!current) return;
    find('stop').disabled = true;
    await call('POST', 'cancel', {run: current}).catch((error) => announce(error.message));
  }

  watch('running', (isRunning) => {
    find('stop').disabled = !isRunning;
    find('run').setAttribute('aria-disabled', String(isRunning));
  });
  find('run').addEventListener('click', run);
  find('stop').addEventListener('click', stop);
  return {run, job};
}
