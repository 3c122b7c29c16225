#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "soap/qv_command.h"

namespace qv {
namespace {

constexpr char kCreateHead[] =
    "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
    "<SOAP-ENV:Body>"
    "<CreateUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
    "<ConnectionString xsi:type=\"xsd:string\">";
constexpr char kCreateTail[] =
    "</ConnectionString></CreateUserSession></SOAP-ENV:Body></SOAP-ENV:Envelope>\\u0000";

std::string Written(CQvCommand& command, const NamedArguments& map) {
  WideTextStream stream;
  command.Serialize(stream, u"ignored", u"ignored", u"ignored", map);
  return Shown(WideString(stream.view()));
}

std::string CreateEnvelope(const Variant& connectionString) {
  CCreateSessionCommand command;
  return Written(command, {{u"ConnectionString", connectionString}});
}

std::string ReleaseEnvelope(const Variant& contextHandle) {
  CReleaseSessionCommand command;
  return Written(command, {{u"ContextHandle", contextHandle}});
}

Variant Text(const WideString& text) {
  return Variant::FromString(text);
}

TEST(CreateSessionCommand, TextGivesWholeEnvelopeAndClosingNull) {
  EXPECT_EQ(CreateEnvelope(Text(u"a")),
            "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
            "<SOAP-ENV:Body>"
            "<CreateUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
            "<ConnectionString xsi:type=\"xsd:string\">a</ConnectionString>"
            "</CreateUserSession></SOAP-ENV:Body></SOAP-ENV:Envelope>\\u0000");
}

TEST(CreateSessionCommand, AmpersandIsEscapedAndSemicolonIsNot) {
  EXPECT_EQ(CreateEnvelope(Text(u"Username=a&b;")),
            std::string(kCreateHead) + "Username=a&amp;b;" + kCreateTail);
}

TEST(CreateSessionCommand, FiveXmlCharactersAreEscaped) {
  EXPECT_EQ(CreateEnvelope(Text(u"\"&'<>")),
            std::string(kCreateHead) + "&quot;&amp;&apos;&lt;&gt;" + kCreateTail);
}

TEST(CreateSessionCommand, UnitsFrom7FAreDecimalReferencesOneForEachUnit) {
  EXPECT_EQ(CreateEnvelope(Text(u"~\x7F\u00E9\U0001F600")),
            std::string(kCreateHead) + "~&#127;&#233;&#55357;&#56832;" + kCreateTail);
}

TEST(CreateSessionCommand, ControlCharactersStay) {
  EXPECT_EQ(CreateEnvelope(Text(u"\x01\n")), std::string(kCreateHead) + "\\u0001\\u000A" + kCreateTail);
}

TEST(CreateSessionCommand, TextEndsAtItsFirstNull) {
  EXPECT_EQ(CreateEnvelope(Text(std::u16string_view(u"a\0b", 3))),
            std::string(kCreateHead) + "a" + kCreateTail);
}

TEST(CreateSessionCommand, EmptyTextKeepsBothTags) {
  EXPECT_EQ(CreateEnvelope(Text(u"")), std::string(kCreateHead) + kCreateTail);
}

TEST(CreateSessionCommand, NullTextKeepsBothTags) {
  EXPECT_EQ(CreateEnvelope(Text(WideString())), std::string(kCreateHead) + kCreateTail);
}

TEST(CreateSessionCommand, ValueThatIsNoTextIsEmpty) {
  EXPECT_EQ(CreateEnvelope(Variant::FromInt(5)), std::string(kCreateHead) + kCreateTail);
}

TEST(CreateSessionCommand, SameValueGivesSameTextAgain) {
  EXPECT_EQ(CreateEnvelope(Text(u"Username=u;")), CreateEnvelope(Text(u"Username=u;")));
}

TEST(CreateSessionCommand, EnvelopeIsAppendedToWhatStandsInTheStream) {
  WideTextStream stream;
  stream.Append(u"before");
  CCreateSessionCommand().Serialize(stream, u"", u"", u"", {{u"ConnectionString", Text(u"a")}});
  EXPECT_EQ(Shown(stream.TakeText()).substr(0, 25), "before<SOAP-ENV:Envelope ");
}

TEST(CreateSessionCommand, MissingKeyThrowsOutOfRange) {
  CCreateSessionCommand command;
  WideTextStream stream;
  EXPECT_THROW(command.Serialize(stream, u"", u"", u"", {}), std::out_of_range);
}

TEST(CreateSessionCommand, CloneIsAnotherCommandOfTheSameClass) {
  const CCreateSessionCommand command;
  const std::unique_ptr<CQvCommand> clone(command.clone());
  ASSERT_NE(dynamic_cast<CCreateSessionCommand*>(clone.get()), nullptr);
  EXPECT_NE(clone.get(), &command);
}

TEST(ReleaseSessionCommand, ContextHandleTravelsAsUsid) {
  EXPECT_EQ(ReleaseEnvelope(Text(u"s&1")),
            "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
            "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
            "<SOAP-ENV:Body>"
            "<CloseUserSession xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
            "<usid xsi:type=\"xsd:string\">s&amp;1</usid>"
            "</CloseUserSession></SOAP-ENV:Body></SOAP-ENV:Envelope>\\u0000");
}

TEST(ReleaseSessionCommand, EmptyHandleKeepsBothTags) {
  EXPECT_NE(ReleaseEnvelope(Text(u"")).find("<usid xsi:type=\"xsd:string\"></usid>"), std::string::npos);
}

TEST(ReleaseSessionCommand, MissingKeyThrowsOutOfRange) {
  CReleaseSessionCommand command;
  WideTextStream stream;
  EXPECT_THROW(command.Serialize(stream, u"", u"", u"", {}), std::out_of_range);
}

TEST(ReleaseSessionCommand, CloneIsAnotherCommandOfTheSameClass) {
  const CReleaseSessionCommand command;
  const std::unique_ptr<CQvCommand> clone(command.clone());
  ASSERT_NE(dynamic_cast<CReleaseSessionCommand*>(clone.get()), nullptr);
  EXPECT_NE(clone.get(), &command);
}

}  // namespace
}  // namespace qv
