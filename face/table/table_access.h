// Tables from the record lists of the interfaces below.
#pragma once

#include "qvscriptwells/record_list.h"
#include "scriptwells/table.h"

namespace scriptwells {

class TableAccess {
 public:
  // Takes the list over: nobody else may change it. Reads the columns. Throws Error (kAnswer) with the
  // message of the list's component.
  static Table Make(qv::IRecordListPtr list);
};

// The value of an answer, a table included. Throws Error.
Value AnswerOf(const qv::Variant& variant);

}  // namespace scriptwells
