// Which names of script documents find a file, and how files that cannot be used are refused.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "script/script_file_fixture.h"

namespace qv {
namespace {

constexpr char kFound[] = "&lt;found/&gt;\\u000A\\u000A";
constexpr char kDocument[] = "<found/>";

class ScriptFileNames : public ScriptFileFixture {};

TEST_F(ScriptFileNames, AbsolutePathIsRead) {
  EXPECT_EQ(Named(files_.Write("a.xml", kDocument)), kFound);
}

TEST_F(ScriptFileNames, BlanksPercentSignsAndOtherLettersAreAsTheyStand) {
  EXPECT_EQ(Named(files_.Write("a b/my script.xml", kDocument)), kFound);
  EXPECT_EQ(Named(files_.Write("100%.xml", kDocument)), kFound);
  EXPECT_EQ(Named(files_.Write("%41%20.xml", kDocument)), kFound);
  EXPECT_EQ(Named(files_.Write("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80.xml", kDocument)), kFound);
  EXPECT_EQ(Named(files_.Write("&<>\"'.xml", kDocument)), kFound);
}

TEST_F(ScriptFileNames, PercentSignIsNoEscape) {
  files_.Write("A.xml", kDocument);
  EXPECT_EQ(Refusal((files_.Directory() / "%41.xml").string()), kScriptFileRefused);
}

TEST_F(ScriptFileNames, BackslashesAreSeparators) {
  files_.Write("sub/deep/a.xml", kDocument);
  EXPECT_EQ(Named(files_.Directory().string() + "\\sub\\deep\\a.xml"), kFound);
  EXPECT_EQ(Named("file:///" + files_.Directory().string() + "\\sub/deep\\a.xml"), kFound);
  const CurrentDirectory here(files_.Directory());
  EXPECT_EQ(Named(u"sub\\deep\\a.xml"), kFound);
  EXPECT_EQ(Named(u".\\sub\\..\\sub\\deep\\a.xml"), kFound);
}

TEST_F(ScriptFileNames, PathWithoutRootIsRelativeToTheCurrentDirectory) {
  files_.Write("a.xml", kDocument);
  files_.Write("sub/b.xml", kDocument);
  const CurrentDirectory here(files_.Directory() / "sub");
  EXPECT_EQ(Named(u"b.xml"), kFound);
  EXPECT_EQ(Named(u"../a.xml"), kFound);
  EXPECT_EQ(Refusal(WideString(u"a.xml")), kScriptFileRefused);
  EXPECT_EQ(Refusal(WideString(u"file:///b.xml")), kScriptFileRefused);  // a URL is absolute
}

TEST_F(ScriptFileNames, FileUrlIsRead) {
  const std::string path = files_.Write("a b.xml", kDocument);
  const std::string encoded = files_.Directory().string() + "/a%20b.xml";
  for (const char* start : {"file://", "file:", "file://localhost", "FILE://"}) {
    EXPECT_EQ(Named(start + path), kFound) << start;
    EXPECT_EQ(Named(start + encoded), kFound) << start;
    EXPECT_EQ(Named(start + encoded + "?x=1#top"), kFound) << start;
  }
}

TEST_F(ScriptFileNames, QueryAndFragmentOfAPlainNameAreAsTheyStand) {
  EXPECT_EQ(Named(files_.Write("a?b#c.xml", kDocument)), kFound);
}

TEST_F(ScriptFileNames, MissingFilesAreRefused) {
  EXPECT_EQ(Refusal((files_.Directory() / "none.xml").string()), kScriptFileRefused);
  EXPECT_EQ(Refusal((files_.Directory() / "none/none.xml").string()), kScriptFileRefused);
  EXPECT_EQ(Refusal("file:///" + (files_.Directory() / "none.xml").string()), kScriptFileRefused);
  EXPECT_EQ(Refusal((files_.Directory() / "none?.xml").string()), kScriptFileRefused);
  EXPECT_EQ(Refusal((files_.Directory() / "none#.xml").string()), kScriptFileRefused);
  EXPECT_EQ(Refusal(WideString(u"c:\\none.xml")), kScriptFileRefused);
  EXPECT_EQ(Refusal(WideString(u"\\\\none\\none.xml")), kScriptFileRefused);
}

TEST_F(ScriptFileNames, DirectoryIsRefused) {
  EXPECT_EQ(Refusal(files_.Directory().string()), kScriptFileRefused);
  EXPECT_EQ(Refusal("file:///" + files_.Directory().string()), kScriptFileRefused);
  EXPECT_EQ(Refusal(WideString(u"/")), kScriptFileRefused);
}

TEST_F(ScriptFileNames, NameOverlongForTheSystemIsRefused) {
  EXPECT_EQ(Refusal("/" + std::string(5000, 'a')), kScriptFileRefused);
  EXPECT_EQ(Refusal("/" + std::string(100000, 'a') + "?"), kScriptFileRefused);
}

TEST_F(ScriptFileNames, NameThatHasNoUtf8IsNotFound) {
  files_.Write("a.xml", kDocument);
  std::u16string name(FromUtf8(files_.Directory().string() + "/").view());
  name += u"\xD800.xml";
  EXPECT_EQ(Refusal(WideString(name)), kScriptFileRefused);
}

TEST_F(ScriptFileNames, NamesOnTheNetworkAreRefused) {
  for (const char16_t* name :
       {u"http://127.0.0.1:1/a.xml", u"https://127.0.0.1:1/a.xml", u"ftp://127.0.0.1:1/a.xml",
        u"http://127.0.0.1:1/a.xml?x=1", u"HTTP://127.0.0.1:1/a.xml#top", u"file://127.0.0.1/a.xml",
        u"file:a.xml", u"ab:c.xml"})
    EXPECT_EQ(Refusal(WideString(name)), kScriptFileRefused) << Shown(name);
}

// Only what begins as a scheme does makes it a URL.
TEST_F(ScriptFileNames, NameWithAColonElsewhereIsAsItStands) {
  EXPECT_EQ(Named(files_.Write("a:b.xml", kDocument)), kFound);
}

TEST_F(ScriptFileNames, NamesThatAreNoneHaveTheWordsOfTheNameRules) {
  EXPECT_EQ(Refusal(WideString()), "EQvException 0x00000000 IsFileNameURL - File Name is missing.");
  EXPECT_EQ(Refusal(WideString(u"")), "EQvException 0x00000000 IsFileNameURL - File Name is missing.");
  EXPECT_EQ(Refusal(WideString(u"c:x.xml")),
            "EQvException 0x00000000 DetectFileSource - Invalid path or file name");
}

TEST_F(ScriptFileNames, FilesThatAreNotWellFormedAreRefused) {
  for (const char* text : {"", " \n", "text", "<r>", "<r></s>", "<r/><r/>", "<r/>text", "<r a='1' a='2'/>",
                           "<r a=1/>", "<r>&undefined;</r>", "<r>\x01</r>", "<r>&#0;</r>", "<r>&#xD800;</r>",
                           "<r>a&b</r>", "<r><!-- -- --></r>", "<r>]]></r>", "<!DOCTYPE r [",
                           "<!DOCTYPE r [<!ENTITY e \"&e;\">]><r>&e;</r>", " <?xml version='1.0'?><r/>"})
    EXPECT_EQ(RefusalOfText(text), kScriptFileRefused) << text;
}

TEST_F(ScriptFileNames, BytesThatAreNoTextAreRefused) {
  EXPECT_EQ(RefusalOfText("<r>\xFF</r>"), kScriptFileRefused);
  EXPECT_EQ(RefusalOfText("<r>\xC3"), kScriptFileRefused);
  EXPECT_EQ(RefusalOfText("<r>\xED\xA0\x80</r>"), kScriptFileRefused);
  EXPECT_EQ(RefusalOfText(std::string("<r>\0</r>", 8)), kScriptFileRefused);
  EXPECT_EQ(RefusalOfText(std::string("\xFF\xFE<\0r\0>", 7)), kScriptFileRefused);
  EXPECT_EQ(RefusalOfText(std::string("\xFF\xFE<\0r\0>\0\x00\xD8<\0/\0r\0>\0", 18)), kScriptFileRefused);
}

TEST_F(ScriptFileNames, EncodingThatNobodyKnowsIsRefused) {
  EXPECT_EQ(RefusalOfText("<?xml version='1.0' encoding='nonsense'?><r/>"), kScriptFileRefused);
}

TEST_F(ScriptFileNames, EntitiesOnTheNetworkAreRefused) {
  EXPECT_EQ(RefusalOfText("<!DOCTYPE r [<!ENTITY e SYSTEM \"http://127.0.0.1:1/e\">]><r>&e;</r>"),
            kScriptFileRefused);
  EXPECT_EQ(RefusalOfText("<!DOCTYPE r SYSTEM \"http://127.0.0.1:1/r.dtd\"><r/>"), kScriptFileRefused);
}

TEST_F(ScriptFileNames, MissingExternalPartsAreRefused) {
  EXPECT_EQ(RefusalOfText("<!DOCTYPE r [<!ENTITY e SYSTEM \"none.txt\">]><r>&e;</r>"), kScriptFileRefused);
  EXPECT_EQ(RefusalOfText("<!DOCTYPE r SYSTEM \"none.dtd\"><r/>"), kScriptFileRefused);
}

TEST_F(ScriptFileNames, RefusedFileDoesNoHarmToTheNext) {
  EXPECT_EQ(RefusalOfText("<r><a>text"), kScriptFileRefused);
  EXPECT_EQ(Named(files_.Write("a.xml", kDocument)), kFound);
}

}  // namespace
}  // namespace qv
