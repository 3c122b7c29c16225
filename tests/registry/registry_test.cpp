// The layers of the registry: which file is read, which is written, and which values are rejected.
#include "qvscriptwells/registry.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/ordinary_user.h"
#include "fixtures/shown_text.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/thrown.h"
#include "registry/registry_layers.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr char16_t kKey[] = u"own\\key";
constexpr char kUserFile[] = "home/config/quorvane/registry.reg";
constexpr char kAdministratorsFile[] = "etc/quorvane/registry.reg";
constexpr char kInstalledFile[] = "lib/registry.reg";

std::string Saying(const std::string& value) {
  return "[HKEY_LOCAL_MACHINE\\own\\key]\n@=\"" + value + "\"\n";
}

mode_t ModeOf(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

class RegistryTest : public testing::Test {
 protected:
  using Places = std::vector<RegistryPlace>;

  std::string At(const std::string& name) const { return directory_.Path(name); }
  WideString Found() const { return FindInRegistry(all_, u"OWN\\Key"); }
  std::string Write(const WideString& value) const { return WriteToRegistry(all_, kKey, value); }

  // "0x80004005 message"
  static std::string Refusal(const std::function<void()>& action) {
    const std::string thrown = Thrown(action);
    const std::string kind = "_com_error ";
    return thrown.substr(0, kind.size()) == kind ? thrown.substr(kind.size()) : thrown;
  }
  static std::string Writing(const Places& places, const WideString& key, const WideString& value = u"x") {
    return Refusal([&] { WriteToRegistry(places, key, value); });
  }
  static std::string Removing(const Places& places, const WideString& key) {
    return Refusal([&] { RemoveFromRegistry(places, key); });
  }

  TemporaryDirectory directory_;
  const Places lower_ = {{At(kUserFile), RegistryPlaceKind::kUser},
                         {At(kAdministratorsFile), RegistryPlaceKind::kAdministrator},
                         {At(kInstalledFile), RegistryPlaceKind::kInstalled}};
  const Places all_ = {{At("named.reg"), RegistryPlaceKind::kNamed}, lower_[0], lower_[1], lower_[2]};
};

class RegistryEnvironmentTest : public RegistryTest {
 protected:
  static std::vector<std::string> Paths() {
    std::vector<std::string> paths;
    for (const RegistryLayer& layer : ReadRegistry()) paths.push_back(layer.path);
    return paths;
  }

  EnvironmentVariable named_{"QV_REGISTRY", nullptr};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", nullptr};
  EnvironmentVariable home_{"HOME", nullptr};
};

TEST_F(RegistryEnvironmentTest, WithoutVariablesTheAdministratorsAndTheInstalledFileAreThere) {
  ASSERT_EQ(Paths().size(), 2U);
  for (const auto& [path, folder] : {std::pair(Paths()[0], "/etc"), std::pair(Paths()[1], "/lib")}) {
    EXPECT_EQ(path[0], '/');
    EXPECT_NE(path.find(folder), std::string::npos) << path;
    EXPECT_EQ(std::filesystem::path(path).parent_path().filename(), "quorvane");
    EXPECT_EQ(std::filesystem::path(path).filename(), "registry.reg");
  }
}

TEST_F(RegistryEnvironmentTest, FilesAreInTheirOrder) {
  named_.Set("a.reg");
  config_.Set("/config");
  home_.Set("/home/me");
  ASSERT_EQ(Paths().size(), 4U);
  EXPECT_EQ(Paths()[0], "a.reg");
  EXPECT_EQ(Paths()[1], "/config/quorvane/registry.reg");
}

TEST_F(RegistryEnvironmentTest, HomeReplacesTheConfigDirectory) {
  home_.Set("/home/me");
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative/dir"}) {
    config_.Set(value);
    ASSERT_EQ(Paths().size(), 3U);
    EXPECT_EQ(Paths()[0], "/home/me/.config/quorvane/registry.reg");
  }
}

TEST_F(RegistryEnvironmentTest, EmptyAndRelativeVariablesAreLikeNone) {
  named_.Set("");
  config_.Set("");
  for (const char* value : {"", "relative"}) {
    home_.Set(value);
    EXPECT_EQ(Paths().size(), 2U);
  }
}

