#include "face/exchange/learned_secrets.h"

#include <algorithm>

#include "face/exchange/escaped_text.h"

namespace scriptwells {

namespace {

constexpr std::string_view kSessionAnswer = "CreateUserSessionResponse";
constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kSectionEnd = "]]>";
constexpr std::size_t kShortestRest = 4;  // a shorter one is no secret

PlacedSecret PlaceOf(std::string_view text, std::size_t begin, std::size_t end, bool isXml) {
  const std::string_view raw = text.substr(begin, end - begin);
  return {begin, end, isXml ? DecodeXmlText(raw) : std::string(raw)};
}

// The texts between the tags of a document, and those of CDATA sections; none of white space alone.
PlacedSecrets TextsOf(std::string_view xml) {
  PlacedSecrets texts;
  const auto add = [&](std::size_t begin, std::size_t end, bool isXml) {
    if (xml.substr(begin, end - begin).find_first_not_of(" \t\r\n") != std::string_view::npos)
      texts.push_back(PlaceOf(xml, begin, end, isXml));
  };
  for (std::size_t at = 0; at < xml.size();) {
    const bool isSection = xml.substr(at, kSectionStart.size()) == kSectionStart;
    const std::string_view endMark = isSection ? kSectionEnd : std::string_view(">");
    const std::size_t end = xml.find(endMark, at);
    if (end == std::string_view::npos) break;
    if (isSection) add(at + kSectionStart.size(), end, false);
    const std::size_t begin = end + endMark.size();
    at = std::min(xml.find('<', begin), xml.size());
    add(begin, at, true);
  }
  return texts;
}

// The texts of all elements that begin like this, such as "<usid ".
PlacedSecrets ElementTexts(std::string_view xml, std::string_view start) {
  PlacedSecrets texts;
  for (std::size_t at = xml.find(start); at != std::string_view::npos; at = xml.find(start, at)) {
    at = xml.find('>', at + start.size());
    const std::size_t end = xml.find('<', at);
    if (end == std::string_view::npos) break;
    texts.push_back(PlaceOf(xml, at + 1, end, true));
  }
  return texts;
}

// The library below takes the text up to the next "=" for the ticket; a server may mean all of it.
void AddTickets(std::string_view text, std::size_t begin, std::size_t end, bool isXml,
                PlacedSecrets* tickets) {
  const std::string_view whole = text.substr(0, end);
  const std::size_t first = whole.find('=', begin);
  if (first == std::string_view::npos) return;
  const std::size_t second = std::min(whole.find('=', first + 1), end);
  tickets->push_back(PlaceOf(text, first + 1, second, isXml));
  if (end - second > kShortestRest) tickets->push_back(PlaceOf(text, second + 1, end, isXml));
}

}  // namespace

PlacedSecrets PasswordsIn(std::string_view body) {
  constexpr std::string_view kName = "Password=";
  PlacedSecrets passwords;
  for (const PlacedSecret& text : ElementTexts(body, "<ConnectionString")) {
    const std::size_t name = body.substr(0, text.end).find(kName, text.begin);
    const std::size_t last = body.substr(0, text.end).rfind(';');
    if (name == std::string_view::npos || last < name + kName.size()) continue;
    passwords.push_back(PlaceOf(body, name + kName.size(), last, true));
  }
  return passwords;
}

PlacedSecrets SessionIdsOfCall(std::string_view body) {
  return ElementTexts(body, "<usid ");
}

PlacedSecrets SessionIdsInHead(std::string_view head) {
  constexpr std::string_view kHeader = "\r\nusid: ";
  const std::size_t begin = head.find(kHeader);
  if (begin == std::string_view::npos) return {};
  const std::size_t value = begin + kHeader.size();
  return {PlaceOf(head, value, std::min(head.find('\r', value), head.size()), false)};
}

PlacedSecrets TicketsOfCall(std::string_view body) {
  return ElementTexts(body, "<Value xsi:type=\"FileTicket\"><Id ");
}

PlacedSecrets TicketsInHead(std::string_view head) {
  PlacedSecrets tickets;
  const std::string_view line = head.substr(0, head.find('\r'));
  AddTickets(head, 0, std::min(line.rfind(' '), line.size()), false, &tickets);
  return tickets;
}

PlacedSecrets SessionIdsIn(std::string_view body) {
  const std::size_t begin = body.find(kSessionAnswer);
  if (begin == std::string_view::npos) return {};
  PlacedSecrets ids = TextsOf(body.substr(begin, body.rfind(kSessionAnswer) - begin));
  for (PlacedSecret& id : ids) {
    id.begin += begin;
    id.end += begin;
  }
  return ids;
}

PlacedSecrets TicketsIn(std::string_view body) {
  PlacedSecrets tickets;
  for (const PlacedSecret& text : TextsOf(body))
    if (text.value.find("://") != std::string::npos || text.value.find(":\\\\") != std::string::npos)
      AddTickets(body, text.begin, text.end, true, &tickets);
  return tickets;
}

}  // namespace scriptwells
