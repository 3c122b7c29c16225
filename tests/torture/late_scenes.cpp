// What a host does that knows a ProgID and names of members, and loads the library itself.
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/simple_host.h"
#include "torture/scene.h"

namespace qv::torture {
namespace {

constexpr Guid kClientServiceRaw = ParseGuid("1dceed1f-5c5c-4df1-9055-ddf102dbab4c");

HRESULT CreateClient(IDispatchPtr* client) {
  static const WideString progId(u"QvScriptwells.QvScriptwells");
  Guid classId{};
  HRESULT code = CLSIDFromProgID(progId, &classId);
  void* raw = nullptr;
  if (Succeeded(code)) code = CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, &raw);
  if (Failed(code)) return code;
  *client = IDispatchPtr(static_cast<IDispatch*>(raw), false);
  return S_OK;
}

// Arguments in reverse, as they travel.
HRESULT CallByName(IDispatch* object, const char16_t* name, std::uint16_t flags,
                   const std::vector<Variant>& arguments, Variant* result) {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = object->GetIDsOfNames(Guid{}, &name, 1, 0, &id);
  if (Failed(found)) return found;
  DISPPARAMS block;
  block.rgvarg = arguments.data();
  block.cArgs = static_cast<std::uint32_t>(arguments.size());
  return object->Invoke(id, Guid{}, 0, flags, &block, result, nullptr, nullptr);
}

HRESULT Init(IDispatch* client, const std::vector<Variant>& provider) {
  const IDispatchPtr raw = As<IDispatch>(client, kClientServiceRaw);
  return CallByName(raw.get(), u"Init", DISPATCH_METHOD, provider, nullptr);
}

Variant ServerName() {
  return Variant::FromString(FromUtf8("http://127.0.0.1:" + std::to_string(CurrentStage().port)));
}

Variant Provider() {
  return Variant::FromObject(CreateSimpleServiceProvider(CreateSimpleHost({u"joe"}).get()).get());
}

// Loads the library, makes an object, lets both go.
class LoadScene : public Scene {
 public:
  Outcome Call() override {
    IDispatchPtr client;
    HRESULT code = CreateClient(&client);
    if (Failed(code)) return {code, false};
    code = CallByName(client.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, server_, nullptr);
    Variant name;
    if (Succeeded(code))
      code = CallByName(client.get(), u"get_ServerName", DISPATCH_PROPERTYGET, none_, &name);
    client.reset();
    CoFreeUnusedLibraries();
    return {code, name.Text().view() == server_[0].Text().view()};
  }

 private:
  const std::vector<Variant> server_{ServerName()};
  const std::vector<Variant> none_;
};

// A client that is ready, in a library that stays.
class ClientScene : public Scene {
 protected:
  ClientScene() {
    ThrowIfFailed(CreateClient(&client_));
    ThrowIfFailed(Init(client_.get(), {Provider()}));
    ThrowIfFailed(
        CallByName(client_.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, {ServerName()}, nullptr));
    Variant model;
    ThrowIfFailed(CallByName(client_.get(), u"ConnectionModel", DISPATCH_METHOD, {}, &model));
    model_ = IDispatchPtr(DispatchOf(model));
  }

  IDispatchPtr client_;
  IDispatchPtr model_;
  const std::vector<Variant> none_;
};

class LateSessionScene : public ClientScene {
 public:
  Outcome Call() override {
    HRESULT code = CallByName(model_.get(), u"CreateUserSession", DISPATCH_METHOD, connection_, nullptr);
    if (Succeeded(code))
      code = CallByName(model_.get(), u"CloseUserSession", DISPATCH_METHOD, none_, nullptr);
    return {code, true};
  }

 private:
  const std::vector<Variant> connection_{Variant::FromString(u"Username=joe;Password=secret;")};
};

// A list made, filled and sent.
class LateExecuteScene : public ClientScene {
 public:
  LateExecuteScene() {
    ThrowIfFailed(
        CallByName(model_.get(), u"SetUSID", DISPATCH_METHOD, {Variant::FromString(u"u1")}, nullptr));
    script_.resize(3);
    script_[2] = Variant::FromString(u"JavaScript");
    script_[1] = Variant::FromString(u"'done'");
  }
  Outcome Call() override {
    Variant list;
    HRESULT code = CallByName(client_.get(), u"Parameters", DISPATCH_METHOD, none_, &list);
    if (Succeeded(code)) code = CallByName(DispatchOf(list), u"Add", DISPATCH_METHOD, pair_, nullptr);
    if (Failed(code)) return {code, false};
    script_[0] = list;
    Variant result;
    code = CallByName(model_.get(), u"Execute", DISPATCH_METHOD, script_, &result);
    script_[0].Clear();
    return {code, result.Text().view() == u"done"};
  }

 private:
  const std::vector<Variant> pair_{Variant::FromInt(42), Variant::FromString(u"key")};
  std::vector<Variant> script_;
};

template <class T>
std::unique_ptr<Scene> Make() {
  return std::make_unique<T>();
}

}  // namespace

const std::vector<Flow>& Flows() {
  static const std::vector<Flow> flows = {
      {"load", Make<LoadScene>, false},
      {"late-session", Make<LateSessionScene>},
      {"late-execute", Make<LateExecuteScene>},
  };
  return flows;
}

std::shared_ptr<void> HoldXmlLibrary() {
  return nullptr;
}

bool CanHoldXmlLibrary() {
  return false;
}

std::string RegistryText(const std::string& home) {
  const std::string classes = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\";
  const std::string id = "{01932093-F909-400b-B02E-7AEDABA33A36}";
  return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home + "\"\n\n" + classes +
         "QvScriptwells.QvScriptwells\\CLSID]\n@=\"" + id + "\"\n\n" + classes + "CLSID\\" + id +
         "\\InprocServer32]\n@=\"" SHARED_LIBRARY "\"\n";
}

}  // namespace qv::torture
