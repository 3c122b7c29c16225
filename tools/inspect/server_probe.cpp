#include "tools/inspect/server_probe.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>
#include <new>

#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

constexpr std::size_t kMostBytes = std::size_t{16} << 20;

struct Cleanup {
  void operator()(CURL* handle) const noexcept { curl_easy_cleanup(handle); }
  void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
};
using Easy = std::unique_ptr<CURL, Cleanup>;

// Borrowed by callbacks.
struct Heard {
  std::vector<std::string> addresses;
  std::string head, body;
};

int OnProgress(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return Interrupted() ? 1 : 0;
}

// "  Trying 127.0.0.1:8080..."
int OnWords(CURL*, curl_infotype kind, char* text, std::size_t size, void* heard) {
  constexpr std::string_view kTrying = "Trying ";
  const std::string_view words(text, size);
  const std::size_t at = words.find(kTrying);
  if (kind != CURLINFO_TEXT || at == std::string_view::npos) return 0;
  const std::string_view address = words.substr(at + kTrying.size());
  static_cast<Heard*>(heard)->addresses.emplace_back(address.substr(0, address.find("...")));
  return 0;
}

std::size_t OnHead(char* bytes, std::size_t, std::size_t size, void* heard) {
  std::string& head = static_cast<Heard*>(heard)->head;
  if (head.size() + size > kMostBytes) return 0;
  head.append(bytes, size);
  return size;
}

std::size_t OnBody(char* bytes, std::size_t, std::size_t size, void* heard) {
  std::string& body = static_cast<Heard*>(heard)->body;
  if (body.size() + size > kMostBytes) return 0;
  body.append(bytes, size);
  return size;
}

std::string ProxyOf(const SessionSettings& settings) {
  const std::string& proxy = settings.options.proxy;
  return proxy.empty() || proxy.find(':') != std::string::npos ? proxy : proxy + ":80";
}

