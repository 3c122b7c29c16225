// Failed result codes as exceptions, with the error record or without, and typed pointers.
#include "qvscriptwells/com_error.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "com/asked_object.h"
#include "com/error_message.h"
#include "fixtures/scarce_memory.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr Guid kSomeInterface = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");

// Says whether its interfaces leave error records, and keeps the interface of the question.
class TalkingObject final : public ISupportErrorInfo {
 public:
  ~TalkingObject() { EXPECT_EQ(count, 1U) << "references were left or lost"; }
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    const bool known = iid == IUnknown::kIid || iid == ISupportErrorInfo::kIid;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override { return --count; }
  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override {
    askedFor = iid;
    return answer;
  }

  HRESULT answer = S_OK;
  Guid askedFor{};
  std::uint32_t count = 1;
};

class ComErrorTest : public testing::Test {
 protected:
  ComErrorTest() { ClearErrorInfo(); }
  ~ComErrorTest() override { ClearErrorInfo(); }

  static bool RecordWaits() { return TakenWords() != "no record"; }
  static void ExpectWithoutRecord(const _com_error& error, HRESULT code) {
    EXPECT_EQ(error.Error(), code);
    EXPECT_FALSE(error.HasErrorInfo());
    EXPECT_TRUE(error.Description().IsNull());
  }
  static _com_error Issued(HRESULT code, IUnknown* object, const Guid& iid) {
    try {
      _com_issue_errorex(code, object, iid);
    } catch (const _com_error& error) {
      return error;
    }
  }
};

TEST_F(ComErrorTest, DescriptionIsTheMessageOfTheRecord) {
  ExpectWithoutRecord(_com_error(E_FAIL), E_FAIL);
  ErrorInfo info;
  for (const WideString& message : {WideString(), WideString(u"words")}) {
    info.description = message;
    const _com_error error(E_POINTER, info);
    EXPECT_EQ(error.Error(), E_POINTER);
    EXPECT_TRUE(error.HasErrorInfo());
    EXPECT_EQ(error.Description(), message);
    EXPECT_EQ(error.Description().IsNull(), message.IsNull());
  }
}

TEST_F(ComErrorTest, WhatIsTheMessageOrTheCode) {
  ErrorInfo info;
  EXPECT_STREQ(_com_error(E_POINTER).what(), "0x80004003");
  EXPECT_STREQ(_com_error(E_POINTER, info).what(), "0x80004003");
  info.description = u"caf\u00E9 closed";
  const _com_error error(E_FAIL, info);
  const std::exception& base = error;
  EXPECT_STREQ(base.what(), "caf\xC3\xA9 closed");
}

TEST_F(ComErrorTest, WhatWithoutMemoryIsAFixedText) {
  const _com_error error = [] {
    const ScarceMemory scarce(Memory::kBoth, 0);
    return _com_error(E_OUTOFMEMORY);
  }();
  EXPECT_STREQ(error.what(), "a component reported a failure");
}

TEST_F(ComErrorTest, OneBaseCatchesBothExceptions) {
  static_assert(std::is_nothrow_copy_constructible_v<_com_error>);
  std::string seen;
  for (const bool first : {true, false}) {
    try {
      if (first) throw _com_error(E_FAIL);
      throw EQvException(u"words");
    } catch (const QvException& error) {
      seen += error.what() + std::string(";");
    }
  }
  EXPECT_EQ(seen, "0x80004005;words;");
}

TEST_F(ComErrorTest, RaiseCarriesTheCodeAndNoRecord) {
  PostErrorMessage(u"waiting");
  try {
    _com_raise_error(E_OUTOFMEMORY);
  } catch (const _com_error& error) {
    ExpectWithoutRecord(error, E_OUTOFMEMORY);
  }
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, IssueTakesTheRecordOfAnInterfaceThatLeavesOne) {
  TalkingObject object;
  PostErrorMessage(u"words");
  const _com_error error = Issued(E_FAIL, &object, kSomeInterface);
  EXPECT_EQ(error.Error(), E_FAIL);
  EXPECT_TRUE(error.HasErrorInfo());
  EXPECT_EQ(error.Description(), u"words");
  EXPECT_TRUE(object.askedFor == kSomeInterface);
  EXPECT_FALSE(RecordWaits());
  ExpectWithoutRecord(Issued(DISP_E_EXCEPTION, &object, kSomeInterface), DISP_E_EXCEPTION);
}

