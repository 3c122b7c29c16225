// What a C++ host does with the library, flow by flow.
#include <filesystem>
#include <fstream>
#include <optional>

#include "qvscriptwells/qvscriptwells.h"
#include "torture/scene.h"

namespace qv::torture {
namespace {

WideString ServerName() {
  return FromUtf8("http://127.0.0.1:" + std::to_string(CurrentStage().port));
}

WideString OwnFile(const char* name) {
  return FromUtf8(CurrentStage().directory + "/" + name);
}

void WriteOwnFile(const char* name, const std::string& text) {
  std::ofstream(CurrentStage().directory + "/" + name) << text;
}

IQvServiceProviderPtr Provider() {
  return CreateSimpleServiceProvider(CreateSimpleHost({u"joe"}).get());
}

// A model that may open a session, or has one.
IConnectionModelPtr Model() {
  return CreateConnectionModel(ServerName(), u"", CreateSimpleHost({u"joe"}).get());
}
IConnectionModelPtr ModelWithSession() {
  IConnectionModelPtr model = Model();
  ThrowIfFailed(model->SetUSID(u"u1"));
  return model;
}

// Everything from nothing: the client, a session, a script, all released. The types of values outlive each
// client.
class LifeScene : public Scene {
 public:
  Outcome Call() override {
    if (!types_.has_value()) types_.emplace();
    const IQvServiceProviderPtr provider = Provider();
    const IQvScriptwellsPtr client = CreateQvScriptwells(server_, u"", provider.get());
    const IConnectionModelPtr model = ModelOf(client.get());
    HRESULT code = model->CreateUserSession(connection_);
    Variant result;
    if (Succeeded(code)) code = model->Execute(language_, script_, nullptr, &result);
    if (Succeeded(code)) code = model->CloseUserSession();
    return {code, result.Text().view() == u"done"};
  }

 private:
  std::optional<ValueTypesHold> types_;
  const WideString server_ = ServerName();
  const WideString connection_{u"Username=joe;Password=secret;"};
  const WideString language_{u"JavaScript"};
  const WideString script_{u"'done'"};
};

class SessionScene : public Scene {
 public:
  Outcome Call() override {
    HRESULT code = model_->CreateUserSession(connection_);
    if (Succeeded(code)) code = model_->CloseUserSession();
    return {code, true};
  }

 private:
  const IConnectionModelPtr model_ = Model();
  const WideString connection_{u"DbReplicationId=r;Username=joe;Password=secret;"};
};

// A parameter of each kind that travels.
IParametersPtr EveryKind() {
  IParametersPtr list = CreateParameters();
  const Variant values[] = {
      Variant::FromBool(true),     Variant::FromByte(1),
      Variant::FromShort(2),       Variant::FromInt(3),
      Variant::FromLong(4),        Variant::FromFloat(0.5F),
      Variant::FromDouble(0.25),   Variant::FromString(u"a<b & c"),
      Variant::FromDate(45356.25), Variant::FromObject(CreateDuration(u"P1DT2H").get())};
  for (const Variant& value : values) ThrowIfFailed(list->Add(u"key", value, nullptr));
  return list;
}

class ExecuteScene : public Scene {
 public:
  explicit ExecuteScene(const char16_t* script, IParametersPtr parameters = nullptr)
      : script_(script), parameters_(std::move(parameters)) {}

  Outcome Call() override {
    Variant result;
    const HRESULT code = model_->Execute(language_, script_, parameters_.get(), &result);
    return Succeeded(code) ? Look(result) : Outcome{code, false};
  }

 protected:
  virtual Outcome Look(const Variant& result) { return {S_OK, result.Text().view() == u"done"}; }

 private:
  const IConnectionModelPtr model_ = ModelWithSession();
  const WideString language_{u"JavaScript"};
  const WideString script_;
  const IParametersPtr parameters_;
};

class DurationScene : public ExecuteScene {
 public:
  DurationScene() : ExecuteScene(u"give a duration") {}

 protected:
  Outcome Look(const Variant& result) override {
    if (result.Tag() != VT_UNKNOWN) return {S_OK, false};
    const IDurationPtr duration = As<IDuration>(result.Object());
    std::int16_t days = 0;
    if (duration == nullptr) return {S_OK, false};
    const HRESULT code = duration->get_Day(&days);
    return {code, days == 1};
  }
};

// A server's fault keeps its code, or memory has run out.
class FaultScene : public ExecuteScene {
 public:
  FaultScene() : ExecuteScene(u"give a fault") {}
  Outcome Call() override {
    const Outcome outcome = ExecuteScene::Call();
    return outcome.code == MakeResult(0x80040005) ? Outcome{S_OK, true} : outcome;
  }

 protected:
  Outcome Look(const Variant&) override { return {S_OK, false}; }
};

class TableScene : public ExecuteScene {
 public:
  TableScene() : ExecuteScene(u"give a table") {}

