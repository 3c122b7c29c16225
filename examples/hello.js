// Takes parameters of any names and types, and gives one typed answer. The name in the parameter `pick` says which
// one comes back, changed a little; without it the answer is a greeting that lists them all.
//
//   scriptwells run --local hello.js -p who=string:World
//   scriptwells run --local hello.js -p pick=string:aDouble -p aDouble=double:1.25 --json

const change = {
  byte: (value) => value + 1,
  short: (value) => value + 1,
  int: (value) => value + 1,
  long: (value) => BigInt(value) + 1n,
  boolean: (value) => !value,
  float: (value) => value * 2,
  double: (value) => value * 2,
  string: (value) => `Hello, ${value}!`,
};

function list() {
  return parameterList.map((p) => `${p.name} (${p.type}) = ${p.value}`).join("\n");
}

function answer(name) {
  if (!(name in parameters)) throw new ScriptError(5, `there is no parameter "${name}"`);
  const type = parameterTypes[name];
  return typed[type](change[type](parameters[name]));
}

"pick" in parameters ? answer(parameters.pick) : `Hello from the server. You sent:\n${list()}`;
