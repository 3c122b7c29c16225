// URLs by name and id. Id 1 is free.
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

constexpr NameRow kNames[] = {{u"UrlCaption", 2},     {u"RetVal", 0},  {u"get_UrlCaption", 2},
                              {u"put_UrlCaption", 2}, {u"Url", 3},     {u"get_Url", 3},
                              {u"put_Url", 3},        {u"ToString", 4}};

constexpr MemberRow kMembers[] = {
    Read<&IUrl::get_UrlCaption>(2, u"get_UrlCaption"),
    Write<&IUrl::put_UrlCaption>(2, u"put_UrlCaption", u"RetVal"),
    Read<&IUrl::get_Url>(3, u"get_Url"),
    Write<&IUrl::put_Url>(3, u"put_Url", u"RetVal"),
    Method<&IUrl::ToString>(4, u"ToString"),
};

}  // namespace

const DispatchTable kUrlTable = TableOf<IUrl>(u"IUrl", 1, NamedArgumentUse::kIgnored, kNames, kMembers);

}  // namespace qv
