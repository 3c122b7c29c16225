// The logic of a ConnectionString: credentials and their text form.
#pragma once

#include <string_view>

#include "qvscriptwells/wide_string.h"

namespace qv {

class ConnectionStringImpl {
 public:
  virtual ~ConnectionStringImpl() = default;
  virtual void put_UserName(WideString value);
  virtual WideString get_UserName();
  virtual WideString get_UserPassword();
  virtual void put_UserPassword(WideString value);
  virtual WideString get_DatabaseName();
  virtual void put_DatabaseName(WideString value);
  virtual WideString get_ReplicaID();
  virtual void put_ReplicaID(WideString value);
  virtual WideString get_DatabaseID();
  virtual void put_DatabaseID(WideString value);
  // Appends the three pairs to the text of earlier calls; deployed hosts rely on the repeated text.
  virtual WideString ToString();
  virtual void Initialize(WideString connectionString);

 private:
  void Assign(const WideString& key, const WideString& value);

  WideString userName_;
  WideString userPassword_;
  WideString databaseName_;
  WideString replicaId_;
  WideString databaseId_;
  WideString text_;
};

}  // namespace qv
