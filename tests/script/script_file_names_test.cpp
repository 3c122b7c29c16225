// Which names of script documents find a file, and which files are rejected.
#include <string>
#include <string_view>

#include "fixtures/current_directory.h"
#include "script/script_file_fixture.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr char kFound[] = "&lt;found/&gt;\\u000A\\u000A";
constexpr char kDocument[] = "<found/>";

class ScriptFileNames : public ScriptFileFixture {};

TEST_F(ScriptFileNames, AnyNameOfAnExistingFileIsRead) {
  for (const char* name : {"a.xml", "a b/my script.xml", "100%.xml", "%41%20.xml", "&<>\"'.xml",
                           "a?b#c.xml",  // query and fragment belong to URLs alone
                           "a:b.xml",    // and so do schemes, which come first
                           "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80.xml"})
    EXPECT_EQ(Named(files_.Write(name, kDocument)), kFound) << name;
}

TEST_F(ScriptFileNames, PercentSignIsNotAnEscape) {
  files_.Write("A.xml", kDocument);
  EXPECT_EQ(Refusal(files_.Path("%41.xml")), kNoDocument);
}

TEST_F(ScriptFileNames, BackslashesAreSeparators) {
  files_.Write("sub/deep/a.xml", kDocument);
  EXPECT_EQ(Named(files_.Path() + "\\sub\\deep\\a.xml"), kFound);
  EXPECT_EQ(Named("file:///" + files_.Path() + "\\sub/deep\\a.xml"), kFound);
  const CurrentDirectory here(files_.Path());
  EXPECT_EQ(Named(u"sub\\deep\\a.xml"), kFound);
  EXPECT_EQ(Named(u".\\sub\\..\\sub\\deep\\a.xml"), kFound);
}

TEST_F(ScriptFileNames, PathWithoutRootIsRelativeToTheCurrentDirectory) {
  files_.Write("a.xml", kDocument);
  files_.Write("sub/b.xml", kDocument);
  const CurrentDirectory here(files_.Path("sub"));
  EXPECT_EQ(Named(u"b.xml"), kFound);
  EXPECT_EQ(Named(u"../a.xml"), kFound);
  EXPECT_EQ(Refusal("a.xml"), kNoDocument);
  EXPECT_EQ(Refusal("file:///b.xml"), kNoDocument);  // a URL is absolute
}

TEST_F(ScriptFileNames, FileUrlIsRead) {
  const std::string path = files_.Write("a b.xml", kDocument);
  const std::string encoded = files_.Path("a%20b.xml");
  for (const char* start : {"file://", "file:", "file://localhost", "FILE://"})
    for (const std::string& name : {path, encoded, encoded + "?x=1#top"})
      EXPECT_EQ(Named(start + name), kFound) << start;
}

TEST_F(ScriptFileNames, NameWithoutAFileIsRejected) {
  for (const std::string& name :
       {files_.Path("none.xml"), files_.Path("none/none.xml"), "file:///" + files_.Path("none.xml"),
        files_.Path("none?.xml"), files_.Path("none#.xml"), std::string("c:\\none.xml"),
        std::string(R"(\\none\none.xml)"),
        // Directories, and names that are too long for the system.
        files_.Path(), "file:///" + files_.Path(), std::string("/"), "/" + std::string(5000, 'a'),
        "/" + std::string(100000, 'a') + "?",
        // Nothing is fetched over the network.
        std::string("http://127.0.0.1:1/a.xml"), std::string("https://127.0.0.1:1/a.xml"),
        std::string("ftp://127.0.0.1:1/a.xml"), std::string("http://127.0.0.1:1/a.xml?x=1"),
        std::string("HTTP://127.0.0.1:1/a.xml#top"), std::string("file://127.0.0.1/a.xml"),
        std::string("file:a.xml"), std::string("ab:c.xml")})
    EXPECT_EQ(Refusal(name), kNoDocument) << name.substr(0, 100);
}

TEST_F(ScriptFileNames, NameWithoutAUtf8FormIsNotFound) {
  files_.Write("a.xml", kDocument);
  std::u16string name(FromUtf8(files_.Path("")).view());
  name += u"\xD800.xml";
  EXPECT_EQ(Refusal(WideString(name)), kNoDocument);
}

TEST_F(ScriptFileNames, InvalidNamesHaveTheMessagesOfTheNameRules) {
  EXPECT_EQ(Refusal(WideString()), kNoFileName);
  EXPECT_EQ(Refusal(""), kNoFileName);
  EXPECT_EQ(Refusal("c:x.xml"), Refused("DetectFileSource - Invalid path or file name"));
}

TEST_F(ScriptFileNames, FileThatIsNotADocumentIsRejected) {
  for (const std::string_view text :
       {""sv, " \n"sv, "text"sv, "<r>"sv, "<r></s>"sv, "<r/><r/>"sv, "<r/>text"sv, "<r a='1' a='2'/>"sv,
        "<r a=1/>"sv, "<r>&undefined;</r>"sv, "<r>\x01</r>"sv, "<r>&#0;</r>"sv, "<r>&#xD800;</r>"sv,
        "<r>a&b</r>"sv, "<r><!-- -- --></r>"sv, "<r>]]></r>"sv, "<!DOCTYPE r ["sv,
        R"(<!DOCTYPE r [<!ENTITY e "&e;">]><r>&e;</r>)"sv, " <?xml version='1.0'?><r/>"sv,
        // Bytes that do not decode.
        "<r>\xFF</r>"sv, "<r>\xC3"sv, "<r>\xED\xA0\x80</r>"sv, "<r>\0</r>"sv, "\xFF\xFE<\0r\0>"sv,
        "\xFF\xFE<\0r\0>\0\x00\xD8<\0/\0r\0>\0"sv, "<?xml version='1.0' encoding='nonsense'?><r/>"sv,
        // External parts on the network, and missing ones.
        R"(<!DOCTYPE r [<!ENTITY e SYSTEM "http://127.0.0.1:1/e">]><r>&e;</r>)"sv,
        R"(<!DOCTYPE r SYSTEM "http://127.0.0.1:1/r.dtd"><r/>)"sv,
        R"(<!DOCTYPE r [<!ENTITY e SYSTEM "none.txt">]><r>&e;</r>)"sv,
        R"(<!DOCTYPE r SYSTEM "none.dtd"><r/>)"sv})
    EXPECT_EQ(RefusalOfText(std::string(text)), kNoDocument) << text;
}

TEST_F(ScriptFileNames, RejectedFileDoesNoHarmToTheNext) {
  EXPECT_EQ(RefusalOfText("<r><a>text"), kNoDocument);
  EXPECT_EQ(Named(files_.Write("a.xml", kDocument)), kFound);
}

}  // namespace
}  // namespace qv
