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

struct CurlCodeRow {
  const char* name;
  CURLcode code;
  std::uint32_t result;
};

class ResultFromCurlTable : public ::testing::TestWithParam<CurlCodeRow> {};

TEST_P(ResultFromCurlTable, GivesThisCode) {
  EXPECT_EQ(ResultFromCurl(GetParam().code), MakeResult(GetParam().result));
}

INSTANTIATE_TEST_SUITE_P(
    , ResultFromCurlTable,
    ::testing::Values(CurlCodeRow{"Ok", CURLE_OK, 0},
                      CurlCodeRow{"UrlMalformat", CURLE_URL_MALFORMAT, 0x80070057},
                      CurlCodeRow{"UnsupportedProtocol", CURLE_UNSUPPORTED_PROTOCOL, 0x80070057},
                      CurlCodeRow{"ResolveHost", CURLE_COULDNT_RESOLVE_HOST, 0x80072EE7},
                      CurlCodeRow{"ResolveProxy", CURLE_COULDNT_RESOLVE_PROXY, 0x80072EE7},
                      CurlCodeRow{"Connect", CURLE_COULDNT_CONNECT, 0x80072EFD},
                      CurlCodeRow{"Proxy", CURLE_PROXY, 0x80072EFD},
                      CurlCodeRow{"TimedOut", CURLE_OPERATION_TIMEDOUT, 0x80072EE2},
                      CurlCodeRow{"TlsConnect", CURLE_SSL_CONNECT_ERROR, 0x80072F8F},
                      CurlCodeRow{"TlsPeer", CURLE_PEER_FAILED_VERIFICATION, 0x80072F8F},
                      CurlCodeRow{"TlsStore", CURLE_SSL_CACERT_BADFILE, 0x80072F8F},
                      CurlCodeRow{"Send", CURLE_SEND_ERROR, 0x80072EFE},
                      CurlCodeRow{"Receive", CURLE_RECV_ERROR, 0x80072EFE},
                      CurlCodeRow{"Nothing", CURLE_GOT_NOTHING, 0x80072EFE},
                      CurlCodeRow{"Partial", CURLE_PARTIAL_FILE, 0x80072EFE},
                      CurlCodeRow{"Weird", CURLE_WEIRD_SERVER_REPLY, 0x80072F78},
                      CurlCodeRow{"TooLarge", CURLE_FILESIZE_EXCEEDED, 0x800700DF},
                      CurlCodeRow{"Aborted", CURLE_ABORTED_BY_CALLBACK, 0x80072EF1},
                      CurlCodeRow{"Memory", CURLE_OUT_OF_MEMORY, 0x8007000E},
                      CurlCodeRow{"AnyOther", CURLE_TELNET_OPTION_SYNTAX, 0x80004005}),
    [](const ::testing::TestParamInfo<CurlCodeRow>& row) { return row.param.name; });

struct ErrnoCodeRow {
  const char* name;
  int error;
  std::uint32_t result;
};

class ResultFromErrnoTable : public ::testing::TestWithParam<ErrnoCodeRow> {};

TEST_P(ResultFromErrnoTable, GivesThisCode) {
  EXPECT_EQ(ResultFromErrno(GetParam().error, HTTP_E_WRITE_FAULT), MakeResult(GetParam().result));
}

INSTANTIATE_TEST_SUITE_P(
    , ResultFromErrnoTable,
    ::testing::Values(
        ErrnoCodeRow{"NoEntry", ENOENT, 0x80070002}, ErrnoCodeRow{"NoDirectory", ENOTDIR, 0x80070003},
        ErrnoCodeRow{"LinkLoop", ELOOP, 0x80070003}, ErrnoCodeRow{"NoAccess", EACCES, 0x80070005},
        ErrnoCodeRow{"NotPermitted", EPERM, 0x80070005}, ErrnoCodeRow{"ReadOnly", EROFS, 0x80070005},
        ErrnoCodeRow{"Directory", EISDIR, 0x80070005}, ErrnoCodeRow{"NoSpace", ENOSPC, 0x80070070},
        ErrnoCodeRow{"Quota", EDQUOT, 0x80070070}, ErrnoCodeRow{"Exists", EEXIST, 0x80070050},
        ErrnoCodeRow{"NoMemory", ENOMEM, 0x8007000E}, ErrnoCodeRow{"AnyOther", EIO, 0x8007001D}),
    [](const ::testing::TestParamInfo<ErrnoCodeRow>& row) { return row.param.name; });

// What the edge makes of the exception that `raise` throws.
HRESULT Reported(void (*raise)(), std::string* words) {
  HRESULT code = S_OK;
  try {
    raise();
  } catch (...) {
    code = ReportCurrentException(IHttpRequest::kIid);
  }
  ErrorInfo info;
  *words = GetErrorInfo(&info) ? Shown(info.description) : "<no record>";
  EXPECT_TRUE(info.interfaceId == IHttpRequest::kIid);
  return code;
}

TEST(ReportCurrentException, LibcurlsOwnWordsAreKept) {
  std::string words;
  EXPECT_EQ(Reported([] { ThrowCurl(CURLE_COULDNT_CONNECT, "its words"); }, &words), MakeResult(0x80072EFD));
  EXPECT_EQ(words, "its words");
}

TEST(ReportCurrentException, WithoutWordsTheCodesNameIsTaken) {
  std::string words;
  EXPECT_EQ(Reported([] { ThrowCurl(CURLE_COULDNT_CONNECT, ""); }, &words), MakeResult(0x80072EFD));
  EXPECT_EQ(words, "Couldn't connect to server");
}

TEST(ReportCurrentException, LostMemoryIsOutOfMemory) {
  std::string words;
  EXPECT_EQ(Reported([] { throw std::bad_alloc(); }, &words), MakeResult(0x8007000E));
  EXPECT_EQ(words, "Out of memory");
}

TEST(ReportCurrentException, ResultCodeIsKept) {
  std::string words;
  EXPECT_EQ(Reported([] { throw _com_error(MakeResult(0x8007000E)); }, &words), MakeResult(0x8007000E));
  EXPECT_EQ(words, "<null>");
}

TEST(ReportCurrentException, AnythingElseIsUnexpected) {
  std::string words;
  EXPECT_EQ(Reported([] { throw 5; }, &words), MakeResult(0x8000FFFF));
  EXPECT_NE(words, "<no record>");
}

TEST(ThrowFile, NamesTheFileAndTheSystemsReason) {
  std::string words;
  EXPECT_EQ(Reported([] { ThrowFile(ENOENT, HTTP_E_READ_FAULT, "Couldn't open file", "a/b"); }, &words),
            MakeResult(0x80070002));
  EXPECT_EQ(words, "Couldn't open file a/b: No such file or directory");
}

}  // namespace
}  // namespace qv
