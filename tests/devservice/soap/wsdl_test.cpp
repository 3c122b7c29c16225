// The WSDL, and the page that answers it.
#include "devservice/soap/wsdl.h"

#include "devservice/soap/well_formed.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

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
