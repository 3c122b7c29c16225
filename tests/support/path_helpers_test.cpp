// Temporary directories, the home directory, and names for new files.
#include "support/path_helpers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <regex>
#include <string>
#include <thread>
#include <utility>

#include "fixtures/environment.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr char kNoTempDirectory[] =
    "EQvException 0x00000000 Failed to get temp directory path. TEMP/TMP environment variable does not "
    "exist.";

// The rights of a file or directory; 0 when it is not there.
mode_t ModeOf(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

// Each GUID (without braces) becomes "GUID", since each run has others.
std::string WithoutGuids(const std::string& text) {
  static const std::regex guid("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
  return std::regex_replace(text, guid, "GUID");
}

class Umask {
 public:
  explicit Umask(mode_t mask) : old_(umask(mask)) {}
  Umask(const Umask&) = delete;
  Umask& operator=(const Umask&) = delete;
  ~Umask() { umask(old_); }

 private:
  mode_t old_;
};

TEST(AppendPathSeparator, FollowsEveryOtherEnd) {
  EXPECT_EQ(PathSeparator(), u'\\');
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"c:\\x", u"c:\\x\\"}, {u"x/", u"x/\\"}, {u"/", u"/\\"}, {u"c:\\", u"c:\\"},
      {u"\\", u"\\"},         {u"", u""},       {nullptr, u""}};
  for (const auto& [path, appended] : rows) EXPECT_EQ(AppendPathSeparator(path), appended);
}

class TempDirectoryTest : public testing::Test {
 protected:
  EnvironmentVariable temp_{"TEMP", nullptr};
  EnvironmentVariable tmp_{"TMP", nullptr};
};

TEST_F(TempDirectoryTest, TmpFollowsWhenTempIsMissingOrEmpty) {
  tmp_.Set("/c");
  EXPECT_EQ(GetTempDirectory(), u"/c");
  temp_.Set("");
  EXPECT_EQ(GetTempDirectory(), u"/c");
  temp_.Set("/a\\b/");
  EXPECT_EQ(GetTempDirectory(), u"/a\\b/");
  temp_.Set("/\xC3\xA9");
  EXPECT_EQ(GetTempDirectory(), u"/\u00e9");
}

// With a third one, files would appear where no host of this library looks for them.
TEST_F(TempDirectoryTest, NoOtherVariableIsRead) {
  const EnvironmentVariable tmpdir("TMPDIR", "/d");
  const EnvironmentVariable tempdir("TEMPDIR", "/d");
  for (const char* value : {static_cast<const char*>(nullptr), ""}) {
    temp_.Set(value);
    tmp_.Set(value);
    EXPECT_EQ(Thrown([] { GetTempDirectory(); }), kNoTempDirectory);
    EXPECT_EQ(Thrown([] { CreateTempSubdirectory(nullptr); }), kNoTempDirectory);
  }
}

TEST(MakeDirectory, OnlyTheUserMayEnterWhateverTheUmask) {
  const TemporaryDirectory directory;
  for (const mode_t mask : {0U, 02U, 022U, 027U, 077U}) {
    const Umask umask(mask);
    const std::string path = directory.Path("m" + std::to_string(mask));
    EXPECT_EQ(MakeDirectory(FromUtf8(path)), 0);
    EXPECT_EQ(ModeOf(path), 0700U) << "umask " << mask;
  }
}

TEST(MakeDirectory, BackslashesBecomeNativeAndTextIsUtf8) {
  const TemporaryDirectory directory;
  EXPECT_EQ(MakeDirectory(FromUtf8(directory.Path() + "\\\xC3\xA9")), 0);
  EXPECT_EQ(ModeOf(directory.Path("\xC3\xA9")), 0700U);
}

TEST(MakeDirectory, FailureLeavesItsReasonInErrno) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("file", "");
  const std::pair<std::string, int> rows[] = {
      {file, EEXIST}, {file + "/below", ENOTDIR}, {directory.Path("no/such"), ENOENT}, {"", ENOENT}};
  for (const auto& [path, reason] : rows) {
    EXPECT_EQ(MakeDirectory(FromUtf8(path)), -1) << path;
    EXPECT_EQ(errno, reason) << path;
  }
}

