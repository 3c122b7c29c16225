// The envelope of the action "Execute": session, script document, parameters.
#pragma once

#include "qvscriptwells/objects.h"
#include "soap/qv_command.h"

namespace qv {

class CExecuteCommand : public CQvCommand {
 public:
  CQvCommand* clone() const override;
  // Needs the XML library started (XmlLibraryGuardScope) if the map names a script file. EQvException passes
  // through; any other failure becomes EQvException "Cannot create the xml document."
  void Serialize(WideTextStream& stream, const WideString& action, const WideString& serviceNamespace,
                 const WideString& url, const NamedArguments& map) override;

  // The text of a value by the formater of its type name; null if there is none. Failures as above.
  static WideString FormatValue(WideString typeName, Variant value);

 private:
  static void Write(WideTextStream& stream, const WideString& serviceUrl, const NamedArguments& map);
  static void WriteEnvelopeHead(WideTextStream& stream, const WideString& contextHandle);
  static void WriteScriptDocument(WideTextStream& stream, const NamedArguments& map);
  static void WriteScriptFile(WideTextStream& stream, const WideString& fileName);
  static void WriteScriptText(WideTextStream& stream, const NamedArguments& map);
  static void WriteCode(WideTextStream& stream, const WideString& script);
  static void WriteNoParameters(WideTextStream& stream);
  static void WriteParameters(WideTextStream& stream, const WideString& serviceUrl,
                              const NamedArguments& map);
  static void WriteParametersStart(WideTextStream& stream, std::int16_t count);
  static void WriteParameter(WideTextStream& stream, IParameter* parameter, const WideString& serviceUrl,
                             const NamedArguments& map);
  static void WriteEnvelopeTail(WideTextStream& stream);
};

}  // namespace qv
