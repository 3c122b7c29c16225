#include "support/file_names.h"

#include <gtest/gtest.h>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/native_path.h"

namespace qv {
namespace {

struct SourceRow {
  const char16_t* name;
  FileSource source;
};

class FileSourceOf : public testing::TestWithParam<SourceRow> {};

TEST_P(FileSourceOf, NameIsToldByItsFirstCharacters) {
  EXPECT_EQ(DetectFileSource(GetParam().name), GetParam().source);
}

INSTANTIATE_TEST_SUITE_P(
    FileNames, FileSourceOf,
    testing::Values(SourceRow{u"\\", FileSource::kLocal}, SourceRow{u"\\temp", FileSource::kLocal},
                    SourceRow{u"\\\\server\\share", FileSource::kNetwork},
                    SourceRow{u"\\\\", FileSource::kNetwork}, SourceRow{u"c:", FileSource::kLocal},
                    SourceRow{u"c:\\", FileSource::kLocal}, SourceRow{u"c:\\x", FileSource::kLocal},
                    SourceRow{u"ab://x", FileSource::kUrl}, SourceRow{u"ab:c", FileSource::kUrl},
                    SourceRow{u"x/y", FileSource::kLocal}, SourceRow{u"/a/b", FileSource::kLocal},
                    SourceRow{u"a", FileSource::kLocal}, SourceRow{u":", FileSource::kUrl},
                    SourceRow{u"::", FileSource::kLocal}, SourceRow{u"\\c:", FileSource::kLocal},
                    SourceRow{u"FILE:c", FileSource::kUrl}, SourceRow{u"/a:b", FileSource::kUrl}));

WideString WordsOf(void (*call)()) {
  try {
    call();
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Code(), 0);
    return error.Description();
  }
  return u"(nothing was raised)";
}

TEST(DetectFileSource, ColonInSecondPlaceWithoutBackslashIsRefused) {
  for (const char16_t* name : {u"c:x", u"c:/x", u"a:b", u"::x"}) {
    try {
      DetectFileSource(name);
      ADD_FAILURE() << ToUtf8(name);
    } catch (const EQvException& error) {
      EXPECT_EQ(error.Description(), u"DetectFileSource - Invalid path or file name");
      EXPECT_EQ(error.Code(), 0);
    }
  }
}

TEST(DetectFileSource, EmptyNameIsMissing) {
  EXPECT_EQ(WordsOf([] { DetectFileSource(u""); }), u"DetectFileSource - File Name is missing");
  EXPECT_EQ(WordsOf([] { DetectFileSource(nullptr); }), u"DetectFileSource - File Name is missing");
}

TEST(IsFileNameURL, OnlyUrlsAre) {
  EXPECT_TRUE(IsFileNameURL(u"http://h/x"));
  EXPECT_FALSE(IsFileNameURL(u"x/y"));
  EXPECT_FALSE(IsFileNameURL(u"\\\\server\\share"));
}

TEST(IsFileNameURL, EmptyNameIsMissing) {
  EXPECT_EQ(WordsOf([] { IsFileNameURL(u""); }), u"IsFileNameURL - File Name is missing.");
}

TEST(FileNameToUrl, UrlsStay) {
  EXPECT_EQ(FileNameToUrl(u"file:///c:/x"), u"file:///c:/x");
  EXPECT_EQ(FileNameToUrl(u"file:x"), u"file:x");
  EXPECT_EQ(FileNameToUrl(u"FILE:c"), u"FILE:c");
  EXPECT_EQ(FileNameToUrl(u"http://h/x"), u"http://h/x");
}

TEST(FileNameToUrl, OtherNamesStandBehindThePrefixAsTheyAre) {
  EXPECT_EQ(FileNameToUrl(u"c:\\x"), u"file:///c:\\x");
  EXPECT_EQ(FileNameToUrl(u"/a b/%41"), u"file:////a b/%41");
  EXPECT_EQ(FileNameToUrl(u"\\\\server\\x"), u"file:///\\\\server\\x");
}

TEST(FileNameToUrl, NameThatIsNoneRaisesTheWordsOfItsTest) {
  EXPECT_EQ(WordsOf([] { FileNameToUrl(u"c:/x"); }), u"DetectFileSource - Invalid path or file name");
  EXPECT_EQ(WordsOf([] { IsFileNameURL(u"c:/x"); }), u"DetectFileSource - Invalid path or file name");
}

TEST(FileNameToUrl, EmptyNameIsMissing) {
  EXPECT_EQ(WordsOf([] { FileNameToUrl(u""); }), u"IsFileNameURL - File Name is missing.");
}

TEST(NativePath, BackslashesTurnAndTextIsUtf8) {
  EXPECT_EQ(NativePath(u"dir\\sub/\u00e9.xml"), "dir/sub/\xC3\xA9.xml");
  EXPECT_EQ(NativePath(u""), "");
}

}  // namespace
}  // namespace qv
