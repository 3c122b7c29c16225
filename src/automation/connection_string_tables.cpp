// The connection string by name and id.
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IConnectionString* Fields(IDispatch* self) {
  return static_cast<IConnectionString*>(self);
}

HRESULT GetUserName(IDispatch* self, MemberCall& call) {
  return Fields(self)->get_UserName(&call.text);
}
HRESULT PutUserName(IDispatch* self, MemberCall& call) {
  return Fields(self)->put_UserName(call.Text(0));
}
HRESULT GetUserPassword(IDispatch* self, MemberCall& call) {
  return Fields(self)->get_UserPassword(&call.text);
}
HRESULT PutUserPassword(IDispatch* self, MemberCall& call) {
  return Fields(self)->put_UserPassword(call.Text(0));
}
HRESULT GetDatabaseName(IDispatch* self, MemberCall& call) {
  return Fields(self)->get_DatabaseName(&call.text);
}
HRESULT PutDatabaseName(IDispatch* self, MemberCall& call) {
  return Fields(self)->put_DatabaseName(call.Text(0));
}
HRESULT GetReplicaID(IDispatch* self, MemberCall& call) {
  return Fields(self)->get_ReplicaID(&call.text);
}
HRESULT PutReplicaID(IDispatch* self, MemberCall& call) {
  return Fields(self)->put_ReplicaID(call.Text(0));
}
HRESULT GetDatabaseID(IDispatch* self, MemberCall& call) {
  return Fields(self)->get_DatabaseID(&call.text);
}
HRESULT PutDatabaseID(IDispatch* self, MemberCall& call) {
  return Fields(self)->put_DatabaseID(call.Text(0));
}
HRESULT ToString(IDispatch* self, MemberCall& call) {
  return Fields(self)->ToString(&call.text);
}

HRESULT Initialize(IDispatch* self, MemberCall& call) {
  return static_cast<IConnectionStringRaw*>(self)->Initialize(call.Text(0));
}

constexpr NameRow kNames[] = {{u"UserName", 1},         {u"newVal", 0},           {u"put_UserName", 1},
                              {u"get_UserName", 1},     {u"UserPassword", 2},     {u"RetVal", 0},
                              {u"get_UserPassword", 2}, {u"put_UserPassword", 2}, {u"DatabaseName", 3},
                              {u"get_DatabaseName", 3}, {u"put_DatabaseName", 3}, {u"ReplicaID", 4},
                              {u"get_ReplicaID", 4},    {u"put_ReplicaID", 4},    {u"DatabaseID", 5},
                              {u"get_DatabaseID", 5},   {u"put_DatabaseID", 5},   {u"ToString", 6}};

// The user name is the only property that is written first: its place among the slots, and which flag wins
// when both are set.
constexpr MemberRow kMembers[] = {
    {1, u"put_UserName", CalledBy::kWrite, VT_EMPTY, &PutUserName, 1, {{VT_BSTR, u"newVal"}}},
    {1, u"get_UserName", CalledBy::kRead, VT_BSTR, &GetUserName},
    {2, u"get_UserPassword", CalledBy::kRead, VT_BSTR, &GetUserPassword},
    {2, u"put_UserPassword", CalledBy::kWrite, VT_EMPTY, &PutUserPassword, 1, {{VT_BSTR, u"newVal"}}},
    {3, u"get_DatabaseName", CalledBy::kRead, VT_BSTR, &GetDatabaseName},
    {3, u"put_DatabaseName", CalledBy::kWrite, VT_EMPTY, &PutDatabaseName, 1, {{VT_BSTR, u"newVal"}}},
    {4, u"get_ReplicaID", CalledBy::kRead, VT_BSTR, &GetReplicaID},
    {4, u"put_ReplicaID", CalledBy::kWrite, VT_EMPTY, &PutReplicaID, 1, {{VT_BSTR, u"newVal"}}},
    {5, u"get_DatabaseID", CalledBy::kRead, VT_BSTR, &GetDatabaseID},
    {5, u"put_DatabaseID", CalledBy::kWrite, VT_EMPTY, &PutDatabaseID, 1, {{VT_BSTR, u"newVal"}}},
    {6, u"ToString", CalledBy::kAnyFlag, VT_BSTR, &ToString},
};

constexpr NameRow kRawNames[] = {{u"connectionString", 0}, {u"Initialize", 1}};

constexpr MemberRow kRawMembers[] = {
    {1, u"Initialize", CalledBy::kAnyFlag, VT_EMPTY, &Initialize, 1, {{VT_BSTR, u"connectionString"}}},
};

}  // namespace

const DispatchTable kConnectionStringTable = {u"IConnectionString",
                                              &IConnectionString::kIid,
                                              1,
                                              NamedArgumentUse::kIgnored,
                                              kNames,
                                              std::size(kNames),
                                              kMembers,
                                              std::size(kMembers)};

const DispatchTable kConnectionStringRawTable = {u"IConnectionStringRaw",
                                                 &IConnectionStringRaw::kIid,
                                                 1,
                                                 NamedArgumentUse::kIgnored,
                                                 kRawNames,
                                                 std::size(kRawNames),
                                                 kRawMembers,
                                                 std::size(kRawMembers)};

}  // namespace qv
