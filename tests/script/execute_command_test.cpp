#include "script/execute_command.h"

#include <gtest/gtest.h>

#include <memory>

#include "fixtures/formaters.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/xml_library_hold.h"
#include "script/execute_envelope.h"

namespace qv {
namespace {

constexpr char kRefused[] = "EQvException 0x00000000 Cannot create the xml document.";

class ExecuteCommand : public testing::Test {
 protected:
  void SetUp() override {
    EnsureFormaters();
    map_ = {{u"ContextHandle", Variant::FromString(u"u1")},
            {u"ScriptLanguage", Variant::FromString(u"VBScript")},
            {u"Script", Variant::FromString(u"a<b")}};
  }

  std::string Written() {
    WideTextStream stream;
    CExecuteCommand().Serialize(stream, u"ignored", u"ignored", u"ignored", map_);
    return Shown(WideString(stream.view()));
  }
  // The content of the "Script" element.
  std::string ScriptText(const WideString& language, const WideString& script) {
    map_[u"ScriptLanguage"] = Variant::FromString(language);
    map_[u"Script"] = Variant::FromString(script);
    const std::string start = "<Script xsi:type=\"xsd:string\">";
    const std::string text = Written();
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find("</Script>") - from);
  }

  NamedArguments map_;
};

std::string Document(const std::string& language, const std::string& script) {
  return "&lt;Scriptwell Language=&quot;" + language +
         "&quot; xmlns:xsi=&quot;http://www.w3.org/2001/XMLSchema-instance&quot; "
         "xsi:schemaLocation=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0 "
         "http://quorvane.example/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd&quot; "
         "xmlns=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0&quot;&gt;"
         "&lt;Code&gt;" +
         script + "&lt;/Code&gt;&lt;/Scriptwell&gt;";
}

TEST_F(ExecuteCommand, ScriptWithoutParametersGivesWholeEnvelopeAndClosingNull) {
  EXPECT_EQ(Written(),
            "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
            "<SOAP-ENV:Body>"
            "<Execute xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
            "<usid xsi:type=\"xsd:string\">u1</usid>"
            "<Script xsi:type=\"xsd:string\">"
            "&lt;Scriptwell Language=&quot;VBScript&quot; "
            "xmlns:xsi=&quot;http://www.w3.org/2001/XMLSchema-instance&quot; "
            "xsi:schemaLocation=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0 "
            "http://quorvane.example/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd&quot; "
            "xmlns=&quot;http://quorvane.example/dev/ns/scriptwellsApp/scriptwell/1.0&quot;&gt;"
            "&lt;Code&gt;a&amp;lt;b&lt;/Code&gt;&lt;/Scriptwell&gt;"
            "</Script>"
            "<parameters xsi:nil=\"true\" xsi:type=\"ns1:Parameter\" "
            "xmlns:ns1=\"http://quorvane.example/dev/ns/SOF/2.0\" "
            "xmlns:ns2=\"http://schemas.xmlsoap.org/soap/encoding/\" "
            "ns2:arrayType=\"ns1:Parameter[]\"/>"
            "</Execute></SOAP-ENV:Body></SOAP-ENV:Envelope>\\u0000");
}

TEST_F(ExecuteCommand, ContextHandleIsEscapedOnce) {
  map_[u"ContextHandle"] = Variant::FromString(u"a&\u00E9\"");
  EXPECT_NE(Written().find("<usid xsi:type=\"xsd:string\">a&amp;&#233;&quot;</usid>"), std::string::npos);
}

TEST_F(ExecuteCommand, NullContextHandleKeepsBothTags) {
  map_[u"ContextHandle"] = Variant::FromString(WideString());
  EXPECT_NE(Written().find("<usid xsi:type=\"xsd:string\"></usid>"), std::string::npos);
}

TEST_F(ExecuteCommand, ScriptIsEscapedTwice) {
  EXPECT_EQ(ScriptText(u"VBScript", u"\"&'<>"),
            Document("VBScript", "&amp;quot;&amp;amp;&amp;apos;&amp;lt;&amp;gt;"));
  EXPECT_EQ(ScriptText(u"VBScript", u"\u00E9\x7F\U0001F600"),
            Document("VBScript", "&amp;#233;&amp;#127;&amp;#55357;&amp;#56832;"));
}

TEST_F(ExecuteCommand, ScriptKeepsItsLineFeedsAndControlCharacters) {
  EXPECT_EQ(ScriptText(u"VBScript", u"a\n\tb\x01"), Document("VBScript", "a\\u000A\\u0009b\\u0001"));
}

TEST_F(ExecuteCommand, LanguageIsEscapedOnce) {
  EXPECT_EQ(ScriptText(u"V\"<&'>", u"x"), Document("V&quot;&lt;&amp;&apos;&gt;", "x"));
  EXPECT_EQ(ScriptText(u"\u00E9", u"x"), Document("&#233;", "x"));
}

TEST_F(ExecuteCommand, ScriptEndsAtItsFirstNull) {
  EXPECT_EQ(ScriptText(u"VBScript", WideString(std::u16string_view(u"a\0b", 3))), Document("VBScript", "a"));
}

// The language stands in the document as it is, and the escape of the whole ends at a null.
TEST_F(ExecuteCommand, NullInTheLanguageEndsTheDocument) {
  EXPECT_EQ(ScriptText(WideString(std::u16string_view(u"VB\0x", 4)), u"1"),
            "&lt;Scriptwell Language=&quot;VB");
}

TEST_F(ExecuteCommand, EmptyScriptAndLanguageAreSent) {
  EXPECT_EQ(ScriptText(u"VBScript", u""), Document("VBScript", ""));
  EXPECT_EQ(ScriptText(u"", u"x"), Document("", "x"));
}

TEST_F(ExecuteCommand, NullScriptAndLanguageAreSentEmpty) {
  EXPECT_EQ(ScriptText(WideString(), WideString()), Document("", ""));
}

TEST_F(ExecuteCommand, ValuesThatAreNoTextsAreEmpty) {
  map_[u"ContextHandle"] = Variant::FromInt(1);
  map_[u"ScriptLanguage"] = Variant::FromInt(1);
  map_[u"Script"] = Variant::FromObject(nullptr);
  const std::string text = Written();
  EXPECT_NE(text.find("<usid xsi:type=\"xsd:string\"></usid>"), std::string::npos);
  EXPECT_NE(text.find(Document("", "")), std::string::npos);
}

TEST_F(ExecuteCommand, LongScriptIsWrittenWhole) {
  std::string escaped;
  for (int i = 0; i < 100000; ++i) escaped += "&amp;amp;";
  EXPECT_EQ(ScriptText(u"VBScript", std::u16string(100000, u'&')), Document("VBScript", escaped));
}

TEST_F(ExecuteCommand, MissingKeysAreRefused) {
  for (const char16_t* key : {u"ContextHandle", u"ScriptLanguage", u"Script"}) {
    const NamedArguments whole = map_;
    map_.erase(key);
    EXPECT_EQ(Thrown([this] { Written(); }), kRefused) << Shown(key);
    map_ = whole;
  }
}

// The key alone decides, and script and language are not looked at.
TEST_F(ExecuteCommand, ScriptFileTakesThePlaceOfScriptAndLanguage) {
  const XmlLibraryHold library;
  map_[u"ScriptFile"] = Variant::FromString(u"/nowhere/script.xml");
  EXPECT_EQ(Thrown([this] { Written(); }), kRefused);
  map_[u"ScriptFile"] = Variant::FromString(WideString());
  EXPECT_EQ(Thrown([this] { Written(); }), "EQvException 0x00000000 IsFileNameURL - File Name is missing.");
}

TEST_F(ExecuteCommand, SameValuesGiveSameTextAgain) {
  EXPECT_EQ(Written(), Written());
}

TEST_F(ExecuteCommand, CloneIsAnotherCommandOfTheSameClass) {
  const CExecuteCommand command;
  const std::unique_ptr<CQvCommand> clone(command.clone());
  ASSERT_NE(dynamic_cast<CExecuteCommand*>(clone.get()), nullptr);
  EXPECT_NE(clone.get(), &command);
}

TEST_F(ExecuteCommand, NewExecuteCommandMakesThisClass) {
  const std::unique_ptr<CQvCommand> command(NewExecuteCommand());
  EXPECT_NE(dynamic_cast<CExecuteCommand*>(command.get()), nullptr);
}

TEST_F(ExecuteCommand, FormatValueTakesTheFormaterOfTheName) {
  EXPECT_EQ(Shown(CExecuteCommand::FormatValue(u"int", Variant::FromInt(-5))), "-5");
  EXPECT_EQ(Shown(CExecuteCommand::FormatValue(u"XSD:Int", Variant::FromInt(-5))), "-5");
  EXPECT_EQ(Shown(CExecuteCommand::FormatValue(u"boolean", Variant::FromBool(true))), "1");
  EXPECT_EQ(Shown(CExecuteCommand::FormatValue(u"string", Variant::FromString(u"a<b"))), "a&lt;b");
  EXPECT_EQ(Shown(CExecuteCommand::FormatValue(u"lang", Variant::FromString(u"a<b"))), "a&lt;b");
}

TEST_F(ExecuteCommand, FormatValueOfAnotherTagIsEmptyText) {
  EXPECT_EQ(Shown(CExecuteCommand::FormatValue(u"string", Variant::FromInt(5))), "");
}

TEST_F(ExecuteCommand, FormatValueWithoutFormaterIsNull) {
  EXPECT_TRUE(CExecuteCommand::FormatValue(u"xsd:float", Variant::FromFloat(1)).IsNull());
  EXPECT_TRUE(CExecuteCommand::FormatValue(u"no type", Variant()).IsNull());
  EXPECT_TRUE(CExecuteCommand::FormatValue(u"", Variant()).IsNull());
  EXPECT_TRUE(CExecuteCommand::FormatValue(WideString(), Variant()).IsNull());
}

TEST_F(ExecuteCommand, FormatValueThatCannotBeConvertedIsRefused) {
  EXPECT_EQ(Thrown([] { CExecuteCommand::FormatValue(u"byte", Variant::FromString(u"abc")); }), kRefused);
}

}  // namespace
}  // namespace qv
