// Lists of parameters in a request, and what a foreign list is asked for them.
#include "script/call_fixture.h"

namespace qv {
namespace {

const Variant kOne = Int(1);

class ParametersOnWire : public CallFixture {
 protected:
  ParametersOnWire() { PutScript(); }
};

TEST_F(ParametersOnWire, AbsentListIsTheNilForm) {
  http_.Answer(kScriptDone);
  Run();
  EXPECT_EQ(http_.Bodies().back(), RequestWith(kNoParameters));
}

TEST_F(ParametersOnWire, EmptyListIsTheArrayFormWithCountZero) {
  EXPECT_EQ(Sent(CreateParameters()), RequestWith(ParameterArray("0", "")));
}

TEST_F(ParametersOnWire, ElementsComeInListOrderWithDuplicateKeys) {
  EXPECT_EQ(Sent(List({{u"k", Int(2)}, {u"k", Text(u"one")}, {u"d", Object(CreateDuration(u"-P2D"))}})),
            RequestWith(ParameterArray("3", ParameterElement("k", "xsd:int", "2") +
                                                ParameterElement("k", "xsd:string", "one") +
                                                ParameterElement("d", "xsd:duration", "-P2D"))));
}

TEST_F(ParametersOnWire, CountOfManyIsDecimal) {
  const IParametersPtr list = CreateParameters();
  std::string elements;
  for (int i = 0; i < 12; ++i) {
    list->Add(u"k", Bool(true), nullptr);
    elements += ParameterElement("k", "xsd:boolean", "1");
  }
  EXPECT_EQ(Sent(list), RequestWith(ParameterArray("12", elements)));
}

TEST_F(ParametersOnWire, KeyIsEscapedOnceAndKeepsBothTags) {
  const struct {
    WideString key;
    const char* written;
  } rows[] = {{u"<&\u00E9", "&lt;&amp;&#233;"}, {WideString(), ""}, {u"", ""}};
  for (const auto& row : rows)
    EXPECT_EQ(Sent(List({{row.key, kOne}})),
              RequestWith(ParameterArray("1", ParameterElement(row.written, "xsd:int", "1"))));
}

TEST_F(ParametersOnWire, ListIsAskedInThisOrderAndGivenBack) {
  const FakeParametersPtr list = Foreign(kOne, u"int");
  list->Put(u"b", Int(2), u"int");
  EXPECT_EQ(Sent(list), RequestWith(ParameterArray("2", ParameterElement("k", "xsd:int", "1") +
                                                            ParameterElement("b", "xsd:int", "2"))));
  EXPECT_EQ(log_, (FakeLog{"Size", "Find(0)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString",
                           "Find(1)", "get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"}));
  EXPECT_EQ(list->References(), 1U);
}

TEST_F(ParametersOnWire, NegativeSizeIsWrittenAndHasNoElements) {
  const FakeParametersPtr list(new FakeParameters(&log_));
  list->SayNegativeSize(-1);
  EXPECT_EQ(Sent(list), RequestWith(ParameterArray("-1", "")));
  EXPECT_EQ(log_, FakeLog{"Size"});
}

TEST_F(ParametersOnWire, AnythingButAListIsRefused) {
  const CountingObjectPtr stranger(new CountingObject);
  const CountingObjectPtr failing(new CountingObject);
  failing->FailQueries(E_OUTOFMEMORY);
  for (const Variant& value : {Object(nullptr), Int(5), Object(stranger), Object(failing)})
    ExpectRefused(value);
}

TEST_F(ParametersOnWire, ListThatFailsIsRefused) {
  // Two good parameters, then what a row adds; the list fails at its last call.
  const auto expectFailure = [this](const char* lastCall, void (*damage)(FakeParameters*, const char*)) {
    log_.clear();
    const FakeParametersPtr list = Foreign(kOne, u"int");
    list->Put(u"b", kOne, u"int");
    damage(list.get(), lastCall);
    ExpectRefused(list);
    EXPECT_EQ(log_.back(), lastCall);
  };
  expectFailure("Size", [](FakeParameters* list, const char*) { list->FailSize(E_FAIL); });
  expectFailure("Find(1)", [](FakeParameters* list, const char*) { list->FailFind(1, E_FAIL); });
  expectFailure("Find(2)", [](FakeParameters* list, const char*) { list->PutNull(); });
  for (const char* property : {"get_ParamValue", "get_ParamKey", "get_ParamTypeAsString"})
    expectFailure(property, [](FakeParameters* list, const char* name) {
      list->Put(u"c", kOne, u"int")->Fail(name, E_FAIL);
    });
}

}  // namespace
}  // namespace qv
