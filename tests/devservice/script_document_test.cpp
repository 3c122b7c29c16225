#include "devservice/soap/script_document.h"

#include "devservice/values/fault_codes.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

const Namespaces& Spaces() {
  static const Namespaces spaces("http://quorvane.example");
  return spaces;
}

std::string Read(const std::string& document) {
  return ReadScriptDocument(document, Spaces());
}

int ScriptCode(const std::string& document) {
  try {
    Read(document);
    return 0;
  } catch (const FaultError& error) {
    return error.Code();
  }
}

std::string Document(const std::string& language, const std::string& content) {
  return "<Scriptwell Language=\"" + language +
         "\" xmlns=\"http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0\">" + content +
         "</Scriptwell>";
}

TEST(ScriptDocument, CodeIsTakenFromTextAndCdata) {
  EXPECT_EQ(ReadScriptDocument(Document("JavaScript", "<Code>a&lt;b\n</Code>"), Spaces()), "a<b\n");
  EXPECT_EQ(
      ReadScriptDocument("<?xml version='1.0'?><!-- c -->\n" +
                             Document("JavaScript", "\n <!-- & -->\n<Code>a<![CDATA[ && <b>]]></Code>\n"),
                         Spaces()),
      "a && <b>");
  EXPECT_EQ(ReadScriptDocument(Document("JavaScript", "<Code></Code>"), Spaces()), "");
}

TEST(ScriptDocument, LanguageIgnoresCaseAndNothingElse) {
  EXPECT_EQ(ScriptCode(Document("JAVAscript", "<Code>1</Code>")), 0);
  EXPECT_EQ(ScriptCode(Document("VBScript", "<Code>1</Code>")), 1007);
  EXPECT_EQ(ScriptCode(Document("", "<Code>1</Code>")), 1007);
  EXPECT_EQ(ScriptCode(Document("Java\"Script", "<Code>1</Code>")), 1006);
}

TEST(ScriptDocument, OtherDocumentsAreRefused) {
  for (const std::string& text :
       {std::string(), std::string("1 + 1"),
        std::string("<Scriptwell Language='JavaScript'><Code/></Scriptwell>"), Document("JavaScript", ""),
        Document("JavaScript", "<Code/><Code/>"), Document("JavaScript", "<Kode/>"),
        Document("JavaScript", "<Code><b/></Code>"), Document("JavaScript", "1<Code/>")}) {
    EXPECT_EQ(ScriptCode(text), 1006) << text;
  }
}

TEST(ScriptDocument, CommentsAndInstructionsDoNotCount) {
  EXPECT_EQ(Read("<?style a=\"&none;\"?>\n<!-- & -->\n" +
                 Document("JavaScript", "\n<Code>1<!-- not & this --> + <?nor this?>1</Code>\n<!-- c -->") +
                 "\n<!-- end -->\n\n"),
            "1 + 1");
}

TEST(ScriptDocument, DeclaredEncodingIsOfThePast) {
  EXPECT_EQ(
      Read("<?xml version='1.0' encoding='iso-8859-1'?>" + Document("JavaScript", "<Code>\xC3\xA9</Code>")),
      "\xC3\xA9");
  EXPECT_EQ(Read("\xEF\xBB\xBF" + Document("JavaScript", "<Code>1</Code>")), "1");
}

TEST(ScriptDocument, DocumentTypeIsPassedOver) {
  const std::string root = Document("JavaScript", "<Code>1</Code>");
  for (const char* type :
       {"<!DOCTYPE Scriptwell>", "<!DOCTYPE Scriptwell SYSTEM \"a>b[.dtd\">", "<!DOCTYPE []>", "<!DOCTYPE >",
        "<!DOCTYPE  PUBLIC \"-//p\" \"s\"[<!-- ]> ' -->]>",
        "<!DOCTYPE Scriptwell [<!ELEMENT Code (#PCDATA)><!ATTLIST Code x CDATA \"]>\"><?pi ]>?>] >"}) {
    EXPECT_EQ(Read(type + ("\n" + root)), "1") << type;
  }
}

TEST(ScriptDocument, PlainEntitiesAreResolved) {
  // Clients leave the name of the document type out.
  const std::string type =
      "<!-- c -->\n<!DOCTYPE [<!ENTITY who \"W\xC3\xB6rld\">\n<!ENTITY  q  'say \"&lt;b&gt;\" &#65;' >"
      "<!ENTITY who \"second\"><!ENTITY % part \"x\">]>\n";
  EXPECT_EQ(Read(type + Document("JavaScript", "<Code>'&who;'</Code>")), "'W\xC3\xB6rld'");
  EXPECT_EQ(Read(type + Document("JavaScript", "<Code>&q;&amp;who;</Code>")), "say \"<b>\" A&who;");
  EXPECT_EQ(Read(type + Document("JavaScript", "<!-- &none; --><Code><![CDATA[&who;]]></Code>")), "&who;");
  EXPECT_EQ(Read("<!DOCTYPE s [<!ENTITY l \"Java\">]>" + Document("&l;Script", "<Code>1</Code>")), "1");
}

