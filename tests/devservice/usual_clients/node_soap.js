// Drives the service as a program of npm's package "soap" does. The argument is the service's address; "soap" is
// found by NODE_PATH. Prints one line for each step, which the test compares.
const soap = require('soap');

const SCRIPT_SPACE = 'http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0';

function escapeXml(text) {
  return text.replace(/&/g, '&amp;').replace(/</g, '&lt;');
}

function documentOf(code) {
  return `<Scriptwell Language="JavaScript" xmlns="${SCRIPT_SPACE}"><Code>${escapeXml(code)}</Code></Scriptwell>`;
}

// The package does not declare the prefix of a type that it is given.
function typed(name, type, value) {
  const attributes = {'xsi:type': 'xsd:' + type, 'xmlns:xsd': 'http://www.w3.org/2001/XMLSchema'};
  return {Name: name, Value: {attributes, $value: value}};
}

async function main(address) {
  const path = '/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx?wsdl';
  const client = await soap.createClientAsync(address + path);
  const [session] = await client.CreateUserSessionAsync({ConnectionString: 'Username=joe;Password=x;'});
  const usid = session.CreateUserSessionResult;
  console.log('session', /^[0-9a-f]{32}$/.test(usid.$value ?? usid));
  const run = async (code, parameters) => {
    const [answer] = await client.ExecuteAsync({usid: usid.$value ?? usid, Script: documentOf(code), parameters});
    const value = answer.ExecuteResult;
    return `${value.attributes['xsi:type']} ${value.$value}`;
  };
  console.log('number', await run('6 * 7'));
  console.log('text', await run("'a<b & \u00e9'"));
  console.log('parameters', await run(
      'parameterList.map(p => [p.name, p.type, String(p.value)].join()).join("|")',
      {Parameter: [typed('i', 'int', 5), typed('b', 'boolean', true), {Name: 't', Value: 'plain <text>'}]}));
  console.log('datetime', await run(
      'parameters.d.toISOString()', {Parameter: [typed('d', 'dateTime', '2024-03-05T10:15:30.5Z')]}));
  console.log('fault', await run('\nfoo').catch((error) => /Can't find variable: foo \(line 2\)/.test(error.message)));
  await client.CloseUserSessionAsync({usid: usid.$value ?? usid});
  console.log('closed', await run('1').catch((error) => /The session does not exist/.test(error.message)));
}

main(process.argv[2]).catch((error) => {
  console.log('failed', error.message);
  process.exitCode = 1;
});
