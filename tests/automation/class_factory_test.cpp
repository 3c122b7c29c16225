// The class object of the client, and the client as a part of another object.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "automation/entry_points.h"
#include "com/builtin_classes.h"
#include "com/module.h"
#include "com/module_hooks.h"
#include "qvscriptwells/class_factory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/objects.h"

namespace qv {
namespace {

constexpr Guid kNoInterface = ParseGuid("5b7f0c1e-3d52-4e8a-9c61-2f0a8d4b6e13");
constexpr Guid kOuterInterface = ParseGuid("5b7f0c1e-3d52-4e8a-9c61-2f0a8d4b6e14");

IClassFactoryPtr Factory() {
  IClassFactoryPtr factory;
  EXPECT_EQ(OwnClassObject(CLSID_QvScriptwells, IClassFactory::kIid, Put(factory)), S_OK);
  return factory;
}

template <class Interface>
boost::intrusive_ptr<Interface> NewClient() {
  boost::intrusive_ptr<Interface> client;
  EXPECT_EQ(Factory()->CreateInstance(nullptr, Interface::kIid, Put(client)), S_OK);
  return client;
}

class ClassObject : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(ModuleLocks(), 0); }
};

TEST_F(ClassObject, IsMadeOnceAndKept) {
  const IClassFactoryPtr first = Factory();
  const IClassFactory* const kept = first.get();
  EXPECT_EQ(Factory().get(), kept);
}

