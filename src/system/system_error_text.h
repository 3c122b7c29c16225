// The system's message for an errno: English in every locale. Any thread.
#pragma once

#include <cstring>
#include <string>

namespace qv {

// "No such file or directory", or "Unknown error 4711".
inline std::string SystemErrorText(int error) {
  const char* words = strerrordesc_np(error);
  return words != nullptr ? words : "Unknown error " + std::to_string(error);
}

}  // namespace qv
