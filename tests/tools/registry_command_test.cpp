// `scriptwells registry`, with files of the test's own in place of the user's.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/tools/fresh_directory.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::Words;

constexpr char kHome[] = "SOFTWARE\\Quorvane\\Quorvane\\HomeDir";

class RegistryCommand : public ::testing::Test {
 protected:
  // The named file and the user's; what is installed holds none of the tests' keys.
  Process Start(const Words& more, const char* output = nullptr) {
    Words words{"registry"};
    words.insert(words.end(), more.begin(), more.end());
    return Process(words, {{"QV_REGISTRY", named_}, {"XDG_CONFIG_HOME", folder_.Path()}}, output);
  }
  Outcome Registry(const Words& more) { return Start(more).Finish(); }

  static void Write(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << content;
  }
  static std::string Read(const std::string& path) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  static bool Holds(const std::string& text, const std::string& piece) {
    return text.find(piece) != std::string::npos;
  }

  testing::FreshDirectory folder_;
  std::string named_ = folder_.Path() + "/named.reg";
  std::string user_ = folder_.Path() + "/quorvane/registry.reg";
};

TEST_F(RegistryCommand, ValueThatIsSetIsTold) {
  const Outcome set = Registry({"set", "home", "/usr/share/quorvane"});
  EXPECT_EQ(set.out, named_ + "\n");
  EXPECT_EQ(set.err, "");
  EXPECT_EQ(set.exit, 0);
  EXPECT_TRUE(
      Holds(Read(named_),
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"/usr/share/quorvane\"\n"));
  for (const char* key : {"home", "HOME", kHome, "software\\quorvane\\quorvane\\homedir"}) {
    const Outcome get = Registry({"get", key});
    EXPECT_EQ(get.out, "/usr/share/quorvane\n") << key;
    EXPECT_EQ(get.err, "");
    EXPECT_EQ(get.exit, 0);
  }
}

TEST_F(RegistryCommand, AnswersAreJsonOnRequest) {
  EXPECT_EQ(Registry({"set", "A\\B", "x \"y\"", "--json"}).out, "{\"file\":\"" + named_ + "\"}\n");
  EXPECT_EQ(Registry({"get", "A\\B", "--json"}).out, "{\"key\":\"A\\\\B\",\"value\":\"x \\\"y\\\"\"}\n");
  EXPECT_EQ(Registry({"remove", "A\\B", "--json"}).out, "{\"file\":\"" + named_ + "\"}\n");
}

TEST_F(RegistryCommand, FirstFileThatHasTheKeyDecides) {
  Write(user_, "[HKEY_LOCAL_MACHINE\\A]\n@=\"user's\"\n[HKEY_LOCAL_MACHINE\\B]\n@=\"b\"\n");
  Write(named_, "[HKEY_LOCAL_MACHINE\\A]\n@=\"named\"\n");
  EXPECT_EQ(Registry({"get", "A"}).out, "named\n");
  EXPECT_EQ(Registry({"get", "B"}).out, "b\n");
}

TEST_F(RegistryCommand, KeyThatNoFileHasIsAFailure) {
  for (const char* verb : {"get", "remove"}) {
    const Outcome outcome = Registry({verb, "No\\Such"});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "scriptwells: no file has the key 'No\\Such'\n");
    EXPECT_EQ(outcome.exit, 1);
  }
  EXPECT_EQ(Registry({"get", "No", "--json"}).err,
            "{\"error\":{\"kind\":\"no such key\",\"message\":\"no file has the key 'No'\",\"exit\":1}}\n");
}

TEST_F(RegistryCommand, RemovedKeyIsGone) {
  Registry({"set", "A", "1"});
  Registry({"set", "B", "2"});
  const Outcome removed = Registry({"remove", "a"});
  EXPECT_EQ(removed.out, named_ + "\n");
  EXPECT_EQ(removed.exit, 0);
  EXPECT_EQ(Registry({"get", "A"}).exit, 1);
  EXPECT_EQ(Registry({"get", "B"}).out, "2\n");
}

