// The logic of an AttachedFile: a local file's name, and the server's ticket for it.
#pragma once

#include <cstdint>

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

class AttachedFileImpl {
 public:
  virtual ~AttachedFileImpl() = default;
  virtual void Init(WideString fileName);
  virtual WideString get_Filename();
  virtual void put_Filename(WideString value);
  virtual WideString get_FileId();
  virtual void put_FileId(WideString value);
  virtual std::int32_t get_SourceFileLifeTime();
  virtual void put_SourceFileLifeTime(std::int32_t value);
  virtual std::int32_t get_CleanUp();
  virtual void put_CleanUp(std::int32_t value);
  // Clears the flag, so call IsTicketId first if you need both.
  virtual WideString get_TicketId();
  virtual void put_TicketId(WideString value);
  virtual VARIANT_BOOL IsTicketId();
  virtual void FromText(WideString text);  // ignores it
  // "<Object>AttachedFile<DataType>string:string</DataType><Data>name:id</Data></Object>", nothing escaped.
  virtual WideString ToText();

 private:
  WideString filename_;
  WideString fileId_;
  std::int32_t sourceFileLifeTime_ = 1;
  std::int32_t cleanUp_ = 1;
  WideString ticketId_;
  VARIANT_BOOL isTicket_ = VARIANT_FALSE;
};

}  // namespace qv
