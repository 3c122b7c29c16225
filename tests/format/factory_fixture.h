// Every test of this room finds the formaters of the library in the factory, and leaves the factory without
// the creators that it registered itself.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "fixtures/xml_text.h"
#include "format/formater_factory.h"
#include "format/response_value_reader.h"
#include "recordlist/register_formaters.h"

namespace qv {

class FactoryFixture : public testing::Test {
 protected:
  FactoryFixture() { FillFormaters(); }
  // A creator of the test must not stay in the factory when it dies.
  ~FactoryFixture() override {
    Factory()->Clear();
    FillFormaters();
  }

  static FormaterFactory* Factory() { return FormaterFactory::Instance(); }
  static FormaterSerializer* Get(const WideString& typeName) { return Factory()->GetFormater(typeName); }

  // What a formater reads from <v>content</v>.
  static Variant ReadContent(FormaterSerializer* formater, const std::u16string& content) {
    const XmlText xml(u"<v>" + content + u"</v>");
    return formater->ReadValue(xml.Root());
  }
  // The value of an answer: of <r>content</r>.
  static Variant ReadAnswer(const std::u16string& content) {
    const XmlText xml(u"<r>" + content + u"</r>");
    return ReadResponseValue(xml.Root());
  }
  static Variant ReadAnswer(const std::u16string& typeName, const std::u16string& content) {
    return ReadAnswer(u"<v xsi:type='" + typeName + u"'>" + content + u"</v>");
  }
};

}  // namespace qv
