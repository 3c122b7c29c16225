#include <dlfcn.h>

#include <cstddef>

#include "automation/dispatch_table.h"

namespace qv {
namespace {

constexpr std::size_t kLongestModulePath = 260;  // with its null unit

// The file that this code was loaded from; empty when the system does not tell.
WideString ModulePath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&CountTypeInfo), &info) == 0 || info.dli_fname == nullptr)
    return {};
  return FromUtf8(info.dli_fname);
}

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
