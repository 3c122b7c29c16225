// Writes a table as real servers do; clients read its elements by position.
#pragma once

#include <string>

#include "devservice/soap/namespaces.h"
#include "devservice/values/table.h"
#include "devservice/values/table_forms.h"

namespace qv::devservice {

// The element with this name and the type of record lists: headers with the schema, then the records. There
// is no white space between elements, every record has a cell for each column, and a cell without text is an
// empty element. Throws FaultError with kNoWireForm when the markup alone would take more than 256 MiB.
std::string WriteTable(const std::string& element, const Table& table, const Namespaces& spaces,
                       const TableForms& forms);

}  // namespace qv::devservice
