// Writes a table in the form that readers in the field go through by position.
#pragma once

#include <string>

#include "devservice/soap/namespaces.h"
#include "devservice/values/table.h"
#include "devservice/values/table_forms.h"

namespace qv::devservice {

// The element with this name, of the type of record lists: headers with the schema, then the records. Nothing
// stands between the elements, every record has a cell for each column, and a cell without text is an empty
// element. Throws FaultError with kNoWireForm when the markup alone would take more than 256 MiB.
std::string WriteTable(const std::string& element, const Table& table, const Namespaces& spaces,
                       const TableForms& forms);

}  // namespace qv::devservice
