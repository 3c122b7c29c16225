// Where a file name leads, and names as URLs.
#include "support/file_names.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/native_path.h"

namespace qv {
namespace {

constexpr char kInvalidPath[] = "EQvException 0x00000000 DetectFileSource - Invalid path or file name";
constexpr char kDetectMissing[] = "EQvException 0x00000000 DetectFileSource - File Name is missing";
constexpr char kUrlMissing[] = "EQvException 0x00000000 IsFileNameURL - File Name is missing.";

void ExpectSource(FileSource source, std::initializer_list<const char16_t*> names) {
  for (const char16_t* name : names) EXPECT_EQ(DetectFileSource(name), source) << Shown(name);
}

TEST(DetectFileSource, GoesByTheFirstCharacters) {
  ExpectSource(FileSource::kLocal,
               {u"\\", u"\\temp", u"c:", u"c:\\", u"c:\\x", u"x/y", u"/a/b", u"a", u"::", u"\\c:"});
  ExpectSource(FileSource::kNetwork, {u"\\\\server\\share", u"\\\\"});
  ExpectSource(FileSource::kUrl, {u"ab://x", u"ab:c", u":", u"FILE:c", u"/a:b"});
}

TEST(DetectFileSource, ColonInSecondPlaceWithoutBackslashIsRefused) {
  for (const char16_t* name : {u"c:x", u"c:/x", u"a:b", u"::x"})
    EXPECT_EQ(Thrown([name] { DetectFileSource(name); }), kInvalidPath) << Shown(name);
}

TEST(IsFileNameURL, OnlyUrlsAre) {
  EXPECT_TRUE(IsFileNameURL(u"http://h/x"));
  EXPECT_FALSE(IsFileNameURL(u"x/y"));
  EXPECT_FALSE(IsFileNameURL(u"\\\\server\\share"));
}

TEST(FileNameToUrl, UrlsStayAndOtherNamesFollowThePrefixAsTheyAre) {
  for (const char16_t* url : {u"file:///c:/x", u"file:x", u"FILE:c", u"http://h/x"})
    EXPECT_EQ(FileNameToUrl(url), url);
  for (const char16_t* name : {u"c:\\x", u"/a b/%41", u"\\\\server\\x"})
    EXPECT_EQ(FileNameToUrl(name), std::u16string(u"file:///") + name);
}

TEST(FileNames, BadNamesRaiseTheMessageOfTheirTest) {
  for (const char16_t* name : {u"", static_cast<const char16_t*>(nullptr)})
    EXPECT_EQ(Thrown([name] { DetectFileSource(name); }), kDetectMissing);
  EXPECT_EQ(Thrown([] { IsFileNameURL(u""); }), kUrlMissing);
  EXPECT_EQ(Thrown([] { FileNameToUrl(u""); }), kUrlMissing);
  EXPECT_EQ(Thrown([] { IsFileNameURL(u"c:/x"); }), kInvalidPath);
  EXPECT_EQ(Thrown([] { FileNameToUrl(u"c:/x"); }), kInvalidPath);
}

TEST(NativePath, HasSlashesAndIsUtf8) {
  EXPECT_EQ(NativePath(u"dir\\sub/\u00e9.xml"), "dir/sub/\xC3\xA9.xml");
  EXPECT_EQ(NativePath(u""), "");
}

}  // namespace
}  // namespace qv
