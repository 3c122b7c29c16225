// Takes parameters of any names and types, and gives one typed answer. The name in the parameter `pick` says which
// one comes back, changed a little; of a file comes the address of a new one; "link" picks a link; without `pick` the
// answer is a greeting that lists them all.
//
//   scriptwells run --local examples/hello.js -p who=string:World
//   scriptwells run --local examples/hello.js -p pick=string:aDouble -p aDouble=double:1.25 --json
//   scriptwells run --local examples/hello.js -p pick=string:due -p due=date:2024-02-28
//   scriptwells run --local examples/hello.js -p pick=string:doc -p doc=file:notes.txt --save .

const HOUR = 3600 * 1000;
const DAY = 24 * HOUR;

// Dates and times are Dates in UTC, a duration is an object of counts: {days: 1, hours: 2, ...}.
const change = {
  byte: (value) => value + 1,
  short: (value) => value + 1,
  int: (value) => value + 1,
  long: (value) => BigInt(value) + 1n,
  boolean: (value) => !value,
  float: (value) => value * 2,
  double: (value) => value * 2,
  string: (value) => `Hello, ${value}!`,
  date: (value) => new Date(value.getTime() + DAY),
  time: (value) => new Date(value.getTime() + HOUR),
  datetime: (value) => new Date(value.getTime() + DAY + HOUR),
  duration: (value) => ({ ...value, days: value.days + 1 }),
};

function text(value) {
  if (value.ticket) return `${value.size} bytes`;
  return value instanceof Date ? value.toISOString() : String(value);
}

// Numbered lines, as a file for the client to download.
function numbered(file) {
  const lines = file.text().trimEnd().split("\n");
  return publish("numbered.txt", lines.map((line, i) => `${i + 1}: ${line}\n`).join(""));
}

function list() {
  return parameterList.map((p) => `${p.name} (${p.type}) = ${text(p.value)}`).join("\n");
}

function answer(name) {
  if (name === "link") return typed.url("http://quorvane.example/", "Home");
  if (!(name in parameters)) throw new ScriptError(5, `there is no parameter "${name}"`);
  const type = parameterTypes[name];
  if (type === "FileTicket") return numbered(parameters[name]);
  return typed[type](change[type](parameters[name]));
}

"pick" in parameters ? answer(parameters.pick) : `Hello from the server. You sent:\n${list()}`;
