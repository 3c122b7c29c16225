#include "automation/attached_file.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IAttachedFilePtr CreateAttachedFile() {
  return IAttachedFilePtr(new AttachedFile);
}

IAttachedFilePtr CreateAttachedFile(const WideString& fileName) {
  IAttachedFilePtr file = CreateAttachedFile();
  ThrowIfFailed(file->Init(fileName));
  return file;
}

HRESULT AttachedFile::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IAttachedFile::kIid, static_cast<IAttachedFile*>(this), static_cast<IAttachedFile*>(this)},
      {IDispatch::kIid, static_cast<IAttachedFile*>(this), static_cast<IAttachedFile*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IAttachedFile*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t AttachedFile::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT AttachedFile::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IAttachedFile::kIid ? S_OK : S_FALSE;
}

HRESULT AttachedFile::Init(const WideString& fileName) noexcept {
  return Put(fileName, &AttachedFileImpl::Init);
}
HRESULT AttachedFile::get_Filename(WideString* value) noexcept {
  return Get(value, &AttachedFileImpl::get_Filename);
}
HRESULT AttachedFile::put_Filename(const WideString& value) noexcept {
  return Put(value, &AttachedFileImpl::put_Filename);
}
HRESULT AttachedFile::get_FileId(WideString* value) noexcept {
  return Get(value, &AttachedFileImpl::get_FileId);
}
HRESULT AttachedFile::put_FileId(const WideString& value) noexcept {
  return Put(value, &AttachedFileImpl::put_FileId);
}
HRESULT AttachedFile::get_SourceFileLifeTime(std::int32_t* value) noexcept {
  return Get(value, &AttachedFileImpl::get_SourceFileLifeTime);
}
HRESULT AttachedFile::put_SourceFileLifeTime(std::int32_t value) noexcept {
  return Put(value, &AttachedFileImpl::put_SourceFileLifeTime);
}
HRESULT AttachedFile::get_CleanUp(std::int32_t* value) noexcept {
  return Get(value, &AttachedFileImpl::get_CleanUp);
}
HRESULT AttachedFile::put_CleanUp(std::int32_t value) noexcept {
  return Put(value, &AttachedFileImpl::put_CleanUp);
}
HRESULT AttachedFile::get_TicketId(WideString* value) noexcept {
  return Get(value, &AttachedFileImpl::get_TicketId);
}
HRESULT AttachedFile::put_TicketId(const WideString& value) noexcept {
  return Put(value, &AttachedFileImpl::put_TicketId);
}
HRESULT AttachedFile::IsTicketId(VARIANT_BOOL* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.IsTicketId();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_AttachedFile);
  }
}

HRESULT AttachedFile::Get(WideString* value, WideString (AttachedFileImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_AttachedFile);
  }
}

HRESULT AttachedFile::Put(const WideString& value, void (AttachedFileImpl::*put)(WideString)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_AttachedFile);
  }
}

HRESULT AttachedFile::Get(std::int32_t* value, std::int32_t (AttachedFileImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_AttachedFile);
  }
}

HRESULT AttachedFile::Put(std::int32_t value, void (AttachedFileImpl::*put)(std::int32_t)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_AttachedFile);
  }
}

}  // namespace qv
