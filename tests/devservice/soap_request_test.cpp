#include "devservice/soap/soap_request.h"

#include "devservice/values/fault_codes.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

const Namespaces& Spaces() {
  static const Namespaces spaces("http://quorvane.example");
  return spaces;
}

SoapRequest Parse(const std::string& body, const std::string& action = "Execute") {
  return ParseSoapRequest(body, "http://quorvane.example/dev/ns/ivarnel/scriptwells#" + action, Spaces());
}

// The code of the fault that the request makes, 0 when it is accepted.
int CodeOf(const std::string& body, const std::string& action = "Execute") {
  try {
    Parse(body, action);
    return 0;
  } catch (const FaultError& error) {
    return error.Code();
  }
}

// A good Execute envelope in which one text is replaced.
std::string Altered(const std::string& from, const std::string& to,
                    const std::string& parameters = NilParameters()) {
  std::string envelope = ExecuteEnvelope("s", "1", parameters);
  const std::size_t at = envelope.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? envelope : envelope.replace(at, from.size(), to);
}

std::string OneParameter() {
  return ArrayOf(1, ParameterElement("p", "xsd:int", "1"));
}

TEST(SoapRequest, EnvelopesOfTheClientAreRead) {
  const SoapRequest create = Parse(CreateEnvelope("Username=a&b;"), "CreateUserSession");
  EXPECT_EQ(create.action, Action::kCreateUserSession);
  EXPECT_EQ(create.connectionString, "Username=a&b;");
  const SoapRequest release = Parse(CloseEnvelope("id<"), "CloseUserSession");
  EXPECT_EQ(release.action, Action::kCloseUserSession);
  EXPECT_EQ(release.sessionId, "id<");
  const SoapRequest execute = Parse(ExecuteEnvelope("s", "1", OneParameter()));
  EXPECT_EQ(execute.sessionId, "s");
  EXPECT_EQ(execute.scriptDocument.substr(0, 34), "<Scriptwell Language=\"JavaScript\" ");
  ASSERT_EQ(execute.parameters.size(), 1u);
  EXPECT_EQ(execute.parameters[0].name, "p");
  EXPECT_EQ(execute.parameters[0].type, "int");
  EXPECT_EQ(execute.parameters[0].text, "1");
}

TEST(SoapRequest, NilAndEmptyArrayMeanNoParameters) {
  EXPECT_TRUE(Parse(ExecuteEnvelope("s", "1", NilParameters())).parameters.empty());
  EXPECT_TRUE(Parse(ExecuteEnvelope("s", "1", ArrayOf(0, ""))).parameters.empty());
}

TEST(SoapRequest, PrefixesAreFreeAndNamespacesAreNot) {
  std::string renamed = CloseEnvelope("s");
  for (std::size_t at = renamed.find("SOAP-ENV"); at != std::string::npos; at = renamed.find("SOAP-ENV")) {
    renamed.replace(at, 8, "e");
  }
  EXPECT_EQ(Parse(renamed, "CloseUserSession").sessionId, "s");
  EXPECT_EQ(CodeOf(Altered("schemas.xmlsoap.org/soap/envelope/", "www.w3.org/2003/05/soap-envelope")), 1001);
  EXPECT_EQ(CodeOf(Altered("/dev/ns/ivarnel/scriptwells", "/dev/ns/ivarnel/other")), 1001);
  EXPECT_EQ(CodeOf(Altered("http://www.w3.org/2001/XMLSchema\"", "http://www.w3.org/1999/XMLSchema\"")),
            1001);
}

TEST(SoapRequest, EveryPieceOfTheFormIsChecked) {
  EXPECT_EQ(CodeOf(Altered("<Execute ", "<Exekute ")), 1001) << "end tag differs";
  EXPECT_EQ(CodeOf(Altered("<usid xsi:type=\"xsd:string\">", "<usid xsi:type=\"string\">")), 1001);
  EXPECT_EQ(CodeOf(Altered("<usid xsi:type=\"xsd:string\">s</usid>", "")), 1001);
  EXPECT_EQ(
      CodeOf(Altered("<usid xsi:type=\"xsd:string\">s</usid>", "<usid xsi:type=\"xsd:string\"><s/></usid>")),
      1001);
  EXPECT_EQ(CodeOf(Altered("<usid", "text<usid")), 1001);
  EXPECT_EQ(CodeOf(Altered("<SOAP-ENV:Body>", "<SOAP-ENV:Other/><SOAP-ENV:Body>")), 1001);
  EXPECT_EQ(CodeOf(Altered("<SOAP-ENV:Body>", "<SOAP-ENV:Header/><SOAP-ENV:Header/><SOAP-ENV:Body>")), 1001);
  EXPECT_EQ(CodeOf(Altered("xsi:nil=\"true\"", "xsi:nil=\"false\"")), 1001);
  EXPECT_EQ(CodeOf(Altered("xsi:type=\"ns1:Parameter\"", "xsi:type=\"ns2:Parameter\"")), 1001);
  EXPECT_EQ(CodeOf(Altered("ns1:Parameter[]", "ns1:Parameter[0]")), 1001);
}

