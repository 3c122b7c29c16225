// The members of the objects, told by the program from the tables that serve the calls.
#include "tools/describe_command.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tools/closest_name.h"
#include "tools/describe_text.h"
#include "tools/failure.h"
#include "tools/options.h"

namespace qv::cli {
namespace {

std::string Described(const std::string& object) {
  std::ostringstream out;
  DescribeOptions options;
  options.object = object;
  EXPECT_EQ(DescribeCommand(options, out), ExitStatus::kOk);
  return out.str();
}

nlohmann::json DescribedAsJson(const std::string& object) {
  std::ostringstream out;
  DescribeOptions options;
  options.object = object;
  options.json = true;
  DescribeCommand(options, out);
  return nlohmann::json::parse(out.str());
}

std::string RefusalOf(const std::string& object) {
  try {
    Described(object);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kUsage);
    return failure.Message();
  }
  return "(described)";
}

TEST(Describe, OneMemberOfOneObject) {
  EXPECT_EQ(Described("Parameters.Add"),
            "IParameters {316b19ba-5a67-4c03-ac5c-877bc61d0b37}\n"
            "ID KIND   MEMBER                     RESULT\n"
            "1  method Add(key: text, value: any) object IParameter\n");
}

TEST(Describe, PropertyHasTwoRows) {
  EXPECT_EQ(Described("duration.SEC"),
            "IDuration {e279f37a-fbe2-4860-8e6f-ff7df69e5a23}\n"
            "ID KIND  MEMBER                  RESULT\n"
            "8  read  get_Sec()               double\n"
            "8  write put_Sec(RetVal: double) \n");
}

TEST(Describe, OneAccessorOfAProperty) {
  EXPECT_EQ(Described("IQvScriptwells.put_proxy"),
            "IQvScriptwells {8a8a22af-307b-4295-bed8-6981b0f0d6fb}\n"
            "ID KIND  MEMBER                 RESULT\n"
            "8  write put_Proxy(proxy: text) \n");
}

TEST(Describe, ObjectThatAnArgumentMustAnswerIsNamed) {
  EXPECT_NE(Described("ConnectionModel")
                .find("Execute(scriptLanguage: text, script: text, parameters: object IParameters)"),
            std::string::npos);
}

TEST(Describe, WithoutAnObjectAllTenAreTold) {
  const std::string all = Described("");
  for (const char* name :
       {"IQvScriptwells {", "IQvClientServiceRaw {", "IConnectionModel {", "IParameters {", "IParameter {",
        "IConnectionString {", "IConnectionStringRaw {", "IAttachedFile {", "IDuration {", "IUrl {"})
    EXPECT_NE(all.find(name), std::string::npos) << name;
}

TEST(Describe, WrongNameGetsTheNearestOne) {
  EXPECT_EQ(RefusalOf("Parameters.Ad"), "no member Ad; did you mean Add?");
  EXPECT_EQ(RefusalOf("ConnectionModel.Excute"), "no member Excute; did you mean Execute?");
  EXPECT_EQ(RefusalOf("Paramters"), "no member Paramters; did you mean Parameters?");
  EXPECT_EQ(RefusalOf("IParamters"), "no member IParamters; did you mean Parameters?");
  EXPECT_EQ(RefusalOf("Duration.get_Yaer"), "no member get_Yaer; did you mean get_Year?");
  EXPECT_EQ(RefusalOf("Duration.Yaer"), "no member Yaer; did you mean Year?");
  EXPECT_EQ(RefusalOf("Url.get_\nUrl"), "no member get_ Url; did you mean get_Url?");
}

TEST(Describe, NameThatIsFarFromAllIsNotGuessedAt) {
  EXPECT_EQ(RefusalOf("Parameters.Xyzzy"), "no member Xyzzy");
  EXPECT_EQ(RefusalOf("Parameters.A"), "no member A");
  EXPECT_EQ(RefusalOf("Nonsense.Add"), "no member Nonsense");
  EXPECT_EQ(RefusalOf("Url.\nx"), "no member  x");
}

TEST(Describe, MemberOfAnotherObjectIsToldWithItsObject) {
  EXPECT_EQ(RefusalOf("Parameters.Init"), "no member Init; did you mean QvClientServiceRaw.Init?");
  EXPECT_EQ(RefusalOf("parameters.init"), "no member init; did you mean QvClientServiceRaw.Init?");
  EXPECT_EQ(RefusalOf("SetValues"), "no member SetValues; did you mean Parameter.SetValues?");
  EXPECT_EQ(RefusalOf("Url.get_Sec"), "no member get_Sec; did you mean Duration.get_Sec?");
  EXPECT_EQ(RefusalOf("Excute"), "no member Excute; did you mean ConnectionModel.Execute?");
  EXPECT_EQ(RefusalOf("Url.Excute"), "no member Excute; did you mean ConnectionModel.Execute?");
  EXPECT_EQ(RefusalOf("Url.sec"), "no member sec; did you mean Duration.Sec?");
}

TEST(Describe, LongNameIsCut) {
  const std::string sixty = "qqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqqq";
  ASSERT_EQ(sixty.size(), 60u);
  EXPECT_EQ(RefusalOf(sixty), "no member " + sixty);
  EXPECT_EQ(RefusalOf(sixty + "q"), "no member " + sixty + "...");
  EXPECT_EQ(RefusalOf(std::string(100000, 'q') + ".x"), "no member " + sixty + "...");
  EXPECT_EQ(RefusalOf("Url." + sixty.substr(1) + "\xC3\xA9s"),
            "no member " + sixty.substr(1) + "\xC3\xA9...");
}

TEST(Describe, EmptyPartsAreUsageErrors) {
  const auto refusal = [](const std::string& object) {
    const ParsedArguments parsed = ParseArguments({"describe", object});
    EXPECT_EQ(parsed.command, Command::kUsageError) << object;
    EXPECT_EQ(parsed.hint, "scriptwells describe --help");
    return parsed.text;
  };
  EXPECT_EQ(refusal(""), "OBJECT is empty; leave it out to see all objects");
  EXPECT_EQ(refusal(".Add"), "OBJECT names no object in front of its '.'");
  EXPECT_EQ(refusal("."), "OBJECT names no object in front of its '.'");
  EXPECT_EQ(refusal("Parameters."), "OBJECT names no member behind its '.'");
}

TEST(Describe, JsonHasNamesIdsAndTags) {
  const nlohmann::json one = DescribedAsJson("IParameter")["interfaces"][0];
  EXPECT_EQ(one["name"], "IParameter");
  EXPECT_EQ(one["iid"], "9d152496-5e82-4675-86e6-caaef442f767");
  EXPECT_EQ(one["mostArguments"], 2);
  EXPECT_EQ(one["namedArguments"], true);
  EXPECT_EQ(one["names"].size(), 10U);
  EXPECT_EQ(one["names"][0], nlohmann::json::parse(R"({"name":"key","id":0})"));
  EXPECT_EQ(one["members"][0],
            nlohmann::json::parse(R"({"name":"SetValues","id":1,"kind":"method","arguments":[
      {"type":"text","tag":8,"name":"key"},{"type":"any","tag":12,"name":"value"}],"result":null})"));
  EXPECT_EQ(one["members"][2]["result"], nlohmann::json::parse(R"({"type":"any","tag":12})"));
}