TEST_F(RegistryEnvironmentTest, ValuesAreWrittenReadAndRemoved) {
  named_.Set(At("named.reg").c_str());
  EXPECT_TRUE(ReadRegistryValue(kKey).IsNull());
  EXPECT_EQ(WriteRegistryValue(kKey, u"c:\\x"), At("named.reg"));
  EXPECT_EQ(ReadRegistryValue(u"OWN\\KEY"), u"c:\\x");
  EXPECT_EQ(RemoveRegistryValue(u"Own\\key"), At("named.reg"));
  EXPECT_TRUE(ReadRegistryValue(kKey).IsNull());
}

TEST_F(RegistryEnvironmentTest, UserFileIsMadeBelowHome) {
  home_.Set(directory_.Path().c_str());
  EXPECT_EQ(WriteRegistryValue(kKey, u"x"), At(".config/quorvane/registry.reg"));
  EXPECT_EQ(directory_.Read(".config/quorvane/registry.reg"), Saying("x"));
}

TEST_F(RegistryEnvironmentTest, DamageIsReportedAndTheFileCountsAsAbsent) {
  named_.Set(directory_.Write("named.reg", "; c\nstray\n").c_str());
  config_.Set(directory_.Path().c_str());
  directory_.Write("quorvane/registry.reg", Saying("user"));
  EXPECT_EQ(ReadRegistryValue(kKey), u"user");
  const std::vector<RegistryLayer> layers = ReadRegistry();
  EXPECT_EQ(layers[0].damage, "line 2: neither a section nor a value nor a comment");
  EXPECT_TRUE(layers[0].entries.empty());
  EXPECT_EQ(layers[1].damage, "");
  ASSERT_EQ(layers[1].entries.size(), 1U);
  EXPECT_EQ(layers[1].entries[0].key, kKey);
  EXPECT_EQ(layers[1].entries[0].value, u"user");
}

TEST_F(RegistryTest, FirstFileThatHasTheKeyDecides) {
  directory_.Write(kInstalledFile, Saying("installed"));
  EXPECT_EQ(Found(), u"installed");
  directory_.Write(kAdministratorsFile, Saying("administrator"));
  EXPECT_EQ(Found(), u"administrator");
  directory_.Write(kUserFile, Saying("user"));
  EXPECT_EQ(Found(), u"user");
  directory_.Write("named.reg", "[HKEY_LOCAL_MACHINE\\other]\n@=\"x\"\n");
  EXPECT_EQ(Found(), u"user");
  Write(nullptr);
  EXPECT_FALSE(Found().IsNull());
  EXPECT_EQ(Found(), u"");
}

TEST_F(RegistryTest, MissingFileIsEmptyAndSound) {
  directory_.Write("file", "");
  for (const char* name : {"missing", "missing/below", "file/below"}) {
    const RegistryLayer layer = ReadRegistryLayer(At(name));
    EXPECT_EQ(layer.path, At(name));
    EXPECT_EQ(layer.damage, "");
    EXPECT_TRUE(layer.entries.empty());
  }
}

TEST_F(RegistryTest, OnlyRegularFilesAreRead) {
  ASSERT_EQ(mkfifo(At("pipe").c_str(), 0600), 0);
  for (const std::string& path : {At("pipe"), directory_.Path(), std::string("/dev/null")})
    EXPECT_EQ(ReadRegistryLayer(path).damage, "Not a regular file");
  std::filesystem::create_symlink("loop", At("loop"));
  EXPECT_EQ(ReadRegistryLayer(At("loop")).damage, "Too many levels of symbolic links");
}

TEST_F(RegistryTest, LongestFileIsOneMebibyteReadAndWritten) {
  const std::string filled = Saying("x") + ";" + std::string(1024UL * 1024 - Saying("x").size() - 1, 'c');
  EXPECT_EQ(ReadRegistryLayer(directory_.Write("named.reg", filled)).damage, "");
  EXPECT_EQ(ReadRegistryLayer(directory_.Write("b.reg", filled + "c")).damage, "Longer than 1 MiB");
  EXPECT_EQ(Writing(all_, u"a"), "0x80004005 " + At("named.reg") + ": It would be longer than 1 MiB");
  EXPECT_EQ(directory_.Read("named.reg"), filled);
}

TEST_F(RegistryTest, NewFileIsReadableForAllAndNothingElseIsLeft) {
  EXPECT_EQ(Write(u"x"), At("named.reg"));
  EXPECT_EQ(directory_.Read("named.reg"), Saying("x"));
  EXPECT_EQ(ModeOf(At("named.reg")), 0644U);
  EXPECT_EQ(directory_.Count(), 1);
}

