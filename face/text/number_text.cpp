#include "face/text/number_text.h"

#include <charconv>
#include <cmath>

namespace scriptwells {

namespace {

template <class Number, class... Form>
std::string Written(Number value, Form... form) {
  char text[64];
  return std::string(text, std::to_chars(text, text + sizeof text, value, form...).ptr);
}

template <class Number>
std::string Shortest(Number value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  return Written(value);
}

template <class Number>
bool ReadsBackAsAnother(Number value) {
  if (!std::isfinite(value)) return false;
  const std::string text = SixDigits(value);
  Number back = 0;
  std::from_chars(text.data(), text.data() + text.size(), back);
  return back != value;
}

}  // namespace

std::string NumberText(double value) {
  return Shortest(value);
}

std::string NumberText(float value) {
  return Shortest(value);
}

std::string SixDigits(double value) {
  return Written(value, std::chars_format::general, 6);
}

bool LosesDigits(double value) {
  return ReadsBackAsAnother(value);
}

bool LosesDigits(float value) {
  return ReadsBackAsAnother(value);
}

}  // namespace scriptwells
