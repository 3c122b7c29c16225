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

using std::string_literals::operator""s;

constexpr const char* kOwnKey = "[HKEY_LOCAL_MACHINE\\own\\key]\n";

std::string Saying(const std::string& value) {
  return kOwnKey + ("@=\"" + value) + "\"\n";
}

mode_t ModeOf(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

// The failure of a writing or removing as "0x80004005 words".
std::string Refusal(const std::function<void()>& action) {
  const std::string thrown = Thrown(action);
  const std::string kind = "_com_error ";
  return thrown.substr(0, kind.size()) == kind ? thrown.substr(kind.size()) : thrown;
}

class RegistryTest : public testing::Test {
 protected:
  std::vector<RegistryPlace> Places() const {
    return {{At("named.reg"), RegistryPlaceKind::kNamed},
            {At("home/config/quorvane/registry.reg"), RegistryPlaceKind::kUser},
            {At("share/registry.reg"), RegistryPlaceKind::kInstalled}};
  }
  // Without the file that is named.
  std::vector<RegistryPlace> LowerPlaces() const {
    std::vector<RegistryPlace> places = Places();
    places.erase(places.begin());
    return places;
  }
  std::string At(const std::string& name) const { return directory_.Path(name); }
  WideString Found() const { return FindInRegistry(Places(), u"OWN\\Key"); }

  TemporaryDirectory directory_;
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

TEST_F(RegistryEnvironmentTest, WithoutVariablesOnlyTheInstalledFileIsThere) {
  ASSERT_EQ(Paths().size(), 1u);
  const std::string end = "/share/quorvane/registry.reg";
  const std::string path = Paths()[0];
  ASSERT_GT(path.size(), end.size());
  EXPECT_EQ(path.substr(path.size() - end.size()), end);
  EXPECT_EQ(path[0], '/');
}

TEST_F(RegistryEnvironmentTest, FilesStandInTheirOrder) {
  named_.Set("a.reg");
  config_.Set("/config");
  home_.Set("/home/me");
  ASSERT_EQ(Paths().size(), 3u);
  EXPECT_EQ(Paths()[0], "a.reg");
  EXPECT_EQ(Paths()[1], "/config/quorvane/registry.reg");
}

TEST_F(RegistryEnvironmentTest, HomeStandsInForTheConfigDirectory) {
  home_.Set("/home/me");
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative/dir"}) {
    config_.Set(value);
    ASSERT_EQ(Paths().size(), 2u);
    EXPECT_EQ(Paths()[0], "/home/me/.config/quorvane/registry.reg");
  }
}

TEST_F(RegistryEnvironmentTest, EmptyAndRelativeVariablesAreLikeNone) {
  named_.Set("");
  config_.Set("");
  for (const char* value : {"", "relative"}) {
    home_.Set(value);
    EXPECT_EQ(Paths().size(), 1u);
  }
}

TEST_F(RegistryEnvironmentTest, ValuesAreWrittenReadAndRemoved) {
  named_.Set(At("named.reg").c_str());
  EXPECT_TRUE(ReadRegistryValue(u"own\\key").IsNull());
  EXPECT_EQ(WriteRegistryValue(u"own\\key", u"c:\\x"), At("named.reg"));
  EXPECT_EQ(ReadRegistryValue(u"OWN\\KEY"), u"c:\\x");
  EXPECT_EQ(RemoveRegistryValue(u"Own\\key"), At("named.reg"));
  EXPECT_TRUE(ReadRegistryValue(u"own\\key").IsNull());
}

TEST_F(RegistryEnvironmentTest, UserFileIsMadeBelowHome) {
  home_.Set(directory_.Path().c_str());
  EXPECT_EQ(WriteRegistryValue(u"own\\key", u"x"), At(".config/quorvane/registry.reg"));
  EXPECT_EQ(directory_.Read(".config/quorvane/registry.reg"), Saying("x"));
}

TEST_F(RegistryEnvironmentTest, DamageIsToldAndTheFileCountsAsAbsent) {
  named_.Set(directory_.Write("named.reg", "; c\nstray\n").c_str());
  config_.Set(directory_.Path().c_str());
  directory_.Write("quorvane/registry.reg", Saying("user"));
  EXPECT_EQ(ReadRegistryValue(u"own\\key"), u"user");
  const std::vector<RegistryLayer> layers = ReadRegistry();
  EXPECT_EQ(layers[0].damage, "line 2: neither a section nor a value nor a comment");
  EXPECT_TRUE(layers[0].entries.empty());
  EXPECT_EQ(layers[1].damage, "");
  ASSERT_EQ(layers[1].entries.size(), 1u);
  EXPECT_EQ(layers[1].entries[0].key, u"own\\key");
  EXPECT_EQ(layers[1].entries[0].value, u"user");
}

TEST_F(RegistryTest, FirstFileThatHasTheKeyDecides) {
  directory_.Write("share/registry.reg", Saying("installed"));
  EXPECT_EQ(Found(), u"installed");
  directory_.Write("home/config/quorvane/registry.reg", Saying("user"));
  EXPECT_EQ(Found(), u"user");
  directory_.Write("named.reg", "[HKEY_LOCAL_MACHINE\\other]\n@=\"x\"\n");
  EXPECT_EQ(Found(), u"user");
  directory_.Write("named.reg", Saying(""));
  EXPECT_FALSE(Found().IsNull());
  EXPECT_EQ(Found(), u"");
}

TEST_F(RegistryTest, FileThatIsNotThereIsEmptyAndSound) {
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
  EXPECT_EQ(ReadRegistryLayer(At("pipe")).damage, "Not a regular file");
  EXPECT_EQ(ReadRegistryLayer(directory_.Path()).damage, "Not a regular file");
  EXPECT_EQ(ReadRegistryLayer("/dev/null").damage, "Not a regular file");
}

TEST_F(RegistryTest, LoopOfLinksIsDamage) {
  std::filesystem::create_symlink("loop", At("loop"));
  EXPECT_EQ(ReadRegistryLayer(At("loop")).damage, "Too many levels of symbolic links");
}

TEST_F(RegistryTest, LongestFileIsOneMebibyte) {
  const std::string text = Saying("x");
  const std::string filled = text + ";" + std::string(1024 * 1024 - text.size() - 1, 'c');
  EXPECT_EQ(ReadRegistryLayer(directory_.Write("a.reg", filled)).damage, "");
  EXPECT_EQ(ReadRegistryLayer(directory_.Write("b.reg", filled + "c")).damage, "Longer than 1 MiB");
}

TEST_F(RegistryTest, FileDoesNotGrowBeyondWhatIsRead) {
  const std::string filled = ";" + std::string(1024 * 1024 - 1, 'c');
  directory_.Write("named.reg", filled);
  EXPECT_EQ(Refusal([&] { WriteToRegistry(Places(), u"a", u"x"); }),
            "0x80004005 " + At("named.reg") + ": It would be longer than 1 MiB");
  EXPECT_EQ(directory_.Read("named.reg"), filled);
}

TEST_F(RegistryTest, NewFileIsReadableForAllAndNothingElseIsLeft) {
  EXPECT_EQ(WriteToRegistry(Places(), u"own\\key", u"x"), At("named.reg"));
  EXPECT_EQ(directory_.Read("named.reg"), Saying("x"));
  EXPECT_EQ(ModeOf(At("named.reg")), 0644u);
  EXPECT_EQ(directory_.Count(), 1);
}

TEST_F(RegistryTest, ModeOfAnOldFileIsKept) {
  directory_.Write("named.reg", "; c\n");
  ASSERT_EQ(chmod(At("named.reg").c_str(), 0640), 0);
  WriteToRegistry(Places(), u"own\\key", u"x");
  EXPECT_EQ(ModeOf(At("named.reg")), 0640u);
  EXPECT_EQ(directory_.Read("named.reg"), "; c\n\n" + Saying("x"));
}

TEST_F(RegistryTest, RootLeavesAUsersFileToTheUser) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  const std::string path = directory_.Write("named.reg", "; c\n");
  ASSERT_EQ(chown(path.c_str(), 65534, 65533), 0);
  WriteToRegistry(Places(), u"own\\key", u"x");
  struct stat facts {};
  ASSERT_EQ(stat(path.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_uid, 65534u);
  EXPECT_EQ(facts.st_gid, 65533u);
}

TEST_F(RegistryTest, NoDescriptorStaysOpen) {
  const auto openOnes = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(all, std::filesystem::directory_iterator());
  };
  const auto before = openOnes();
  WriteToRegistry(Places(), u"own\\key", u"x");
  EXPECT_EQ(Found(), u"x");
  RemoveFromRegistry(Places(), u"own\\key");
  ReadRegistryLayer(directory_.Path());
  EXPECT_EQ(openOnes(), before);
}

