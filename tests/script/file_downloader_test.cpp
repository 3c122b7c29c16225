// One download: which calls of the HTTP component it makes, and what comes of the path.
#include "script/file_downloader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <type_traits>

#include "script/download_fixture.h"

namespace qv {
namespace {

static_assert(!std::is_polymorphic_v<CFileDownloader>);

class FileDownloader : public DownloadFixture {
 protected:
  // What Open is given for this proxy.
  std::string OpenFor(const WideString& name, std::int32_t port) {
    AnswerNamed(u"a.txt");
    WideString target(u"/t");
    CFileDownloader(u"http://files/f", name, port, u"").Download(u"u1", target);
    return Opens().back();
  }
  // The path that an answer with the name "a.txt" makes of an empty target.
  std::string FreshPath() {
    AnswerNamed(u"a.txt");
    WideString target(u"");
    return Shown(Download(u"http://files/f", target));
  }
};

TEST_F(FileDownloader, DownloadMakesTheseCallsInThisOrder) {
  AnswerNamed(u"a.txt");
  WideString target(u"c:\\tmp");
  EXPECT_EQ(Shown(Download(u"http://files:81/get/f?id=7", target)), "c:\\tmp\\a.txt");
  EXPECT_EQ(Calls(), (Lines{"CoCreate IUnknown", "Run", "Query IHttpSession", "Open(http, files, 81, , , )",
                            "OpenRequest(GET, /get/f?id=7, */*, 0)", "SetHeader(usid, u1)", "Send(body, )",
                            "GetHeader(Content-Disposition)", "ReadToFile(c:\\tmp\\a.txt, 0)",
                            "Close request", "Close session"}));
  EXPECT_EQ(http_.Bodies(), Lines{""});
}

TEST_F(FileDownloader, TargetBecomesThePath) {
  AnswerNamed(u"a.txt");
  WideString target(u"c:\\tmp\\");
  EXPECT_EQ(Shown(Download(u"http://files/f", target)), "c:\\tmp\\a.txt");
  EXPECT_EQ(Shown(target), "c:\\tmp\\a.txt");
}

TEST_F(FileDownloader, CookieIsTheLastHeader) {
  AnswerNamed(u"a.txt");
  cookie_ = u"k=v; w";
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("SetHeader("), (Lines{"SetHeader(usid, u1)", "SetHeader(Cookie, k=v; w)"}));
}

TEST_F(FileDownloader, NullCookieMakesNoHeader) {
  AnswerNamed(u"a.txt");
  cookie_ = WideString();
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("SetHeader("), Lines{"SetHeader(usid, u1)"});
}

TEST_F(FileDownloader, SessionTravelsAsItStands) {
  for (const WideString& session : {WideString(), WideString(u""), WideString(u"a&B c")}) {
    AnswerNamed(u"a.txt");
    WideString target(u"/t");
    CFileDownloader(u"http://files/f", u"", 0, u"").Download(session, target);
    EXPECT_EQ(http_.CallsNamed("SetHeader(").back(), "SetHeader(usid, " + Shown(session) + ")");
  }
}

TEST_F(FileDownloader, ProxyHasNameAndPort) {
  EXPECT_EQ(OpenFor(u"proxy", 3128), "Open(http, files, 80, , , proxy:3128)");
  EXPECT_EQ(OpenFor(u"proxy", 80), "Open(http, files, 80, , , proxy:80)");
  EXPECT_EQ(OpenFor(u"proxy", -1), "Open(http, files, 80, , , proxy:-1)");
  EXPECT_EQ(OpenFor(u"proxy", 70000), "Open(http, files, 80, , , proxy:70000)");
  EXPECT_EQ(OpenFor(u"p:1", 2), "Open(http, files, 80, , , p:1:2)");
  EXPECT_EQ(OpenFor(u"@PROXY@", 80), "Open(http, files, 80, , , @PROXY@:80)");
}

TEST_F(FileDownloader, HalfAProxyIsNone) {
  EXPECT_EQ(OpenFor(u"proxy", 0), "Open(http, files, 80, , , )");
  EXPECT_EQ(OpenFor(u"", 3128), "Open(http, files, 80, , , )");
  EXPECT_EQ(OpenFor(WideString(), 3128), "Open(http, files, 80, , , )");
  EXPECT_EQ(OpenFor(u"", 0), "Open(http, files, 80, , , )");
}

