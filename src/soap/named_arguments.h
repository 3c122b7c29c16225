// The arguments of one call by name. The model fills them in; commands write them into the envelope.
#pragma once

#include <map>
#include <string_view>

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// The caller fills it with insert, so the first value of a key stays. Keys are not copied: constants only.
using NamedArguments = std::map<std::u16string_view, Variant>;

namespace argument {

inline constexpr std::u16string_view kConnectionString = u"ConnectionString";
inline constexpr std::u16string_view kContextHandle = u"ContextHandle";
inline constexpr std::u16string_view kCookieHandle = u"CookieHandle";
inline constexpr std::u16string_view kParameters = u"parameters";  // IParameters
inline constexpr std::u16string_view kProxy = u"Proxy";
inline constexpr std::u16string_view kProxyPort = u"ProxyPort";  // VT_INT
inline constexpr std::u16string_view kScript = u"Script";
inline constexpr std::u16string_view kScriptFile = u"ScriptFile";
inline constexpr std::u16string_view kScriptLanguage = u"ScriptLanguage";
inline constexpr std::u16string_view kUploadFile = u"UploadFile";  // the address that takes uploads

}  // namespace argument

// The text of a key, or `absent`.
inline WideString TextArgument(const NamedArguments& map, std::u16string_view key, const char16_t* absent) {
  const auto found = map.find(key);
  return found == map.end() ? WideString(absent) : found->second.Text();
}

}  // namespace qv
