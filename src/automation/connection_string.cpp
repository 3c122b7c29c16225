#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "values/connection_string_impl.h"

namespace qv {
namespace {

using Logic = ConnectionStringImpl;

// The ConnectionString object that hosts hold.
class ConnectionString final : public CountedObject<ConnectionStringDispatch, ConnectionStringRawDispatch,
                                                    SupportsErrorInfo<IConnectionString>> {
 public:
  HRESULT put_UserName(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_UserName);
  }
  HRESULT get_UserName(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_UserName);
  }
  HRESULT get_UserPassword(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_UserPassword);
  }
  HRESULT put_UserPassword(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_UserPassword);
  }
  HRESULT get_DatabaseName(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_DatabaseName);
  }
  HRESULT put_DatabaseName(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_DatabaseName);
  }
  HRESULT get_ReplicaID(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_ReplicaID);
  }
  HRESULT put_ReplicaID(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_ReplicaID);
  }
  HRESULT get_DatabaseID(WideString* value) noexcept override {
    return logic_.Get(value, &Logic::get_DatabaseID);
  }
  HRESULT put_DatabaseID(const WideString& value) noexcept override {
    return logic_.Put(value, &Logic::put_DatabaseID);
  }
  HRESULT ToString(WideString* text) noexcept override { return logic_.Get(text, &Logic::ToString); }
  HRESULT Initialize(const WideString& text) noexcept override {
    return logic_.Put(text, &Logic::Initialize);
  }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_ConnectionString> logic_;
};

}  // namespace

IConnectionStringPtr CreateConnectionString() {
  return IConnectionStringPtr(new ConnectionString);
}

}  // namespace qv
