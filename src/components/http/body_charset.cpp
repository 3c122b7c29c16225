#include "components/http/body_charset.h"

#include <algorithm>

#include "components/http/http_syntax.h"
#include "components/http/text_codec.h"
#include "text/string_block.h"

namespace qv {
namespace {

constexpr std::string_view kMarkUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kMarkLittle = "\xFF\xFE";
constexpr std::string_view kMarkBig = "\xFE\xFF";
constexpr std::size_t kLongestDeclaration = 256;
constexpr std::size_t kLongestName = 40;

bool StartsWith(std::string_view text, std::string_view start) noexcept {
  return text.substr(0, start.size()) == start;
}

bool IsNameChar(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.' || c == ':';
}

// Names come from servers and go to a converter that reads options out of them, so only plain ones pass.
bool IsPlainName(std::string_view name) noexcept {
  return !name.empty() && name.size() <= kLongestName && std::all_of(name.begin(), name.end(), IsNameChar);
}

std::string_view Unquoted(std::string_view value) noexcept {
  if (value.empty() || (value.front() != '"' && value.front() != '\'')) return value;
  const char quote = value.front();
  value.remove_prefix(1);
  return value.substr(0, value.find(quote));
}

// "a;b" gives "a" and leaves "b"; semicolons in quotes do not count.
std::string_view NextParameter(std::string_view* rest) noexcept {
  bool quoted = false;
  std::size_t end = 0;
  for (; end < rest->size() && (quoted || (*rest)[end] != ';'); ++end)
    if ((*rest)[end] == '"') quoted = !quoted;
  const std::string_view parameter = rest->substr(0, end);
  rest->remove_prefix(std::min(end + 1, rest->size()));
  return parameter;
}

bool ConverterKnows(const std::string& name) {
  WideString unused;
  return DecodeByIconv({}, name, &unused);
}

}  // namespace

std::string CharsetParameter(std::string_view contentType) {
  NextParameter(&contentType);
  while (!contentType.empty()) {
    const std::string_view parameter = NextParameter(&contentType);
    const std::size_t equals = parameter.find('=');
    if (equals == std::string_view::npos) continue;
    if (EqualsIgnoringCase(TrimBlanks(parameter.substr(0, equals)), "charset"))
      return std::string(Unquoted(TrimBlanks(parameter.substr(equals + 1))));
  }
  return {};
}

std::string DeclaredEncoding(std::string_view bytes) {
  if (!StartsWith(bytes, "<?xml")) return {};
  bytes = bytes.substr(0, std::min(bytes.find("?>"), kLongestDeclaration));
  const std::size_t word = bytes.find("encoding");
  if (word == std::string_view::npos) return {};
  bytes.remove_prefix(word + std::string_view("encoding").size());
  const std::size_t equals = bytes.find_first_not_of(" \t\r\n");
  if (equals == std::string_view::npos || bytes[equals] != '=') return {};
  const std::size_t quote = bytes.find_first_not_of(" \t\r\n", equals + 1);
  if (quote == std::string_view::npos || (bytes[quote] != '"' && bytes[quote] != '\'')) return {};
  return std::string(Unquoted(bytes.substr(quote)));
}

BodyCharset::BodyCharset(std::string_view contentType, std::string_view start) {
  if (SetByName(CharsetParameter(contentType), start) || SetByMark(start)) return;
  SetByName(DeclaredEncoding(start), start);
  // A declaration that could be read as ASCII is not in UTF-16, whatever it says.
  if (kind_ == Kind::kUtf16Little || kind_ == Kind::kUtf16Big) kind_ = Kind::kUtf8;
}

bool BodyCharset::SetByMark(std::string_view start) noexcept {
  if (StartsWith(start, kMarkLittle)) kind_ = Kind::kUtf16Little;
  if (StartsWith(start, kMarkBig)) kind_ = Kind::kUtf16Big;
  return kind_ != Kind::kUtf8 || StartsWith(start, kMarkUtf8);
}

bool BodyCharset::SetByName(std::string_view given, std::string_view start) {
  struct Row {
    std::string_view name;
    Kind kind;
  };
  static constexpr Row kRows[] = {
      {"utf-8", Kind::kUtf8},        {"utf8", Kind::kUtf8},
      {"us-ascii", Kind::kUtf8},     {"ascii", Kind::kUtf8},
      {"iso-8859-1", Kind::kLatin1}, {"iso8859-1", Kind::kLatin1},
      {"latin1", Kind::kLatin1},     {"utf-16le", Kind::kUtf16Little},
      {"utf-16be", Kind::kUtf16Big},
  };
  const std::string name = LowerAscii(given);
  for (const Row& row : kRows)
    if (row.name == name) return kind_ = row.kind, true;
  if (name == "utf-16") {
    const bool little = StartsWith(start, kMarkLittle) || StartsWith(start, std::string_view("<\0", 2));
    kind_ = little ? Kind::kUtf16Little : Kind::kUtf16Big;
    return true;
  }
  if (!IsPlainName(name) || !ConverterKnows(name)) return false;
  kind_ = Kind::kOther;
  name_ = name;
  return true;
}

std::size_t BodyCharset::MarkSize(std::string_view start) const noexcept {
  if (kind_ == Kind::kUtf8 && StartsWith(start, kMarkUtf8)) return kMarkUtf8.size();
  if (kind_ == Kind::kUtf16Little && StartsWith(start, kMarkLittle)) return kMarkLittle.size();
  if (kind_ == Kind::kUtf16Big && StartsWith(start, kMarkBig)) return kMarkBig.size();
  return 0;
}

std::size_t BodyCharset::OpenTail(std::string_view bytes) const noexcept {
  if (kind_ == Kind::kUtf8) return OpenTailUtf8(bytes);
  if (kind_ == Kind::kUtf16Little) return OpenTailUtf16(bytes, false);
  if (kind_ == Kind::kUtf16Big) return OpenTailUtf16(bytes, true);
  return 0;
}

std::size_t BodyCharset::MostUnits(std::size_t bytes) const noexcept {
  const bool isWide = kind_ == Kind::kUtf16Little || kind_ == Kind::kUtf16Big;
  return isWide ? bytes / 2 + bytes % 2 : bytes;
}

char16_t* BodyCharset::DecodePiece(std::string_view bytes, char16_t* out) const noexcept {
  if (kind_ == Kind::kLatin1) return PutDecodedLatin1(bytes, out);
  if (kind_ == Kind::kUtf16Little) return PutDecodedUtf16(bytes, false, out);
  if (kind_ == Kind::kUtf16Big) return PutDecodedUtf16(bytes, true, out);
  return PutDecodedUtf8(bytes, out);
}

WideString BodyCharset::Decode(std::string_view bytes) const {
  WideString text;
  if (!DecodesPieces() && DecodeByIconv(bytes, name_, &text)) return text;
  BStr units = NewStringBlock(MostUnits(bytes.size()));
  SetStringLength(units, static_cast<std::size_t>(DecodePiece(bytes, units) - units));
  return WideString::Attach(units);
}

}  // namespace qv
