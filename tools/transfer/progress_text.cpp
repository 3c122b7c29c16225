#include "tools/transfer/progress_text.h"

#include <utf8.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cwchar>
#include <iterator>
#include <vector>

#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr int kLeastName = 8;
constexpr int kMostName = 30;
constexpr int kLeastBar = 10;  // without its brackets
constexpr int kMostBar = 30;
constexpr double kLongestTime = 100.0 * 3600;

int WidthOf(char32_t character) {
  return std::max(1, ::wcwidth(static_cast<wchar_t>(character)));
}

int WidthOf(const std::u32string& text) {
  int width = 0;
  for (const char32_t character : text) width += WidthOf(character);
  return width;
}

std::u32string Printable(const std::string& name) {
  std::string valid;
  utf8::replace_invalid(name.begin(), name.end(), std::back_inserter(valid));
  const std::string line = OneLine(valid);
  std::u32string text;
  utf8::utf8to32(line.begin(), line.end(), std::back_inserter(text));
  return text;
}

// Cuts the text and adds ".." if it is too wide.
std::string Cut(std::u32string text, int room) {
  if (WidthOf(text) > room) {
    while (!text.empty() && WidthOf(text) > room - 2) text.pop_back();
    text += U"..";
  }
  std::string cut;
  utf8::utf32to8(text.begin(), text.end(), std::back_inserter(cut));
  return cut;
}

double RateOf(const ProgressState& state) {
  return state.seconds > 0 ? static_cast<double>(state.done - state.earlier) / state.seconds : 0;
}

int PercentOf(const ProgressState& state) {
  if (state.total <= 0) return 100;
  const double part = static_cast<double>(state.done) / static_cast<double>(state.total);
  return static_cast<int>(std::clamp(part, 0.0, 1.0) * 100);
}

std::string PercentText(const ProgressState& state) {
  char text[8];
  static_cast<void>(std::snprintf(text, sizeof text, "%3d%%", PercentOf(state)));
  return text;
}

// With its unit.
std::string AmountText(const ProgressState& state, std::int64_t amount) {
  return state.unit == nullptr ? SizeText(amount) : std::to_string(amount) + " " + state.unit;
}

std::string RateText(const ProgressState& state) {
  return AmountText(state, std::llround(std::min(RateOf(state), 9e18))) + "/s";
}

std::string LeftText(const ProgressState& state) {
  const double rate = RateOf(state);
  const auto left = static_cast<double>(std::max<std::int64_t>(state.total - state.done, 0));
  return (rate > 0 ? TimeText(left / rate) : "--:--") + " left";
}

std::string Bar(const ProgressState& state, int width) {
  const int filled = PercentOf(state) * width / 100;
  std::string bar = "[" + std::string(static_cast<std::size_t>(filled), '#');
  bar.resize(static_cast<std::size_t>(width) + 1, ' ');
  return bar + "]";
}

// The parts of a line, in order. A narrow line leaves out the last ones.
struct Parts {
  std::string first;                // as important as the name
  std::vector<std::string> others;  // each follows two blanks
};

Parts PartsOf(const ProgressState& state) {
  if (state.total < 0) return {AmountText(state, state.done), {RateText(state)}};
  const std::string done = state.unit == nullptr ? SizeText(state.done) : std::to_string(state.done);
  const std::string sizes = done + " of " + AmountText(state, state.total);
  return {PercentText(state), {sizes, RateText(state), LeftText(state)}};
}

std::string Joined(const Parts& parts, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += "  " + parts.others[i];
  return text;
}

}  // namespace

std::string SizeText(std::int64_t bytes) {
  constexpr const char* kUnits[] = {"kB", "MB", "GB", "TB", "PB", "EB"};
  if (bytes < 1000) return std::to_string(bytes) + " B";
  double value = static_cast<double>(bytes) / 1000;
  std::size_t unit = 0;
  for (; value >= 999.95 && unit + 1 < std::size(kUnits); ++unit) value /= 1000;
  char text[32];
  static_cast<void>(std::snprintf(text, sizeof text, "%.1f %s", value, kUnits[unit]));
  return text;
}

std::string TimeText(double seconds) {
  if (!(seconds >= 0 && seconds <= kLongestTime - 1)) return "--:--";
  const long whole = static_cast<long>(std::ceil(seconds));
  char text[32];
  if (whole < 3600)
    static_cast<void>(std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60));
  else
    static_cast<void>(
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60));
  return text;
}

std::string ProgressLine(const ProgressState& state, int columns) {
  const int room = columns - 1;
  const Parts parts = PartsOf(state);
  const std::u32string name = Printable(state.name);
  const int nameWidth = WidthOf(name);
  const int gap = nameWidth > 0 ? 2 : 0;
  const int firstWidth = static_cast<int>(parts.first.size());
  const int leastName = std::min(nameWidth, kLeastName) + gap;
  std::size_t count = parts.others.size();
  while (count > 0 && leastName + firstWidth + static_cast<int>(Joined(parts, count).size()) > room) --count;
  const std::string others = Joined(parts, count);
  const int fixed = firstWidth + static_cast<int>(others.size());
  if (fixed > room) return "";
  if (leastName + fixed > room) return parts.first;
  const std::string shown = Cut(name, std::min(kMostName, room - fixed - gap));
  const int left = room - fixed - gap - std::min(nameWidth, kMostName);
  const bool whole = count == parts.others.size() && state.total >= 0;
  const std::string bar =
      whole && left >= kLeastBar + 3 ? " " + Bar(state, std::min(left - 3, kMostBar)) : "";
  return shown + std::string(static_cast<std::size_t>(gap), ' ') + parts.first + bar + others;
}

}  // namespace qv::cli
