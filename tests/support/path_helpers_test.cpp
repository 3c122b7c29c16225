#include "support/path_helpers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "fixtures/environment.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/native_path.h"
#include "qvscriptwells/registry.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr std::u16string_view kHexDigits = u"0123456789ABCDEF";

// The rights of a file or directory; 0 when it is not there.
mode_t ModeOf(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

// Eight, four, four, four and twelve capital hexadecimal digits.
bool IsGuidWithoutBraces(std::u16string_view text) {
  if (text.size() != 36) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    if (dash ? text[i] != u'-' : kHexDigits.find(text[i]) == kHexDigits.npos) return false;
  }
  return true;
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

TEST(PathSeparator, IsTheBackslash) {
  EXPECT_EQ(PathSeparator(), u'\\');
}

TEST(AppendPathSeparator, StandsBehindEveryOtherEnd) {
  EXPECT_EQ(AppendPathSeparator(u"c:\\x"), u"c:\\x\\");
  EXPECT_EQ(AppendPathSeparator(u"x/"), u"x/\\");
  EXPECT_EQ(AppendPathSeparator(u"/"), u"/\\");
}

TEST(AppendPathSeparator, IsNotDoubled) {
  EXPECT_EQ(AppendPathSeparator(u"c:\\"), u"c:\\");
  EXPECT_EQ(AppendPathSeparator(u"\\"), u"\\");
}

TEST(AppendPathSeparator, EmptyStaysEmpty) {
  EXPECT_EQ(AppendPathSeparator(u""), u"");
  EXPECT_EQ(AppendPathSeparator(nullptr), u"");
}

class TempDirectoryTest : public testing::Test {
 protected:
  EnvironmentVariable temp_{"TEMP", nullptr};
  EnvironmentVariable tmp_{"TMP", nullptr};
};

TEST_F(TempDirectoryTest, TempDecides) {
  temp_.Set("/a\\b/");
  tmp_.Set("/c");
  EXPECT_EQ(GetTempDirectory(), u"/a\\b/");
}

TEST_F(TempDirectoryTest, TmpFollowsWhenTempIsMissingOrEmpty) {
  tmp_.Set("/c");
  EXPECT_EQ(GetTempDirectory(), u"/c");
  temp_.Set("");
  EXPECT_EQ(GetTempDirectory(), u"/c");
}

// Files would appear where no host of this library looks for them.
TEST_F(TempDirectoryTest, NoThirdVariableIsRead) {
  const EnvironmentVariable tmpdir("TMPDIR", "/d");
  const EnvironmentVariable tempdir("TEMPDIR", "/d");
  EXPECT_THROW(GetTempDirectory(), EQvException);
}

TEST_F(TempDirectoryTest, TextIsUtf8) {
  temp_.Set("/\xC3\xA9");
  EXPECT_EQ(GetTempDirectory(), u"/\u00e9");
}

TEST_F(TempDirectoryTest, MissingOrEmptyIsRaised) {
  for (const char* value : {static_cast<const char*>(nullptr), ""}) {
    temp_.Set(value);
    tmp_.Set(value);
    try {
      GetTempDirectory();
      ADD_FAILURE() << "nothing was raised";
    } catch (const EQvException& error) {
      EXPECT_EQ(error.Description(),
                u"Failed to get temp directory path. TEMP/TMP environment variable does not exist.");
      EXPECT_EQ(error.Code(), 0);
    }
  }
}

TEST(MakeDirectory, OnlyTheUserMayEnterWhateverTheUmask) {
  const TemporaryDirectory directory;
  for (const mode_t mask : {0, 02, 022, 027, 077}) {
    const Umask umask(mask);
    const std::string path = directory.Path("m" + std::to_string(mask));
    EXPECT_EQ(MakeDirectory(FromUtf8(path)), 0);
    EXPECT_EQ(ModeOf(path), 0700u) << "umask " << mask;
  }
}

TEST(MakeDirectory, BackslashesBecomeNativeAndTextIsUtf8) {
  const TemporaryDirectory directory;
  EXPECT_EQ(MakeDirectory(FromUtf8(directory.Path() + "\\\xC3\xA9")), 0);
  EXPECT_EQ(ModeOf(directory.Path("\xC3\xA9")), 0700u);
}

TEST(MakeDirectory, FailureLeavesItsReasonInErrno) {
  const TemporaryDirectory directory;
  const std::string file = directory.Write("file", "");
  EXPECT_EQ(MakeDirectory(FromUtf8(file)), -1);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(MakeDirectory(FromUtf8(file + "/below")), -1);
  EXPECT_EQ(errno, ENOTDIR);
  EXPECT_EQ(MakeDirectory(FromUtf8(directory.Path("no/such"))), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(MakeDirectory(u""), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(TempDirectoryTest, SubdirectoryIsMadeUnderANewName) {
  const TemporaryDirectory directory;
  temp_.Set(directory.Path().c_str());
  const WideString start = FromUtf8(directory.Path() + "\\");
  const WideString first = CreateTempSubdirectory(u"not used");
  const WideString second = CreateTempSubdirectory(nullptr);
  EXPECT_NE(first, second);
  for (const WideString& path : {first, second}) {
    EXPECT_EQ(WideString(path.view().substr(0, start.size())), start);
    EXPECT_TRUE(IsGuidWithoutBraces(path.view().substr(start.size()))) << ToUtf8(path);
    EXPECT_EQ(ModeOf(NativePath(path)), 0700u);
  }
  EXPECT_EQ(directory.Count(), 2);
}

TEST_F(TempDirectoryTest, SeparatorOfTheVariableIsNotDoubled) {
  const TemporaryDirectory directory;
  temp_.Set((directory.Path() + "\\").c_str());
  const WideString path = CreateTempSubdirectory(nullptr);
  EXPECT_EQ(path.size(), directory.Path().size() + 1 + 36);
  EXPECT_EQ(ModeOf(NativePath(path)), 0700u);
}

// The words around the new name, which is 36 units long.
void ExpectNotMade(const std::string& temp, const std::string& reason) {
  try {
    CreateTempSubdirectory(nullptr);
    ADD_FAILURE() << "nothing was raised";
  } catch (const EQvException& error) {
    const std::string words = ToUtf8(error.Description());
    const std::string start = "Cannot create the following directory: " + temp + "\\";
    const std::string end = " due to the following error: " + reason;
    ASSERT_EQ(words.size(), start.size() + 36 + end.size()) << words;
    EXPECT_EQ(words.substr(0, start.size()), start);
    EXPECT_TRUE(IsGuidWithoutBraces(error.Description().view().substr(start.size(), 36))) << words;
    EXPECT_EQ(words.substr(start.size() + 36), end);
    EXPECT_EQ(error.Code(), 0);
  }
}

TEST_F(TempDirectoryTest, DirectoryThatCannotBeMadeIsRaisedWithTheReason) {
  const TemporaryDirectory directory;
  temp_.Set(directory.Path("missing").c_str());
  ExpectNotMade(directory.Path("missing"), "No such file or directory");
  temp_.Set(directory.Write("file", "").c_str());
  ExpectNotMade(directory.Path("file"), "Not a directory");
}

TEST_F(TempDirectoryTest, SubdirectoryWithoutTempDirectoryRaisesItsWords) {
  try {
    CreateTempSubdirectory(nullptr);
    ADD_FAILURE() << "nothing was raised";
  } catch (const EQvException& error) {
    EXPECT_EQ(error.Description(),
              u"Failed to get temp directory path. TEMP/TMP environment variable does not exist.");
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
  Say("c:\\\\Program Files\\\\Quorvane");
  EXPECT_EQ(GetHomeDirectory(), u"c:\\Program Files\\Quorvane");
}

TEST_F(HomeDirectoryTest, LongestThatTheReaderHolds) {
  const std::string longest = "/" + std::string(126, 'x') + "\xC3\xA9!";
  Say(longest);
  EXPECT_EQ(GetHomeDirectory().size(), 129u);
  EXPECT_EQ(GetHomeDirectory(), FromUtf8(longest));
  Say(longest + "y");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
}

TEST_F(HomeDirectoryTest, EmptyValueIsEmpty) {
  Say("");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
}

TEST_F(HomeDirectoryTest, MissingAndDamagedFilesGiveEmpty) {
  if (!ReadRegistry().back().entries.empty()) GTEST_SKIP() << "an installation on this machine answers";
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
  directory_.Write("named.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane]\n@=\"/x\"\n");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
  Say("\\x");
  EXPECT_TRUE(GetHomeDirectory().IsEmpty());
}

// An empty one would be taken for the current directory.
TEST_F(HomeDirectoryTest, WithoutMemoryIsAFailureAndNotEmpty) {
  Say("/a/home/directory");
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [] { EXPECT_FALSE(GetHomeDirectory().IsEmpty()); }),
            std::set<std::string>{"_com_error 0x8007000E <null>"});
}

TEST(NewGuidText, BracesAroundANewGuid) {
  const WideString text = NewGuidText();
  ASSERT_EQ(text.size(), 38u);
  EXPECT_EQ(text.view().front(), u'{');
  EXPECT_EQ(text.view().back(), u'}');
  EXPECT_TRUE(IsGuidWithoutBraces(text.view().substr(1, 36))) << ToUtf8(text);
  EXPECT_NE(NewGuidText(), text);
}

}  // namespace
}  // namespace qv