TEST_F(FileDownloader, UrlIsTakenApart) {
  WideString target(u"/t");
  AnswerNamed(u"a.txt");
  Download(u"https://files:70000/a%20b?c=d&e=f#g", target);
  EXPECT_EQ(Opens().back(), "Open(https, files, 4464, , , )");
  EXPECT_EQ(http_.CallsNamed("OpenRequest(").back(), "OpenRequest(GET, /a%20b?c=d&e=f#g, */*, 0)");
  AnswerNamed(u"a.txt");
  Download(u"http:\\\\files/a\\b", target);
  EXPECT_EQ(Opens().back(), "Open(http, files, 80, , , )");
  EXPECT_EQ(http_.CallsNamed("OpenRequest(").back(), "OpenRequest(GET, /a\\b, */*, 0)");
}

TEST_F(FileDownloader, StatusOfTheAnswerIsNotLookedAt) {
  HttpAnswer answer{u"404", WideString(), u"gone"};
  answer.headers[u"Content-Disposition"] = u"attachment; filename=a.txt";
  http_.AnswerAs(answer);
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("ReadToFile("), Lines{"ReadToFile(c:\\tmp\\a.txt, 0)"});
}

TEST_F(FileDownloader, ComponentWithoutStartOfItsOwnIsUsedAsItIs) {
  http_.OfferNoRunnable();
  AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(), "nothing");
  EXPECT_TRUE(http_.CallsNamed("Run").empty());
}

TEST_F(FileDownloader, WithoutATargetTheFileGoesToANewTemporaryDirectory) {
  const std::string path = FreshPath();
  EXPECT_EQ(Starred(path, files_.Path().size() + 1), files_.Path() + "\\*/a.txt");
  EXPECT_EQ(http_.CallsNamed("ReadToFile("), Lines{"ReadToFile(" + path + ", 0)"});
  EXPECT_EQ(files_.Count(), 1);
  const std::filesystem::directory_entry made = *std::filesystem::directory_iterator(files_.Path());
  EXPECT_TRUE(made.is_directory());
  EXPECT_EQ(made.path().filename().string(), path.substr(files_.Path().size() + 1, 36));
}

TEST_F(FileDownloader, NullTargetIsAnEmptyOne) {
  AnswerNamed(u"a.txt");
  WideString target;
  const std::string path = Shown(Download(u"http://files/f", target));
  EXPECT_EQ(Starred(path, files_.Path().size() + 1), files_.Path() + "\\*/a.txt");
  EXPECT_EQ(Shown(target), path);
}

TEST_F(FileDownloader, EachDownloadHasADirectoryOfItsOwn) {
  EXPECT_NE(FreshPath(), FreshPath());
  EXPECT_EQ(files_.Count(), 2);
}

TEST_F(FileDownloader, TemporaryDirectoryMayEndInABackslash) {
  temp_.Set((files_.Path() + "\\").c_str());
  EXPECT_EQ(Starred(FreshPath(), files_.Path().size() + 1), files_.Path() + "\\*/a.txt");
}

TEST_F(FileDownloader, SecondVariableStandsInForTheFirst) {
  for (const char* first : {static_cast<const char*>(nullptr), ""}) {
    temp_.Set(first);
    tmp_.Set(files_.Path().c_str());
    EXPECT_EQ(Starred(FreshPath(), files_.Path().size() + 1), files_.Path() + "\\*/a.txt");
  }
  temp_.Set(files_.Path().c_str());
  tmp_.Set("/nowhere");
  EXPECT_EQ(Starred(FreshPath(), files_.Path().size() + 1), files_.Path() + "\\*/a.txt");
}

TEST_F(FileDownloader, TargetLeavesTheTemporaryDirectoryAlone) {
  temp_.Set(nullptr);
  AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(u"http://files/f", u" "), "nothing");
  EXPECT_EQ(http_.CallsNamed("ReadToFile("), Lines{"ReadToFile( \\a.txt, 0)"});
  EXPECT_EQ(files_.Count(), 0);
}

}  // namespace
}  // namespace qv
