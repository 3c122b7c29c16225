// A Scriptwells server in another process. It knows the few requests that the scenes send, and has one answer
// for each.
#pragma once

#include "fixtures/forked_server.h"

namespace qv::torture {

class AnsweringServer : public test::ForkedServer {
 public:
  AnsweringServer();
};

}  // namespace qv::torture
