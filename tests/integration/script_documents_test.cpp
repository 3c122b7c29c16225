// Scripts in files, over the development service.
#include <filesystem>

#include "fixtures/raw_server.h"
#include "fixtures/temporary_directory.h"
#include "value_test.h"

namespace qv {
namespace {

constexpr char kNamespace[] = "xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\"";
constexpr char kRefused[] = "0x80020009 Cannot create the xml document.";
constexpr char kWide[] = "'\xE2\x82\xAC\xF0\x9F\x98\x80'";
constexpr char kWideText[] = R"(VT_BSTR \u20AC\uD83D\uDE00)";
constexpr int kLevels = 100'000;

// A document around this code, which is escaped already.
std::string Document(const std::string& code, const std::string& language = "JavaScript") {
  return "<Scriptwell Language=\"" + language + "\" " + kNamespace + "><Code>" + code +
         "</Code></Scriptwell>";
}

std::string Repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

std::string DeepElements(const std::string& inside) {
  return Repeated("<a>", kLevels) + inside + Repeated("</a>", kLevels);
}

int CountOf(const std::string& piece, const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + piece.size()))
    ++count;
  return count;
}

// With the byte order mark.
std::string Utf16(const std::string& utf8, bool littleEndian) {
  const WideString text = FromUtf8("\xEF\xBB\xBF" + utf8);
  std::string bytes;
  for (const char16_t unit : text.view()) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += littleEndian ? std::string{low, high} : std::string{high, low};
  }
  return bytes;
}

class ScriptDocuments : public ValueTest {
 protected:
  std::string RunFile(const std::string& name, IParameters* parameters = nullptr) {
    Variant result = Variant::FromString(u"untouched");
    const HRESULT code = model_->ExecuteFile(FromUtf8(name), parameters, &result);
    if (code == S_OK) return ShownValue(result);
    EXPECT_EQ(ShownValue(result), "VT_BSTR untouched");
    return OutcomeText(code);
  }
  // The same for a file with these bytes.
  std::string RunText(const std::string& bytes, IParameters* parameters = nullptr) {
    return RunFile(files_.Write("script.xml", bytes), parameters);
  }
  // A file of this name answers, so it was found.
  void ExpectFound(const std::string& file, const std::string& name) {
    files_.Write(file, Document("'found'"));
    EXPECT_EQ(RunFile(name), "VT_BSTR found") << name;
    std::filesystem::remove(files_.Path(file));
    EXPECT_EQ(RunFile(name), kRefused) << name;
  }
  // The outcomes of files with these bytes, or the starts of outcomes.
  void ExpectTexts(std::initializer_list<std::pair<std::string, const char*>> rows) {
    for (const auto& [bytes, outcome] : rows)
      EXPECT_EQ(RunText(bytes).substr(0, std::string(outcome).size()), outcome) << bytes.substr(0, 1000);
  }

  TemporaryDirectory files_;
};

TEST_F(ScriptDocuments, CodeRunsInEveryEncoding) {
  const std::string latin = Document("'\xC3\xA9\xC3\xBC'");
  const std::string wide = Document(kWide);
  const std::string declared = R"(<?xml version="1.0" encoding="UTF-16"?>)" + wide;
  ExpectTexts({
      {latin, "VT_BSTR \\u00E9\\u00FC"},
      {wide, kWideText},
      {"\xEF\xBB\xBF" + wide, kWideText},
      {Utf16(latin, true), "VT_BSTR \\u00E9\\u00FC"},
      {Utf16(latin, false), "VT_BSTR \\u00E9\\u00FC"},
      {Utf16(declared, true), kWideText},
      {Utf16(declared, false), kWideText},
      {R"(<?xml version="1.0" encoding="ISO-8859-1"?>)" + Document("'\xE9\xFC'"), "VT_BSTR \\u00E9\\u00FC"},
      {R"(<?xml version="1.0" encoding="windows-1252"?>)" + Document("'\x80'"), "VT_BSTR \\u20AC"},
      {Document("'&#xE9;&#8364;&#x1F600;'"), R"(VT_BSTR \u00E9\u20AC\uD83D\uDE00)"},
      // Two characters that look like the bytes of one in another encoding.
      {Document("'\xC3\x83\xC2\xA9'"), "VT_BSTR \\u00C3\\u00A9"},
  });
}

