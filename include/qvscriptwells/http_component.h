// SPDX-License-Identifier: Apache-2.0
// The HTTP component: the library does all network and file transfer through these interfaces. It creates the
// component by class id (class_registry.h), so a host can register its own. The built-in one uses libcurl.
//
// Failure: a negative result code, with an error record (error_info.h) that holds the transport's message. An
// HTTP status is never a failure. Ownership: see unknown.h. Threads: one at a time per object; operations
// block.
#pragma once

#include <cstdint>

#include "qvscriptwells/unknown.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

constexpr Guid CLSID_HttpComponent = ParseGuid("6f628f7a-b972-4929-83da-c3c16ac0022f");

// What the built-in component reports. The values are those of the Win32 network and file functions, wrapped
// as HRESULTs, so that hosts can name them. A call in the wrong state is E_UNEXPECTED, an invalid argument
// E_INVALIDARG.
constexpr HRESULT HTTP_E_TIMED_OUT =
    MakeResult(0x80072EE2);  // a timeout of HttpOptions expired, or too few bytes came
constexpr HRESULT HTTP_E_NOT_RESOLVED = MakeResult(0x80072EE7);   // name of host or proxy unknown
constexpr HRESULT HTTP_E_CANCELLED = MakeResult(0x80072EF1);      // by Abort or by the progress listener
constexpr HRESULT HTTP_E_NOT_CONNECTED = MakeResult(0x80072EFD);  // refused or unreachable
constexpr HRESULT HTTP_E_CUT_OFF = MakeResult(0x80072EFE);    // closed or reset before the answer was whole
constexpr HRESULT HTTP_E_MALFORMED = MakeResult(0x80072F78);  // the answer is not HTTP/1
constexpr HRESULT HTTP_E_TLS = MakeResult(0x80072F8F);        // handshake or certificate
constexpr HRESULT HTTP_E_TOO_LARGE = MakeResult(0x800700DF);  // beyond one of the limits in HttpOptions
constexpr HRESULT HTTP_E_FILE_NOT_FOUND = MakeResult(0x80070002);
constexpr HRESULT HTTP_E_PATH_NOT_FOUND = MakeResult(0x80070003);
constexpr HRESULT HTTP_E_ACCESS_DENIED = MakeResult(0x80070005);
constexpr HRESULT HTTP_E_WRITE_FAULT = MakeResult(0x8007001D);  // a local file cannot be written
constexpr HRESULT HTTP_E_READ_FAULT = MakeResult(0x8007001E);   // a local file cannot be read, or shrank
constexpr HRESULT HTTP_E_FILE_EXISTS = MakeResult(0x80070050);  // and HttpOptions::replaceFiles is false
constexpr HRESULT HTTP_E_DISK_FULL = MakeResult(0x80070070);

// One request and its answer, on the connection of the session that made it.
class IHttpRequest : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("0e2a5c7e-aff3-426d-b221-02dd1976b5b9");

  // The numeric status of the answer, 0 before there is one. The library does not call it.
  virtual HRESULT GetStatus(std::uint32_t* status) noexcept = 0;
  // Adds a request header. Headers are sent in the order of the calls. E_INVALIDARG for a name or value that
  // holds CR, LF or NUL, and for an empty name.
  virtual HRESULT SetHeader(const WideString& name, const WideString& value) noexcept = 0;
  // Sends the request with `body` as UTF-8 and waits for the head of the answer. Adds `Content-Length`.
  // `extra` is appended to the body (empty in all calls of the library). At most one Send or SendFile per
  // request.
  virtual HRESULT Send(const WideString& body, const WideString& extra) noexcept = 0;
  // The unchanged value of the answer's first header of that name; case is ignored. Null and S_OK if there is
  // none. "StatusCode" gives the HTTP status in decimal.
  virtual HRESULT GetHeader(const WideString& name, WideString* value) noexcept = 0;
  // Reads `length` bytes of the body and returns them as text; `count` gets the number of bytes read. Fails
  // if the body ends earlier; E_INVALIDARG for a negative length. The text's charset: `Content-Type`, byte
  // order mark, XML declaration, UTF-8, in this order.
  virtual HRESULT Read(std::int32_t length, WideString* text, std::int32_t* count) noexcept = 0;
  // Writes the body into the file at `path`; `count` gets the number of bytes, cut to 32 bits. The file
  // appears whole, or not at all when this fails.
  virtual HRESULT ReadToFile(const WideString& path, std::int32_t* count) noexcept = 0;
  // As Send, with the content of the regular file at `path` as body.
  virtual HRESULT SendFile(const WideString& path) noexcept = 0;
  // Stops a transfer at its next chance; a blocked operation then fails. May be called on any thread while a
  // reference is held. The library does not call it.
  virtual HRESULT Abort() noexcept = 0;
  // Ends the request. If the whole answer was read, the connection may serve this thread's next request.
  virtual HRESULT Close() noexcept = 0;

 protected:
  ~IHttpRequest() = default;
};

