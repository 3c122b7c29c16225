// Threads of a late-bound program, each with its sessions through the shared library, which is unloaded when
// they have ended, and loaded again.
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "fixtures/environment.h"
#include "fixtures/loaded_files.h"
#include "fixtures/raw_server.h"
#include "fixtures/temporary_directory.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/objects.h"
#include "qvscriptwells/simple_host.h"
#include "threads/session_script.h"

namespace qv {
namespace {

constexpr int kThreads = 4;
constexpr int kSessions = 3;  // of each thread

const std::string kLibrary = SHARED_LIBRARY;

Variant Call(IDispatch* object, const char16_t* name, std::uint16_t flags, std::vector<Variant> given) {
  std::reverse(given.begin(), given.end());
  DISPPARAMS arguments;
  arguments.rgvarg = given.data();
  arguments.cArgs = static_cast<std::uint32_t>(given.size());
  DISPID id = DISPID_UNKNOWN;
  ThrowIfFailed(object->GetIDsOfNames(Guid{}, &name, 1, 0, &id));
  Variant result;
  ThrowIfFailed(object->Invoke(id, Guid{}, 0, flags, &arguments, &result, nullptr, nullptr));
  return result;
}

IDispatchPtr NewClient() {
  Guid classId{};
  ThrowIfFailed(CLSIDFromProgID(u"QvScriptwells.QvScriptwells", &classId));
  IDispatchPtr client;
  ThrowIfFailed(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IDispatch::kIid, Put(client)));
  return client;
}

void Init(IDispatch* client) {
  const auto provider = CreateSimpleServiceProvider(CreateSimpleHost({u"joe"}).get());
  IQvClientServiceRawPtr receiver;
  ThrowIfFailed(client->QueryInterface(IQvClientServiceRaw::kIid, Put(receiver)));
  Call(receiver.get(), u"Init", DISPATCH_METHOD, {Variant::FromObject(provider.get())});
}

void RunSession(const WideString& server) {
  const IDispatchPtr client = NewClient();
  Init(client.get());
  Call(client.get(), u"put_ServerName", DISPATCH_PROPERTYPUT, {Variant::FromString(server)});
  const Variant model = Call(client.get(), u"ConnectionModel", DISPATCH_METHOD, {});
  const Variant list = Call(client.get(), u"Parameters", DISPATCH_METHOD, {});
  IDispatch* const object = DispatchOf(model);
  Call(object, u"CreateUserSession", DISPATCH_METHOD, {Variant::FromString(u"Username=joe;")});
  Call(object, u"Execute", DISPATCH_METHOD, {Variant::FromString(u"J"), Variant::FromString(u"1"), list});
  Call(object, u"CloseUserSession", DISPATCH_METHOD, {});
}

std::string RunSessions(const WideString& server) {
  try {
    for (int i = 0; i < kSessions; ++i) RunSession(server);
    return "ok";
  } catch (const _com_error& error) {
    return "_com_error " + ToUtf8(error.Description());
  }
}

void Register() {
  void* const library = dlopen(kLibrary.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  EXPECT_EQ(reinterpret_cast<HRESULT (*)()>(dlsym(library, "DllRegisterServer"))(), S_OK);
  dlclose(library);
}

TEST(LibraryOnThreads, IsLoadedUsedAndUnloadedRoundAfterRound) {
  const TemporaryDirectory directory;
  const EnvironmentVariable named("QV_REGISTRY", directory.Path("classes.reg").c_str());
  const EnvironmentVariable config("XDG_CONFIG_HOME", directory.Path("none").c_str());
  Register();
  test::RawServer server;
  const WideString address = FromUtf8(server.Url());
  for (std::size_t round = 1; round <= 3; ++round) {
    std::vector<std::string> results(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) server.Expect(test::Sessions(kSessions));
    threads.reserve(results.size());
    for (std::string& result : results) threads.emplace_back([&] { result = RunSessions(address); });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(results, std::vector<std::string>(kThreads, "ok"));
    EXPECT_EQ(server.Connections(), round * kThreads) << "kept connections";
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsMapped(kLibrary));
  }
}

}  // namespace
}  // namespace qv
