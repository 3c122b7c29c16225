// The memory manager of the started XML library. The library does not survive a failed allocation while it
// starts or stops, so those allocations come from one block reserved beforehand; all others use operator new.
// Only the code that starts and stops the library uses Reserve, GiveBack and Serving, on one thread at a
// time; the rest: any thread. Failure: the XML library's OutOfMemoryException.
#pragma once

#include <atomic>
#include <cstddef>
#include <optional>
#include <thread>

#include <xercesc/framework/MemoryManager.hpp>

#include "com/module.h"

namespace qv {

class StartMemory : public XERCES_CPP_NAMESPACE_QUALIFIER MemoryManager {
 public:
  // Allocates the block for a start and the stop after it. False for lack of memory.
  bool Reserve() noexcept;
  // Frees the block, unless parts of it are in use: a program that starts the XML library itself may keep it
  // running after our stop. Then the block stays, and so does this module.
  void GiveBack() noexcept;

  // While one exists, requests of its thread are served from the block as long as it has room.
  class Serving {
   public:
    explicit Serving(StartMemory& memory) noexcept;
    ~Serving();
    Serving(const Serving&) = delete;
    Serving& operator=(const Serving&) = delete;

   private:
    StartMemory& memory_;
  };

  XERCES_CPP_NAMESPACE_QUALIFIER MemoryManager* getExceptionMemoryManager() override { return this; }
  void* allocate(XMLSize_t size) override;
  void deallocate(void* bytes) override;

  // A start uses 743 kB with the version of Debian 12. Untouched pages cost nothing.
  static constexpr std::size_t kBlockSize = std::size_t{1} << 20;

 private:
  void* TakeFromBlock(std::size_t size) noexcept;

  char* block_ = nullptr;
  std::size_t used_ = 0;
  std::atomic<std::size_t> parts_{0};  // allocated from the block and not yet freed
  std::atomic<std::thread::id> served_{};
  std::optional<ModuleLock> lock_;
};

}  // namespace qv
