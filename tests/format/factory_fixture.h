// Every test of this room finds the formaters of the library in the factory, and leaves the factory without
// the creators that it registered itself.
#pragma once

#include <gtest/gtest.h>

#include "fixtures/formaters.h"
#include "format/formater_factory.h"

namespace qv {

class FactoryFixture : public testing::Test {
 protected:
  FactoryFixture() { EnsureFormaters(); }
  // A creator of the test must not stay behind when it dies.
  ~FactoryFixture() override {
    Factory()->Clear();
    EnsureFormaters();
  }

  static FormaterFactory* Factory() { return FormaterFactory::Instance(); }
  static FormaterSerializer* Get(const WideString& typeName) { return Factory()->GetFormater(typeName); }
};

}  // namespace qv
