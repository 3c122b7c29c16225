// Observes what the built-in component does on a thread, with the bytes of each exchange. For a library on
// top that limits, shows and explains exchanges; without a tap nothing costs more than looking for one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "qvscriptwells/http_component.h"

namespace qv {

class ResponseHead;

// Plays a connection in place of the network, for one request. What a function throws is the failure of the
// connection.
class WireLine {
 public:
  WireLine() = default;
  virtual ~WireLine() = default;
  WireLine(const WireLine&) = delete;
  WireLine& operator=(const WireLine&) = delete;

  // Takes all of them.
  virtual void Send(std::string_view bytes) = 0;
  // Writes up to `most` bytes; 0 when the server has closed. Never waits.
  virtual std::size_t Receive(char* bytes, std::size_t most) = 0;
};

// Called on the thread of the operation. What a function throws becomes the failure of the operation. An
// exchange is OnOpen, OnConnected, then the others in the order of their declaration; it breaks off with
// OnFailure. Views are valid during the call.
class WireTap {
 public:
  // What a new session object starts with, in place of the thread's options.
  virtual void SetUp(HttpOptions* options, IHttpProgressPtr* progress) = 0;
  // A session is opened. The function may replace the proxy. False cancels.
  virtual bool OnOpen(const WideString& protocol, const WideString& host, std::uint16_t port,
                      WideString* proxy) = 0;
  // A connection is needed. Null: a real one. What it throws is why there is none.
  virtual std::unique_ptr<WireLine> NewLine() = 0;
  // The server was reached, but the handshake of TLS was not finished. OnFailure follows.
  virtual void OnHandshakeFailed() noexcept = 0;
  virtual void OnConnected(bool isKeptConnection) = 0;
  // Before the first byte is sent.
  virtual void OnRequest(std::string_view head, std::string_view body) = 0;
  virtual void OnFileRequest(std::string_view head, const WideString& path) = 0;
  // The request is sent, or the server has answered before that.
  virtual void OnSent() = 0;
  // Bytes of the head as they arrive, those of interim answers included.
  virtual void OnAnswerBytes(std::string_view bytes) = 0;
  virtual void OnAnswer(const ResponseHead& head) = 0;
  // The body is read into a file. False refuses the file: OnFailure(E_FAIL) follows.
  virtual bool MaySave(const WideString& path) = 0;
  // Bytes of the body, without the marks of chunks.
  virtual void OnAnswerBody(std::string_view bytes) = 0;
  // An operation of the session or of its request failed; the thread's error record has the message.
  virtual void OnFailure(HRESULT code) noexcept = 0;
  // The session was closed.
  virtual void OnClose() = 0;

 protected:
  ~WireTap() = default;
};

// Null if there is none.
WireTap* ThreadWireTap() noexcept;
// Borrows the tap until the next call on this thread. Returns the one before; both may be null.
WireTap* SetThreadWireTap(WireTap* tap) noexcept;

// Returns the code, after OnFailure of the tap if there is one.
HRESULT TappedFailure(HRESULT code) noexcept;

}  // namespace qv
