// One value of an answer, but not a table.
import {make} from './dom.js';

const isWebAddress = (text) => /^https?:\/\/[^\s]+$/i.test(text);

function textElement(text) {
  if (text === '') return make('p', {class: 'empty', text: 'The text is empty.'});
  return make('pre', {class: 'value', text});
}

function linkElement(value) {
  const text = value.value ?? '';
  if (!isWebAddress(text)) return textElement(text);
  return make(
    'p',
    {class: 'value'},
    make('a', {href: text, target: '_blank', rel: 'noopener noreferrer', text: value.caption || text}),
  );
}

// Everything of a duration or date that its text leaves out.
function detailsElement(value) {
  const names = Object.keys(value).filter(
    (name) => !['type', 'value', 'tag', 'file', 'caption'].includes(name),
  );
  const list = make('dl', {class: 'details'});
  for (const name of names)
    list.append(make('div', {}, make('dt', {text: name}), make('dd', {text: String(value[name])})));
  return names.length ? list : '';
}

export function valueElement(value) {
  if (value.value === undefined || value.value === null)
    return make('p', {class: 'empty', text: 'The script answered no value.'});
  const text = typeof value.value === 'string' ? value.value : JSON.stringify(value.value);
  const box = make(
    'div',
    {class: 'value-box', 'data-type': value.type},
    value.type === 'url' && value.file === undefined ? linkElement(value) : textElement(text),
  );
  if (value.file !== undefined)
    box.append(
      make(
        'p',
        {},
        make('a', {
          class: 'as-button',
          href: `api/files/${Number(value.file)}`,
          download: true,
          text: 'Download the file',
        }),
      ),
    );
  box.append(detailsElement(value));
  return box;
}
