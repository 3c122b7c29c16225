#include "devservice/soap/document_type.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "devservice/soap/xml_reader.h"
#include "devservice/values/text_scanner.h"

namespace qv::devservice {
namespace {

using Entities = std::map<std::string_view, std::string>;

constexpr std::string_view kStart = "<!DOCTYPE";
constexpr std::string_view kEntityStart = "<!ENTITY";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kPredefined[] = {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"};
constexpr std::size_t kMostAddedBytes = std::size_t{1} << 20;
constexpr std::size_t kLongestName = 200;

// Where the document type declaration or the root begins.
std::size_t SkipProlog(std::string_view xml) {
  std::size_t at = StartsWith(xml, kByteOrderMark) ? kByteOrderMark.size() : 0;
  for (;;) {
    const std::size_t next = std::min(xml.find_first_not_of(" \t\r\n", at), xml.size());
    at = SkipLiteralSection(xml, next);
    if (at == next) return at;
  }
}

// Skips one character, or the quoted text, comment or instruction that it starts.
std::size_t SkipPiece(std::string_view xml, std::size_t at) {
  const std::size_t after = SkipLiteralSection(xml, at);
  if (after != at) return after;
  if (xml[at] != '"' && xml[at] != '\'') return at + 1;
  const std::size_t end = xml.find(xml[at], at + 1);
  return end == std::string_view::npos ? xml.size() : end + 1;
}

// The place of the first of these characters outside of quotes and comments.
std::size_t FindMark(std::string_view xml, std::size_t at, std::string_view marks) {
  while (at < xml.size() && marks.find(xml[at]) == std::string_view::npos) at = SkipPiece(xml, at);
  if (at < xml.size()) return at;
  throw XmlError("the document type declaration does not end");
}

// The numbers of "&" and "<", also with leading zeros, start markup when they are read a second time.
bool IsMarkupNumber(std::string_view reference) {
  const bool hexadecimal = reference.substr(0, 3) == "&#x";
  TextScanner digits(reference.substr(hexadecimal ? 3 : 2));
  while (digits.Take('0')) {
  }
  const std::string_view rest = digits.Rest();
  if (!hexadecimal) return StartsWith(rest, "38;") || StartsWith(rest, "60;");
  return StartsWith(rest, "26;") || StartsWith(rest, "3C;") || StartsWith(rest, "3c;");
}

bool IsPlainReference(std::string_view reference) {
  if (reference.substr(0, 2) == "&#") return !IsMarkupNumber(reference);
  return std::any_of(std::begin(kPredefined), std::end(kPredefined),
                     [reference](std::string_view name) { return StartsWith(reference, name); });
}

// Whether the text means the same in the document as in its declaration.
bool IsPlain(std::string_view text) {
  if (text.find('<') != std::string_view::npos) return false;
  for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    if (!IsPlainReference(text.substr(at))) return false;
  }
  return true;
}

// A reference may be part of an attribute, so quotes become references.
std::string WithoutQuotes(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '"') {
      result += "&quot;";
    } else if (c == '\'') {
      result += "&apos;";
    } else {
      result += c;
    }
  }
  return result;
}

// Reads the text between "<!ENTITY" and ">". The first declaration of a name counts.
void AddEntity(std::string_view declaration, Entities& entities) {
  const std::string_view trimmed = Trim(declaration);
  const std::size_t nameEnd = std::min(trimmed.find_first_of(" \t\r\n"), trimmed.size());
  const std::string_view quoted = Trim(trimmed.substr(nameEnd));
  if (quoted.size() < 2 || (quoted.front() != '"' && quoted.front() != '\'')) return;
  const std::string_view text = quoted.substr(1, quoted.size() - 2);
  if (quoted.back() != quoted.front() || !IsPlain(text)) return;
  entities.emplace(trimmed.substr(0, nameEnd), WithoutQuotes(text));
}

Entities ReadEntities(std::string_view subset) {
  Entities entities;
  for (std::size_t at = 0; at < subset.size();) {
    if (!StartsWith(subset.substr(at), kEntityStart)) {
      at = SkipPiece(subset, at);
      continue;
    }
    const std::size_t start = at + kEntityStart.size();
    at = FindMark(subset, start, ">");
    AddEntity(subset.substr(start, at - start), entities);
  }
  return entities;
}

// The entity whose reference is at `at`, or the end of the map. `after` becomes the place after the
// reference.
Entities::const_iterator FindEntity(std::string_view xml, std::size_t at, const Entities& entities,
                                    std::size_t& after) {
  const std::string_view near = xml.substr(at + 1, kLongestName);
  const std::size_t end = near.find(';');
  if (xml[at] != '&' || end == std::string_view::npos) return entities.end();
  after = at + end + 2;
  return entities.find(near.substr(0, end));
}

std::string Substitute(std::string_view xml, const Entities& entities) {
  std::string result;
  const std::size_t most = xml.size() + kMostAddedBytes;
  for (std::size_t at = 0; at < xml.size();) {
    const std::size_t next = std::min(xml.find_first_of("&<", at), xml.size());
    result += xml.substr(at, next - at);
    if (next == xml.size()) break;
    std::size_t after = 0;
    const auto entity = FindEntity(xml, next, entities, after);
    at = entity == entities.end() ? std::max(SkipLiteralSection(xml, next), next + 1) : after;
    result += entity == entities.end() ? xml.substr(next, at - next) : std::string_view(entity->second);
    if (result.size() > most) throw XmlError("the entities are too long");
  }
  return result;
}

}  // namespace

std::string ResolveDocumentType(std::string_view document) {
  const std::size_t start = SkipProlog(document);
  if (!StartsWith(document.substr(start), kStart)) return std::string(document);
  Entities entities;
  std::size_t end = FindMark(document, start + kStart.size(), "[>");
  if (document[end] == '[') {
    const std::size_t subset = end + 1;
    end = FindMark(document, subset, "]");
    entities = ReadEntities(document.substr(subset, end - subset));
    end = FindMark(document, end, ">");
  }
  return std::string(document.substr(0, start)) + Substitute(document.substr(end + 1), entities);
}

}  // namespace qv::devservice
