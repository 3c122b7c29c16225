#include "tools/file_parameter.h"

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "tools/local_files.h"

namespace qv::cli {

Variant MakeFileParameter(const std::string& file) {
  return Variant::FromObject(CreateAttachedFile(FromUtf8(CheckForLibrary(file, "file"))).get());
}

bool IsFileParameter(const Variant& value) {
  const IAttachedFilePtr file = As<IAttachedFile>(value.Object());
  return file != nullptr;
}

}  // namespace qv::cli
