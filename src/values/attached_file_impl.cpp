#include "values/attached_file_impl.h"

#include "text/join_text.h"

namespace qv {

void AttachedFileImpl::Init(WideString fileName) {
  filename_ = fileName;
}

WideString AttachedFileImpl::get_Filename() {
  return filename_;
}
void AttachedFileImpl::put_Filename(WideString value) {
  filename_ = value;
}
WideString AttachedFileImpl::get_FileId() {
  return fileId_;
}
void AttachedFileImpl::put_FileId(WideString value) {
  fileId_ = value;
}
std::int32_t AttachedFileImpl::get_SourceFileLifeTime() {
  return sourceFileLifeTime_;
}
void AttachedFileImpl::put_SourceFileLifeTime(std::int32_t value) {
  sourceFileLifeTime_ = value;
}
std::int32_t AttachedFileImpl::get_CleanUp() {
  return cleanUp_;
}
void AttachedFileImpl::put_CleanUp(std::int32_t value) {
  cleanUp_ = value;
}

WideString AttachedFileImpl::get_TicketId() {
  isTicket_ = VARIANT_FALSE;
  return ticketId_;
}

void AttachedFileImpl::put_TicketId(WideString value) {
  ticketId_ = value;
  isTicket_ = VARIANT_TRUE;
}

VARIANT_BOOL AttachedFileImpl::IsTicketId() {
  return isTicket_;
}

void AttachedFileImpl::FromText(WideString) {}

WideString AttachedFileImpl::ToText() {
  return JoinText({u"<Object>AttachedFile<DataType>string:string</DataType><Data>", filename_.view(), u":",
                   fileId_.view(), u"</Data></Object>"});
}

}  // namespace qv
