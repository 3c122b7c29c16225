#include "components/http/response_head.h"

#include <algorithm>
#include <utility>

#include "components/http/http_error.h"
#include "components/http/http_syntax.h"
#include "text/ascii.h"

namespace qv {
namespace {

constexpr std::size_t kUsualFields = 8;

[[noreturn]] void ThrowMalformed(const char* words) {
  ThrowCurl(CURLE_WEIRD_SERVER_REPLY, words);
}

bool IsBlank(char c) noexcept {
  return c == ' ' || c == '\t';
}

std::string_view WithoutCr(std::string_view line) noexcept {
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace

void ResponseHead::Parse(std::string head) {
  text_ = std::move(head);
  fields_.clear();
  fields_.reserve(kUsualFields);
  odd_ = false;
  if (text_.find('\0') != std::string::npos) ThrowMalformed("Nul byte in header");
  const std::size_t firstEnd = text_.find('\n');
  if (firstEnd == std::string::npos) ThrowMalformed("Weird server reply: no status line");
  ParseStatusLine(WithoutCr(std::string_view(text_).substr(0, firstEnd)));
  JoinContinuations(firstEnd + 1);
  const std::string_view all = text_;
  for (std::size_t start = firstEnd + 1; start < all.size();) {
    const std::size_t end = std::min(all.find('\n', start), all.size());
    const std::string_view line = WithoutCr(all.substr(start, end - start));
    if (!line.empty()) ParseField(line);
    start = end + 1;
  }
}

// "HTTP/1.1 200 OK"; the reason phrase may be missing.
void ResponseHead::ParseStatusLine(std::string_view line) {
  const bool shape = line.size() >= 12 && line.substr(0, 7) == "HTTP/1." && IsAsciiDigit(line[7]) &&
                     line[8] == ' ' && line[9] >= '1' && line[9] <= '9' && IsAsciiDigit(line[10]) &&
                     IsAsciiDigit(line[11]) && (line.size() == 12 || line[12] == ' ');
  if (!shape) ThrowMalformed("Received HTTP/0.9 or another answer that is no HTTP/1");
  if (line.find('\r') != std::string_view::npos)
    ThrowMalformed("Weird server reply: lone CR in the status line");
  minorVersion_ = line[7] - '0';
  status_ = (line[9] - '0') * 100 + (line[10] - '0') * 10 + (line[11] - '0');
}

void ResponseHead::JoinContinuations(std::size_t from) {
  if (from < text_.size() && IsBlank(text_[from]))
    ThrowMalformed("Weird server reply: continuation of nothing");
  for (std::size_t end = text_.find('\n', from); end != std::string::npos; end = text_.find('\n', end + 1)) {
    if (end + 1 >= text_.size() || !IsBlank(text_[end + 1])) continue;
    text_[end] = ' ';
    if (text_[end - 1] == '\r') text_[end - 1] = ' ';
    odd_ = true;
  }
}

void ResponseHead::ParseField(std::string_view line) {
  if (line.find('\r') != std::string_view::npos) ThrowMalformed("Weird server reply: lone CR in a header");
  const std::size_t colon = line.find(':');
  const std::string_view before = line.substr(0, std::min(colon, line.size()));
  const std::string_view name = TrimBlanks(before);
  odd_ = odd_ || name.size() != before.size() || colon == std::string_view::npos || !IsToken(name);
  if (colon == std::string_view::npos || !IsToken(name)) return;
  const std::string_view value = TrimBlanks(line.substr(colon + 1));
  const char* base = text_.data();
  fields_.push_back({static_cast<std::size_t>(name.data() - base), name.size(),
                     static_cast<std::size_t>(value.data() - base), value.size()});
}

std::string_view ResponseHead::NameOf(const Field& field) const noexcept {
  return std::string_view(text_).substr(field.name, field.nameSize);
}

std::string_view ResponseHead::ValueOf(const Field& field) const noexcept {
  return std::string_view(text_).substr(field.value, field.valueSize);
}

bool ResponseHead::Find(std::string_view name, std::string_view* value) const noexcept {
  // NOLINTNEXTLINE(readability-use-anyofallof): returns the first match
  for (const Field& field : fields_) {
    if (!EqualsIgnoringCase(NameOf(field), name)) continue;
    *value = ValueOf(field);
    return true;
  }
  return false;
}

std::vector<std::string_view> ResponseHead::FindAll(std::string_view name) const {
  std::vector<std::string_view> values;
  for (const Field& field : fields_)
    if (EqualsIgnoringCase(NameOf(field), name)) values.push_back(ValueOf(field));
  return values;
}

}  // namespace qv
