#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "values/attached_file_impl.h"

namespace qv {
namespace {

using Logic = AttachedFileImpl;

// The AttachedFile object that hosts hold.
class AttachedFile final : public CountedObject<AttachedFileDispatch, SupportsErrorInfo<IAttachedFile>> {
 public:
  HRESULT Init(const WideString& name) noexcept override { return logic_.Put(name, &Logic::Init); }
  HRESULT get_Filename(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_Filename);
  }
  HRESULT put_Filename(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_Filename);
  }
  HRESULT get_FileId(WideString* value) noexcept override { return logic_.Get(value, &Logic::get_FileId); }
  HRESULT put_FileId(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_FileId);
  }
  HRESULT get_SourceFileLifeTime(std::int32_t* value) noexcept override {
    return logic_.Get(value, &Logic::get_SourceFileLifeTime);
  }
  HRESULT put_SourceFileLifeTime(std::int32_t value) noexcept override {
    return logic_.Put(value, &Logic::put_SourceFileLifeTime);
  }
  HRESULT get_CleanUp(std::int32_t* value) noexcept override {
    return logic_.Get(value, &Logic::get_CleanUp);
  }
  HRESULT put_CleanUp(std::int32_t value) noexcept override { return logic_.Put(value, &Logic::put_CleanUp); }
  HRESULT get_TicketId(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_TicketId);
  }
  HRESULT put_TicketId(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_TicketId);
  }
  HRESULT IsTicketId(VARIANT_BOOL* value) noexcept override { return logic_.Get(value, &Logic::IsTicketId); }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_AttachedFile> logic_;
};

}  // namespace

IAttachedFilePtr CreateAttachedFile() {
  return IAttachedFilePtr(new AttachedFile);
}

IAttachedFilePtr CreateAttachedFile(const WideString& fileName) {
  IAttachedFilePtr file = CreateAttachedFile();
  ThrowIfFailed(file->Init(fileName));
  return file;
}

}  // namespace qv
