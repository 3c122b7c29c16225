#include "devservice/values/url_text.h"

#include <algorithm>
#include <iterator>

#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kMarks[] = {"<URL>", "</URL>", "<URL/>", "<C>", "</C>", "<C/>"};

// Reads one part from the front of `text`, in its long or its empty form.
bool TakePart(std::string_view& text, const std::string& name, std::string& part) {
  const std::string start = "<" + name + ">";
  const std::string end = "</" + name + ">";
  const std::string empty = "<" + name + "/>";
  part.clear();
  if (StartsWith(text, empty)) {
    text.remove_prefix(empty.size());
    return true;
  }
  const std::size_t close = text.find(end);
  if (!StartsWith(text, start) || close == std::string_view::npos) return false;
  part = text.substr(start.size(), close - start.size());
  text.remove_prefix(close + end.size());
  return IsUrlPart(part);
}

}  // namespace

bool IsUrlPart(std::string_view text) {
  return std::all_of(std::begin(kMarks), std::end(kMarks),
                     [text](std::string_view mark) { return text.find(mark) == std::string_view::npos; });
}

bool ParseUrl(std::string_view text, UrlValue& result) {
  if (IsUrlPart(text)) {
    result = {std::string(text), ""};
    return true;
  }
  return TakePart(text, "URL", result.link) && TakePart(text, "C", result.caption) && text.empty();
}

std::string FormatUrl(const UrlValue& url) {
  return "<URL>" + url.link + "</URL><C>" + url.caption + "</C>";
}

}  // namespace qv::devservice
