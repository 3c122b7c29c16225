// `scriptwells registry` with the test's own files: the one that QV_REGISTRY names, and the user's.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

constexpr char kHome[] = R"(SOFTWARE\Quorvane\Quorvane\HomeDir)";
const std::string kRoot = "HKEY_LOCAL_MACHINE\\";

// A section of a registry file.
std::string Section(const std::string& key, const std::string& value) {
  return "[" + kRoot + key + "]\n@=\"" + value + "\"\n";
}

class RegistryCommand : public ::testing::Test {
 protected:
  Tool Command(const std::string& line, const Words& more = {}) const {
    return Tool("registry " + line, more).Set("QV_REGISTRY", named_).Set("XDG_CONFIG_HOME", folder_.Path());
  }
  Outcome Registry(const std::string& line, const Words& more = {}) const {
    return Command(line, more).Run();
  }
  // All keys have this value.
  void ExpectValues(const std::vector<std::string>& keys, const std::string& value) const {
    for (const std::string& key : keys) Registry("get", {key}).Succeeds(value + "\n");
  }
  void ExpectMissing(const std::string& key) const { EXPECT_EQ(Registry("get", {key}).exit, 1) << key; }
  void WriteNamed(const std::string& content) const { folder_.Write("named.reg", content); }
  void WriteUsers(const std::string& content) const { folder_.Write("quorvane/registry.reg", content); }
  std::string Named() const { return folder_.Read("named.reg"); }

  TemporaryDirectory folder_;
  std::string named_ = folder_.Path("named.reg");
  std::string user_ = folder_.Path("quorvane/registry.reg");
  // Lines of `list --json` begin like this.
  std::string start_ = R"({"file":")" + named_ + R"(","key":)";
};

TEST_F(RegistryCommand, ValueIsReadUnderEveryFormOfItsKey) {
  Registry("set home /usr/share/quorvane").Succeeds(named_ + "\n");
  EXPECT_TRUE(Holds(Named(), Section(kHome, "/usr/share/quorvane")));
  ExpectValues({"home", "HOME", kHome, R"(software\quorvane\quorvane\homedir)"}, "/usr/share/quorvane");
  WriteUsers(Section("A", "user's") + Section("B", "b"));
  WriteNamed(Section("A", "named"));
  EXPECT_EQ(Registry("get A").out, "named\n");
  EXPECT_EQ(Registry("get B").out, "b\n");
}

TEST_F(RegistryCommand, ResultsAsJson) {
  EXPECT_EQ(Registry("set A\\B 'x \"y\"' --json").out, "{\"file\":\"" + named_ + "\"}\n");
  EXPECT_EQ(Registry("get A\\B --json").out, R"({"key":"A\\B","value":"x \"y\""})"
                                             "\n");
  EXPECT_EQ(Registry("remove A\\B --json").out, "{\"file\":\"" + named_ + "\"}\n");
  WriteNamed(Section("A", "one"));
  EXPECT_EQ(Registry("--json get A").out, "{\"key\":\"A\",\"value\":\"one\"}\n");
}

TEST_F(RegistryCommand, KeyOfNoFileIsAFailure) {
  for (const char* verb : {"get", "remove"})
    Registry(verb, {"No\\Such"}).Fails(1, "no file has the key 'No\\Such'");
  EXPECT_EQ(Registry("get No --json").err,
            R"({"error":{"kind":"no such key","message":"no file has the key 'No'","exit":1}})"
            "\n");
  Registry("set A 1");
  Registry("set B 2");
  Registry("remove a").Succeeds(named_ + "\n");
  ExpectMissing("A");
  EXPECT_EQ(Registry("get B").out, "2\n");
  EXPECT_EQ(Registry("set A ''").exit, 0);
  Registry("get A").Succeeds("\n");
}

