#include "tools/output/csv_text.h"

#include <utf8.h>

namespace qv::cli {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

bool NeedsQuotes(const std::string& text) {
  if (text.empty()) return false;
  return IsBlank(text.front()) || IsBlank(text.back()) || text.find_first_of(",\"\r\n") != std::string::npos;
}

std::string Quoted(const std::string& text) {
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + "\"";
}

}  // namespace

std::string CsvOnlyField(const std::string& text, const std::string& nullText) {
  return text.empty() || text == nullText || NeedsQuotes(text) ? Quoted(text) : text;
}

bool IsCsvNull(const std::string& text) {
  return !NeedsQuotes(text) && utf8::is_valid(text.begin(), text.end());
}

}  // namespace qv::cli
