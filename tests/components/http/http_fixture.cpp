#include "http_fixture.h"

#include <dirent.h>

#include <memory>

#include "components/http/http_session.h"

namespace qv::test {
namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};

}  // namespace

WideString Wide(const std::string& latin1) {
  std::u16string units;
  for (const char c : latin1) units += static_cast<char16_t>(static_cast<unsigned char>(c));
  return WideString(units);
}

std::string ErrorWords() {
  ErrorInfo info;
  return GetErrorInfo(&info) ? ToUtf8(info.description) : "<none>";
}

std::size_t OpenDescriptors() {
  const std::unique_ptr<DIR, DirectoryCloser> directory(opendir("/proc/self/fd"));
  std::size_t count = 0;
  while (readdir(directory.get()) != nullptr) ++count;
  return count;
}

HttpTest::HttpTest() {
  CloseKeptConnections();
  ClearErrorInfo();
}

HttpTest::~HttpTest() {
  CloseKeptConnections();
  SetThreadHttpOptions(HttpOptions(), nullptr);
}

IHttpSessionPtr HttpTest::NewSession() {
  void* object = nullptr;
  EXPECT_EQ(CreateHttpComponent(IHttpSession::kIid, &object), S_OK);
  return IHttpSessionPtr(static_cast<IHttpSession*>(object), false);
}

HRESULT HttpTest::Open(const IHttpSessionPtr& session, const std::string& proxy) {
  return session->Open(u"http", u"127.0.0.1", server_.Port(), u"", u"", Wide(proxy));
}

IHttpSessionPtr HttpTest::OpenSession() {
  IHttpSessionPtr session = NewSession();
  EXPECT_EQ(Open(session), S_OK) << ErrorWords();
  return session;
}

IHttpRequestPtr HttpTest::NewRequest(const IHttpSessionPtr& session, const std::string& verb,
                                     const std::string& path) {
  IHttpRequest* request = nullptr;
  EXPECT_EQ(session->OpenRequest(Wide(verb), Wide(path), u"text/xml", 0, &request), S_OK) << ErrorWords();
  return IHttpRequestPtr(request, false);
}

IHttpRequestPtr HttpTest::Sent(const std::string& body, const std::string& verb) {
  IHttpRequestPtr request = NewRequest(OpenSession(), verb);
  EXPECT_EQ(request->Send(Wide(body), u""), S_OK) << ErrorWords();
  return request;
}

std::string HttpTest::Header(const IHttpRequestPtr& request, const std::string& name) {
  WideString value;
  EXPECT_EQ(request->GetHeader(Wide(name), &value), S_OK) << ErrorWords();
  return value.IsNull() ? "<null>" : ToUtf8(value);
}

WideString HttpTest::ReadText(const IHttpRequestPtr& request, std::int32_t length) {
  WideString text;
  std::int32_t count = -1;
  EXPECT_EQ(request->Read(length, &text, &count), S_OK) << ErrorWords();
  EXPECT_EQ(count, length);
  return text;
}

Outcome HttpTest::Exchange(std::int32_t length) {
  Outcome outcome;
  const auto note = [&](const char* step, HRESULT code) {
    if (!Failed(code)) return true;
    outcome.code = code;
    outcome.failedStep = step;
    outcome.words = ErrorWords();
    return false;
  };
  const IHttpSessionPtr session = NewSession();
  if (!note("Open", Open(session))) return outcome;
  const IHttpRequestPtr request = NewRequest(session);
  std::int32_t count = 0;
  if (note("Send", request->Send(u"question", u"")) && length >= 0)
    note("Read", request->Read(length, &outcome.text, &count));
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  return outcome;
}

void HttpTest::Answer(const std::string& bytes) {
  server_.Expect(RawScript().ReadRequest().Write(bytes));
}

void HttpTest::ExpectNextCallWorks() {
  const std::size_t before = server_.Connections();
  Answer(RawAnswerText("fine"));
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
  EXPECT_EQ(outcome.text, WideString(u"fine"));
  EXPECT_EQ(server_.Connections(), before + 1);
}

}  // namespace qv::test
