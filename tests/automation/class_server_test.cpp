// The shared library as a program meets it that knows a ProgID and links the platform library alone.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "fixtures/calling_object.h"
#include "fixtures/environment.h"
#include "fixtures/loaded_files.h"
#include "fixtures/shown_text.h"
#include "fixtures/speaking_host.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/class_factory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/registry.h"

namespace qv {
namespace {

const std::string kLibrary = SHARED_LIBRARY;
const DISPPARAMS kNoArguments;

// What stands in the registry for a library at `path`.
std::string Entries(const std::string& path) {
  const std::string root = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\";
  const std::string theClass = root + "CLSID\\{01932093-F909-400b-B02E-7AEDABA33A36}";
  return root + "AppID]\n\n" +  //
         root + "AppID\\{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}]\n@=\"QuorvScriptwells\"\n\n" + root +
         "AppID\\QuorvScriptwells.DLL]\n\"AppID\"=\"{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}\"\n\n" + root +
         "QvScriptwells.QvScriptwells.1.0]\n@=\"QvScriptwells Object\"\n\n" + root +
         "QvScriptwells.QvScriptwells.1.0\\CLSID]\n@=\"{01932093-F909-400b-B02E-7AEDABA33A36}\"\n\n" + root +
         "QvScriptwells.QvScriptwells]\n@=\"QvScriptwells Object\"\n\n" + root +
         "QvScriptwells.QvScriptwells\\CLSID]\n@=\"{01932093-F909-400b-B02E-7AEDABA33A36}\"\n\n" + root +
         "QvScriptwells.QvScriptwells\\CurVer]\n@=\"QvScriptwells.QvScriptwells.1.0\"\n\n" + theClass +
         "]\n@=\"QvScriptwells Object\"\n\"AppID\"=\"{AE7949C2-44FF-4C32-8938-AB88DDA6E54C}\"\n\n" +
         theClass + "\\ProgID]\n@=\"QvScriptwells.QvScriptwells.1.0\"\n\n" + theClass +
         "\\VersionIndependentProgID]\n@=\"QvScriptwells.QvScriptwells\"\n\n" + theClass +
         "\\Programmable]\n\n" + theClass + "\\InprocServer32]\n@=\"" + path +
         "\"\n\"ThreadingModel\"=\"apartment\"\n";
}

// The library as a program holds it that registers it.
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

