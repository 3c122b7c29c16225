// What counts as a session id or a ticket in what a server sends.
#include "face/exchange/learned_secrets.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

using Secrets = std::vector<std::string>;

TEST(LearnedSecrets, SessionIdIsTheTextOfTheAnswer) {
  const std::string start = "<soap:Envelope><soap:Body><CreateUserSessionResponse>";
  const std::string end = "</CreateUserSessionResponse></soap:Body></soap:Envelope>";
  EXPECT_EQ(SessionIdsIn(start + "<r>id-1</r>" + end), Secrets{"id-1"});
  EXPECT_EQ(SessionIdsIn(start + "\n <r a='>'>a&amp;b&#233;</r>\n" + end), (Secrets{"'>a&b\xC3\xA9"}));
  EXPECT_EQ(SessionIdsIn(start + "<r><![CDATA[a<b&amp;]]></r>" + end), Secrets{"a<b&amp;"});
  EXPECT_EQ(SessionIdsIn("<a><NS2:CreateUserSessionResponse><r>x</r></NS2:CreateUserSessionResponse></a>"),
            Secrets{"x"});
  EXPECT_EQ(SessionIdsIn(start + "<r/>" + end), Secrets());
  EXPECT_EQ(SessionIdsIn("<soap:Fault>who</soap:Fault>"), Secrets());
  EXPECT_EQ(SessionIdsIn(start), Secrets());
}

TEST(LearnedSecrets, TicketFollowsTheEqualsSignOfAnAddress) {
  EXPECT_EQ(TicketsIn("<r>http://srv/up?ticket=T&amp;1</r>"), (Secrets{"T&1", "T&1"}));
  EXPECT_EQ(TicketsIn("<r>http://srv/up?ticket=T1=x</r>"), (Secrets{"T1=x", "T1"}));
  EXPECT_EQ(TicketsIn("<r xmlns='http://a/b=c'>nowhere=1</r>"), Secrets());
  EXPECT_EQ(TicketsIn("<r>http://srv/up</r>"), Secrets());
  EXPECT_EQ(TicketsInHead("POST /up?ticket=T%201 HTTP/1.1\r\nA: b=c\r\n\r\n"), (Secrets{"T%201", "T%201"}));
  EXPECT_EQ(TicketsInHead("POST /up HTTP/1.1\r\n\r\n"), Secrets());
}

}  // namespace
}  // namespace scriptwells
