#include "devservice/soap/soap_request.h"

#include "devservice/soap/xml_reader.h"
#include "devservice/values/fault_codes.h"
#include "devservice/values/value_types.h"

namespace qv::devservice {
namespace {

using Nodes = std::vector<pugi::xml_node>;

constexpr Action kActions[] = {Action::kCreateUserSession, Action::kCloseUserSession, Action::kExecute};

[[noreturn]] void RefuseParameter(int code, const std::string& name, const std::string& why) {
  throw FaultError(code, "The parameter \"" + name + "\" " + why, "request");
}

// Reads the three messages. Borrows the namespaces.
class RequestReader {
 public:
  explicit RequestReader(const Namespaces& spaces) : spaces_(spaces) {}
  SoapRequest Read(pugi::xml_node envelope) const;

 private:
  static pugi::xml_node FindMethod(pugi::xml_node envelope);
  Action ReadAction(pugi::xml_node method) const;
  std::string ReadString(pugi::xml_node element, const char* name) const;
  void ReadExecute(const Nodes& children, SoapRequest& request) const;
  std::vector<Parameter> ReadParameters(pugi::xml_node array) const;
  void CheckNilForm(pugi::xml_node array) const;
  void CheckArrayType(pugi::xml_node array, const std::string& bounds) const;
  const ValueType& FindType(pugi::xml_node value, const std::string& parameter) const;
  Parameter ReadParameter(pugi::xml_node element) const;
  std::string ReadTicket(pugi::xml_node value) const;

