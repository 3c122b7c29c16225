#include "face/table/table_messages.h"

#include "face/text/short_quote.h"

namespace scriptwells {

std::string CountOf(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string InCell(std::string_view column, std::size_t row) {
  return ", in column " + ShortQuote(column) + ", row " + std::to_string(row);
}

}  // namespace scriptwells
