// What a host does that knows a ProgID and names of members, and loads the library itself.
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/simple_host.h"
#include "torture/scene.h"

namespace qv::torture {
namespace {

constexpr Guid kClientServiceRaw = ParseGuid("1dceed1f-5c5c-4df1-9055-ddf102dbab4c");

IDispatchPtr CreateClient() {
  static const WideString progId(u"QvScriptwells.QvScriptwells");
  Guid classId{};
  ThrowIfFailed(CLSIDFromProgID(progId, &classId));
  IDispatchPtr client;
  ThrowIfFailed(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(client)));
  return client;
}

Variant ServerName() {
  return Variant::FromString(FromUtf8("http://127.0.0.1:" + std::to_string(CurrentStage().port)));
}

Variant Provider() {
  return Variant::FromObject(CreateSimpleServiceProvider(CreateSimpleHost({u"joe"}).get()).get());
}

struct Unloading {
  ~Unloading() { CoFreeUnusedLibraries(); }
};

// Loads the library, makes an object, releases both.
class LoadScene : public Scene {
 public:
  bool Call() override {
    const Unloading unloading;
    const IDispatchPtr client = CreateClient();
    CallByName(client.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, server_);
    Variant name;
    CallByName(client.get(), u"get_ServerName", DISPATCH_PROPERTYGET, none_, &name);
    return name.Text().view() == server_[0].Text().view();
  }

 private:
  const std::vector<Variant> server_{ServerName()};
  const std::vector<Variant> none_{};
};

// A client that is ready, in a library that stays.
class ClientScene : public Scene {
 protected:
  ClientScene() : client_(CreateClient()) {
    CallByName(As<IDispatch>(client_, kClientServiceRaw).get(), u"Init", DISPATCH_METHOD, {Provider()});
    CallByName(client_.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, {ServerName()});
    Variant model;
    CallByName(client_.get(), u"ConnectionModel", DISPATCH_METHOD, {}, &model);
    model_ = IDispatchPtr(DispatchOf(model));
  }

  IDispatchPtr client_;
  IDispatchPtr model_;
  const std::vector<Variant> none_{};
};

class LateSessionScene : public ClientScene {
 public:
  bool Call() override {
    CallByName(model_.get(), u"CreateUserSession", DISPATCH_METHOD, connection_);
    CallByName(model_.get(), u"CloseUserSession", DISPATCH_METHOD, none_);
    return true;
  }

 private:
  const std::vector<Variant> connection_{Variant::FromString(u"Username=joe;Password=secret;")};
};

// A list made, filled and sent.
class LateExecuteScene : public ClientScene {
 public:
  LateExecuteScene() {
    CallByName(model_.get(), u"SetUSID", DISPATCH_METHOD, {Variant::FromString(u"u1")});
    script_.resize(3);
    script_[2] = Variant::FromString(u"JavaScript");
    script_[1] = Variant::FromString(u"'done'");
  }
  bool Call() override {
    script_[0].Clear();
    CallByName(client_.get(), u"Parameters", DISPATCH_METHOD, none_, script_.data());
    CallByName(DispatchOf(script_[0]), u"Add", DISPATCH_METHOD, pair_);
    Variant result;
    CallByName(model_.get(), u"Execute", DISPATCH_METHOD, script_, &result);
    return result.Text().view() == u"done";
  }

 private:
  const std::vector<Variant> pair_{Variant::FromInt(42), Variant::FromString(u"key")};
  std::vector<Variant> script_;
};

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
  const std::string classes = R"([HKEY_LOCAL_MACHINE\SOFTWARE\Classes\)";
  const std::string id = "{01932093-F909-400b-B02E-7AEDABA33A36}";
  return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home + "\"\n\n" + classes +
         "QvScriptwells.QvScriptwells\\CLSID]\n@=\"" + id + "\"\n\n" + classes + "CLSID\\" + id +
         "\\InprocServer32]\n@=\"" SHARED_LIBRARY "\"\n";
}

}  // namespace qv::torture
