#include "automation/registration.h"

#include <atomic>
#include <string>

#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_error.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr char16_t kAppId[] = u"{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}";
constexpr char16_t kClassId[] = u"{01932093-F909-400b-B02E-7AEDABA33A36}";
constexpr char16_t kFriendlyName[] = u"QvScriptwells Object";

constexpr char16_t kAppIds[] = u"SOFTWARE\\Classes\\AppID";
constexpr char16_t kAppIdKey[] = u"SOFTWARE\\Classes\\AppID\\{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}";
constexpr char16_t kModuleKey[] = u"SOFTWARE\\Classes\\AppID\\QuorvScriptwells.DLL";
constexpr char16_t kProgIdKey[] = u"SOFTWARE\\Classes\\QvScriptwells.QvScriptwells.1.0";
constexpr char16_t kIndependentKey[] = u"SOFTWARE\\Classes\\QvScriptwells.QvScriptwells";
constexpr char16_t kClassKey[] = u"SOFTWARE\\Classes\\CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}";

// They do not include kAppIds.
const char16_t* const kOwnKeys[] = {kAppIdKey, kModuleKey, kProgIdKey, kIndependentKey, kClassKey};

std::atomic<RegistrationFollowUp> followUpHook{nullptr};

WideString Below(const char16_t* key, const char16_t* name) {
  return JoinText({key, u"\\", name});
}

HRESULT FollowUp(bool adding) noexcept {
  const RegistrationFollowUp followUp = followUpHook;
  return followUp == nullptr ? S_OK : followUp(adding);
}

}  // namespace

std::vector<RegistryValue> ClassEntries(const WideString& path) {
  return {
      {kAppIds, nullptr, nullptr},
      {kAppIdKey, nullptr, u"QuorvScriptwells"},
      {kModuleKey, u"AppID", kAppId},
      {kProgIdKey, nullptr, kFriendlyName},
      {Below(kProgIdKey, u"CLSID"), nullptr, kClassId},
      {kIndependentKey, nullptr, kFriendlyName},
      {Below(kIndependentKey, u"CLSID"), nullptr, kClassId},
      {Below(kIndependentKey, u"CurVer"), nullptr, kScriptwellsProgId},
      {kClassKey, nullptr, kFriendlyName},
      {kClassKey, u"AppID", kAppId},
      {Below(kClassKey, u"ProgID"), nullptr, kScriptwellsProgId},
      {Below(kClassKey, u"VersionIndependentProgID"), nullptr, kScriptwellsVersionIndependentProgId},
      {Below(kClassKey, u"Programmable"), nullptr, nullptr},
      {Below(kClassKey, u"InprocServer32"), nullptr, path},
      {Below(kClassKey, u"InprocServer32"), u"ThreadingModel", u"apartment"},
  };
}

HRESULT RegisterClasses() noexcept {
  try {
    const WideString path = ModulePath();
    if (path.IsNull()) _com_raise_error(E_UNEXPECTED);
    WriteRegistryValues(ClassEntries(path));
    return FollowUp(true);
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT UnregisterClasses() noexcept {
  try {
    RemoveRegistryKeys({std::begin(kOwnKeys), std::end(kOwnKeys)});
    return FollowUp(false);
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

void SetRegistrationFollowUp(RegistrationFollowUp followUp) noexcept {
  followUpHook = followUp;
}

}  // namespace qv
