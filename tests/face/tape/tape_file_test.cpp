// Files that tapes are recorded to.
#include "face/tape/tape_file.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "face/tape/tape.h"
#include "face/tape/taped_session.h"

namespace scriptwells {
namespace {

using test::ErrorOf;

std::string RefusalOf(const std::string& path) {
  return ErrorOf([&] { TapeFile file(path); });
}

TEST(TapeFile, GoesOnWithATapeAndWithNothingElse) {
  const qv::TemporaryDirectory directory;
  const std::string path = directory.Path("a.tape");
  EXPECT_EQ(TapeFile(path).Session(), 1U);
  EXPECT_EQ(TapeFile(path).Session(), 2U);
  EXPECT_EQ(directory.Read("a.tape"), "scriptwells tape 1\n\nsession 1\n\nsession 2\n\n");
  const std::string text = directory.Write("notes.txt", "precious notes, longer than the first line\n");
  EXPECT_EQ(RefusalOf(text),
            "local file: cannot write the tape " + text + ": the file is there already and is no tape");
  EXPECT_EQ(directory.Read("notes.txt"), "precious notes, longer than the first line\n");
  const std::string cut = directory.Write("cut.tape", "scriptwells tape 1\n\nsession 1\n\n1 exec");
  EXPECT_EQ(RefusalOf(cut), "local file: cannot write the tape " + cut + ": the tape was cut");
  EXPECT_EQ(RefusalOf("/dev/null"), "local file: cannot write the tape /dev/null: not a regular file");
  EXPECT_EQ(RefusalOf("/none/a.tape"),
            "local file: cannot write the tape /none/a.tape: No such file or directory");
}

TEST(TapeFile, FindsTheLastSessionBehindLongEntries) {
  const qv::TemporaryDirectory directory;
  const std::string path =
      directory.Write("a.tape", "scriptwells tape 1\n\nsession 7\n\n7 execute http://h\n>> " +
                                    std::string(300'000, 'x') + "\n\n");
  EXPECT_EQ(TapeFile(path).Session(), 8U);
}

TEST(TapeFile, EntriesOfSeveralSessionsStayWhole) {
  const qv::TemporaryDirectory directory;
  const std::string path = directory.Path("a.tape");
  constexpr int kThreads = 8;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&path] {
      TapeFile file(path);
      TapeEntry entry;
      entry.session = file.Session();
      entry.server = {{"http://h:1\n"}};
      entry.requestHead = {{std::string(20'000, 'x')}};
      for (int n = 0; n < 20; ++n) file.Append(EntryText(entry));
    });
  for (std::thread& thread : threads) thread.join();
  std::vector<int> counts(9);
  for (const TapeEntry& entry : ReadTape("a", directory.Read("a.tape"))) ++counts.at(entry.session);
  EXPECT_EQ(counts, (std::vector<int>{0, 20, 20, 20, 20, 20, 20, 20, 20}));
}

TEST(TapeFile, CannotBePlayedAndRecordedAtOnce) {
  const qv::TemporaryDirectory directory;
  Options options;
  options.replay = options.record = directory.Write("a.tape", "scriptwells tape 1\n\n");
  EXPECT_EQ(ErrorOf([&] { Session::Adopt("http://h", "u1", options); }),
            "local file: the tape " + directory.Path("a.tape") + " cannot be played and recorded at once");
}

}  // namespace
}  // namespace scriptwells
