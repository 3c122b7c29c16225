#include "face/tape/normal_form.h"

#include <algorithm>
#include <string_view>

namespace scriptwells {

namespace {

// Headers whose values differ from run to run, in lower case.
constexpr std::string_view kLeftOut[] = {"host: ", "content-length: ", "date: ", "keep-alive: "};
constexpr std::size_t kShortestId = 16;  // of a server, in a URL

bool StartsWith(const std::string& line, std::string_view start) {
  return line.size() >= start.size() &&
         std::equal(start.begin(), start.end(), line.begin(), [](char a, char b) {
           return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b - 'A' + 'a') : b);
         });
}

// Every "http://host:port" as "http://*".
std::string WithoutHosts(std::string line) {
  constexpr std::string_view kMark = "://";
  for (std::size_t at = line.find(kMark); at != std::string::npos; at = line.find(kMark, at + 1)) {
    const std::size_t host = at + kMark.size();
    const std::size_t end = std::min(line.find_first_of("/ <&\"'\\", host), line.size());
    if (line.find(':', host) < end) line.replace(host, end - host, "*");
  }
  return line;
}

// A request through a proxy names the server.
std::string WithoutOrigin(const std::string& requestLine) {
  const std::size_t target = requestLine.find(" http");
  const std::size_t host = requestLine.find("://");
  const std::size_t path = requestLine.find('/', host == std::string::npos ? host : host + 3);
  if (target == std::string::npos || path == std::string::npos || host > target + 6) return requestLine;
  return requestLine.substr(0, target + 1) + requestLine.substr(path);
}

std::string WithoutValue(const std::string& line) {
  for (const std::string_view header : kLeftOut)
    if (StartsWith(line, header)) return line.substr(0, header.size()) + "*";
  return line;
}

void Append(Lines lines, Lines* to) {
  to->insert(to->end(), std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end()));
}

Lines NormalHead(const TapeText& head) {
  Lines lines = TapeLines(head, TapeSizes::kLeftOut);
  std::transform(lines.begin(), lines.end(), lines.begin(), WithoutValue);
  return lines;
}

bool IsIdCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F') || c == '-';
}

// Runs of hexadecimal digits in the paths of the line as "*".
std::string WithoutIds(const std::string& line) {
  if (line.find('/') == std::string::npos) return line;
  std::string normal;
  for (std::size_t at = 0; at < line.size();) {
    const auto end = static_cast<std::size_t>(
        std::find_if_not(line.begin() + static_cast<std::ptrdiff_t>(at), line.end(), IsIdCharacter) -
        line.begin());
    normal += end - at >= kShortestId ? "*" : line.substr(at, end - at);
    if (end < line.size()) normal += line[end];
    at = end + 1;
  }
  return normal;
}

}  // namespace

Lines NormalRequest(const TapeEntry& entry) {
  Lines lines = NormalHead(entry.requestHead);
  if (!lines.empty()) lines[0] = WithoutOrigin(lines[0]);
  Append(TapeLines(entry.requestBody, TapeSizes::kLeftOut), &lines);
  Append(TapeLines(entry.file, TapeSizes::kLeftOut), &lines);
  return lines;
}

Lines NormalAnswer(const TapeEntry& entry) {
  Lines lines = NormalHead(entry.answerHead);
  for (const std::string& line : TapeLines(entry.answerBody, TapeSizes::kLeftOut))
    lines.push_back(WithoutHosts(line));
  if (entry.failure)
    lines.push_back(std::string("failed: ") + ToString(entry.failure->phase) + " " +
                    std::to_string(entry.failure->code));
  return lines;
}

Lines NormalEntry(const TapeEntry& entry) {
  Lines lines{ToString(entry.purpose)};
  Append(NormalRequest(entry), &lines);
  Append(NormalAnswer(entry), &lines);
  for (std::string& line : lines) line = WithoutIds(WithoutHosts(line));
  return lines;
}

}  // namespace scriptwells
