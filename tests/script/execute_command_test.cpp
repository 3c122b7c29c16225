// The request of a script: its envelope, its script document, and the text of a value.
#include "script/execute_command.h"

#include <memory>

#include "qvscriptwells/xml_library_hold.h"
#include "script/call_fixture.h"

namespace qv {
namespace {

class ExecuteCommand : public CallFixture {
 protected:
  ExecuteCommand() { PutScript(); }

  std::string Written() {
    WideTextStream stream;
    CExecuteCommand().Serialize(stream, u"ignored", u"ignored", u"ignored", map_);
    return Shown(WideString(stream.view()));
  }
  // The "usid" element of the session under this value.
  bool HasUsid(const Variant& handle, const std::string& text) {
    map_[u"ContextHandle"] = handle;
    return Written().find("<usid xsi:type=\"xsd:string\">" + text + "</usid>") != std::string::npos;
  }
  // The content of the "Script" element.
  std::string ScriptText(const Variant& language, const Variant& script) {
    map_[u"ScriptLanguage"] = language;
    map_[u"Script"] = script;
    const std::string start = "<Script xsi:type=\"xsd:string\">";
    const std::string text = Written();
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find("</Script>") - from);
  }
};

TEST_F(ExecuteCommand, ScriptWithoutParametersGivesWholeEnvelopeAndClosingNull) {
  EXPECT_EQ(Written(), RequestWith(kNoParameters) + "\\u0000");
  EXPECT_EQ(Written(), Written());
}

TEST_F(ExecuteCommand, ContextHandleIsEscapedOnceAndKeepsBothTags) {
  EXPECT_TRUE(HasUsid(Text(u"a&\u00E9\""), "a&amp;&#233;&quot;"));
  EXPECT_TRUE(HasUsid(NullText(), ""));
  EXPECT_TRUE(HasUsid(Int(1), ""));
}

TEST_F(ExecuteCommand, ScriptIsEscapedTwiceAndItsLanguageOnce) {
  const struct {
    const char* name;
    Variant language;
    Variant script;
    const char* writtenLanguage;
    const char* writtenScript;
  } rows[] = {
      {"markup", Text(u"VBScript"), Text(u"\"&'<>"), "VBScript",
       "&amp;quot;&amp;amp;&amp;apos;&amp;lt;&amp;gt;"},
      {"beyond ASCII", Text(u"VBScript"), Text(u"\u00E9\x7F\U0001F600"), "VBScript",
       "&amp;#233;&amp;#127;&amp;#55357;&amp;#56832;"},
      {"control characters", Text(u"VBScript"), Text(u"a\n\tb\x01"), "VBScript", R"(a\u000A\u0009b\u0001)"},
      {"null unit", Text(u"VBScript"), Text(std::u16string_view(u"a\0b", 3)), "VBScript", "a"},
      {"empty script", Text(u"VBScript"), Text(u""), "VBScript", ""},
      {"markup in the language", Text(u"V\"<&'>"), Text(u"x"), "V&quot;&lt;&amp;&apos;&gt;", "x"},
      {"language beyond ASCII", Text(u"\u00E9"), Text(u"x"), "&#233;", "x"},
      {"empty language", Text(u""), Text(u"x"), "", "x"},
      {"null texts", NullText(), NullText(), "", ""},
      {"other values", Int(1), Variant::FromObject(nullptr), "", ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(ScriptText(row.language, row.script), ScriptDocument(row.writtenLanguage, row.writtenScript))
        << row.name;
}

TEST_F(ExecuteCommand, LongScriptIsWrittenWhole) {
  std::string escaped;
  for (int i = 0; i < 100000; ++i) escaped += "&amp;amp;";
  EXPECT_EQ(ScriptText(Text(u"VBScript"), Text(std::u16string(100000, u'&'))),
            ScriptDocument("VBScript", escaped));
}

// The language is in the document as it is, and the escape of the whole ends at a null unit.
TEST_F(ExecuteCommand, NullInTheLanguageEndsTheDocument) {
  EXPECT_EQ(ScriptText(Text(std::u16string_view(u"VB\0x", 4)), Text(u"1")),
            "&lt;Scriptwell Language=&quot;VB");
}

TEST_F(ExecuteCommand, MissingKeysAreRefused) {
  for (const char16_t* key : {u"ContextHandle", u"ScriptLanguage", u"Script"}) {
    const NamedArguments whole = map_;
    map_.erase(key);
    EXPECT_EQ(Thrown([this] { Written(); }), kNoDocument) << Shown(key);
    map_ = whole;
  }
}

// The key alone decides, and script and language are not looked at.
TEST_F(ExecuteCommand, ScriptFileTakesThePlaceOfScriptAndLanguage) {
  const XmlLibraryHold library;
  map_[u"ScriptFile"] = Text(u"/nowhere/script.xml");
  EXPECT_EQ(Thrown([this] { Written(); }), kNoDocument);
  map_[u"ScriptFile"] = NullText();
  EXPECT_EQ(Thrown([this] { Written(); }), kNoFileName);
}

TEST_F(ExecuteCommand, NewCommandAndCloneAreOfThisClass) {
  const CExecuteCommand command;
  const std::unique_ptr<CQvCommand> clone(command.clone());
  ASSERT_NE(dynamic_cast<CExecuteCommand*>(clone.get()), nullptr);
  EXPECT_NE(clone.get(), &command);
  const std::unique_ptr<CQvCommand> made(NewExecuteCommand());
  EXPECT_NE(dynamic_cast<CExecuteCommand*>(made.get()), nullptr);
}

TEST_F(ExecuteCommand, FormatValueTakesTheFormaterOfTheName) {
  const struct {
    WideString typeName;
    Variant value;
    const char* text;
  } rows[] = {{u"int", Int(-5), "-5"},           {u"XSD:Int", Int(-5), "-5"},
              {u"boolean", Bool(true), "1"},     {u"string", Text(u"a<b"), "a&lt;b"},
              {u"lang", Text(u"a<b"), "a&lt;b"}, {u"string", Int(5), ""},  // another tag
              {u"xsd:float", R4(1), "<null>"},   {u"no type", Variant(), "<null>"},
              {u"", Variant(), "<null>"},        {WideString(), Variant(), "<null>"}};
  for (const auto& row : rows)
    EXPECT_EQ(Shown(CExecuteCommand::FormatValue(row.typeName, row.value)), row.text) << Shown(row.typeName);
  EXPECT_EQ(Thrown([] { CExecuteCommand::FormatValue(u"byte", Text(u"abc")); }), kNoDocument);
}

}  // namespace
}  // namespace qv
