#include "values/attached_file_impl.h"

#include <gtest/gtest.h>

#include <limits>

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
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);  // asking changes nothing
  EXPECT_EQ(Shown(file.get_TicketId()), "x");
  EXPECT_EQ(file.IsTicketId(), VARIANT_FALSE);
  EXPECT_EQ(Shown(file.get_TicketId()), "x");
  EXPECT_EQ(file.IsTicketId(), VARIANT_FALSE);
}

TEST(AttachedFileImpl, NullAndEmptyTicketsSetTheFlagToo) {
  AttachedFileImpl file;
  file.put_TicketId(WideString());
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);
  EXPECT_TRUE(file.get_TicketId().IsNull());
  file.put_TicketId(u"");
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);
}

TEST(AttachedFileImpl, TheFlagIsMinusOneForTrue) {
  AttachedFileImpl file;
  file.put_TicketId(u"x");
  EXPECT_EQ(file.IsTicketId(), -1);
}

TEST(AttachedFileImpl, TextJoinsNameAndId) {
  AttachedFileImpl file;
  EXPECT_EQ(Shown(file.ToText()),
            "<Object>AttachedFile<DataType>string:string</DataType><Data>:</Data></Object>");
  file.put_Filename(u"a.txt");
  file.put_FileId(u"7");
  EXPECT_EQ(Shown(file.ToText()),
            "<Object>AttachedFile<DataType>string:string</DataType><Data>a.txt:7</Data></Object>");
}

TEST(AttachedFileImpl, TextEscapesNothingAndKnowsNoTicket) {
  AttachedFileImpl file;
  file.Init(u"c:\\<a>&\"b\".txt");
  file.put_TicketId(u"t");
  EXPECT_EQ(Shown(file.ToText()),
            "<Object>AttachedFile<DataType>string:string</DataType><Data>c:\\<a>&\"b\".txt:</Data></Object>");
  EXPECT_EQ(file.IsTicketId(), VARIANT_TRUE);
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
