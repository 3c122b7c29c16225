#include <algorithm>
#include <charconv>

#include "tools/inspect/finding.h"
#include "tools/report/typed_name.h"

namespace qv::cli {

namespace {

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

std::string Lower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), Lowered);
  return lower;
}

// -1 for what is not a number.
long long NumberOf(std::string_view text) {
  long long number = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : -1;
}

// "HTTP/1.1 302 Found"
long long StatusOf(std::string_view head) {
  const std::size_t blank = head.find(' ');
  return blank == std::string_view::npos ? -1 : NumberOf(head.substr(blank + 1, 3));
}

// A status line, and no field that goes on with a line before it.
bool IsHttpHead(std::string_view head) {
  const std::size_t second = head.find('\n') + 1;
  const bool goesOn = second < head.size() && (head[second] == ' ' || head[second] == '\t');
  return head.substr(0, 7) == "HTTP/1." && StatusOf(head) >= 100 && !goesOn;
}

Finding InHead(Rule rule, const HeaderLine& line) {
  return {rule, Part::kHead, line.begin, line.end};
}

void FindLengthFaults(const RawAnswer& answer, Findings& findings) {
  HeaderLine line;
  if (IsChunked(answer.head, line)) return findings.push_back(InHead(Rule::kChunked, line));
  if (!FindHeader(answer.head, "Content-Length", line))
    return findings.push_back({Rule::kContentLength, Part::kHead, 0, answer.head.find('\r'), "it has none"});
  const long long length = NumberOf(line.value);
  if (length <= 0) return findings.push_back(InHead(Rule::kContentLength, line));
  if (static_cast<std::size_t>(length) <= answer.body.size()) return;
  Finding finding = InHead(Rule::kWholeBody, line);
  finding.what = "the connection ended after " + std::to_string(answer.body.size()) + " bytes of the body";
  findings.push_back(finding);
}

}  // namespace

bool FindHeader(std::string_view head, std::string_view name, HeaderLine& line) {
  for (std::size_t begin = 0; begin < head.size();) {
    const std::size_t end = std::min(head.find('\n', begin), head.size());
    std::string_view text = head.substr(begin, end - begin);
    if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos && Lower(text.substr(0, colon)) == Lower(name)) {
      line = {Trimmed(text.substr(colon + 1)), begin, begin + text.size()};
      return true;
    }
    begin = end + 1;
  }
  return false;
}

bool IsChunked(std::string_view head, HeaderLine& line) {
  return FindHeader(head, "Transfer-Encoding", line) &&
         Lower(line.value).find("chunked") != std::string::npos;
}

std::string CharsetOf(std::string_view head) {
  HeaderLine line;
  if (!FindHeader(head, "Content-Type", line)) return {};
  const std::string type = Lower(line.value);
  const std::size_t at = type.find("charset=");
  if (at == std::string::npos) return {};
  std::string charset = type.substr(at + 8);
  charset = charset.substr(0, charset.find_first_of("; \t"));
  charset.erase(std::remove(charset.begin(), charset.end(), '"'), charset.end());
  return charset;
}

Place PlaceOf(std::string_view text, std::size_t at) {
  const std::string_view before = text.substr(0, at);
  const std::size_t lineEnd = before.rfind('\n');
  Place place;
  place.line += static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  place.column = lineEnd == std::string_view::npos ? before.size() + 1 : before.size() - lineEnd;
  return place;
}

bool StopsClients(const Findings& findings) {
  return std::any_of(findings.begin(), findings.end(),
                     [](const Finding& finding) { return !RowOf(finding.rule).isLoss; });
}

bool HoldsEnvelope(std::string_view body) {
  return body.find("soap:Envelope") != std::string_view::npos ||
         body.find("SOAP:Envelope") != std::string_view::npos;
}

void FindHttpFaults(const RawAnswer& answer, Findings& findings) {
  if (answer.head.empty()) return;
  if (!IsHttpHead(answer.head))
    findings.push_back(
        {Rule::kHttpAnswer, Part::kHead, 0, answer.head.find('\r'), "this is no head of HTTP/1"});
  HeaderLine line;
  const long long status = StatusOf(answer.head);
  const bool isEnvelope = HoldsEnvelope(answer.body);
  if (status >= 300 && status < 400 && FindHeader(answer.head, "Location", line) && !isEnvelope)
    findings.push_back(InHead(Rule::kRedirect, line));
  if (FindHeader(answer.head, "Content-Encoding", line) && Lower(line.value) != "identity" && !isEnvelope)
    findings.push_back(InHead(Rule::kCompression, line));
  FindLengthFaults(answer, findings);
}

}  // namespace qv::cli
