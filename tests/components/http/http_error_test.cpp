// Which result codes and messages libcurl's, the system's and the program's failures become.
#include "components/http/http_error.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <string>

#include "fixtures/shown_text.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/http_component.h"

namespace qv {
namespace {

struct CodeRow {
  int from;
  std::uint32_t code;
};

TEST(HttpError, CodesOfLibcurlHaveResultCodes) {
  constexpr CodeRow kRows[] = {{CURLE_OK, 0},
                               {CURLE_URL_MALFORMAT, 0x80070057},
                               {CURLE_UNSUPPORTED_PROTOCOL, 0x80070057},
                               {CURLE_COULDNT_RESOLVE_HOST, 0x80072EE7},
                               {CURLE_COULDNT_RESOLVE_PROXY, 0x80072EE7},
                               {CURLE_COULDNT_CONNECT, 0x80072EFD},
                               {CURLE_PROXY, 0x80072EFD},
                               {CURLE_OPERATION_TIMEDOUT, 0x80072EE2},
                               {CURLE_SSL_CONNECT_ERROR, 0x80072F8F},
                               {CURLE_PEER_FAILED_VERIFICATION, 0x80072F8F},
                               {CURLE_SSL_CACERT_BADFILE, 0x80072F8F},
                               {CURLE_SEND_ERROR, 0x80072EFE},
                               {CURLE_RECV_ERROR, 0x80072EFE},
                               {CURLE_GOT_NOTHING, 0x80072EFE},
                               {CURLE_PARTIAL_FILE, 0x80072EFE},
                               {CURLE_WEIRD_SERVER_REPLY, 0x80072F78},
                               {CURLE_FILESIZE_EXCEEDED, 0x800700DF},
                               {CURLE_ABORTED_BY_CALLBACK, 0x80072EF1},
                               {CURLE_OUT_OF_MEMORY, 0x8007000E},
                               {CURLE_TELNET_OPTION_SYNTAX, 0x80004005}};  // any other
  for (const CodeRow& row : kRows)
    EXPECT_EQ(ResultFromCurl(static_cast<CURLcode>(row.from)), MakeResult(row.code)) << row.from;
}

TEST(HttpError, CodesOfTheSystemHaveResultCodes) {
  constexpr CodeRow kRows[] = {{ENOENT, 0x80070002}, {ENOTDIR, 0x80070003}, {ELOOP, 0x80070003},
                               {EACCES, 0x80070005}, {EPERM, 0x80070005},   {EROFS, 0x80070005},
                               {EISDIR, 0x80070005}, {ENOSPC, 0x80070070},  {EDQUOT, 0x80070070},
                               {EEXIST, 0x80070050}, {ENOMEM, 0x8007000E},  {EIO, 0x8007001D}};
  for (const CodeRow& row : kRows)
    EXPECT_EQ(ResultFromErrno(row.from, HTTP_E_WRITE_FAULT), MakeResult(row.code)) << row.from;
}

TEST(HttpError, ExceptionsBecomeACodeAndARecord) {
  const struct {
    void (*raise)();
    std::uint32_t code;
    const char* words;
  } rows[] = {
      {[] { ThrowCurl(CURLE_COULDNT_CONNECT, "its words"); }, 0x80072EFD, "its words"},
      {[] { ThrowCurl(CURLE_COULDNT_CONNECT, ""); }, 0x80072EFD, "Couldn't connect to server"},
      {[] { throw std::bad_alloc(); }, 0x8007000E, "Out of memory"},
      {[] { throw _com_error(MakeResult(0x8007000E)); }, 0x8007000E, "<null>"},
      {[] { throw 5; }, 0x8000FFFF, "Unexpected failure of the HTTP component"},
      {[] { ThrowFile(ENOENT, HTTP_E_READ_FAULT, "Couldn't open file", "a/b"); }, 0x80070002,
       "Couldn't open file a/b: No such file or directory"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.words);
    HRESULT code = S_OK;
    try {
      row.raise();
    } catch (...) {
      code = ReportCurrentException(IHttpRequest::kIid);
    }
    EXPECT_EQ(code, MakeResult(row.code));
    ErrorInfo info;
    ASSERT_TRUE(GetErrorInfo(&info));
    EXPECT_TRUE(info.interfaceId == IHttpRequest::kIid);
    EXPECT_EQ(Shown(info.description), row.words);
  }
}

}  // namespace
}  // namespace qv
