// Attached files by name and id. The name "Filename" finds the argument of Init, whose row stands first:
// hosts reach that property through "get_Filename" and "put_Filename".
#include <iterator>

#include "automation/dispatch_tables.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

IAttachedFile* File(IDispatch* self) {
  return static_cast<IAttachedFile*>(self);
}

HRESULT Init(IDispatch* self, MemberCall& call) {
  return File(self)->Init(call.Text(0));
}
HRESULT GetFilename(IDispatch* self, MemberCall& call) {
  return File(self)->get_Filename(&call.text);
}
HRESULT PutFilename(IDispatch* self, MemberCall& call) {
  return File(self)->put_Filename(call.Text(0));
}
HRESULT GetFileId(IDispatch* self, MemberCall& call) {
  return File(self)->get_FileId(&call.text);
}
HRESULT PutFileId(IDispatch* self, MemberCall& call) {
  return File(self)->put_FileId(call.Text(0));
}
HRESULT GetSourceFileLifeTime(IDispatch* self, MemberCall& call) {
  return File(self)->get_SourceFileLifeTime(&call.longValue);
}
HRESULT PutSourceFileLifeTime(IDispatch* self, MemberCall& call) {
  return File(self)->put_SourceFileLifeTime(call.Long(0));
}
HRESULT GetCleanUp(IDispatch* self, MemberCall& call) {
  return File(self)->get_CleanUp(&call.longValue);
}
HRESULT PutCleanUp(IDispatch* self, MemberCall& call) {
  return File(self)->put_CleanUp(call.Long(0));
}
HRESULT GetTicketId(IDispatch* self, MemberCall& call) {
  return File(self)->get_TicketId(&call.text);
}
HRESULT PutTicketId(IDispatch* self, MemberCall& call) {
  return File(self)->put_TicketId(call.Text(0));
}
HRESULT IsTicketId(IDispatch* self, MemberCall& call) {
  return File(self)->IsTicketId(&call.shortValue);
}

constexpr NameRow kNames[] = {{u"Filename", 0},
                              {u"Init", 1},
                              {u"Filename", 2},
                              {u"RetVal", 0},
                              {u"get_Filename", 2},
                              {u"put_Filename", 2},
                              {u"FileId", 3},
                              {u"get_FileId", 3},
                              {u"put_FileId", 3},
                              {u"SourceFileLifeTime", 4},
                              {u"get_SourceFileLifeTime", 4},
                              {u"put_SourceFileLifeTime", 4},
                              {u"CleanUp", 5},
                              {u"get_CleanUp", 5},
                              {u"put_CleanUp", 5},
                              {u"TicketId", 6},
                              {u"Value", 0},
                              {u"get_TicketId", 6},
                              {u"put_TicketId", 6},
                              {u"val", 0},
                              {u"IsTicketId", 7}};

constexpr MemberRow kMembers[] = {
    {1, u"Init", CalledBy::kAnyFlag, VT_EMPTY, &Init, 1, {{VT_BSTR, u"Filename"}}},
    {2, u"get_Filename", CalledBy::kRead, VT_BSTR, &GetFilename},
    {2, u"put_Filename", CalledBy::kWrite, VT_EMPTY, &PutFilename, 1, {{VT_BSTR, u"RetVal"}}},
    {3, u"get_FileId", CalledBy::kRead, VT_BSTR, &GetFileId},
    {3, u"put_FileId", CalledBy::kWrite, VT_EMPTY, &PutFileId, 1, {{VT_BSTR, u"RetVal"}}},
    {4, u"get_SourceFileLifeTime", CalledBy::kRead, VT_I4, &GetSourceFileLifeTime},
    {4,
     u"put_SourceFileLifeTime",
     CalledBy::kWrite,
     VT_EMPTY,
     &PutSourceFileLifeTime,
     1,
     {{VT_I4, u"RetVal"}}},
    {5, u"get_CleanUp", CalledBy::kRead, VT_I4, &GetCleanUp},
    {5, u"put_CleanUp", CalledBy::kWrite, VT_EMPTY, &PutCleanUp, 1, {{VT_I4, u"RetVal"}}},
    {6, u"get_TicketId", CalledBy::kRead, VT_BSTR, &GetTicketId},
    {6, u"put_TicketId", CalledBy::kWrite, VT_EMPTY, &PutTicketId, 1, {{VT_BSTR, u"Value"}}},
    {7, u"IsTicketId", CalledBy::kAnyFlag, VT_BOOL, &IsTicketId},
};

}  // namespace

const DispatchTable kAttachedFileTable = {
    u"IAttachedFile", &IAttachedFile::kIid, 1,        NamedArgumentUse::kIgnored,
    kNames,           std::size(kNames),    kMembers, std::size(kMembers)};

}  // namespace qv