TEST_F(RegistryCommand, ListHasEveryFileAndKey) {
  WriteNamed(Section("A", "one") + Section("B", "two"));
  const Outcome json = Registry("list --json");
  EXPECT_EQ(json.exit, 0);
  EXPECT_EQ(json.err, "");
  const std::string lines = start_ + R"("A","name":null,"value":"one","damage":null})" + "\n" + start_ +
                            R"("B","name":null,"value":"two","damage":null})" + "\n{\"file\":\"" + user_ +
                            R"(","key":null,"name":null,"value":null,"damage":null})" + "\n";
  EXPECT_EQ(json.out.substr(0, lines.size()), lines);
  const Outcome table = Registry("list");
  EXPECT_EQ(table.exit, 0);
  EXPECT_EQ(table.out.substr(0, 4), "FILE");
  EXPECT_TRUE(Holds(table.out, named_ + "  ")) << table.out;
  EXPECT_TRUE(Holds(table.out, " B        two   ")) << table.out;
}

TEST_F(RegistryCommand, ListHasTextsWithNames) {
  WriteNamed("[" + kRoot + "A]\n\"model\"=\"Both\"\n@=\"one\"\n[HKEY_CLASSES_ROOT\\C]\n\"second\"=\"\"\n");
  const std::string lines = start_ + R"("A","name":null,"value":"one","damage":null})" + "\n" + start_ +
                            R"("A","name":"model","value":"Both","damage":null})" + "\n" + start_ +
                            R"("SOFTWARE\\Classes\\C","name":"second","value":"","damage":null})" +
                            "\n{\"file\":\"" + user_ + "\",";
  EXPECT_EQ(Registry("list --json").out.substr(0, lines.size()), lines);
  const std::string table = Registry("list").out;
  for (const char* part : {" A                         one   ", " A                  model  Both  ",
                           " SOFTWARE\\Classes\\C second       "})
    EXPECT_TRUE(Holds(table, part)) << table;
}

TEST_F(RegistryCommand, DamagedFileIsReportedWithItsLine) {
  const std::string damaged = "; mine\n[" + kRoot + "A]\n@=\"one\n";
  WriteNamed(damaged);
  WriteUsers(Section("A", "user's"));
  for (const char* line : {"list", "get A", "get B", "set A x", "remove A"}) {
    const Outcome outcome = Registry(line);
    EXPECT_EQ(outcome.err, "scriptwells: " + named_ + ": line 3: the quote is not closed\n") << line;
    EXPECT_EQ(outcome.exit, 6) << line;
  }
  EXPECT_EQ(Registry("get A").out, "user's\n");
  EXPECT_EQ(Registry("get A --json").err, "{\"error\":{\"kind\":\"not run\",\"message\":\"" + named_ +
                                              ": line 3: the quote is not closed\",\"exit\":6}}\n");
  const std::string first =
      start_ + R"(null,"name":null,"value":null,"damage":"line 3: the quote is not closed"})" + "\n";
  EXPECT_EQ(Registry("list --json").out.substr(0, first.size()), first);
  EXPECT_EQ(Named(), damaged);
}

TEST_F(RegistryCommand, UnusableHomeGetsAWarning) {
  for (const char* key : {"home", kHome, R"(Software\quorvane\Quorvane\homedir)"})
    Registry("set", {key, "/" + std::string(129, 'x')})
        .Succeeds(named_ + "\n", "warning: a home directory of more than 129 characters is read as none");
  Registry("set home ''").Succeeds(named_ + "\n", "warning: an empty home directory is read as none");
  for (const char* value : {"share", "./share", "~/share", " /share"})
    EXPECT_EQ(Registry("set home", {value}).err,
              "scriptwells: warning: a home directory that does not begin with '/' is looked for below the "
              "current directory of each program\n")
        << value;
  EXPECT_EQ(Registry("set", {kRoot + kHome, "x"}).err.substr(0, 42),
            "scriptwells: warning: a home directory tha");
  for (const Words& other : {Words{"home", "/" + std::string(128, 'x')},
                             {"other", "/" + std::string(500, 'x')},
                             {"other", ""},
                             {"other", "share"},
                             {"home", "/"}})
    EXPECT_EQ(Registry("set", other).err, "") << other[0] << " " << other[1];
}

