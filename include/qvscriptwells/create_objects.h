// SPDX-License-Identifier: Apache-2.0
// Creates the objects of objects.h, a new one on each call. Failure throws `_com_error` (com_error.h). Lack
// of memory throws `std::bad_alloc`, or `_com_error` with E_OUTOFMEMORY where a text is created. As
// (com_call.h) returns the raw interfaces of the same object. Threads: any; the object stays on the thread
// that created it.
#pragma once

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/host_services.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/record_list.h"

namespace qv {

// The client object, without services yet.
IQvScriptwellsPtr CreateQvScriptwells();
// A client with services, server name and proxy (empty for none). ModelOf is the next call.
IQvScriptwellsPtr CreateQvScriptwells(const WideString& serverName, const WideString& proxy,
                                      IQvServiceProvider* provider);
// IQvScriptwells::ConnectionModel. Throws `_com_error` with the message.
IConnectionModelPtr ModelOf(IQvScriptwells* client);
// A model without a client. Set server and services through IConnectionModelRaw.
IConnectionModelPtr CreateConnectionModel();
// A model that is ready for CreateUserSession: with a server ("http://host:port", no path), a proxy
// ("host:port", or empty for none) and the host's services. A server name that is not a URL throws
// `_com_error` with the message.
IConnectionModelPtr CreateConnectionModel(const WideString& serverName, const WideString& proxy,
                                          IUnknown* services);
IConnectionStringPtr CreateConnectionString();
IParametersPtr CreateParameters();
IParameterPtr CreateParameter();
IDurationPtr CreateDuration();
// From text such as "P1DT2H" (IDurationRaw::SetText). Invalid text throws `_com_error` with the message.
//   list->Add(u"span", Variant::FromObject(CreateDuration(u"P1DT2H").get()), nullptr);
IDurationPtr CreateDuration(const WideString& text);
IUrlPtr CreateUrl();
IAttachedFilePtr CreateAttachedFile();
// For the file at `fileName`:
//   list->Add(u"doc", Variant::FromObject(CreateAttachedFile(u"/tmp/report.pdf").get()), nullptr);
IAttachedFilePtr CreateAttachedFile(const WideString& fileName);
// An empty table of the class registered for CLSID_RecordList, started with OleRun. Null if that class has no
// IRecordList.
IRecordListPtr CreateRecordList();

}  // namespace qv