  void Register() { EXPECT_EQ(OpenedLibrary(kLibrary).Call("DllRegisterServer"), S_OK); }
  std::string Registry() const { return directory_.Read("classes.reg"); }
  static IDispatchPtr Create(const char16_t* progId) {
    Guid classId{};
    EXPECT_EQ(CLSIDFromProgID(progId, &classId), S_OK);
    EXPECT_TRUE(classId == CLSID_QvScriptwells);
    void* raw = nullptr;
    EXPECT_EQ(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, &raw), S_OK);
    return IDispatchPtr(static_cast<IDispatch*>(raw), false);
  }
  static HRESULT Call(IDispatch* object, const char16_t* name, std::uint16_t flags,
                      const DISPPARAMS& arguments, Variant* result, EXCEPINFO* failure) {
    DISPID id = DISPID_UNKNOWN;
    EXPECT_EQ(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id), S_OK);
    return object->Invoke(id, Guid{}, 0, flags, &arguments, result, failure, nullptr);
  }
  static HRESULT Write(IDispatch* object, const char16_t* name, const Variant& value) {
    DISPPARAMS arguments;
    arguments.rgvarg = &value;
    arguments.cArgs = 1;
    return Call(object, name, DISPATCH_PROPERTYPUT, arguments, nullptr, nullptr);
  }
  static std::string ReadText(IDispatch* object, const char16_t* name) {
    Variant result;
    EXPECT_EQ(Call(object, name, DISPATCH_PROPERTYGET, {}, &result, nullptr), S_OK);
    return Shown(result.Text());
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("classes.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("none").c_str()};
};

TEST_F(ClassServer, ExportsItsFiveEntryPointsAndNothingElse) {
  const std::string command = "nm -D --defined-only '" + kLibrary + "'";
  const std::unique_ptr<FILE, int (*)(FILE*)> lines(popen(command.c_str(), "r"), pclose);
  ASSERT_NE(lines, nullptr);
  std::string names;
  char address[64];
  char kind[8];
  char name[256];
  while (std::fscanf(lines.get(), "%63s %7s %255s", address, kind, name) == 3)
    names += std::string(kind) + " " + name + "\n";
  EXPECT_EQ(
      names,
      "T DllCanUnloadNow\nT DllGetClassObject\nT DllMain\nT DllRegisterServer\nT DllUnregisterServer\n");
}

TEST_F(ClassServer, RegistrationWritesTheseEntries) {
  Register();
  EXPECT_EQ(Registry(), Entries(kLibrary));
  Register();
  EXPECT_EQ(Registry(), Entries(kLibrary));
}

TEST_F(ClassServer, UnregistrationLeavesTheKeyOfAllApplicationsAndWhatWasThere) {
  const std::string before = "; mine\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\CLSID\\{x}]\n@=\"y\"\n";
  directory_.Write("classes.reg", before);
  Register();
  EXPECT_EQ(Registry(), before + "\n" + Entries(kLibrary));
  EXPECT_EQ(OpenedLibrary(kLibrary).Call("DllUnregisterServer"), S_OK);
  EXPECT_EQ(Registry(), before + "\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\AppID]\n");
}

TEST_F(ClassServer, MovedLibraryTakesItsNewPlace) {
  Register();
  const std::string copy = directory_.Path("moved.so.1");
  std::filesystem::copy_file(kLibrary, copy);
  EXPECT_EQ(OpenedLibrary(copy).Call("DllRegisterServer"), S_OK);
  EXPECT_EQ(Registry(), Entries(copy));
}

TEST_F(ClassServer, ObjectIsMadeByItsNameAndCalledByNames) {
  Register();
  for (const char16_t* progId : {kScriptwellsProgId, kScriptwellsVersionIndependentProgId}) {
    const IDispatchPtr client = Create(progId);
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(Write(client.get(), u"put_ServerName", Variant::FromString(u"http://srv:8080")), S_OK);
    EXPECT_EQ(ReadText(client.get(), u"servername"), "http://srv:8080");
    Variant url;
    ASSERT_EQ(Call(client.get(), u"Url", DISPATCH_METHOD, {}, &url, nullptr), S_OK);
    ASSERT_NE(DispatchOf(url), nullptr);
    EXPECT_EQ(Write(DispatchOf(url), u"UrlCaption", Variant::FromString(u"caption")), S_OK);
    EXPECT_EQ(ReadText(DispatchOf(url), u"UrlCaption"), "caption");
  }
}

TEST_F(ClassServer, FailedMemberTellsItsWordsAndTheProgId) {
  Register();
  const IDispatchPtr client = Create(kScriptwellsProgId);
  EXCEPINFO failure;
  const HRESULT code = Call(client.get(), u"ConnectionModel", DISPATCH_METHOD, {}, nullptr, &failure);
  EXPECT_LT(code, 0);
  EXPECT_EQ(failure.scode, code);
  EXPECT_EQ(Shown(failure.bstrSource), "QvScriptwells.QvScriptwells.1.0");
  EXPECT_FALSE(failure.bstrDescription.IsEmpty());
}

TEST_F(ClassServer, RecordsOfTheLibraryWaitInTheProgram) {
  Register();
  const IDispatchPtr client = Create(kScriptwellsProgId);
  EXPECT_LT(Call(client.get(), u"ConnectionModel", DISPATCH_METHOD, {}, nullptr, nullptr), 0);
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(Shown(info.source), "QvScriptwells.QvScriptwells.1.0");
}

TEST_F(ClassServer, RecordsOfTheProgramAreClearedByTheLibrary) {
  Register();
  const IDispatchPtr client = Create(kScriptwellsProgId);
  ErrorInfo stale;
  stale.description = u"stale words";
  SetErrorInfo(stale);
  EXPECT_EQ(Write(client.get(), u"Proxy", Variant::FromString(u"p:1")), S_OK);
  EXPECT_FALSE(GetErrorInfo(&stale));
}

TEST_F(ClassServer, LibraryLeavesTheMemoryWithItsLastObject) {
  Register();
  for (int round = 0; round < 3; ++round) {
    EXPECT_FALSE(IsMapped(kLibrary));
    IDispatchPtr client = Create(kScriptwellsProgId);
    EXCEPINFO failure;
    EXPECT_LT(Call(client.get(), u"ConnectionModel", DISPATCH_METHOD, {}, nullptr, &failure), 0);
    Variant url;
    ASSERT_EQ(Call(client.get(), u"Url", DISPATCH_METHOD, {}, &url, nullptr), S_OK);
    client.reset();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsMapped(kLibrary));
    EXPECT_EQ(ReadText(DispatchOf(url), u"UrlCaption"), "<null>");
    url = Variant();
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsMapped(kLibrary));
  }
}

