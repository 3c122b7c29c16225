#include "face/text/json_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "face/text/number_text.h"
#include "face/text/unsafe_characters.h"

namespace scriptwells {

namespace {

constexpr std::int64_t kSafeWhole = 9007199254740991;

std::string Quoted(const std::string& plain) {
  return '"' + plain + '"';
}

// Most texts, which the JSON library and the rules for unsafe characters leave as they are.
bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
}

}  // namespace

std::string JsonText(std::string_view text) {
  if (IsPlain(text)) return Quoted(std::string(text));
  return EscapeForJson(nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

std::string JsonNumber(double value) {
  return std::isfinite(value) ? nlohmann::json(value).dump() : Quoted(NumberText(value));
}

std::string JsonNumber(float value) {
  const std::string text = NumberText(value);
  if (!std::isfinite(value)) return Quoted(text);
  double shortest = 0;
  std::from_chars(text.data(), text.data() + text.size(), shortest);
  return JsonNumber(shortest);
}

std::string JsonNumber(std::int64_t value) {
  const std::string text = std::to_string(value);
  return value > kSafeWhole || value < -kSafeWhole ? Quoted(text) : text;
}

}  // namespace scriptwells
