#include "components/http/http_error.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "com/error_message.h"
#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

struct CurlRow {
  CURLcode code;
  HRESULT result;
};

constexpr CurlRow kCurlRows[] = {
    {CURLE_UNSUPPORTED_PROTOCOL, E_INVALIDARG},
    {CURLE_URL_MALFORMAT, E_INVALIDARG},
    {CURLE_COULDNT_RESOLVE_PROXY, HTTP_E_NOT_RESOLVED},
    {CURLE_COULDNT_RESOLVE_HOST, HTTP_E_NOT_RESOLVED},
    {CURLE_COULDNT_CONNECT, HTTP_E_NOT_CONNECTED},
    {CURLE_INTERFACE_FAILED, HTTP_E_NOT_CONNECTED},
    {CURLE_PROXY, HTTP_E_NOT_CONNECTED},
    {CURLE_OPERATION_TIMEDOUT, HTTP_E_TIMED_OUT},
    {CURLE_SSL_CONNECT_ERROR, HTTP_E_TLS},
    {CURLE_SSL_ENGINE_NOTFOUND, HTTP_E_TLS},
    {CURLE_SSL_ENGINE_SETFAILED, HTTP_E_TLS},
    {CURLE_SSL_CERTPROBLEM, HTTP_E_TLS},
    {CURLE_SSL_CIPHER, HTTP_E_TLS},
    {CURLE_PEER_FAILED_VERIFICATION, HTTP_E_TLS},
    {CURLE_USE_SSL_FAILED, HTTP_E_TLS},
    {CURLE_SSL_ENGINE_INITFAILED, HTTP_E_TLS},
    {CURLE_SSL_CACERT_BADFILE, HTTP_E_TLS},
    {CURLE_SSL_SHUTDOWN_FAILED, HTTP_E_TLS},
    {CURLE_SSL_CRL_BADFILE, HTTP_E_TLS},
    {CURLE_SSL_ISSUER_ERROR, HTTP_E_TLS},
    {CURLE_SSL_PINNEDPUBKEYNOTMATCH, HTTP_E_TLS},
    {CURLE_SSL_INVALIDCERTSTATUS, HTTP_E_TLS},
    {CURLE_SSL_CLIENTCERT, HTTP_E_TLS},
    {CURLE_SEND_ERROR, HTTP_E_CUT_OFF},
    {CURLE_RECV_ERROR, HTTP_E_CUT_OFF},
    {CURLE_GOT_NOTHING, HTTP_E_CUT_OFF},
    {CURLE_PARTIAL_FILE, HTTP_E_CUT_OFF},
    {CURLE_WEIRD_SERVER_REPLY, HTTP_E_MALFORMED},
    {CURLE_BAD_CONTENT_ENCODING, HTTP_E_MALFORMED},
    {CURLE_FILESIZE_EXCEEDED, HTTP_E_TOO_LARGE},
    {CURLE_ABORTED_BY_CALLBACK, HTTP_E_CANCELLED},
    {CURLE_READ_ERROR, HTTP_E_READ_FAULT},
    {CURLE_WRITE_ERROR, HTTP_E_WRITE_FAULT},
    {CURLE_OUT_OF_MEMORY, E_OUTOFMEMORY},
};

struct ErrnoRow {
  int error;
  HRESULT result;
};

constexpr ErrnoRow kErrnoRows[] = {
    {ENOENT, HTTP_E_FILE_NOT_FOUND}, {ENOTDIR, HTTP_E_PATH_NOT_FOUND}, {ELOOP, HTTP_E_PATH_NOT_FOUND},
    {EACCES, HTTP_E_ACCESS_DENIED},  {EPERM, HTTP_E_ACCESS_DENIED},    {EROFS, HTTP_E_ACCESS_DENIED},
    {EISDIR, HTTP_E_ACCESS_DENIED},  {ENOSPC, HTTP_E_DISK_FULL},       {EDQUOT, HTTP_E_DISK_FULL},
    {EEXIST, HTTP_E_FILE_EXISTS},    {ENOMEM, E_OUTOFMEMORY},
};

}  // namespace

void ThrowWrongState(const char* words) {
  throw HttpFailure(E_UNEXPECTED, words);
}
void ThrowBadArgument(const char* words) {
  throw HttpFailure(E_INVALIDARG, words);
}

HRESULT ResultFromCurl(CURLcode code) noexcept {
  for (const CurlRow& row : kCurlRows)
    if (row.code == code) return row.result;
  return code == CURLE_OK ? S_OK : E_FAIL;
}

HRESULT ResultFromErrno(int error, HRESULT otherwise) noexcept {
  for (const ErrnoRow& row : kErrnoRows)
    if (row.error == error) return row.result;
  return otherwise;
}

void ThrowCurl(CURLcode code, const char* words) {
  const bool hasWords = words != nullptr && *words != '\0';
  throw HttpFailure(ResultFromCurl(code), hasWords ? words : curl_easy_strerror(code));
}

void ThrowCurl(CURLcode code, const std::string& words) {
  ThrowCurl(code, words.c_str());
}

void ThrowFile(int error, HRESULT otherwise, const char* doing, const std::string& path) {
  const char* reason = strerrordesc_np(error);
  throw HttpFailure(ResultFromErrno(error, otherwise),
                    std::string(doing) + " " + path + ": " + (reason == nullptr ? "Unknown error" : reason));
}

HRESULT ReportCurrentException(const Guid& interfaceId) noexcept {
  try {
    throw;
  } catch (const HttpFailure& failure) {
    PostErrorMessage(failure.what(), interfaceId);
    return failure.Code();
  } catch (const _com_error& error) {
    PostErrorMessage(error.Description(), interfaceId);
    return error.Error();
  } catch (const std::bad_alloc&) {
    PostErrorMessage(curl_easy_strerror(CURLE_OUT_OF_MEMORY), interfaceId);
    return E_OUTOFMEMORY;
  } catch (...) {
    PostErrorMessage("Unexpected failure of the HTTP component", interfaceId);
    return E_UNEXPECTED;
  }
}

}  // namespace qv