TEST_F(RegistryCommand, KeysAndValuesThatAFileCannotHoldAreRejected) {
  const std::pair<Words, const char*> rows[] = {
      {{"set", "", "x"}, "the key is empty"},
      {{"get", ""}, "the key is empty"},
      {{"get", "hkey_local_machine\\"}, "the key is empty"},
      {{"get", "\xFF"}, "the key is not valid UTF-8"},
      {{"set", "a", "\xFF"}, "the value is not valid UTF-8"},
      {{"set", "a", "b\nc"}, "The value holds a control character"},
      {{"set", "SOFTWARE/Quorvane", "x"},
       "the key 'SOFTWARE/Quorvane' has '/'; the components of a key are separated by a backslash '\\'"}};
  for (const auto& [words, message] : rows) Registry("", words).Fails(6, message);
  for (const char* key : {"\\A", "A\\", "A\\\\B", "\\", "HKEY_LOCAL_MACHINE\\\\A"})
    for (const Words& words : {Words{"set", key, "x"}, {"get", key}, {"remove", key}}) {
      const Outcome outcome = Registry("", words);
      EXPECT_TRUE(Holds(outcome.err, "' has an empty component: a backslash '\\' separates two components"))
          << outcome.err;
      EXPECT_EQ(outcome.exit, 6) << key;
    }
  EXPECT_FALSE(std::filesystem::exists(named_));
  EXPECT_EQ(Registry("set A/B\\C x").exit, 0);
}

TEST_F(RegistryCommand, RootsOfKeysAreUnderstood) {
  EXPECT_EQ(Registry("set HKEY_LOCAL_MACHINE\\A\\B 1").err, "");
  EXPECT_EQ(Named(), Section("A\\B", "1"));
  ExpectValues({"A\\B", "HKEY_LOCAL_MACHINE\\A\\B", "hkey_local_Machine\\a\\b"}, "1");
  EXPECT_EQ(Registry("remove Hkey_Local_Machine\\A\\B").exit, 0);
  ExpectMissing("A\\B");
  EXPECT_EQ(Registry("set HKEY_CLASSES_ROOT\\A.B\\CLSID 1").err, "");
  EXPECT_EQ(Named(), Section("SOFTWARE\\Classes\\A.B\\CLSID", "1"));
  ExpectValues({"HKEY_CLASSES_ROOT\\A.B\\CLSID", "hkey_classes_Root\\a.b\\clsid",
                R"(SOFTWARE\Classes\A.B\CLSID)", R"(HKEY_LOCAL_MACHINE\software\classes\a.b\clsid)"},
               "1");
  EXPECT_EQ(Registry("get hkey_classes_root\\A.B\\CLSID --json").out,
            R"({"key":"SOFTWARE\\Classes\\A.B\\CLSID","value":"1"})"
            "\n");
  EXPECT_EQ(Registry("get HKEY_CLASSES_ROOT\\").exit, 6);
  EXPECT_EQ(Registry("remove Hkey_Classes_Root\\A.B\\CLSID").exit, 0);
  ExpectMissing(R"(SOFTWARE\Classes\A.B\CLSID)");
}

TEST_F(RegistryCommand, UsageFailuresNameTheHelp) {
  Registry("get").Fails(2, "KEY is required; try 'scriptwells registry get --help'");
  Registry("").Fails(
      2, "no registry command given (get, set, remove or list); try 'scriptwells registry --help'");
}

TEST_F(RegistryCommand, OutputThatCannotBeWrittenIsALocalFailure) {
  Command("list").WriteTo("/dev/full").Fails(6, "cannot write to standard output");
  WriteNamed(Section("A", std::string(200000, 'x')));  // more than a pipe holds
  Process process(Tool("registry list --json").Set("QV_REGISTRY", named_));
  process.CloseOutput();
  process.Finish().Fails(6, "");
}

}  // namespace
}  // namespace qv::cli
