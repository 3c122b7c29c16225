// Reads a record list of any class through its interfaces. Throws _com_error with the message of its
// component.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "components/recordlist/cell_table.h"
#include "qvscriptwells/record_list.h"

namespace scriptwells {

struct ListColumn {
  std::string name;       // UTF-8
  std::int32_t type = 0;  // ColumnType
};

std::vector<ListColumn> ReadColumns(qv::IRecordList* list);

// Copies of all cells, in rows of `columns`.
qv::CellTable ReadCells(qv::IRecordList* list, std::size_t columns);

}  // namespace scriptwells
