// Masks the secrets of a request, for those who only watch.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace qv::devservice {

// The text of an envelope with "***" in place of
//  - the content of elements with the local name ConnectionString, usid and CreateUserSessionResult,
//  - all runs of exactly 32 hexadecimal digits: session ids, tickets and the ids of files, wherever they are.
// An element without an end is masked to the end of the text. Pure; any thread.
std::string MaskSecrets(std::string_view text);

// The same for the target of a request, which may write an id with "%" and two digits for each character.
std::string MaskTarget(std::string_view target);

// The text with "***" in place of those runs of exactly 32 hexadecimal digits that are secret. Pure.
std::string MaskIds(std::string_view text, const std::function<bool(const std::string&)>& isSecret);

// A body as UTF-8, if it is UTF-16 (with or without a byte order mark); else as it is, unless it holds a null
// character: then it is no text, and nothing can be masked in it. Pure.
std::string ReadableText(const std::string& body);

inline constexpr std::size_t kIdDigits = 32;
bool IsHexDigit(char c);

}  // namespace qv::devservice
