// The client object by name and id.
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

constexpr NameRow kClientNames[] = {
    {u"pVal", 0},           {u"ConnectionModel", 1},  {u"Url", 2},
    {u"Duration", 3},       {u"ConnectionString", 4}, {u"AttachedFile", 5},
    {u"Parameters", 6},     {u"ServerName", 7},       {u"serverName", 0},
    {u"get_ServerName", 7}, {u"put_ServerName", 7},   {u"Proxy", 8},
    {u"proxy", 0},          {u"get_Proxy", 8},        {u"put_Proxy", 8},
};

constexpr MemberRow kClientMembers[] = {
    Method<&IQvScriptwells::ConnectionModel>(1, u"ConnectionModel"),
    Method<&IQvScriptwells::Url>(2, u"Url"),
    Method<&IQvScriptwells::Duration>(3, u"Duration"),
    Method<&IQvScriptwells::ConnectionString>(4, u"ConnectionString"),
    Method<&IQvScriptwells::AttachedFile>(5, u"AttachedFile"),
    Method<&IQvScriptwells::Parameters>(6, u"Parameters"),
    Read<&IQvScriptwells::get_ServerName>(7, u"get_ServerName"),
    Write<&IQvScriptwells::put_ServerName>(7, u"put_ServerName", u"serverName"),
    Read<&IQvScriptwells::get_Proxy>(8, u"get_Proxy"),
    Write<&IQvScriptwells::put_Proxy>(8, u"put_Proxy", u"proxy"),
};

constexpr NameRow kRawNames[] = {{u"pVal", 0}, {u"Init", 1}};

constexpr MemberRow kRawMembers[] = {
    Method<&IQvClientServiceRaw::Init>(1, u"Init", u"pVal"),
};

}  // namespace

const DispatchTable kQvScriptwellsTable =
    TableOf<IQvScriptwells>(u"IQvScriptwells", 1, NamedArgumentUse::kIgnored, kClientNames, kClientMembers);

const DispatchTable kQvClientServiceRawTable = TableOf<IQvClientServiceRaw>(
    u"IQvClientServiceRaw", 1, NamedArgumentUse::kIgnored, kRawNames, kRawMembers);

}  // namespace qv
