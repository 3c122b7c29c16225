// The connection string by name and id.
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

constexpr NameRow kNames[] = {{u"UserName", 1},         {u"newVal", 0},           {u"put_UserName", 1},
                              {u"get_UserName", 1},     {u"UserPassword", 2},     {u"RetVal", 0},
                              {u"get_UserPassword", 2}, {u"put_UserPassword", 2}, {u"DatabaseName", 3},
                              {u"get_DatabaseName", 3}, {u"put_DatabaseName", 3}, {u"ReplicaID", 4},
                              {u"get_ReplicaID", 4},    {u"put_ReplicaID", 4},    {u"DatabaseID", 5},
                              {u"get_DatabaseID", 5},   {u"put_DatabaseID", 5},   {u"ToString", 6}};

// The user name is the only property whose row for writing comes first: this decides its slot, and which flag
// wins if both are set.
constexpr MemberRow kMembers[] = {
    Write<&IConnectionString::put_UserName>(1, u"put_UserName", u"newVal"),
    Read<&IConnectionString::get_UserName>(1, u"get_UserName"),
    Read<&IConnectionString::get_UserPassword>(2, u"get_UserPassword"),
    Write<&IConnectionString::put_UserPassword>(2, u"put_UserPassword", u"newVal"),
    Read<&IConnectionString::get_DatabaseName>(3, u"get_DatabaseName"),
    Write<&IConnectionString::put_DatabaseName>(3, u"put_DatabaseName", u"newVal"),
    Read<&IConnectionString::get_ReplicaID>(4, u"get_ReplicaID"),
    Write<&IConnectionString::put_ReplicaID>(4, u"put_ReplicaID", u"newVal"),
    Read<&IConnectionString::get_DatabaseID>(5, u"get_DatabaseID"),
    Write<&IConnectionString::put_DatabaseID>(5, u"put_DatabaseID", u"newVal"),
    Method<&IConnectionString::ToString>(6, u"ToString"),
};

constexpr NameRow kRawNames[] = {{u"connectionString", 0}, {u"Initialize", 1}};

constexpr MemberRow kRawMembers[] = {
    Method<&IConnectionStringRaw::Initialize>(1, u"Initialize", u"connectionString"),
};

}  // namespace

const DispatchTable kConnectionStringTable =
    TableOf<IConnectionString>(u"IConnectionString", 1, NamedArgumentUse::kIgnored, kNames, kMembers);

const DispatchTable kConnectionStringRawTable = TableOf<IConnectionStringRaw>(
    u"IConnectionStringRaw", 1, NamedArgumentUse::kIgnored, kRawNames, kRawMembers);

}  // namespace qv
