#include "face/exchange/fault_place.h"

#include <charconv>

#include "face/exchange/escaped_text.h"

namespace scriptwells {

namespace {

// The text between two marks; empty if one is missing.
std::string Between(const std::string& text, const std::string& start, const std::string& end) {
  const std::size_t found = text.find(start);
  if (found == std::string::npos) return {};
  const std::size_t begin = found + start.size();
  const std::size_t last = text.find(end, begin);
  return last == std::string::npos ? std::string() : text.substr(begin, last - begin);
}

// What the error object of a fault says of its origin.
std::string SourceIn(const std::string& answer) {
  const std::string object = DecodeXmlText(Between(answer, "<faultstring", "</faultstring>"));
  return DecodeXmlText(Between(object, "<source>", "</source>"));
}

// The number after the last "WORD "; 0 if there is none.
int NumberAfter(const std::string& text, const std::string& word) {
  const std::size_t found = text.rfind(word + " ");
  if (found == std::string::npos) return 0;
  int number = 0;
  std::from_chars(text.data() + found + word.size() + 1, text.data() + text.size(), number);
  return number;
}

FaultPlace PlaceIn(const std::string& text) {
  const int line = NumberAfter(text, "line");
  return {line, line == 0 ? 0 : NumberAfter(text, "column")};
}

}  // namespace

FaultPlace PlaceOfFault(const std::string& answer, const std::string& description) {
  const FaultPlace place = PlaceIn(SourceIn(answer));
  if (place.line != 0) return place;
  const std::size_t bracket = description.rfind('(');
  const bool endsInBrackets = !description.empty() && description.back() == ')';
  return endsInBrackets && bracket != std::string::npos ? PlaceIn(description.substr(bracket)) : FaultPlace();
}

}  // namespace scriptwells
