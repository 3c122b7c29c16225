// Durations by name and id. Ids 1 and 2 are free.
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

constexpr NameRow kNames[] = {{u"Day", 3},          {u"RetVal", 0},      {u"get_Day", 3},   {u"put_Day", 3},
                              {u"Month", 4},        {u"get_Month", 4},   {u"put_Month", 4}, {u"Year", 5},
                              {u"get_Year", 5},     {u"put_Year", 5},    {u"Hour", 6},      {u"get_Hour", 6},
                              {u"put_Hour", 6},     {u"Min", 7},         {u"get_Min", 7},   {u"put_Min", 7},
                              {u"Sec", 8},          {u"get_Sec", 8},     {u"put_Sec", 8},   {u"Negative", 9},
                              {u"get_Negative", 9}, {u"put_Negative", 9}};

constexpr MemberRow kMembers[] = {
    Read<&IDuration::get_Day>(3, u"get_Day"),
    Write<&IDuration::put_Day>(3, u"put_Day", u"RetVal"),
    Read<&IDuration::get_Month>(4, u"get_Month"),
    Write<&IDuration::put_Month>(4, u"put_Month", u"RetVal"),
    Read<&IDuration::get_Year>(5, u"get_Year"),
    Write<&IDuration::put_Year>(5, u"put_Year", u"RetVal"),
    Read<&IDuration::get_Hour>(6, u"get_Hour"),
    Write<&IDuration::put_Hour>(6, u"put_Hour", u"RetVal"),
    Read<&IDuration::get_Min>(7, u"get_Min"),
    Write<&IDuration::put_Min>(7, u"put_Min", u"RetVal"),
    Read<&IDuration::get_Sec>(8, u"get_Sec"),
    Write<&IDuration::put_Sec>(8, u"put_Sec", u"RetVal"),
    OfBool(Read<&IDuration::get_Negative>(9, u"get_Negative")),
    OfBool(Write<&IDuration::put_Negative>(9, u"put_Negative", u"RetVal")),
};

}  // namespace

const DispatchTable kDurationTable =
    TableOf<IDuration>(u"IDuration", 1, NamedArgumentUse::kIgnored, kNames, kMembers);

}  // namespace qv