TEST_F(RegistryCommand, EmptyValueIsAValue) {
  EXPECT_EQ(Registry({"set", "A", ""}).exit, 0);
  const Outcome get = Registry({"get", "A"});
  EXPECT_EQ(get.out, "\n");
  EXPECT_EQ(get.exit, 0);
}

TEST_F(RegistryCommand, ListTellsEveryFileAndKey) {
  Write(named_, "[HKEY_LOCAL_MACHINE\\A]\n@=\"one\"\n[HKEY_LOCAL_MACHINE\\B]\n@=\"two\"\n");
  const Outcome json = Registry({"list", "--json"});
  EXPECT_EQ(json.exit, 0);
  EXPECT_EQ(json.err, "");
  const std::string start =
      "{\"file\":\"" + named_ +
      "\",\"key\":\"A\",\"name\":null,\"value\":\"one\",\"damage\":null}\n{\"file\":\"" + named_ +
      "\",\"key\":\"B\",\"name\":null,\"value\":\"two\",\"damage\":null}\n{\"file\":\"" + user_ +
      "\",\"key\":null,\"name\":null,\"value\":null,\"damage\":null}\n";
  EXPECT_EQ(json.out.substr(0, start.size()), start);
  const Outcome table = Registry({"list"});
  EXPECT_EQ(table.exit, 0);
  EXPECT_EQ(table.out.substr(0, 4), "FILE");
  EXPECT_TRUE(Holds(table.out, named_ + "  ")) << table.out;
  EXPECT_TRUE(Holds(table.out, " B        two   ")) << table.out;
}

TEST_F(RegistryCommand, ListTellsTextsWithNamesAndKeysWithoutATextOfTheirOwn) {
  Write(named_,
        "[HKEY_LOCAL_MACHINE\\A]\n\"model\"=\"Both\"\n@=\"one\"\n"
        "[HKEY_CLASSES_ROOT\\C]\n\"second\"=\"\"\n");
  const std::string start = "{\"file\":\"" + named_ + "\",";
  const std::string json =
      start + "\"key\":\"A\",\"name\":null,\"value\":\"one\",\"damage\":null}\n" + start +
      "\"key\":\"A\",\"name\":\"model\",\"value\":\"Both\",\"damage\":null}\n" + start +
      "\"key\":\"SOFTWARE\\\\Classes\\\\C\",\"name\":\"second\",\"value\":\"\",\"damage\":"
      "null}\n{\"file\":\"" +
      user_ + "\",";
  EXPECT_EQ(Registry({"list", "--json"}).out.substr(0, json.size()), json);
  const std::string table = Registry({"list"}).out;
  EXPECT_TRUE(Holds(table, " A                         one   ")) << table;
  EXPECT_TRUE(Holds(table, " A                  model  Both  ")) << table;
  EXPECT_TRUE(Holds(table, " SOFTWARE\\Classes\\C second       ")) << table;
}

TEST_F(RegistryCommand, DamagedFileIsToldWithItsLine) {
  Write(named_, "; mine\n[HKEY_LOCAL_MACHINE\\A]\n@=\"one\n");
  Write(user_, "[HKEY_LOCAL_MACHINE\\A]\n@=\"user's\"\n");
  const std::string words = "scriptwells: " + named_ + ": line 3: the quote is not closed\n";
  for (const Words& verb : {Words{"list"}, {"get", "A"}, {"get", "B"}, {"set", "A", "x"}, {"remove", "A"}}) {
    const Outcome outcome = Registry(verb);
    EXPECT_EQ(outcome.err, words) << verb[0];
    EXPECT_EQ(outcome.exit, 6) << verb[0];
  }
  EXPECT_EQ(Registry({"get", "A"}).out, "user's\n");
  EXPECT_EQ(Registry({"get", "A", "--json"}).err, "{\"error\":{\"kind\":\"not run\",\"message\":\"" + named_ +
                                                      ": line 3: the quote is not closed\",\"exit\":6}}\n");
  const std::string first =
      "{\"file\":\"" + named_ +
      "\",\"key\":null,\"name\":null,\"value\":null,\"damage\":\"line 3: the quote is not closed\"}\n";
  EXPECT_EQ(Registry({"list", "--json"}).out.substr(0, first.size()), first);
  EXPECT_EQ(Read(named_), "; mine\n[HKEY_LOCAL_MACHINE\\A]\n@=\"one\n");
}

