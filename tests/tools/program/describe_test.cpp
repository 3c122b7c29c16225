// `scriptwells describe`: the members of objects, and suggestions for unknown names.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/tools/refusal.h"
#include "tests/tools/words.h"
#include "tools/commands.h"
#include "tools/output/describe_text.h"
#include "tools/report/typed_name.h"

namespace qv::cli {
namespace {

std::string Described(const std::string& object, bool json = false) {
  std::ostringstream out;
  DescribeOptions options;
  options.object = object;
  options.json = json;
  EXPECT_EQ(DescribeCommand(options, out), ExitStatus::kOk);
  return out.str();
}

// The message for each object, after "no member ".
void ExpectRefusals(const std::vector<std::pair<std::string, std::string>>& rows) {
  for (const auto& [object, message] : rows)
    EXPECT_EQ(testing::RefusalOf([name = object] { Described(name); }, ExitStatus::kUsage),
              "no member " + message);
}

TEST(Describe, OneMemberOrAccessor) {
  EXPECT_EQ(Described("Parameters.Add"),
            "IParameters {316b19ba-5a67-4c03-ac5c-877bc61d0b37}\n"
            "ID KIND   MEMBER                     RESULT\n"
            "1  method Add(key: text, value: any) object IParameter\n");
  EXPECT_EQ(Described("duration.SEC"),
            "IDuration {e279f37a-fbe2-4860-8e6f-ff7df69e5a23}\n"
            "ID KIND  MEMBER                  RESULT\n"
            "8  read  get_Sec()               double\n"
            "8  write put_Sec(RetVal: double) \n");
  EXPECT_EQ(Described("IQvScriptwells.put_proxy"),
            "IQvScriptwells {8a8a22af-307b-4295-bed8-6981b0f0d6fb}\n"
            "ID KIND  MEMBER                 RESULT\n"
            "8  write put_Proxy(proxy: text) \n");
}

TEST(Describe, OneObjectOrAllTen) {
  EXPECT_TRUE(testing::Holds(Described("ConnectionModel"),
                             "Execute(scriptLanguage: text, script: text, parameters: object IParameters)"));
  const std::string all = Described("");
  for (const char* name :
       {"IQvScriptwells {", "IQvClientServiceRaw {", "IConnectionModel {", "IParameters {", "IParameter {",
        "IConnectionString {", "IConnectionStringRaw {", "IAttachedFile {", "IDuration {", "IUrl {"})
    EXPECT_TRUE(testing::Holds(all, name)) << name;
}

TEST(Describe, UnknownNameGetsASuggestion) {
  ExpectRefusals({{"Parameters.Ad", "Ad; did you mean Add?"},
                  {"ConnectionModel.Excute", "Excute; did you mean Execute?"},
                  {"Paramters", "Paramters; did you mean Parameters?"},
                  {"IParamters", "IParamters; did you mean Parameters?"},
                  {"Duration.get_Yaer", "get_Yaer; did you mean get_Year?"},
                  {"Duration.Yaer", "Yaer; did you mean Year?"},
                  {"Url.get_\nUrl", "get_ Url; did you mean get_Url?"},
                  {"Parameters.Xyzzy", "Xyzzy"},
                  {"Parameters.A", "A"},
                  {"Nonsense.Add", "Nonsense"},
                  {"Url.\nx", " x"},
                  // Another object has it.
                  {"Parameters.Init", "Init; did you mean QvClientServiceRaw.Init?"},
                  {"parameters.init", "init; did you mean QvClientServiceRaw.Init?"},
                  {"SetValues", "SetValues; did you mean Parameter.SetValues?"},
                  {"Url.get_Sec", "get_Sec; did you mean Duration.get_Sec?"},
                  {"Excute", "Excute; did you mean ConnectionModel.Execute?"},
                  {"Url.Excute", "Excute; did you mean ConnectionModel.Execute?"},
                  {"Url.sec", "sec; did you mean Duration.Sec?"}});
}

TEST(Describe, LongNameIsCut) {
  const std::string sixty(60, 'q');
  const std::string rest(59, 'q');
  ExpectRefusals({{sixty, sixty},
                  {sixty + "q", sixty + "..."},
                  {std::string(100000, 'q') + ".x", sixty + "..."},
                  {"Url." + rest + "\xC3\xA9s", rest + "\xC3\xA9..."}});
}

TEST(Describe, JsonHasNamesIdsAndTags) {
  using nlohmann::json;
  const json one = json::parse(Described("IParameter", true))["interfaces"][0];
  EXPECT_EQ(one["name"], "IParameter");
  EXPECT_EQ(one["iid"], "9d152496-5e82-4675-86e6-caaef442f767");
  EXPECT_EQ(one["mostArguments"], 2);
  EXPECT_EQ(one["namedArguments"], true);
  EXPECT_EQ(one["names"].size(), 10U);
  EXPECT_EQ(one["names"][0], json::parse(R"({"name":"key","id":0})"));
  EXPECT_EQ(one["members"][0], json::parse(R"({"name":"SetValues","id":1,"kind":"method","arguments":[
      {"type":"text","tag":8,"name":"key"},{"type":"any","tag":12,"name":"value"}],"result":null})"));
  EXPECT_EQ(one["members"][2]["result"], json::parse(R"({"type":"any","tag":12})"));
}

TEST(Describe, FullOutputIsAFailure) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  EXPECT_THROW(DescribeCommand(DescribeOptions(), out), Failure);
}

TEST(Describe, PageOfTheDocumentationIsUpToDate) {
  std::ifstream file(QV_MEMBERS_PAGE, std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  EXPECT_EQ(page, DescribeAsMarkdown(DescribeInterfaces()))
      << "run: scriptwells describe --markdown > docs/members.md";
}

TEST(TypedName, IsTheSameInAnyCase) {
  EXPECT_TRUE(IsSameName("getUrl", "GETurl"));
  EXPECT_FALSE(IsSameName("getUrl", "getUr"));
  EXPECT_FALSE(IsSameName("[", "{"));
}

TEST(ClosestName, HasTheFewestWrongLetters) {
  struct Row {
    const char* given;
    std::vector<std::string> candidates;
    const char* closest;
  };
  const Row rows[] = {{"TOSTRING", {"get_Url", "ToString"}, "ToString"},
                      {"bb", {"ba", "bc"}, "ba"},
                      {"abcd", {"abxyd", "abce"}, "abce"},
                      {"abcd", {"xxxx", "abcde"}, "abcde"},
                      {"abcd", {"xxxx", "abd"}, "abd"},
                      {"abxx", {"abcd"}, "abcd"},
                      {"axxx", {"abcd"}, ""},
                      {"ax", {"abc"}, ""},
                      {"", {"a"}, ""},
                      {"a", {}, ""}};
  for (const Row& row : rows) EXPECT_EQ(ClosestName(row.given, row.candidates), row.closest) << row.given;
}

}  // namespace
}  // namespace qv::cli
