// The sides of the contract suite: the built-in component against the raw server, and the fake.
#include <string>

#include "fixtures/fake_http.h"
#include "fixtures/raw_server.h"
#include "http_contract.h"

namespace qv::test {
namespace {

class CurlSide final : public HttpContractSide {
 public:
  CurlSide() { CloseKeptConnections(); }
  ~CurlSide() override { CloseKeptConnections(); }

  std::uint16_t Port() const override { return server_.Port(); }
  void WillAnswer(int status, const std::string& body) override {
    Serve("HTTP/1.1 " + std::to_string(status) + " Words\r\nConnection: close\r\nContent-Length: " +
          std::to_string(body.size()) + "\r\n\r\n" + body);
  }
  void WillAnswerWithoutLength() override { Serve(OkText("\r\nbody")); }
  void WillFail() override { server_.Expect(RawScript().ReadRequest().Close()); }
  std::string BodiesSent() const override {
    const std::string all = server_.AllReceived();
    return all.substr(all.find("\r\n\r\n") + 4);
  }

 private:
  void Serve(const std::string& bytes) { server_.Expect(RawScript().Reply(bytes).Close()); }

  RawServer server_;
};

class FakeSide final : public HttpContractSide {
 public:
  std::uint16_t Port() const override { return 80; }
  void WillAnswer(int status, const std::string& body) override {
    HttpAnswer answer;
    answer.status = FromUtf8(std::to_string(status));
    answer.contentLength = FromUtf8(std::to_string(body.size()));
    answer.body = FromUtf8(body);
    fake_.AnswerAs(answer);
  }
  void WillAnswerWithoutLength() override { fake_.AnswerAs(HttpAnswer()); }
  void WillFail() override { fake_.Fail(HttpStep::kSend, E_FAIL, u"words"); }
  std::string BodiesSent() const override {
    std::string all;
    for (const std::string& body : fake_.Bodies()) all += body;
    return all;
  }

 private:
  FakeHttp fake_;
};

template <class Side>
std::unique_ptr<HttpContractSide> Make() {
  return std::make_unique<Side>();
}

INSTANTIATE_TEST_SUITE_P(Curl, HttpContract, ::testing::Values(&Make<CurlSide>));
INSTANTIATE_TEST_SUITE_P(Fake, HttpContract, ::testing::Values(&Make<FakeSide>));

}  // namespace
}  // namespace qv::test
