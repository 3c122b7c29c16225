// Reading of script documents: those made around a script, and renderings of files.
#include "devservice/soap/script_document.h"

#include "devservice/values/fault_codes.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

// The script in a document, or the code of the fault.
std::string Read(const std::string& document) {
  try {
    return ReadScriptDocument(document, Namespaces("http://quorvane.example"));
  } catch (const FaultError& error) {
    return std::to_string(error.Code());
  }
}

std::string Document(const std::string& content, const std::string& language = "JavaScript") {
  return "<Scriptwell Language=\"" + language +
         R"(" xmlns="http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0">)" + content +
         "</Scriptwell>";
}

std::string Code(const std::string& code) {
  return Document("<Code>" + code + "</Code>");
}

TEST(ScriptDocument, CodeIsText) {
  EXPECT_EQ(Read(Code("a&lt;b\n")), "a<b\n");
  EXPECT_EQ(Read("<?xml version='1.0'?><!-- c -->\n" +
                 Document("\n <!-- & -->\n<Code>a<![CDATA[ && <b>]]></Code>\n")),
            "a && <b>");
  EXPECT_EQ(Read(Code("")), "");
  EXPECT_EQ(Read("<?style a=\"&none;\"?>\n<!-- & -->\n" +
                 Document("\n<Code>1<!-- not & this --> + <?nor this?>1</Code>\n<!-- c -->") +
                 "\n<!-- end -->\n\n"),
            "1 + 1");
  // The document has been decoded already.
  EXPECT_EQ(Read("<?xml version='1.0' encoding='iso-8859-1'?>" + Code("\xC3\xA9")), "\xC3\xA9");
  EXPECT_EQ(Read("\xEF\xBB\xBF" + Code("1")), "1");
}

TEST(ScriptDocument, OtherDocumentsAreRefused) {
  EXPECT_EQ(Read(Document("<Code>1</Code>", "JAVAscript")), "1");
  EXPECT_EQ(Read(Document("<Code>1</Code>", "VBScript")), "1007");
  EXPECT_EQ(Read(Document("<Code>1</Code>", "")), "1007");
  for (const std::string& text :
       {std::string(), std::string("1 + 1"),
        std::string("<Scriptwell Language='JavaScript'><Code/></Scriptwell>"),
        Document("<Code>1</Code>", "Java\"Script"), Document(""), Document("<Code/><Code/>"),
        Document("<Kode/>"), Document("<Code><b/></Code>"), Document("1<Code/>")})
    EXPECT_EQ(Read(text), "1006") << text;
}

TEST(ScriptDocument, DocumentTypeIsSkipped) {
  for (const char* type :
       {"<!DOCTYPE Scriptwell>", "<!DOCTYPE Scriptwell SYSTEM \"a>b[.dtd\">", "<!DOCTYPE []>", "<!DOCTYPE >",
        R"(<!DOCTYPE  PUBLIC "-//p" "s"[<!-- ]> ' -->]>)",
        "<!DOCTYPE Scriptwell [<!ELEMENT Code (#PCDATA)><!ATTLIST Code x CDATA \"]>\"><?pi ]>?>] >"})
    EXPECT_EQ(Read(type + ("\n" + Code("1"))), "1") << type;
  for (const char* broken : {"<!DOCTYPE", "<!DOCTYPE s [", "<!DOCTYPE s [<!ENTITY e 'x", "<!DOCTYPE s []",
                             "<!DOCTYPE s><!DOCTYPE s>", "<!DOCTYPE s [<!-- ]>"})
    EXPECT_EQ(Read(broken + Code("1")), "1006") << broken;
}

