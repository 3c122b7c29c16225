// The shared library, used by a program that knows a ProgID and links only the platform library.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <xercesc/util/PlatformUtils.hpp>

#include "automation/late_call.h"
#include "fixtures/calling_object.h"
#include "fixtures/environment.h"
#include "fixtures/loaded_files.h"
#include "fixtures/output_of.h"
#include "fixtures/speaking_host.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/class_factory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/registry.h"

namespace qv {
namespace {

const std::string kLibrary = SHARED_LIBRARY;

// The entries of the registry for a library at `path`.
std::string Entries(const std::string& path) {
  const struct {
    const char* key;
    std::string values;
  } sections[] = {
      {"AppID", ""},
      {"AppID\\{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}", "@=\"QuorvScriptwells\"\n"},
      {"AppID\\QuorvScriptwells.DLL", "\"AppID\"=\"{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}\"\n"},
      {"QvScriptwells.QvScriptwells.1.0", "@=\"QvScriptwells Object\"\n"},
      {"QvScriptwells.QvScriptwells.1.0\\CLSID", "@=\"{01932093-F909-400b-B02E-7AEDABA33A36}\"\n"},
      {"QvScriptwells.QvScriptwells", "@=\"QvScriptwells Object\"\n"},
      {"QvScriptwells.QvScriptwells\\CLSID", "@=\"{01932093-F909-400b-B02E-7AEDABA33A36}\"\n"},
      {"QvScriptwells.QvScriptwells\\CurVer", "@=\"QvScriptwells.QvScriptwells.1.0\"\n"},
      {"CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}",
       "@=\"QvScriptwells Object\"\n\"AppID\"=\"{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}\"\n"},
      {"CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}\\ProgID", "@=\"QvScriptwells.QvScriptwells.1.0\"\n"},
      {"CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}\\VersionIndependentProgID",
       "@=\"QvScriptwells.QvScriptwells\"\n"},
      {"CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}\\Programmable", ""},
      {"CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}\\InprocServer32",
       "@=\"" + path + "\"\n\"ThreadingModel\"=\"apartment\"\n"},
  };
  std::string text;
  for (const auto& [key, values] : sections)
    text += (text.empty() ? "" : "\n") + (R"([HKEY_LOCAL_MACHINE\SOFTWARE\Classes\)" + std::string(key)) +
            "]\n" + values;
  return text;
}

// Opens the library like a program that registers it.
class OpenedLibrary {
 public:
  explicit OpenedLibrary(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  OpenedLibrary(const OpenedLibrary&) = delete;
  OpenedLibrary& operator=(const OpenedLibrary&) = delete;
  ~OpenedLibrary() { dlclose(handle_); }
  HRESULT Call(const char* name) const { return reinterpret_cast<HRESULT (*)()>(dlsym(handle_, name))(); }

 private:
  void* handle_;
};

int componentsWanted = 0;

HRESULT RefuseComponent(const Guid&, void**) {
  ++componentsWanted;
  return E_ACCESSDENIED;
}

class ClassServer : public testing::Test {
 protected:
  ClassServer() { ClearErrorInfo(); }
  ~ClassServer() override { CoFreeUnusedLibraries(); }
  void SetUp() override { EXPECT_EQ(OpenedLibrary(kLibrary).Call("DllRegisterServer"), S_OK); }

  std::string Registry() const { return directory_.Read("classes.reg"); }
  static IDispatchPtr Create(const char16_t* progId = kScriptwellsProgId) {
    Guid classId{};
    EXPECT_EQ(CLSIDFromProgID(progId, &classId), S_OK);
    EXPECT_TRUE(classId == CLSID_QvScriptwells);
    IDispatchPtr object;
    EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(object)), S_OK);
    return object;
  }
  // A client for a server that does not exist.
  static IDispatchPtr CreateWithServer() {
    IDispatchPtr client = Create();
    EXPECT_EQ(WriteByName(client.get(), u"ServerName", Text(u"http://127.0.0.1:1")), "VT_EMPTY");
    return client;
  }
  // The result of a method that succeeds.
  static Variant Result(IDispatch* object, const char16_t* name, const std::vector<Variant>& arguments = {}) {
    LateCall call(object, IdOf(object, name));
    EXPECT_EQ(call.With(arguments).Run(), S_OK);
    return call.result;
  }
  static void Init(IDispatch* client, IUnknown* services, HostLog* log) {
    const IUnknownPtr provider(new SpeakingProvider(log, services));
    const auto receiver = As<IQvClientServiceRaw>(client);
    EXPECT_EQ(CallByName(receiver.get(), u"Init", {Variant::FromObject(provider.get())}), "VT_EMPTY");
  }
  // The library is unloaded when it is unused.
  static void ExpectUnloaded() {
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsMapped(kLibrary));
  }

