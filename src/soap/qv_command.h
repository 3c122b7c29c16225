// A command writes the request envelope of one action.
#pragma once

#include "soap/named_arguments.h"
#include "support/wide_text_stream.h"

namespace qv {

class CQvCommand {
 public:
  virtual ~CQvCommand() = default;
  virtual CQvCommand* clone() const = 0;  // a new command of the same class, owned by the caller
  // Appends the envelope and a null terminator to `stream`. A missing key throws std::out_of_range.
  virtual void Serialize(WideTextStream& stream, const WideString& action, const WideString& serviceNamespace,
                         const WideString& url, const NamedArguments& map) = 0;
};

class CCreateSessionCommand : public CQvCommand {
 public:
  CQvCommand* clone() const override;
  void Serialize(WideTextStream& stream, const WideString& action, const WideString& serviceNamespace,
                 const WideString& url, const NamedArguments& map) override;
};

class CReleaseSessionCommand : public CQvCommand {
 public:
  CQvCommand* clone() const override;
  void Serialize(WideTextStream& stream, const WideString& action, const WideString& serviceNamespace,
                 const WideString& url, const NamedArguments& map) override;
};

// The command of the action "Execute", which is implemented in src/script.
CQvCommand* NewExecuteCommand();

}  // namespace qv
