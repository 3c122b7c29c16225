// The ten interfaces that can be used by name and id, each with its table. Names, ids and the order of the
// rows are part of the contract with late-binding hosts.
#pragma once

#include "dispatch/dispatch_face.h"
#include "qvscriptwells/objects.h"

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

using QvScriptwellsDispatch = DispatchFace<IQvScriptwells, kQvScriptwellsTable>;
using QvClientServiceRawDispatch = DispatchFace<IQvClientServiceRaw, kQvClientServiceRawTable>;
using ConnectionModelDispatch = DispatchFace<IConnectionModel, kConnectionModelTable>;
using ConnectionStringDispatch = DispatchFace<IConnectionString, kConnectionStringTable>;
using ConnectionStringRawDispatch = DispatchFace<IConnectionStringRaw, kConnectionStringRawTable>;
using DurationDispatch = DispatchFace<IDuration, kDurationTable>;
using UrlDispatch = DispatchFace<IUrl, kUrlTable>;
using AttachedFileDispatch = DispatchFace<IAttachedFile, kAttachedFileTable>;
using ParameterDispatch = DispatchFace<IParameter, kParameterTable>;
using ParametersDispatch = DispatchFace<IParameters, kParametersTable>;

}  // namespace qv
