#include "tools/saved_name.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

TEST(FileNameIn, WhatFollowsTheLastEqualsSign) {
  EXPECT_EQ(FileNameIn("attachment; filename=a.txt"), "a.txt");
  EXPECT_EQ(FileNameIn("attachment; a=b; filename=c d.txt"), "c d.txt");
  EXPECT_EQ(FileNameIn("attachment; filename="), "");
}

TEST(FileNameIn, OfTwoSignsSideBySideTheSecondBelongsToTheName) {
  EXPECT_EQ(FileNameIn("attachment; filename==a.txt"), "=a.txt");
  EXPECT_EQ(FileNameIn("attachment; filename==="), "");
  EXPECT_EQ(FileNameIn("a=="), "=");
}

TEST(FileNameIn, HeaderWithoutAName) {
  EXPECT_EQ(FileNameIn(""), std::nullopt);
  EXPECT_EQ(FileNameIn("attachment"), std::nullopt);
  EXPECT_EQ(FileNameIn("=a.txt"), std::nullopt);
}

TEST(LeavesDirectory, NamesOfOtherPlaces) {
  for (const char* name : {"", ".", "..", "../x", "/x", "a\\b"}) EXPECT_TRUE(LeavesDirectory(name)) << name;
  EXPECT_TRUE(LeavesDirectory(std::string("a\0b", 3)));
  for (const char* name : {"a", "...", ".a", "=a.txt", "a b"}) EXPECT_FALSE(LeavesDirectory(name)) << name;
}

TEST(FaultOfName, ControlCharactersAreNotSaved) {
  for (const bool savesHidden : {false, true}) {
    EXPECT_EQ(FaultOfName("a.txt", savesHidden), NameFault::kNone);
    EXPECT_EQ(FaultOfName("\x1b]0;x\x07.txt", savesHidden), NameFault::kUnsafe);
    EXPECT_EQ(FaultOfName("cod\xE2\x80\xAEtxt.exe", savesHidden), NameFault::kUnsafe);
  }
  EXPECT_STREQ(ReasonOf(NameFault::kUnsafe), "it holds a control character");
  EXPECT_STREQ(ReasonOf(NameFault::kNone), "");
}

TEST(FaultOfName, HiddenFilesAreSavedOnRequest) {
  for (const char* name : {".bashrc", "...", ".a"}) {
    EXPECT_EQ(FaultOfName(name, false), NameFault::kHidden) << name;
    EXPECT_EQ(FaultOfName(name, true), NameFault::kNone) << name;
  }
  EXPECT_EQ(FaultOfName("a.", false), NameFault::kNone);
  EXPECT_STREQ(ReasonOf(NameFault::kHidden), "it begins with '.' (--force saves it)");
}

}  // namespace
}  // namespace qv::cli
