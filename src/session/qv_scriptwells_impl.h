// The logic behind the client object: a factory of value objects, the owner of the one model, and the way in
// for the host's services. Failure: `_com_error` and EQvException. Calls its objects through their
// interfaces, as any host does.
#pragma once

#include "qvscriptwells/host_services.h"
#include "qvscriptwells/objects.h"

namespace qv {

class QvScriptwellsImpl {
 public:
  QvScriptwellsImpl() = default;
  QvScriptwellsImpl(const QvScriptwellsImpl&) = delete;
  QvScriptwellsImpl& operator=(const QvScriptwellsImpl&) = delete;
  // Closes no session. Services that call back when they are released find none here.
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
