#include "com/class_names.h"

#include <unistd.h>

#include <string>

#include "com/error_message.h"
#include "com/guid_text.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/registry.h"
#include "text/ascii.h"
#include "text/join_text.h"

namespace qv {
namespace {

// "{01932093-F909-400B-B02E-7AEDABA33A36}": each x is a hexadecimal digit, all else is literal.
constexpr std::u16string_view kShape = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";

bool HasShape(std::u16string_view text) noexcept {
  if (text.size() != kShape.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (kShape[i] == u'x' ? !IsHexDigit(text[i]) : text[i] != kShape[i]) return false;
  return true;
}

Guid WithoutBraces(std::u16string_view text) noexcept {
  char digits[37] = {};
  for (std::size_t i = 0; i < 36; ++i) digits[i] = static_cast<char>(text[i + 1]);
  return ParseGuid(digits);
}

// A name must be one component of a key, or it could lead to another key.
bool IsName(std::u16string_view name) noexcept {
  return !name.empty() && name.find(u'\\') == std::u16string_view::npos;
}

std::string Fault(const RegistryLayer& layer) {
  if (!layer.damage.empty()) return " (" + layer.damage + ")";
  return access(layer.path.c_str(), F_OK) == 0 ? "" : " (not there)";
}

void PostUnknownName(const WideString& progId) {
  PostErrorMessage(
      FromUtf8("The registry knows no class named \"" + ToUtf8(progId) + "\"" + SearchedRegistry()));
}

}  // namespace

WideString ClassKey(const Guid& classId, const WideString& below) {
  return JoinText({kClassesKey, u"\\CLSID\\", StringFromIID(classId).view(), u"\\", below.view()});
}

HRESULT CLSIDFromString(const WideString& text, Guid* classId) noexcept {
  if (classId == nullptr) return E_POINTER;
  const bool isRight = HasShape(text.view());
  *classId = isRight ? WithoutBraces(text.view()) : Guid{};
  return isRight ? S_OK : CO_E_CLASSSTRING;
}

std::string SearchedRegistry() {
  std::string files;
  for (const RegistryLayer& layer : ReadRegistry())
    files += (files.empty() ? "" : ", ") + layer.path + Fault(layer);
  return "; looked in " + files + "; the variable QV_REGISTRY names a file that is read first";
}

HRESULT CLSIDFromProgID(const WideString& progId, Guid* classId) noexcept {
  ClearErrorInfo();
  if (classId == nullptr) return E_POINTER;
  *classId = Guid{};
  try {
    if (IsName(progId.view()) &&
        Succeeded(CLSIDFromString(
            ReadRegistryValue(JoinText({kClassesKey, u"\\", progId.view(), u"\\CLSID"})), classId)))
      return S_OK;
    PostUnknownName(progId);
    return CO_E_CLASSSTRING;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ProgIDFromCLSID(const Guid& classId, WideString* progId) noexcept {
  if (progId == nullptr) return E_POINTER;
  *progId = WideString();
  try {
    *progId = ReadRegistryValue(ClassKey(classId, u"ProgID"));
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  if (!progId->IsEmpty()) return S_OK;
  *progId = WideString();
  return REGDB_E_CLASSNOTREG;
}

}  // namespace qv