TEST_F(ScriptDocuments, EveryFormOfADocumentRuns) {
  ExpectTexts({
      {Document("6 * 7"), "VT_INT 42"},
      {"<?xml version=\"1.0\"?>\r\n" + Document("1 &lt; 2 &amp;&amp; 3 > 2") + "\r\n", "VT_BOOL -1"},
      // Sections are code.
      {Document("<![CDATA['<b>&amp;\"' + 'x']]>"), "VT_BSTR <b>&amp;\"x"},
      {Document("'a' <![CDATA[+ '\xC3\xA9]]']]> + 'c'"), "VT_BSTR a\\u00E9]]c"},
      {Document("']]]]><![CDATA[>'"), kRefused},
      {Document("<![CDATA[']]]]><![CDATA[>']]>"), "VT_BSTR ]]>"},
      // Comments and instructions may be anywhere, and white space around the code.
      {"<?xml version=\"1.0\"?>\n<!-- a & b -->\n<?go fast?>\n" + Document("1<!-- - 1 --> + <?go slow?>1") +
           "<!-- end \xC3\xA9 -->\n<?done?>\n",
       "VT_INT 2"},
      {"<Scriptwell Language='JavaScript'\n\t" + std::string(kNamespace) +
           ">\r\n  <Code>\r\n  'a\\\r\nb'\r\n</Code>\r\n</Scriptwell>\r\n\r\n",
       "VT_BSTR ab"},
      // Entities of the document are known.
      {"<!DOCTYPE Scriptwell [<!ENTITY e \"Gr\xC3\xBC\xC3\x9F\x65\">]>" + Document("'&e;' + \"&e;\""),
       R"(VT_BSTR Gr\u00FC\u00DFeGr\u00FC\u00DFe)"},
      {"<!DOCTYPE Scriptwell [<!ENTITY language \"JavaScript\">]>" + Document("5", "&language;"), "VT_INT 5"},
  });
}

// It is sent as a reference, so the file's content stays here; the service knows no such entity.
TEST_F(ScriptDocuments, EntityOfAnotherFileStaysHere) {
  files_.Write("secret.txt", "'secret'");
  const std::string outcome =
      RunText("<!DOCTYPE Scriptwell [<!ENTITY e SYSTEM \"secret.txt\">]>" + Document("&e;"));
  EXPECT_EQ(outcome.substr(0, 11), "0x800403EE ") << outcome;
  EXPECT_EQ(outcome.find("secret'"), std::string::npos) << outcome;
  EXPECT_EQ(ScriptsRun(), 0);
}

TEST_F(ScriptDocuments, ParametersGoWithADocument) {
  const IParametersPtr list = ParameterList({{u"a", Variant::FromInt(40)},
                                             {u"when", Variant::FromDate(45356.0)},
                                             {u"span", Variant::FromObject(CreateDuration(u"P1D").get())},
                                             {u"\u00E9", Variant::FromString(u"\u20AC")}});
  EXPECT_EQ(RunText(Document("parameters.a + 2"), list.get()), "VT_INT 42");
  EXPECT_EQ(RunText(Document("parameterTypes.when + ' ' + parameters.span + ' ' + parameters['\xC3\xA9']"),
                    list.get()),
            "VT_BSTR date P1D \\u20AC");
  EXPECT_EQ(RunText(Document("parameterList.length"), ParameterList({}).get()), "VT_INT 0");
}

TEST_F(ScriptDocuments, ExampleGreets) {
  const std::string example = EXAMPLES_FOLDER "/document.xml";
  EXPECT_EQ(RunFile(example), "VT_BSTR Gr\\u00FC\\u00DFe, W\\u00F6rld! You sent: nothing");
  EXPECT_EQ(RunFile(example, ParameterList({{u"who", Variant::FromString(u"Ad\u00E9")}}).get()),
            "VT_BSTR Gr\\u00FC\\u00DFe, Ad\\u00E9! You sent: <who>");
}

