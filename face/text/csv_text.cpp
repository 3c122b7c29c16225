#include "face/text/csv_text.h"

#include <utf8.h>

#include "face/text/failures.h"

namespace scriptwells {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

bool NeedsQuotes(std::string_view text) {
  if (text.empty()) return false;
  return IsBlank(text.front()) || IsBlank(text.back()) || text.find_first_of(",\"\r\n") != std::string::npos;
}

std::string InQuotes(const std::string& text) {
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += '"';
    field += c;
  }
  return field + "\"";
}

}  // namespace

std::string CsvField(const std::string& text, std::string_view null) {
  return text == null || NeedsQuotes(text) ? InQuotes(text) : text;
}

std::string CsvOnlyField(const std::string& text, std::string_view null) {
  return text.empty() ? InQuotes(text) : CsvField(text, null);
}

void CheckCsvNull(std::string_view null) {
  if (NeedsQuotes(null)) RefuseConversion("the CSV text for empty cells must not need quotes");
  if (!utf8::is_valid(null.begin(), null.end()))
    RefuseConversion("the CSV text for empty cells is not UTF-8");
}

}  // namespace scriptwells
