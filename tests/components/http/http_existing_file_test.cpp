// HttpOptions::replaceFiles is false: what is there stays, whatever happens and on any file system.
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "file_fixture.h"
#include "fixtures/progress_listener.h"

namespace {

// What a file system is without.
bool g_noRenameToFreeName = false;
bool g_noLinks = false;

int Refused(int error) noexcept {
  errno = error;
  return -1;
}

}  // namespace

// In place of the C library's, so that a test can have such a file system.
extern "C" int renameat2(int fromDirectory, const char* from, int toDirectory, const char* to,
                         unsigned flags) noexcept {
  if (g_noRenameToFreeName) return Refused(EINVAL);
  return static_cast<int>(syscall(SYS_renameat2, fromDirectory, from, toDirectory, to, flags));
}

extern "C" int link(const char* from, const char* to) noexcept {
  if (g_noLinks) return Refused(EPERM);
  return static_cast<int>(syscall(SYS_link, from, to));
}

namespace qv::test {
namespace {

class ExistingFile : public HttpFileTest {
 protected:
  ~ExistingFile() override { g_noRenameToFreeName = g_noLinks = false; }

  // Runs `test` on each kind of file system, in an empty directory.
  void OnEachFileSystem(const std::function<void()>& test) {
    for (const auto& [noRename, noLinks] : {std::pair(false, false), {true, false}, {true, true}}) {
      SCOPED_TRACE(::testing::Message() << "without renaming " << noRename << ", without links " << noLinks);
      g_noRenameToFreeName = noRename;
      g_noLinks = noLinks;
      StartAnew();
      test();
      std::filesystem::remove(Path("f"));
    }
  }
  HRESULT Download(IHttpProgress* progress = nullptr) {
    HttpOptions options;
    options.replaceFiles = false;
    SetThreadHttpOptions(options, progress);
    Answer("ours");
    return Receive(Path("f"));
  }
  void ExpectTheirs() {
    ExpectWriteFailure("File exists");
    ExpectOnly("theirs");
  }
};

constexpr HRESULT kExists = MakeResult(0x80070050);

TEST_F(ExistingFile, FreeNameIsTaken) {
  OnEachFileSystem([&] {
    EXPECT_EQ(Download(), S_OK) << ErrorWords();
    ExpectOnly("ours");
  });
}

TEST_F(ExistingFile, FileStaysAsItIs) {
  OnEachFileSystem([&] {
    files_.Write("f", "theirs");
    EXPECT_EQ(Download(), kExists);
    ExpectTheirs();
  });
}

TEST_F(ExistingFile, LinkStaysAlsoWhenItLeadsNowhere) {
  OnEachFileSystem([&] {
    ASSERT_EQ(symlink("nowhere", Path("f").c_str()), 0);
    EXPECT_EQ(Download(), kExists);
    EXPECT_TRUE(std::filesystem::is_symlink(Path("f")));
    EXPECT_EQ(files_.Count(), 1);
  });
}

// Another file is put at the target when the body has begun.
TEST_F(ExistingFile, FileThatAppearsMeanwhileStays) {
  OnEachFileSystem([&] {
    ProgressListener intruder([&](bool sending, std::int64_t done, std::int64_t) {
      if (!sending && done > 0) files_.Write("f", "theirs");
      return S_OK;
    });
    EXPECT_EQ(Download(&intruder), kExists);
    ExpectTheirs();
    SetLimits(HttpOptions());  // the listener ends here
  });
}

}  // namespace
}  // namespace qv::test
