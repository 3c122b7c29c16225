#include <cstddef>

#include "com/module.h"
#include "dispatch/dispatch_table.h"

namespace qv {
namespace {

constexpr std::size_t kLongestModulePath = 260;  // with its null unit

bool ModulePathFits() noexcept {
  try {
    return ModulePath().size() < kLongestModulePath;
  } catch (...) {
    return false;
  }
}

}  // namespace

HRESULT CountTypeInfo(std::uint32_t* count) noexcept {
  if (count == nullptr) return E_POINTER;
  if (!ModulePathFits()) return E_FAIL;
  *count = 0;
  return S_OK;
}

HRESULT FindTypeInfo(std::uint32_t index, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (!ModulePathFits()) return E_FAIL;
  return index == 0 ? TYPE_E_CANTLOADLIBRARY : DISP_E_BADINDEX;
}

}  // namespace qv
