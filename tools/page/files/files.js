// Files: uploads, and what scripts published.
import {call, upload} from './api.js';
import {announce, button, emptyState, make} from './dom.js';
import {sizeText} from './format.js';
import {get, set, watch} from './store.js';

const ORIGINS = {upload: 'uploaded', script: 'from a script'};

export async function refreshFiles() {
  const files = await call('GET', 'files');
  set('files', Array.isArray(files) ? files : files.files);
}

function row(file, fail) {
  const address = `api/files/${Number(file.id)}`;
  const facts = [file.size === null ? '' : sizeText(file.size), ORIGINS[file.from]]
    .filter(Boolean)
    .join(', ');
  const remove = async () => {
    await call('DELETE', `files/${Number(file.id)}`);
    set(
      'files',
      get('files').filter((one) => one.id !== file.id),
    );
    announce(`${file.name} is removed.`);
  };
  return make(
    'li',
    {class: 'row'},
    make(
      'span',
      {class: 'row-main'},
      make('span', {}, make('b', {text: file.name}), make('span', {class: 'soft', text: facts})),
    ),
    make('a', {
      class: 'as-button',
      href: address,
      download: file.name,
      text: 'Download',
      'aria-label': `Download ${file.name}`,
    }),
    button('Remove', () => remove().catch(fail), {'aria-label': `Remove ${file.name}`}),
  );
}

// Returns {send(file)}, which uploads a file and returns it, or null.
export function createFiles(panel) {
  const list = make('ul', {class: 'rows', 'aria-label': 'Files'});
  const empty = emptyState(
    'No files yet. Uploaded files can be parameters of scripts; files that scripts publish appear here.',
  );
  const failure = make('p', {class: 'form-failure', role: 'alert'});
  const progress = make('progress', {max: 1, value: 0, 'aria-label': 'Upload', hidden: true});
  const chooser = make('input', {
    type: 'file',
    id: 'upload',
    class: 'unseen',
    multiple: true,
    tabindex: -1,
    'aria-label': 'Files to upload',
    on: {
      change: async () => {
        for (const file of [...chooser.files]) await send(file);
        chooser.value = '';
      },
    },
  });
  const zone = make(
    'div',
    {class: 'drop'},
    chooser,
    button('Upload files…', () => chooser.click()),
    make('span', {class: 'soft', text: 'or drop them here'}),
    progress,
  );

  async function send(file) {
    failure.textContent = '';
    progress.hidden = false;
    progress.value = 0;
    try {
      const uploaded = await upload(file, (part) => {
        progress.value = part;
      });
      set('files', [...get('files').filter((one) => one.id !== uploaded.id), uploaded]);
      announce(`${uploaded.name} is uploaded.`);
      return uploaded;
    } catch (error) {
      failure.textContent = `${file.name}: ${error.message}`;
      announce(failure.textContent);
      return null;
    } finally {
      progress.hidden = true;
    }
  }

  const mark = (isOver) => (event) => {
    event.preventDefault();
    zone.classList.toggle('over', isOver);
  };
  zone.addEventListener('dragover', mark(true));
  zone.addEventListener('dragleave', mark(false));
  zone.addEventListener('drop', async (event) => {
    mark(false)(event);
    for (const file of [...event.dataTransfer.files]) await send(file);
  });

  panel.append(zone, failure, empty, list);
  watch('files', (files) => {
    empty.hidden = files.length > 0;
    list.hidden = files.length === 0;
    list.replaceChildren(
      ...files.map((file) =>
        row(file, (error) => {
          failure.textContent = error.message;
        }),
      ),
    );
  });
  return {send};
}
