// Requests and answers, and the ways in which they are sent.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "devservice/values/spooled_file.h"

namespace qv::devservice {

// A request. Texts are as they came, the path percent-decoded and without host, the query cut off.
struct HttpRequest {
  std::string method;
  std::string path;
  std::string target;  // The whole target of the request, as it came.
  std::string contentType;
  std::string soapAction;
  // Header Host, or the service's own address if the header is missing or cannot be part of a URL.
  std::string host;
  std::string hostHeader;      // Header Host as it came; several are joined by commas.
  std::string origin;          // Header Origin, joined likewise.
  std::string forwardedProto;  // Header X-Forwarded-Proto.
  std::string usid;            // Header usid: the session that a transfer belongs to.
  std::string cookie;          // Header Cookie.
  std::string fetchSite;       // Header Sec-Fetch-Site: whose page a browser sends this for.
  std::string ticket;          // `ticket` of the query, percent-decoded.
  bool asksForWsdl = false;    // "?wsdl", in any case of letters.
  // The number in Content-Length; nothing without the header, or if it is not a number.
  std::optional<std::uint64_t> bodyLength;
  std::string body;
};

// How the bytes of an answer are sent. All but kPlain and kChunked close the connection.
enum class Delivery {
  kPlain,           // Head with Content-Length, whole body.
  kCloseDelimited,  // No Content-Length: the end of the connection ends the body.
  kChunked,         // Transfer-Encoding: chunked, in pieces.
  kCut,             // Announces the whole body, sends half of it.
  kShort,           // Announces the whole body, does not send its last byte.
  kLong,            // Announces the whole body, sends 16 bytes more.
  kStall,           // Head and half of the body, then silence until the stall time is over.
  kDrip,            // The whole answer in some 50 pieces, with pauses; not for files.
  kDrop,            // Nothing at all.
};

struct HttpAnswer {
  int status = 200;
  std::string contentType = "text/plain; charset=utf-8";
  std::string headers;  // Further lines of the head, each with CR LF.
  std::string body;
  std::shared_ptr<const SpooledFile> file;  // In place of `body`; delivered in all ways but kChunked.
  // In place of both: called again and again for what is sent next, until the connection ends. An empty text:
  // nothing yet. With Delivery::kCloseDelimited only.
  std::function<std::string()> stream;
  bool headOnly = false;  // Answers HEAD: the head of a whole answer, no body.
  Delivery delivery = Delivery::kPlain;
  bool delayed = false;                  // Silence for the stall time before the first byte.
  std::chrono::milliseconds silence{0};  // The same for this time.
};

// An answer whose body is a plain text.
inline HttpAnswer PlainAnswer(int status, std::string text) {
  HttpAnswer answer;
  answer.status = status;
  answer.body = std::move(text);
  return answer;
}

// Takes the body of one request piece by piece. Destroyed without Finish when the body ended early.
class BodySink {
 public:
  virtual ~BodySink() = default;
  // Returns an answer to refuse the rest of the body, which is not read then.
  virtual std::optional<HttpAnswer> Write(const char* bytes, std::size_t count) = 0;
  // The body is whole.
  virtual HttpAnswer Finish() = 0;
};

// What happens to the body of a POST: an answer at once, or a sink for it. With neither it is kept in memory,
// as HttpRequest::body.
struct BodyPlan {
  std::optional<HttpAnswer> refusal;
  std::unique_ptr<BodySink> sink;
};

}  // namespace qv::devservice
