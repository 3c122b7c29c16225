// Orders of odd answers: their JSON, and which requests they meet.
#include "devservice/control/odd_orders.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

namespace qv::devservice {
namespace {

std::string ReasonFor(const std::string& json) {
  try {
    ParseOddOrder(json);
    return "accepted";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

// Whether the next request of the action gets "spoil".
bool Spoils(OddOrders& orders, const std::string& action = "Execute") {
  OddForms forms;
  orders.Meet(OddUse::kCalls, action, forms);
  return forms.spoiled;
}

// The next requests, "x" for those that get "spoil".
std::string Pattern(OddOrders& orders, int count = 40) {
  std::string pattern;
  for (int i = 0; i < count; ++i) pattern += Spoils(orders) ? 'x' : '.';
  return pattern;
}

OddOrder ByChance(double chance, std::uint32_t seed) {
  return {"spoil", "", 0, chance, seed};
}

TEST(ParseOddOrder, ReadsAllFields) {
  const OddOrder counted = ParseOddOrder(R"({"names": "cut+ns2", "action": "Execute", "requests": 3})");
  EXPECT_EQ(counted.names, "cut+ns2");
  EXPECT_EQ(counted.action, "Execute");
  EXPECT_EQ(counted.requests, 3U);
  EXPECT_EQ(counted.chance, 1);
  const OddOrder chance = ParseOddOrder(R"({"names": "stall", "chance": 0.25, "seed": 4294967295})");
  EXPECT_EQ(chance.requests, 0U);
  EXPECT_EQ(chance.chance, 0.25);
  EXPECT_EQ(chance.seed, 4294967295U);
  EXPECT_EQ(ParseOddOrder(R"({"names": "stall"})").requests, 1U);
  EXPECT_EQ(ParseOddOrder(R"({"names": ""})").names, "");
}

TEST(ParseOddOrder, GivesTheReasonOfARefusal) {
  const std::string chance = "The chance of the order is not above 0 and up to 1.";
  const std::string requests = "The number of requests is not a whole number from 0 to 1000000000.";
  const std::pair<std::string, std::string> rows[] = {
      {"", "The order is not a JSON object."},
      {std::string(100000, '['), "The order is not a JSON object."},
      {"{}", "The order has no names."},
      {R"({"names": 5})", "The names of the order is not a text."},
      {R"({"names": "cut+frob"})", "There is no odd answer of the name \"frob\". Names: " + OddFormNames()},
      {R"({"names": "cut+"})", "accepted"},
      {R"({"names": "+cut"})", "There is no odd answer of the name \"\". Names: " + OddFormNames()},
      {R"({"names": "cut", "action": "Frob"})", "The action of the order is none of the service."},
      {R"({"names": "cut", "action": "#Execute"})", "The action of the order is none of the service."},
      {R"({"names": "cut", "x": 1})",
       "The order has a key other than names, action, requests, chance and seed."},
      {R"({"names": "cut", "chance": 0})", chance},
      {R"({"names": "cut", "chance": 1.5})", chance},
      {R"({"names": "cut", "chance": -1})", chance},
      {R"({"names": "cut", "chance": "1"})", "The chance of the order is not a number."},
      {R"({"names": "cut", "chance": 0.5, "requests": 2})", "An order has a number of requests or a chance."},
      {R"({"names": "cut", "requests": -1})", requests},
      {R"({"names": "cut", "requests": 1000000001})", requests},
      {R"({"names": "cut", "requests": 1.5})", requests},
      {R"({"names": "cut", "seed": 4294967296})",
       "The number of seed is not a whole number from 0 to 4294967295."},
  };
  for (const auto& [json, reason] : rows) EXPECT_EQ(ReasonFor(json), reason) << json.substr(0, 100);
}

TEST(OddNames, AreListedOnce) {
  std::set<std::string_view> names;
  for (const OddName& odd : OddNames()) {
    EXPECT_TRUE(names.insert(odd.name).second) << odd.name;
    OddForms forms;
    EXPECT_TRUE(AddOddForm(odd.name, forms)) << odd.name;
  }
  for (const char* name : {"cut", "stall", "drip", "spoil", "slow", "refuse", "refuse2", "short", "long",
                           "strictxml", "table-cut", "bad-date", "upload-drop", "url-file"})
    EXPECT_EQ(names.count(name), 1U) << name;
  const auto listed = nlohmann::json::parse(OddNamesJson()).at("names");
  EXPECT_EQ(listed.size(), names.size());
  EXPECT_EQ(listed[0], (nlohmann::json{{"name", "ns2"}, {"group", "answers"}}));
}

TEST(OddOrders, WithANumberAreUsedInTheirOrder) {
  OddOrders orders({{"spoil", "", 2}, {"html", "", 1}});
  EXPECT_EQ(Pattern(orders, 2), "xx");
  OddForms forms;
  orders.Meet(OddUse::kCalls, "Execute", forms);
  EXPECT_TRUE(forms.html && !forms.spoiled);
  EXPECT_EQ(Pattern(orders, 3), "...");
}

TEST(OddOrders, WaitForTheirAction) {
  OddOrders orders({{"spoil", "Execute", 1}});
  EXPECT_FALSE(Spoils(orders, "CreateUserSession"));
  EXPECT_FALSE(Spoils(orders, ""));
  EXPECT_TRUE(Spoils(orders, "Execute"));
}

TEST(OddOrders, AboutFilesMeetTransfersOnly) {
  OddOrders orders({{"upload-drop", "Execute", 1}, {"spoil+download-cut", "", 2}});
  EXPECT_TRUE(Spoils(orders));
  OddForms forms;
  orders.Meet(OddUse::kFiles, "", forms);
  EXPECT_EQ(forms.transfer.upload, UploadEnd::kDropped);
  EXPECT_EQ(forms.transfer.download, Delivery::kPlain);
  OddForms next;
  orders.Meet(OddUse::kFiles, "", next);
  EXPECT_EQ(next.transfer.download, Delivery::kCut);
  EXPECT_FALSE(next.spoiled);
  EXPECT_FALSE(Spoils(orders));
}

TEST(OddOrders, ForAllRequestsAreAddedToTheOthers) {
  OddOrders orders({{"spoil", "", 0}, {"html", "", 1}});
  OddForms forms;
  orders.Meet(OddUse::kCalls, "Execute", forms);
  EXPECT_TRUE(forms.html && forms.spoiled);
  EXPECT_EQ(Pattern(orders, 3), "xxx");
}

TEST(OddOrders, ChancesAreThoseOfTheirSeed) {
  OddOrders first({ByChance(0.5, 7)});
  OddOrders same({ByChance(0.5, 7)});
  OddOrders other({ByChance(0.5, 8)});
  const std::string pattern = Pattern(first);
  EXPECT_EQ(Pattern(same), pattern);
  EXPECT_NE(Pattern(other), pattern);
  OddOrders rare({ByChance(0.1, 1)});
  const std::string many = Pattern(rare, 10000);
  EXPECT_NEAR(static_cast<double>(std::count(many.begin(), many.end(), 'x')), 1000, 100);
}

TEST(OddOrders, EndWithAnEmptyOne) {
  OddOrders orders({{"spoil", "", 0}, {"html", "", 5}});
  EXPECT_TRUE(orders.Add({}));
  EXPECT_EQ(Pattern(orders, 3), "...");
}

TEST(OddOrders, AreLimited) {
  OddOrders orders;
  for (std::size_t i = 0; i < OddOrders::kMost; ++i) EXPECT_TRUE(orders.Add({"spoil", "", 1}));
  EXPECT_FALSE(orders.Add({"spoil", "", 1}));
  EXPECT_TRUE(Spoils(orders));
  EXPECT_TRUE(orders.Add({"spoil", "", 1}));
}

}  // namespace
}  // namespace qv::devservice
