// The connection model by name and id. Id 6 is free: hosts know it as an unknown member.
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IConnectionModel* Model(IDispatch* self) {
  return static_cast<IConnectionModel*>(self);
}

HRESULT CreateUserSession(IDispatch* self, MemberCall& call) {
  return Model(self)->CreateUserSession(call.Text(0));
}
HRESULT CloseUserSession(IDispatch* self, MemberCall&) {
  return Model(self)->CloseUserSession();
}
HRESULT Execute(IDispatch* self, MemberCall& call) {
  return Model(self)->Execute(call.Text(0), call.Text(1), static_cast<IParameters*>(call.Interface(2)),
                              &call.value);
}
HRESULT ExecuteFile(IDispatch* self, MemberCall& call) {
  return Model(self)->ExecuteFile(call.Text(0), static_cast<IParameters*>(call.Interface(1)), &call.value);
}
HRESULT SetUSID(IDispatch* self, MemberCall& call) {
  return Model(self)->SetUSID(call.Text(0));
}
HRESULT DownloadFile(IDispatch* self, MemberCall& call) {
  return Model(self)->DownloadFile(call.Text(0), call.Text(1), &call.text);
}

constexpr NameRow kNames[] = {{u"CreateUserSession", 1}, {u"CloseUserSession", 2}, {u"Execute", 3},
                              {u"ExecuteFile", 4},       {u"SetUSID", 5},          {u"DownloadFile", 7}};

constexpr ArgumentRow kParameters = {VT_DISPATCH, u"parameters", &IParameters::kIid};

constexpr MemberRow kMembers[] = {
    {1,
     u"CreateUserSession",
     CalledBy::kAnyFlag,
     VT_EMPTY,
     &CreateUserSession,
     1,
     {{VT_BSTR, u"connectionString"}}},
    {2, u"CloseUserSession", CalledBy::kAnyFlag, VT_EMPTY, &CloseUserSession},
    {3,
     u"Execute",
     CalledBy::kAnyFlag,
     VT_VARIANT,
     &Execute,
     3,
     {{VT_BSTR, u"scriptLanguage"}, {VT_BSTR, u"script"}, kParameters}},
    {4,
     u"ExecuteFile",
     CalledBy::kAnyFlag,
     VT_VARIANT,
     &ExecuteFile,
     2,
     {{VT_BSTR, u"scriptFile"}, kParameters}},
    {5, u"SetUSID", CalledBy::kAnyFlag, VT_EMPTY, &SetUSID, 1, {{VT_BSTR, u"usid"}}},
    {7,
     u"DownloadFile",
     CalledBy::kAnyFlag,
     VT_BSTR,
     &DownloadFile,
     2,
     {{VT_BSTR, u"url"}, {VT_BSTR, u"target"}}},
};

}  // namespace

const DispatchTable kConnectionModelTable = {u"IConnectionModel",
                                             &IConnectionModel::kIid,
                                             4,
                                             NamedArgumentUse::kRefused,
                                             kNames,
                                             std::size(kNames),
                                             kMembers,
                                             std::size(kMembers)};

}  // namespace qv
