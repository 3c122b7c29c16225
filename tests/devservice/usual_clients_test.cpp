// The WSDL, and usual SOAP clients that are made from it.
#include "devservice/soap/well_formed.h"
#include "devservice/soap/wsdl.h"
#include "fixtures/output_of.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

// Any other version may behave otherwise.
constexpr char kSoapPackage[] = "soap@1.13.0";

// With what the command prints on either output.
CommandOutput RunShell(const std::string& command) {
  return OutputOf("(" + command + ") 2>&1");
}

std::string Quoted(const std::string& path) {
  return "'" + path + "'";
}

// The package is fetched once for a build directory.
CommandOutput InstallSoap() {
  const std::string directory = Quoted(USUAL_CLIENTS_MODULES);
  return RunShell("mkdir -p " + directory + " && cd " + directory + " && { grep -qs '\"" +
                  std::string(kSoapPackage).replace(4, 1, "\": \"") +
                  "\"' package.json && test -d node_modules/soap; } || timeout 100 npm install "
                  "--ignore-scripts --no-package-lock --no-audit --no-fund --save-exact --prefix " +
                  directory + " " + kSoapPackage);
}

class UsualClients : public ServiceTest {
 protected:
  void SetUp() override { StartWith(TestOptions()); }
  std::string Script(const std::string& name) const {
    return Quoted(std::string(USUAL_CLIENTS_SOURCE) + "/" + name) + " " + service_->Url();
  }
};

TEST_F(UsualClients, NodeSoap) {
  if (RunShell("command -v node && command -v npm").exit != 0)
    GTEST_SKIP() << "NOT RUN: there is no node or no npm on this machine, so nothing is known of node-soap";
  const CommandOutput installed = InstallSoap();
  if (installed.exit != 0)
    GTEST_SKIP() << "NOT RUN: npm cannot install " << kSoapPackage << ":\n" << installed.text;
  const CommandOutput outcome = RunShell("NODE_PATH=" + Quoted(USUAL_CLIENTS_MODULES "/node_modules") +
                                         " timeout 60 node " + Script("node_soap.js"));
  EXPECT_EQ(outcome.text,
            "session true\n"
            "number xsd:int 42\n"
            "text xsd:string a<b & \xC3\xA9\n"
            "parameters xsd:string i,int,5|b,boolean,true|t,string,plain <text>\n"
            "datetime xsd:string 2024-03-05T10:15:30.500Z\n"
            "fault true\n"
            "closed true\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(UsualClients, Zeep) {
  if (RunShell("/usr/bin/python3 -c 'import zeep'").exit != 0)
    GTEST_SKIP() << "NOT RUN: /usr/bin/python3 has no zeep (package python3-zeep), so nothing is known of it";
  const CommandOutput outcome = RunShell("timeout 60 /usr/bin/python3 " + Script("zeep_client.py"));
  EXPECT_EQ(outcome.text,
            "session True\n"
            "number 42\n"
            "text 'a<b & \\xe9'\n"
            "parameters i,int,5|b,boolean,true|t,string,plain <text>\n"
            "datetime 2024-03-05T10:15:30.500Z\n"
            "fault True\n"
            "nothing None\n"
            "closed True\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(Wsdl, IsWellFormedWhateverTheAddressIs) {
  const std::string wsdl = WriteWsdl(Namespaces("http://a&b"), "http://h/\"<>&");
  EXPECT_EQ(FaultInXml(wsdl, "UTF-8"), "");
  EXPECT_TRUE(Contains(wsdl, "<soap:address location=\"http://h/&quot;&lt;&gt;&amp;\"/>"));
  EXPECT_TRUE(Contains(wsdl, "soapAction=\"http://a&amp;b/dev/ns/ivarnel/scriptwells#Execute\""));
}

class WsdlPage : public ServiceTest {
 protected:
  void SetUp() override {
    StartWith([](ServiceOptions& options) { options.names = {"h"}; });
  }
  RawAnswer Ask(const std::string& prefix, const std::string& query, const std::string& headers) {
    return ServiceTest::Ask(Request("GET " + prefix + kServicePath + query, headers));
  }
};

TEST_F(WsdlPage, NamesTheAddressUnderWhichItWasAskedFor) {
  const RawAnswer answer = Ask("/odd/strictxml", "?wsdl", "Host: h:8080\r\n");
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=utf-8");
  EXPECT_TRUE(
      Contains(answer.body, std::string("location=\"http://h:8080/odd/strictxml") + kServicePath + "\""));
  const RawAnswer secure = Ask("", "?WSDL", "Host: h\r\nX-Forwarded-Proto: https\r\n");
  EXPECT_TRUE(Contains(secure.body, std::string("location=\"https://h:443") + kServicePath + "\""));
  EXPECT_EQ(StatusOf(Ask("", "", "Host: h\r\n")), "405");
  EXPECT_EQ(StatusOf(Ask("", "?x=wsdl", "Host: h\r\n")), "405");
  EXPECT_EQ(StatusOf(Ask("/odd/none", "?wsdl", "Host: h\r\n")), "404");
}

}  // namespace
}  // namespace qv::devservice::testing
