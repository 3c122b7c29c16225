// Calls of Execute over a server in memory.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "fixtures/counting_object.h"
#include "fixtures/fake_duration.h"
#include "fixtures/fake_http.h"
#include "fixtures/known_failures.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/register_formaters.h"
#include "script/execute_envelope.h"
#include "script/fake_parameters.h"
#include "soap/soap_call.h"

namespace qv {

using Lines = std::vector<std::string>;

inline Variant Object(const IUnknownPtr& object) {
  return Variant::FromObject(object.get());
}

class CallFixture : public testing::Test {
 protected:
  CallFixture() { FillFormaters(); }
  void TearDown() override {
    map_.clear();
    EXPECT_EQ(http_.LiveObjects(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
    EXPECT_EQ(FakeDuration::Live(), 0);
  }

  // The script "a<b" for the next calls.
  void PutScript() {
    map_[u"ScriptLanguage"] = Text(u"VBScript");
    map_[u"Script"] = Text(u"a<b");
  }
  void Run() { CSOAPCall().Run(CQvUrl(u"http://srv:8080/svc"), u"Execute", u"", map_); }
  // The request that is sent for this list, the last one when uploads come first.
  std::string Sent(const IUnknownPtr& parameters) {
    map_[u"parameters"] = Object(parameters);
    http_.Answer(kScriptDone);
    Run();
    map_.erase(u"parameters");
    EXPECT_EQ(http_.LiveObjects(), 0);
    return http_.Bodies().back();
  }
  std::string RunThrows(const Variant& parameters) {
    map_[u"parameters"] = parameters;
    std::string thrown = Thrown([this] { Run(); });
    map_.erase(u"parameters");
    EXPECT_EQ(http_.LiveObjects(), 0);
    return thrown;
  }
  std::string RunThrows(const IUnknownPtr& parameters) { return RunThrows(Object(parameters)); }
  // The call fails before the component is made.
  template <class List>
  void ExpectRefused(const List& parameters, const std::string& thrown = kNoDocument) {
    EXPECT_EQ(RunThrows(parameters), thrown);
    EXPECT_TRUE(http_.Calls().empty());
  }

  // A list of the library's, and one of another program that names the type of its parameter "k" itself.
  static IParametersPtr List(std::initializer_list<std::pair<WideString, Variant>> parameters) {
    IParametersPtr list = CreateParameters();
    for (const auto& [key, value] : parameters) EXPECT_EQ(list->Add(key, value, nullptr), S_OK);
    return list;
  }
  FakeParametersPtr Foreign(const Variant& value, const WideString& typeName) {
    FakeParametersPtr list(new FakeParameters(&log_));
    list->Put(u"k", value, typeName);
    return list;
  }

  FakeLog log_;  // of foreign lists
  FakeHttp http_;
  NamedArguments map_{{u"ContextHandle", Text(u"u1")}};
};

}  // namespace qv
