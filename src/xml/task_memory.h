// The memory of one task of the XML library. What the library forgets to give back when it is refused more in
// the middle of a constructor goes with this object. One thread; outlives all that was made from it.
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
  // In front of every part that is handed out.
  struct alignas(std::max_align_t) Part {
    Part* previous;
    Part* next;
  };

  Part ends_{&ends_, &ends_};
};

}  // namespace qv