TEST(ScriptDocument, OtherEntitiesAreRefused) {
  for (const char* entity :
       {"", "<!ENTITY e SYSTEM \"file:///etc/passwd\">", "<!ENTITY e \"<b/>\">", "<!ENTITY e \"&#38;#60;\">",
        "<!ENTITY e \"&#0060;b/>\">", "<!ENTITY e \"&#x003c;b/>\">", "<!ENTITY a \"x\"><!ENTITY e \"&a;\">",
        "<!ENTITY e \"&e;\">", "<!ENTITY % e \"x\">", "<!ENTITY e \"x>", "<!ENTITY e>", "<!ENTITY"}) {
    EXPECT_EQ(
        ScriptCode("<!DOCTYPE s [" + std::string(entity) + "]>" + Document("JavaScript", "<Code>&e;</Code>")),
        1006)
        << entity;
  }
  for (const char* type : {"<!DOCTYPE", "<!DOCTYPE s [", "<!DOCTYPE s [<!ENTITY e 'x", "<!DOCTYPE s []",
                           "<!DOCTYPE s><!DOCTYPE s>", "<!DOCTYPE s [<!-- ]>"}) {
    EXPECT_EQ(ScriptCode(type + Document("JavaScript", "<Code>1</Code>")), 1006) << type;
  }
}

TEST(ScriptDocument, EntitiesDoNotBlowUp) {
  const std::string type = "<!DOCTYPE s [<!ENTITY e \"" + std::string(10000, 'x') + "\">]>";
  std::string references;
  for (int i = 0; i < 100; ++i) references += "&e;";
  EXPECT_EQ(Read(type + Document("JavaScript", "<Code>" + references + "</Code>")).size(), 1000000u);
  EXPECT_EQ(ScriptCode(type + Document("JavaScript", "<Code>" + references + references + "</Code>")), 1006);
}

TEST(ScriptDocument, BytesOfARenderingAreJoined) {
  // U+00C3 U+00A9 are the two bytes of U+00E9, and U+00F0 U+009F U+0098 U+0080 the four of U+1F600.
  const std::string bytes =
      Document("JavaScript", "<Code>'\xC3\x83\xC2\xA9 \xC3\xB0\xC2\x9F\xC2\x98\xC2\x80'</Code>");
  EXPECT_EQ(Read(bytes + "\n\n"), "'\xC3\xA9 \xF0\x9F\x98\x80'");
  EXPECT_EQ(Read(bytes + "\n<!-- c -->\n\n"), "'\xC3\xA9 \xF0\x9F\x98\x80'");
  EXPECT_EQ(Read("<!DOCTYPE [<!ENTITY e \"\xC3\x83\xC2\xA9\">]>\n" +
                 Document("JavaScript", "<Code>&e;</Code>") + "\n\n"),
            "\xC3\xA9");
}

TEST(ScriptDocument, OtherTextsKeepTheirCharacters) {
  const std::string ambiguous = Document("JavaScript", "<Code>\xC3\x83\xC2\xA9</Code>");
  EXPECT_EQ(Read(ambiguous), "\xC3\x83\xC2\xA9");
  EXPECT_EQ(Read(ambiguous + "\n"), "\xC3\x83\xC2\xA9");
  // A lone U+00E9 is no UTF-8, a character beyond U+00FF no byte.
  EXPECT_EQ(Read(Document("JavaScript", "<Code>\xC3\xA9</Code>") + "\n\n"), "\xC3\xA9");
  EXPECT_EQ(Read(Document("JavaScript", "<Code>\xC3\x83\xC2\xA9 \xE2\x82\xAC</Code>") + "\n\n"),
            "\xC3\x83\xC2\xA9 \xE2\x82\xAC");
  EXPECT_EQ(Read(Document("JavaScript", "<Code>1</Code>") + "\n\n"), "1");
}

class ScriptDocumentRun : public ServiceTest {
 protected:
  // Runs a whole script document, which the request carries with the references that clients write.
  std::string Run(const std::string& escapedDocument) {
    if (!service_) StartWith(TestOptions());
    std::string envelope = ExecuteEnvelope(Login(), "", NilParameters());
    const std::size_t start = envelope.find("&lt;Scriptwell");
    envelope.replace(start, envelope.find("</Script>") - start, escapedDocument);
    return ValueIn(Post("", "Execute", envelope).body);
  }
};

TEST_F(ScriptDocumentRun, RenderedFileAndScriptTextGiveTheSameCharacters) {
  const std::string head =
      "&lt;Scriptwell Language=&quot;JavaScript&quot; "
      "xmlns=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0&quot;&gt;&lt;Code&gt;";
  const std::string tail = "&lt;/Code&gt;&lt;/Scriptwell&gt;";
  EXPECT_EQ(Run(head + "&apos;&#195;&#169;&apos;" + tail + "\n\n"), "xsd:string|\xC3\xA9");
  EXPECT_EQ(Run("&lt;!DOCTYPE [&lt;!ENTITY e &quot;&#195;&#169;&quot;&gt;]&gt;\n" + head +
                "&apos;&amp;e;&apos;" + tail + "\n\n"),
            "xsd:string|\xC3\xA9");
  EXPECT_EQ(Run(head + "&apos;&amp;#233;&apos;" + tail), "xsd:string|\xC3\xA9");
  EXPECT_EQ(Run(head + "&apos;&amp;#195;&amp;#169;&apos;" + tail), "xsd:string|\xC3\x83\xC2\xA9");
}

}  // namespace
}  // namespace qv::devservice::testing
