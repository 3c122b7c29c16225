// The ten interfaces that can be used by name and id. Names, ids and the order of the rows are the contract
// with hosts that never saw a header.
#pragma once

#include "automation/dispatch_table.h"

namespace qv {

extern const DispatchTable kQvScriptwellsTable;
extern const DispatchTable kQvClientServiceRawTable;
extern const DispatchTable kConnectionModelTable;
extern const DispatchTable kConnectionStringTable;
extern const DispatchTable kConnectionStringRawTable;
extern const DispatchTable kDurationTable;
extern const DispatchTable kUrlTable;
extern const DispatchTable kAttachedFileTable;
extern const DispatchTable kParameterTable;
extern const DispatchTable kParametersTable;

}  // namespace qv
