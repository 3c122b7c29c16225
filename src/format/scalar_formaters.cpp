#include "format/scalar_formaters.h"

#include <new>

#include "qvscriptwells/com_error.h"
#include "support/escape_units.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "support/wide_text_stream.h"

// The texts of numbers are sent unchanged: they contain no unit that the XML escape replaces.
namespace qv {
namespace {

// The new text is moved into the value, whose only owner it has.
Variant TextVariant(std::u16string_view text) {
  VariantData data;
  data.bstrVal = WideString(text).Detach();
  return Variant::FromRaw(VT_BSTR, data);
}

// Borrowed; empty for a null text and for a value of any other tag.
std::u16string_view BorrowedText(const Variant& value) noexcept {
  if (value.Tag() != VT_BSTR) return {};
  const char16_t* const text = value.Data().bstrVal;
  return {text, StringLength(text)};
}

double NumberIn(const XmlNode& node) {
  try {
    return ParseDouble(GetNodeText(node));
  } catch (const std::bad_alloc&) {  // for a long number
    _com_raise_error(E_OUTOFMEMORY);
  }
}

}  // namespace

Variant FormaterBool::ReadValue(const XmlNode& node) {
  const std::u16string_view text = GetNodeText(node);
  return Variant::FromBool(text == u"1" || text == u"true");
}

std::u16string_view FormaterBool::TextOf(const Variant& value, TextPlace&) {
  return value.Data().boolVal != 0 ? u"1" : u"0";
}

// The data bytes hold the whole 32-bit number; the tag uses only the lowest byte.
Variant FormaterByte::ReadValue(const XmlNode& node) {
  VariantData data;
  data.intVal = NarrowedInt(node.Value());
  return Variant::FromRaw(VT_I1, data);
}

std::u16string_view FormaterByte::TextOf(const Variant& value, TextPlace& place) {
  Variant number;
  const HRESULT code = VariantChangeType(&number, value, VT_INT);
  if (Failed(code)) _com_raise_error(code);
  return DecimalText(number.Data().intVal, place.units);
}

Variant FormaterShort::ReadValue(const XmlNode& node) {
  return Variant::FromShort(static_cast<std::int16_t>(NarrowedInt(GetNodeText(node))));
}

std::u16string_view FormaterShort::TextOf(const Variant& value, TextPlace& place) {
  return DecimalText(value.Data().iVal, place.units);
}

Variant FormaterInt::ReadValue(const XmlNode& node) {
  return Variant::FromInt(NarrowedInt(GetNodeText(node)));
}

std::u16string_view FormaterInt::TextOf(const Variant& value, TextPlace& place) {
  return DecimalText(value.Data().intVal, place.units);
}

Variant FormaterLong::ReadValue(const XmlNode& node) {
  VariantData data;
  data.llVal = ParseInt(GetNodeText(node));
  return Variant::FromRaw(VT_EMPTY, data);
}

std::u16string_view FormaterLong::TextOf(const Variant& value, TextPlace& place) {
  return DecimalText(value.Data().llVal, place.units);
}

Variant FormaterFloat::ReadValue(const XmlNode& node) {
  return Variant::FromFloat(static_cast<float>(NumberIn(node)));
}

std::u16string_view FormaterFloat::TextOf(const Variant& value, TextPlace& place) {
  return GeneralText(static_cast<double>(value.Data().fltVal), place.units);
}

Variant FormaterDouble::ReadValue(const XmlNode& node) {
  return Variant::FromDouble(NumberIn(node));
}

std::u16string_view FormaterDouble::TextOf(const Variant& value, TextPlace& place) {
  return GeneralText(value.Data().dblVal, place.units);
}

Variant FormaterString::ReadValue(const XmlNode& node) {
  const XmlNode text = FirstTextChild(node);
  return TextVariant(text.IsNull() ? node.Value() : text.Value());
}

WideString FormaterString::WriteValue(const Variant& value) {
  return EncodeXmlText(value.Text());
}

std::u16string_view FormaterString::TextOf(const Variant& value, TextPlace& place) {
  const std::u16string_view text = BorrowedText(value);
  return PlainRun(text) == text.size() ? text : FormaterSerializer::TextOf(value, place);
}

}  // namespace qv
