// Elements and their texts. All text of scripts and servers enters the page as text nodes, never as HTML.

// make("button", {class: "primary", text: "Run", on: {click: run}}, child...). `true` sets an attribute
// without a value; `false`, null and undefined leave it out.
export function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name === 'text') element.textContent = value;
    else if (name === 'value') element.value = value;
    else if (name === 'on')
      for (const [event, listener] of Object.entries(value)) element.addEventListener(event, listener);
    else if (value === true) element.setAttribute(name, '');
    else if (value !== false && value !== null && value !== undefined) element.setAttribute(name, value);
  }
  element.append(...children);
  return element;
}

export const button = (text, onClick, attributes = {}) =>
  make('button', {type: 'button', text, on: {click: onClick}, ...attributes});

// A label with its control below it.
export const field = (label, control, className = 'field') =>
  make('label', {class: className}, make('span', {text: label}), control);

// An option is a text, or [value, text].
export function select(options, attributes = {}) {
  const element = make('select', attributes);
  for (const option of options) {
    const [value, text] = Array.isArray(option) ? option : [option, option];
    element.append(make('option', {value, text}));
  }
  return element;
}

export const find = (id) => document.getElementById(id);

// What a panel shows while it has nothing to show.
export const emptyState = (text) => make('p', {class: 'empty', text});

// Screen readers read the text; other people see what it is about.
export function announce(text) {
  find('announcements').textContent = text;
}