TEST_F(RegistryTest, ModeOfAnOldFileIsKept) {
  directory_.Write("named.reg", "; c\n");
  ASSERT_EQ(chmod(At("named.reg").c_str(), 0640), 0);
  Write(u"x");
  EXPECT_EQ(ModeOf(At("named.reg")), 0640U);
  EXPECT_EQ(directory_.Read("named.reg"), "; c\n\n" + Saying("x"));
}

TEST_F(RegistryTest, RootLeavesAUsersFileToTheUser) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  const std::string path = directory_.Write("named.reg", "; c\n");
  ASSERT_EQ(chown(path.c_str(), 65534, 65533), 0);
  Write(u"x");
  struct stat facts {};
  ASSERT_EQ(stat(path.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, 65534U);
  EXPECT_EQ(facts.st_gid, 65533U);
}

TEST_F(RegistryTest, NoDescriptorStaysOpen) {
  const auto openOnes = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(all, std::filesystem::directory_iterator());
  };
  const auto before = openOnes();
  Write(u"x");
  EXPECT_EQ(Found(), u"x");
  RemoveFromRegistry(all_, kKey);
  ReadRegistryLayer(directory_.Path());
  EXPECT_EQ(openOnes(), before);
}

TEST_F(RegistryTest, SymbolicLinkStaysUnlessItLeadsNowhere) {
  std::filesystem::create_symlink("dotfiles/mine.reg", At("named.reg"));
  directory_.Write("dotfiles/mine.reg", Saying("old"));
  EXPECT_EQ(Write(u"new"), At("named.reg"));
  EXPECT_TRUE(std::filesystem::is_symlink(At("named.reg")));
  EXPECT_EQ(directory_.Read("dotfiles/mine.reg"), Saying("new"));
  std::filesystem::remove(At("dotfiles/mine.reg"));
  Write(u"newer");
  EXPECT_FALSE(std::filesystem::is_symlink(At("named.reg")));
  EXPECT_EQ(directory_.Read("named.reg"), Saying("newer"));
}

TEST_F(RegistryTest, DirectoriesOfTheUserAreMadeForTheUserOnly) {
  std::filesystem::create_directory(At("home"));
  const mode_t old = umask(0);
  EXPECT_EQ(WriteToRegistry(lower_, kKey, u"x"), At(kUserFile));
  umask(old);
  for (const char* directory : {"home/config", "home/config/quorvane"})
    EXPECT_EQ(ModeOf(At(directory)), 0700U);
  EXPECT_EQ(directory_.Read(kUserFile), Saying("x"));
}

TEST_F(RegistryTest, MissingOrBadHomeIsPassedOver) {
  EXPECT_EQ(WriteToRegistry(lower_, kKey, u"x"), At(kAdministratorsFile));
  EXPECT_FALSE(std::filesystem::exists(At("home")));
  directory_.Write("home", "");
  EXPECT_EQ(WriteToRegistry(lower_, kKey, u"y"), At(kAdministratorsFile));
}

TEST_F(RegistryTest, DirectoriesOfTheAdministratorAreMadeForAll) {
  const mode_t old = umask(022);
  EXPECT_EQ(WriteToRegistry(lower_, kKey, u"x"), At(kAdministratorsFile));
  umask(old);
  for (const char* directory : {"etc", "etc/quorvane"}) EXPECT_EQ(ModeOf(At(directory)), 0755U);
  EXPECT_EQ(ModeOf(At(kAdministratorsFile)), 0644U);
}

// The next installation would undo it.
TEST_F(RegistryTest, InstalledFileIsNeverChanged) {
  directory_.Write(kInstalledFile, Saying("installed"));
  const Places onlyInstalled = {lower_[2]};
  const std::string refused =
      "0x80004005 " + At(kInstalledFile) + ": It belongs to the installation and is never changed";
  EXPECT_EQ(Writing(onlyInstalled, kKey), "0x80004005 No registry file can be written: ");
  EXPECT_EQ(Removing(all_, kKey), refused);
  EXPECT_EQ(Refusal([&] { RemoveKeysFromRegistry(all_, {u"own"}); }), refused);
  EXPECT_EQ(directory_.Read(kInstalledFile), Saying("installed"));
  Write(u"x");
  EXPECT_EQ(RemoveFromRegistry(all_, kKey), At("named.reg"));
  EXPECT_EQ(Found(), u"installed");
}

