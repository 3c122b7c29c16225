// Refuses blocks of memory. The program that links this file has its own malloc, calloc, realloc and their
// kin in front of the C library's, so the gate sees what any library in the process asks for, operator new
// included.
#pragma once

#include "torture/gate.h"

namespace qv::torture {

class MemoryGate : public Gate {
 public:
  std::vector<std::string> Kinds() const override { return {"memory"}; }
  bool StrikesBeforeMain() const override { return true; }
  void Arm(const Refusal& refusal) noexcept override;
  long Disarm() noexcept override;
};

// Blocks that are allocated now, by whatever thread.
long LiveBlocks() noexcept;

// Refuses from the start of the process on when the environment has QV_REFUSE_MEMORY_AT, a number, until the
// program says otherwise. QV_REFUSE_MEMORY_ONWARDS, with any value, refuses all that follow, too. Returns how
// many blocks were asked for so far.
long EndRefusalOfProcessStart() noexcept;

}  // namespace qv::torture
