// The client object by name and id.
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IQvScriptwells* Client(IDispatch* self) {
  return static_cast<IQvScriptwells*>(self);
}

HRESULT GetModel(IDispatch* self, MemberCall& call) {
  IConnectionModel* made = nullptr;
  const HRESULT code = Client(self)->ConnectionModel(&made);
  call.object = made;
  return code;
}

HRESULT GetUrl(IDispatch* self, MemberCall& call) {
  IUrl* made = nullptr;
  const HRESULT code = Client(self)->Url(&made);
  call.object = made;
  return code;
}

HRESULT GetDuration(IDispatch* self, MemberCall& call) {
  IDuration* made = nullptr;
  const HRESULT code = Client(self)->Duration(&made);
  call.object = made;
  return code;
}

HRESULT GetConnectionString(IDispatch* self, MemberCall& call) {
  IConnectionString* made = nullptr;
  const HRESULT code = Client(self)->ConnectionString(&made);
  call.object = made;
  return code;
}

HRESULT GetAttachedFile(IDispatch* self, MemberCall& call) {
  IAttachedFile* made = nullptr;
  const HRESULT code = Client(self)->AttachedFile(&made);
  call.object = made;
  return code;
}

HRESULT GetParameters(IDispatch* self, MemberCall& call) {
  IParameters* made = nullptr;
  const HRESULT code = Client(self)->Parameters(&made);
  call.object = made;
  return code;
}

HRESULT GetServerName(IDispatch* self, MemberCall& call) {
  return Client(self)->get_ServerName(&call.text);
}
HRESULT PutServerName(IDispatch* self, MemberCall& call) {
  return Client(self)->put_ServerName(call.Text(0));
}
HRESULT GetProxy(IDispatch* self, MemberCall& call) {
  return Client(self)->get_Proxy(&call.text);
}
HRESULT PutProxy(IDispatch* self, MemberCall& call) {
  return Client(self)->put_Proxy(call.Text(0));
}

HRESULT Init(IDispatch* self, MemberCall& call) {
  return static_cast<IQvClientServiceRaw*>(self)->Init(static_cast<IUnknown*>(call.Interface(0)));
}

constexpr NameRow kClientNames[] = {
    {u"pVal", 0},           {u"ConnectionModel", 1},  {u"Url", 2},
    {u"Duration", 3},       {u"ConnectionString", 4}, {u"AttachedFile", 5},
    {u"Parameters", 6},     {u"ServerName", 7},       {u"serverName", 0},
    {u"get_ServerName", 7}, {u"put_ServerName", 7},   {u"Proxy", 8},
    {u"proxy", 0},          {u"get_Proxy", 8},        {u"put_Proxy", 8},
};

constexpr MemberRow kClientMembers[] = {
    {1, u"ConnectionModel", CalledBy::kAnyFlag, VT_DISPATCH, &GetModel, 0, {}, &IConnectionModel::kIid},
    {2, u"Url", CalledBy::kAnyFlag, VT_DISPATCH, &GetUrl, 0, {}, &IUrl::kIid},
    {3, u"Duration", CalledBy::kAnyFlag, VT_DISPATCH, &GetDuration, 0, {}, &IDuration::kIid},
    {4,
     u"ConnectionString",
     CalledBy::kAnyFlag,
     VT_DISPATCH,
     &GetConnectionString,
     0,
     {},
     &IConnectionString::kIid},
    {5, u"AttachedFile", CalledBy::kAnyFlag, VT_DISPATCH, &GetAttachedFile, 0, {}, &IAttachedFile::kIid},
    {6, u"Parameters", CalledBy::kAnyFlag, VT_DISPATCH, &GetParameters, 0, {}, &IParameters::kIid},
    {7, u"get_ServerName", CalledBy::kRead, VT_BSTR, &GetServerName},
    {7, u"put_ServerName", CalledBy::kWrite, VT_EMPTY, &PutServerName, 1, {{VT_BSTR, u"serverName"}}},
    {8, u"get_Proxy", CalledBy::kRead, VT_BSTR, &GetProxy},
    {8, u"put_Proxy", CalledBy::kWrite, VT_EMPTY, &PutProxy, 1, {{VT_BSTR, u"proxy"}}},
};

constexpr NameRow kRawNames[] = {{u"pVal", 0}, {u"Init", 1}};

constexpr MemberRow kRawMembers[] = {
    {1, u"Init", CalledBy::kAnyFlag, VT_EMPTY, &Init, 1, {{VT_UNKNOWN, u"pVal"}}},
};

}  // namespace

const DispatchTable kQvScriptwellsTable = {u"IQvScriptwells",
                                           &IQvScriptwells::kIid,
                                           1,
                                           NamedArgumentUse::kIgnored,
                                           kClientNames,
                                           std::size(kClientNames),
                                           kClientMembers,
                                           std::size(kClientMembers)};

const DispatchTable kQvClientServiceRawTable = {u"IQvClientServiceRaw",
                                                &IQvClientServiceRaw::kIid,
                                                1,
                                                NamedArgumentUse::kIgnored,
                                                kRawNames,
                                                std::size(kRawNames),
                                                kRawMembers,
                                                std::size(kRawMembers)};

}  // namespace qv