TEST_F(RegistryTest, SymbolicLinkStaysAndItsFileIsWritten) {
  directory_.Write("dotfiles/mine.reg", Saying("old"));
  std::filesystem::create_symlink("dotfiles/mine.reg", At("named.reg"));
  EXPECT_EQ(WriteToRegistry(Places(), u"own\\key", u"new"), At("named.reg"));
  EXPECT_TRUE(std::filesystem::is_symlink(At("named.reg")));
  EXPECT_EQ(directory_.Read("dotfiles/mine.reg"), Saying("new"));
}

TEST_F(RegistryTest, LinkThatLeadsNowhereIsReplaced) {
  std::filesystem::create_symlink("missing", At("named.reg"));
  WriteToRegistry(Places(), u"own\\key", u"new");
  EXPECT_FALSE(std::filesystem::is_symlink(At("named.reg")));
  EXPECT_EQ(directory_.Read("named.reg"), Saying("new"));
}

TEST_F(RegistryTest, DirectoriesOfTheUserAreMadeForTheUserOnly) {
  std::filesystem::create_directory(At("home"));
  const mode_t old = umask(0);
  EXPECT_EQ(WriteToRegistry(LowerPlaces(), u"own\\key", u"x"), At("home/config/quorvane/registry.reg"));
  umask(old);
  EXPECT_EQ(ModeOf(At("home/config")), 0700u);
  EXPECT_EQ(ModeOf(At("home/config/quorvane")), 0700u);
  EXPECT_EQ(directory_.Read("home/config/quorvane/registry.reg"), Saying("x"));
}

