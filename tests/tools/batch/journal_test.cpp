// The journal: what a new start knows of an earlier one, wherever that ended.
#include "tools/batch/journal.h"

#include <gtest/gtest.h>

#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using namespace testing;

const std::string kHead = "scriptwells-map 1 k\n";

class Journals : public ::testing::Test {
 protected:
  // The fates of three rows, such as "DFU" (done, failed, unknown) or "---", after a start with this content.
  std::string Fates(const std::string& content) const {
    folder_.Write("j", content);
    const Journal journal(path_, "k", 3);
    std::string fates;
    for (int row = 1; row <= 3; ++row) fates += "-DFU"[static_cast<int>(journal.EarlierFate(row))];
    return fates;
  }
  std::string Refusal(const std::string& content) const {
    folder_.Write("j", content);
    return RefusalOf([&] { const Journal journal(path_, "k", 3); });
  }

  TemporaryDirectory folder_;
  std::string path_ = folder_.Path("j");
};

TEST_F(Journals, KeepsWhatBecameOfEachRow) {
  {
    Journal journal(path_, "k");
    journal.Start(1);
    journal.Start(2);
    journal.End(2, {Fate::kDone, "a \"b\"\r\n\xC3\xA9\x01"});
    journal.End(1, {Fate::kFailed, "no such customer"});
    journal.Start(3);
  }
  Journal journal(path_, "k", 4);
  EXPECT_EQ(journal.Earlier(1).text, "no such customer");
  EXPECT_EQ(journal.Earlier(2).text, "a \"b\"\r\n\xC3\xA9\x01");
  EXPECT_EQ(journal.Earlier(2).fate, Fate::kDone);
  EXPECT_EQ(journal.Earlier(3).fate, Fate::kUnknown);
  EXPECT_EQ(journal.Earlier(3).text, "the program ended before the answer came");
  EXPECT_EQ(journal.Earlier(4).fate, Fate::kUnsent);
}

TEST_F(Journals, TheLastWholeLineOfARowCounts) {
  EXPECT_EQ(Fates(kHead), "---");
  EXPECT_EQ(Fates(kHead + "start 1\nstart 2\ndone 1 \"x\"\nunknown 2 \"y\"\n"), "DU-");
  EXPECT_EQ(Fates(kHead + "start 1\nunsent 1\nstart 3\nunsent 3\nstart 3\n"), "--U");
  EXPECT_EQ(Fates(kHead + "start 2\nunknown 2 \"y\"\nstart 2\nfailed 2 \"z\"\n"), "-F-");
}

// A program may be killed after each byte. The next one goes on after the last whole line.
TEST_F(Journals, EveryCutIsContinued) {
  const std::string whole = kHead + "start 1\ndone 1 \"5\"\nstart 2\nfailed 2 \"no\"\n";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    const std::size_t end = cut.rfind('\n') == std::string::npos ? 0 : cut.rfind('\n') + 1;
    folder_.Write("j", cut);
    Journal(path_, "k", 3).Start(3);
    const std::string kept = end == 0 ? kHead : whole.substr(0, end);
    EXPECT_EQ(folder_.Read("j"), kept + "start 3\n") << length;
  }
}

TEST_F(Journals, OthersAreRefused) {
  const std::string damaged = "the journal " + path_ + " is damaged at byte 20";
  for (const char* line : {"begin 1\n", "start\n", "start 0\n", "start -1\n", "start 4\n", "done x \"\"\n",
                           "\n", "start 99999999999999999999\n"})
    EXPECT_EQ(Refusal(kHead + line), damaged) << line;
  const std::string other =
      "the journal " + path_ + " belongs to another script, to other rows, or to another form of results";
  EXPECT_EQ(Refusal("scriptwells-map 1 q\nstart 1\n"), other);
  EXPECT_EQ(Refusal("city,people\n"), other);
  EXPECT_EQ(folder_.Read("j"), "city,people\n");
  folder_.Write("j", kHead + "done 1 5\n");
  EXPECT_EQ(RefusalOf([&] { Journal(path_, "k", 3).Earlier(1); }),
            "the journal " + path_ + " is damaged at row 1");
}

TEST_F(Journals, OneProgramAtATime) {
  const Journal first(path_, "k");
  EXPECT_EQ(RefusalOf([&] { const Journal second(path_, "k", 3); }),
            "the journal " + path_ + " is in use by another program");
  EXPECT_EQ(RefusalOf([&] { const Journal second(path_, "k"); }),
            "the journal " + path_ + " cannot be opened: File exists");
}

TEST_F(Journals, FullDiskIsReported) {
  EXPECT_EQ(RefusalOf([] { const Journal journal("/dev/full", "k", 1); }),
            "the journal /dev/full is not a regular file");
}

}  // namespace
}  // namespace qv::cli
