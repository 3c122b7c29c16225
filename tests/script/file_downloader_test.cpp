// One download: which calls of the HTTP component it makes, and what becomes of the path.
#include "script/file_downloader.h"

#include <filesystem>
#include <string>
#include <type_traits>

#include "fixtures/transfer_calls.h"
#include "script/download_fixture.h"

namespace qv {
namespace {

static_assert(!std::is_polymorphic_v<CFileDownloader>);

class FileDownloader : public DownloadFixture {
 protected:
  // The path that an answer with the name "a.txt" makes of an empty target.
  std::string FreshPath() {
    http_.AnswerNamed(u"a.txt");
    return Path(u"http://files/f", u"");
  }
};

TEST_F(FileDownloader, DownloadMakesTheseCallsInThisOrder) {
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(Path(u"http://files:81/get/f?id=7"), "c:\\tmp\\a.txt");
  EXPECT_EQ(http_.PlainCalls(),
            TransferCalls("http, files, 81, , , ", "GET, /get/f?id=7, */*, 0",
                          {"SetHeader(usid, u1)", "Send(body, )", "GetHeader(Content-Disposition)",
                           "ReadToFile(c:\\tmp\\a.txt, 0)"}));
  EXPECT_EQ(http_.Bodies(), Lines{""});
}

TEST_F(FileDownloader, TargetBecomesThePath) {
  http_.AnswerNamed(u"a.txt");
  WideString target(u"c:\\tmp\\");
  EXPECT_EQ(PathInto(u"http://files/f", target), "c:\\tmp\\a.txt");
  EXPECT_EQ(Shown(target), "c:\\tmp\\a.txt");
}

TEST_F(FileDownloader, CookieIsTheLastHeaderUnlessItIsNull) {
  http_.AnswerNamed(u"a.txt");
  http_.AnswerNamed(u"a.txt");
  cookie_ = u"k=v; w";
  EXPECT_EQ(DownloadThrows(), "nothing");
  cookie_ = WideString();
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("SetHeader("),
            (Lines{"SetHeader(usid, u1)", "SetHeader(Cookie, k=v; w)", "SetHeader(usid, u1)"}));
}

TEST_F(FileDownloader, SessionIsSentAsItIs) {
  for (const WideString& session : {WideString(), WideString(u""), WideString(u"a&B c")}) {
    http_.AnswerNamed(u"a.txt");
    WideString target(u"/t");
    CFileDownloader(u"http://files/f", u"", 0, u"").Download(session, target);
    EXPECT_EQ(http_.CallsNamed("SetHeader(").back(), "SetHeader(usid, " + Shown(session) + ")");
  }
}

TEST_F(FileDownloader, ProxyHasNameAndPort) {
  const struct {
    WideString name;
    std::int32_t port;
    const char* proxy;  // as Open is given it
  } rows[] = {{u"proxy", 3128, "proxy:3128"},
              {u"proxy", 80, "proxy:80"},
              {u"proxy", -1, "proxy:-1"},
              {u"proxy", 70000, "proxy:70000"},
              {u"p:1", 2, "p:1:2"},
              {u"@PROXY@", 80, "@PROXY@:80"},
              {u"proxy", 0, ""},
              {u"", 3128, ""},
              {WideString(), 3128, ""},
              {u"", 0, ""}};
  for (const auto& row : rows) {
    http_.AnswerNamed(u"a.txt");
    WideString target(u"/t");
    CFileDownloader(u"http://files/f", row.name, row.port, u"").Download(u"u1", target);
    EXPECT_EQ(http_.Opens().back(), "Open(http, files, 80, , , " + std::string(row.proxy) + ")");
  }
}

TEST_F(FileDownloader, UrlIsTakenApart) {
  const struct {
    const char16_t* url;
    const char* open;
    const char* request;
  } rows[] = {{u"https://files:70000/a%20b?c=d&e=f#g", "Open(https, files, 4464, , , )",
               "OpenRequest(GET, /a%20b?c=d&e=f#g, */*, 0)"},
              {u"http:\\\\files/a\\b", "Open(http, files, 80, , , )", "OpenRequest(GET, /a\\b, */*, 0)"}};
  for (const auto& row : rows) {
    http_.AnswerNamed(u"a.txt");
    Path(row.url);
    EXPECT_EQ(http_.Opens().back(), row.open);
    EXPECT_EQ(http_.CallsNamed("OpenRequest(").back(), row.request);
  }
}

TEST_F(FileDownloader, StatusOfTheAnswerIsNotLookedAt) {
  HttpAnswer answer{u"404", WideString(), u"gone"};
  answer.headers[u"Content-Disposition"] = u"attachment; filename=a.txt";
  http_.AnswerAs(answer);
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("ReadToFile("), Lines{"ReadToFile(c:\\tmp\\a.txt, 0)"});
}

TEST_F(FileDownloader, ComponentThatNeedsNoStartIsUsedAsItIs) {
  http_.OfferNoRunnable();
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_TRUE(http_.CallsNamed("Run").empty());
}

TEST_F(FileDownloader, WithoutATargetTheFileIsPutInANewTemporaryDirectory) {
  const std::string path = FreshPath();
  EXPECT_EQ(Below(path), "\\*/a.txt");
  EXPECT_EQ(http_.CallsNamed("ReadToFile("), Lines{"ReadToFile(" + path + ", 0)"});
  EXPECT_EQ(files_.Count(), 1);
  const std::filesystem::directory_entry made = *std::filesystem::directory_iterator(files_.Path());
  EXPECT_TRUE(made.is_directory());
  EXPECT_EQ(made.path().filename().string(), path.substr(files_.Path().size() + 1, 36));
  EXPECT_NE(FreshPath(), path);
  EXPECT_EQ(files_.Count(), 2);
}

TEST_F(FileDownloader, NullTargetIsAnEmptyOne) {
  http_.AnswerNamed(u"a.txt");
  WideString target;
  const std::string path = PathInto(u"http://files/f", target);
  EXPECT_EQ(Below(path), "\\*/a.txt");
  EXPECT_EQ(Shown(target), path);
}

TEST_F(FileDownloader, TemporaryDirectoryIsThatOfTheFirstVariableThatIsSet) {
  const std::string files = files_.Path();
  const std::string closed = files + "\\";
  const struct {
    const char* temp;
    const char* tmp;
  } rows[] = {
      {closed.c_str(), nullptr}, {nullptr, files.c_str()}, {"", files.c_str()}, {files.c_str(), "/nowhere"}};
  for (const auto& row : rows) {
    temp_.Set(row.temp);
    tmp_.Set(row.tmp);
    EXPECT_EQ(Below(FreshPath()), "\\*/a.txt");
  }
}

TEST_F(FileDownloader, TargetLeavesTheTemporaryDirectoryAlone) {
  temp_.Set(nullptr);
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(u"http://files/f", u" "), "nothing");
  EXPECT_EQ(http_.CallsNamed("ReadToFile("), Lines{"ReadToFile( \\a.txt, 0)"});
  EXPECT_EQ(files_.Count(), 0);
}

}  // namespace
}  // namespace qv
