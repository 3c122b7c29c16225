// A formater for made-up types that does what a test wants, and remembers what it was given.
#pragma once

#include <functional>
#include <string>

#include "format/formater_creator.h"
#include "format/formater_serializer.h"

namespace qv {

class ProbeFormater : public FormaterSerializer {
 public:
  Variant ReadValue(const XmlNode& node) override {
    lastName = std::u16string(node.Name());
    return read(node);
  }
  WideString WriteValue(const Variant&) override { return u"probe"; }

  std::function<Variant(const XmlNode&)> read = [](const XmlNode&) { return Variant::FromString(u"probe"); };
  std::u16string lastName;
};

class ProbeFormaterCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater; }

  ProbeFormater formater;
};

}  // namespace qv
