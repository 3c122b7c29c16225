// The functions with which scripts hand out addresses: uploadUrl and publish.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>

#include "devservice/worker_files.h"

namespace qv::devservice {

// Puts both into a global object. They keep `files` alive.
void InstallPublish(JSContextRef context, JSObjectRef global, const std::shared_ptr<WorkerFiles>& files);

}  // namespace qv::devservice
