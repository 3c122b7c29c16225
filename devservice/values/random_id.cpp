#include "devservice/values/random_id.h"

#include <sys/random.h>

#include <cerrno>

#include "devservice/values/fault_codes.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

}  // namespace

std::string RandomId() {
  unsigned char bytes[16];
  // Blocks only before the system's random source is ready; below 256 bytes nothing interrupts it then.
  while (getrandom(bytes, sizeof bytes, 0) != sizeof bytes) {
    if (errno != EINTR) throw FaultError(kUnavailable, "The system gives no random numbers.", "service");
  }
  std::string id;
  for (const unsigned char byte : bytes) {
    id += kDigits[byte >> 4];
    id += kDigits[byte & 15];
  }
  return id;
}

bool IsRandomId(std::string_view text) {
  return text.size() == 32 && text.find_first_not_of(kDigits) == std::string_view::npos;
}

}  // namespace qv::devservice
