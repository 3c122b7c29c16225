// Feeds both ends of the channel between the development service and its workers. A script that has taken
// over its worker may send anything. Nothing may crash or be undefined; what was read is written and read
// again to the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "devservice/workers/script_messages.h"
#include "devservice/workers/worker_channel.h"

namespace {

using namespace qv::devservice;

constexpr std::size_t kLimit = std::size_t{1} << 20;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Written, sent and received.
nlohmann::json Transferred(const nlohmann::json& message) {
  const std::string packed = PackMessage(message);
  MessageBuffer buffer(packed.size());
  buffer.Append(packed.data(), packed.size());
  nlohmann::json received;
  Require(buffer.Take(received));
  return received;
}

void LookAtResult(const nlohmann::json& message) {
  try {
    const nlohmann::json result = ToJson(ResultFromJson(message));
    Require(ToJson(ResultFromJson(Transferred(result))) == result);
  } catch (const nlohmann::json::exception&) {  // refused is fine
  }
}

void LookAtJob(const nlohmann::json& message) {
  try {
    const nlohmann::json job = ToJson(JobFromJson(message));
    Require(ToJson(JobFromJson(Transferred(job))) == job);
  } catch (const nlohmann::json::exception&) {  // refused is fine
  }
}

void Look(const nlohmann::json& message) {
  LookAtResult(message);
  LookAtJob(message);
}

// In two pieces, as a connection may deliver them.
void LookAtBytes(const char* data, std::size_t size) {
  MessageBuffer buffer(kLimit);
  const std::size_t half = size / 2;
  nlohmann::json message;
  buffer.Append(data, half);
  while (buffer.Take(message)) Look(message);
  buffer.Append(data + half, size - half);
  while (buffer.Take(message)) Look(message);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const char* bytes = reinterpret_cast<const char*>(data);
  try {
    LookAtBytes(bytes, size);
  } catch (const std::runtime_error&) {         // refused is fine
  } catch (const nlohmann::json::exception&) {  // refused is fine
  }
  // The same bytes as the text of one message, since a fuzzer seldom gets a length right.
  const nlohmann::json message = nlohmann::json::parse(bytes, bytes + size, nullptr, false);
  if (!message.is_discarded()) Look(message);
  return 0;
}
