#include "face/exchange/learned_secrets.h"

#include "face/exchange/escaped_text.h"

namespace scriptwells {

namespace {

constexpr std::string_view kSessionAnswer = "CreateUserSessionResponse";
constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kSectionEnd = "]]>";

// The texts between the tags of a document, without escapes and without those of white space alone.
std::vector<std::string> TextsOf(std::string_view xml) {
  std::vector<std::string> texts;
  const auto add = [&texts](const std::string& text) {
    if (text.find_first_not_of(" \t\r\n") != std::string::npos) texts.push_back(text);
  };
  while (!xml.empty()) {
    const bool isSection = xml.substr(0, kSectionStart.size()) == kSectionStart;
    const std::string_view endMark = isSection ? kSectionEnd : std::string_view(">");
    const std::size_t end = xml.find(endMark);
    if (end == std::string_view::npos) break;
    if (isSection) add(std::string(xml.substr(kSectionStart.size(), end - kSectionStart.size())));
    xml.remove_prefix(end + endMark.size());
    add(DecodeXmlText(xml.substr(0, xml.find('<'))));
    xml.remove_prefix(std::min(xml.size(), xml.find('<')));
  }
  return texts;
}

// The library below takes the text up to the next "=" for the ticket; a server may mean all of it.
void AddTickets(std::string_view address, std::vector<std::string>* tickets) {
  const std::size_t equals = address.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view ticket = address.substr(equals + 1);
  tickets->emplace_back(ticket);
  tickets->emplace_back(ticket.substr(0, ticket.find('=')));
}

}  // namespace

std::vector<std::string> SessionIdsIn(std::string_view body) {
  const std::size_t begin = body.find(kSessionAnswer);
  if (begin == std::string_view::npos) return {};
  return TextsOf(body.substr(begin, body.rfind(kSessionAnswer) - begin));
}

std::vector<std::string> TicketsIn(std::string_view body) {
  std::vector<std::string> tickets;
  for (const std::string& text : TextsOf(body))
    if (text.find("://") != std::string::npos || text.find(":\\\\") != std::string::npos)
      AddTickets(text, &tickets);
  return tickets;
}

std::vector<std::string> TicketsInHead(std::string_view head) {
  std::vector<std::string> tickets;
  const std::string_view line = head.substr(0, head.find('\r'));
  AddTickets(line.substr(0, line.rfind(' ')), &tickets);
  return tickets;
}

}  // namespace scriptwells
