// The arguments of one call by name. The model fills them in; commands write them into the envelope.
#pragma once

#include <map>

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// The caller fills it with insert, so the first value of a key stays.
using NamedArguments = std::map<WideString, Variant>;

namespace argument {

inline constexpr char16_t kConnectionString[] = u"ConnectionString";
inline constexpr char16_t kContextHandle[] = u"ContextHandle";
inline constexpr char16_t kCookieHandle[] = u"CookieHandle";
inline constexpr char16_t kParameters[] = u"parameters";  // IParameters
inline constexpr char16_t kProxy[] = u"Proxy";
inline constexpr char16_t kProxyPort[] = u"ProxyPort";  // VT_INT
inline constexpr char16_t kScript[] = u"Script";
inline constexpr char16_t kScriptFile[] = u"ScriptFile";
inline constexpr char16_t kScriptLanguage[] = u"ScriptLanguage";
inline constexpr char16_t kUploadFile[] = u"UploadFile";  // the address that takes uploads

}  // namespace argument

// The text of a key, or `absent`.
inline WideString TextArgument(const NamedArguments& map, const char16_t* key, const char16_t* absent) {
  const auto found = map.find(key);
  return found == map.end() ? WideString(absent) : found->second.Text();
}

}  // namespace qv
