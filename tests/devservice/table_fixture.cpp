#include "table_fixture.h"

namespace qv::devservice::testing {
namespace {

std::string Between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t from = text.find(start);
  if (from == std::string::npos) return "(none)";
  const std::size_t to = text.find(end, from + start.size());
  if (to == std::string::npos) return "(none)";
  return text.substr(from + start.size(), to - from - start.size());
}

}  // namespace

std::string ResultElementIn(const std::string& body) {
  const std::size_t start = body.find("<ExecuteResult ");
  const std::size_t end = body.find("</ExecuteResponse>");
  if (start == std::string::npos || end == std::string::npos) return "(none)";
  return body.substr(start, end - start);
}

std::string SchemaIdIn(const std::string& body) {
  return Between(body, " targetNamespace=\"uuid:", "\"");
}

std::string ColumnsIn(const std::string& body) {
  std::string columns;
  const std::string mark = "<xsd:element xsd:name=\"";
  for (std::size_t at = body.find(mark); at != std::string::npos; at = body.find(mark, at + 1)) {
    const std::string element = body.substr(at, body.find("/>", at) - at);
    columns += (columns.empty() ? "" : ", ") + Between(element, "xsd:name=\"", "\"") + " " +
               Between(element, "xsd:type=\"", "\"");
  }
  return columns;
}

std::string RecordsIn(const std::string& body) {
  return Between(body, "<q1:Records>", "</q1:Records>");
}

}  // namespace qv::devservice::testing
