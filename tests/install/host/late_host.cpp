// A program that knows a ProgID and some names of members.
#include <qvscriptwells/class_registry.h>
#include <qvscriptwells/dispatch.h>
#include <qvscriptwells/error_info.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

qv::HRESULT Call(qv::IDispatch* object, const char16_t* name, std::uint16_t flags,
                 const qv::Variant* argument, qv::Variant* result, qv::EXCEPINFO* failure) {
  qv::DISPID id = qv::DISPID_UNKNOWN;
  const qv::HRESULT code = object->GetIDsOfNames(qv::Guid{}, &name, 1, 0, &id);
  if (qv::Failed(code)) return code;
  qv::DISPPARAMS arguments;
  arguments.rgvarg = argument;
  arguments.cArgs = argument == nullptr ? 0 : 1;
  return object->Invoke(id, qv::Guid{}, 0, flags, &arguments, result, failure, nullptr);
}

qv::IDispatchPtr Create(const char16_t* progId) {
  qv::Guid classId{};
  void* raw = nullptr;
  qv::HRESULT code = qv::CLSIDFromProgID(progId, &classId);
  if (qv::Succeeded(code))
    code = qv::CoCreateInstance(classId, nullptr, qv::CLSCTX_ALL, qv::IDispatch::kIid, &raw);
  qv::ErrorInfo reason;
  if (qv::Failed(code) && qv::GetErrorInfo(&reason))
    std::printf("0x%08X %s\n", static_cast<unsigned>(code), qv::ToUtf8(reason.description).c_str());
  return {static_cast<qv::IDispatch*>(raw), false};
}

bool IsLoaded() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);)
    if (line.find("libqvscriptwells.so") != std::string::npos) return true;
  return false;
}

}  // namespace

int main() {
  qv::IDispatchPtr client = Create(u"QvScriptwells.QvScriptwells");
  if (client == nullptr) return 1;
  const qv::Variant server = qv::Variant::FromString(u"http://srv:8080");
  qv::Variant name;
  if (Call(client.get(), u"ServerName", qv::DISPATCH_PROPERTYPUT, &server, nullptr, nullptr) != qv::S_OK)
    return 2;
  if (Call(client.get(), u"ServerName", qv::DISPATCH_PROPERTYGET, nullptr, &name, nullptr) != qv::S_OK)
    return 3;
  std::printf("%s\n", qv::ToUtf8(name.Text()).c_str());

  // There are no services yet, so this one fails and says where.
  qv::EXCEPINFO failure;
  if (Call(client.get(), u"ConnectionModel", qv::DISPATCH_METHOD, nullptr, nullptr, &failure) >= 0) return 4;
  std::printf("%s\n", qv::ToUtf8(failure.bstrSource).c_str());

  client.reset();
  qv::CoFreeUnusedLibraries();
  std::printf("%s\n", IsLoaded() ? "still there" : "unloaded");
  return 0;
}