TEST_F(RegistryCommand, HomeThatTheLibraryWouldNotReadIsWarnedOf) {
  const std::string words =
      "scriptwells: warning: a home directory of more than 129 characters is read as none\n";
  for (const char* key : {"home", kHome, "Software\\quorvane\\Quorvane\\homedir"}) {
    const Outcome outcome = Registry({"set", key, "/" + std::string(129, 'x')});
    EXPECT_EQ(outcome.err, words) << key;
    EXPECT_EQ(outcome.exit, 0);
  }
  EXPECT_EQ(Registry({"set", "home", "/" + std::string(128, 'x')}).err, "");
  EXPECT_EQ(Registry({"set", "other", "/" + std::string(500, 'x')}).err, "");
}

TEST_F(RegistryCommand, KeysAndValuesThatCannotStandInAFileAreRefused) {
  EXPECT_EQ(Registry({"set", "", "x"}).err, "scriptwells: the key is empty\n");
  EXPECT_EQ(Registry({"get", ""}).exit, 6);
  EXPECT_EQ(Registry({"get", "\xFF"}).err, "scriptwells: the key is not valid UTF-8\n");
  EXPECT_EQ(Registry({"set", "a", "\xFF"}).err, "scriptwells: the value is not valid UTF-8\n");
  const Outcome control = Registry({"set", "a", "b\nc"});
  EXPECT_EQ(control.err, "scriptwells: The value holds a control character\n");
  EXPECT_EQ(control.exit, 6);
  EXPECT_FALSE(std::filesystem::exists(named_));
}

TEST_F(RegistryCommand, HomeThatIsNoAbsolutePathIsWarnedOf) {
  const Outcome empty = Registry({"set", "home", ""});
  EXPECT_EQ(empty.err, "scriptwells: warning: an empty home directory is read as none\n");
  EXPECT_EQ(empty.exit, 0);
  for (const char* value : {"share", "./share", "~/share", " /share"})
    EXPECT_EQ(Registry({"set", "home", value}).err,
              "scriptwells: warning: a home directory that does not begin with '/' is looked for below the "
              "current directory of each program\n")
        << value;
  EXPECT_EQ(Registry({"set", "other", ""}).err, "");
  EXPECT_EQ(Registry({"set", "other", "share"}).err, "");
  EXPECT_EQ(Registry({"set", "home", "/"}).err, "");
}

TEST_F(RegistryCommand, RootInFrontOfAKeyMakesNoDifference) {
  EXPECT_EQ(Registry({"set", "HKEY_LOCAL_MACHINE\\A\\B", "1"}).err, "");
  EXPECT_EQ(Read(named_), "[HKEY_LOCAL_MACHINE\\A\\B]\n@=\"1\"\n");
  for (const char* key : {"A\\B", "HKEY_LOCAL_MACHINE\\A\\B", "hkey_local_Machine\\a\\b"})
    EXPECT_EQ(Registry({"get", key}).out, "1\n") << key;
  EXPECT_EQ(Registry({"set", "HKEY_LOCAL_MACHINE\\" + std::string(kHome), "x"}).err.substr(0, 42),
            "scriptwells: warning: a home directory tha");
  EXPECT_EQ(Registry({"remove", "Hkey_Local_Machine\\A\\B"}).exit, 0);
  EXPECT_EQ(Registry({"get", "A\\B"}).exit, 1);
}

