// Makes system calls fail as they do in the field. The program that links this file has its own socket,
// connect, send, recv, open, write, rename, fsync and close in front of the C library's.
#pragma once

#include "torture/gate.h"

namespace qv::torture {

class CallGate : public Gate {
 public:
  // "connect ECONNREFUSED", "send short", ...
  std::vector<std::string> Kinds() const override;
  // One that programs must survive, such as EINTR: the call then has its usual result. There it makes no
  // sense to refuse all that follow.
  bool IsPassing(std::size_t kind) const override;
  void Arm(const Refusal& refusal) noexcept override;
  long Disarm() noexcept override;
};

}  // namespace qv::torture
