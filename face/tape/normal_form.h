// What counts when entries are compared: neither lengths of secrets, nor host and port, nor times.
#pragma once

#include <string>
#include <vector>

#include "face/tape/tape.h"

namespace scriptwells {

using Lines = std::vector<std::string>;

// What a request on replay must be, line by line.
Lines NormalRequest(const TapeEntry& entry);
Lines NormalAnswer(const TapeEntry& entry);
// Purpose, request and answer, also without ids that the server made in its URLs.
Lines NormalEntry(const TapeEntry& entry);

}  // namespace scriptwells
