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
  bool Call() override {
    if (!types_.has_value()) types_.emplace();
    const IQvServiceProviderPtr provider = Provider();
    const IQvScriptwellsPtr client = CreateQvScriptwells(server_, u"", provider.get());
    const IConnectionModelPtr model = ModelOf(client.get());
    ThrowIfFailed(model->CreateUserSession(connection_));
    Variant result;
    ThrowIfFailed(model->Execute(language_, script_, nullptr, &result));
    ThrowIfFailed(model->CloseUserSession());
    return result.Text().view() == u"done";
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
  bool Call() override {
    ThrowIfFailed(model_->CreateUserSession(connection_));
    ThrowIfFailed(model_->CloseUserSession());
    return true;
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

  bool Call() override {
    Variant result;
    ThrowIfFailed(model_->Execute(language_, script_, parameters_.get(), &result));
    return IsRight(result);
  }

 protected:
  virtual bool IsRight(const Variant& result) { return result.Text().view() == u"done"; }

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
  bool IsRight(const Variant& result) override {
    const IDurationPtr duration = As<IDuration>(result.Object());
    std::int16_t days = 0;
    if (duration != nullptr) ThrowIfFailed(duration->get_Day(&days));
    return days == 1;
  }
};

// A server's fault keeps its code, or memory has run out.
class FaultScene : public ExecuteScene {
 public:
  FaultScene() : ExecuteScene(u"give a fault") {}
  bool Call() override {
    try {
      ExecuteScene::Call();
      return false;
    } catch (const _com_error& error) {
      if (error.Error() != MakeResult(0x80040005)) throw;
      return true;
    }
  }
};

class TableScene : public ExecuteScene {
 public:
  TableScene() : ExecuteScene(u"give a table") {}

 protected:
  bool IsRight(const Variant& result) override {
    const IRecordListPtr table = As<IRecordList>(result.Object());
    if (table == nullptr) return false;
    IRecordListCursorPtr cursor;
    ThrowIfFailed(table->OpenCursor(VARIANT_TRUE, Put(cursor)));
    std::int32_t sum = 0;
    for (VARIANT_BOOL more = VARIANT_FALSE;;) {
      ThrowIfFailed(cursor->HasMore(&more));
      if (more == VARIANT_FALSE) return sum == 5 + 6;
      IUnknownPtr row;
      ThrowIfFailed(cursor->Next(Put(row)));
      Variant cell;
      ThrowIfFailed(As<IRecordListRecord>(row)->GetValue(0, &cell));
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
  bool Call() override {
    Variant result;
    ThrowIfFailed(model_->ExecuteFile(file_, parameters_.get(), &result));
    return result.Text().view() == u"done";
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
  bool Call() override {
    WideString path;
    ThrowIfFailed(model_->DownloadFile(url_, target_, &path));
    return path.view().substr(0, target_.view().size()) == target_.view();
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
  bool Call() override {
    WideString path;
    ThrowIfFailed(model_->DownloadFile(url_, WideString(), &path));
    ++arrived_;
    return !path.IsEmpty();
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
  bool Call() override {
    WideString text;
    const IConnectionStringPtr connection = CreateConnectionString();
    ThrowIfFailed(connection->put_UserName(name_));
    ThrowIfFailed(connection->put_UserPassword(name_));
    ThrowIfFailed(connection->ToString(&text));
    const IUrlPtr url = CreateUrl();
    ThrowIfFailed(url->put_Url(link_));
    ThrowIfFailed(url->put_UrlCaption(name_));
    ThrowIfFailed(url->ToString(&text));
    const IParametersPtr list = CreateParameters();
    ThrowIfFailed(list->Add(name_, Variant::FromString(link_), nullptr));
    ThrowIfFailed(list->Add(name_, Variant::FromObject(CreateDuration(span_).get()), nullptr));
    IParameterPtr parameter;
    ThrowIfFailed(list->Find(1, Put(parameter)));
    WideString type;
    ThrowIfFailed(parameter->get_ParamTypeAsString(&type));
    return type.view() == u"duration";
  }

 private:
  const WideString name_{u"joe"};
  const WideString link_{u"http://srv/a?b=c"};
  const WideString span_{u"P1DT2H"};
};

// The same members by their names.
class MembersScene : public Scene {
 public:
  bool Call() override {
    const IQvScriptwellsPtr client = CreateQvScriptwells();
    Variant list;
    Variant added;
    Variant type;
    EXCEPINFO failure;
    CallByName(client.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, server_, nullptr, &failure);
    CallByName(client.get(), u"Parameters", DISPATCH_METHOD, none_, &list, &failure);
    if (DispatchOf(list) == nullptr) return false;
    CallByName(DispatchOf(list), u"Add", DISPATCH_METHOD, add_, &added, &failure);
    CallByName(DispatchOf(added), u"get_ParamTypeAsString", DISPATCH_METHOD, none_, &type, &failure);
    return type.Text().view() == u"int";
  }

 private:
  const std::vector<Variant> add_{Variant::FromInt(42), Variant::FromString(u"key")};
  const std::vector<Variant> server_{Variant::FromString(u"http://srv")};
  const std::vector<Variant> none_{};
};

// The class that the program itself carries, by its id.
class FactoryScene : public Scene {
 public:
  bool Call() override {
    IDispatchPtr client;
    ThrowIfFailed(CoCreateInstance(CLSID_QvScriptwells, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(client)));
    ReadRegistryValue(kHomeDirectoryKey);
    return client != nullptr;
  }
};

// An entry of the registry's file is replaced.
class RegistryScene : public Scene {
 public:
  RegistryScene() {
    setenv("QV_REGISTRY", (CurrentStage().directory + "/registry.reg").c_str(), 1);
    WriteRegistryValue(key_, value_);
  }
  bool Call() override {
    WriteRegistryValue(key_, value_);
    return true;
  }
  // Whatever came of the call, the file is whole.
  std::string Litter() override {
    return ReadRegistryValue(key_).view() == value_.view() ? OtherFiles("registry.reg") : "a damaged file";
  }

 private:
  const WideString key_{u"SOFTWARE\\Quorvane\\Test"};
  const WideString value_{u"text"};
};

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