template <class Value>
void Set(CURL* handle, CURLoption option, Value value) {
  if (curl_easy_setopt(handle, option, value) == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

long Milliseconds(std::chrono::milliseconds time) {
  return static_cast<long>(time.count());
}

void SetFiles(CURL* handle, const scriptwells::Options& options) {
  if (!options.authorities.empty()) {
    Set(handle, CURLOPT_CAINFO, options.authorities.c_str());
    Set(handle, CURLOPT_CAPATH, nullptr);
  }
  if (options.certificate.empty()) return;
  Set(handle, CURLOPT_SSLCERT, options.certificate.c_str());
  Set(handle, CURLOPT_SSLKEY, (options.key.empty() ? options.certificate : options.key).c_str());
}

Easy NewHandle(const SessionSettings& settings, const std::string& url, Heard& heard) {
  Easy handle(curl_easy_init());
  if (handle == nullptr) throw std::bad_alloc();
  CURL* const curl = handle.get();
  Set(curl, CURLOPT_URL, url.c_str());
  Set(curl, CURLOPT_PROTOCOLS_STR, "http,https");
  Set(curl, CURLOPT_PROXY, ProxyOf(settings).c_str());
  Set(curl, CURLOPT_NOSIGNAL, 1L);
  Set(curl, CURLOPT_CONNECTTIMEOUT_MS, Milliseconds(settings.options.connectTimeout));
  Set(curl, CURLOPT_NOPROGRESS, 0L);
  Set(curl, CURLOPT_XFERINFOFUNCTION, OnProgress);
  Set(curl, CURLOPT_VERBOSE, 1L);
  Set(curl, CURLOPT_DEBUGFUNCTION, OnWords);
  Set(curl, CURLOPT_DEBUGDATA, &heard);
  SetFiles(curl, settings.options);
  return handle;
}

// After a failure too, since an interrupt shows as one.
std::string Perform(CURL* handle, CURLcode& code) {
  char words[CURL_ERROR_SIZE] = {};
  Set(handle, CURLOPT_ERRORBUFFER, words);
  code = curl_easy_perform(handle);
  Set(handle, CURLOPT_ERRORBUFFER, nullptr);
  ThrowIfInterrupted();
  return words[0] == '\0' && code != CURLE_OK ? curl_easy_strerror(code) : words;
}

std::chrono::microseconds TimeOf(CURL* handle, CURLINFO info) {
  curl_off_t time = 0;
  static_cast<void>(curl_easy_getinfo(handle, info, &time));
  return std::chrono::microseconds(time);
}

Reach ReachOf(CURLcode code) {
  switch (code) {
    case CURLE_OK:
      return Reach::kReached;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return Reach::kNotResolved;
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_PROXY:
      return Reach::kNotConnected;
    default:
      return Reach::kNoTls;
  }
}

// "Subject:C = DE, CN = host" in the chain of one certificate.
Certificate CertificateOf(const curl_slist* lines) {
  Certificate certificate;
  const std::pair<std::string_view, std::string*> fields[] = {
      {"Subject:", &certificate.subject},
      {"Issuer:", &certificate.issuer},
      {"Start date:", &certificate.begins},
      {"Expire date:", &certificate.ends},
      {"X509v3 Subject Alternative Name:", &certificate.names}};
  for (; lines != nullptr; lines = lines->next)
    for (const auto& [name, field] : fields) {
      const std::string_view line = lines->data;
      if (line.substr(0, name.size()) == name) *field = line.substr(name.size());
    }
  return certificate;
}

std::vector<Certificate> ChainOf(CURL* handle) {
  std::vector<Certificate> chain;
  curl_certinfo* found = nullptr;
  if (curl_easy_getinfo(handle, CURLINFO_CERTINFO, &found) != CURLE_OK || found == nullptr) return chain;
  for (int i = 0; i < found->num_of_certs; ++i) chain.push_back(CertificateOf(found->certinfo[i]));
  return chain;
}

// A chain that is not trusted is shown, too.
std::vector<Certificate> UntrustedChain(const SessionSettings& settings) {
  Heard heard;
  const Easy handle = NewHandle(settings, settings.server, heard);
  Set(handle.get(), CURLOPT_CONNECT_ONLY, 1L);
  Set(handle.get(), CURLOPT_CERTINFO, 1L);
  Set(handle.get(), CURLOPT_SSL_VERIFYPEER, 0L);
  Set(handle.get(), CURLOPT_SSL_VERIFYHOST, 0L);
  CURLcode code = CURLE_OK;
  static_cast<void>(Perform(handle.get(), code));
  return ChainOf(handle.get());
}

// "POST /path HTTP/1.1"
std::string UrlOf(const scriptwells::Exchange& exchange) {
  const std::string& head = exchange.requestHead;
  const std::size_t begin = std::min(head.find(' '), head.size() - 1) + 1;
  return exchange.server + head.substr(begin, head.find(' ', begin) - begin);
}

// Those of the request but for what libcurl writes itself. "Expect:" keeps it from asking first.
std::unique_ptr<curl_slist, Cleanup> HeadersOf(const scriptwells::Exchange& exchange) {
  curl_slist* list = curl_slist_append(nullptr, "Expect:");
  for (const char* name : {"Content-Type", "SOAPAction"}) {
    HeaderLine line;
    if (!FindHeader(exchange.requestHead, name, line)) continue;
    list = curl_slist_append(list, exchange.requestHead.substr(line.begin, line.end - line.begin).c_str());
  }
  return std::unique_ptr<curl_slist, Cleanup>(list);
}

}  // namespace

ServerProbe ProbeServer(const SessionSettings& settings) {
  Heard heard;
  const Easy handle = NewHandle(settings, settings.server, heard);
  Set(handle.get(), CURLOPT_CONNECT_ONLY, 1L);
  Set(handle.get(), CURLOPT_CERTINFO, 1L);
  CURLcode code = CURLE_OK;
  ServerProbe probe;
  probe.message = Perform(handle.get(), code);
  probe.reach = ReachOf(code);
  probe.isTimeout = code == CURLE_OPERATION_TIMEDOUT;
  probe.addresses = std::move(heard.addresses);
  probe.usesTls = settings.server.substr(0, 6) == "https:";
  const std::chrono::microseconds connected = TimeOf(handle.get(), CURLINFO_CONNECT_TIME_T);
  probe.name = TimeOf(handle.get(), CURLINFO_NAMELOOKUP_TIME_T);
  probe.connection = connected - probe.name;
  if (!probe.usesTls) return probe;
  probe.tls = TimeOf(handle.get(), CURLINFO_APPCONNECT_TIME_T) - connected;
  if (probe.reach == Reach::kReached) probe.chain = ChainOf(handle.get());
  if (probe.reach == Reach::kNoTls) probe.chain = UntrustedChain(settings);
  return probe;
}

RawAnswer AskAgain(const SessionSettings& settings, const scriptwells::Exchange& exchange,
                   std::string& failure) {
  Heard heard;
  const Easy handle = NewHandle(settings, UrlOf(exchange), heard);
  const auto headers = HeadersOf(exchange);
  CURL* const curl = handle.get();
  Set(curl, CURLOPT_HTTPHEADER, headers.get());
  Set(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(exchange.requestBody.size()));
  Set(curl, CURLOPT_POSTFIELDS, exchange.requestBody.data());
  Set(curl, CURLOPT_HEADERFUNCTION, OnHead);
  Set(curl, CURLOPT_HEADERDATA, &heard);
  Set(curl, CURLOPT_WRITEFUNCTION, OnBody);
  Set(curl, CURLOPT_WRITEDATA, &heard);
  Set(curl, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  const auto silence =
      std::chrono::duration_cast<std::chrono::seconds>(settings.options.silenceTimeout).count();
  Set(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
  Set(curl, CURLOPT_LOW_SPEED_TIME,
      settings.options.silenceTimeout.count() == 0 ? 0L : static_cast<long>(std::max<long>(1, silence)));
  CURLcode code = CURLE_OK;
  failure = Perform(curl, code);
  return {{}, std::move(heard.head), std::move(heard.body)};
}

}  // namespace qv::cli