  const Namespaces& spaces_;
};

void ExpectCount(const Nodes& children, std::size_t count, std::string_view parent) {
  if (children.size() == count) return;
  throw XmlError("\"" + std::string(parent) + "\" holds " + std::to_string(children.size()) +
                 " elements, not " + std::to_string(count));
}

// The value of an attribute that declares a type. Without it the type of the WSDL counts; an attribute of
// this name in another namespace is a mistake.
std::optional<std::string> FindTypeAttribute(pugi::xml_node element, std::string_view space,
                                             std::string_view name) {
  std::optional<std::string> found = FindAttribute(element, space, name);
  if (found) return found;
  for (const pugi::xml_attribute attribute : element.attributes()) {
    const std::string_view written = attribute.name();
    if (written.substr(0, 6) != "xmlns:" && written.substr(written.find(':') + 1) == name)
      throw XmlError("the attribute \"" + std::string(written) + "\" is not of the namespace \"" +
                     std::string(space) + "\"");
  }
  return std::nullopt;
}

void ExpectType(pugi::xml_node element, std::string_view space, std::string_view name) {
  const std::optional<std::string> written = FindTypeAttribute(element, kSchemaInstance, "type");
  if (!written) return;
  const QualifiedName type = ResolveName(element, *written);
  if (type.prefixed && type.space == space && type.name == name) return;
  throw XmlError("\"" + std::string(element.name()) + "\" has the type \"" + *written + "\"");
}

// A header that has to be understood is an error.
void CheckHeaderElement(pugi::xml_node header) {
  ExpectElement(header, kSoapEnvelope, "Header");
  for (const pugi::xml_node entry : ChildElements(header)) {
    const std::string must = FindAttribute(entry, kSoapEnvelope, "mustUnderstand").value_or("0");
    if (must != "0") throw XmlError("the header \"" + std::string(entry.name()) + "\" is not understood");
  }
}

// The name of XML Schema; Scriptwells clients write "datetime".
bool IsStandardDateTime(const QualifiedName& type) {
  return type.space == kSchema && type.name == "dateTime";
}

// One or two digits are tenths and hundredths here, as in XML Schema. NormaliseText reads them as
// milliseconds, which is how Scriptwells clients write them under their own name for the type.
std::string FillFraction(std::string text) {
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return text;
  std::size_t end = text.find_first_not_of("0123456789", point + 1);
  if (end == std::string::npos) end = text.size();
  const std::size_t digits = end - point - 1;
  if (digits > 0 && digits < 3) text.insert(end, 3 - digits, '0');
  return text;
}

bool HasStandardDateTime(pugi::xml_node value) {
  return IsStandardDateTime(ResolveName(value, FindAttribute(value, kSchemaInstance, "type").value_or("")));
}

pugi::xml_node RequestReader::FindMethod(pugi::xml_node envelope) {
  ExpectElement(envelope, kSoapEnvelope, "Envelope");
  const Nodes parts = ChildElements(envelope);
  const bool hasHeader = parts.size() == 2;
  if (hasHeader) CheckHeaderElement(parts.front());
  ExpectCount(parts, hasHeader ? 2 : 1, "Envelope");
  ExpectElement(parts.back(), kSoapEnvelope, "Body");
  const Nodes methods = ChildElements(parts.back());
  ExpectCount(methods, 1, "Body");
  return methods[0];
}

Action RequestReader::ReadAction(pugi::xml_node method) const {
  for (const Action action : kActions) {
    if (LocalName(method) != ActionName(action)) continue;
    ExpectElement(method, spaces_.service, ActionName(action));
    return action;
  }
  throw XmlError("the method \"" + std::string(method.name()) + "\" is not known");
}

std::string RequestReader::ReadString(pugi::xml_node element, const char* name) const {
  ExpectElement(element, spaces_.service, name);
  ExpectType(element, kSchema, "string");
  return TextOf(element);
}

SoapRequest RequestReader::Read(pugi::xml_node envelope) const {
  const pugi::xml_node method = FindMethod(envelope);
  const Nodes children = ChildElements(method);
  SoapRequest request;
  request.action = ReadAction(method);
  const bool withoutArray = request.action == Action::kExecute && children.size() == 2;
  const std::size_t wanted = request.action == Action::kExecute ? 3 : 1;
  ExpectCount(children, withoutArray ? 2 : wanted, method.name());
  switch (request.action) {
    case Action::kCreateUserSession:
      request.connectionString = ReadString(children[0], "ConnectionString");
      break;
    case Action::kCloseUserSession:
      request.sessionId = ReadString(children[0], "usid");
      break;
    case Action::kExecute:
      ReadExecute(children, request);
      break;
  }
  return request;
}

void RequestReader::ReadExecute(const Nodes& children, SoapRequest& request) const {
  request.sessionId = ReadString(children[0], "usid");
  request.scriptDocument = ReadString(children[1], "Script");
  if (children.size() > 2) request.parameters = ReadParameters(children[2]);
}

std::vector<Parameter> RequestReader::ReadParameters(pugi::xml_node array) const {
  ExpectElement(array, spaces_.service, "parameters");
  std::vector<Parameter> result;
  const Nodes elements = ChildElements(array);
  if (FindAttribute(array, kSchemaInstance, "nil")) {
    ExpectCount(elements, 0, "parameters");
    CheckNilForm(array);
    return result;
  }
  CheckArrayType(array, "[" + std::to_string(elements.size()) + "]");
  for (const pugi::xml_node element : elements) result.push_back(ReadParameter(element));
  return result;
}

void RequestReader::CheckNilForm(pugi::xml_node array) const {
  if (FindAttribute(array, kSchemaInstance, "nil") != "true") throw XmlError("xsi:nil is not \"true\"");
  ExpectType(array, spaces_.sof, "Parameter");
  CheckArrayType(array, "[]");
}

void RequestReader::CheckArrayType(pugi::xml_node array, const std::string& bounds) const {
  const std::optional<std::string> written = FindTypeAttribute(array, kSoapEncoding, "arrayType");
  if (!written) return;
  const QualifiedName type = ResolveName(array, *written);
  if (type.space == spaces_.sof && type.name == "Parameter" + bounds) return;
  throw XmlError("the array type \"" + *written + "\" is not that of an array Parameter" + bounds);
}

// The row of the type that an element declares, without a declaration that of strings.
const ValueType& RequestReader::FindType(pugi::xml_node value, const std::string& parameter) const {
  const std::optional<std::string> written = FindTypeAttribute(value, kSchemaInstance, "type");
  if (!written) return *FindValueType("string");
  const QualifiedName name = ResolveName(value, *written);
  const bool known = name.space == kSchema || (name.space == spaces_.sof && name.name == "url");
  const ValueType* type = known ? FindValueType(IsStandardDateTime(name) ? "datetime" : name.name) : nullptr;
  if (type) return *type;
  RefuseParameter(kUnsupportedType, parameter,
                  "has the type \"" + *written + "\", which this service does not know.");
}

// One element, whose type has no prefix either.
std::string RequestReader::ReadTicket(pugi::xml_node value) const {
  const Nodes children = ChildElements(value);
  ExpectCount(children, 1, "Value");
  ExpectElement(children[0], spaces_.service, "Id");
  const std::string type = FindAttribute(children[0], kSchemaInstance, "type").value_or("");
  if (type != "string") throw XmlError(R"("Id" has the type ")" + type + "\"");
  return TextOf(children[0]);
}

Parameter RequestReader::ReadParameter(pugi::xml_node element) const {
  ExpectElement(element, spaces_.service, "Parameter");
  const Nodes children = ChildElements(element);
  ExpectCount(children, 2, "Parameter");
  ExpectElement(children[1], spaces_.service, "Value");
  Parameter parameter;
  parameter.name = ReadString(children[0], "Name");
  // Clients write this type without a prefix.
  if (FindAttribute(children[1], kSchemaInstance, "type") == kFileTicketType)
    return {parameter.name, std::string(kFileTicketType), ReadTicket(children[1])};
  const ValueType& type = FindType(children[1], parameter.name);
  parameter.type = type.name;
  const std::string text = TextOf(children[1]);
  const std::string read = HasStandardDateTime(children[1]) ? FillFraction(text) : text;
  if (!NormaliseText(type, read, parameter.text)) {
    RefuseParameter(
        kBadParameter, parameter.name,
        "holds \"" + text.substr(0, 100) + "\", which is no value of the type " + type.name + ".");
  }
  return parameter;
}

// Usual clients write the address in quotes, Scriptwells clients do not.
void CheckHeader(std::string_view soapAction, Action action, const Namespaces& spaces) {
  const std::string expected = spaces.service + "#" + ActionName(action);
  if (soapAction == expected || soapAction == "\"" + expected + "\"") return;
  throw FaultError(
      kActionMismatch,
      "The SOAPAction header is \"" + std::string(soapAction) + "\", the body asks for \"" + expected + "\".",
      "request");
}

}  // namespace

const char* ActionName(Action action) {
  switch (action) {
    case Action::kCreateUserSession:
      return "CreateUserSession";
    case Action::kCloseUserSession:
      return "CloseUserSession";
    case Action::kExecute:
      break;
  }
  return "Execute";
}

SoapRequest ParseSoapRequest(std::string_view body, std::string_view soapAction, const Namespaces& spaces) {
  try {
    const XmlDocument document(body);
    SoapRequest request = RequestReader(spaces).Read(document.Root());
    CheckHeader(soapAction, request.action, spaces);
    return request;
  } catch (const XmlError& error) {
    throw FaultError(kBadRequest, std::string("The request cannot be read: ") + error.what() + ".",
                     "request");
  }
}

}  // namespace qv::devservice
