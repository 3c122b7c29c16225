// Runs one script after another in JavaScriptCore, each in a fresh global object.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/js/key_reader.h"
#include "devservice/values/console_message.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// Belongs to one thread. Has no limits itself: another process watches time and memory.
class ScriptEngine {
 public:
  ScriptEngine();
  ~ScriptEngine();
  ScriptEngine(const ScriptEngine&) = delete;
  ScriptEngine& operator=(const ScriptEngine&) = delete;

  // A script that fails gives a result of the kind kFault, not an exception. Console messages go to `console`
  // at once, within the limits of a run.
  ScriptResult Run(const ScriptJob& job, const ConsoleSink& console);

 private:
  JSContextGroupRef group_;
  ValueReaders readers_;
};

}  // namespace qv::devservice
