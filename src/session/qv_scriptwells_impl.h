// The logic of the client object: it creates value objects, owns the one model, and receives the host's
// services. Failure: `_com_error` and EQvException. It calls its objects through their interfaces, like a
// host.
#pragma once

#include "qvscriptwells/host_services.h"
#include "qvscriptwells/objects.h"

namespace qv {

class QvScriptwellsImpl {
 public:
  QvScriptwellsImpl() = default;
  QvScriptwellsImpl(const QvScriptwellsImpl&) = delete;
  QvScriptwellsImpl& operator=(const QvScriptwellsImpl&) = delete;
  // Closes no session. Services that call back on their release find the services member empty.
  virtual ~QvScriptwellsImpl() { clientServices_.reset(); }

  virtual IConnectionModelPtr get_ConnectionModel();
  virtual IUrlPtr get_Url();
  virtual IDurationPtr get_Duration();
  virtual IConnectionStringPtr get_ConnectionString();
  virtual IAttachedFilePtr get_AttachedFile();
  virtual IParametersPtr get_Parameters();
  virtual WideString get_ServerName();
  virtual void put_ServerName(WideString serverName);
  virtual WideString get_Proxy();
  virtual void put_Proxy(WideString proxy);
  virtual void Init(IUnknown* pVal);

 private:
  IConnectionModelPtr ReadyModel();
  IQvClientServices* Services() const;

  IConnectionModelPtr model_;
  IUnknownPtr spare_;
  IQvClientServicesPtr clientServices_;
  WideString serverName_{u""};
  WideString proxy_{u""};
};

}  // namespace qv
