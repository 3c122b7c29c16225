// Parameters and their list by name and id.
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

constexpr NameRow kOneNames[] = {
    {u"key", 0},
    {u"value", 1},
    {u"SetValues", 1},
    {u"ParamKey", 2},
    {u"retVal", 0},
    {u"get_ParamKey", 2},
    {u"ParamValue", 3},
    {u"get_ParamValue", 3},
    {u"ParamTypeAsString", 4},
    {u"get_ParamTypeAsString", 4},
};

constexpr MemberRow kOneMembers[] = {
    Method<&IParameter::SetValues>(1, u"SetValues", u"key", u"value"),
    Method<&IParameter::get_ParamKey>(2, u"get_ParamKey"),
    Method<&IParameter::get_ParamValue>(3, u"get_ParamValue"),
    Method<&IParameter::get_ParamTypeAsString>(4, u"get_ParamTypeAsString"),
};

constexpr NameRow kListNames[] = {{u"Add", 1}, {u"Remove", 2}, {u"Find", 3}, {u"Size", 4}, {u"Clear", 5}};

constexpr MemberRow kListMembers[] = {
    Method<&IParameters::Add>(1, u"Add", u"key", u"value"),
    Method<&IParameters::Remove>(2, u"Remove", u"index"),
    Method<&IParameters::Find>(3, u"Find", u"index"),
    Method<&IParameters::Size>(4, u"Size"),
    Method<&IParameters::Clear>(5, u"Clear"),
};

}  // namespace

const DispatchTable kParameterTable =
    TableOf<IParameter>(u"IParameter", 2, NamedArgumentUse::kHonoured, kOneNames, kOneMembers);

const DispatchTable kParametersTable =
    TableOf<IParameters>(u"IParameters", 3, NamedArgumentUse::kRefused, kListNames, kListMembers);

}  // namespace qv
