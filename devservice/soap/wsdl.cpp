#include "devservice/soap/wsdl.h"

#include "devservice/values/text.h"

namespace qv::devservice {
namespace {

// A method with the content of its two elements.
struct Operation {
  const char* name;
  const char* request;
  const char* answer;
};

constexpr Operation kOperations[] = {
    {"CreateUserSession", R"(<xsd:element name="ConnectionString" type="xsd:string"/>)",
     R"(<xsd:element name="CreateUserSessionResult" type="xsd:string"/>)"},
    {"CloseUserSession", R"(<xsd:element name="usid" type="xsd:string"/>)", ""},
    {"Execute",
     R"(<xsd:element name="usid" type="xsd:string"/><xsd:element name="Script" type="xsd:string"/>)"
     R"(<xsd:element name="parameters" type="tns:Parameters" minOccurs="0" nillable="true"/>)",
     R"(<xsd:element name="ExecuteResult" type="xsd:anyType" minOccurs="0" nillable="true"/>)"},
};

constexpr char kParameterTypes[] =
    R"(<xsd:complexType name="Parameters"><xsd:sequence>)"
    R"(<xsd:element name="Parameter" type="tns:Parameter" minOccurs="0" maxOccurs="unbounded"/>)"
    R"(</xsd:sequence></xsd:complexType>)"
    R"(<xsd:complexType name="Parameter"><xsd:sequence>)"
    R"(<xsd:element name="Name" type="xsd:string"/><xsd:element name="Value" type="xsd:anyType"/>)"
    R"(</xsd:sequence></xsd:complexType>)";

std::string Element(const std::string& name, const char* content) {
  return "<xsd:element name=\"" + name + "\"><xsd:complexType><xsd:sequence>" + content +
         "</xsd:sequence></xsd:complexType></xsd:element>\n";
}

std::string Message(const std::string& name) {
  return "<wsdl:message name=\"" + name + R"("><wsdl:part name="parameters" element="tns:)" + name +
         "\"/></wsdl:message>\n";
}

std::string Types(const std::string& space) {
  std::string xml = "<wsdl:types><xsd:schema targetNamespace=\"" + space +
                    "\" elementFormDefault=\"qualified\">\n" + kParameterTypes + "\n";
  for (const Operation& operation : kOperations) {
    xml += Element(operation.name, operation.request);
    xml += Element(operation.name + std::string("Response"), operation.answer);
  }
  return xml + "</xsd:schema></wsdl:types>\n";
}

std::string Messages() {
  std::string xml;
  for (const Operation& operation : kOperations)
    xml += Message(operation.name) + Message(operation.name + std::string("Response"));
  return xml;
}

std::string PortType() {
  std::string xml = "<wsdl:portType name=\"Scriptwells\">\n";
  for (const Operation& operation : kOperations) {
    xml.append(R"(<wsdl:operation name=")").append(operation.name);
    xml.append(R"("><wsdl:input message="tns:)").append(operation.name);
    xml.append(R"("/><wsdl:output message="tns:)")
        .append(operation.name)
        .append("Response\"/></wsdl:operation>\n");
  }
  return xml + "</wsdl:portType>\n";
}

std::string Binding(const std::string& space) {
  constexpr char kBody[] = R"(<soap:body use="literal"/>)";
  std::string xml =
      "<wsdl:binding name=\"Scriptwells\" type=\"tns:Scriptwells\">"
      "<soap:binding style=\"document\" transport=\"http://schemas.xmlsoap.org/soap/http\"/>\n";
  for (const Operation& operation : kOperations) {
    xml.append(R"(<wsdl:operation name=")").append(operation.name);
    xml.append(R"("><soap:operation soapAction=")").append(space).append("#").append(operation.name);
    xml.append("\"/><wsdl:input>").append(kBody).append("</wsdl:input><wsdl:output>").append(kBody);
    xml.append("</wsdl:output></wsdl:operation>\n");
  }
  return xml + "</wsdl:binding>\n";
}

std::string Service(const std::string& address) {
  return "<wsdl:service name=\"Scriptwells\"><wsdl:port name=\"Scriptwells\" binding=\"tns:Scriptwells\">"
         "<soap:address location=\"" +
         EscapeXml(address) + "\"/></wsdl:port></wsdl:service>\n";
}

}  // namespace

std::string WriteWsdl(const Namespaces& spaces, const std::string& address) {
  const std::string space = EscapeXml(spaces.service);
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<wsdl:definitions name=\"Scriptwells\" "
         "targetNamespace=\"" +
         space + "\" xmlns:tns=\"" + space +
         "\" xmlns:wsdl=\"http://schemas.xmlsoap.org/wsdl/\""
         " xmlns:soap=\"http://schemas.xmlsoap.org/wsdl/soap/\""
         " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">\n" +
         Types(space) + Messages() + PortType() + Binding(space) + Service(address) + "</wsdl:definitions>\n";
}

}  // namespace qv::devservice