 protected:
  Outcome Look(const Variant& result) override {
    if (result.Tag() != VT_UNKNOWN) return {S_OK, false};
    const IRecordListPtr table = As<IRecordList>(result.Object());
    if (table == nullptr) return {S_OK, false};
    IRecordListCursor* raw = nullptr;
    const HRESULT code = table->OpenCursor(VARIANT_TRUE, &raw);
    if (Failed(code)) return {code, false};
    return Walk(IRecordListCursorPtr(raw, false).get());
  }

 private:
  static Outcome Walk(IRecordListCursor* cursor) {
    std::int32_t sum = 0;
    VARIANT_BOOL more = VARIANT_FALSE;
    for (;;) {
      HRESULT code = cursor->HasMore(&more);
      if (Failed(code) || more == VARIANT_FALSE) return {code, sum == 5 + 6};
      IUnknown* raw = nullptr;
      code = cursor->Next(&raw);
      if (Failed(code)) return {code, false};
      const IUnknownPtr row(raw, false);
      const IRecordListRecordPtr record = As<IRecordListRecord>(row);
      Variant cell;
      code = record->GetValue(0, &cell);
      if (Failed(code)) return {code, false};
      sum += cell.Data().intVal;
    }
  }
};

IParametersPtr OneFile() {
  WriteOwnFile("sent.txt", "content");
  IParametersPtr list = CreateParameters();
  const IAttachedFilePtr file = CreateAttachedFile(OwnFile("sent.txt"));
  ThrowIfFailed(list->Add(u"doc", Variant::FromObject(file.get()), nullptr));
  return list;
}

class DocumentScene : public Scene {
 public:
  DocumentScene() {
    WriteOwnFile("script.xml",
                 "<?xml version=\"1.0\"?><Scriptwell Language=\"JavaScript\"><Code>1 &lt; 2"
                 "<![CDATA[ && 3]]></Code></Scriptwell>");
  }
  Outcome Call() override {
    Variant result;
    const HRESULT code = model_->ExecuteFile(file_, parameters_.get(), &result);
    return {code, result.Text().view() == u"done"};
  }

 private:
  const IConnectionModelPtr model_ = ModelWithSession();
  const WideString file_ = OwnFile("script.xml");
  const IParametersPtr parameters_ = CreateParameters();
};

// Names in this process's directory that are not among `expected`.
std::string OtherFiles(const std::string& expected) {
  std::string names;
  for (const auto& entry : std::filesystem::directory_iterator(CurrentStage().directory)) {
    const std::string name = entry.path().filename();
    if (expected.find(name) == std::string::npos) names += name + " ";
  }
  return names;
}

class DownloadScene : public Scene {
 public:
  Outcome Call() override {
    WideString path;
    const HRESULT code = model_->DownloadFile(url_, target_, &path);
    return {code, path.view().substr(0, target_.view().size()) == target_.view()};
  }
  std::string Litter() override { return OtherFiles("got.txt"); }

 private:
  const IConnectionModelPtr model_ = ModelWithSession();
  const WideString url_{std::u16string(ServerName().view()) + u"/file"};
  const WideString target_ = FromUtf8(CurrentStage().directory);
};

// Into a new directory of the library's own.
class FreshDownloadScene : public Scene {
 public:
  Outcome Call() override {
    WideString path;
    const HRESULT code = model_->DownloadFile(url_, WideString(), &path);
    arrived_ += Succeeded(code) ? 1 : 0;
    return {code, !path.IsEmpty()};
  }
  std::string Litter() override {
    const auto begin = std::filesystem::directory_iterator(CurrentStage().directory);
    const auto count = std::distance(begin, std::filesystem::directory_iterator());
    return count == arrived_ ? "" : std::to_string(count) + " directories for " + std::to_string(arrived_);
  }

 private:
  const IConnectionModelPtr model_ = ModelWithSession();
  const WideString url_{std::u16string(ServerName().view()) + u"/file"};
  std::ptrdiff_t arrived_ = 0;
};

// The small objects and their texts.
class ValuesScene : public Scene {
 public:
  Outcome Call() override {
    const IConnectionStringPtr connection = CreateConnectionString();
    HRESULT code = connection->put_UserName(name_);
    if (Succeeded(code)) code = connection->put_UserPassword(name_);
    WideString text;
    if (Succeeded(code)) code = connection->ToString(&text);
    if (Failed(code)) return {code, false};
    return Link();
  }

 private:
  Outcome Link() {
    const IUrlPtr url = CreateUrl();
    HRESULT code = url->put_Url(link_);
    if (Succeeded(code)) code = url->put_UrlCaption(name_);
    WideString text;
    if (Succeeded(code)) code = url->ToString(&text);
    if (Failed(code)) return {code, false};
    return List();
  }
  Outcome List() {
    const IParametersPtr list = CreateParameters();
    HRESULT code = list->Add(name_, Variant::FromString(link_), nullptr);
    if (Succeeded(code)) code = list->Add(name_, Variant::FromObject(CreateDuration(span_).get()), nullptr);
    IParameter* raw = nullptr;
    if (Succeeded(code)) code = list->Find(1, &raw);
    if (Failed(code)) return {code, false};
    const IParameterPtr parameter(raw, false);
    WideString type;
    code = parameter->get_ParamTypeAsString(&type);
    return {code, type.view() == u"duration"};
  }