// The separator of the variable is not doubled.
TEST_F(TempDirectoryTest, SubdirectoryIsMadeUnderANewName) {
  const TemporaryDirectory directory;
  temp_.Set(directory.Path().c_str());
  const WideString first = CreateTempSubdirectory(u"not used");
  const WideString second = CreateTempSubdirectory(nullptr);
  temp_.Set((directory.Path() + "\\").c_str());
  const WideString third = CreateTempSubdirectory(nullptr);
  EXPECT_NE(first, second);
  for (const WideString& path : {first, second, third}) {
    EXPECT_EQ(WithoutGuids(ToUtf8(path)), directory.Path() + "\\GUID");
    EXPECT_EQ(ModeOf(NativePath(path)), 0700U);
  }
  EXPECT_EQ(directory.Count(), 3);
}

TEST_F(TempDirectoryTest, DirectoryThatCannotBeMadeIsRaisedWithTheReason) {
  const TemporaryDirectory directory;
  const std::pair<std::string, std::string> rows[] = {
      {directory.Path("missing"), "No such file or directory"},
      {directory.Write("file", ""), "Not a directory"}};
  for (const auto& [temp, reason] : rows) {
    temp_.Set(temp.c_str());
    EXPECT_EQ(WithoutGuids(Thrown([] { CreateTempSubdirectory(nullptr); })),
              std::string("EQvException 0x00000000 Cannot create the following directory: ")
                  .append(temp)
                  .append("\\GUID due to the following error: ")
                  .append(reason));
  }
}

class HomeDirectoryTest : public testing::Test {
 protected:
  void Say(const std::string& value) const {
    directory_.Write("named.reg",
                     "[HKEY_LOCAL_MACHINE\\software\\quorvane\\quorvane\\homedir]\n@=\"" + value + "\"\n");
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("named.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("config").c_str()};
};

TEST_F(HomeDirectoryTest, IsWhatTheRegistrySays) {
  Say(R"(c:\\Program Files\\Quorvane)");
  EXPECT_EQ(GetHomeDirectory(), u"c:\\Program Files\\Quorvane");
}

TEST_F(HomeDirectoryTest, LongestThatTheReaderHolds) {
  const std::string longest = "/" + std::string(126, 'x') + "\xC3\xA9!";
  Say(longest);
  EXPECT_EQ(GetHomeDirectory().size(), 129U);
  EXPECT_EQ(GetHomeDirectory(), FromUtf8(longest));
  Say(longest + "y");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
}

TEST_F(HomeDirectoryTest, EmptyMissingAndDamagedFilesGiveEmpty) {
  Say("");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
  if (!ReadRegistry().back().entries.empty()) GTEST_SKIP() << "an installation on this machine answers";
  Say("\\x");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
  directory_.Write("named.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane]\n@=\"/x\"\n");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
  std::filesystem::remove(directory_.Path("named.reg"));
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
}

TEST_F(HomeDirectoryTest, AThreadMayHaveItsOwn) {
  Say("/of/the/registry");
  const WideString own(std::u16string(200, u'x'));
  EXPECT_EQ(SetThreadHomeDirectory(&own), nullptr);
  EXPECT_EQ(GetHomeDirectory(), own);
  WideString ofAnother;
  std::thread([&] { ofAnother = GetHomeDirectory(); }).join();
  EXPECT_EQ(ofAnother, u"/of/the/registry");
  EXPECT_EQ(SetThreadHomeDirectory(nullptr), &own);
  EXPECT_EQ(GetHomeDirectory(), u"/of/the/registry");
}

// An empty one would be taken for the current directory.
TEST_F(HomeDirectoryTest, WithoutMemoryIsAFailureAndNotEmpty) {
  Say("/a/home/directory");
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [] { EXPECT_FALSE(GetHomeDirectory().IsEmpty()); }),
            std::set<std::string>{"_com_error 0x8007000E <null>"});
}

TEST(NewGuidText, BracesAroundANewGuid) {
  const WideString text = NewGuidText();
  EXPECT_EQ(WithoutGuids(ToUtf8(text)), "{GUID}");
  EXPECT_NE(NewGuidText(), text);
}

}  // namespace
}  // namespace qv
