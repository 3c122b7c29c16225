// Refuses blocks of memory, to whatever library in the process asks for them.
#pragma once

#include "fixtures/refused_memory.h"
#include "torture/gate.h"

namespace qv::torture {

class MemoryGate : public Gate {
 public:
  std::vector<std::string> Kinds() const override { return {"memory"}; }
  bool StrikesBeforeMain() const override { return true; }
  void Arm(const Refusal& refusal) noexcept override {
    RefuseAllocation(refusal.at == kNever ? 0 : refusal.at,
                     refusal.onwards ? qv::Refusal::kAllFromThen : qv::Refusal::kOne);
  }
  long Disarm() noexcept override { return StopRefusing(); }
};

}  // namespace qv::torture
