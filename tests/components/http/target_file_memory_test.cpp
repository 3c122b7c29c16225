// Memory runs out while a file is put in its place: either it is there and the call succeeds, or neither.
#include "components/http/target_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fixtures/scarce_memory.h"
#include "fixtures/temporary_directory.h"

namespace qv {
namespace {

// Whether the commit succeeds with that many allocations granted.
bool Commits(const WideString& path, long granted) {
  TargetFile file(path, true);
  file.Write("new");
  try {
    const ScarceMemory scarce(Memory::kBoth, granted);
    file.Commit();
    return true;
  } catch (...) {
    return false;
  }
}

TEST(TargetFileMemory, FileIsInItsPlaceOnlyIfTheCommitSucceeds) {
  for (long granted = 0; granted < 4; ++granted) {
    const TemporaryDirectory folder;
    const std::string path = folder.Path("a-name-that-is-longer-than-a-short-string");
    const bool committed = Commits(FromUtf8(path), granted);
    EXPECT_EQ(std::filesystem::exists(path), committed) << granted;
  }
}

}  // namespace
}  // namespace qv
