// Parts of messages about tables.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace scriptwells {

// "1 column", "3 columns"
std::string CountOf(std::size_t count, const std::string& noun);

// ", in column 'people', row 3"; rows count from 0, as Row::Index.
std::string InCell(std::string_view column, std::size_t row);

}  // namespace scriptwells
