#include "qvscriptwells/class_registry.h"

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <string>
#include <vector>

#include "com/asked_object.h"
#include "fixtures/scarce_memory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/record_list.h"

namespace qv {
namespace {

constexpr Guid kClass = ParseGuid("b4a6f5a0-8d1e-4a5b-9a0e-7c2d4f6b1e01");
constexpr Guid kOtherClass = ParseGuid("b4a6f5a0-8d1e-4a5b-9a0e-7c2d4f6b1e02");
// Nobody else registers it.
constexpr Guid kFreshClass = ParseGuid("b4a6f5a0-8d1e-4a5b-9a0e-7c2d4f6b1e03");
constexpr Guid kSomeInterface = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");

// What the creators below hand out and saw; a creator is a bare function and has no place of its own.
AskedObject* made = nullptr;
Guid askedFor{};
int calls = 0;

HRESULT MakeObject(const Guid& iid, void** object) {
  ++calls;
  askedFor = iid;
  return made->QueryInterface(iid, object);
}

HRESULT MakeNothing(const Guid&, void** object) {
  ++calls;
  *object = nullptr;
  return E_FAIL;
}

class ClassRegistryTest : public testing::Test {
 protected:
  ClassRegistryTest() {
    made = &object_;
    calls = 0;
    askedFor = Guid{};
  }
  ~ClassRegistryTest() override {
    RegisterClassCreator(kClass, nullptr);
    RegisterClassCreator(kOtherClass, nullptr);
    made = nullptr;
  }
  static HRESULT Create(const Guid& classId, void** object) {
    return CoCreateInstance(classId, nullptr, CLSCTX_ALL, IUnknown::kIid, object);
  }

  AskedObject object_;
};

TEST_F(ClassRegistryTest, UnknownClassIsNotRegistered) {
  void* object = nullptr;
  EXPECT_EQ(Create(kClass, &object), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(object, nullptr);
}

TEST_F(ClassRegistryTest, RegisteredClassIsMadeByItsCreator) {
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), nullptr);
  void* object = nullptr;
  EXPECT_EQ(Create(kClass, &object), S_OK);
  EXPECT_EQ(object, static_cast<IUnknown*>(&object_));
  EXPECT_EQ(object_.count, 2u);
  object_.Release();
}

TEST_F(ClassRegistryTest, CreatorGetsTheInterfaceThatWasAskedFor) {
  RegisterClassCreator(kClass, MakeObject);
  void* object = nullptr;
  EXPECT_EQ(CoCreateInstance(kClass, nullptr, CLSCTX_ALL, kSomeInterface, &object), E_NOINTERFACE);
  EXPECT_TRUE(askedFor == kSomeInterface);
  EXPECT_EQ(object, nullptr);
}

TEST_F(ClassRegistryTest, CreatorsFailureIsPassedOn) {
  RegisterClassCreator(kClass, MakeNothing);
  void* object = nullptr;
  EXPECT_EQ(Create(kClass, &object), E_FAIL);
}

TEST_F(ClassRegistryTest, CreatorThatThrowsIsACode) {
  void* object = nullptr;
  RegisterClassCreator(kClass, [](const Guid&, void**) -> HRESULT { throw std::bad_alloc(); });
  EXPECT_EQ(Create(kClass, &object), E_OUTOFMEMORY);
  RegisterClassCreator(kClass, [](const Guid&, void**) -> HRESULT { throw _com_error(DISP_E_OVERFLOW); });
  EXPECT_EQ(Create(kClass, &object), DISP_E_OVERFLOW);
  RegisterClassCreator(kClass, [](const Guid&, void**) -> HRESULT { throw 7; });
  EXPECT_EQ(Create(kClass, &object), E_UNEXPECTED);
}

std::set<std::string> CreationWithoutMemory(const Guid& classId) {
  return ThrownWithout(Memory::kBoth, [&] {
    void* object = nullptr;
    const HRESULT code = CoCreateInstance(classId, nullptr, CLSCTX_ALL, IUnknown::kIid, &object);
    const IUnknownPtr owned(static_cast<IUnknown*>(object), false);
    if (Failed(code)) _com_raise_error(code);
  });
}

// A program of its own for each test, so this is the first look at the classes.
TEST(ClassRegistryMemory, CreationWithoutMemoryIsACode) {
  for (const Guid& classId : {CLSID_HttpComponent, CLSID_RecordList, CLSID_QvScriptwells})
    EXPECT_EQ(CreationWithoutMemory(classId), std::set<std::string>{"_com_error 0x8007000E <null>"});
}

// A class is unknown also when only the text of that failure met the end of memory.
TEST(ClassRegistryMemory, UnknownClassWithoutMemoryIsACode) {
  EXPECT_EQ(CreationWithoutMemory(kClass),
            (std::set<std::string>{"_com_error 0x80040154 <null>", "_com_error 0x8007000E <null>"}));
}

TEST(ClassRegistryMemory, RegistrationWithoutMemoryChangesNothing) {
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [] { RegisterClassCreator(kFreshClass, MakeNothing); }),
            std::set<std::string>{"std::bad_alloc"});
  EXPECT_EQ(RegisterClassCreator(kFreshClass, nullptr), &MakeNothing);
}

