// What the five objects of a record list answer about themselves, and where their operations stand.
#include <gtest/gtest.h>

#include <initializer_list>
#include <ostream>

#include "automation/slot_order.h"
#include "components/recordlist/list_helpers.h"
#include "fixtures/counting_object.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

IUnknownPtr MakeList() {
  return NewList();
}
IUnknownPtr MakeColumns() {
  return ColumnsOf(NewList());
}
IUnknownPtr MakeColumn() {
  return AddColumn(NewList(), u"a");
}
IUnknownPtr MakeRecord() {
  return NewRow(NewList());
}
IUnknownPtr MakeCursor() {
  return Open(NewList());
}

struct Kind {
  const char* name;
  IUnknownPtr (*make)();
  Guid iid;
};
void PrintTo(const Kind& row, std::ostream* out) {
  *out << row.name;
}

const Guid kOwnInterfaces[] = {IRecordList::kIid, IRecordListHeaders::kIid, IRecordListHeader::kIid,
                               IRecordListRecord::kIid, IRecordListCursor::kIid};

class ListIdentity : public testing::TestWithParam<Kind> {
 protected:
  ListIdentity() : object_(GetParam().make()) {}

  IUnknownPtr Query(const Guid& iid) { return As<IUnknown>(object_, iid); }

  IUnknownPtr object_;
};

TEST_P(ListIdentity, OffersItsOwnInterfaceAndNoneOfTheOthers) {
  for (const Guid& iid : kOwnInterfaces) {
    void* found = this;
    const HRESULT code = object_->QueryInterface(iid, &found);
    EXPECT_EQ(code, iid == GetParam().iid ? S_OK : E_NOINTERFACE) << std::hex << iid.data1;
    EXPECT_EQ(found != nullptr, iid == GetParam().iid) << std::hex << iid.data1;
    if (Succeeded(code)) object_->Release();
  }
}

TEST_P(ListIdentity, AnswersUnknownAlwaysWithTheSamePointer) {
  for (const Guid& iid : {IUnknown::kIid, GetParam().iid, ISupportErrorInfo::kIid}) {
    const IUnknownPtr face = Query(iid);
    ASSERT_NE(face, nullptr);
    void* unknown = nullptr;
    ASSERT_EQ(face->QueryInterface(IUnknown::kIid, &unknown), S_OK);
    EXPECT_EQ(unknown, static_cast<void*>(object_.get()));
    face->Release();
  }
}

TEST_P(ListIdentity, ErrorSupportLeadsBackToTheOwnInterface) {
  const IUnknownPtr support = Query(ISupportErrorInfo::kIid);
  void* own = nullptr;
  EXPECT_EQ(support->QueryInterface(GetParam().iid, &own), S_OK);
  EXPECT_NE(own, nullptr);
  object_->Release();
}

TEST_P(ListIdentity, QueryWithoutPlaceForTheAnswerIsRefused) {
  EXPECT_EQ(object_->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
  EXPECT_EQ(object_->QueryInterface(IRunnableObject::kIid, nullptr), E_POINTER);
}

TEST_P(ListIdentity, CountsAreReturned) {
  const std::uint32_t before = object_->AddRef();
  const IUnknownPtr support = Query(ISupportErrorInfo::kIid);
  EXPECT_EQ(support->AddRef(), before + 2);
  EXPECT_EQ(object_->Release(), before + 1);
  EXPECT_EQ(object_->Release(), before);
}

TEST_P(ListIdentity, OnlyTheOwnInterfaceLeavesErrorRecords) {
  const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(object_);
  ASSERT_NE(support, nullptr);
  for (const Guid& iid : kOwnInterfaces)
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(iid), iid == GetParam().iid ? S_OK : S_FALSE)
        << std::hex << iid.data1;
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IUnknown::kIid), S_FALSE);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(ISupportErrorInfo::kIid), S_FALSE);
}

// So that _com_issue_errorex takes the words along.
TEST_P(ListIdentity, WordsReachTheException) {
  LeaveStaleRecord();
  try {
    ThrowIfFailed(E_FAIL, object_.get(), GetParam().iid);
    FAIL() << "nothing was thrown";
  } catch (const _com_error& error) {
    EXPECT_EQ(Shown(error.Description()), "stale words");
  }
}

INSTANTIATE_TEST_SUITE_P(Objects, ListIdentity,
                         testing::Values(Kind{"List", MakeList, IRecordList::kIid},
                                         Kind{"Columns", MakeColumns, IRecordListHeaders::kIid},
                                         Kind{"Column", MakeColumn, IRecordListHeader::kIid},
                                         Kind{"Record", MakeRecord, IRecordListRecord::kIid},
                                         Kind{"Cursor", MakeCursor, IRecordListCursor::kIid}),
                         [](const testing::TestParamInfo<Kind>& row) { return std::string(row.param.name); });

