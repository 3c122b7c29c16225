#include "devservice/script_engine.h"

#include "devservice/fault_codes.h"
#include "devservice/js_handles.h"
#include "devservice/js_place.h"
#include "devservice/js_values.h"

namespace qv::devservice {
namespace {

constexpr int kFirstLine = 1;

ScriptResult DescribeFailure(JSContextRef context, JSStringRef code, JSValueRef exception) {
  ScriptResult result = ResultOfException(context, exception);
  if (!JSCheckScriptSyntax(context, code, nullptr, kFirstLine, nullptr)) result.code = kScriptSyntax;
  return result;
}

}  // namespace

ScriptEngine::ScriptEngine() : group_(JSContextGroupCreate()), readers_(group_) {}
ScriptEngine::~ScriptEngine() {
  JSContextGroupRelease(group_);
}

ScriptResult ScriptEngine::Run(const ScriptJob& job, const ConsoleSink& console) {
  const JsContext context(JSGlobalContextCreateInGroup(group_, nullptr));
  const auto files = std::make_shared<WorkerFiles>(job.files);
  InstallScriptApi(context.get(), job, readers_, files, std::make_shared<ConsoleLimit>(console));
  const JsString code = MakeJsString(job.code);
  const JsString url = MakeJsString(kScriptUrl);
  JSValueRef exception = nullptr;
  const JSValueRef value =
      JSEvaluateScript(context.get(), code.get(), nullptr, url.get(), kFirstLine, &exception);
  if (exception) return DescribeFailure(context.get(), code.get(), exception);
  ScriptResult result = ResultOfValue(context.get(), value, readers_);
  result.files = files->Made();
  return result;
}

}  // namespace qv::devservice
