// The place in a script that a fault names.
#pragma once

#include <string>

namespace scriptwells {

struct FaultPlace {
  int line = 0;  // 0 if unknown
  int column = 0;
};

// `answer` is the body with the fault, in UTF-8, `description` its message. Reads "line 3" and "line 3,
// column 5" in the fault's source, or at the end of the message.
FaultPlace PlaceOfFault(const std::string& answer, const std::string& description);

}  // namespace scriptwells
