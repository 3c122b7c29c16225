#include "face/table/table_access.h"

#include <utility>

#include "face/table/table_data.h"
#include "face/text/failures.h"
#include "face/values/wire_value.h"
#include "qvscriptwells/com_call.h"

namespace scriptwells {

Table TableAccess::Make(qv::IRecordListPtr list) {
  try {
    return Table(std::make_shared<const TableData>(std::move(list)));
  } catch (const qv::_com_error& error) {
    ThrowFailure(Phase::kAnswer, error);
  }
}

Value AnswerOf(qv::Variant variant) {
  qv::IRecordListPtr list;
  try {
    list = qv::As<qv::IRecordList>(variant.Object());
  } catch (const qv::_com_error& error) {
    ThrowFailure(Phase::kAnswer, error);
  }
  if (!list) return FromWire(variant);
  variant.Clear();  // its reference must not be released on another thread than the table's
  return TableAccess::Make(std::move(list));
}

}  // namespace scriptwells
