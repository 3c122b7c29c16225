// The names that servers give to files.
#include "face/exchange/saved_name.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

TEST(SavedName, IsWhatFollowsTheLastEqualsSign) {
  EXPECT_EQ(FileNameIn("attachment; filename=a.txt"), "a.txt");
  EXPECT_EQ(FileNameIn("a=b=c"), "c");
  EXPECT_EQ(FileNameIn("filename==a"), "=a");
  EXPECT_EQ(FileNameIn("attachment; a=b; filename=c d.txt"), "c d.txt");
  // Of two adjacent signs the second belongs to the name.
  EXPECT_EQ(FileNameIn("attachment; filename==="), "");
  EXPECT_EQ(FileNameIn("a=="), "=");
  EXPECT_EQ(FileNameIn(""), std::nullopt);
  EXPECT_EQ(FileNameIn("filename="), "");
  EXPECT_EQ(FileNameIn("inline"), std::nullopt);
  EXPECT_EQ(FileNameIn("=a"), std::nullopt);
}

TEST(SavedName, HiddenAndUnsafeNamesAreFaults) {
  EXPECT_EQ(FaultOfName("a.txt", false), NameFault::kNone);
  EXPECT_EQ(FaultOfName(".bashrc", false), NameFault::kHidden);
  EXPECT_EQ(FaultOfName(".bashrc", true), NameFault::kNone);
  for (const char* name : {"...", ".a"}) EXPECT_EQ(FaultOfName(name, false), NameFault::kHidden) << name;
  EXPECT_EQ(FaultOfName("a.", false), NameFault::kNone);
  EXPECT_STREQ(ReasonOf(NameFault::kNone), "");
  EXPECT_STREQ(ReasonOf(NameFault::kUnsafe), "it holds a control character");
  EXPECT_STREQ(ReasonOf(NameFault::kHidden), "it begins with '.'");
  // NOLINTNEXTLINE(misc-misleading-bidirectional): characters that mislead are what is tested
  for (const char* name : {"a\x1b[2J", "a\nb", "gpj\xE2\x80\xAE.exe"})
    EXPECT_EQ(FaultOfName(name, true), NameFault::kUnsafe) << name;
}

TEST(SavedName, LeavesTheDirectory) {
  for (const char* name : {"", ".", "..", "../x", "a/b", "a\\b"}) EXPECT_TRUE(LeavesDirectory(name)) << name;
  EXPECT_TRUE(LeavesDirectory(std::string("a\0b", 3)));
  for (const char* name : {"a", ".a", "...", "a b"}) EXPECT_FALSE(LeavesDirectory(name)) << name;
}

}  // namespace
}  // namespace scriptwells
