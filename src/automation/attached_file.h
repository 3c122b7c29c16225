// The AttachedFile object that hosts hold.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "values/attached_file_impl.h"

namespace qv {

class AttachedFile final : public AttachedFileDispatch, public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT Init(const WideString& fileName) noexcept override;
  HRESULT get_Filename(WideString* value) noexcept override;
  HRESULT put_Filename(const WideString& value) noexcept override;
  HRESULT get_FileId(WideString* value) noexcept override;
  HRESULT put_FileId(const WideString& value) noexcept override;
  HRESULT get_SourceFileLifeTime(std::int32_t* value) noexcept override;
  HRESULT put_SourceFileLifeTime(std::int32_t value) noexcept override;
  HRESULT get_CleanUp(std::int32_t* value) noexcept override;
  HRESULT put_CleanUp(std::int32_t value) noexcept override;
  HRESULT get_TicketId(WideString* value) noexcept override;
  HRESULT put_TicketId(const WideString& value) noexcept override;
  HRESULT IsTicketId(VARIANT_BOOL* value) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  HRESULT Get(WideString* value, WideString (AttachedFileImpl::*get)()) noexcept;
  HRESULT Put(const WideString& value, void (AttachedFileImpl::*put)(WideString)) noexcept;
  HRESULT Get(std::int32_t* value, std::int32_t (AttachedFileImpl::*get)()) noexcept;
  HRESULT Put(std::int32_t value, void (AttachedFileImpl::*put)(std::int32_t)) noexcept;

  ModuleLock lock_;
  AttachedFileImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