TEST(Describe, ArgumentsReachTheCommand) {
  const ParsedArguments parsed = ParseArguments({"describe", "Parameters.Add", "--json"});
  EXPECT_EQ(parsed.command, Command::kDescribe);
  EXPECT_EQ(parsed.describe.object, "Parameters.Add");
  EXPECT_TRUE(parsed.describe.json);
  EXPECT_TRUE(parsed.json);
  EXPECT_FALSE(parsed.describe.markdown);
  EXPECT_EQ(ParseArguments({"describe"}).describe.object, "");
  EXPECT_TRUE(ParseArguments({"describe", "--markdown"}).describe.markdown);
  EXPECT_EQ(ParseArguments({"describe", "--markdown", "--json"}).command, Command::kUsageError);
  EXPECT_EQ(ParseArguments({"describe", "a", "b"}).command, Command::kUsageError);
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

TEST(ClosestName, CaseDoesNotCount) {
  EXPECT_EQ(ClosestName("TOSTRING", {"get_Url", "ToString"}), "ToString");
}

TEST(ClosestName, FirstOfEqualOnesWins) {
  EXPECT_EQ(ClosestName("bb", {"ba", "bc"}), "ba");
}

TEST(ClosestName, ChangedAddedAndMissingLettersCountOne) {
  EXPECT_EQ(ClosestName("abcd", {"abxyd", "abce"}), "abce");
  EXPECT_EQ(ClosestName("abcd", {"xxxx", "abcde"}), "abcde");
  EXPECT_EQ(ClosestName("abcd", {"xxxx", "abd"}), "abd");
}

TEST(ClosestName, HalfOfItsLettersMayBeWrong) {
  EXPECT_EQ(ClosestName("abxx", {"abcd"}), "abcd");
  EXPECT_EQ(ClosestName("axxx", {"abcd"}), "");
  EXPECT_EQ(ClosestName("ax", {"abc"}), "");
  EXPECT_EQ(ClosestName("", {"a"}), "");
}

TEST(ClosestName, EmptyWithoutCandidates) {
  EXPECT_EQ(ClosestName("a", {}), "");
}

}  // namespace
}  // namespace qv::cli
