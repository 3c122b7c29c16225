// The addresses of uploads and files.
#include "devservice/files/transfer_urls.h"

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

constexpr char kUploads[] = "/WebEditor/FileManagerUpload.aspx?ticket={id}";

TransferUrls UrlsFor(const std::string& host, const std::string& prefix, const std::string& proto = "") {
  HttpRequest request;
  request.host = host;
  request.path = prefix + "/S.asmx";
  request.forwardedProto = proto;
  return MakeTransferUrls(request, "/S.asmx", {});
}

TEST(TransferUrls, HostPrefixAndPortOfTheRequest) {
  EXPECT_EQ(UrlsFor("h:8080", "/odd/a+b").file, "http://h:8080/odd/a+b/files/{id}/");
  constexpr const char* kRows[][4] = {
      {"h:8080", "/odd/a+b", "", "http://h:8080/odd/a+b"},
      {"h", "/a=b c\r{id}\xC3\xA9", "", "http://h/a%3Db%20c%0D%7Bid%7D%C3%A9"},
      {"h", "", "https", "https://h:443"},
      {"h:8443", "", "https", "https://h:8443"},
      {"[::1]", "", "https", "https://[::1]:443"},
      {"[::1]:1", "", "https", "https://[::1]:1"},
      {"h", "", "ftp", "http://h"},
  };
  for (const auto& [host, prefix, proto, start] : kRows)
    EXPECT_EQ(UrlsFor(host, prefix, proto).upload, std::string(start) + kUploads) << host << " " << proto;
  EXPECT_EQ(ExpandUrl("http://h/files/{id}/", "abc"), "http://h/files/abc/");
  EXPECT_EQ(ExpandUrl("file:///x", "abc"), "file:///x");
}

TEST(TransferUrls, PathsAreRecognised) {
  const std::string id(32, 'a');
  EXPECT_EQ(PublishedIdIn("/files/" + id + "/"), id);
  EXPECT_EQ(PublishedIdIn("/odd/x/files/" + id + "/"), id);
  for (const std::string& path :
       {"/files/" + id, "/file/" + id + "/", "/files/" + id + "a/", std::string("/files//"),
        "/files/" + std::string(32, 'A') + "/", std::string("/")})
    EXPECT_EQ(PublishedIdIn(path), std::nullopt) << path;
  EXPECT_TRUE(IsUploadPath("/a/WebEditor/FileManagerUpload.aspx"));
  EXPECT_FALSE(IsUploadPath("/WebEditor/FileManagerUpload.aspx/"));
}

using TransferHosts = TransferTest;

TEST_F(TransferHosts, HostHeaderCountsElseTheOwnAddress) {
  StartWith([](ServiceOptions& options) { options.names = {"tunnel.example", "h"}; });
  const std::pair<const char*, std::string> rows[] = {
      {"Host: tunnel.example:81\r\n", "http://tunnel.example:81"},
      {"Host: h\r\nX-Forwarded-Proto: https\r\n", "https://h:443"},
      {"", service_->Url()},
      {"Host:\r\n", service_->Url()},
  };
  const std::string envelope = ExecuteEnvelope(Session(), "uploadUrl()", NilParameters());
  for (const auto& [headers, start] : rows) {
    const std::string value = ValueIn(Ask(PostRequest("", "Execute", envelope, headers)).body);
    EXPECT_EQ(value.substr(0, value.find("/WebEditor")), "xsd:string|" + start) << headers;
  }
}

}  // namespace
}  // namespace qv::devservice::testing
