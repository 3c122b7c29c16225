// The fastest server that a client can meet: reads a request to the end of its announced body and sends the
// same bytes each time, on kept connections.
#pragma once

#include <memory>
#include <string>

#include "fixtures/loopback_server.h"

namespace qv::bench {

class CannedServer : public test::LoopbackServer {
 public:
  // `body` is sent with status 200 and its length.
  explicit CannedServer(const std::string& body)
      : LoopbackServer([answer = std::make_shared<const std::string>(
                            test::RawAnswerText(body, "Content-Type: text/xml; charset=utf-8\r\n"))] {
          return [answer](test::LoopbackConnection& connection) { Serve(*answer, connection); };
        }) {}

 private:
  static void Serve(const std::string& answer, test::LoopbackConnection& connection) {
    std::string bytes;
    while (const std::size_t size = connection.ReadRequest(&bytes)) {
      if (!connection.Write(answer)) return;
      bytes.erase(0, size);
    }
  }
};

}  // namespace qv::bench
