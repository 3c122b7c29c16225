// Sends an answer in the way that it asks for.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "devservice/http/connection.h"
#include "devservice/http/http_message.h"

namespace qv::devservice {

// Returns when all is sent, the silence of an odd delivery is over, or the other side is gone; the connection
// is marked for closing where the delivery or a failure asks for it. Bytes of a file are added to `fileBytes`
// just before they leave. Files go out piece by piece.
void Deliver(Connection& connection, const HttpAnswer& answer, std::chrono::milliseconds stallTime,
             std::atomic<std::uint64_t>& fileBytes);

}  // namespace qv::devservice