TEST(ScriptDocument, PlainEntitiesAreResolved) {
  // Clients leave out the name of the document type.
  const std::string type =
      "<!-- c -->\n<!DOCTYPE [<!ENTITY who \"W\xC3\xB6rld\">\n<!ENTITY  q  'say \"&lt;b&gt;\" &#65;' >"
      "<!ENTITY who \"second\"><!ENTITY % part \"x\">]>\n";
  EXPECT_EQ(Read(type + Code("'&who;'")), "'W\xC3\xB6rld'");
  EXPECT_EQ(Read(type + Code("&q;&amp;who;")), "say \"<b>\" A&who;");
  EXPECT_EQ(Read(type + Document("<!-- &none; --><Code><![CDATA[&who;]]></Code>")), "&who;");
  EXPECT_EQ(Read("<!DOCTYPE s [<!ENTITY l \"Java\">]>" + Document("<Code>1</Code>", "&l;Script")), "1");
  for (const std::string entity :
       {"", "<!ENTITY e SYSTEM \"file:///etc/passwd\">", "<!ENTITY e \"<b/>\">", "<!ENTITY e \"&#38;#60;\">",
        "<!ENTITY e \"&#0060;b/>\">", "<!ENTITY e \"&#x003c;b/>\">", R"(<!ENTITY a "x"><!ENTITY e "&a;">)",
        "<!ENTITY e \"&e;\">", "<!ENTITY % e \"x\">", "<!ENTITY e \"x>", "<!ENTITY e>", "<!ENTITY"})
    EXPECT_EQ(Read("<!DOCTYPE s [" + entity + "]>" + Code("&e;")), "1006") << entity;
}

TEST(ScriptDocument, EntitiesDoNotBlowUp) {
  const std::string type = "<!DOCTYPE s [<!ENTITY e \"" + std::string(10000, 'x') + "\">]>";
  std::string references;
  for (int i = 0; i < 100; ++i) references += "&e;";
  EXPECT_EQ(Read(type + Code(references)).size(), 1000000U);
  EXPECT_EQ(Read(type + Code(references + references)), "1006");
}

TEST(ScriptDocument, BytesOfARenderingAreJoined) {
  // U+00C3 U+00A9 are the two bytes of U+00E9, and U+00F0 U+009F U+0098 U+0080 the four of U+1F600.
  const std::string bytes = Code("'\xC3\x83\xC2\xA9 \xC3\xB0\xC2\x9F\xC2\x98\xC2\x80'");
  EXPECT_EQ(Read(bytes + "\n\n"), "'\xC3\xA9 \xF0\x9F\x98\x80'");
  EXPECT_EQ(Read(bytes + "\n<!-- c -->\n\n"), "'\xC3\xA9 \xF0\x9F\x98\x80'");
  EXPECT_EQ(Read("<!DOCTYPE [<!ENTITY e \"\xC3\x83\xC2\xA9\">]>\n" + Code("&e;") + "\n\n"), "\xC3\xA9");
  // Not a rendering: no two line feeds, a lone U+00E9, a character beyond U+00FF.
  EXPECT_EQ(Read(Code("\xC3\x83\xC2\xA9")), "\xC3\x83\xC2\xA9");
  EXPECT_EQ(Read(Code("\xC3\x83\xC2\xA9") + "\n"), "\xC3\x83\xC2\xA9");
  EXPECT_EQ(Read(Code("\xC3\xA9") + "\n\n"), "\xC3\xA9");
  EXPECT_EQ(Read(Code("\xC3\x83\xC2\xA9 \xE2\x82\xAC") + "\n\n"), "\xC3\x83\xC2\xA9 \xE2\x82\xAC");
  EXPECT_EQ(Read(Code("1") + "\n\n"), "1");
}

using ScriptDocumentRun = ServiceTest;

// The request carries the document with the references that clients write.
TEST_F(ScriptDocumentRun, RenderedFileAndScriptTextGiveTheSameCharacters) {
  const auto run = [this](const std::string& code, const std::string& before = "",
                          const std::string& after = "") {
    const std::string document =
        before + Replaced(Escape(Code("@")), "@", "&apos;" + code + "&apos;") + after;
    return ValueIn(Post("", "Execute", DocumentEnvelope(Session(), document, NilParameters())).body);
  };
  EXPECT_EQ(run("&#195;&#169;", "", "\n\n"), "xsd:string|\xC3\xA9");
  EXPECT_EQ(run("&amp;e;", "&lt;!DOCTYPE [&lt;!ENTITY e &quot;&#195;&#169;&quot;&gt;]&gt;\n", "\n\n"),
            "xsd:string|\xC3\xA9");
  EXPECT_EQ(run("&amp;#233;"), "xsd:string|\xC3\xA9");
  EXPECT_EQ(run("&amp;#195;&amp;#169;"), "xsd:string|\xC3\x83\xC2\xA9");
}

}  // namespace
}  // namespace qv::devservice::testing
