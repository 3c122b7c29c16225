#include "devservice/files/transfer_urls.h"

#include <gtest/gtest.h>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

constexpr char kService[] = "/S.asmx";

HttpRequest RequestTo(const std::string& host, const std::string& prefix, const std::string& proto = "") {
  HttpRequest request;
  request.host = host;
  request.path = prefix + kService;
  request.forwardedProto = proto;
  return request;
}

std::string UploadOf(const HttpRequest& request) {
  return MakeTransferUrls(request, kService, {}).upload;
}

TEST(TransferUrls, HostAndPrefixAreKept) {
  const HttpRequest request = RequestTo("h:8080", "/odd/a+b");
  EXPECT_EQ(UploadOf(request), "http://h:8080/odd/a+b/WebEditor/FileManagerUpload.aspx?ticket={id}");
  EXPECT_EQ(MakeTransferUrls(request, kService, {}).file, "http://h:8080/odd/a+b/files/{id}/");
  EXPECT_EQ(ExpandUrl("http://h/files/{id}/", "abc"), "http://h/files/abc/");
  EXPECT_EQ(ExpandUrl("file:///x", "abc"), "file:///x");
}

TEST(TransferUrls, PrefixIsEscaped) {
  EXPECT_EQ(UploadOf(RequestTo("h", "/a=b c\r{id}\xC3\xA9")),
            "http://h/a%3Db%20c%0D%7Bid%7D%C3%A9/WebEditor/FileManagerUpload.aspx?ticket={id}");
}

TEST(TransferUrls, HttpsOfAProxyHasItsPort) {
  const std::string rest = "/WebEditor/FileManagerUpload.aspx?ticket={id}";
  EXPECT_EQ(UploadOf(RequestTo("h", "", "https")), "https://h:443" + rest);
  EXPECT_EQ(UploadOf(RequestTo("h:8443", "", "https")), "https://h:8443" + rest);
  EXPECT_EQ(UploadOf(RequestTo("[::1]", "", "https")), "https://[::1]:443" + rest);
  EXPECT_EQ(UploadOf(RequestTo("[::1]:1", "", "https")), "https://[::1]:1" + rest);
  EXPECT_EQ(UploadOf(RequestTo("h", "", "ftp")), "http://h" + rest);
}

TEST(TransferUrls, PathsAreRecognised) {
  const std::string id(32, 'a');
  EXPECT_EQ(PublishedIdIn("/files/" + id + "/"), id);
  EXPECT_EQ(PublishedIdIn("/odd/x/files/" + id + "/"), id);
  for (const std::string& path :
       {"/files/" + id, "/file/" + id + "/", "/files/" + id + "a/", std::string("/files//"),
        "/files/" + std::string(32, 'A') + "/", std::string("/")}) {
    EXPECT_EQ(PublishedIdIn(path), std::nullopt) << path;
  }
  EXPECT_TRUE(IsUploadPath("/a/WebEditor/FileManagerUpload.aspx"));
  EXPECT_FALSE(IsUploadPath("/WebEditor/FileManagerUpload.aspx/"));
}

class TransferHosts : public TransferTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.names = {"tunnel.example", "h"};
    StartWith(options);
    session_ = Login();
  }
  std::string AddressFor(const std::string& headers) {
    const std::string body = ExecuteEnvelope(session_, "uploadUrl()", NilParameters());
    RawClient client(service_->Port());
    client.Send("POST /Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1\r\n" + headers +
                "Content-Type: text/xml\r\n"
                "SOAPAction: http://quorvane.example/dev/ns/ivarnel/scriptwells#Execute\r\n" +
                "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    const std::string url = ValueIn(client.Receive().body);
    return url.substr(0, url.find("/WebEditor"));
  }
};

TEST_F(TransferHosts, HostHeaderCounts) {
  EXPECT_EQ(AddressFor("Host: tunnel.example:81\r\n"), "xsd:string|http://tunnel.example:81");
  EXPECT_EQ(AddressFor("Host: h\r\nX-Forwarded-Proto: https\r\n"), "xsd:string|https://h:443");
}

TEST_F(TransferHosts, OwnAddressStandsInForNone) {
  EXPECT_EQ(AddressFor(""), "xsd:string|" + service_->Url());
  EXPECT_EQ(AddressFor("Host:\r\n"), "xsd:string|" + service_->Url());
}

}  // namespace
}  // namespace qv::devservice::testing
