// Where a torture program refuses things to the code under test: memory, or system calls. A gate counts what
// passes while it is armed and refuses one of them, or one and all after it. It is armed for the calling
// thread only.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace qv::torture {

constexpr long kNever = std::numeric_limits<long>::max();

struct Refusal {
  std::size_t kind = 0;  // an index into Gate::Kinds()
  long at = kNever;      // counted from 1
  bool onwards = false;  // this one and all that follow
};

class Gate {
 public:
  virtual ~Gate() = default;
  // Names of what can be refused, such as "memory" or "recv ECONNRESET".
  virtual std::vector<std::string> Kinds() const = 0;
  // One after which the call under test must work as ever.
  virtual bool IsPassing(std::size_t) const { return false; }
  // Whether the start of a process can be refused anything.
  virtual bool StrikesBeforeMain() const { return false; }
  // Does not allocate.
  virtual void Arm(const Refusal& refusal) noexcept = 0;
  // How many passed of that kind since Arm, the refused ones included.
  virtual long Disarm() noexcept = 0;
};

}  // namespace qv::torture
