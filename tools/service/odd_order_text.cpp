#include "tools/service/odd_order_text.h"

#include <charconv>
#include <stdexcept>
#include <string_view>

#include "devservice/control/odd_orders.h"
#include "tools/report/failure.h"

namespace qv::cli {

namespace {

// Throws std::invalid_argument unless the whole text is a number that fits.
template <typename Number>
Number NumberFrom(std::string_view key, std::string_view text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size())
    throw std::invalid_argument("The value of " + std::string(key) + " is not a number.");
  return number;
}

void ReadSetting(std::string_view setting, devservice::OddOrder& order) {
  const std::size_t equals = setting.find('=');
  const std::string_view key = setting.substr(0, equals);
  const std::string_view value = equals == std::string_view::npos ? "" : setting.substr(equals + 1);
  if (key == "n")
    order.requests = NumberFrom<std::uint32_t>(key, value);
  else if (key == "p")
    order.chance = NumberFrom<double>(key, value);
  else if (key == "seed")
    order.seed = NumberFrom<std::uint32_t>(key, value);
  else if (key == "action")
    order.action = value;
  else
    throw std::invalid_argument("After the names there are n=, p=, seed= and action= only.");
}

devservice::OddOrder OrderIn(std::string_view text) {
  devservice::OddOrder order;
  order.requests = 0;
  std::size_t comma = text.find(',');
  order.names = text.substr(0, comma);
  if (order.names.empty()) throw std::invalid_argument("It has no name of an odd answer.");
  while (comma != std::string_view::npos) {
    text.remove_prefix(comma + 1);
    comma = text.find(',');
    ReadSetting(text.substr(0, comma), order);
  }
  devservice::CheckOddOrder(order);
  return order;
}

}  // namespace

devservice::OddOrder ParseOddOrder(const std::string& text) {
  try {
    return OrderIn(text);
  } catch (const std::invalid_argument& error) {
    std::string reason = error.what();
    if (!reason.empty() && reason.back() == '.') reason.pop_back();
    throw Failure(ExitStatus::kUsage, "--odd " + text + ": " + reason);
  }
}

}  // namespace qv::cli