  // Adds to the entries of the library.
  void AskForXmlHold(const std::string& value) const {
    directory_.Write("classes.reg", Registry() +
                                        "\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\XmlLibrary\\"
                                        "HoldWhileLoaded]\n@=\"" +
                                        value + "\"\n");
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("classes.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("none").c_str()};
};

class UnregisteredClassServer : public ClassServer {
 protected:
  void SetUp() override {}
};

TEST_F(ClassServer, ExportsItsFiveEntryPointsAndNothingElse) {
  std::istringstream lines(OutputOf("nm -D --defined-only '" + kLibrary + "'").text);
  std::string names;
  std::string address;
  std::string kind;
  std::string name;
  while (lines >> address >> kind >> name) names.append(kind).append(" ").append(name).append("\n");
  EXPECT_EQ(
      names,
      "T DllCanUnloadNow\nT DllGetClassObject\nT DllMain\nT DllRegisterServer\nT DllUnregisterServer\n");
}

TEST_F(ClassServer, RegistrationWritesTheseEntries) {
  EXPECT_EQ(Registry(), Entries(kLibrary));
  EXPECT_EQ(OpenedLibrary(kLibrary).Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(Registry(), Entries(kLibrary));
}

TEST_F(ClassServer, UnregistrationKeepsTheKeyOfAllApplicationsAndOtherKeys) {
  const std::string before = "; mine\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\CLSID\\{x}]\n@=\"y\"\n";
  directory_.Write("classes.reg", before);
  EXPECT_EQ(OpenedLibrary(kLibrary).Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(Registry(), before + "\n" + Entries(kLibrary));
  EXPECT_EQ(OpenedLibrary(kLibrary).Call("DllUnregisterServer"), S_OK);
  EXPECT_EQ(Registry(), before + "\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\AppID]\n");
}

TEST_F(ClassServer, MovedLibraryIsRegisteredAgain) {
  const std::string copy = directory_.Path("moved.so.1");
  std::filesystem::copy_file(kLibrary, copy);
  EXPECT_EQ(OpenedLibrary(copy).Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(Registry(), Entries(copy));
}

TEST_F(ClassServer, ObjectIsMadeByItsNameAndCalledByNames) {
  for (const char16_t* progId : {kScriptwellsProgId, kScriptwellsVersionIndependentProgId}) {
    const IDispatchPtr client = Create(progId);
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(WriteByName(client.get(), u"put_ServerName", Text(u"http://srv:8080")), "VT_EMPTY");
    EXPECT_EQ(ReadByName(client.get(), u"servername"), "VT_BSTR http://srv:8080");
    const Variant url = Result(client.get(), u"Url");
    ASSERT_NE(DispatchOf(url), nullptr);
    EXPECT_EQ(WriteByName(DispatchOf(url), u"UrlCaption", Text(u"caption")), "VT_EMPTY");
    EXPECT_EQ(ReadByName(DispatchOf(url), u"UrlCaption"), "VT_BSTR caption");
  }
}

TEST_F(ClassServer, FailedMemberBringsItsMessageAndTheProgId) {
  const IDispatchPtr client = Create();
  LateCall call(client.get(), IdOf(client.get(), u"ConnectionModel"));
  const HRESULT code = call.Run();
  EXPECT_LT(code, 0);
  EXPECT_EQ(call.failure.scode, code);
  EXPECT_EQ(Shown(call.failure.bstrSource), "QvScriptwells.QvScriptwells.1.0");
  EXPECT_FALSE(call.failure.bstrDescription.IsEmpty());
}

TEST_F(ClassServer, RecordsOfTheLibraryWaitInTheProgram) {
  const IDispatchPtr client = Create();
  LateCall call(client.get(), IdOf(client.get(), u"ConnectionModel"));
  EXPECT_LT(call.Run(nullptr, nullptr, nullptr), 0);
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(Shown(info.source), "QvScriptwells.QvScriptwells.1.0");
}

TEST_F(ClassServer, RecordsOfTheProgramAreClearedByTheLibrary) {
  const IDispatchPtr client = Create();
  LeaveStaleRecord();
  EXPECT_EQ(WriteByName(client.get(), u"Proxy", Text(u"p:1")), "VT_EMPTY");
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(ClassServer, LibraryLeavesTheMemoryWithItsLastObject) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_FALSE(IsMapped(kLibrary));
    IDispatchPtr client = Create();
    LateCall failing(client.get(), IdOf(client.get(), u"ConnectionModel"));
    EXPECT_LT(failing.Run(), 0);
    Variant url = Result(client.get(), u"Url");
    client.reset();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsMapped(kLibrary));
    EXPECT_EQ(ReadByName(DispatchOf(url), u"UrlCaption"), "VT_BSTR <null>");
    url = Variant();
    ExpectUnloaded();
  }
}

// The XML library has a memory manager while it is started.
bool IsXmlLibraryStarted() {
  return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

TEST_F(ClassServer, KeepsTheXmlLibraryStartedWhereTheRegistryAsksForIt) {
  AskForXmlHold("1");
  for (int round = 0; round < 2; ++round) {
    IDispatchPtr client = Create();
    EXPECT_TRUE(IsXmlLibraryStarted());
    client.reset();
    EXPECT_TRUE(IsXmlLibraryStarted());
    ExpectUnloaded();  // the hold does not keep the library
    EXPECT_FALSE(IsXmlLibraryStarted());
  }
}

TEST_F(ClassServer, StartsTheXmlLibraryForEachCallWhereTheRegistryDoesNotAsk) {
  for (const char* value : {"", "0", "yes", "1 "}) {
    if (*value != 0) AskForXmlHold(value);
    IDispatchPtr client = Create();
    EXPECT_FALSE(IsXmlLibraryStarted()) << value;
    client.reset();
    ExpectUnloaded();
  }
}

TEST_F(ClassServer, LockKeepsTheLibrary) {
  IClassFactoryPtr held;
  ASSERT_EQ(CoGetClassObject(CLSID_QvScriptwells, CLSCTX_ALL, IClassFactory::kIid, Put(held)), S_OK);
  IClassFactory* const factory = held.get();
  EXPECT_EQ(factory->LockServer(true), S_OK);
  held.reset();
  CoFreeUnusedLibraries();
  ASSERT_TRUE(IsMapped(kLibrary));
  EXPECT_EQ(factory->LockServer(false), S_OK);
  ExpectUnloaded();
}

// Opens a session with a server that does not exist; there is a message.
void ExpectNoSession(IDispatch* client, void (*init)(IDispatch*, IUnknown*, HostLog*)) {
  HostLog log;
  const SpeakingServicesPtr services(new SpeakingServices(&log));
  services->Answer("GetUsid", Nulls());
  init(client, services->Unknown(), &log);
  LateCall model(client, IdOf(client, u"ConnectionModel"));
  EXPECT_EQ(model.Run(), S_OK);
  LateCall open(DispatchOf(model.result), 1);
  EXPECT_LT(open.With({Text(u"user")}).Run(), 0);
  EXPECT_NE(Shown(open.failure.bstrDescription), "<null>");
}

TEST_F(ClassServer, ComponentsOfTheProgramServeTheLibrary) {
  const IDispatchPtr client = CreateWithServer();
  componentsWanted = 0;
  RegisterClassCreator(CLSID_HttpComponent, RefuseComponent);
  ExpectNoSession(client.get(), Init);
  RegisterClassCreator(CLSID_HttpComponent, nullptr);
  EXPECT_EQ(componentsWanted, 1);
}

TEST_F(ClassServer, LibraryThatMadeRequestsLeavesWithTheThread) {
  for (int round = 0; round < 2; ++round) {
    std::thread([] { ExpectNoSession(CreateWithServer().get(), Init); }).join();
    EXPECT_TRUE(IsMapped(kLibrary));
    ExpectUnloaded();
  }
}

// A thread keeps the library's connections for its next request, so the library stays loaded. In a new
// thread, so that later tests can unload the library.
TEST_F(ClassServer, LibraryThatMadeRequestsOnThisThreadCanBeUsedAgain) {
  std::thread([] {
    for (int round = 0; round < 2; ++round) {
      ExpectNoSession(CreateWithServer().get(), Init);
      CoFreeUnusedLibraries();
    }
  }).join();
}

// Hosts that unload the library when their own object is destroyed: the library's object that held it is
// still running.

class ClassServerReentry : public ClassServer {
 protected:
  void TearDown() override {
    EXPECT_EQ(CallingObject::Live(), 0);
    EXPECT_EQ(SpeakingServices::Live(), 0);
    ExpectUnloaded();
  }
  // Fills the list with an object that runs `onEnd`; returns the parameter.
  Variant Add(const CallingObject::Call& onEnd) {
    auto* const object = new CallingObject;
    object->OnEnd(onEnd);
    return Result(DispatchOf(list_), u"Add", {Text(u"k"), Variant::FromObject(object)});
  }
  void MakeList() { list_ = Result(Create().get(), u"Parameters"); }
  IUnknown* ServicesThatFreeLibraries() {
    auto* const services = new SpeakingServices(&log_);
    services->OnEnd(&CoFreeUnusedLibraries);
    return services->Unknown();
  }

  HostLog log_;
  Variant list_;
};

TEST_F(ClassServerReentry, ListOutlivesItsValuesThatFreeLibraries) {
  MakeList();
  Add(&CoFreeUnusedLibraries);
  list_.Clear();
}

TEST_F(ClassServerReentry, ParameterOutlivesItsValueThatFreesLibraries) {
  MakeList();
  Variant parameter = Add(&CoFreeUnusedLibraries);
  list_.Clear();
  parameter.Clear();
}

// In these calls the library finally releases the host's object, and so its own.
TEST_F(ClassServerReentry, CallOutlivesTheObjectThatItReleases) {
  MakeList();
  Add([this] {
    list_.Clear();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsMapped(kLibrary));
  });
  EXPECT_EQ(CallByName(DispatchOf(list_), u"Clear"), "VT_EMPTY");
}

TEST_F(ClassServerReentry, ClientOutlivesServicesThatFreeLibraries) {
  Init(Create().get(), ServicesThatFreeLibraries(), &log_);
}

TEST_F(ClassServerReentry, ModelOutlivesServicesThatFreeLibraries) {
  IDispatchPtr client = CreateWithServer();
  Init(client.get(), ServicesThatFreeLibraries(), &log_);
  Variant model = Result(client.get(), u"ConnectionModel");
  client.reset();
  EXPECT_EQ(SpeakingServices::Live(), 1);
  model.Clear();
}

// At exit globals are destroyed in reverse order of construction, including the library's.
TEST_F(ClassServer, ObjectInAGlobalOutlivesMainOnEitherSideOfTheLibrary) {
  const auto exitWithGlobals = [] {
    static IDispatchPtr olderThanTheLibrary;
    olderThanTheLibrary = Create();
    static IDispatchPtr younger = Create();
    std::exit(younger != nullptr && IsMapped(kLibrary) ? 0 : 1);
  };
  EXPECT_EXIT(exitWithGlobals(), testing::ExitedWithCode(0), "");
}

TEST_F(UnregisteredClassServer, HasNoClassToCreate) {
  Guid classId{};
  EXPECT_EQ(CLSIDFromProgID(kScriptwellsProgId, &classId), CO_E_CLASSSTRING);
  IDispatchPtr object;
  EXPECT_EQ(CoCreateInstance(CLSID_QvScriptwells, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(object)),
            REGDB_E_CLASSNOTREG);
}

}  // namespace
}  // namespace qv
