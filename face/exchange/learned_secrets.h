// Secrets that are known by their place in a message.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace scriptwells {

struct PlacedSecret {
  std::size_t begin, end;  // in the message
  std::string value;       // without the escapes of XML
};
using PlacedSecrets = std::vector<PlacedSecret>;

// Bodies are UTF-8. Of requests:

// The password in the connection string; it may be empty.
PlacedSecrets PasswordsIn(std::string_view body);
// In the element of a call, and in the header of a transfer.
PlacedSecrets SessionIdsOfCall(std::string_view body);
PlacedSecrets SessionIdsInHead(std::string_view head);
// That of a file which is a parameter.
PlacedSecrets TicketsOfCall(std::string_view body);
// In the head of an upload.
PlacedSecrets TicketsInHead(std::string_view head);

// Of answers:

// The texts in the answer to an opened session: its id.
PlacedSecrets SessionIdsIn(std::string_view body);
// In the answer to a script that asks where to upload: what follows "=" in an address, up to the next "=",
// and the rest after that.
PlacedSecrets TicketsIn(std::string_view body);

}  // namespace scriptwells