TEST(SoapRequest, ParameterArrayIsChecked) {
  const std::string one = ParameterElement("p", "xsd:int", "1");
  EXPECT_EQ(CodeOf(ExecuteEnvelope("s", "1", ArrayOf(1, one))), 0);
  EXPECT_EQ(CodeOf(ExecuteEnvelope("s", "1", ArrayOf(2, one))), 1001);
  EXPECT_EQ(CodeOf(ExecuteEnvelope("s", "1", ArrayOf(0, one))), 1001);
  EXPECT_EQ(CodeOf(Altered("ns1:arrayType=", "ns2:arrayType=", OneParameter())), 1001);
  EXPECT_EQ(CodeOf(Altered("\"ns2:Parameter[1]\"", "\"ns1:Parameter[1]\"", OneParameter())), 1001);
  EXPECT_EQ(CodeOf(Altered("xsi:type=\"xsd:int\"", "xsi:type=\"int\"", OneParameter())), 1009);
  EXPECT_EQ(CodeOf(Altered("xsi:type=\"xsd:int\"", "xsi:type=\"zzz:int\"", OneParameter())), 1001);
  EXPECT_EQ(CodeOf(Altered("xsi:type=\"xsd:int\"", "xsi:type=\"FileTicket\"", OneParameter())), 1001);
}

TEST(SoapRequest, FileTicketIsAnElementWithoutPrefixes) {
  const std::string ticket = ParameterElement("f", "FileTicket", "<Id xsi:type=\"string\"> a&amp;b</Id>");
  const SoapRequest request = ParseSoapRequest(ExecuteEnvelope("s", "1", ArrayOf(1, ticket)),
                                               "http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute",
                                               Namespaces("http://quorvane.example"));
  ASSERT_EQ(request.parameters.size(), 1u);
  EXPECT_EQ(request.parameters[0].type, "FileTicket");
  EXPECT_EQ(request.parameters[0].text, " a&b");
}

TEST(SoapRequest, HeaderAndBodyHaveToAgree) {
  EXPECT_EQ(CodeOf(CloseEnvelope("s"), "CloseUserSession"), 0);
  EXPECT_EQ(CodeOf(CloseEnvelope("s"), "Execute"), 1002);
  for (const char* header :
       {"", "\"\"", "Execute", "\"http://quorvane.example/dev/ns/ivarnel/scriptwells#CloseUserSession",
        "\"http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute\""}) {
    EXPECT_THROW(ParseSoapRequest(CloseEnvelope("s"), header, Spaces()), FaultError) << header;
  }
}

// What clients write that were made from the WSDL.
constexpr char kFormOfWsdlClients[] =
    "<?xml version='1.0' encoding='utf-8'?>\n"
    "<soap-env:Envelope xmlns:soap-env=\"http://schemas.xmlsoap.org/soap/envelope/\">"
    "<soap-env:Header><h soap-env:mustUnderstand=\"0\"/></soap-env:Header><soap-env:Body>"
    "<ns0:Execute xmlns:ns0=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">"
    "<ns0:usid>s</ns0:usid><ns0:Script>x</ns0:Script><ns0:parameters>"
    "<ns0:Parameter><ns0:Name>a</ns0:Name><ns0:Value> 5 </ns0:Value></ns0:Parameter>"
    "<ns0:Parameter><ns0:Name>b</ns0:Name><ns0:Value xsi:type=\"xsd:dateTime\">2024-03-05T10:15:30.7Z"
    "</ns0:Value></ns0:Parameter></ns0:parameters></ns0:Execute></soap-env:Body></soap-env:Envelope>";

std::string WsdlForm(const std::string& from, const std::string& to) {
  std::string envelope = kFormOfWsdlClients;
  const std::size_t at = envelope.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? envelope : envelope.replace(at, from.size(), to);
}

TEST(SoapRequest, TypesThatTheWsdlTellsMayBeMissing) {
  const SoapRequest request = ParseSoapRequest(
      kFormOfWsdlClients, "\"http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute\"", Spaces());
  EXPECT_EQ(request.sessionId, "s");
  EXPECT_EQ(request.scriptDocument, "x");
  ASSERT_EQ(request.parameters.size(), 2u);
  EXPECT_EQ(request.parameters[0].type, "string");
  EXPECT_EQ(request.parameters[0].text, " 5 ");
  EXPECT_EQ(request.parameters[1].type, "datetime");
  EXPECT_EQ(request.parameters[1].text, "2024-03-05T10:15:30.700Z");
}

