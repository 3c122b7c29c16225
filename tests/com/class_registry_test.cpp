// Creation by class id, by creators that a program registers, and the start of created objects.
#include "qvscriptwells/class_registry.h"

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <string>
#include <vector>

#include "com/asked_object.h"
#include "fixtures/scarce_memory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/record_list.h"

namespace qv {
namespace {

constexpr Guid kClass = ParseGuid("b4a6f5a0-8d1e-4a5b-9a0e-7c2d4f6b1e01");
constexpr Guid kOtherClass = ParseGuid("b4a6f5a0-8d1e-4a5b-9a0e-7c2d4f6b1e02");
// Only one test registers it.
constexpr Guid kFreshClass = ParseGuid("b4a6f5a0-8d1e-4a5b-9a0e-7c2d4f6b1e03");
constexpr Guid kSomeInterface = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");

// What the creators below return and what they saw: a creator is a function without state.
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
  // Creates the object, which is the fixture's, and releases it.
  HRESULT Create(const Guid& classId, const Guid& iid = IUnknown::kIid, IUnknown* outer = nullptr,
                 std::uint32_t context = CLSCTX_ALL) {
    void* object = nullptr;
    const HRESULT code = CoCreateInstance(classId, outer, context, iid, &object);
    EXPECT_EQ(object, Succeeded(code) ? static_cast<IUnknown*>(&object_) : nullptr);
    EXPECT_EQ(object_.count, Succeeded(code) ? 2U : 1U);
    if (object != nullptr) object_.Release();
    return code;
  }

  AskedObject object_;
};

TEST_F(ClassRegistryTest, UnknownClassIsNotRegistered) {
  EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
}

TEST_F(ClassRegistryTest, RegisteredClassIsMadeByItsCreator) {
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), nullptr);
  EXPECT_EQ(Create(kClass), S_OK);
}

TEST_F(ClassRegistryTest, CreatorGetsTheRequestedInterface) {
  RegisterClassCreator(kClass, MakeObject);
  EXPECT_EQ(Create(kClass, kSomeInterface), E_NOINTERFACE);
  EXPECT_TRUE(askedFor == kSomeInterface);
}

TEST_F(ClassRegistryTest, FailureOfTheCreatorIsACode) {
  const std::pair<ClassCreator, HRESULT> rows[] = {
      {&MakeNothing, E_FAIL},
      {[](const Guid&, void**) -> HRESULT { throw std::bad_alloc(); }, E_OUTOFMEMORY},
      {[](const Guid&, void**) -> HRESULT { throw _com_error(DISP_E_OVERFLOW); }, DISP_E_OVERFLOW},
      {[](const Guid&, void**) -> HRESULT { throw 7; }, E_UNEXPECTED}};
  for (const auto& [creator, code] : rows) {
    RegisterClassCreator(kClass, creator);
    EXPECT_EQ(Create(kClass), code);
  }
}

std::set<std::string> CreationWithoutMemory(const Guid& classId) {
  return ThrownWithout(Memory::kBoth, [&] {
    IUnknownPtr object;
    const HRESULT code = CoCreateInstance(classId, nullptr, CLSCTX_ALL, IUnknown::kIid, Put(object));
    if (Failed(code)) _com_raise_error(code);
  });
}

// Each test runs in its own process, so this is the first lookup of a class.
TEST(ClassRegistryMemory, CreationWithoutMemoryIsACode) {
  for (const Guid& classId : {CLSID_HttpComponent, CLSID_RecordList, CLSID_QvScriptwells})
    EXPECT_EQ(CreationWithoutMemory(classId), std::set<std::string>{"_com_error 0x8007000E <null>"});
}

// A class is unknown even if memory is lacking only for the message of that failure.
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
  for (const std::uint32_t context : {0U, 1U, CLSCTX_ALL, 0xFFFFFFFFU})
    EXPECT_EQ(Create(kClass, IUnknown::kIid, nullptr, context), S_OK);
}

TEST_F(ClassRegistryTest, OuterObjectAndNullTargetAreRefused) {
  RegisterClassCreator(kClass, MakeObject);
  AskedObject outer;
  EXPECT_EQ(Create(kClass, IUnknown::kIid, &outer), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(CoCreateInstance(kClass, nullptr, CLSCTX_ALL, IUnknown::kIid, nullptr), E_POINTER);
  EXPECT_EQ(calls, 0);
}

TEST_F(ClassRegistryTest, LaterCreatorReplacesAndTheEarlierIsReturned) {
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), nullptr);
  EXPECT_EQ(RegisterClassCreator(kClass, MakeNothing), &MakeObject);
  EXPECT_EQ(Create(kClass), E_FAIL);
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), &MakeNothing);
  EXPECT_EQ(Create(kClass), S_OK);
}

TEST_F(ClassRegistryTest, NullCreatorRemovesTheClass) {
  RegisterClassCreator(kClass, MakeObject);
  EXPECT_EQ(RegisterClassCreator(kClass, nullptr), &MakeObject);
  EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(RegisterClassCreator(kClass, nullptr), nullptr);
  EXPECT_EQ(RegisterClassCreator(kClass, MakeObject), nullptr);
}

TEST_F(ClassRegistryTest, ClassesAreIndependent) {
  RegisterClassCreator(kClass, MakeObject);
  RegisterClassCreator(kOtherClass, MakeNothing);
  EXPECT_EQ(Create(kOtherClass), E_FAIL);
  RegisterClassCreator(kOtherClass, nullptr);
  EXPECT_EQ(Create(kClass), S_OK);
}

// Records the calls.
class RunnableObject final : public IRunnableObject {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    log.emplace_back(iid == IRunnableObject::kIid ? "QueryInterface IRunnableObject"
                                                  : "QueryInterface other");
    *object = iid == IRunnableObject::kIid ? this : nullptr;
    if (*object == nullptr) return E_NOINTERFACE;
    ++count;
    return S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override {
    log.emplace_back("Release");
    return --count;
  }
  HRESULT Run() noexcept override {
    log.emplace_back(count == 2 ? "Run with a reference" : "Run without a reference");
    return result;
  }

  HRESULT result = S_OK;
  std::uint32_t count = 1;
  std::vector<std::string> log;
};

TEST(OleRun, ObjectWithoutItsOwnStartIsAccepted) {
  EXPECT_EQ(OleRun(nullptr), E_POINTER);
  AskedObject object;
  EXPECT_EQ(OleRun(&object), S_OK);
  ASSERT_EQ(object.asked.size(), 1U);
  EXPECT_TRUE(object.asked[0] == IRunnableObject::kIid);
}

TEST(OleRun, RunnableObjectIsQueriedStartedAndReleasedInThisOrder) {
  for (const HRESULT result : {S_OK, E_UNEXPECTED}) {
    RunnableObject object;
    object.result = result;
    EXPECT_EQ(OleRun(&object), result);
    EXPECT_EQ(object.log, (std::vector<std::string>{"QueryInterface IRunnableObject", "Run with a reference",
                                                    "Release"}));
    EXPECT_EQ(object.count, 1U);
  }
}

}  // namespace
}  // namespace qv
