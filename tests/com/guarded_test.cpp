// The guard of operations: exceptions become a result code and an error record, and the record is posted
// last.
#include "com/guarded.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "com/counted_object.h"
#include "fixtures/calling_object.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"

namespace qv {
namespace {

constexpr Guid kClass = ParseGuid("5b7f0c1e-3d52-4e8a-9c61-2f0a8d4b6e15");

ErrorInfo Record(const WideString& message) {
  ErrorInfo info;
  info.source = u"component";
  info.description = message;
  info.helpContext = 7;
  return info;
}

template <class Exception>
std::function<void()> Throwing(const Exception& exception) {
  return [exception] { throw Exception(exception); };
}

TEST(ResultFromCaughtException, HasThisCodeAndRecord) {
  const WideString null;
  const struct {
    const char* name;
    std::function<void()> act;
    std::uint32_t code;
    const char* message;
  } rows[] = {
      {"Qv", Throwing(EQvException(u"own words")), 0x80020009, "own words"},
      {"Qv with code", Throwing(EQvException(u"own words", 5)), 0x80040005, "own words"},
      {"Qv with negative code", Throwing(EQvException(u"own words", -5)), 0xFFFFFFFB, "own words"},
      {"Qv with empty message", Throwing(EQvException(u"")), 0x80020009, ""},
      {"Qv without message", Throwing(EQvException(null)), 0x80040000, "Unknown Error"},
      {"Qv with code, without message", Throwing(EQvException(null, 5)), 0x80040005, "Unknown Error"},
      {"com", Throwing(_com_error(E_POINTER)), 0x80004003, "Unknown Error"},
      {"com with message", Throwing(_com_error(E_OUTOFMEMORY, Record(u"component words"))), 0x8007000E,
       "component words"},
      {"com with record, without message", Throwing(_com_error(E_FAIL, Record(null))), 0x80004005,
       "Unknown Error"},
      {"com without code", Throwing(_com_error(S_OK)), 0x80040000, "Unknown Error"},
      {"com without code, with message", Throwing(_com_error(S_OK, Record(u"component words"))), 0x80020009,
       "component words"},
      {"std", Throwing(std::runtime_error("std words")), 0x8000FFFF, "no record"},
      {"bad_alloc", Throwing(std::bad_alloc()), 0x8000FFFF, "no record"},
      {"text", Throwing(WideString(u"bare words")), 0x8000FFFF, "no record"},
      {"number", Throwing(5), 0x8000FFFF, "no record"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    LeaveStaleRecord();
    const HRESULT code = GuardedBy([] { return ResultFromCaughtException(kClass); }, row.act);
    EXPECT_EQ(static_cast<std::uint32_t>(code), row.code);
    EXPECT_EQ(TakenWords(), row.message);
  }
}

class Counter {
 public:
  // NOLINTNEXTLINE(readability-make-member-function-const): the guard takes operations that are not const
  int get_Count() { return count_; }
  void put_Count(int count) {
    if (count < 0) throw EQvException(u"below zero");
    count_ = count;
  }

 private:
  int count_ = 3;
};

class GuardedCounter : public testing::Test {
 protected:
  GuardedCounter() { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  GuardedLogic<Counter, kClass> logic_;
};

TEST_F(GuardedCounter, SuccessClearsTheStaleRecord) {
  int count = 0;
  EXPECT_EQ(logic_.Get(&count, &Counter::get_Count), S_OK);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  EXPECT_EQ(logic_.Put(4, &Counter::put_Count), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_F(GuardedCounter, FailureLeavesTheRecord) {
  EXPECT_EQ(logic_.Put(-1, &Counter::put_Count), DISP_E_EXCEPTION);
  EXPECT_EQ(TakenWords(), "below zero");
}

TEST_F(GuardedCounter, NullOutputParameterIsRefusedAfterTheRecordIsCleared) {
  bool hasRun = false;
  EXPECT_EQ(logic_.Run(nullptr, [&](Counter&) { hasRun = true; }), E_POINTER);
  EXPECT_FALSE(hasRun);
  EXPECT_EQ(TakenWords(), "no record");
}

// The object's destructor runs an operation, which clears the record.
TEST_F(GuardedCounter, RecordIsPostedAfterTheOperationReleasedItsObjects) {
  int seen = 0;
  const HRESULT code = logic_.Run([&](Counter& counter) {
    const CallingObjectPtr held(new CallingObject);
    held->OnEnd([&] { EXPECT_EQ(logic_.Get(&seen, &Counter::get_Count), S_OK); });
    counter.put_Count(-1);
  });
  EXPECT_EQ(code, DISP_E_EXCEPTION);
  EXPECT_EQ(seen, 3);
  EXPECT_EQ(CallingObject::Live(), 0);
  EXPECT_EQ(TakenWords(), "below zero");
}

// An object that deletes itself inside one of its operations.
class Ending final : public CountedObject<IRunnableObject, SupportsErrorInfo<IRunnableObject>> {
 public:
  explicit Ending(bool* isGone) : isGone_(isGone) {}
  HRESULT Run() noexcept override {
    return logic_.Run([this](Counter& counter) {
      const IRunnableObjectPtr self(this);
      Release();  // the host's reference
      counter.put_Count(-1);
    });
  }

 private:
  ~Ending() override { *isGone_ = true; }

  bool* isGone_;
  GuardedLogic<Counter, kClass> logic_;
};

TEST(GuardedObject, MayEndInsideItsOwnOperation) {
  bool isGone = false;
  IRunnableObject* const object = IRunnableObjectPtr(new Ending(&isGone)).detach();
  EXPECT_EQ(object->Run(), DISP_E_EXCEPTION);
  EXPECT_TRUE(isGone);
  EXPECT_EQ(TakenWords(), "below zero");
}

}  // namespace
}  // namespace qv