TEST_F(ClassRegistryTest, ContextDoesNotMatter) {
  RegisterClassCreator(kClass, MakeObject);
  for (const std::uint32_t context : {0u, 1u, CLSCTX_ALL, 0xFFFFFFFFu}) {
    void* object = nullptr;
    EXPECT_EQ(CoCreateInstance(kClass, nullptr, context, IUnknown::kIid, &object), S_OK);
    object_.Release();
  }
}

TEST_F(ClassRegistryTest, OuterObjectIsRefused) {
  RegisterClassCreator(kClass, MakeObject);
  AskedObject outer;
  void* object = nullptr;
  EXPECT_EQ(CoCreateInstance(kClass, &outer, CLSCTX_ALL, IUnknown::kIid, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(object, nullptr);
}

TEST_F(ClassRegistryTest, NullTargetIsRefused) {
  RegisterClassCreator(kClass, MakeObject);
  EXPECT_EQ(Create(kClass, nullptr), E_POINTER);
  EXPECT_EQ(calls, 0);
}

TEST_F(ClassRegistryTest, LaterCreatorReplacesAndTheEarlierIsReturned) {
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), nullptr);
  EXPECT_EQ(RegisterClassCreator(kClass, MakeNothing), &MakeObject);
  void* object = nullptr;
  EXPECT_EQ(Create(kClass, &object), E_FAIL);
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), &MakeNothing);
  EXPECT_EQ(Create(kClass, &object), S_OK);
  object_.Release();
}

TEST_F(ClassRegistryTest, NullCreatorRemovesTheClass) {
  RegisterClassCreator(kClass, MakeObject);
  EXPECT_EQ(RegisterClassCreator(kClass, nullptr), &MakeObject);
  void* object = nullptr;
  EXPECT_EQ(Create(kClass, &object), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(RegisterClassCreator(kClass, nullptr), nullptr);
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), nullptr);
}

TEST_F(ClassRegistryTest, ClassesDoNotDisturbEachOther) {
  RegisterClassCreator(kClass, MakeObject);
  RegisterClassCreator(kOtherClass, MakeNothing);
  void* object = nullptr;
  EXPECT_EQ(Create(kOtherClass, &object), E_FAIL);
  RegisterClassCreator(kOtherClass, nullptr);
  EXPECT_EQ(Create(kClass, &object), S_OK);
  object_.Release();
}

// Writes down what is done to it.
class RunnableObject final : public IRunnableObject {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    log.push_back(iid == IRunnableObject::kIid ? "QueryInterface IRunnableObject" : "QueryInterface other");
    *object = iid == IRunnableObject::kIid ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    ++count;
    return S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override {
    log.push_back("Release");
    return --count;
  }
  HRESULT Run() noexcept override {
    log.push_back(count == 2 ? "Run with a reference" : "Run without a reference");
    return result;
  }

  HRESULT result = S_OK;
  std::uint32_t count = 1;
  std::vector<std::string> log;
};

TEST(OleRun, NullIsRefused) {
  EXPECT_EQ(OleRun(nullptr), E_POINTER);
}

TEST(OleRun, ObjectWithoutStartOfItsOwnIsFine) {
  AskedObject object;
  EXPECT_EQ(OleRun(&object), S_OK);
  ASSERT_EQ(object.asked.size(), 1u);
  EXPECT_TRUE(object.asked[0] == IRunnableObject::kIid);
}

TEST(OleRun, RunnableObjectIsAskedStartedAndReleasedInThisOrder) {
  RunnableObject object;
  EXPECT_EQ(OleRun(&object), S_OK);
  const std::vector<std::string> expected = {"QueryInterface IRunnableObject", "Run with a reference",
                                             "Release"};
  EXPECT_EQ(object.log, expected);
  EXPECT_EQ(object.count, 1u);
}

TEST(OleRun, ResultOfTheStartIsPassedOn) {
  RunnableObject object;
  object.result = E_UNEXPECTED;
  EXPECT_EQ(OleRun(&object), E_UNEXPECTED);
  EXPECT_EQ(object.count, 1u);
}

}  // namespace
}  // namespace qv
