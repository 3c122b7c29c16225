#include "value_test.h"

namespace qv {

void ValueTest::SetUp() {
  ClientTest::SetUp();
  ASSERT_EQ(Open(), "ok");
}

Variant ValueTest::Answer(const WideString& script, NamedValues values) {
  Variant result;
  EXPECT_EQ(OutcomeText(model_->Execute(u"JavaScript", script, ParameterList(values).get(), &result)), "ok");
  return result;
}

Variant ValueTest::OddAnswer(const std::string& name) {
  Use("/odd/" + name);
  Variant result = Answer(u"'replaced'");
  Use();
  return result;
}

std::string ValueTest::OddOutcome(const std::string& name) {
  Use("/odd/" + name);
  std::string outcome = Run(u"'replaced'");
  Use();
  EXPECT_EQ(Run(u"'next'"), "VT_BSTR next");
  return outcome;
}

void ValueTest::ExpectOdd(std::initializer_list<std::pair<const char*, const char*>> namesAndOutcomes) {
  for (const auto& [name, outcome] : namesAndOutcomes) EXPECT_EQ(OddOutcome(name), outcome) << name;
}

void ValueTest::ExpectRefused(const Variant& value, const std::string& words) {
  const int before = Requests();
  EXPECT_EQ(Run(u"1", {{u"good", Variant::FromInt(1)}, {u"bad", value}}), words);
  EXPECT_EQ(Requests(), before + 1);
  EXPECT_EQ(Run(u"'next'"), "VT_BSTR next");
}

int ValueTest::Requests() {
  return Stats()["requests"].get<int>();
}

}  // namespace qv
