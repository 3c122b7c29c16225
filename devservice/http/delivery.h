// Sends an answer in the way that it asks for.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "devservice/http/connection.h"
#include "devservice/http/http_message.h"

namespace qv::devservice {

// Returns when all is sent, the silence of an odd delivery is over, or the other side has closed. Marks the
// connection for closing where the delivery or a failure requires it. Files are sent piece by piece; each
// piece is added to `fileBytes` just before.
void Deliver(Connection& connection, const HttpAnswer& answer, std::chrono::milliseconds stallTime,
             std::atomic<std::uint64_t>& fileBytes);

}  // namespace qv::devservice
