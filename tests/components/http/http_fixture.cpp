#include "http_fixture.h"

#include <dirent.h>

#include <memory>

#include "components/http/http_session.h"
#include "qvscriptwells/com_call.h"

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
  StartAnew();
}

HttpTest::~HttpTest() {
  CloseKeptConnections();
  SetThreadHttpOptions(HttpOptions(), nullptr);
}

void HttpTest::StartAnew() {
  CloseKeptConnections();
  ClearErrorInfo();
}

void HttpTest::Limit(std::int64_t HttpOptions::*number, std::int64_t value) {
  HttpOptions options;
  options.*number = value;
  SetLimits(options);
}

IHttpSessionPtr HttpTest::NewSession() {
  IHttpSessionPtr session;
  EXPECT_EQ(CreateHttpComponent(IHttpSession::kIid, Put(session)), S_OK);
  return session;
}

HRESULT HttpTest::OpenAt(const std::string& protocol, const std::string& host, std::uint16_t port,
                         const std::string& proxy) {
  return NewSession()->Open(Wide(protocol), Wide(host), port, u"", u"", Wide(proxy));
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
  IHttpRequestPtr request;
  EXPECT_EQ(session->OpenRequest(Wide(verb), Wide(path), u"text/xml", 0, Put(request)), S_OK) << ErrorWords();
  return request;
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

std::string HttpTest::ReadText(const IHttpRequestPtr& request, std::int32_t length) {
  WideString text;
  std::int32_t count = -1;
  EXPECT_EQ(request->Read(length, &text, &count), S_OK) << ErrorWords();
  EXPECT_EQ(count, length);
  return ToUtf8(text);
}

HRESULT HttpTest::Read(const IHttpRequestPtr& request, std::int32_t length) {
  WideString text;
  std::int32_t count = 0;
  return request->Read(length, &text, &count);
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
  WideString text;
  std::int32_t count = 0;
  if (note("Send", request->Send(u"question", u"")) && length >= 0)
    note("Read", request->Read(length, &text, &count));
  outcome.text = ToUtf8(text);
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  return outcome;
}

void HttpTest::ExpectText(const std::string& text) {
  const Outcome outcome = Exchange(static_cast<std::int32_t>(text.size()));
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
  EXPECT_EQ(outcome.text, text);
}

void HttpTest::ExpectFailure(std::int32_t length, const std::string& step, HRESULT code,
                             const std::string& words) {
  const Outcome outcome = Exchange(length);
  EXPECT_EQ(outcome.failedStep, step);
  EXPECT_EQ(outcome.code, code);
  EXPECT_EQ(outcome.words, words);
}

HRESULT HttpTest::SendMany(std::size_t bytes) {
  return NewRequest(OpenSession())->Send(WideString(std::u16string(bytes, u'x')), u"");
}

void HttpTest::ExpectNextCallWorks() {
  const std::size_t before = server_.Connections();
  Answer("fine");
  ExpectText("fine");
  EXPECT_EQ(server_.Connections(), before + 1);
}

}  // namespace qv::test
