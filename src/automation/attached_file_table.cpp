// Attached files by name and id. The name "Filename" finds the argument of Init, whose row is first; hosts
// use that property as "get_Filename" and "put_Filename".
#include "automation/dispatch_faces.h"
#include "dispatch/member_rows.h"

namespace qv {
namespace {

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
    Method<&IAttachedFile::Init>(1, u"Init", u"Filename"),
    Read<&IAttachedFile::get_Filename>(2, u"get_Filename"),
    Write<&IAttachedFile::put_Filename>(2, u"put_Filename", u"RetVal"),
    Read<&IAttachedFile::get_FileId>(3, u"get_FileId"),
    Write<&IAttachedFile::put_FileId>(3, u"put_FileId", u"RetVal"),
    Read<&IAttachedFile::get_SourceFileLifeTime>(4, u"get_SourceFileLifeTime"),
    Write<&IAttachedFile::put_SourceFileLifeTime>(4, u"put_SourceFileLifeTime", u"RetVal"),
    Read<&IAttachedFile::get_CleanUp>(5, u"get_CleanUp"),
    Write<&IAttachedFile::put_CleanUp>(5, u"put_CleanUp", u"RetVal"),
    Read<&IAttachedFile::get_TicketId>(6, u"get_TicketId"),
    Write<&IAttachedFile::put_TicketId>(6, u"put_TicketId", u"Value"),
    OfBool(Method<&IAttachedFile::IsTicketId>(7, u"IsTicketId")),
};

}  // namespace

const DispatchTable kAttachedFileTable =
    TableOf<IAttachedFile>(u"IAttachedFile", 1, NamedArgumentUse::kIgnored, kNames, kMembers);

}  // namespace qv
