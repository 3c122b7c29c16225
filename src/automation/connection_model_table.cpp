// The connection model by name and id. Id 6 is unused; hosts rely on it as an unknown member.
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

constexpr NameRow kNames[] = {{u"CreateUserSession", 1}, {u"CloseUserSession", 2}, {u"Execute", 3},
                              {u"ExecuteFile", 4},       {u"SetUSID", 5},          {u"DownloadFile", 7}};

constexpr MemberRow kMembers[] = {
    Method<&IConnectionModel::CreateUserSession>(1, u"CreateUserSession", u"connectionString"),
    Method<&IConnectionModel::CloseUserSession>(2, u"CloseUserSession"),
    Method<&IConnectionModel::Execute>(3, u"Execute", u"scriptLanguage", u"script", u"parameters"),
    Method<&IConnectionModel::ExecuteFile>(4, u"ExecuteFile", u"scriptFile", u"parameters"),
    Method<&IConnectionModel::SetUSID>(5, u"SetUSID", u"usid"),
    Method<&IConnectionModel::DownloadFile>(7, u"DownloadFile", u"url", u"target"),
};

}  // namespace

const DispatchTable kConnectionModelTable =
    TableOf<IConnectionModel>(u"IConnectionModel", 4, NamedArgumentUse::kRefused, kNames, kMembers);

}  // namespace qv
