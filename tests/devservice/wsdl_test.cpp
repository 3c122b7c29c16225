#include "devservice/soap/wsdl.h"

#include "devservice/soap/well_formed.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

constexpr char kPath[] = "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx";

class WsdlPage : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.names = {"h"};
    StartWith(options);
  }
  RawAnswer Ask(const std::string& target, const std::string& headers) {
    RawClient client(service_->Port());
    client.Send("GET " + target + " HTTP/1.1\r\n" + headers + "\r\n");
    return client.Receive();
  }
};

TEST(Wsdl, IsWellFormedWhateverTheAddressIs) {
  const std::string wsdl = WriteWsdl(Namespaces("http://a&b"), "http://h/\"<>&");
  EXPECT_EQ(FaultInXml(wsdl, "UTF-8"), "");
  EXPECT_NE(wsdl.find("<soap:address location=\"http://h/&quot;&lt;&gt;&amp;\"/>"), std::string::npos)
      << wsdl;
  EXPECT_NE(wsdl.find("soapAction=\"http://a&amp;b/dev/ns/ivarnel/scriptwells#Execute\""), std::string::npos);
}

TEST_F(WsdlPage, NamesTheAddressUnderWhichItWasAskedFor) {
  const RawAnswer answer = Ask(std::string("/odd/strictxml") + kPath + "?wsdl", "Host: h:8080\r\n");
  EXPECT_EQ(answer.head.substr(0, 17), "HTTP/1.1 200 OK\r\n");
  EXPECT_EQ(HeaderOf(answer.head, "Content-Type"), "text/xml; charset=utf-8");
  EXPECT_NE(answer.body.find(std::string("location=\"http://h:8080/odd/strictxml") + kPath + "\""),
            std::string::npos)
      << answer.body;
  const RawAnswer secure = Ask(std::string(kPath) + "?WSDL", "Host: h\r\nX-Forwarded-Proto: https\r\n");
  EXPECT_NE(secure.body.find(std::string("location=\"https://h:443") + kPath + "\""), std::string::npos);
}

TEST_F(WsdlPage, NothingElseIsAnsweredToGet) {
  EXPECT_EQ(Ask(kPath, "Host: h\r\n").head.substr(0, 12), "HTTP/1.1 405");
  EXPECT_EQ(Ask(std::string(kPath) + "?x=wsdl", "Host: h\r\n").head.substr(0, 12), "HTTP/1.1 405");
  EXPECT_EQ(Ask(std::string("/odd/none") + kPath + "?wsdl", "Host: h\r\n").head.substr(0, 12),
            "HTTP/1.1 404");
}

}  // namespace
}  // namespace qv::devservice::testing