TEST_F(RegistryCommand, RootOfTheClassesStandsForTheirKey) {
  EXPECT_EQ(Registry({"set", "HKEY_CLASSES_ROOT\\A.B\\CLSID", "1"}).err, "");
  EXPECT_EQ(Read(named_), "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\A.B\\CLSID]\n@=\"1\"\n");
  for (const char* key :
       {"HKEY_CLASSES_ROOT\\A.B\\CLSID", "hkey_classes_Root\\a.b\\clsid", "SOFTWARE\\Classes\\A.B\\CLSID",
        "HKEY_LOCAL_MACHINE\\software\\classes\\a.b\\clsid"})
    EXPECT_EQ(Registry({"get", key}).out, "1\n") << key;
  EXPECT_EQ(Registry({"get", "hkey_classes_root\\A.B\\CLSID", "--json"}).out,
            "{\"key\":\"SOFTWARE\\\\Classes\\\\A.B\\\\CLSID\",\"value\":\"1\"}\n");
  EXPECT_EQ(Registry({"get", "HKEY_CLASSES_ROOT\\"}).exit, 6);
  EXPECT_EQ(Registry({"remove", "Hkey_Classes_Root\\A.B\\CLSID"}).exit, 0);
  EXPECT_EQ(Registry({"get", "SOFTWARE\\Classes\\A.B\\CLSID"}).exit, 1);
}

TEST_F(RegistryCommand, KeysThatNobodyWouldLookForAreRefused) {
  for (const char* key : {"\\A", "A\\", "A\\\\B", "\\", "HKEY_LOCAL_MACHINE\\\\A"})
    for (const Words& words : {Words{"set", key, "x"}, {"get", key}, {"remove", key}}) {
      const Outcome outcome = Registry(words);
      EXPECT_TRUE(Holds(outcome.err, "' has an empty component: a backslash '\\' stands between two "))
          << outcome.err;
      EXPECT_EQ(outcome.exit, 6) << key;
    }
  const Outcome slash = Registry({"set", "SOFTWARE/Quorvane", "x"});
  EXPECT_EQ(slash.err,
            "scriptwells: the key 'SOFTWARE/Quorvane' has '/'; the components of a key are separated by a "
            "backslash '\\'\n");
  EXPECT_EQ(slash.exit, 6);
  EXPECT_EQ(Registry({"get", "hkey_local_machine\\"}).err, "scriptwells: the key is empty\n");
  EXPECT_FALSE(std::filesystem::exists(named_));
  EXPECT_EQ(Registry({"set", "A/B\\C", "x"}).exit, 0);
}

TEST_F(RegistryCommand, JsonBeforeTheVerbIsJson) {
  Write(named_, "[HKEY_LOCAL_MACHINE\\A]\n@=\"one\"\n");
  EXPECT_EQ(Registry({"--json", "get", "A"}).out, "{\"key\":\"A\",\"value\":\"one\"}\n");
  EXPECT_EQ(Registry({"get"}).err, "scriptwells: KEY is required; try 'scriptwells registry get --help'\n");
}

TEST_F(RegistryCommand, MissingVerbIsAUsageFailure) {
  const Outcome outcome = Registry({});
  EXPECT_EQ(outcome.err,
            "scriptwells: no registry command given (get, set, remove or list); try 'scriptwells registry "
            "--help'\n");
  EXPECT_EQ(outcome.exit, 2);
}

TEST_F(RegistryCommand, OutputThatNobodyReadsEndsSilently) {
  // More than a pipe holds.
  Write(named_, "[HKEY_LOCAL_MACHINE\\A]\n@=\"" + std::string(200000, 'x') + "\"\n");
  Process process({"registry", "list", "--json"}, {{"QV_REGISTRY", named_}});
  process.CloseOutput();
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 6);
}

TEST_F(RegistryCommand, OutputThatCannotBeWrittenIsALocalFailure) {
  const Outcome outcome = Start({"list"}, "/dev/full").Finish();
  EXPECT_EQ(outcome.err, "scriptwells: cannot write to standard output\n");
  EXPECT_EQ(outcome.exit, 6);
}

}  // namespace
}  // namespace qv::cli
