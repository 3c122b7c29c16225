// A host that has never seen a header of the objects: it knows the class by its name in the registry, and
// members by theirs.
//   late_binding http://127.0.0.1:8080
#include <algorithm>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/simple_host.h"

namespace {

// A refusal of Invoke itself is a code alone.
std::string MessageOf(qv::HRESULT code, const qv::WideString& description) {
  if (!description.IsEmpty()) return qv::ToUtf8(description);
  char text[32];
  static_cast<void>(std::snprintf(text, sizeof text, "code 0x%08X", static_cast<unsigned>(code)));
  return text;
}

qv::Variant Call(const qv::IDispatchPtr& object, const char16_t* name, std::vector<qv::Variant> arguments,
                 std::uint16_t flags = qv::DISPATCH_METHOD) {
  qv::DISPID id = qv::DISPID_UNKNOWN;
  if (qv::Failed(object->GetIDsOfNames(qv::Guid{}, &name, 1, 0, &id)))
    throw std::runtime_error("no member " + qv::ToUtf8(name));
  std::reverse(arguments.begin(), arguments.end());  // the last argument goes first
  qv::DISPPARAMS given;
  given.rgvarg = arguments.data();
  given.cArgs = static_cast<std::uint32_t>(arguments.size());
  qv::Variant result;
  qv::EXCEPINFO failure;
  const qv::HRESULT code = object->Invoke(id, qv::Guid{}, 0, flags, &given, &result, &failure, nullptr);
  if (qv::Failed(code)) throw std::runtime_error(MessageOf(code, failure.bstrDescription));
  return result;
}

qv::IDispatchPtr ObjectOf(const qv::Variant& value) {
  return qv::IDispatchPtr(qv::DispatchOf(value));
}

qv::IDispatchPtr CreateClient() {
  qv::Guid classId{};
  qv::ThrowIfFailed(qv::CLSIDFromProgID(u"QvScriptwells.QvScriptwells", &classId));
  void* raw = nullptr;
  qv::ThrowIfFailed(qv::CoCreateInstance(classId, nullptr, qv::CLSCTX_ALL, qv::IDispatch::kIid, &raw));
  return qv::IDispatchPtr(static_cast<qv::IDispatch*>(raw), false);
}

// The second interface of the client, which takes the host's services.
void Init(const qv::IDispatchPtr& client, qv::IUnknown* provider) {
  constexpr qv::Guid kClientServiceRaw = qv::ParseGuid("1dceed1f-5c5c-4df1-9055-ddf102dbab4c");
  const qv::IDispatchPtr raw = qv::As<qv::IDispatch>(client, kClientServiceRaw);
  Call(raw, u"Init", {qv::Variant::FromObject(provider)});
}

void AddOnTheServer(const char* server) {
  const auto provider = qv::CreateSimpleServiceProvider(qv::CreateSimpleHost({u"joe"}).get());
  const qv::IDispatchPtr client = CreateClient();
  Init(client, provider.get());
  Call(client, u"ServerName", {qv::Variant::FromString(qv::FromUtf8(server))}, qv::DISPATCH_PROPERTYPUT);
  const qv::IDispatchPtr model = ObjectOf(Call(client, u"ConnectionModel", {}));
  Call(model, u"CreateUserSession", {qv::Variant::FromString(u"Username=joe;Password=secret;")});
  const qv::IDispatchPtr parameters = ObjectOf(Call(client, u"Parameters", {}));
  Call(parameters, u"Add", {qv::Variant::FromString(u"a"), qv::Variant::FromInt(2)});
  Call(parameters, u"Add", {qv::Variant::FromString(u"b"), qv::Variant::FromInt(40)});
  const qv::Variant sum =
      Call(model, u"Execute",
           {qv::Variant::FromString(u"JavaScript"), qv::Variant::FromString(u"parameters.a + parameters.b"),
            qv::FromDispatch(parameters.get())});
  std::cout << sum.Data().intVal << "\n";  // 42
  Call(model, u"CloseUserSession", {});
}

}  // namespace

int main(int argc, char** argv) {
  try {
    AddOnTheServer(argc > 1 ? argv[1] : "http://127.0.0.1:8080");
    return 0;
  } catch (const qv::_com_error& error) {
    std::cerr << "failed: " << MessageOf(error.Error(), error.Description()) << "\n";
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
  }
  return 1;
}
