// Durations by name and id. Ids 1 and 2 are free.
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IDuration* Span(IDispatch* self) {
  return static_cast<IDuration*>(self);
}

HRESULT GetDay(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Day(&call.shortValue);
}
HRESULT PutDay(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Day(call.Short(0));
}
HRESULT GetMonth(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Month(&call.shortValue);
}
HRESULT PutMonth(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Month(call.Short(0));
}
HRESULT GetYear(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Year(&call.shortValue);
}
HRESULT PutYear(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Year(call.Short(0));
}
HRESULT GetHour(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Hour(&call.shortValue);
}
HRESULT PutHour(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Hour(call.Short(0));
}
HRESULT GetMin(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Min(&call.shortValue);
}
HRESULT PutMin(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Min(call.Short(0));
}
HRESULT GetSec(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Sec(&call.realValue);
}
HRESULT PutSec(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Sec(call.Real(0));
}
HRESULT GetNegative(IDispatch* self, MemberCall& call) {
  return Span(self)->get_Negative(&call.shortValue);
}
HRESULT PutNegative(IDispatch* self, MemberCall& call) {
  return Span(self)->put_Negative(call.Short(0));
}

constexpr NameRow kNames[] = {{u"Day", 3},          {u"RetVal", 0},      {u"get_Day", 3},   {u"put_Day", 3},
                              {u"Month", 4},        {u"get_Month", 4},   {u"put_Month", 4}, {u"Year", 5},
                              {u"get_Year", 5},     {u"put_Year", 5},    {u"Hour", 6},      {u"get_Hour", 6},
                              {u"put_Hour", 6},     {u"Min", 7},         {u"get_Min", 7},   {u"put_Min", 7},
                              {u"Sec", 8},          {u"get_Sec", 8},     {u"put_Sec", 8},   {u"Negative", 9},
                              {u"get_Negative", 9}, {u"put_Negative", 9}};

constexpr MemberRow kMembers[] = {
    {3, u"get_Day", CalledBy::kRead, VT_I2, &GetDay},
    {3, u"put_Day", CalledBy::kWrite, VT_EMPTY, &PutDay, 1, {{VT_I2, u"RetVal"}}},
    {4, u"get_Month", CalledBy::kRead, VT_I2, &GetMonth},
    {4, u"put_Month", CalledBy::kWrite, VT_EMPTY, &PutMonth, 1, {{VT_I2, u"RetVal"}}},
    {5, u"get_Year", CalledBy::kRead, VT_I2, &GetYear},
    {5, u"put_Year", CalledBy::kWrite, VT_EMPTY, &PutYear, 1, {{VT_I2, u"RetVal"}}},
    {6, u"get_Hour", CalledBy::kRead, VT_I2, &GetHour},
    {6, u"put_Hour", CalledBy::kWrite, VT_EMPTY, &PutHour, 1, {{VT_I2, u"RetVal"}}},
    {7, u"get_Min", CalledBy::kRead, VT_I2, &GetMin},
    {7, u"put_Min", CalledBy::kWrite, VT_EMPTY, &PutMin, 1, {{VT_I2, u"RetVal"}}},
    {8, u"get_Sec", CalledBy::kRead, VT_R8, &GetSec},
    {8, u"put_Sec", CalledBy::kWrite, VT_EMPTY, &PutSec, 1, {{VT_R8, u"RetVal"}}},
    {9, u"get_Negative", CalledBy::kRead, VT_BOOL, &GetNegative},
    {9, u"put_Negative", CalledBy::kWrite, VT_EMPTY, &PutNegative, 1, {{VT_BOOL, u"RetVal"}}},
};

}  // namespace

const DispatchTable kDurationTable = {u"IDuration", &IDuration::kIid,  1,        NamedArgumentUse::kIgnored,
                                      kNames,       std::size(kNames), kMembers, std::size(kMembers)};

}  // namespace qv