class IHttpSession : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("942ec7e3-a72a-45c3-bdcd-12d71701739a");

  // Connects to host and port, or reuses a kept connection that is alive. `protocol` is "http" or "https" in
  // any case. `proxy` is empty, "name" (port 80) or "name:port". The two spare texts are not used.
  virtual HRESULT Open(const WideString& protocol, const WideString& host, std::uint16_t port,
                       const WideString& secondSpare, const WideString& firstSpare,
                       const WideString& proxy) noexcept = 0;
  // Ends the request that is open, and the session. E_UNEXPECTED in the middle of an operation.
  virtual HRESULT Close() noexcept = 0;
  // `path` is the request target with its query, sent unchanged. `contentType` is what the caller expects or
  // sends; it adds no header. `flags` is 0.
  virtual HRESULT OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType,
                              std::uint32_t flags, IHttpRequest** request) noexcept = 0;

 protected:
  ~IHttpSession() = default;
};

// Is notified of the progress of a transfer. Called on the calling thread, between chunks and every quarter
// of a second while waiting, so that a stalled transfer can be cancelled too.
class IHttpProgress : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("3e4c0f5d-7d2a-4f0c-9d3f-5b1f5a6c2b71");
  // Bytes of the body transferred so far and in total (-1 if unknown). Any code but S_OK cancels the
  // transfer.
  virtual HRESULT OnProgress(bool sending, std::int64_t done, std::int64_t total) noexcept = 0;

 protected:
  ~IHttpProgress() = default;
};

// Limits of the built-in component, and the certificates that it uses. Times are in milliseconds and sizes in
// bytes; 0 means no limit. Copying never fails; copies may be used on several threads.
struct HttpOptions {
  std::int64_t connectTimeout = 30'000;
  std::int64_t idleTimeout = 60'000;                // without a byte either way
  std::int64_t maxBodyBytes = 512LL * 1024 * 1024;  // of an answer that is read as text
  std::int64_t maxHeadBytes = std::int64_t{300} * 1024;

  // For one request, from its Send to the last byte of its answer. The first request includes the time that
  // Open took to connect.
  std::int64_t totalTimeout = 0;
  // The minimum mean of bytes per second in each `rateWindow`. It applies while a request is sent and from
  // the first byte of the answer on; until that byte idleTimeout applies. Only time spent waiting counts, not
  // time that the host spends in between.
  std::int64_t minBytesPerSecond = 16;
  std::int64_t rateWindow = 60'000;

  // For https: paths of PEM files, empty for none. The authorities in `caFile` replace those of the system
  // and of the environment (CURL_CA_BUNDLE, SSL_CERT_FILE, SSL_CERT_DIR). `certificateFile` identifies this
  // client; its key is in `keyFile`, or in the same file, and has no password. Files are read when a
  // connection is made; a file that cannot be used makes Open fail (HTTP_E_TLS).
  WideString caFile;
  WideString certificateFile;
  WideString keyFile;

  // Whether ReadToFile replaces a file that is there already. If not, it fails with HTTP_E_FILE_EXISTS:
  // before the body is read, or at its end when the file appeared meanwhile.
  bool replaceFiles = true;
};

// An interface of the built-in component's session object. The library creates a new component for each call,
// so a host uses SetThreadHttpOptions to set the options for all that are created on its thread.
class IHttpOptions : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("a4a0d2b6-5c35-4d0e-8a3b-0d4f6b8c9e21");
  virtual HRESULT GetOptions(HttpOptions* options) noexcept = 0;
  virtual HRESULT SetOptions(const HttpOptions& options) noexcept = 0;
  // Null removes the listener.
  virtual HRESULT SetProgress(IHttpProgress* progress) noexcept = 0;

 protected:
  ~IHttpOptions() = default;
};

// The initial options of sessions on threads that set none: HttpOptions, overridden by these registry keys
// (registry.h) below SOFTWARE\Quorvane\Quorvane\Http. The keys serve hosts that load the library by name and
// cannot call the functions here:
//   ConnectTimeout, IdleTimeout, TotalTimeout, RateWindow: milliseconds; MinBytesPerSecond; 0 for no limit
//   CaFile, CertificateFile, KeyFile: absolute paths of PEM files
// They are read once in a process, when it creates its first session. A number is decimal digits; anything
// else counts as absent. A file is read when it is needed; https fails if it cannot be used. Throws for lack
// of memory. Any thread.
HttpOptions DefaultHttpOptions();

// Sets the initial options and listener (null: none) of sessions that are created on this thread from now on,
// in place of DefaultHttpOptions. The listener is referenced until the next call here or the end of the
// thread. The first call on a thread, like the first connection that it keeps, registers a thread-exit
// handler. If memory for it is lacking, the C library aborts the process, so call this while there is memory.
void SetThreadHttpOptions(const HttpOptions& options, IHttpProgress* progress);
// Closes the connections that this thread keeps open for reuse.
void CloseKeptConnections();

using IHttpRequestPtr = boost::intrusive_ptr<IHttpRequest>;
using IHttpSessionPtr = boost::intrusive_ptr<IHttpSession>;
using IHttpProgressPtr = boost::intrusive_ptr<IHttpProgress>;
using IHttpOptionsPtr = boost::intrusive_ptr<IHttpOptions>;

}  // namespace qv
