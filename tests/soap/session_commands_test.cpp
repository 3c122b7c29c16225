// The requests that open and close a session.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "fixtures/shown_text.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "soap/qv_command.h"

namespace qv {
namespace {

// A command with the key of its one value.
template <class Command>
std::string Written(std::u16string_view key, const Variant& value) {
  WideTextStream stream;
  Command().Serialize(stream, u"ignored", u"ignored", u"ignored", {{key, value}});
  return Shown(WideString(stream.view()));
}
std::string CreateEnvelope(const Variant& connectionString) {
  return Written<CCreateSessionCommand>(u"ConnectionString", connectionString);
}
std::string ReleaseEnvelope(const Variant& contextHandle) {
  return Written<CReleaseSessionCommand>(u"ContextHandle", contextHandle);
}
// With a closing null unit.
TEST(ReleaseSessionCommand, ContextHandleIsTheUsid) {
  EXPECT_EQ(ReleaseEnvelope(Text(u"s&1")), CloseSessionRequest("s&amp;1") + "\\u0000");
  EXPECT_EQ(ReleaseEnvelope(Text(u"")), CloseSessionRequest("") + "\\u0000");
}

TEST(CreateSessionCommand, TextIsEscapedOnce) {
  const struct {
    const char* name;
    Variant value;
    const char* written;
  } rows[] = {
      {"plain text", Text(u"a"), "a"},
      {"ampersand and semicolon", Text(u"Username=a&b;"), "Username=a&amp;b;"},
      {"XML's five characters", Text(u"\"&'<>"), "&quot;&amp;&apos;&lt;&gt;"},
      {"units from 7F on", Text(u"~\x7F\u00E9\U0001F600"), "~&#127;&#233;&#55357;&#56832;"},
      {"control characters", Text(u"\x01\n"), "\\u0001\\u000A"},
      {"null unit", Text(std::u16string_view(u"a\0b", 3)), "a"},
      {"empty text", Text(u""), ""},
      {"null text", NullText(), ""},
      {"another value", Int(5), ""},
  };
  for (const auto& row : rows)
    for (int i = 0; i < 2; ++i)  // the same value gives the same text again
      EXPECT_EQ(CreateEnvelope(row.value), CreateSessionRequest(row.written) + "\\u0000") << row.name;
}

TEST(CreateSessionCommand, EnvelopeIsAppendedToTheStream) {
  WideTextStream stream;
  stream.Append(u"before");
  CCreateSessionCommand().Serialize(stream, u"", u"", u"", {{u"ConnectionString", Text(u"a")}});
  EXPECT_EQ(Shown(stream.TakeText()).substr(0, 25), "before<SOAP-ENV:Envelope ");
}

template <class Command>
void ExpectOwnClone() {
  const Command command;
  const std::unique_ptr<CQvCommand> clone(command.clone());
  ASSERT_NE(dynamic_cast<Command*>(clone.get()), nullptr);
  EXPECT_NE(clone.get(), &command);
}

TEST(SessionCommands, CloneIsAnotherCommandOfTheSameClass) {
  ExpectOwnClone<CCreateSessionCommand>();
  ExpectOwnClone<CReleaseSessionCommand>();
}

TEST(SessionCommands, MissingKeyThrowsOutOfRange) {
  WideTextStream stream;
  EXPECT_THROW(CCreateSessionCommand().Serialize(stream, u"", u"", u"", {}), std::out_of_range);
  EXPECT_THROW(CReleaseSessionCommand().Serialize(stream, u"", u"", u"", {}), std::out_of_range);
}

}  // namespace
}  // namespace qv
