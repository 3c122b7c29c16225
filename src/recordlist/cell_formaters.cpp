#include "recordlist/cell_formaters.h"

#include "format/formater_factory.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "recordlist/column_types.h"

namespace qv {
namespace {

[[noreturn]] void RethrowAsCellFailure() {
  try {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    throw EQvException(messages::kRecordList);
  }
}

}  // namespace

Variant CellFormaters::ReadCell(std::int32_t columnType, const XmlNode& text) {
  try {
    FormaterSerializer* const formater = FormaterOf(columnType);
    return formater == nullptr ? Variant() : formater->ReadValue(text);
  } catch (...) {
    RethrowAsCellFailure();
  }
}

std::u16string_view CellFormaters::WriteCell(std::int32_t columnType, const Variant& value) {
  try {
    FormaterSerializer* const formater = FormaterOf(columnType);
    return formater == nullptr ? std::u16string_view() : formater->TextOf(value, text_);
  } catch (...) {
    RethrowAsCellFailure();
  }
}

FormaterSerializer* CellFormaters::FormaterOf(std::int32_t columnType) {
  if (columnType < 0 || static_cast<std::size_t>(columnType) >= kKnownTypes) return nullptr;
  Place& place = places_[columnType];
  if (!place.asked) {
    place.formater = FindFormater(WideString(FormaterNameOf(columnType)));
    place.asked = true;
  }
  return place.formater;
}

}  // namespace qv
