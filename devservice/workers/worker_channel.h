// Messages between service and worker: a length of four bytes (little endian), then that much JSON.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

namespace qv::devservice {

// One message, ready to be sent. The JSON's texts have to be valid UTF-8.
std::string PackMessage(const nlohmann::json& message);

// Collects bytes until a message is whole.
class MessageBuffer {
 public:
  // A message longer than `limit` bytes is refused by Take.
  explicit MessageBuffer(std::size_t limit) : limit_(limit) {}
  void Append(const char* bytes, std::size_t count) { bytes_.append(bytes, count); }

  // Moves the next whole message into `message` and returns true; false when more bytes are needed. Throws
  // std::runtime_error when the announced length is beyond the limit or the text is no JSON.
  bool Take(nlohmann::json& message);

 private:
  std::size_t limit_;
  std::string bytes_;
};

}  // namespace qv::devservice
