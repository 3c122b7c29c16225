// HttpOptions::replaceFiles is false: what is there stays, whatever happens and on any file system.
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "http_fixture.h"

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

namespace fs = std::filesystem;

constexpr HRESULT kExists = MakeResult(0x80070050);

// Puts another file at the target when the body has begun.
class Intruder final : public IHttpProgress {
 public:
  explicit Intruder(std::string path) : path_(std::move(path)) {}
  HRESULT QueryInterface(const Guid&, void** object) noexcept override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override { return --references_; }
  HRESULT OnProgress(bool sending, std::int64_t done, std::int64_t) noexcept override {
    if (!sending && done > 0) std::ofstream(path_) << "theirs";
    return S_OK;
  }

 private:
  std::uint32_t references_ = 1;
  std::string path_;
};

struct FileSystemRow {
  const char* name;
  bool noRenameToFreeName;
  bool noLinks;
};

class ExistingFile : public HttpTest, public ::testing::WithParamInterface<FileSystemRow> {
 protected:
  ExistingFile() {
    char name[] = "/tmp/http_existing_file_test.XXXXXX";
    directory_ = mkdtemp(name);
    g_noRenameToFreeName = GetParam().noRenameToFreeName;
    g_noLinks = GetParam().noLinks;
  }
  ~ExistingFile() override {
    g_noRenameToFreeName = g_noLinks = false;
    SetThreadHttpOptions(HttpOptions(), nullptr);
    fs::remove_all(directory_);
  }

  std::string Path(const std::string& name) const { return directory_ + "/" + name; }
  std::string ReadFile(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  std::ptrdiff_t FilesInDirectory() const {
    return std::distance(fs::directory_iterator(directory_), fs::directory_iterator());
  }
  HRESULT Download(IHttpProgress* progress = nullptr) {
    HttpOptions options;
    options.replaceFiles = false;
    SetThreadHttpOptions(options, progress);
    Answer(RawAnswerText("ours"));
    std::int32_t count = 0;
    return Sent()->ReadToFile(Wide(Path("f")), &count);
  }

  std::string directory_;
};

TEST_P(ExistingFile, FreeNameIsTaken) {
  EXPECT_EQ(Download(), S_OK) << ErrorWords();
  EXPECT_EQ(ReadFile("f"), "ours");
  EXPECT_EQ(FilesInDirectory(), 1);
}

TEST_P(ExistingFile, FileStaysAsItIs) {
  std::ofstream(Path("f")) << "theirs";
  EXPECT_EQ(Download(), kExists);
  EXPECT_EQ(ErrorWords(), "Couldn't write file " + Path("f") + ": File exists");
  EXPECT_EQ(ReadFile("f"), "theirs");
  EXPECT_EQ(FilesInDirectory(), 1);
}

TEST_P(ExistingFile, LinkStaysAlsoWhenItLeadsNowhere) {
  ASSERT_EQ(symlink("nowhere", Path("f").c_str()), 0);
  EXPECT_EQ(Download(), kExists);
  EXPECT_TRUE(fs::is_symlink(Path("f")));
  EXPECT_EQ(FilesInDirectory(), 1);
}

TEST_P(ExistingFile, FileThatAppearsMeanwhileStays) {
  Intruder intruder(Path("f"));
  EXPECT_EQ(Download(&intruder), kExists);
  EXPECT_EQ(ErrorWords(), "Couldn't write file " + Path("f") + ": File exists");
  EXPECT_EQ(ReadFile("f"), "theirs");
  EXPECT_EQ(FilesInDirectory(), 1);
  SetThreadHttpOptions(HttpOptions(), nullptr);  // the listener ends here
}

INSTANTIATE_TEST_SUITE_P(, ExistingFile,
                         ::testing::Values(FileSystemRow{"Usual", false, false},
                                           FileSystemRow{"WithLinksOnly", true, false},
                                           FileSystemRow{"WithNeither", true, true}),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qv::test
