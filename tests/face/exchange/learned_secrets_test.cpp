// What counts as a session id or a ticket in what a server sends.
#include "face/exchange/learned_secrets.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

using Secrets = std::vector<std::string>;

// The values of what was found in the text.
Secrets In(PlacedSecrets (*find)(std::string_view), const std::string& text) {
  Secrets values;
  for (const PlacedSecret& secret : find(text)) {
    EXPECT_LE(secret.begin, secret.end);
    EXPECT_LE(secret.end, text.size());
    if (text.find('&') == std::string::npos) {
      EXPECT_EQ(text.substr(secret.begin, secret.end - secret.begin), secret.value);
    }
    values.push_back(secret.value);
  }
  return values;
}

TEST(LearnedSecrets, SessionIdIsTheTextOfTheAnswer) {
  const std::string start = "<soap:Envelope><soap:Body><CreateUserSessionResponse>";
  const std::string end = "</CreateUserSessionResponse></soap:Body></soap:Envelope>";
  EXPECT_EQ(In(&SessionIdsIn, start + "<r>id-1</r>" + end), Secrets{"id-1"});
  EXPECT_EQ(In(&SessionIdsIn, start + "\n <r a='>'>a&amp;b&#233;</r>\n" + end), (Secrets{"'>a&b\xC3\xA9"}));
  EXPECT_EQ(In(&SessionIdsIn, start + "<r><![CDATA[a<b&amp;]]></r>" + end), Secrets{"a<b&amp;"});
  EXPECT_EQ(
      In(&SessionIdsIn, "<a><NS2:CreateUserSessionResponse><r>x</r></NS2:CreateUserSessionResponse></a>"),
      Secrets{"x"});
  EXPECT_EQ(In(&SessionIdsIn, start + "<r/>" + end), Secrets());
  EXPECT_EQ(In(&SessionIdsIn, "<soap:Fault>who</soap:Fault>"), Secrets());
  EXPECT_EQ(In(&SessionIdsIn, start), Secrets());
}

TEST(LearnedSecrets, TicketFollowsTheEqualsSignOfAnAddress) {
  EXPECT_EQ(In(&TicketsIn, "<r>http://srv/up?ticket=T&amp;1</r>"), Secrets{"T&1"});
  EXPECT_EQ(In(&TicketsIn, "<r>http://srv/up?ticket=T1=x</r>"), Secrets{"T1"});
  EXPECT_EQ(In(&TicketsIn, "<r xmlns='http://a/b=c'>nowhere=1</r>"), Secrets());
  EXPECT_EQ(In(&TicketsIn, "<r>http://srv/up</r>"), Secrets());
  EXPECT_EQ(In(&TicketsInHead, "POST /up?ticket=T%201 HTTP/1.1\r\nA: b=c\r\n\r\n"), Secrets{"T%201"});
  EXPECT_EQ(In(&TicketsInHead, "POST /up HTTP/1.1\r\n\r\n"), Secrets());
  EXPECT_EQ(In(&TicketsIn, "<r>http://srv/up?ticket=T1&amp;key=long=er</r>"), (Secrets{"T1&key", "long=er"}));
}

TEST(LearnedSecrets, OfRequests) {
  const std::string start =
      "<Body><ConnectionString xsi:type=\"xsd:string\">DbReplicationId=;Username=joe;Password=";
  EXPECT_EQ(In(&PasswordsIn, start + "a&lt;b;c;</ConnectionString>"), Secrets{"a<b;c"});
  EXPECT_EQ(In(&PasswordsIn, start + ";</ConnectionString>"), Secrets{""});
  EXPECT_EQ(In(&PasswordsIn, start + "</ConnectionString>"), Secrets());
  EXPECT_EQ(In(&PasswordsIn, start), Secrets());
  EXPECT_EQ(In(&PasswordsIn, "<Script>Password=x;</Script>"), Secrets());
  EXPECT_EQ(In(&SessionIdsOfCall, "<usid xsi:type=\"xsd:string\">a&amp;b</usid><usid"), Secrets{"a&b"});
  EXPECT_EQ(In(&SessionIdsInHead, "POST / HTTP/1.1\r\nusid: id 1\r\n\r\n"), Secrets{"id 1"});
  EXPECT_EQ(In(&SessionIdsInHead, "POST / HTTP/1.1\r\n\r\n"), Secrets());
  EXPECT_EQ(In(&TicketsOfCall, "<Value xsi:type=\"FileTicket\"><Id xsi:type=\"string\">T1</Id></Value>"),
            Secrets{"T1"});
}

}  // namespace
}  // namespace scriptwells
