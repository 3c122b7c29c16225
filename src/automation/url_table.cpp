// URLs by name and id. Id 1 is free.
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IUrl* Link(IDispatch* self) {
  return static_cast<IUrl*>(self);
}

HRESULT GetUrlCaption(IDispatch* self, MemberCall& call) {
  return Link(self)->get_UrlCaption(&call.text);
}
HRESULT PutUrlCaption(IDispatch* self, MemberCall& call) {
  return Link(self)->put_UrlCaption(call.Text(0));
}
HRESULT GetUrl(IDispatch* self, MemberCall& call) {
  return Link(self)->get_Url(&call.text);
}
HRESULT PutUrl(IDispatch* self, MemberCall& call) {
  return Link(self)->put_Url(call.Text(0));
}
HRESULT ToString(IDispatch* self, MemberCall& call) {
  return Link(self)->ToString(&call.text);
}

constexpr NameRow kNames[] = {{u"UrlCaption", 2},     {u"RetVal", 0},  {u"get_UrlCaption", 2},
                              {u"put_UrlCaption", 2}, {u"Url", 3},     {u"get_Url", 3},
                              {u"put_Url", 3},        {u"ToString", 4}};

constexpr MemberRow kMembers[] = {
    {2, u"get_UrlCaption", CalledBy::kRead, VT_BSTR, &GetUrlCaption},
    {2, u"put_UrlCaption", CalledBy::kWrite, VT_EMPTY, &PutUrlCaption, 1, {{VT_BSTR, u"RetVal"}}},
    {3, u"get_Url", CalledBy::kRead, VT_BSTR, &GetUrl},
    {3, u"put_Url", CalledBy::kWrite, VT_EMPTY, &PutUrl, 1, {{VT_BSTR, u"RetVal"}}},
    {4, u"ToString", CalledBy::kAnyFlag, VT_BSTR, &ToString},
};

}  // namespace

const DispatchTable kUrlTable = {u"IUrl", &IUrl::kIid,       1,        NamedArgumentUse::kIgnored,
                                 kNames,  std::size(kNames), kMembers, std::size(kMembers)};

}  // namespace qv
