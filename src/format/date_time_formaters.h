// The formaters of points in time. All three read any date or time text (text_conversions.h) into a VT_DATE;
// they differ in what they write. Failure: EQvException with the message of the conversion.
#pragma once

#include "format/formater_creator.h"
#include "format/formater_serializer.h"

namespace qv {

// Writes "2024-03-05".
class FormaterDate : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterDateCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterDate formater_;
};

// Writes "2024-03-05T10:15:30.0Z".
class FormaterDateTime : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterDateTimeCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterDateTime formater_;
};

// Writes "10:15:30.0Z".
class FormaterTime : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterTimeCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterTime formater_;
};

}  // namespace qv
