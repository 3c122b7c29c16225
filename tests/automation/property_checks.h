// What every property of an object promises.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "fixtures/waiting_record.h"
#include "qvscriptwells/unknown.h"

namespace qv {

inline std::string ShownProperty(const WideString& value) {
  return Shown(value);
}
inline double ShownProperty(double value) {
  return value;
}

// The property has the value `start` and keeps each value that is put; every operation clears the record of
// an earlier failure, and a null output parameter is refused.
template <class Interface, class Value, class Given>
void ExpectProperty(const char* name, const boost::intrusive_ptr<Interface>& object,
                    HRESULT (Interface::*get)(Value*) noexcept, HRESULT (Interface::*put)(Given) noexcept,
                    const Value& before, const Value& start, std::initializer_list<Value> values) {
  SCOPED_TRACE(name);
  const auto expectSuccess = [](HRESULT code) {
    EXPECT_EQ(code, S_OK);
    EXPECT_EQ(TakenWords(), "no record");
    LeaveStaleRecord();
  };
  const auto expectValue = [&](const Value& expected) {
    Value value = before;
    expectSuccess((object.get()->*get)(&value));
    EXPECT_EQ(ShownProperty(value), ShownProperty(expected));
  };
  LeaveStaleRecord();
  expectValue(start);
  for (const Value& value : values) {
    expectSuccess((object.get()->*put)(value));
    expectValue(value);
  }
  EXPECT_EQ((object.get()->*get)(nullptr), E_POINTER);
  EXPECT_EQ(TakenWords(), "no record");
}

// The same for a text, which starts as null.
template <class Interface>
void ExpectText(const char* name, const boost::intrusive_ptr<Interface>& object,
                HRESULT (Interface::*get)(WideString*) noexcept,
                HRESULT (Interface::*put)(const WideString&) noexcept) {
  ExpectProperty<Interface, WideString>(name, object, get, put, u"before", WideString(),
                                        {u"one", u"two <&>", u"", WideString()});
}

}  // namespace qv