TEST_F(RegistryTest, HomeItselfIsNotMadeAndTheNextFileIsWritten) {
  std::filesystem::create_directory(At("share"));
  EXPECT_EQ(WriteToRegistry(LowerPlaces(), u"own\\key", u"x"), At("share/registry.reg"));
  EXPECT_FALSE(std::filesystem::exists(At("home")));
}

TEST_F(RegistryTest, HomeThatIsNoDirectoryIsPassedOver) {
  directory_.Write("home", "");
  std::filesystem::create_directory(At("share"));
  EXPECT_EQ(WriteToRegistry(LowerPlaces(), u"own\\key", u"x"), At("share/registry.reg"));
}

TEST_F(RegistryTest, NamedFileIsNeverPassedOver) {
  std::filesystem::create_directory(At("share"));
  std::vector<RegistryPlace> places = Places();
  places[0].path = At("missing/named.reg");
  EXPECT_EQ(Refusal([&] { WriteToRegistry(places, u"a", u"x"); }),
            "0x80004005 " + At("missing/named.reg") + ": No such file or directory");
  EXPECT_EQ(directory_.Count(), 1);
}

TEST_F(RegistryTest, WhenNoFileCanBeWrittenEveryReasonIsTold) {
  directory_.Write("home", "");
  EXPECT_EQ(Refusal([&] { WriteToRegistry(LowerPlaces(), u"a", u"x"); }),
            "0x80004005 No registry file can be written: " + At("home/config/quorvane/registry.reg") +
                ": Not a directory; " + At("share/registry.reg") + ": No such file or directory");
}

TEST_F(RegistryTest, FileWithoutTheRightToWriteIsPassedOverUnlessItHidesTheKey) {
  const std::string user = directory_.Write("home/config/quorvane/registry.reg", Saying("old"));
  std::filesystem::create_directory(At("share"));
  ASSERT_EQ(chmod(user.c_str(), 0444), 0);
  const OrdinaryUser nobody(directory_.Path());
  EXPECT_EQ(Refusal([&] { WriteToRegistry(LowerPlaces(), u"own\\key", u"x"); }),
            "0x80004005 " + user + ": Permission denied");
  EXPECT_EQ(WriteToRegistry(LowerPlaces(), u"other", u"x"), At("share/registry.reg"));
  EXPECT_EQ(directory_.Read("home/config/quorvane/registry.reg"), Saying("old"));
}

