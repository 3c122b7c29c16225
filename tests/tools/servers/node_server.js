// A server as npm's "soap" makes it, and with QV_MENDED=1 the same with the changes that `scriptwells check` names.
// Prints its process id and its port.
const http = require('http');
const soap = require('soap');

const NS = 'http://quorvane.example/dev/ns/ivarnel/scriptwells';
const PATH = '/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx';
const mended = Boolean(process.env.QV_MENDED);
const prefix = mended ? 'NS2' : 'sw';

const methods = ['CreateUserSession', 'CloseUserSession', 'Execute'];
const all = (text) => methods.map(text).join('');
const wsdl = `<wsdl:definitions xmlns:wsdl="http://schemas.xmlsoap.org/wsdl/" xmlns:${prefix}="${NS}"
  xmlns:wsoap="http://schemas.xmlsoap.org/wsdl/soap/" xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="${NS}">
<wsdl:types><xs:schema targetNamespace="${NS}" elementFormDefault="unqualified">
<xs:element name="CreateUserSession"><xs:complexType><xs:sequence>
  <xs:element name="ConnectionString" type="xs:string"/></xs:sequence></xs:complexType></xs:element>
<xs:element name="CloseUserSession"><xs:complexType><xs:sequence>
  <xs:element name="usid" type="xs:string"/></xs:sequence></xs:complexType></xs:element>
<xs:element name="Execute"><xs:complexType><xs:sequence><xs:element name="usid" type="xs:string"/>
  <xs:element name="Script" type="xs:string"/><xs:element name="parameters" type="xs:anyType"/></xs:sequence>
  </xs:complexType></xs:element>
${all((m) => `<xs:element name="${m}Response"><xs:complexType><xs:sequence>
  <xs:element name="${m}Result" type="xs:anyType"/></xs:sequence></xs:complexType></xs:element>`)}
</xs:schema></wsdl:types>
${all((m) => `<wsdl:message name="${m}In"><wsdl:part name="parameters" element="${prefix}:${m}"/></wsdl:message>
<wsdl:message name="${m}Out"><wsdl:part name="parameters" element="${prefix}:${m}Response"/></wsdl:message>`)}
<wsdl:portType name="Type">${all((m) => `<wsdl:operation name="${m}"><wsdl:input message="${prefix}:${m}In"/>
  <wsdl:output message="${prefix}:${m}Out"/></wsdl:operation>`)}</wsdl:portType>
<wsdl:binding name="Binding" type="${prefix}:Type">
<wsoap:binding style="document" transport="http://schemas.xmlsoap.org/soap/http"/>
${all((m) => `<wsdl:operation name="${m}"><wsoap:operation soapAction="${NS}#${m}"/>
  <wsdl:input><wsoap:body use="literal"/></wsdl:input><wsdl:output><wsoap:body use="literal"/></wsdl:output>
  </wsdl:operation>`)}</wsdl:binding>
<wsdl:service name="Scripts"><wsdl:port name="Port" binding="${prefix}:Binding">
<wsoap:address location="http://localhost${PATH}"/></wsdl:port></wsdl:service></wsdl:definitions>`;

// What clients read of a value: they do not know xsd:float, and neither bytes nor long numbers arrive.
const READABLE = {'xsd:float': 'xsd:double', 'xsd:byte': 'xsd:int', 'xsd:long': 'xsd:double'};
const TABLE = '<h><s><c xsd:name="city" xsd:type="xsd:string"/><c xsd:name="people" xsd:type="xsd:int"/></s></h>' +
  '<d><w><v>Rome</v><v>2748109</v></w></d>';

// The type is lost unless it is written as an attribute.
function typed(type, value) {
  const namespaces = {'xmlns:xsi': 'http://www.w3.org/2001/XMLSchema-instance',
                      'xmlns:xsd': 'http://www.w3.org/2001/XMLSchema'};
  return {attributes: {...namespaces, 'xsi:type': type}, ...value};
}

// An element with attributes arrives as an object.
const textOf = (value) => (typeof value === 'object' && value !== null ? value.$value ?? '' : value);

// "parameters.value" answers its parameter, "table" a table, anything else is a fault.
function execute(args) {
  const script = textOf(args.Script);
  if (script.includes('<Code>table</Code>')) return {ExecuteResult: typed('q1:RecordList', {$xml: TABLE})};
  if (!script.includes('<Code>parameters.value</Code>'))
    throw {Fault: {faultcode: 'soap:Server', faultstring: 'no such script'}};
  const value = args.parameters.Parameter.Value;
  if (!mended) return {ExecuteResult: textOf(value)};
  const type = value.attributes['xsi:type'];
  return {ExecuteResult: typed(READABLE[type] || type, {$value: textOf(value)})};
}

const service = {Scripts: {Port: {
  CreateUserSession: () => ({CreateUserSessionResult: 'node-1'}),
  CloseUserSession: () => ({CloseUserSessionResult: ''}),
  Execute: execute,
}}};
const server = http.createServer((request, response) => response.writeHead(404).end());
server.listen(0, '127.0.0.1', () => {
  soap.listen(server, {path: PATH, services: service, xml: wsdl, enableChunkedEncoding: !mended,
                       wsdlOptions: {handleNilAsNull: true}});
  console.log(process.pid);
  console.log(server.address().port);
});