  const WideString name_{u"joe"};
  const WideString link_{u"http://srv/a?b=c"};
  const WideString span_{u"P1DT2H"};
};

HRESULT CallByName(IDispatch* object, const char16_t* name, std::uint16_t flags, const Variant* arguments,
                   std::uint32_t count, Variant* result) {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = object->GetIDsOfNames(Guid{}, &name, 1, 0, &id);
  if (Failed(found)) return found;
  DISPPARAMS block;
  block.rgvarg = arguments;
  block.cArgs = count;
  EXCEPINFO failure;
  return object->Invoke(id, Guid{}, 0, flags, &block, result, &failure, nullptr);
}

// The same members by their names.
class MembersScene : public Scene {
 public:
  MembersScene() {
    add_[0] = Variant::FromInt(42);
    add_[1] = Variant::FromString(u"key");
    server_ = Variant::FromString(u"http://srv");
  }
  Outcome Call() override {
    const IQvScriptwellsPtr client = CreateQvScriptwells();
    HRESULT code = CallByName(client.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, &server_, 1, nullptr);
    Variant list;
    if (Succeeded(code)) code = CallByName(client.get(), u"Parameters", DISPATCH_METHOD, nullptr, 0, &list);
    if (Failed(code)) return {code, false};
    if (DispatchOf(list) == nullptr) return {S_OK, false};
    Variant added;
    code = CallByName(DispatchOf(list), u"Add", DISPATCH_METHOD, add_, 2, &added);
    Variant type;
    if (Succeeded(code))
      code = CallByName(DispatchOf(added), u"get_ParamTypeAsString", DISPATCH_METHOD, nullptr, 0, &type);
    return {code, type.Text().view() == u"int"};
  }

 private:
  Variant add_[2];
  Variant server_;
};

// The class that the program itself carries, by its id.
class FactoryScene : public Scene {
 public:
  Outcome Call() override {
    void* raw = nullptr;
    HRESULT code = CoCreateInstance(CLSID_QvScriptwells, nullptr, CLSCTX_ALL, IDispatch::kIid, &raw);
    if (Failed(code)) return {code, false};
    const IDispatchPtr client(static_cast<IDispatch*>(raw), false);
    WideString home;
    home = ReadRegistryValue(kHomeDirectoryKey);
    return {S_OK, client != nullptr};
  }
};

// An entry of the registry's file is replaced.
class RegistryScene : public Scene {
 public:
  RegistryScene() {
    setenv("QV_REGISTRY", (CurrentStage().directory + "/registry.reg").c_str(), 1);
    WriteRegistryValue(key_, value_);
  }
  Outcome Call() override {
    WriteRegistryValue(key_, value_);
    return {S_OK, true};
  }
  // Whatever came of the call, the file is whole.
  std::string Litter() override {
    return ReadRegistryValue(key_).view() == value_.view() ? OtherFiles("registry.reg") : "a damaged file";
  }

 private:
  const WideString key_{u"SOFTWARE\\Quorvane\\Test"};
  const WideString value_{u"text"};
};

template <class T>
std::unique_ptr<Scene> Make() {
  return std::make_unique<T>();
}

std::unique_ptr<Scene> MakeExecute() {
  return std::make_unique<ExecuteScene>(u"'done'", EveryKind());
}
std::unique_ptr<Scene> MakeUpload() {
  return std::make_unique<ExecuteScene>(u"'done'", OneFile());
}

}  // namespace

const std::vector<Flow>& Flows() {
  static const std::vector<Flow> flows = {
      {"values", Make<ValuesScene>, false},
      {"members", Make<MembersScene>, false},
      {"factory", Make<FactoryScene>, false},
      {"registry", Make<RegistryScene>, false},
      {"session", Make<SessionScene>},
      {"execute", MakeExecute},
      {"duration", Make<DurationScene>},
      {"fault", Make<FaultScene>},
      {"table", Make<TableScene>},
      {"upload", MakeUpload},
      {"download", Make<DownloadScene>, false},
      {"download-new", Make<FreshDownloadScene>, false},
      {"document", Make<DocumentScene>},
      {"life", Make<LifeScene>},
  };
  return flows;
}

std::shared_ptr<void> HoldXmlLibrary() {
  return std::make_shared<XmlLibraryHold>();
}

bool CanHoldXmlLibrary() {
  return true;
}

std::string RegistryText(const std::string& home) {
  return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home + "\"\n";
}

}  // namespace qv::torture
