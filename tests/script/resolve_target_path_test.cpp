// The path that a target and a Content-Disposition header make.
#include <string>
#include <string_view>

#include "fixtures/scarce_memory.h"
#include "script/download_fixture.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

class ResolveTargetPath : public DownloadFixture {
 protected:
  static std::string Resolved(const WideString& target, const WideString& header) {
    return Shown(CFileDownloader::ResolveTargetPath(target, header));
  }
  static std::string Refusal(const WideString& target, const WideString& header) {
    return Thrown([&] { CFileDownloader::ResolveTargetPath(target, header); });
  }
  // For an empty target: the path below the temporary directory, with the new directory's name as "*".
  std::string Fresh(const WideString& target, const WideString& header) const {
    return Below(Resolved(target, header));
  }
};

TEST_F(ResolveTargetPath, NameIsBetweenTheLastTwoEqualSigns) {
  constexpr struct {
    const char* name;
    std::u16string_view target;
    std::u16string_view header;
    const char* path;  // as shown_text.h shows it
  } rows[] = {
      {"NoBackslash", u"c:\\tmp"sv, u"attachment; filename=a.txt"sv, "c:\\tmp\\a.txt"},
      {"Backslash", u"c:\\tmp\\"sv, u"attachment; filename=a.txt"sv, "c:\\tmp\\a.txt"},
      {"TwoBackslashes", u"c:\\tmp\\\\"sv, u"f=a.txt"sv, R"(c:\tmp\\a.txt)"},
      {"Slash", u"/tmp/"sv, u"f=a.txt"sv, "/tmp/\\a.txt"},
      {"NoSlash", u"/tmp"sv, u"f=a.txt"sv, "/tmp\\a.txt"},
      {"Root", u"/"sv, u"f=a.txt"sv, "/\\a.txt"},
      {"BackslashOnly", u"\\"sv, u"f=a.txt"sv, "\\a.txt"},
      {"Relative", u"t"sv, u"f=a.txt"sv, "t\\a.txt"},
      {"Blank", u" "sv, u"f=a.txt"sv, " \\a.txt"},
      {"Parent", u".."sv, u"f=a.txt"sv, "..\\a.txt"},
      {"NonAsciiTarget", u"/\u00E9"sv, u"f=a"sv, "/\\u00E9\\a"},
      {"NullUnitInTheTarget", u"a\0b"sv, u"f=c"sv, "a\\u0000b\\c"},
      {"TwoEqualSigns", u"t"sv, u"attachment; x=y; filename=a.txt"sv, "t\\a.txt"},
      {"ThreeEqualSigns", u"t"sv, u"a=b=c=d"sv, "t\\d"},
      {"SizeBehindTheName", u"t"sv, u"attachment; filename=a.txt; size=12"sv, "t\\12"},
      {"Parameter", u"t"sv, u"filename=a.txt; inline"sv, "t\\a.txt; inline"},
      {"QuotesStay", u"t"sv, u"attachment; filename=\"a b.txt\""sv, R"(t\"a b.txt")"},
      {"BlanksStay", u"t"sv, u"filename= a.txt "sv, "t\\ a.txt "},
      {"OnlyABlank", u"t"sv, u"filename= "sv, "t\\ "},
      {"TabAndLineEndStay", u"t"sv, u"filename=a\t\r\n"sv, R"(t\a\u0009\u000D\u000A)"},
      {"ExtendedFormStays", u"t"sv, u"filename*=UTF-8''%e2%82%ac.txt"sv, "t\\UTF-8''%e2%82%ac.txt"},
      {"PercentStays", u"t"sv, u"f=..%2Fa"sv, "t\\..%2Fa"},
      {"NonAscii", u"t"sv, u"f=\u00E9\u20AC"sv, R"(t\\u00E9\u20AC)"},
      {"SurrogatePair", u"t"sv, u"f=\U0001F600"sv, R"(t\\uD83D\uDE00)"},
      {"WideSlashIsNone", u"t"sv, u"f=a\uFF0Fb"sv, "t\\a\\uFF0Fb"},
      {"ThreeDots", u"t"sv, u"f=..."sv, "t\\..."},
      {"DotsInQuotes", u"t"sv, u"f=\"..\""sv, R"(t\"..")"},
      {"DotsAndBlank", u"t"sv, u"f=.. "sv, "t\\.. "},
      {"HiddenFile", u"t"sv, u"f=.a"sv, "t\\.a"},
      {"Drive", u"t"sv, u"f=c:a"sv, "t\\c:a"},
      {"Neighbours", u"t"sv, u"a==b"sv, "t\\=b"},
      {"NeighboursAtTheEnd", u"t"sv, u"a=="sv, "t\\="},
      {"ThreeNeighbours", u"t"sv, u"a===b"sv, "t\\b"},
      {"FourNeighbours", u"t"sv, u"a====b"sv, "t\\=b"},
      {"NullUnitBeforeTheName", u"t"sv, u"a\0=b"sv, "t\\b"},
      {"SlashBeforeTheName", u"t"sv, u"a/b\\c=d"sv, "t\\d"},
      // Whether such a file may be written is decided where it would be.
      {"EmptyName", u"t"sv, u"filename="sv, "t\\"},
      {"EmptyLastName", u"t"sv, u"filename=a.txt="sv, "t\\"},
      {"EmptyBehindThree", u"t"sv, u"a==="sv, "t\\"},
      {"OneDot", u"t"sv, u"f=."sv, "t\\."},
      {"TwoDots", u"t"sv, u"f=.."sv, "t\\.."},
      {"SlashInside", u"t"sv, u"f=a/b"sv, "t\\a/b"},
      {"SlashFirst", u"t"sv, u"f=/b"sv, "t\\/b"},
      {"SlashLast", u"t"sv, u"f=a/"sv, "t\\a/"},
      {"OnlyASlash", u"t"sv, u"f=/"sv, "t\\/"},
      {"BackslashInside", u"t"sv, u"f=a\\b"sv, "t\\a\\b"},
      {"BackslashFirst", u"t"sv, u"f=\\b"sv, "t\\\\b"},
      {"BackslashLast", u"t"sv, u"f=a\\"sv, "t\\a\\"},
      {"ParentWithSlash", u"t"sv, u"f=../a"sv, "t\\../a"},
      {"ParentWithBackslash", u"t"sv, u"f=..\\a"sv, "t\\..\\a"},
      {"QuotedSlash", u"t"sv, u"f=\"a/b\""sv, R"(t\"a/b")"},
      {"NullUnitLast", u"t"sv, u"f=a\0"sv, "t\\a\\u0000"},
      {"NullUnitFirst", u"t"sv, u"f=\0a"sv, "t\\\\u0000a"},
      {"NullUnitBehindDots", u"t"sv, u"f=..\0"sv, "t\\..\\u0000"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Resolved(row.target, row.header), row.path) << row.name;
    EXPECT_EQ(files_.Count(), 0) << row.name;
  }
}

