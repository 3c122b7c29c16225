// The formaters of values that are objects: durations and URLs, each under VT_UNKNOWN.
#pragma once

#include "format/formater_creator.h"
#include "format/formater_serializer.h"

namespace qv {

// An IDuration. Reading raises what IDurationRaw::SetText refuses. Writing raises E_POINTER for an object
// that is no duration.
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

// An IUrl, or VT_EMPTY for no text. The text has the shape "<URL>link</URL><C>caption</C>", and "Cannot build
// a url object." (EQvException, code 0) tells that its marks are crossed. Neither part reaches the object:
// clients in the field never kept them. Writes nothing.
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