TEST(RecordListClass, GivesTheInterfaceThatIsAskedFor) {
  void* made = nullptr;
  ASSERT_EQ(CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IUnknown::kIid, &made), S_OK);
  const IUnknownPtr object(static_cast<IUnknown*>(made), false);
  EXPECT_EQ(object->AddRef(), 2u);
  EXPECT_EQ(object->Release(), 1u);
}

TEST(RecordListClass, RefusesStrangeInterfacesAndMissingPlaces) {
  int stranger = 0;
  void* made = &stranger;
  EXPECT_EQ(CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IRecordListCursor::kIid, &made),
            E_NOINTERFACE);
  EXPECT_EQ(made, nullptr);
  EXPECT_EQ(CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IRecordList::kIid, nullptr), E_POINTER);
  EXPECT_EQ(CoCreateInstance(CLSID_RecordList, NewList().get(), CLSCTX_ALL, IUnknown::kIid, &made),
            CLASS_E_NOAGGREGATION);
}

TEST(RecordListClass, EachCreationMakesANewList) {
  const IRecordListPtr one = NewList();
  const IRecordListPtr other = NewList();
  EXPECT_NE(one, other);
  AddColumn(one, u"a");
  EXPECT_EQ(ColumnCount(other), 0);
}

TEST(RecordListClass, ColumnsAndEachColumnAreOneObject) {
  const IRecordListPtr list = NewList();
  const IRecordListHeaderPtr added = AddColumn(list, u"a");
  const IRecordListHeadersPtr columns = ColumnsOf(list);
  for (int i = 0; i < 200; ++i) AddColumn(list, u"b");
  EXPECT_EQ(ColumnAt(list, 0), added);
  EXPECT_EQ(ColumnsOf(list), columns);
}

// The three operations of IUnknown, then those of the interface in this order.
void ExpectPlaces(const void* query, std::initializer_list<const void*> operations) {
  std::ptrdiff_t place = PlaceOf(query) + 2 * kSlot;
  for (const void* operation : operations) EXPECT_EQ(PlaceOf(operation), place += kSlot);
}

TEST(RecordListPlaces, OfTheList) {
  const auto query = &IRecordList::QueryInterface;
  const auto newRecord = &IRecordList::NewRecord;
  const auto getHeaders = &IRecordList::GetHeaders;
  const auto openCursor = &IRecordList::OpenCursor;
  const auto setLocked = &IRecordList::SetLocked;
  ExpectPlaces(&query, {&newRecord, &getHeaders, &openCursor, &setLocked});
}

TEST(RecordListPlaces, OfTheColumns) {
  const auto query = &IRecordListHeaders::QueryInterface;
  const auto addHeader = &IRecordListHeaders::AddHeader;
  const auto getHeader = &IRecordListHeaders::GetHeader;
  const auto getCount = &IRecordListHeaders::GetCount;
  const auto setLocked = &IRecordListHeaders::SetLocked;
  ExpectPlaces(&query, {&addHeader, &getHeader, &getCount, &setLocked});
}

TEST(RecordListPlaces, OfAColumn) {
  const auto query = &IRecordListHeader::QueryInterface;
  const auto getDisplayName = &IRecordListHeader::GetDisplayName;
  const auto setDisplayName = &IRecordListHeader::SetDisplayName;
  const auto getName = &IRecordListHeader::GetName;
  const auto getType = &IRecordListHeader::GetType;
  ExpectPlaces(&query, {&getDisplayName, &setDisplayName, &getName, &getType});
}

TEST(RecordListPlaces, OfARecord) {
  const auto query = &IRecordListRecord::QueryInterface;
  const auto getValue = &IRecordListRecord::GetValue;
  const auto setValue = &IRecordListRecord::SetValue;
  const auto getHeaders = &IRecordListRecord::GetHeaders;
  const auto setLocked = &IRecordListRecord::SetLocked;
  ExpectPlaces(&query, {&getValue, &setValue, &getHeaders, &setLocked});
}

TEST(RecordListPlaces, OfACursor) {
  const auto query = &IRecordListCursor::QueryInterface;
  const auto hasMore = &IRecordListCursor::HasMore;
  const auto next = &IRecordListCursor::Next;
  ExpectPlaces(&query, {&hasMore, &next});
}

}  // namespace
}  // namespace qv
