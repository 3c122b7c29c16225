// Every allocation of a call may fail: the call then fails with a code, nothing is half done, and the next
// one works.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>

#include "automation/qv_scriptwells.h"
#include "fixtures/fake_http.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/soap_texts.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/xml_library_hold.h"
#include "recordlist/register_formaters.h"

namespace qv {
namespace {

// Its constructor makes two texts.
TEST(ScarceMemory, ClientThatCannotBeMadeIsOutOfMemory) {
  ClearErrorInfo();
  const auto create = [] { CreateQvScriptwells(); };
  EXPECT_EQ(ThrownWithout(Memory::kTexts, create), std::set<std::string>{"_com_error 0x8007000E <null>"});
  EXPECT_EQ(ThrownWithout(Memory::kObjects, create), std::set<std::string>{"std::bad_alloc"});
  const auto createByClass = [] {
    IQvScriptwellsPtr client;
    ThrowIfFailed(CreateQvScriptwellsObject(nullptr, IQvScriptwells::kIid, Put(client)));
    EXPECT_EQ(client->AddRef(), 2U);
    client->Release();
  };
  EXPECT_EQ(ThrownWithout(Memory::kBoth, createByClass),
            std::set<std::string>{"_com_error 0x8007000E <null>"});
}

TEST(ScarceMemory, AddFailsWithACodeAndAppendsNothing) {
  const WideString key(u"key");
  const Variant value = Variant::FromString(u"value");
  int failures = 0;
  for (long limit = 0; limit < 100; ++limit) {
    const IParametersPtr list = CreateParameters();
    LeaveStaleRecord();
    const HRESULT code = [&] {
      const ScarceMemory scarce(Memory::kObjects, limit);
      return list->Add(key, value, nullptr);
    }();
    if (Succeeded(code)) break;
    ++failures;
    EXPECT_EQ(code, E_UNEXPECTED);  // the refused memory is for an object or the list's room, not for a text
    EXPECT_EQ(TakenWords(), "no record");
    std::int16_t size = -1;
    EXPECT_EQ(list->Size(&size), S_OK);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(list->Add(key, value, nullptr), S_OK);
  }
  EXPECT_GT(failures, 0);
  ClearErrorInfo();
}

// The class id has no component, so that only the library allocates, and each call fails in any case.
TEST(ScarceMemory, ExecuteFailsWithACodeAndTheNextOneWorks) {
  FillFormaters();
  const XmlLibraryHold hold;
  const WideString language(u"VBScript");
  const WideString script(u"a<b");
  FakeHttp http;
  const ClassCreator fake = RegisterClassCreator(CLSID_HttpComponent, nullptr);
  const IConnectionModelPtr model = CreateConnectionModel();
  const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model);
  ASSERT_EQ(raw->SetServer(u"http://srv", u""), S_OK);
  ASSERT_EQ(model->SetUSID(u"u1"), S_OK);
  Variant result;
  const auto codesWithout = [&](Memory memory) {
    return ThrownWithout(memory, [&] {
      const HRESULT code = model->Execute(language, script, nullptr, &result);
      if (result.Tag() != VT_EMPTY) throw std::bad_alloc();
      _com_raise_error(code);
    });
  };
  const std::string failed = "_com_error 0x80020009 <null>";
  EXPECT_EQ(codesWithout(Memory::kObjects),
            (std::set<std::string>{failed, "_com_error 0x8000FFFF <null>"}));  // the latter for the arguments
  EXPECT_EQ(codesWithout(Memory::kTexts), (std::set<std::string>{failed, "_com_error 0x8007000E <null>"}));
  RegisterClassCreator(CLSID_HttpComponent, fake);
  http.Answer(kScriptDone);
  EXPECT_EQ(model->Execute(language, script, nullptr, &result), S_OK);
  EXPECT_EQ(Shown(result.Text()), "done");
  ClearErrorInfo();
}

// Error records, the parser's spare block, and components without options.
TEST(ScarceMemory, CallsOnAFreshThreadNeedNoMemoryOfTheCLibrary) {
  FillFormaters();
  FakeHttp http;
  http.Answer(kScriptDone);
  const int before = RememberedThreadEnds();
  std::thread([] {
    const IConnectionModelPtr model = CreateConnectionModel();
    const IConnectionModelRawPtr raw = As<IConnectionModelRaw>(model);
    EXPECT_EQ(raw->SetServer(u"no server", u""), DISP_E_EXCEPTION);
    EXPECT_EQ(raw->SetServer(u"http://srv", u""), S_OK);
    EXPECT_EQ(model->SetUSID(u"u1"), S_OK);
    Variant result;
    EXPECT_EQ(model->Execute(u"VBScript", u"1", nullptr, &result), S_OK);
    EXPECT_EQ(Shown(result.Text()), "done");
  }).join();
  EXPECT_EQ(RememberedThreadEnds(), before);
}

TEST(ScarceMemory, HttpComponentOnAFreshThreadNeedsNoMemoryOfTheCLibrary) {
  const int before = RememberedThreadEnds();
  std::thread([] {
    IHttpSessionPtr session;
    ASSERT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IHttpSession::kIid, Put(session)),
              S_OK);
    EXPECT_TRUE(Failed(session->Open(u"http", u"127.0.0.1", 1, u"", u"", u"")));
    CloseKeptConnections();
  }).join();
  EXPECT_EQ(RememberedThreadEnds(), before);
  ClearErrorInfo();
}

}  // namespace
}  // namespace qv
