// The formaters of values that are objects: durations and URLs, each under VT_UNKNOWN.
#pragma once

#include "format/formater_creator.h"
#include "format/formater_serializer.h"

namespace qv {

// An IDuration. Reading throws if IDurationRaw::SetText fails. Writing throws E_POINTER for an object that is
// not a duration.
class FormaterDuration : public FormaterSerializer {
 public:
  Variant ReadValue(const XmlNode& node) override;
  WideString WriteValue(const Variant& value) override;
};
class FormaterDurationCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterDuration formater_;
};

// An IUrl, or VT_EMPTY for no text. The text is "<URL>link</URL><C>caption</C>"; marks in a wrong order fail
// with "Cannot build a url object." (EQvException, code 0). The object gets neither part, as in deployed
// clients. Writes nothing.
class FormaterUrl : public FormaterSerializer {
 public:
  Variant ReadValue(const XmlNode& node) override;
  WideString WriteValue(const Variant& value) override;
};
class FormaterUrlCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterUrl formater_;
};

}  // namespace qv
