// Runs one script after another in JavaScriptCore, each in a fresh global object.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include "devservice/values/console_message.h"
#include "devservice/js/key_reader.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// Belongs to one thread. Has no limits of its own: time and memory are watched from outside the process.
class ScriptEngine {
 public:
  ScriptEngine();
  ~ScriptEngine();
  ScriptEngine(const ScriptEngine&) = delete;
  ScriptEngine& operator=(const ScriptEngine&) = delete;

  // Never throws for what a script does: its failure is a result of the kind kFault. What it says to its
  // console goes to `console` at once, within the limits of a run.
  ScriptResult Run(const ScriptJob& job, const ConsoleSink& console);

 private:
  JSContextGroupRef group_;
  ValueReaders readers_;
};

}  // namespace qv::devservice
