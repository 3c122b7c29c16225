// Tables of a class of the host, which are read through the interfaces once.
#include <gtest/gtest.h>

#include "fixtures/fake_record_list.h"
#include "qvscriptwells/result_codes.h"
#include "tests/face/table/sample_table.h"

namespace scriptwells {
namespace {

using qv::FakeRecordList;
using qv::ListStep;

Table OfHost(FakeRecordList& fake) {
  return TableAccess::Make(fake.MakeList(
      {{{u"a", qv::kColumnInt}, {u"b", qv::kColumnString}},
       {{{qv::Int(1), qv::Text(u"x")}}, {{qv::Int(2), qv::Text(u"y")}}, {{qv::Int(3), qv::Variant()}}}}));
}

class TableOfHost : public ::testing::Test {
 protected:
  Table Make() { return OfHost(fake_); }

  FakeRecordList fake_;
};

TEST(TableOfTheLibrary, IsEqualToTheSameOfAHost) {
  const Table own = BuiltTable({{u"a", qv::kColumnInt}, {u"b", qv::kColumnString}},
                               {{qv::Int(1), qv::Text(u"x")}, {qv::Int(2), qv::Text(u"y")}, {qv::Int(3)}});
  FakeRecordList fake;
  EXPECT_EQ(OfHost(fake), own);
}

TEST_F(TableOfHost, IsCopied) {
  const Table table = Make();
  EXPECT_EQ(fake_.LiveObjects(), 0);
  EXPECT_EQ(fake_.CallsWith("GetValue").size(), 6U);
  EXPECT_EQ(table.ColumnAs<int>("a"), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(table[1]["b"].As<std::string>(), "y");
  EXPECT_TRUE(table[2]["b"].IsEmpty());
  EXPECT_EQ(fake_.CallsWith("GetValue").size(), 6U);
}

TEST_F(TableOfHost, FailureOfEachStepIsReported) {
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetCount, ListStep::kGetHeader, ListStep::kGetName,
        ListStep::kGetType, ListStep::kOpenCursor, ListStep::kHasMore, ListStep::kNext,
        ListStep::kQueryRecord, ListStep::kGetValue}) {
    FakeRecordList fake;
    fake.Fail(step, qv::E_FAIL, u"the store is gone");
    const qv::IRecordListPtr list = fake.MakeList({{{u"a", qv::kColumnInt}}, {{{qv::Int(1)}}}});
    EXPECT_EQ(Failure([&] { TableAccess::Make(list); }).substr(0, 16), "error (answer): ")
        << static_cast<int>(step);
    EXPECT_EQ(fake.LiveObjects(), 1);
  }
}

TEST_F(TableOfHost, FailureHasCodeAndText) {
  fake_.Fail(ListStep::kNext, qv::E_FAIL, u"the store is gone", 2);
  try {
    Make();
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.message(), "the store is gone");
    EXPECT_EQ(error.phase(), Phase::kAnswer);
    EXPECT_EQ(error.details().result, static_cast<std::uint32_t>(qv::E_FAIL));
    EXPECT_EQ(error.details().text, "the store is gone");
  }
  EXPECT_EQ(fake_.LiveObjects(), 0);
}

TEST_F(TableOfHost, MissingObjectIsAFailure) {
  for (const ListStep step :
       {ListStep::kGetHeaders, ListStep::kGetHeader, ListStep::kOpenCursor, ListStep::kNext}) {
    FakeRecordList fake;
    fake.GiveNull(step);
    const qv::IRecordListPtr list = fake.MakeList({{{u"a", qv::kColumnInt}}, {{{qv::Int(1)}}}});
    EXPECT_NE(Failure([&] { TableAccess::Make(list); }), "none") << static_cast<int>(step);
  }
}

TEST_F(TableOfHost, LackOfMemoryStaysThat) {
  fake_.Fail(ListStep::kGetValue, qv::E_OUTOFMEMORY);
  EXPECT_THROW(Make(), std::bad_alloc);
}

TEST_F(TableOfHost, ListThatCannotBeAskedFails) {
  const qv::IRecordListPtr list = fake_.MakeList({});
  fake_.Fail(ListStep::kQueryList, qv::E_FAIL);
  EXPECT_EQ(Failure([&] { AnswerOf(qv::Variant::FromObject(list.get())); }),
            "error (answer): failure 0x80004005");
}

TEST_F(TableOfHost, NegativeCountMeansNoColumns) {
  fake_.SayCount(-1);
  EXPECT_EQ(Make().Columns().size(), 0U);
  EXPECT_EQ(Make().size(), 3U);
}

}  // namespace
}  // namespace scriptwells
