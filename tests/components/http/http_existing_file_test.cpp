// HttpOptions::replaceFiles is false: what is there stays, whatever happens and on any file system.
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "file_fixture.h"
#include "fixtures/progress_listener.h"
#include "system_calls.h"

namespace qv::test {
namespace {

class ExistingFile : public HttpFileTest {
 protected:
  // Runs `test` on each kind of file system, in an empty directory: one that can do everything, one that
  // cannot rename to a free name, and one that has no links either.
  void OnEachFileSystem(const std::function<void()>& test) {
    for (int missing = 0; missing <= 2; ++missing) {
      SCOPED_TRACE(missing);
      SystemCalls calls;
      if (missing > 0) calls.Fail("renameat2", EINVAL, 1000);
      if (missing > 1) calls.Fail("link", EPERM, 1000);
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
