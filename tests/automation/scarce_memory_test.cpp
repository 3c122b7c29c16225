// Every allocation of a call may fail: the call then fails with a code, nothing is half done, and the next
// one works.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "automation/waiting_record.h"
#include "fixtures/fake_http.h"
#include "fixtures/formaters.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/xml_library_hold.h"
#include "session/session_answers.h"

namespace {

// Allocations that still succeed; negative means no limit.
long allowed = -1;
// Whether one was refused since a test looked.
bool refused = false;

void* Allocate(std::size_t size) {
  if (allowed == 0) {
    refused = true;
    throw std::bad_alloc();
  }
  if (allowed > 0) --allowed;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}

namespace qv {
namespace {

bool IsOutOfMemory(HRESULT code) {
  return code == E_OUTOFMEMORY || code == E_UNEXPECTED;
}

TEST(ScarceMemory, AddFailsWithACodeAndAppendsNothing) {
  const WideString key(u"key");
  const Variant value = Variant::FromString(u"value");
  int failures = 0;
  for (long limit = 0; limit < 100; ++limit) {
    const IParametersPtr list = CreateParameters();
    LeaveStaleRecord();
    allowed = limit;
    const HRESULT code = list->Add(key, value, nullptr);
    allowed = -1;
    if (Succeeded(code)) break;
    ++failures;
    EXPECT_TRUE(IsOutOfMemory(code)) << std::hex << code;
    if (code == E_UNEXPECTED) {
      EXPECT_EQ(TakenWords(), "no record");
    }
    std::int16_t size = -1;
    EXPECT_EQ(list->Size(&size), S_OK);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(list->Add(key, value, nullptr), S_OK);
  }
  EXPECT_GT(failures, 0);
  ClearErrorInfo();
}

// No component stands behind the class id, so that only the library allocates, and each call fails in any
// case. The limit grows until no allocation is refused.
TEST(ScarceMemory, ExecuteFailsWithACodeAndTheNextOneWorks) {
  EnsureFormaters();
  const XmlLibraryHold hold;
  const WideString language(u"VBScript");
  const WideString script(u"a<b");
  FakeHttp http;
  const ClassCreator fake = RegisterClassCreator(CLSID_HttpComponent, nullptr);
  const IConnectionModelPtr model = CreateConnectionModel();
  const IConnectionModelRawPtr raw(
      static_cast<IConnectionModelRaw*>(QueryFor(model.get(), IConnectionModelRaw::kIid)), false);
  ASSERT_EQ(raw->SetServer(u"http://srv", u""), S_OK);
  ASSERT_EQ(model->SetUSID(u"u1"), S_OK);
  Variant result;
  long limit = 0;
  do {
    refused = false;
    allowed = limit++;
    const HRESULT code = model->Execute(language, script, nullptr, &result);
    allowed = -1;
    EXPECT_TRUE(IsOutOfMemory(code) || code == DISP_E_EXCEPTION) << std::hex << code;
    EXPECT_EQ(result.Tag(), VT_EMPTY);
  } while (refused && limit < 10000);
  EXPECT_FALSE(refused);
  EXPECT_GT(limit, 3);
  RegisterClassCreator(CLSID_HttpComponent, fake);
  http.Answer(kScriptRan);
  EXPECT_EQ(model->Execute(language, script, nullptr, &result), S_OK);
  EXPECT_EQ(Shown(result.Text()), "done");
  ClearErrorInfo();
}

}  // namespace
}  // namespace qv