TEST_F(RegistryTest, NamedFileIsNeverPassedOver) {
  directory_.Write(kAdministratorsFile, "");
  Places places = all_;
  places[0].path = At("missing/named.reg");
  EXPECT_EQ(Writing(places, u"a"), "0x80004005 " + At("missing/named.reg") + ": No such file or directory");
  EXPECT_EQ(directory_.Count(), 1);
}

TEST_F(RegistryTest, WhenNoFileCanBeWrittenEveryReasonIsReported) {
  directory_.Write("home", "");
  directory_.Write("etc", "");
  EXPECT_EQ(Writing(lower_, u"a"), "0x80004005 No registry file can be written: " + At(kUserFile) +
                                       ": Not a directory; " + At(kAdministratorsFile) + ": Not a directory");
}

TEST_F(RegistryTest, FileWithoutTheRightToWriteIsPassedOverUnlessItHidesTheKey) {
  const std::string user = directory_.Write(kUserFile, Saying("old"));
  ASSERT_EQ(chmod(user.c_str(), 0444), 0);
  const OrdinaryUser nobody(directory_.Path());
  EXPECT_EQ(Writing(lower_, kKey), "0x80004005 " + user + ": Permission denied");
  EXPECT_EQ(WriteToRegistry(lower_, u"other", u"x"), At(kAdministratorsFile));
  EXPECT_EQ(directory_.Read(kUserFile), Saying("old"));
}

TEST_F(RegistryTest, DamagedFileStopsWritingAndRemoving) {
  const std::string damaged = "[HKEY_LOCAL_MACHINE\\own\\key]\n@=\"x\n";
  directory_.Write("named.reg", damaged);
  directory_.Write(kInstalledFile, Saying("x"));
  const std::string message = "0x80004005 " + At("named.reg") + ": line 2: the quote is not closed";
  EXPECT_EQ(Writing(all_, u"a"), message);
  EXPECT_EQ(Removing(all_, kKey), message);
  EXPECT_EQ(directory_.Read("named.reg"), damaged);
  EXPECT_EQ(directory_.Read(kInstalledFile), Saying("x"));
}

TEST_F(RegistryTest, PipeInPlaceOfAFileIsNotReplaced) {
  ASSERT_EQ(mkfifo(At("named.reg").c_str(), 0600), 0);
  EXPECT_EQ(Writing(all_, u"a"), "0x80004005 " + At("named.reg") + ": Not a regular file");
  EXPECT_TRUE(std::filesystem::is_fifo(At("named.reg")));
}

TEST_F(RegistryTest, RemovingTakesTheFirstFileThatHasTheKey) {
  directory_.Write(kUserFile, "; c\n" + Saying("user"));
  directory_.Write(kInstalledFile, Saying("installed"));
  EXPECT_EQ(RemoveFromRegistry(all_, u"own\\KEY"), At(kUserFile));
  EXPECT_EQ(directory_.Read(kUserFile), "; c\n");
  EXPECT_EQ(Found(), u"installed");
  EXPECT_FALSE(std::filesystem::exists(At("named.reg")));
  EXPECT_EQ(RemoveFromRegistry(all_, u"own"), "");
  EXPECT_EQ(directory_.Count(), 2);
}

TEST_F(RegistryTest, KeysAndValuesThatNoLineCanHoldAreRefused) {
  const struct {
    WideString key, value;
    const char* message;
  } rows[] = {{u"", u"x", "The key is empty"},
              {nullptr, u"x", "The key is empty"},
              {u"a\n", u"x", "The key holds a control character"},
              {u"a", u"x\r", "The value holds a control character"},
              {u"a", std::u16string_view(u"x\0", 2), "The value holds a control character"},
              {u"a", u"x\u0085", "The value holds a control character"},
              {std::u16string(1, 0xD800), u"x", "The key holds half a character"}};
  for (const auto& row : rows)
    EXPECT_EQ(Writing(all_, row.key, row.value), std::string("0x80070057 ") + row.message);
  EXPECT_EQ(Removing(all_, u""), "0x80070057 The key is empty");
  EXPECT_EQ(Removing(all_, u"\x7f"), "0x80070057 The key holds a control character");
  EXPECT_EQ(directory_.Count(), 0);
}

}  // namespace
}  // namespace qv