TEST_F(ClassObject, AnswersItsInterfacesOnly) {
  IUnknownPtr object;
  EXPECT_EQ(OwnClassObject(CLSID_QvScriptwells, IUnknown::kIid, Put(object)), S_OK);
  EXPECT_EQ(OwnClassObject(CLSID_QvScriptwells, IQvScriptwells::kIid, Put(object)), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(OwnClassObject(CLSID_QvScriptwells, IClassFactory::kIid, nullptr), E_POINTER);
}

TEST_F(ClassObject, OnlyTheClientIsInTheMap) {
  for (const Guid& id : {CLSID_ConnectionModel, CLSID_Url, CLSID_Duration, CLSID_ConnectionString,
                         CLSID_AttachedFile, CLSID_Parameters, CLSID_Parameter, Guid{}}) {
    int stranger = 0;
    void* object = &stranger;
    EXPECT_EQ(OwnClassObject(id, IClassFactory::kIid, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
  }
}

TEST_F(ClassObject, MakesANewClientOnEachCall) {
  IQvScriptwells* const first = NewClient<IQvScriptwells>().detach();
  const IQvScriptwellsPtr second = NewClient<IQvScriptwells>();
  EXPECT_NE(first, second.get());
  EXPECT_EQ(first->AddRef(), 2U);
  EXPECT_EQ(first->Release(), 1U);
  EXPECT_EQ(first->Release(), 0U);
  EXPECT_EQ(second->AddRef(), 2U);
  EXPECT_EQ(second->Release(), 1U);
}

TEST_F(ClassObject, ClientWithoutTheInterfaceGoesAgain) {
  IUnknownPtr object;
  EXPECT_EQ(Factory()->CreateInstance(nullptr, kNoInterface, Put(object)), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(ModuleLocks(), 0);
  EXPECT_EQ(Factory()->CreateInstance(nullptr, IQvScriptwells::kIid, nullptr), E_POINTER);
}

TEST_F(ClassObject, ReferencesAndLocksKeepTheLibrary) {
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  IClassFactoryPtr factory = Factory();
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  EXPECT_EQ(factory->LockServer(true), S_OK);
  EXPECT_EQ(factory->LockServer(true), S_OK);
  IClassFactory* const bare = factory.get();
  factory.reset();
  EXPECT_EQ(ModuleLocks(), 2);
  EXPECT_EQ(bare->LockServer(false), S_OK);
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  EXPECT_EQ(bare->LockServer(false), S_OK);
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST_F(ClassObject, ObjectsKeepTheLibrary) {
  IUnknownPtr object = NewClient<IUnknown>();
  EXPECT_EQ(ModuleLocks(), 1);
  object.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  IQvScriptwellsPtr client = NewClient<IQvScriptwells>();
  IUrlPtr url;
  ASSERT_EQ(client->Url(Put(url)), S_OK);
  EXPECT_EQ(ModuleLocks(), 2);
  client.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  url.reset();
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST_F(ClassObject, MayBeUsedByManyThreads) {
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads)
    thread = std::thread([] {
      for (int round = 0; round < 500; ++round) {
        const IClassFactoryPtr factory = Factory();
        factory->LockServer(true);
        factory->LockServer(false);
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ModuleLocks(), 0);
}

// The client cannot be created before the module has started, so this and what follows is one test.
TEST_F(ClassObject, EntryPointsWaitForTheStart) {
  void* object = nullptr;
  EXPECT_EQ(DllGetClassObject(CLSID_QvScriptwells, IClassFactory::kIid, &object), E_UNEXPECTED);
  EXPECT_EQ(DllGetClassObject(CLSID_QvScriptwells, IClassFactory::kIid, nullptr), E_UNEXPECTED);
  EXPECT_EQ(DllMain(nullptr, 2, nullptr), 1);
  EXPECT_EQ(DllGetClassObject(CLSID_QvScriptwells, IClassFactory::kIid, &object), E_UNEXPECTED);
  ModuleHooks strange = *OwnHooks();
  strange.version = 4711;
  EXPECT_EQ(DllMain(nullptr, 1, &strange), 0);
  EXPECT_EQ(DllGetClassObject(CLSID_QvScriptwells, IClassFactory::kIid, &object), E_UNEXPECTED);
  EXPECT_EQ(DllMain(nullptr, 1, nullptr), 1);
  EXPECT_EQ(DllGetClassObject(CLSID_QvScriptwells, IClassFactory::kIid, nullptr), E_POINTER);
  EXPECT_EQ(DllGetClassObject(CLSID_Url, IClassFactory::kIid, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(DllGetClassObject(CLSID_QvScriptwells, IClassFactory::kIid, &object), S_OK);
  EXPECT_EQ(static_cast<IClassFactory*>(object)->Release(), 0U);
}

// An object that has the client as a part and offers its interfaces as its own.
class Outer final : public IUnknown {
 public:
  explicit Outer(std::vector<std::string>* log) : log_(log) {}
  HRESULT Aggregate(const Guid& iid = IUnknown::kIid) {
    return Factory()->CreateInstance(this, iid, Put(inner));
  }

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    if (iid != IUnknown::kIid && iid != kOuterInterface) return inner->QueryInterface(iid, object);
    *object = this;
    AddRef();
    return S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --count;
    if (left == 0) {
      log_->push_back("outer goes with " + std::to_string(ModuleLocks()));
      count = 1;  // what the part releases on its way out must not come back here
      inner.reset();
      log_->push_back("part is gone with " + std::to_string(ModuleLocks()));
    }
    return left;
  }

  IUnknownPtr inner;
  std::uint32_t count = 1;

 private:
  std::vector<std::string>* log_;
};

constexpr Guid kClientInterfaces[] = {IQvScriptwells::kIid, IDispatch::kIid, IQvClientServiceRaw::kIid,
                                      ISupportErrorInfo::kIid, IProvideClassInfo::kIid};

class Aggregation : public ClassObject {
 protected:
  void SetUp() override { ASSERT_EQ(outer_.Aggregate(), S_OK); }
  void TearDown() override {
    outer_.inner.reset();
    ClassObject::TearDown();
  }

  std::vector<std::string> log_;
  Outer outer_{&log_};
};

TEST_F(Aggregation, InnerObjectIsNotTheOuterOne) {
  ASSERT_NE(outer_.inner, nullptr);
  EXPECT_NE(outer_.inner.get(), static_cast<IUnknown*>(&outer_));
  EXPECT_EQ(outer_.count, 1U);
  EXPECT_EQ(As<IUnknown>(outer_.inner), outer_.inner);
  EXPECT_EQ(outer_.count, 1U);
}

TEST_F(Aggregation, EveryInterfaceCountsOnTheOuterObject) {
  for (const Guid& iid : kClientInterfaces) {
    auto* const face = As<IUnknown>(&outer_, iid).detach();
    ASSERT_NE(face, nullptr);
    EXPECT_EQ(outer_.count, 2U);
    EXPECT_EQ(face->AddRef(), 3U);
    EXPECT_EQ(face->Release(), 2U);
    EXPECT_EQ(face->Release(), 1U);
  }
}

TEST_F(Aggregation, EveryInterfaceLeadsBackToTheOuterObject) {
  for (const Guid& iid : kClientInterfaces) {
    const IUnknownPtr face = As<IUnknown>(&outer_, iid);
    for (const Guid& back : {IUnknown::kIid, kOuterInterface})
      EXPECT_EQ(As<IUnknown>(face, back).get(), static_cast<IUnknown*>(&outer_));
    EXPECT_EQ(As<IUnknown>(face, kNoInterface), nullptr);
  }
  EXPECT_EQ(outer_.count, 1U);
}

TEST_F(Aggregation, InnerObjectCountsForItself) {
  EXPECT_EQ(outer_.inner->AddRef(), 2U);
  EXPECT_EQ(outer_.inner->Release(), 1U);
  EXPECT_EQ(outer_.count, 1U);
}

TEST_F(Aggregation, MembersWorkInsideTheOuterObject) {
  const IQvScriptwellsPtr client = As<IQvScriptwells>(&outer_);
  EXPECT_EQ(client->put_ServerName(u"http://srv"), S_OK);
  WideString name;
  EXPECT_EQ(client->get_ServerName(&name), S_OK);
  EXPECT_EQ(name, u"http://srv");
  IUrlPtr url;
  EXPECT_EQ(client->Url(Put(url)), S_OK);
  EXPECT_EQ(url->AddRef(), 2U);
  url->Release();
  EXPECT_EQ(outer_.count, 2U);
}

TEST_F(Aggregation, PartGoesWithTheLastReferenceOfTheWhole) {
  auto* const client = As<IQvScriptwells>(&outer_).detach();
  EXPECT_EQ(outer_.Release(), 1U);
  EXPECT_TRUE(log_.empty());
  EXPECT_EQ(ModuleLocks(), 1);
  EXPECT_EQ(client->Release(), 0U);
  EXPECT_EQ(log_, (std::vector<std::string>{"outer goes with 1", "part is gone with 0"}));
}

TEST_F(Aggregation, ReturnsTheInnerUnknownOnly) {
  for (const Guid& iid : {IQvScriptwells::kIid, IDispatch::kIid, kNoInterface}) {
    EXPECT_EQ(outer_.Aggregate(iid), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(outer_.inner, nullptr);
  }
  EXPECT_EQ(outer_.count, 1U);
}

}  // namespace
}  // namespace qv
