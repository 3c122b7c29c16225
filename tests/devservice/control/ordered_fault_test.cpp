// Orders of faults: their JSON, and which requests they meet.
#include "devservice/control/ordered_fault.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace qv::devservice {
namespace {

// The reason for which an order is refused; "accepted" without one.
std::string ReasonFor(const std::string& json) {
  try {
    ParseOrder(json);
    return "accepted";
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
}

OrderedFault Of(FaultKind kind, const std::string& action, int number = 1) {
  return {kind, number, "", action};
}

TEST(ParseOrder, ReadsAllFields) {
  const OrderedFault fault =
      ParseOrder(R"({"kind": "fault", "number": 2147483647, "text": "\u00e9<", "action": "Execute"})");
  EXPECT_EQ(fault.kind, FaultKind::kFault);
  EXPECT_EQ(fault.number, 2147483647);
  EXPECT_EQ(fault.text, "\xC3\xA9<");
  EXPECT_EQ(fault.action, "Execute");
  const OrderedFault cut = ParseOrder(R"({"kind": "cut"})");
  EXPECT_EQ(cut.kind, FaultKind::kCut);
  EXPECT_EQ(cut.text + cut.action, "");
  EXPECT_EQ(ParseOrder(R"({"kind": "status", "number": 200})").kind, FaultKind::kStatus);
  EXPECT_EQ(ParseOrder(R"({"kind": "silence", "number": 600000})").kind, FaultKind::kSilence);
}

TEST(ParseOrder, GivesTheReasonOfARefusal) {
  const std::string object = "The order is not a JSON object.";
  const std::string kind = "The kind of the order is not one of fault, status, cut and silence.";
  const std::string fault = "The number of the kind fault is not a whole number from 1 to 2147483647.";
  const std::string status = "The number of the kind status is not a whole number from 200 to 599.";
  const std::string silence = "The number of the kind silence is not a whole number from 1 to 600000.";
  const std::string empty = "An answer with this status has no text.";
  const std::pair<std::string, std::string> rows[] = {
      {"", object},
      {"{", object},
      {"[]", object},
      {"7", object},
      {std::string(100000, '['), object},
      {"{\"kind\": \"\xFF\"}", object},
      {"{} {}", object},
      {"{}", kind},
      {R"({"kind": "Fault", "number": 5})", kind},
      {R"({"kind": 5})", "The kind of the order is not a text."},
      {R"({"kind": "cut", "x": 1})", "The order has a key other than kind, number, text and action."},
      {R"({"kind": "cut", "text": null})", "The text of the order is not a text."},
      {R"({"kind": "cut", "action": []})", "The action of the order is not a text."},
      {R"({"kind": "fault"})", fault},
      {R"({"kind": "fault", "number": 0})", fault},
      {R"({"kind": "fault", "number": 2147483648})", fault},
      {R"({"kind": "fault", "number": 18446744073709551615})", fault},
      {R"({"kind": "fault", "number": 1e300})", fault},
      {R"({"kind": "fault", "number": "5"})", fault},
      {R"({"kind": "fault", "number": 5.5})", fault},
      {R"({"kind": "status", "number": 199})", status},
      {R"({"kind": "status", "number": 600})", status},
      {R"({"kind": "status", "number": 204})", empty},
      {R"({"kind": "status", "number": 304})", empty},
      {R"({"kind": "silence", "number": -1})", silence},
      {R"({"kind": "silence", "number": 600001})", silence},
  };
  for (const auto& [json, reason] : rows) EXPECT_EQ(ReasonFor(json), reason) << json.substr(0, 100);
}

TEST(FaultOrders, MeetTheirRequestsOnceAndInOrder) {
  FaultOrders orders;
  EXPECT_FALSE(orders.Take("Execute"));
  orders.Add(Of(FaultKind::kStatus, "Execute", 500));
  orders.Add(Of(FaultKind::kStatus, "Execute", 501));
  orders.Add(Of(FaultKind::kStatus, "CloseUserSession", 502));
  EXPECT_FALSE(orders.Take("CreateUserSession"));
  EXPECT_FALSE(orders.Take(""));
  EXPECT_EQ(orders.Take("CloseUserSession").value().number, 502);
  EXPECT_EQ(orders.Take("Execute").value().number, 500);
  EXPECT_EQ(orders.Take("Execute").value().number, 501);
  EXPECT_FALSE(orders.Take("Execute"));
}

TEST(FaultOrders, WithoutActionMeetAnyRequestThatCanCarryThem) {
  FaultOrders orders;
  orders.Add(Of(FaultKind::kFault, ""));
  EXPECT_FALSE(orders.Take(""));
  EXPECT_TRUE(orders.Take("CreateUserSession"));
  orders.Add(Of(FaultKind::kCut, ""));
  EXPECT_TRUE(orders.Take(""));
}

TEST(FaultOrders, AreLimited) {
  FaultOrders orders;
  for (std::size_t i = 0; i < FaultOrders::kMost; ++i) EXPECT_TRUE(orders.Add(Of(FaultKind::kCut, "")));
  EXPECT_FALSE(orders.Add(Of(FaultKind::kCut, "")));
  EXPECT_TRUE(orders.Take("Execute"));
  EXPECT_TRUE(orders.Add(Of(FaultKind::kCut, "")));
}

}  // namespace
}  // namespace qv::devservice
