#include "tools/inspect/saved_message.h"

#include <algorithm>
#include <charconv>

#include "tools/inspect/finding.h"

namespace qv::cli {

namespace {

constexpr std::string_view kResponse = "Response";
constexpr std::string_view kMethods[] = {"CreateUserSession", "CloseUserSession", "Execute"};

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool IsHttp(std::string_view text) {
  return StartsWith(text, "HTTP/") || StartsWith(text, "POST ") || StartsWith(text, "GET ");
}

std::size_t EndOfOneHead(std::string_view text) {
  const std::size_t strict = text.find("\r\n\r\n");
  const std::size_t loose = text.find("\n\n");
  if (strict == std::string_view::npos && loose == std::string_view::npos) return text.size();
  return strict < loose ? strict + 4 : loose + 2;
}

// "HTTP/1.1 100 Continue"
bool IsInterim(std::string_view text) {
  const std::size_t blank = text.find(' ');
  return StartsWith(text, "HTTP/") && blank != std::string_view::npos && text.substr(blank + 1, 1) == "1";
}

// Where the body begins: after all heads, of which the last one counts.
std::size_t EndOfHead(std::string_view text) {
  std::size_t end = EndOfOneHead(text);
  for (std::size_t begin = 0; end < text.size() && IsInterim(text.substr(begin));) {
    begin = end;
    end += EndOfOneHead(text.substr(begin));
  }
  return end;
}

// Up to a damaged chunk.
std::string WithoutChunks(std::string_view body) {
  std::string whole;
  while (!body.empty()) {
    std::size_t size = 0;
    const auto [end, error] = std::from_chars(body.data(), body.data() + body.size(), size, 16);
    const std::size_t line = body.find('\n');
    if (error != std::errc() || size == 0 || line == std::string_view::npos) break;
    body.remove_prefix(line + 1);
    whole += body.substr(0, size);
    body.remove_prefix(std::min(body.size(), size));
    body.remove_prefix(std::min(body.size(), body.find('\n') + 1));
  }
  return whole;
}

// What comes after the announced length belongs to the next message.
std::string_view OwnBody(std::string_view head, std::string_view body) {
  HeaderLine line;
  if (!FindHeader(head, "Content-Length", line)) return body;
  std::size_t length = 0;
  const auto [end, error] = std::from_chars(line.value.data(), line.value.data() + line.value.size(), length);
  return error == std::errc() && length > 0 ? body.substr(0, length) : body;
}

void SplitHttp(std::string_view text, SavedMessage& message) {
  message.bodyBegin = EndOfHead(text);
  message.head = text.substr(0, message.bodyBegin);
  message.isRequest = !StartsWith(text, "HTTP/");
  HeaderLine line;
  message.isChunked = IsChunked(message.head, line);
  const std::string_view body = OwnBody(message.head, text.substr(message.bodyBegin));
  message.body = message.isChunked ? WithoutChunks(body) : std::string(body);
}

// White space before an XML declaration is that of whoever saved it.
void TakeXml(std::string_view text, SavedMessage& message) {
  message.bodyBegin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  message.body = text.substr(message.bodyBegin);
}

void TellMethod(SavedMessage& message) {
  const XmlNode* content = ContentOf(message);
  if (content == nullptr) return;
  std::string_view name = LocalName(content->name);
  for (const std::string_view method : kMethods) {
    if (message.head.empty() && name == method) message.isRequest = true;
    if (StartsWith(name, method) && (name.size() == method.size() || name.substr(method.size()) == kResponse))
      message.method = method;
  }
}

}  // namespace

const XmlNode* ContentOf(const SavedMessage& message) {
  if (!message.tree.root) return nullptr;
  const XmlNode* body = nullptr;
  for (const XmlNode& child : message.tree.root->children)
    if (child.IsElement() && (body == nullptr || LocalName(child.name) == "Body")) body = &child;
  return body == nullptr ? nullptr : body->FirstElement();
}

SavedMessage ParseMessage(std::string_view text, const std::string& method) {
  SavedMessage message;
  if (IsHttp(text))
    SplitHttp(text, message);
  else
    TakeXml(text, message);
  message.tree = ReadXml(message.body, CharsetOf(message.head));
  TellMethod(message);
  if (!method.empty()) message.method = method;
  return message;
}

}  // namespace qv::cli