// Tenths of a second in XML Schema, milliseconds under the name that Scriptwells clients use.
TEST(SoapRequest, FractionsOfTheStandardDateTimeAreThoseOfXmlSchema) {
  for (const auto& [written, read] :
       {std::pair("xsd:dateTime\">2024-03-05T10:15:30.25Z", "2024-03-05T10:15:30.250Z"),
        std::pair("xsd:dateTime\">2024-03-05T10:15:30.123456+02:00", "2024-03-05T08:15:30.123Z"),
        std::pair("xsd:dateTime\">2024-03-05T10:15:30", "2024-03-05T10:15:30.000Z"),
        std::pair("xsd:datetime\">2024-03-05T10:15:30.25Z", "2024-03-05T10:15:30.025Z")}) {
    EXPECT_EQ(Parse(WsdlForm("xsd:dateTime\">2024-03-05T10:15:30.7Z", written)).parameters[1].text, read);
  }
  EXPECT_EQ(CodeOf(WsdlForm("2024-03-05T10:15:30.7Z", "2024-03-05T10:15:30.Z")), 1008);
}

TEST(SoapRequest, ParametersMayBeMissingOrNil) {
  const std::string form = kFormOfWsdlClients;
  const std::size_t start = form.find("<ns0:parameters>");
  const std::size_t end = form.find("</ns0:Execute>");
  for (const char* parameters : {"", "<ns0:parameters/>", "<ns0:parameters xsi:nil=\"true\"/>"})
    EXPECT_TRUE(Parse(form.substr(0, start) + parameters + form.substr(end)).parameters.empty())
        << parameters;
  EXPECT_EQ(CodeOf(form.substr(0, start) + "<ns0:other/>" + form.substr(end)), 1001);
}

TEST(SoapRequest, HeadersThatHaveToBeUnderstoodAreRefused) {
  EXPECT_EQ(CodeOf(WsdlForm("mustUnderstand=\"0\"", "mustUnderstand=\"1\"")), 1001);
  EXPECT_EQ(CodeOf(WsdlForm("soap-env:mustUnderstand=\"0\"", "")), 0);
}

TEST(SoapRequest, TypesOfAForeignNamespaceAreRefused) {
  EXPECT_EQ(CodeOf(WsdlForm("<ns0:Value>", "<ns0:Value type=\"xsd:int\">")), 1001);
  EXPECT_EQ(CodeOf(WsdlForm("<ns0:Value>", "<ns0:Value ns0:type=\"xsd:int\">")), 1001);
  EXPECT_EQ(CodeOf(WsdlForm("<ns0:usid>", "<ns0:usid type=\"xsd:string\">")), 1001);
}

TEST(SoapRequest, ValuesWithElementsAreRefusedWithoutAType) {
  EXPECT_EQ(CodeOf(WsdlForm("> 5 <", "><a/><")), 1001);
}

TEST(SoapRequest, WhatIsNoXmlIsRefused) {
  const std::string deep = std::string(200000, '<') + "a>";
  std::string nested;
  for (int i = 0; i < 300000; ++i) nested += "<a>";
  std::string attributes = "<a";
  for (int i = 0; i < 100000; ++i) attributes += " b" + std::to_string(i) + "=''";
  for (const std::string& body :
       {std::string(), std::string("no xml"), std::string("<a>"), std::string("<a/><b/>"),
        std::string("<a b='1' b='2'/>"), std::string("<a>&unknown;</a>"), std::string("<a>&#0;</a>"),
        std::string("<a>& </a>"), std::string("<a>\0</a>", 8), std::string("<a xmlns:x='y'>\xff</a>"),
        std::string("<x:a/>"), deep, nested, attributes + "/>",
        std::string("<!DOCTYPE a [<!ENTITY x 'y'>]><a>&x;</a>"), std::string("<!DOCTYPE a><a/>")}) {
    EXPECT_EQ(CodeOf(body), 1001) << body.substr(0, 60);
  }
}

TEST(SoapRequest, BadBytesInATextAreRefused) {
  EXPECT_EQ(CodeOf(Altered(">s</usid>", ">\xff</usid>")), 1001);
  EXPECT_EQ(CodeOf(Altered(">s</usid>", ">\xC0\x80</usid>")), 1001);
}

TEST(SoapRequest, DeclaredUtf16IsRead) {
  std::string wide = "\xFF\xFE";
  for (const char c : CloseEnvelope("s")) wide += std::string(1, c) + '\0';
  EXPECT_EQ(Parse(wide, "CloseUserSession").sessionId, "s");
}

}  // namespace
}  // namespace qv::devservice::testing