TEST_F(ClassServer, LockKeepsTheLibrary) {
  Register();
  void* raw = nullptr;
  ASSERT_EQ(CoGetClassObject(CLSID_QvScriptwells, CLSCTX_ALL, IClassFactory::kIid, &raw), S_OK);
  auto* const factory = static_cast<IClassFactory*>(raw);
  EXPECT_EQ(factory->LockServer(true), S_OK);
  factory->Release();
  CoFreeUnusedLibraries();
  ASSERT_TRUE(IsMapped(kLibrary));
  EXPECT_EQ(factory->LockServer(false), S_OK);
  CoFreeUnusedLibraries();
  EXPECT_FALSE(IsMapped(kLibrary));
}

// The words of a session that cannot be opened, since nothing listens there.
std::string WordsWithoutServer(IDispatch* client, HRESULT (*call)(IDispatch* model, EXCEPINFO* failure)) {
  HostLog log;
  const SpeakingServicesPtr services(new SpeakingServices(&log));
  services->Answer("GetUsid", Nulls());
  const IUnknownPtr provider(new SpeakingProvider(&log, services->Unknown()));
  const Variant argument = Variant::FromObject(provider.get());
  DISPPARAMS arguments;
  arguments.rgvarg = &argument;
  arguments.cArgs = 1;
  void* raw = nullptr;
  EXPECT_EQ(client->QueryInterface(IQvClientServiceRaw::kIid, &raw), S_OK);
  const IQvClientServiceRawPtr receiver(static_cast<IQvClientServiceRaw*>(raw), false);
  EXPECT_EQ(receiver->Invoke(1, Guid{}, 0, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr), S_OK);
  Variant model;
  EXPECT_EQ(client->Invoke(1, Guid{}, 0, DISPATCH_METHOD, &kNoArguments, &model, nullptr, nullptr), S_OK);
  EXCEPINFO failure;
  EXPECT_LT(call(DispatchOf(model), &failure), 0);
  return Shown(failure.bstrDescription);
}

HRESULT OpenSession(IDispatch* model, EXCEPINFO* failure) {
  const Variant connection = Variant::FromString(u"user");
  DISPPARAMS arguments;
  arguments.rgvarg = &connection;
  arguments.cArgs = 1;
  return model->Invoke(1, Guid{}, 0, DISPATCH_METHOD, &arguments, nullptr, failure, nullptr);
}

