// A script document's file as it is on the wire.
#include <filesystem>
#include <string>

#include "script/script_file_fixture.h"

namespace qv {
namespace {

class ScriptFile : public ScriptFileFixture {};

// A text in two bytes a unit, from ASCII and "\xE9" alone.
std::string Utf16(const std::string& latin1, bool littleEndian) {
  std::string bytes = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
  for (const char letter : latin1)
    bytes += littleEndian ? std::string{letter, '\0'} : std::string{'\0', letter};
  return bytes;
}

TEST_F(ScriptFile, WholeEnvelopeHoldsTheDocumentWhateverElseIsInTheMap) {
  const std::string path = files_.Write(
      "script.xml", "<Scriptwell Language=\"JavaScript\"><Code>a &lt; b &amp;&amp; c</Code></Scriptwell>");
  NamedArguments map{{u"ContextHandle", Variant::FromString(u"u1")},
                     {u"ScriptFile", Variant::FromString(FromUtf8(path))}};
  const std::string request = RequestOfFile(
                                  "&lt;Scriptwell Language=&quot;JavaScript&quot;&gt;&lt;Code&gt;"
                                  "a &amp;lt; b &amp;amp;&amp;amp; c"
                                  "&lt;/Code&gt;&lt;/Scriptwell&gt;\\u000A\\u000A",
                                  kNoParameters) +
                              "\\u0000";
  EXPECT_EQ(RequestFor(map), request);
  map[u"ScriptLanguage"] = Variant::FromString(u"VBScript");
  map[u"Script"] = Variant::FromString(u"text");
  EXPECT_EQ(RequestFor(map), request);
}

TEST_F(ScriptFile, DocumentIsRenderedAndEscapedOnce) {
  const struct {
    const char* name;
    const char* source;
    const char* script;
  } rows[] = {
      {"usual document",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
       "<Scriptwell Language=\"VBScript\" xmlns:xsi=\"urn:i\" xsi:schemaLocation=\"urn:n s.xsd\" "
       "xmlns=\"urn:n\">\n  <Code><![CDATA[If a<b Then c=\"d\"]]></Code>\n</Scriptwell>\n",
       "&lt;Scriptwell Language=&quot;VBScript&quot; xmlns=&quot;urn:n&quot; xmlns:xsi=&quot;urn:i&quot; "
       "xsi:schemaLocation=&quot;urn:n s.xsd&quot;&gt;\\u000A  "
       "&lt;Code&gt;&lt;![CDATA[If a&lt;b Then c=&quot;d&quot;]]&gt;&lt;/Code&gt;\\u000A"
       "&lt;/Scriptwell&gt;"},
      {"any element", "<p:other/>", "&lt;p:other/&gt;"},
      {"ampersand", "<r>x&amp;y</r>", "&lt;r&gt;x&amp;amp;y&lt;/r&gt;"},
      {"markup in text", "<r>a&lt;b&gt;c</r>", "&lt;r&gt;a&amp;lt;b&amp;gt;c&lt;/r&gt;"},
      {"bare greater sign", "<r>a>b</r>", "&lt;r&gt;a&amp;gt;b&lt;/r&gt;"},
      {"quotes in text", "<r>\"'&quot;&apos;</r>", "&lt;r&gt;&quot;&apos;&quot;&apos;&lt;/r&gt;"},
      {"empty elements", "<r><a></a><b/></r>", "&lt;r&gt;&lt;a/&gt;&lt;b/&gt;&lt;/r&gt;"},
      {"empty document element", "<r></r>", "&lt;r/&gt;"},
      {"attributes are sorted", "<r z='1' a='&lt;&amp;\"&gt;&apos;' m='&#10;&#9;&#13;\xC3\xA9'/>",
       "&lt;r a=&quot;&amp;lt;&amp;amp;&amp;quot;&gt;&apos;&quot; "
       "m=&quot;&amp;#xA;&amp;#x9;&amp;#xD;&#195;&#169;&quot; z=&quot;1&quot;/&gt;"},
      {"white space of the element", "\n<r>\n\t<a/>  \n</r>\n\n",
       R"(&lt;r&gt;\u000A\u0009&lt;a/&gt;  \u000A&lt;/r&gt;)"},
      {"white space between declared children", "<!DOCTYPE r [<!ELEMENT r (a)*>]><r>\n <a/> </r>",
       "&lt;!DOCTYPE [&lt;!ELEMENT r (a)*&gt;]&gt;\\u000A&lt;r&gt;\\u000A &lt;a/&gt; &lt;/r&gt;"},
      {"line ends", "<r>a\r\nb\rc&#13;</r>", "&lt;r&gt;a\\u000Ab\\u000Ac&amp;#xD;&lt;/r&gt;"},
      {"comments and instructions", "<!-- a&b --><?go?><r><!--<c>--><?go x=\"1\"?></r><!--e-->",
       "&lt;!-- a&amp;b --&gt;\\u000A&lt;?go?&gt;\\u000A"
       "&lt;r&gt;&lt;!--&lt;c&gt;--&gt;&lt;?go x=&quot;1&quot;?&gt;&lt;/r&gt;\\u000A&lt;!--e--&gt;"},
      {"CDATA", "<r>1<![CDATA[a<b&&c>\xC3\xA9]]>2</r>",
       "&lt;r&gt;1&lt;![CDATA[a&lt;b&amp;&amp;c&gt;&#195;&#169;]]&gt;2&lt;/r&gt;"},
      // An entity stays a reference in text and is its value in an attribute.
      {"entity", R"(<!DOCTYPE r [<!ENTITY e "x">]><r a="&e;">1&e;2</r>)",
       "&lt;!DOCTYPE [&lt;!ENTITY e &quot;x&quot;&gt;]&gt;\\u000A&lt;r "
       "a=&quot;x&quot;&gt;1&amp;e;2&lt;/r&gt;"},
      {"declared attribute", "<!DOCTYPE r [<!ATTLIST r a CDATA \"x\">]><r/>",
       "&lt;!DOCTYPE [&lt;!ATTLIST r a CDATA &quot;x&quot;&gt;]&gt;\\u000A&lt;r a=&quot;x&quot;/&gt;"},
      {"bytes of UTF-8", "<r>\xE2\x82\xAC\xF0\x9F\x98\x80</r>",
       "&lt;r&gt;&#226;&#130;&#172;&#240;&#159;&#152;&#128;&lt;/r&gt;"},
      {"windows-1252", "<?xml version='1.0' encoding='windows-1252'?><r>\x80</r>",
       "&lt;r&gt;&#226;&#130;&#172;&lt;/r&gt;"},
      {"delete character", "<r>\x7F</r>", "&lt;r&gt;&#127;&lt;/r&gt;"},
      {"names beyond ASCII", "<\xC3\xA9 \xC3\xA9='1'/>", "&lt;&#195;&#169; &#195;&#169;=&quot;1&quot;/&gt;"},
  };
  for (const auto& row : rows) EXPECT_EQ(Script(row.source), row.script) << row.name;
}

TEST_F(ScriptFile, EncodingOfTheFileLeavesNoTrace) {
  for (const std::string& source :
       {std::string("<r>\xC3\xA9</r>"), std::string("\xEF\xBB\xBF<r>\xC3\xA9</r>"),
        std::string("<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<r>\xC3\xA9</r>"),
        Utf16("<r>\xE9</r>", true), Utf16("<r>\xE9</r>", false),
        Utf16("<?xml version='1.0' encoding='UTF-16'?><r>\xE9</r>", true),
        std::string("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE9</r>"), std::string("<r>&#xE9;</r>")})
    EXPECT_EQ(Script(source), "&lt;r&gt;&#195;&#169;&lt;/r&gt;") << source;
}

TEST_F(ScriptFile, ExternalPartsOnThisMachineStayReferences) {
  const std::string url = "file://" + files_.Write("types.dtd", "<!ENTITY e \"x\">");
  EXPECT_EQ(
      Script("<!DOCTYPE r PUBLIC \"-//P\" \"" + url + "\"><r>&e;</r>"),
      "&lt;!DOCTYPE  PUBLIC &quot;-//P&quot; &quot;" + url + "&quot;&gt;\\u000A&lt;r&gt;&amp;e;&lt;/r&gt;");
  EXPECT_EQ(Script("<!DOCTYPE r SYSTEM \"" + url + "\"><r>&e;</r>"),
            "&lt;!DOCTYPE  SYSTEM &quot;" + url + "&quot;&gt;\\u000A&lt;r&gt;&amp;e;&lt;/r&gt;");
  files_.Write("part.txt", "from a file");
  EXPECT_EQ(Script("<!DOCTYPE r [<!ENTITY e SYSTEM \"part.txt\">]><r>&e;</r>"),
            "&lt;!DOCTYPE [&lt;!ENTITY e SYSTEM &quot;part.txt&quot;&gt;]&gt;\\u000A"
            "&lt;r&gt;&amp;e;&lt;/r&gt;");
}

TEST_F(ScriptFile, FileIsReadAgainForEachCall) {
  EXPECT_EQ(Script("<r>one</r>"), "&lt;r&gt;one&lt;/r&gt;");
  EXPECT_EQ(Script("<r>two</r>"), "&lt;r&gt;two&lt;/r&gt;");
  EXPECT_EQ(RefusalOfText("<r>three"), kNoDocument);
  EXPECT_EQ(Script("<r>four</r>"), "&lt;r&gt;four&lt;/r&gt;");
  std::filesystem::remove(files_.Path("script.xml"));
  EXPECT_EQ(Refusal(files_.Path("script.xml")), kNoDocument);
}

TEST_F(ScriptFile, DeepDocumentIsWritten) {
  constexpr int kLevels = 100000;
  std::string source;
  std::string expected;
  for (int i = 0; i < kLevels; ++i) source += "<a>", expected += "&lt;a&gt;";
  source += "x", expected += "x";
  for (int i = 0; i < kLevels; ++i) source += "</a>", expected += "&lt;/a&gt;";
  EXPECT_TRUE(Script(source) == expected);
}

TEST_F(ScriptFile, LongDocumentIsWrittenWhole) {
  std::string source;
  std::string expected;
  for (int i = 0; i < 300000; ++i) source += "x&amp;\xC3\xA9", expected += "x&amp;amp;&#195;&#169;";
  EXPECT_TRUE(Script("<r>" + source + "</r>") == "&lt;r&gt;" + expected + "&lt;/r&gt;");
}

}  // namespace
}  // namespace qv
