// The thread's error record as tests compare it.
#pragma once

#include <string>

#include "fixtures/shown_text.h"
#include "qvscriptwells/error_info.h"

namespace qv {

// Takes the waiting record: its words, or "no record". A record that names an interface, a source or a help
// file is none of the library's and shows so.
inline std::string TakenWords() {
  ErrorInfo info;
  if (!GetErrorInfo(&info)) return "no record";
  const bool plain =
      info.interfaceId == Guid{} && info.source.IsEmpty() && info.helpFile.IsNull() && info.helpContext == 0;
  return Shown(info.description) + (plain ? "" : " [with more]");
}

// Leaves a record as an earlier, unrelated failure would.
inline void LeaveStaleRecord() {
  ErrorInfo info;
  info.description = u"stale words";
  SetErrorInfo(info);
}

}  // namespace qv