TEST_F(ClassServer, ComponentsOfTheProgramServeTheLibrary) {
  Register();
  const IDispatchPtr client = Create(kScriptwellsProgId);
  ASSERT_EQ(Write(client.get(), u"ServerName", Variant::FromString(u"http://127.0.0.1:1")), S_OK);
  componentsWanted = 0;
  RegisterClassCreator(CLSID_HttpComponent, RefuseComponent);
  EXPECT_NE(WordsWithoutServer(client.get(), OpenSession), "<null>");
  RegisterClassCreator(CLSID_HttpComponent, nullptr);
  EXPECT_EQ(componentsWanted, 1);
}

TEST_F(ClassServer, LibraryThatMadeRequestsLeavesWithTheThread) {
  Register();
  for (int round = 0; round < 2; ++round) {
    std::thread([] {
      const IDispatchPtr client = Create(kScriptwellsProgId);
      ASSERT_EQ(Write(client.get(), u"ServerName", Variant::FromString(u"http://127.0.0.1:1")), S_OK);
      EXPECT_NE(WordsWithoutServer(client.get(), OpenSession), "<null>");
    }).join();
    EXPECT_TRUE(IsMapped(kLibrary));
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsMapped(kLibrary));
  }
}

// Hosts that tidy up when their own object goes: the object of the library that held it is still running.
Variant ObjectThatFreesLibraries() {
  auto* const object = new CallingObject;
  object->OnEnd([] { CoFreeUnusedLibraries(); });
  return Variant::FromObject(object);
}

// Late-bound, with the arguments in the host's order.
Variant CallWith(IDispatch* object, const char16_t* name, std::vector<Variant> given) {
  std::reverse(given.begin(), given.end());
  DISPPARAMS arguments;
  arguments.rgvarg = given.data();
  arguments.cArgs = static_cast<std::uint32_t>(given.size());
  DISPID id = DISPID_UNKNOWN;
  EXPECT_EQ(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id), S_OK);
  Variant result;
  EXPECT_EQ(object->Invoke(id, Guid{}, 0, DISPATCH_METHOD, &arguments, &result, nullptr, nullptr), S_OK);
  return result;
}

TEST_F(ClassServer, ListOutlivesItsValuesThatFreeLibraries) {
  Register();
  IDispatchPtr client = Create(kScriptwellsProgId);
  Variant list = CallWith(client.get(), u"Parameters", {});
  CallWith(DispatchOf(list), u"Add", {Variant::FromString(u"k"), ObjectThatFreesLibraries()});
  client.reset();
  list.Clear();
  EXPECT_EQ(CallingObject::Live(), 0);
  CoFreeUnusedLibraries();
  EXPECT_FALSE(IsMapped(kLibrary));
}

TEST_F(ClassServer, ParameterOutlivesItsValueThatFreesLibraries) {
  Register();
  IDispatchPtr client = Create(kScriptwellsProgId);
  Variant list = CallWith(client.get(), u"Parameters", {});
  Variant parameter =
      CallWith(DispatchOf(list), u"Add", {Variant::FromString(u"k"), ObjectThatFreesLibraries()});
  client.reset();
  list.Clear();
  parameter.Clear();
  EXPECT_EQ(CallingObject::Live(), 0);
  CoFreeUnusedLibraries();
  EXPECT_FALSE(IsMapped(kLibrary));
}

// The last thing that the library does in these calls is to let the host's object go, and its own with it.
TEST_F(ClassServer, CallOutlivesTheObjectThatItReleases) {
  Register();
  IDispatchPtr client = Create(kScriptwellsProgId);
  Variant list = CallWith(client.get(), u"Parameters", {});
  client.reset();
  auto* const object = new CallingObject;
  object->OnEnd([&list] {
    list.Clear();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsMapped(kLibrary));
  });
  CallWith(DispatchOf(list), u"Add", {Variant::FromString(u"k"), Variant::FromObject(object)});
  CallWith(DispatchOf(list), u"Clear", {});
  EXPECT_EQ(CallingObject::Live(), 0);
  CoFreeUnusedLibraries();
  EXPECT_FALSE(IsMapped(kLibrary));
}

