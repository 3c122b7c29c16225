#include "format/scalar_formaters.h"

#include <new>

#include "qvscriptwells/com_error.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "support/wide_text_stream.h"

// The texts of numbers are sent unchanged: they contain no unit that the XML escape replaces.
namespace qv {
namespace {

Variant TextVariant(std::u16string_view text) {
  return Variant::FromString(WideString(text));
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

WideString FormaterBool::WriteValue(const Variant& value) {
  return value.Data().boolVal != 0 ? u"1" : u"0";
}

// The data bytes hold the whole 32-bit number; the tag uses only the lowest byte.
Variant FormaterByte::ReadValue(const XmlNode& node) {
  VariantData data;
  data.intVal = NarrowedInt(node.Value());
  return Variant::FromRaw(VT_I1, data);
}

WideString FormaterByte::WriteValue(const Variant& value) {
  Variant number;
  const HRESULT code = VariantChangeType(&number, value, VT_INT);
  if (Failed(code)) _com_raise_error(code);
  return DecimalText(number.Data().intVal);
}

Variant FormaterShort::ReadValue(const XmlNode& node) {
  return Variant::FromShort(static_cast<std::int16_t>(NarrowedInt(GetNodeText(node))));
}

WideString FormaterShort::WriteValue(const Variant& value) {
  return DecimalText(value.Data().iVal);
}

Variant FormaterInt::ReadValue(const XmlNode& node) {
  return Variant::FromInt(NarrowedInt(GetNodeText(node)));
}

WideString FormaterInt::WriteValue(const Variant& value) {
  return DecimalText(value.Data().intVal);
}

Variant FormaterLong::ReadValue(const XmlNode& node) {
  VariantData data;
  data.llVal = ParseInt(GetNodeText(node));
  return Variant::FromRaw(VT_EMPTY, data);
}

WideString FormaterLong::WriteValue(const Variant& value) {
  return DecimalText(value.Data().llVal);
}

Variant FormaterFloat::ReadValue(const XmlNode& node) {
  return Variant::FromFloat(static_cast<float>(NumberIn(node)));
}

WideString FormaterFloat::WriteValue(const Variant& value) {
  return GeneralText(static_cast<double>(value.Data().fltVal));
}

Variant FormaterDouble::ReadValue(const XmlNode& node) {
  return Variant::FromDouble(NumberIn(node));
}

WideString FormaterDouble::WriteValue(const Variant& value) {
  return GeneralText(value.Data().dblVal);
}

Variant FormaterString::ReadValue(const XmlNode& node) {
  const XmlNode text = FirstTextChild(node);
  return TextVariant(text.IsNull() ? node.Value() : text.Value());
}

WideString FormaterString::WriteValue(const Variant& value) {
  return EncodeXmlText(value.Text());
}

}  // namespace qv
