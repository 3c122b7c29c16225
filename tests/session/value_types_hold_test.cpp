// How long the value types of the process stay registered when models end.
#include "qvscriptwells/value_types_hold.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "fixtures/fake_http.h"
#include "fixtures/shown_text.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

IConnectionModelPtr NewModel() {
  return CreateConnectionModel(u"http://srv", u"", nullptr);
}

// What a script's answer, a text, arrives as.
std::string Answer(IConnectionModel* model) {
  FakeHttp http;
  EXPECT_EQ(model->SetUSID(u"u1"), S_OK);
  http.Answer(kScriptDone);
  Variant answer;
  EXPECT_EQ(model->Execute(u"VBScript", u"1", nullptr, &answer), S_OK);
  return answer.Tag() == VT_EMPTY ? "empty" : Shown(answer.Text());
}
std::string AnswerOfANewModel() {
  const IConnectionModelPtr model = NewModel();
  return Answer(model.get());
}
// The code of a call with a parameter.
HRESULT SendParameter(IConnectionModel* model) {
  FakeHttp http;
  EXPECT_EQ(model->SetUSID(u"u1"), S_OK);
  http.Answer(kScriptDone);
  const IParametersPtr list = CreateParameters();
  EXPECT_EQ(list->Add(u"k", Variant::FromInt(1), nullptr), S_OK);
  Variant answer;
  return model->Execute(u"VBScript", u"1", list.get(), &answer);
}

TEST(ValueTypesHold, ModelThatEndsTakesNothing) {
  const ValueTypesHold hold;
  { const IConnectionModelPtr first = NewModel(); }
  const IConnectionModelPtr second = NewModel();
  EXPECT_EQ(Answer(second.get()), "done");
  EXPECT_EQ(SendParameter(second.get()), S_OK);
}

TEST(ValueTypesHold, ModelThatEndsLeavesTheOthersTheirTypes) {
  const ValueTypesHold hold;
  const IConnectionModelPtr first = NewModel();
  { const IConnectionModelPtr second = NewModel(); }
  EXPECT_EQ(Answer(first.get()), "done");
}

TEST(ValueTypesHold, ModelThatCannotBeMadeTakesNothing) {
  const ValueTypesHold hold;
  EXPECT_NE(Thrown([] { CreateConnectionModel(u"no address", u"", nullptr); }), "nothing");
  EXPECT_EQ(AnswerOfANewModel(), "done");
}

TEST(ValueTypesHold, WithoutOneAModelThatCannotBeMadeTakesAll) {
  { const ValueTypesHold fills; }
  EXPECT_NE(Thrown([] { CreateConnectionModel(u"no address", u"", nullptr); }), "nothing");
  EXPECT_EQ(AnswerOfANewModel(), "empty");
}

TEST(ValueTypesHold, BringsBackWhatEarlierModelsTook) {
  { const IConnectionModelPtr earlier = NewModel(); }
  EXPECT_EQ(AnswerOfANewModel(), "empty");
  const IConnectionModelPtr model = NewModel();
  const ValueTypesHold hold;
  EXPECT_EQ(Answer(model.get()), "done");
}

TEST(ValueTypesHold, TypesStayAfterItUntilAModelEnds) {
  { const ValueTypesHold hold; }
  IConnectionModelPtr model = NewModel();
  EXPECT_EQ(Answer(model.get()), "done");
  model.reset();
  EXPECT_EQ(AnswerOfANewModel(), "empty");
}

TEST(ValueTypesHold, ModelThatOutlivesItTakesAll) {
  auto hold = std::make_unique<ValueTypesHold>();
  IConnectionModelPtr model = NewModel();
  hold.reset();
  model.reset();
  EXPECT_EQ(AnswerOfANewModel(), "empty");
}

TEST(ValueTypesHold, EachCounts) {
  auto first = std::make_unique<ValueTypesHold>();
  auto second = std::make_unique<ValueTypesHold>();
  first.reset();
  { const IConnectionModelPtr model = NewModel(); }
  EXPECT_EQ(AnswerOfANewModel(), "done");
  second.reset();
  { const IConnectionModelPtr model = NewModel(); }
  EXPECT_EQ(AnswerOfANewModel(), "empty");
}

}  // namespace
}  // namespace qv
