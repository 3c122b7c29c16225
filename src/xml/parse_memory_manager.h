// The memory of one document as the XML library's parser asks for it.
#pragma once

#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xml/parse_memory.h"

namespace qv {

class ParseMemoryManager : public XERCES_CPP_NAMESPACE_QUALIFIER MemoryManager {
 public:
  explicit ParseMemoryManager(ParseMemory& memory) noexcept : memory_(memory) {}

  // Exceptions outlive the parser.
  XERCES_CPP_NAMESPACE_QUALIFIER MemoryManager* getExceptionMemoryManager() override {
    return XERCES_CPP_NAMESPACE_QUALIFIER XMLPlatformUtils::fgMemoryManager;
  }
  void* allocate(XMLSize_t size) override { return memory_.allocate(size); }
  void deallocate(void* bytes) override { memory_.deallocate(bytes); }

 private:
  ParseMemory& memory_;
};

}  // namespace qv
