// Secrets that a server makes during a call.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace scriptwells {

// The texts in the answer to an opened session: its id. `body` is UTF-8.
std::vector<std::string> SessionIdsIn(std::string_view body);

// The tickets in the answer to a script that asks where to upload: what follows "=" in an address.
std::vector<std::string> TicketsIn(std::string_view body);

// The ticket in the head of an upload.
std::vector<std::string> TicketsInHead(std::string_view head);

}  // namespace scriptwells
