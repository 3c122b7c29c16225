// What several parts of the page show. A part watches a value by its name, and is called whenever it
// changes. `watch` returns a function that ends it.

const values = {
  connection: 'connecting', // or live, lost, quiet (no events), unknown (the service does not know the page)
  sessions: [],
  session: null, // the id of the chosen one
  files: [],
  types: [],
  running: false,
};
const watchers = new Map();

export const get = (name) => values[name];

export function set(name, value) {
  values[name] = value;
  for (const watcher of watchers.get(name) ?? []) watcher(value);
}

export function watch(name, watcher) {
  if (!watchers.has(name)) watchers.set(name, []);
  watchers.get(name).push(watcher);
  watcher(values[name]);
  return () =>
    watchers.set(
      name,
      watchers.get(name).filter((one) => one !== watcher),
    );
}