void Init(IDispatch* client, IUnknown* services, HostLog* log) {
  const IUnknownPtr provider(new SpeakingProvider(log, services));
  void* raw = nullptr;
  ASSERT_EQ(client->QueryInterface(IQvClientServiceRaw::kIid, &raw), S_OK);
  const IQvClientServiceRawPtr receiver(static_cast<IQvClientServiceRaw*>(raw), false);
  CallWith(receiver.get(), u"Init", {Variant::FromObject(provider.get())});
}

TEST_F(ClassServer, ClientOutlivesServicesThatFreeLibraries) {
  Register();
  HostLog log;
  IDispatchPtr client = Create(kScriptwellsProgId);
  auto* const services = new SpeakingServices(&log);
  services->OnEnd(&CoFreeUnusedLibraries);
  Init(client.get(), services->Unknown(), &log);
  client.reset();
  EXPECT_EQ(SpeakingServices::Live(), 0);
  CoFreeUnusedLibraries();
  EXPECT_FALSE(IsMapped(kLibrary));
}

TEST_F(ClassServer, ModelOutlivesServicesThatFreeLibraries) {
  Register();
  HostLog log;
  IDispatchPtr client = Create(kScriptwellsProgId);
  ASSERT_EQ(Write(client.get(), u"ServerName", Variant::FromString(u"http://127.0.0.1:1")), S_OK);
  auto* const services = new SpeakingServices(&log);
  services->OnEnd(&CoFreeUnusedLibraries);
  Init(client.get(), services->Unknown(), &log);
  Variant model = CallWith(client.get(), u"ConnectionModel", {});
  client.reset();
  EXPECT_EQ(SpeakingServices::Live(), 1);
  model.Clear();
  EXPECT_EQ(SpeakingServices::Live(), 0);
  CoFreeUnusedLibraries();
  EXPECT_FALSE(IsMapped(kLibrary));
}

// What the thread keeps for its next request is the library's, which thus stays for it, and works again. A
// thread of its own, so that the library is free to leave in the tests after this one.
TEST_F(ClassServer, LibraryThatMadeRequestsOnThisThreadCanBeUsedAgain) {
  Register();
  std::thread([] {
    for (int round = 0; round < 2; ++round) {
      const IDispatchPtr client = Create(kScriptwellsProgId);
      ASSERT_EQ(Write(client.get(), u"ServerName", Variant::FromString(u"http://127.0.0.1:1")), S_OK);
      EXPECT_NE(WordsWithoutServer(client.get(), OpenSession), "<null>");
      CoFreeUnusedLibraries();
    }
  }).join();
}

// At exit globals go in the reverse order of their making, the library's among them.
TEST_F(ClassServer, ObjectInAGlobalOutlivesMainOnEitherSideOfTheLibrary) {
  Register();
  const auto exitWithGlobals = [] {
    static IDispatchPtr olderThanTheLibrary;
    olderThanTheLibrary = Create(kScriptwellsProgId);
    static IDispatchPtr younger = Create(kScriptwellsProgId);
    std::exit(younger != nullptr && IsMapped(kLibrary) ? 0 : 1);
  };
  EXPECT_EXIT(exitWithGlobals(), testing::ExitedWithCode(0), "");
}

TEST_F(ClassServer, UnregisteredClassCannotBeMade) {
  Guid classId{};
  EXPECT_EQ(CLSIDFromProgID(kScriptwellsProgId, &classId), CO_E_CLASSSTRING);
  void* raw = nullptr;
  EXPECT_EQ(CoCreateInstance(CLSID_QvScriptwells, nullptr, CLSCTX_ALL, IDispatch::kIid, &raw),
            REGDB_E_CLASSNOTREG);
}

}  // namespace
}  // namespace qv
