// The ticket in an upload URL.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "fixtures/shown_text.h"
#include "script/file_uploader.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

std::string TicketIn(const WideString& url) {
  return Shown(CFileUploader::ExtractTicket(url));
}

TEST(ExtractTicket, IsBetweenTheFirstTwoEqualSigns) {
  constexpr struct {
    const char* name;
    std::u16string_view url;
    const char* ticket;  // as shown_text.h shows it
  } rows[] = {
      {"Usual", u"http://srv/up?ticket=abc"sv, "abc"},
      {"Bare", u"a=b"sv, "b"},
      {"TicketIsAUrl", u"a=http://srv/x"sv, "http://srv/x"},
      {"SecondEqualSignEndsIt", u"http://srv/up?t=abc&x=1"sv, "abc&x"},
      {"AmpersandStays", u"http://srv/up?t=abc&x"sv, "abc&x"},
      {"FragmentStays", u"http://srv/up?t=abc#f"sv, "abc#f"},
      {"EarlierEqualSignShiftsIt", u"http://srv/a=b/up?t=abc"sv, "b/up?t"},
      {"EqualSignInTheHost", u"http://s=v/up?t=abc"sv, "v/up?t"},
      {"ThreeEqualSigns", u"a=b=c=d"sv, "b"},
      {"PercentStays", u"a=%3D%20b"sv, "%3D%20b"},
      {"BlanksStay", u"a= b "sv, " b "},
      {"OnlyABlank", u"a= "sv, " "},
      {"BlankBefore", u" =b"sv, "b"},
      {"QuotesStay", u"a=\"b\""sv, "\"b\""},
      {"LineEndStays", u"a=b\r\n"sv, "b\\u000D\\u000A"},
      {"NothingBehind", u"http://srv/up?ticket="sv, ""},
      {"ShortestEmpty", u"a="sv, ""},
      {"TwoNeighbours", u"a==b"sv, "=b"},
      {"TwoNeighboursAtTheEnd", u"a=="sv, "="},
      {"ThreeNeighbours", u"a===b"sv, "="},
      {"ThreeNeighboursAtTheEnd", u"a==="sv, "="},
      {"FourNeighbours", u"a====b"sv, "="},
      {"NeighboursFurtherOn", u"a=b==c"sv, "b"},
      {"ClosingEqualSign", u"a=b="sv, "b"},
      {"OneUnitBetween", u"a=b=c"sv, "b"},
      {"NullUnitInTheTicket", u"a=b\0c"sv, "b\\u0000c"},
      {"NullUnitBefore", u"a\0=b"sv, "b"},
      {"NonAscii", u"a=\u00E9\u20AC"sv, "\\u00E9\\u20AC"},
      {"SurrogatePair", u"a=\U0001F600"sv, "\\uD83D\\uDE00"},
      {"NoEqualSign", u"http://srv/up?ticket"sv, "<null>"},
      {"NoUrlEither", u"abc"sv, "<null>"},
      {"WideEqualSignIsNone", u"a\uFF1Db"sv, "<null>"},
      {"EncodedEqualSignIsNone", u"a%3Db"sv, "<null>"},
      {"EqualSignFirst", u"=abc"sv, "<null>"},
      {"EqualSignFirstOfTwo", u"=a=b"sv, "<null>"},
      {"OnlyAnEqualSign", u"="sv, "<null>"},
      {"OnlyEqualSigns", u"===="sv, "<null>"},
      {"Empty", u""sv, "<null>"},
      {"Blank", u" "sv, "<null>"},
  };
  for (const auto& row : rows) EXPECT_EQ(TicketIn(row.url), row.ticket) << row.name;
  EXPECT_EQ(TicketIn(WideString()), "<null>");
}

TEST(ExtractTicket, LongUrlsAreReadWhole) {
  const std::u16string ticket(1'000'000, u't');
  EXPECT_EQ(CFileUploader::ExtractTicket(u"http://srv/up?x=" + ticket).view(), ticket);
  EXPECT_EQ(TicketIn(u"a=b" + std::u16string(100'000, u'=')), "b");
}

}  // namespace
}  // namespace qv
