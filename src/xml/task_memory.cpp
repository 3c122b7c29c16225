#include "xml/task_memory.h"

#include <cstdlib>
#include <new>
#include <utility>

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

namespace qv {

TaskMemory::~TaskMemory() {
  for (Part* part = ends_.next; part != &ends_;) std::free(std::exchange(part, part->next));
}

xercesc::MemoryManager* TaskMemory::getExceptionMemoryManager() {
  return xercesc::XMLPlatformUtils::fgMemoryManager;
}

void* TaskMemory::allocate(XMLSize_t size) {
  void* raw = size < PTRDIFF_MAX ? std::malloc(sizeof(Part) + size) : nullptr;
  if (raw == nullptr) throw xercesc::OutOfMemoryException();
  auto* part = new (raw) Part{&ends_, ends_.next};
  part->next->previous = part;
  ends_.next = part;
  return part + 1;
}

void TaskMemory::deallocate(void* bytes) {
  if (bytes == nullptr) return;
  Part* part = static_cast<Part*>(bytes) - 1;
  part->previous->next = part->next;
  part->next->previous = part->previous;
  std::free(part);
}

}  // namespace qv
