// Reading of SOAP requests: the form of our clients, and that of clients made from the WSDL.
#include "devservice/soap/soap_request.h"

#include "devservice/values/fault_codes.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

constexpr char kSpace[] = "http://quorvane.example/dev/ns/ivarnel/scriptwells";

SoapRequest ParseWith(const std::string& soapAction, const std::string& body) {
  return ParseSoapRequest(body, soapAction, Namespaces("http://quorvane.example"));
}

SoapRequest Parse(const std::string& body, const std::string& action = "Execute") {
  return ParseWith(std::string(kSpace) + "#" + action, body);
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

// A change of a valid envelope: a text and what replaces it.
struct Change {
  const char* from;
  const char* to;
  int code = 1001;
};

void ExpectCodes(const std::string& envelope, std::initializer_list<Change> changes) {
  for (const Change& change : changes)
    EXPECT_EQ(CodeOf(Replaced(envelope, change.from, change.to)), change.code) << change.to;
}

std::string Execute(const std::string& parameters) {
  return ExecuteEnvelope("s", "1", parameters);
}

// "name type text" of each parameter.
std::string ParametersOf(const SoapRequest& request) {
  std::string shown;
  for (const Parameter& parameter : request.parameters)
    shown += "[" + parameter.name + " " + parameter.type + " " + parameter.text + "]";
  return shown;
}

TEST(SoapRequest, EnvelopesOfOurClientsAreRead) {
  const SoapRequest create = Parse(CreateEnvelope("Username=a&b;"), "CreateUserSession");
  EXPECT_EQ(create.action, Action::kCreateUserSession);
  EXPECT_EQ(create.connectionString, "Username=a&b;");
  const SoapRequest release = Parse(CloseEnvelope("id<"), "CloseUserSession");
  EXPECT_EQ(release.action, Action::kCloseUserSession);
  EXPECT_EQ(release.sessionId, "id<");
  const SoapRequest execute = Parse(Execute(OneParameter("xsd:int", "1")));
  EXPECT_EQ(execute.sessionId, "s");
  EXPECT_EQ(execute.scriptDocument.substr(0, 34), "<Scriptwell Language=\"JavaScript\" ");
  EXPECT_EQ(ParametersOf(execute), "[p int 1]");
  EXPECT_TRUE(Parse(Execute(NilParameters())).parameters.empty());
  EXPECT_TRUE(Parse(Execute(ArrayOf(0, ""))).parameters.empty());
  const std::string ticket = ParameterElement("f", "FileTicket", "<Id xsi:type=\"string\"> a&amp;b</Id>");
  EXPECT_EQ(ParametersOf(Parse(Execute(ArrayOf(1, ticket)))), "[f FileTicket  a&b]");
}

TEST(SoapRequest, PrefixesAreFree) {
  std::string renamed = CloseEnvelope("s");
  for (std::size_t at = renamed.find("SOAP-ENV"); at != std::string::npos; at = renamed.find("SOAP-ENV"))
    renamed.replace(at, 8, "e");
  EXPECT_EQ(Parse(renamed, "CloseUserSession").sessionId, "s");
  std::string wide = "\xFF\xFE";
  for (const char c : CloseEnvelope("s")) wide += std::string(1, c) + '\0';
  EXPECT_EQ(Parse(wide, "CloseUserSession").sessionId, "s") << "UTF-16";
}

TEST(SoapRequest, EveryPartOfTheFormIsChecked) {
  ExpectCodes(Execute(NilParameters()),
              {
                  {"schemas.xmlsoap.org/soap/envelope/", "www.w3.org/2003/05/soap-envelope"},
                  {"/dev/ns/ivarnel/scriptwells", "/dev/ns/ivarnel/other"},
                  {"http://www.w3.org/2001/XMLSchema\"", "http://www.w3.org/1999/XMLSchema\""},
                  {"<Execute ", "<Exekute "},
                  {"<usid xsi:type=\"xsd:string\">", "<usid xsi:type=\"string\">"},
                  {"<usid xsi:type=\"xsd:string\">s</usid>", ""},
                  {"<usid xsi:type=\"xsd:string\">s</usid>", "<usid xsi:type=\"xsd:string\"><s/></usid>"},
                  {"<usid", "text<usid"},
                  {"<SOAP-ENV:Body>", "<SOAP-ENV:Other/><SOAP-ENV:Body>"},
                  {"<SOAP-ENV:Body>", "<SOAP-ENV:Header/><SOAP-ENV:Header/><SOAP-ENV:Body>"},
                  {"xsi:nil=\"true\"", "xsi:nil=\"false\""},
                  {"xsi:type=\"ns1:Parameter\"", "xsi:type=\"ns2:Parameter\""},
                  {"ns1:Parameter[]", "ns1:Parameter[0]"},
                  {">s</usid>", ">\xff</usid>"},
                  {">s</usid>", ">\xC0\x80</usid>"},
              });
  ExpectCodes(Execute(OneParameter("xsd:int", "1")), {
                                                         {"Parameter[1]", "Parameter[1]", 0},
                                                         {"Parameter[1]", "Parameter[2]"},
                                                         {"Parameter[1]", "Parameter[0]"},
                                                         {"ns1:arrayType=", "ns2:arrayType="},
                                                         {"\"ns2:Parameter[1]\"", "\"ns1:Parameter[1]\""},
                                                         {"xsi:type=\"xsd:int\"", "xsi:type=\"int\"", 1009},
                                                         {"xsi:type=\"xsd:int\"", "xsi:type=\"zzz:int\""},
                                                         {"xsi:type=\"xsd:int\"", "xsi:type=\"FileTicket\""},
                                                     });
}

TEST(SoapRequest, HeaderAndBodyHaveToAgree) {
  EXPECT_EQ(CodeOf(CloseEnvelope("s"), "CloseUserSession"), 0);
  EXPECT_EQ(CodeOf(CloseEnvelope("s"), "Execute"), 1002);
  for (const std::string& header :
       {std::string(), std::string("\"\""), std::string("Execute"),
        std::string("\"") + kSpace + "#CloseUserSession", std::string("\"") + kSpace + "#Execute\""})
    EXPECT_THROW(ParseWith(header, CloseEnvelope("s")), FaultError) << header;
}

// The form of clients that were made from the WSDL.
constexpr char kWsdlForm[] =
    "<?xml version='1.0' encoding='utf-8'?>\n"
    "<soap-env:Envelope xmlns:soap-env=\"http://schemas.xmlsoap.org/soap/envelope/\">"
    "<soap-env:Header><h soap-env:mustUnderstand=\"0\"/></soap-env:Header><soap-env:Body>"
    "<ns0:Execute xmlns:ns0=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">"
    "<ns0:usid>s</ns0:usid><ns0:Script>x</ns0:Script><ns0:parameters>"
    "<ns0:Parameter><ns0:Name>a</ns0:Name><ns0:Value> 5 </ns0:Value></ns0:Parameter>"
    "<ns0:Parameter><ns0:Name>b</ns0:Name><ns0:Value xsi:type=\"xsd:dateTime\">2024-03-05T10:15:30.7Z"
    "</ns0:Value></ns0:Parameter></ns0:parameters></ns0:Execute></soap-env:Body></soap-env:Envelope>";

TEST(SoapRequest, TypesOfTheWsdlMayBeMissing) {
  const SoapRequest request = ParseWith(std::string("\"") + kSpace + "#Execute\"", kWsdlForm);
  EXPECT_EQ(request.sessionId, "s");
  EXPECT_EQ(request.scriptDocument, "x");
  EXPECT_EQ(ParametersOf(request), "[a string  5 ][b datetime 2024-03-05T10:15:30.700Z]");
  const std::string array = Between(kWsdlForm, "</ns0:Script>", "</ns0:Execute>");
  for (const char* parameters : {"", "<ns0:parameters/>", "<ns0:parameters xsi:nil=\"true\"/>"})
    EXPECT_TRUE(Parse(Replaced(kWsdlForm, array, parameters)).parameters.empty()) << parameters;
  ExpectCodes(kWsdlForm, {{array.c_str(), "<ns0:other/>"},
                          {"mustUnderstand=\"0\"", "mustUnderstand=\"1\""},
                          {"soap-env:mustUnderstand=\"0\"", "", 0},
                          {"<ns0:Value>", "<ns0:Value type=\"xsd:int\">"},
                          {"<ns0:Value>", "<ns0:Value ns0:type=\"xsd:int\">"},
                          {"<ns0:usid>", "<ns0:usid type=\"xsd:string\">"},
                          {"> 5 <", "><a/><"},
                          {"2024-03-05T10:15:30.7Z", "2024-03-05T10:15:30.Z", 1008}});
}

// Tenths of a second in XML Schema, milliseconds under the name that our clients use.
TEST(SoapRequest, FractionsOfTheStandardDateTimeAreThoseOfXmlSchema) {
  constexpr const char* kRows[][2] = {
      {"xsd:dateTime\">2024-03-05T10:15:30.25Z", "2024-03-05T10:15:30.250Z"},
      {"xsd:dateTime\">2024-03-05T10:15:30.123456+02:00", "2024-03-05T08:15:30.123Z"},
      {"xsd:dateTime\">2024-03-05T10:15:30", "2024-03-05T10:15:30.000Z"},
      {"xsd:datetime\">2024-03-05T10:15:30.25Z", "2024-03-05T10:15:30.025Z"},
  };
  for (const auto& [written, read] : kRows) {
    const std::string form = Replaced(kWsdlForm, "xsd:dateTime\">2024-03-05T10:15:30.7Z", written);
    EXPECT_EQ(Parse(form).parameters[1].text, read) << written;
  }
}

TEST(SoapRequest, OtherTextsAreRefused) {
  std::string nested;
  for (int i = 0; i < 300000; ++i) nested += "<a>";
  std::string attributes = "<a";
  for (int i = 0; i < 100000; ++i) attributes += " b" + std::to_string(i) + "=''";
  for (const std::string& body :
       {std::string(), std::string("no xml"), std::string("<a>"), std::string("<a/><b/>"),
        std::string("<a b='1' b='2'/>"), std::string("<a>&unknown;</a>"), std::string("<a>&#0;</a>"),
        std::string("<a>& </a>"), std::string("<a>\0</a>", 8), std::string("<a xmlns:x='y'>\xff</a>"),
        std::string("<x:a/>"), std::string(200000, '<') + "a>", nested, attributes + "/>",
        std::string("<!DOCTYPE a [<!ENTITY x 'y'>]><a>&x;</a>"), std::string("<!DOCTYPE a><a/>")})
    EXPECT_EQ(CodeOf(body), 1001) << body.substr(0, 60);
}

}  // namespace
}  // namespace qv::devservice::testing
