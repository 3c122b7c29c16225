#include "samples.h"

#include "qvscriptwells/create_objects.h"
#include "script/execute_command.h"

namespace qv::bench {

WideString Script(std::size_t units) {
  static const std::u16string line =
      u"var total = 0; for (var i = 0; i < rows.length; ++i) total += rows[i].price;\n";
  std::u16string script;
  while (script.size() < units) script += line;
  script.resize(units);
  return WideString(script);
}

IParametersPtr ThreeParameters() {
  IParametersPtr parameters = CreateParameters();
  parameters->Add(u"count", Variant::FromInt(42), nullptr);
  parameters->Add(u"factor", Variant::FromDouble(2.5), nullptr);
  parameters->Add(u"name", Variant::FromString(u"Quorvane"), nullptr);
  return parameters;
}

NamedArguments ExecuteArguments(const WideString& script, const IParametersPtr& parameters) {
  NamedArguments map;
  map.emplace(u"ContextHandle", Variant::FromString(u"5f3c6f1e0f8d4c3ba1d2e3f405162738"));
  map.emplace(u"ScriptLanguage", Variant::FromString(u"JavaScript"));
  map.emplace(u"Script", Variant::FromString(script));
  map.emplace(u"parameters", Variant::FromObject(parameters.get()));
  return map;
}

std::string ExecuteBody(const WideString& script, const IParametersPtr& parameters) {
  WideTextStream stream;
  CExecuteCommand().Serialize(stream, u"Execute", u"", u"", ExecuteArguments(script, parameters));
  return ToUtf8(stream.TakeText());
}

std::string StringAnswer() {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
         "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">"
         "<soap:Body><ExecuteResponse xmlns=\"" QV_NAMESPACE_HOST
         "/dev/ns/ivarnel/scriptwells\"><ExecuteResult xsi:type=\"xsd:string\">hello</ExecuteResult>"
         "</ExecuteResponse></soap:Body></soap:Envelope>";
}

}  // namespace qv::bench
