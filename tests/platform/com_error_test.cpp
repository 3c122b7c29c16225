#include "qvscriptwells/com_error.h"

#include <gtest/gtest.h>

#include "platform/asked_object.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

constexpr Guid kSomeInterface = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");

// Says whether its interfaces leave error records, and remembers for which one it was asked.
class TalkingObject final : public ISupportErrorInfo {
 public:
  ~TalkingObject() { EXPECT_EQ(count, 1u) << "references were left or lost"; }
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

  static void Post(const char16_t* words) {
    ErrorInfo info;
    info.description = words;
    SetErrorInfo(info);
  }
  static bool RecordWaits() {
    ErrorInfo info;
    return GetErrorInfo(&info);
  }
  static _com_error Issued(HRESULT code, IUnknown* object, const Guid& iid) {
    try {
      _com_issue_errorex(code, object, iid);
    } catch (const _com_error& error) {
      return error;
    }
  }
};

TEST_F(ComErrorTest, WithoutRecordThereAreNoWords) {
  const _com_error error(E_FAIL);
  EXPECT_EQ(error.Error(), E_FAIL);
  EXPECT_FALSE(error.HasErrorInfo());
  EXPECT_TRUE(error.Description().IsNull());
}

TEST_F(ComErrorTest, WithRecordItsWordsAreTheDescription) {
  ErrorInfo info;
  info.description = u"words";
  const _com_error error(E_POINTER, info);
  EXPECT_EQ(error.Error(), E_POINTER);
  EXPECT_TRUE(error.HasErrorInfo());
  EXPECT_EQ(error.Description(), u"words");
}

TEST_F(ComErrorTest, RecordWithoutWordsStillCountsAsRecord) {
  const _com_error error(E_POINTER, ErrorInfo{});
  EXPECT_TRUE(error.HasErrorInfo());
  EXPECT_TRUE(error.Description().IsNull());
}

TEST_F(ComErrorTest, IsAStandardExceptionWithAFixedText) {
  const _com_error error(E_FAIL);
  const std::exception& base = error;
  ASSERT_NE(base.what(), nullptr);
  EXPECT_STRNE(base.what(), "");
  EXPECT_STREQ(base.what(), _com_error(E_POINTER).what());
}

TEST_F(ComErrorTest, RaiseCarriesTheCodeAndNoRecord) {
  Post(u"waiting");
  try {
    _com_raise_error(E_OUTOFMEMORY);
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), E_OUTOFMEMORY);
    EXPECT_FALSE(error.HasErrorInfo());
    EXPECT_TRUE(error.Description().IsNull());
  }
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, IssueTakesTheRecordOfAnInterfaceThatLeavesOne) {
  TalkingObject object;
  Post(u"words");
  const _com_error error = Issued(E_FAIL, &object, kSomeInterface);
  EXPECT_EQ(error.Error(), E_FAIL);
  EXPECT_TRUE(error.HasErrorInfo());
  EXPECT_EQ(error.Description(), u"words");
  EXPECT_TRUE(object.askedFor == kSomeInterface);
  EXPECT_FALSE(RecordWaits());
}

TEST_F(ComErrorTest, IssueWithoutWaitingRecordHasNone) {
  TalkingObject object;
  const _com_error error = Issued(DISP_E_EXCEPTION, &object, kSomeInterface);
  EXPECT_EQ(error.Error(), DISP_E_EXCEPTION);
  EXPECT_FALSE(error.HasErrorInfo());
  EXPECT_TRUE(error.Description().IsNull());
}

TEST_F(ComErrorTest, IssueLeavesTheRecordOfAnInterfaceThatLeavesNone) {
  TalkingObject object;
  object.answer = S_FALSE;
  Post(u"not hers");
  const _com_error error = Issued(E_FAIL, &object, kSomeInterface);
  EXPECT_FALSE(error.HasErrorInfo());
  EXPECT_TRUE(error.Description().IsNull());
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, IssueLeavesTheRecordWhenTheObjectDoesNotSay) {
  AskedObject object;
  Post(u"not its");
  const _com_error error = Issued(E_FAIL, &object, kSomeInterface);
  EXPECT_EQ(error.Error(), E_FAIL);
  EXPECT_FALSE(error.HasErrorInfo());
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, IssueLeavesTheRecordWithoutObject) {
  Post(u"nobody's");
  const _com_error error = Issued(E_FAIL, nullptr, kSomeInterface);
  EXPECT_EQ(error.Error(), E_FAIL);
  EXPECT_FALSE(error.HasErrorInfo());
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, ThrowIfFailedIsSilentOnSuccess) {
  TalkingObject object;
  Post(u"waiting");
  EXPECT_NO_THROW(ThrowIfFailed(S_OK, &object, kSomeInterface));
  EXPECT_NO_THROW(ThrowIfFailed(S_FALSE, &object, kSomeInterface));
  EXPECT_TRUE(RecordWaits());
}

TEST_F(ComErrorTest, ThrowIfFailedIssuesOnFailure) {
  TalkingObject object;
  Post(u"words");
  try {
    ThrowIfFailed(E_INVALIDARG, &object, kSomeInterface);
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), E_INVALIDARG);
    EXPECT_EQ(error.Description(), u"words");
  }
}

TEST_F(ComErrorTest, QueryForHandsOutOneReference) {
  AskedObject object;
  object.Answer(kSomeInterface, S_OK);
  EXPECT_EQ(QueryFor(&object, kSomeInterface), static_cast<IUnknown*>(&object));
  EXPECT_EQ(object.count, 2u);
  object.Release();
}

TEST_F(ComErrorTest, QueryForAnInterfaceThatIsMissingGivesNull) {
  AskedObject object;
  EXPECT_EQ(QueryFor(&object, kSomeInterface), nullptr);
}

TEST_F(ComErrorTest, QueryForNullGivesNull) {
  EXPECT_EQ(QueryFor(nullptr, kSomeInterface), nullptr);
}

TEST_F(ComErrorTest, QueryForRaisesAnyOtherFailure) {
  for (const HRESULT code : {E_FAIL, E_POINTER, E_OUTOFMEMORY}) {
    AskedObject object;
    object.Answer(kSomeInterface, code);
    try {
      QueryFor(&object, kSomeInterface);
      ADD_FAILURE() << "nothing was thrown";
    } catch (const _com_error& error) {
      EXPECT_EQ(error.Error(), code);
    }
  }
}

}  // namespace
}  // namespace qv
