// A file that travels beside the request: its properties, and the ticket that is read once.
#include "values/attached_file_impl.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "fixtures/shown_text.h"

namespace qv {
namespace {

TEST(AttachedFileImpl, FreshOneHasNothingButTheTwoOnes) {
  AttachedFileImpl file;
  EXPECT_TRUE(file.get_Filename().IsNull());
  EXPECT_TRUE(file.get_FileId().IsNull());
  EXPECT_EQ(file.get_SourceFileLifeTime(), 1);
  EXPECT_EQ(file.get_CleanUp(), 1);
  EXPECT_EQ(file.IsTicketId(), VARIANT_FALSE);
  EXPECT_TRUE(file.get_TicketId().IsNull());
}

TEST(AttachedFileImpl, InitStoresTheNameAndNothingElse) {
  AttachedFileImpl file;
  file.put_FileId(u"7");
  file.put_SourceFileLifeTime(5);
  file.put_CleanUp(0);
  file.put_TicketId(u"t");
  file.Init(u"c:\\a b.txt");
  EXPECT_EQ(Shown(file.get_Filename()), "c:\\a b.txt");
  EXPECT_EQ(Shown(file.get_FileId()), "7");
  EXPECT_EQ(file.get_SourceFileLifeTime(), 5);
  EXPECT_EQ(file.get_CleanUp(), 0);
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);
  EXPECT_EQ(Shown(file.get_TicketId()), "t");
}

TEST(AttachedFileImpl, PropertiesKeepWhateverTheyGet) {
  AttachedFileImpl file;
  for (const char16_t* text : {u"name", u"", u"http://x/<&>", u"\u00E9"}) {
    file.put_Filename(text);
    file.put_FileId(text);
    EXPECT_EQ(file.get_Filename(), WideString(text));
    EXPECT_EQ(file.get_FileId(), WideString(text));
  }
  file.put_Filename(WideString());
  EXPECT_TRUE(file.get_Filename().IsNull());
  for (const std::int32_t number :
       {0, -1, 1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()}) {
    file.put_SourceFileLifeTime(number);
    file.put_CleanUp(number);
    EXPECT_EQ(file.get_SourceFileLifeTime(), number);
    EXPECT_EQ(file.get_CleanUp(), number);
  }
}

TEST(AttachedFileImpl, ReadingTheTicketClearsTheFlagAndKeepsTheTicket) {
  AttachedFileImpl file;
  file.put_TicketId(u"x");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);  // asking changes nothing
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Shown(file.get_TicketId()), "x");
    EXPECT_EQ(file.IsTicketId(), VARIANT_FALSE);
  }
}

TEST(AttachedFileImpl, NullAndEmptyTicketsSetTheFlagToo) {
  AttachedFileImpl file;
  file.put_TicketId(WideString());
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);
  EXPECT_TRUE(file.get_TicketId().IsNull());
  file.put_TicketId(u"");
  EXPECT_EQ(file.IsTicketId(), -1);
}

// Nothing is escaped, and the ticket is left out.
TEST(AttachedFileImpl, TextJoinsNameAndId) {
  const auto text = [](const std::string& data) {
    return "<Object>AttachedFile<DataType>string:string</DataType><Data>" + data + "</Data></Object>";
  };
  AttachedFileImpl file;
  EXPECT_EQ(Shown(file.ToText()), text(":"));
  file.put_Filename(u"a.txt");
  file.put_FileId(u"7");
  EXPECT_EQ(Shown(file.ToText()), text("a.txt:7"));
  AttachedFileImpl odd;
  odd.Init(u"c:\\<a>&\"b\".txt");
  odd.put_TicketId(u"t");
  EXPECT_EQ(Shown(odd.ToText()), text("c:\\<a>&\"b\".txt:"));
  EXPECT_EQ(odd.IsTicketId(), VARIANT_TRUE);
}

TEST(AttachedFileImpl, FromTextIsIgnored) {
  AttachedFileImpl file;
  file.Init(u"a");
  file.FromText(u"<Object>AttachedFile<DataType>string:string</DataType><Data>b:9</Data></Object>");
  EXPECT_EQ(Shown(file.get_Filename()), "a");
  EXPECT_TRUE(file.get_FileId().IsNull());
}

}  // namespace
}  // namespace qv