TEST_F(ResolveTargetPath, HeaderWithoutANameIsRefused) {
  const struct {
    WideString target;
    WideString header;
  } rows[] = {{u"t", u"attachment"}, {u"t", u"=a.txt"}, {u"t", u"=a=b"},      {u"t", u"="},
              {u"t", u""},           {u"", u"f"},       {u"t", WideString()}, {WideString(), WideString()}};
  for (const auto& row : rows) {
    EXPECT_NE(Refusal(row.target, row.header), "nothing") << Shown(row.header);
    EXPECT_EQ(files_.Count(), 0) << Shown(row.header);
  }
}

TEST_F(ResolveTargetPath, EmptyAndNullTargetsMakeADirectoryWhateverTheName) {
  EXPECT_EQ(Fresh(u"", u"f=a.txt"), "\\*/a.txt");
  EXPECT_EQ(Fresh(WideString(), u"f=a b"), "\\*/a b");
  EXPECT_EQ(files_.Count(), 2);
  EXPECT_EQ(Fresh(u"", u"f=../a"), "\\*/../a");
  EXPECT_EQ(Fresh(u"", u"f="), "\\*/");
  EXPECT_EQ(files_.Count(), 4);
}

TEST_F(ResolveTargetPath, MissingVariablesHaveTheMessageOfTheDirectory) {
  temp_.Set(nullptr);
  EXPECT_EQ(Refusal(u"", u"f=a"),
            Refused("Failed to get temp directory path. TEMP/TMP environment variable does not exist."));
  EXPECT_EQ(Resolved(u"t", u"f=a"), "t\\a");
}

TEST_F(ResolveTargetPath, DirectoryThatCannotBeMadeIsNamed) {
  temp_.Set((files_.Path("missing")).c_str());
  const std::string start = Refused("Cannot create the following directory: " + files_.Path());
  EXPECT_EQ(Refusal(u"", u"f=a").substr(0, start.size()), start);
}

TEST_F(ResolveTargetPath, LongNameIsNotCut) {
  const std::string name(100'000, 'n');
  EXPECT_EQ(Resolved(u"t", u"f=" + std::u16string(name.begin(), name.end())), "t\\" + name);
}

// The directory must not be there when nobody is left who remembers it.
TEST_F(ResolveTargetPath, WithoutMemoryNoNewDirectoryStays) {
  const WideString header(u"attachment; filename=a.txt");
  int made = 0;
  ThrownWithout(Memory::kBoth, [&] {
    CFileDownloader::ResolveTargetPath(WideString(), header);
    ++made;
  });
  EXPECT_GT(made, 0);
  EXPECT_EQ(files_.Count(), made);
}

}  // namespace
}  // namespace qv
