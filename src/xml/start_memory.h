// The memory manager of the started XML library. The library does not survive a refused allocation while it
// starts or stops, so that is served from one block reserved beforehand; everything else is operator new.
// Reserve, GiveBack and Serving belong to whoever starts and stops the library, one thread at a time; the
// rest: any thread. Failure: the XML library's OutOfMemoryException.
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
  // Makes the block ready for a start and the stop after it. False when the system has no memory for it.
  bool Reserve() noexcept;
  // Frees the block, unless parts of it are in use: a program that starts the XML library itself may keep it
  // running beyond our stop. Then the block stays, and this module stays loaded for it.
  void GiveBack() noexcept;

  // While one lives, requests of its thread are served from the block as long as it has room.
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

  // A start takes 743 kB of it with the version that Debian 12 has. Pages that are not touched cost nothing.
  static constexpr std::size_t kBlockSize = std::size_t{1} << 20;

 private:
  void* TakeFromBlock(std::size_t size) noexcept;

  char* block_ = nullptr;
  std::size_t used_ = 0;
  std::atomic<std::size_t> parts_{0};  // cut from the block and not given back
  std::atomic<std::thread::id> served_{};
  std::optional<ModuleLock> lock_;
};

}  // namespace qv
