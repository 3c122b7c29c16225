#include "devservice/js/script_engine.h"

#include "devservice/js/error_place.h"
#include "devservice/js/handles.h"
#include "devservice/js/inferred_table.h"
#include "devservice/js/script_api.h"
#include "devservice/js/script_fault.h"
#include "devservice/js/single_value.h"
#include "devservice/js/typed_table.h"
#include "devservice/values/fault_codes.h"

namespace qv::devservice {
namespace {

constexpr int kFirstLine = 1;

ScriptResult DescribeFailure(JSContextRef context, JSStringRef code, JSValueRef exception) {
  ScriptResult result = ResultOfException(context, exception);
  if (!JSCheckScriptSyntax(context, code, nullptr, kFirstLine, nullptr)) result.code = kScriptSyntax;
  return result;
}

constexpr char kArrayWithoutForm[] =
    "The script's value is an array, which has no form in an answer; a table of other rows than plain "
    "objects, or of none, is a typed.table.";

ScriptResult MakeTableResult(const Table& table) {
  ScriptResult result;
  result.kind = ResultKind::kTable;
  result.table = table;
  return result;
}

// The answer that the script's last value makes. May run getters of the script.
ScriptResult ResultOfValue(JSContextRef context, JSValueRef value, const ValueReaders& readers) {
  if (const Table* table = TableOf(context, value)) return MakeTableResult(*table);
  if (JSValueIsArray(context, value)) {
    auto rows = ResultOfRows(context, JSValueToObject(context, value, nullptr), readers);
    if (rows) return *std::move(rows);
    return MakeFault(kNoWireForm, kArrayWithoutForm);
  }
  return ResultOfSingle(context, value, readers.dates);
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
