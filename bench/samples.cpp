#include "samples.h"

#include "qvscriptwells/create_objects.h"
#include "script/execute_command.h"

namespace qv::bench {

IParametersPtr ThreeParameters() {
  IParametersPtr parameters = CreateParameters();
  parameters->Add(u"count", Variant::FromInt(42), nullptr);
  parameters->Add(u"factor", Variant::FromDouble(2.5), nullptr);
  parameters->Add(u"name", Variant::FromString(u"Quorvane"), nullptr);
  return parameters;
}

NamedArguments ExecuteArguments(const WideString& script, const IParametersPtr& parameters) {
  NamedArguments map;
  map.emplace(u"ContextHandle", Variant::FromString(FromUtf8(kSampleSession)));
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
