// The memory of one task of the XML library. The library leaks when an allocation inside a constructor fails;
// the destructor frees such memory. One thread; must outlive all objects created with it.
#pragma once

#include <cstddef>

#include <xercesc/framework/MemoryManager.hpp>

namespace qv {

class TaskMemory : public xercesc::MemoryManager {
 public:
  TaskMemory() = default;
  ~TaskMemory() override;
  TaskMemory(const TaskMemory&) = delete;
  TaskMemory& operator=(const TaskMemory&) = delete;

  xercesc::MemoryManager* getExceptionMemoryManager() override;
  // Throws xercesc::OutOfMemoryException.
  void* allocate(XMLSize_t size) override;
  void deallocate(void* bytes) override;

 private:
  // The header of every allocated part.
  struct alignas(std::max_align_t) Part {
    Part* previous;
    Part* next;
  };

  Part ends_{&ends_, &ends_};
};

}  // namespace qv