TEST_F(RegistryTest, DamagedFileStopsWritingAndRemoving) {
  directory_.Write("named.reg", kOwnKey + "@=\"x\n"s);
  directory_.Write("share/registry.reg", Saying("x"));
  const std::string words = "0x80004005 " + At("named.reg") + ": line 2: the quote is not closed";
  EXPECT_EQ(Refusal([&] { WriteToRegistry(Places(), u"a", u"x"); }), words);
  EXPECT_EQ(Refusal([&] { RemoveFromRegistry(Places(), u"own\\key"); }), words);
  EXPECT_EQ(directory_.Read("named.reg"), kOwnKey + "@=\"x\n"s);
  EXPECT_EQ(directory_.Read("share/registry.reg"), Saying("x"));
}

TEST_F(RegistryTest, PipeInPlaceOfAFileIsNotReplaced) {
  ASSERT_EQ(mkfifo(At("named.reg").c_str(), 0600), 0);
  EXPECT_EQ(Refusal([&] { WriteToRegistry(Places(), u"a", u"x"); }),
            "0x80004005 " + At("named.reg") + ": Not a regular file");
  EXPECT_TRUE(std::filesystem::is_fifo(At("named.reg")));
}

TEST_F(RegistryTest, RemovingTakesTheFirstFileThatHasTheKey) {
  directory_.Write("home/config/quorvane/registry.reg", "; c\n" + Saying("user"));
  directory_.Write("share/registry.reg", Saying("installed"));
  EXPECT_EQ(RemoveFromRegistry(Places(), u"own\\KEY"), At("home/config/quorvane/registry.reg"));
  EXPECT_EQ(directory_.Read("home/config/quorvane/registry.reg"), "; c\n");
  EXPECT_EQ(Found(), u"installed");
  EXPECT_FALSE(std::filesystem::exists(At("named.reg")));
}

TEST_F(RegistryTest, RemovingAKeyThatNoFileHasTellsSo) {
  directory_.Write("share/registry.reg", Saying("installed"));
  EXPECT_EQ(RemoveFromRegistry(Places(), u"own"), "");
  EXPECT_EQ(directory_.Count(), 1);
}

TEST_F(RegistryTest, KeysAndValuesThatNoLineCanHoldAreRefused) {
  const auto writing = [this](const WideString& key, const WideString& value) {
    return Refusal([&] { WriteToRegistry(Places(), key, value); });
  };
  EXPECT_EQ(writing(u"", u"x"), "0x80070057 The key is empty");
  EXPECT_EQ(writing(nullptr, u"x"), "0x80070057 The key is empty");
  EXPECT_EQ(writing(u"a\n", u"x"), "0x80070057 The key holds a control character");
  EXPECT_EQ(writing(u"a", u"x\r"), "0x80070057 The value holds a control character");
  EXPECT_EQ(writing(u"a", std::u16string_view(u"x\0", 2)), "0x80070057 The value holds a control character");
  EXPECT_EQ(writing(u"a", u"x\u0085"), "0x80070057 The value holds a control character");
  EXPECT_EQ(writing(std::u16string(1, 0xD800), u"x"), "0x80070057 The key holds half a character");
  EXPECT_EQ(Refusal([&] { RemoveFromRegistry(Places(), u""); }), "0x80070057 The key is empty");
  EXPECT_EQ(Refusal([&] { RemoveFromRegistry(Places(), u"\x7f"); }),
            "0x80070057 The key holds a control character");
  EXPECT_EQ(directory_.Count(), 0);
}

TEST_F(RegistryTest, NullValueIsWrittenAsEmptyText) {
  WriteToRegistry(Places(), u"own\\key", nullptr);
  EXPECT_FALSE(Found().IsNull());
  EXPECT_EQ(directory_.Read("named.reg"), Saying(""));
}

}  // namespace
}  // namespace qv
