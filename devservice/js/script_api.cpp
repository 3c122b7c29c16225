#include "devservice/js/script_api.h"

#include "devservice/js/handles.h"
#include "devservice/js/typed_table.h"
#include "devservice/js/typed_values.h"

namespace qv::devservice {
namespace {

constexpr char kPrelude[] =
    "globalThis.ScriptError = class ScriptError extends Error {"
    "  constructor(code, description) {"
    "    super(description); this.name = 'ScriptError'; this.code = code; this.description = description;"
    "  }"
    "};";

}  // namespace

void InstallScriptApi(JSGlobalContextRef context, const ScriptJob& job, const ValueReaders& readers,
                      const std::shared_ptr<WorkerFiles>& files,
                      const std::shared_ptr<ConsoleLimit>& console) {
  JSObjectRef global = JSContextGetGlobalObject(context);
  InstallParameters(context, global, job.parameters, *files);
  InstallTable(context, InstallTyped(context, global, readers.dates), readers);
  InstallPublish(context, global, files);
  InstallConsole(context, global, console);
  JSEvaluateScript(context, MakeJsString(kPrelude).get(), nullptr, nullptr, 1, nullptr);
}

}  // namespace qv::devservice
