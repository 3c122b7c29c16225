#include "tools/file_parameter.h"

#include "qvscriptwells/create_objects.h"
#include "tools/failure.h"
#include "tools/local_files.h"

namespace qv::cli {

Variant MakeFileParameter(const std::string& file) {
  const std::string path = AbsolutePath(file, "file");
  if (path.find('\\') != std::string::npos)
    throw Failure(ExitStatus::kLocal, "the path " + path +
                                          " holds '\\', which the library takes for '/'; rename or copy the "
                                          "file");
  CheckReadable(path, "file");
  return Variant::FromObject(CreateAttachedFile(FromUtf8(path)).get());
}

bool IsFileParameter(const Variant& value) {
  const IAttachedFilePtr file(static_cast<IAttachedFile*>(QueryFor(value.Object(), IAttachedFile::kIid)),
                              false);
  return file != nullptr;
}

}  // namespace qv::cli
