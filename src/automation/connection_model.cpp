#include "automation/dispatch_faces.h"
#include "com/counted_object.h"
#include "com/guarded.h"
#include "com/module.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "session/connection_model_impl.h"

namespace qv {
namespace {

using Logic = ConnectionModelImpl;

// The ConnectionModel object that hosts hold. It keeps itself alive during operations that call a host, since
// the host may release it.
class ConnectionModel final : public CountedObject<ConnectionModelDispatch, IConnectionModelRaw,
                                                   SupportsErrorInfo<IConnectionModel>> {
 public:
  HRESULT CreateUserSession(const WideString& connectionString) noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IConnectionModelPtr self(this);
      logic.CreateUserSession(connectionString);
    });
  }
  HRESULT CloseUserSession() noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IConnectionModelPtr self(this);
      logic.CloseUserSession();
    });
  }
  HRESULT Execute(const WideString& scriptLanguage, const WideString& script, IParameters* parameters,
                  Variant* result) noexcept override {
    return logic_.Run(result, [&](Logic& logic) {
      const IConnectionModelPtr self(this);
      *result = logic.Execute(scriptLanguage, script, parameters);
    });
  }
  HRESULT ExecuteFile(const WideString& scriptFile, IParameters* parameters,
                      Variant* result) noexcept override {
    return logic_.Run(result, [&](Logic& logic) {
      const IConnectionModelPtr self(this);
      *result = logic.ExecuteFile(scriptFile, parameters);
    });
  }
  HRESULT SetUSID(const WideString& usid) noexcept override { return logic_.Put(usid, &Logic::SetUSID); }
  HRESULT DownloadFile(const WideString& url, const WideString& target, WideString* path) noexcept override {
    return logic_.Run(path, [&](Logic& logic) {
      const IConnectionModelPtr self(this);
      *path = logic.DownloadFile(url, target);
    });
  }
  HRESULT SetServer(const WideString& serverName, const WideString& proxy) noexcept override {
    return logic_.Run([&](Logic& logic) { logic.SetServer(serverName, proxy); });
  }
  HRESULT SetClientServices(IUnknown* services) noexcept override {
    return logic_.Run([&](Logic& logic) {
      const IConnectionModelPtr self(this);
      logic.SetClientServices(services);
    });
  }

 private:
  ModuleLock lock_;
  GuardedLogic<Logic, CLSID_ConnectionModel> logic_;
};

}  // namespace

IConnectionModelPtr CreateConnectionModel() {
  return IConnectionModelPtr(new ConnectionModel);
}

IConnectionModelPtr CreateConnectionModel(const WideString& serverName, const WideString& proxy,
                                          IUnknown* services) {
  const boost::intrusive_ptr<ConnectionModel> model(new ConnectionModel);
  ThrowIfFailed(model->SetServer(serverName, proxy));
  ThrowIfFailed(model->SetClientServices(services));
  return model;
}

}  // namespace qv