TEST_F(ComErrorTest, IssueLeavesARecordOfAnotherOrigin) {
  TalkingObject leavesNone;
  leavesNone.answer = S_FALSE;
  AskedObject doesNotSay;
  for (IUnknown* object : {static_cast<IUnknown*>(&leavesNone), static_cast<IUnknown*>(&doesNotSay),
                           static_cast<IUnknown*>(nullptr)}) {
    PostErrorMessage(u"of another");
    ExpectWithoutRecord(Issued(E_FAIL, object, kSomeInterface), E_FAIL);
    EXPECT_TRUE(RecordWaits());
  }
}

TEST_F(ComErrorTest, ThrowIfFailedIsSilentOnSuccess) {
  TalkingObject object;
  PostErrorMessage(u"waiting");
  EXPECT_NO_THROW(ThrowIfFailed(S_OK, &object, kSomeInterface));
  EXPECT_NO_THROW(ThrowIfFailed(S_FALSE, &object, kSomeInterface));
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, ThrowIfFailedIssuesOnFailure) {
  TalkingObject object;
  PostErrorMessage(u"words");
  try {
    ThrowIfFailed(E_INVALIDARG, &object, kSomeInterface);
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), E_INVALIDARG);
    EXPECT_EQ(error.Description(), u"words");
  }
}

TEST_F(ComErrorTest, AsHoldsOneReference) {
  AskedObject object;
  object.Answer(kSomeInterface, S_OK);
  {
    const IUnknownPtr found = As<IUnknown>(&object, kSomeInterface);
    EXPECT_EQ(found, static_cast<IUnknown*>(&object));
    EXPECT_EQ(object.count, 2U);
  }
  EXPECT_EQ(object.count, 1U);
}

TEST_F(ComErrorTest, AsWithoutTheInterfaceOrTheObjectIsNull) {
  AskedObject object;
  EXPECT_EQ(As<IUnknown>(&object, kSomeInterface), nullptr);
  EXPECT_EQ(As<IUnknown>(nullptr, kSomeInterface), nullptr);
}

TEST_F(ComErrorTest, AsThrowsAnyOtherFailure) {
  for (const HRESULT code : {E_FAIL, E_POINTER, E_OUTOFMEMORY}) {
    AskedObject object;
    object.Answer(kSomeInterface, code);
    try {
      As<IUnknown>(&object, kSomeInterface);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const _com_error& error) {
      EXPECT_EQ(error.Error(), code);
    }
  }
}

TEST_F(ComErrorTest, PutTakesOverTheReturnedPointer) {
  AskedObject object;
  object.Answer(kSomeInterface, S_OK);
  IUnknownPtr found;
  EXPECT_EQ(object.QueryInterface(kSomeInterface, Put(found)), S_OK);
  EXPECT_EQ(found, static_cast<IUnknown*>(&object));
  EXPECT_EQ(object.count, 2U);
  found = nullptr;
  EXPECT_EQ(object.count, 1U);
}

TEST_F(ComErrorTest, PutTakesTypedPointers) {
  AskedObject object;
  const auto giveObject = [&object](IUnknown** place) {
    object.AddRef();
    *place = &object;
  };
  IUnknownPtr found;
  giveObject(Put(found));
  EXPECT_EQ(found, static_cast<IUnknown*>(&object));
  EXPECT_EQ(object.count, 2U);
}

TEST_F(ComErrorTest, PutReleasesTheOldPointer) {
  AskedObject held;
  AskedObject refusing;
  IUnknownPtr pointer(&held);
  EXPECT_EQ(held.count, 2U);
  EXPECT_EQ(refusing.QueryInterface(kSomeInterface, Put(pointer)), E_NOINTERFACE);
  EXPECT_EQ(pointer, nullptr);
  EXPECT_EQ(held.count, 1U);
}

}  // namespace
}  // namespace qv
