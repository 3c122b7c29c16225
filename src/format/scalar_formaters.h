// The formaters of the scalar types and their creators. Reading never fails on bad text; numbers are read
// like atoi or atof. The comment of each class gives its tag and special cases.
#pragma once

#include "format/formater_creator.h"
#include "format/formater_serializer.h"

namespace qv {

// VT_BOOL. Exactly "1" or "true" is true. Writes "1" or "0".
class FormaterBool : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterBoolCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterBool formater_;
};

// VT_I1. Reads the node's own value, so an element gives 0. Writes the value converted to VT_INT, or throws
// the conversion's code.
class FormaterByte : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterByteCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterByte formater_;
};

// VT_I2, the low 16 bits of the number.
class FormaterShort : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterShortCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterShort formater_;
};

// VT_INT.
class FormaterInt : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterIntCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterInt formater_;
};

// Reads 32 bits into the 64-bit field and leaves the tag VT_EMPTY, so hosts get no value. Writes all 64 bits.
class FormaterLong : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterLongCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterLong formater_;
};

// VT_R4. Writes 6 significant digits.
class FormaterFloat : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterFloatCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterFloat formater_;
};

// VT_R8. Writes 6 significant digits.
class FormaterDouble : public ShortTextFormater {
 public:
  Variant ReadValue(const XmlNode& node) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterDoubleCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterDouble formater_;
};

// VT_BSTR, embedded nulls included. Writes the escaped text; a null text is empty.
class FormaterString : public FormaterSerializer {
 public:
  Variant ReadValue(const XmlNode& node) override;
  WideString WriteValue(const Variant& value) override;
  std::u16string_view TextOf(const Variant& value, TextPlace& place) override;
};
class FormaterStringCreator : public FormaterCreator {
 public:
  using FormaterCreator::FormaterCreator;
  FormaterSerializer* GetSerializer() override { return &formater_; }

 private:
  FormaterString formater_;
};

}  // namespace qv
