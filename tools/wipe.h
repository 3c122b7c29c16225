// Clears a text that was a password, a connection string or a session's id. What the text left behind when it
// grew is not known here.
#pragma once

#include <cstring>
#include <string>

namespace qv::cli {

inline void Wipe(std::string& text) noexcept {
  explicit_bzero(text.data(), text.size());
  text.clear();
}

}  // namespace qv::cli
