#include "format/response_value_reader.h"

#include "format/formater_factory.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/string_helpers.h"

namespace qv {
namespace {

Variant ReadTyped(const XmlNode& value, const XmlNode& type) {
  FormaterSerializer* const formater = FindFormater(ReadTypeName(type));
  return formater == nullptr ? Variant() : formater->ReadValue(value);
}

Variant ReadValueElement(const XmlNode& wrapper) {
  if (wrapper.IsNull()) throw EQvException(u"The node is NULL.");
  const XmlNode value = wrapper.FirstChild();
  if (value.IsNull()) return Variant::Null();
  if (!value.HasAttributeMap()) return {};
  const XmlNode type = value.Attribute(u"xsi:type");
  if (!type.IsNull()) return ReadTyped(value, type);
  if (!value.Attribute(u"xsi:null").IsNull()) return Variant::Null();
  throw EQvException(u"Scriptwells SOAP module - General Parse fault.");
}

}  // namespace

Variant ReadResponseValue(const XmlNode& node) {
  try {
    return ReadValueElement(node);
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    throw EQvException(u"Cannot deserialize the response.");
  }
}

WideString ReadTypeName(const XmlNode& attribute) {
  const WideString name = ToLower(WideString(GetNodeText(attribute)));
  return Find(u"recordlist", name) >= 0 ? WideString(u"sof:recordlist") : name;
}

}  // namespace qv
