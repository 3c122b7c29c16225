// The connection model and its proxy: "name:port" for downloads, the bare name for everything else.
#include <memory>

#include "client_fixture.h"
#include "fixtures/fake_http.h"
#include "nginx.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/native_path.h"
#include "tinyproxy.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

// Scripts and uploads hand the proxy's bare name to the component, which means port 80. Null, with the
// reason, where that port cannot be had; every test has another address.
std::unique_ptr<Tinyproxy> ProxyOnPort80(const std::string& address, std::string* reason) {
  try {
    return std::make_unique<Tinyproxy>("", address, static_cast<std::uint16_t>(80));
  } catch (const std::exception& failure) {
    *reason = std::string("port 80 cannot be had: ") + failure.what();
    return nullptr;
  }
}

class ModelProxy : public TransferTest {
 protected:
  // A download from `url` through `proxy` fails and changes nothing; the next one goes directly.
  void ExpectNoDownloadThrough(const std::string& proxy, const std::string& url, const std::string& outcome) {
    const Tree before = AllFiles();
    UseServer(ServerUrl(), proxy);
    EXPECT_EQ(Download(url, Wide(Target())).substr(0, outcome.size()), outcome);
    EXPECT_EQ(AllFiles(), before);
    UseServer(ServerUrl());
    ExpectDownloadsLeaveNothing();
  }
};

TEST_F(ModelProxy, DownloadGoesThroughTheProxyInAbsoluteForm) {
  const Tinyproxy proxy;
  const Nginx nginx;
  nginx.Offer("f.txt", "through");
  UseServer(nginx.Url(), proxy.Address());
  EXPECT_EQ(Download(nginx.Url() + "/files/f.txt?ticket=1", Wide(Target())), "ok");
  EXPECT_EQ(NativePath(downloaded_), Target() + "/f.txt");
  EXPECT_EQ(files_.Read("target/f.txt"), "through");
  EXPECT_EQ(proxy.Requests(1), Words{"GET " + nginx.Url() + "/files/f.txt?ticket=1 HTTP/1.1"});
  EXPECT_EQ(proxy.Connections(), 1U);
}

TEST_F(ModelProxy, SecureDownloadGoesThroughATunnel) {
  const Tinyproxy proxy;
  const SecureNginx nginx;
  nginx.Trust();
  const std::string content(2'000'000, 's');
  nginx->Offer("f.bin", content);
  UseServer(nginx->Url(), proxy.Address());
  EXPECT_EQ(Download(nginx->Url() + "/files/f.bin", Wide(Target())), "ok");
  EXPECT_EQ(files_.Read("target/f.bin"), content);
  EXPECT_EQ(proxy.Requests(1), Words{"CONNECT 127.0.0.1:" + std::to_string(nginx->Port()) + " HTTP/1.1"});
}

TEST_F(ModelProxy, RefusedDownloadIsAnHttpProblem) {
  const Tinyproxy proxy("Filter \"" + files_.Write("filter", "127.0.0.1\n") + "\"\n");
  ExpectNoDownloadThrough(proxy.Address(), ServerUrl() + "/f", "0x80020009 Unknown Http problem.");
}

TEST_F(ModelProxy, RefusedTunnelIsAFailureOfOpen) {
  const Tinyproxy proxy("ConnectPort 443\n");
  ExpectNoDownloadThrough(proxy.Address(), "https" + ServerUrl().substr(4) + "/f", "0x80004003");
}

TEST_F(ModelProxy, ProxyThatIsNotThereIsAFailureOfOpen) {
  ExpectNoDownloadThrough("127.0.0.1:" + std::to_string(FreePort()), ServerUrl() + "/f", "0x80004003");
}

TEST_F(ModelProxy, DownloadHandsOnNameAndPortAndAScriptTheNameAlone) {
  UseServer("http://srv.example:81", "proxy.example:8080");
  const FakeHttp http;
  Variant result;
  model_->Execute(u"JavaScript", u"1", nullptr, &result);
  WideString path;
  model_->DownloadFile(u"http://srv.example:82/f", Wide(Target()), &path);
  const Words expected{"Open(http, srv.example, 81, , , proxy.example)",
                       "Open(http, srv.example, 82, <null>, <null>, proxy.example:8080)"};
  EXPECT_EQ(http.CallsNamed("Open("), expected);
}

// The question for an address goes to the server directly, the file and the script through the proxy.
TEST_F(ModelProxy, UploadGoesThroughTheProxyAndItsQuestionDoesNot) {
  std::string reason;
  const auto proxy = ProxyOnPort80("127.80.80.81", &reason);
  if (proxy == nullptr) GTEST_SKIP() << reason;
  UseServer(ServerUrl(), "127.80.80.81");
  Reply(ScriptAnswer(UploadUrl()));
  ReplyAndClose(RawAnswerText(""));
  ReplyAndClose(ScriptAnswer("arrived"));
  EXPECT_EQ(RunWith(File("content")), "VT_BSTR arrived");
  const Words expected{"POST " + UploadUrl() + " HTTP/1.1",
                       "POST " + ServerUrl() + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1"};
  EXPECT_EQ(proxy->Requests(2), expected);
}

class ProxiedService : public ClientTest {};

TEST_F(ProxiedService, SessionAndScriptsGoThroughAProxyOnPort80) {
  std::string reason;
  const auto proxy = ProxyOnPort80("127.80.80.80", &reason);
  if (proxy == nullptr) GTEST_SKIP() << reason;
  const WideString url = FromUtf8(service_->Url());
  ASSERT_EQ(SetServer(url, u"127.80.80.80"), "ok");
  EXPECT_EQ(Open(), "ok");
  EXPECT_EQ(Run(u"6 * 7"), "VT_INT 42");
  EXPECT_EQ(Close(), "ok");
  const std::string line =
      "POST " + service_->Url() + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx HTTP/1.1";
  const Words expected{line, line, line};
  EXPECT_EQ(proxy->Requests(3), expected);
}

TEST_F(ProxiedService, ProxyThatIsNotThereIsNoSoapCall) {
  ASSERT_EQ(SetServer(FromUtf8(service_->Url()), u"no-such-proxy.invalid"), "ok");
  EXPECT_EQ(Open(), "0x80020009 Cannot create a soap call.");
  ASSERT_EQ(SetServer(FromUtf8(service_->Url())), "ok");
  EXPECT_EQ(Open(), "ok");
}

}  // namespace
}  // namespace qv::test