TEST_F(ScriptDocuments, NamesInEveryFormAreFound) {
  for (const char* file :
       {"my script.xml", "a b/100% %41.xml", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80.xml", "&<>\"'+=.xml"})
    ExpectFound(file, files_.Path(file));
  ExpectFound("deep/down/a.xml", files_.Path() + R"(\deep\down\a.xml)");
  ExpectFound("deep/down/a b.xml", "file:///" + files_.Path("deep/down/a b.xml"));
  ExpectFound("deep/down/a.xml", "file:///" + files_.Path() + "\\deep/down\\a.xml");
}

TEST_F(ScriptDocuments, BrokenFileSendsNothingAndTheSessionLivesOn) {
  const int before = Stats()["requests"].get<int>();
  for (const std::string& bytes :
       {std::string(), Document("a < b"), Document("&undefined;"), Document("1") + "<", Document("'\xFF'"),
        Document("1") + Document("2"), Document("\x01"), std::string("\0\0\0\0", 4)})
    EXPECT_EQ(RunText(bytes), kRefused) << bytes;
  EXPECT_EQ(RunFile(files_.Path("none.xml")), kRefused);
  EXPECT_EQ(RunFile(files_.Path()), kRefused);
  EXPECT_EQ(RunFile(""), "0x80020009 IsFileNameURL - File Name is missing.");
  EXPECT_EQ(Stats()["requests"].get<int>(), before + 1);
  EXPECT_EQ(RunText(Document("1")), "VT_INT 1");
  EXPECT_EQ(Run(u"2"), "VT_INT 2");
}

// What the file says is the service's to judge.
TEST_F(ScriptDocuments, DocumentThatIsNoScriptIsAFaultOfTheService) {
  ExpectTexts({{"<r/>", "0x800403EE "},
               {"<Scriptwell Language=\"JavaScript\"><Code>1</Code></Scriptwell>", "0x800403EE "},
               {Document("", "VBScript"),
                R"(0x800403EF The script language "VBScript" is not known; "JavaScript" is.)"}});
  EXPECT_EQ(ScriptsRun(), 0);
  ExpectTexts({{Document("throw new ScriptError(5, 'f\xC3\xBCnf')"), "0x80040005 f\\u00FCnf"},
               {Document(""), "0x80020009 The respone that arrived is not valid"}});
  EXPECT_EQ(Run(u"1"), "VT_INT 1");
}

TEST_F(ScriptDocuments, LargeDocumentsRun) {
  UseLargeService();
  const std::string text(5'000'000, 'x');
  ExpectTexts({
      {Document("'" + text + "\xC3\xA9'.length"), "VT_INT 5000001"},
      {Document("<![CDATA['" + text + "<&'.length]]>"), "VT_INT 5000002"},
      {Document("'" + Repeated("&lt;&amp;\xE2\x82\xAC", 100'000) + "'.length"), "VT_INT 300000"},
  });
}

TEST_F(ScriptDocuments, DeepDocumentIsAFaultAndTheSessionLivesOn) {
  ExpectTexts({{Document(DeepElements("1")), "0x800403EE "}, {Document("1"), "VT_INT 1"}});
}

TEST_F(ScriptDocuments, DeepDocumentIsSentWhole) {
  test::RawServer server;
  server.Expect(
      test::RawScript().Answer("<soap:Envelope><soap:Body><ExecuteResponse>"
                               "<r xsi:type=\"xsd:int\">7</r></ExecuteResponse></soap:Body>"
                               "</soap:Envelope>"));
  ASSERT_EQ(SetServer(FromUtf8(server.Url())), "ok");
  EXPECT_EQ(RunText(Document(DeepElements("bottom"))), "VT_INT 7");
  const std::string sent = server.AllReceived();
  EXPECT_EQ(CountOf("&lt;a&gt;", sent), kLevels);
  EXPECT_EQ(CountOf("&lt;a&gt;bottom&lt;/a&gt;", sent), 1);
  EXPECT_EQ(CountOf("&lt;/a&gt;", sent), kLevels);
  EXPECT_EQ(CountOf("&lt;/a&gt;&lt;/Code&gt;&lt;/Scriptwell&gt;\n\n</Script><parameters ", sent), 1);
}

}  // namespace
}  // namespace qv
