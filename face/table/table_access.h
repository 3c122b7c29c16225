// Tables from the record lists of the interfaces below.
#pragma once

#include "qvscriptwells/record_list.h"
#include "qvscriptwells/variant.h"
#include "scriptwells/value.h"

namespace scriptwells {

class TableAccess {
 public:
  // Takes the list over: nobody else may keep a reference to it or to a part of it, since the table may be
  // used on other threads. Throws Error (kAnswer) with the message of the list's component.
  static Table Make(qv::IRecordListPtr list);
};

// The value of an answer, a table included, which it takes over as Make does. Throws Error.
Value AnswerOf(qv::Variant variant);

}  // namespace scriptwells
