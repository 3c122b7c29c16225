// What the five objects of a record list answer about themselves, and the slots of their operations.
#include <gtest/gtest.h>

#include "automation/slot_order.h"
#include "components/recordlist/list_helpers.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

struct Kind {
  const char* name;
  IUnknownPtr (*make)();
  Guid iid;
};
const Kind kKinds[] = {
    {"list", []() -> IUnknownPtr { return NewList(); }, IRecordList::kIid},
    {"columns", []() -> IUnknownPtr { return ColumnsOf(NewList()); }, IRecordListHeaders::kIid},
    {"column", []() -> IUnknownPtr { return AddColumn(NewList(), u"a"); }, IRecordListHeader::kIid},
    {"record", []() -> IUnknownPtr { return NewRow(NewList()); }, IRecordListRecord::kIid},
    {"cursor", []() -> IUnknownPtr { return Open(NewList()); }, IRecordListCursor::kIid},
};

// Runs the check for each kind of object, with a new one and the kind's interface.
void ForEachKind(void (*check)(const IUnknownPtr& object, const Guid& own)) {
  for (const Kind& kind : kKinds) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, kind.name);
    check(kind.make(), kind.iid);
  }
}

TEST(ListIdentity, OffersItsOwnInterfaceAndNoneOfTheOthers) {
  ForEachKind([](const IUnknownPtr& object, const Guid& own) {
    for (const Kind& kind : kKinds) {
      int stranger = 0;
      void* found = &stranger;
      const HRESULT code = object->QueryInterface(kind.iid, &found);
      EXPECT_EQ(code, kind.iid == own ? S_OK : E_NOINTERFACE) << kind.name;
      EXPECT_EQ(found != nullptr, kind.iid == own) << kind.name;
      if (Succeeded(code)) object->Release();
    }
  });
}

TEST(ListIdentity, UnknownIsOnePointerFromEverywhere) {
  ForEachKind([](const IUnknownPtr& object, const Guid& own) {
    for (const Guid& iid : {IUnknown::kIid, own, ISupportErrorInfo::kIid}) {
      const IUnknownPtr face = As<IUnknown>(object, iid);
      ASSERT_NE(face, nullptr);
      EXPECT_EQ(As<IUnknown>(face), object);
      EXPECT_NE(As<IUnknown>(face, own), nullptr);
    }
  });
}

TEST(ListIdentity, QueryWithoutOutputParameterIsRefused) {
  ForEachKind([](const IUnknownPtr& object, const Guid&) {
    EXPECT_EQ(object->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
    EXPECT_EQ(object->QueryInterface(IRunnableObject::kIid, nullptr), E_POINTER);
  });
}

TEST(ListIdentity, CountsAreReturned) {
  ForEachKind([](const IUnknownPtr& object, const Guid&) {
    const std::uint32_t before = object->AddRef();
    const IUnknownPtr support = As<IUnknown>(object, ISupportErrorInfo::kIid);
    EXPECT_EQ(support->AddRef(), before + 2);
    EXPECT_EQ(object->Release(), before + 1);
    EXPECT_EQ(object->Release(), before);
  });
}

TEST(ListIdentity, OnlyTheOwnInterfaceLeavesErrorRecords) {
  ForEachKind([](const IUnknownPtr& object, const Guid& own) {
    const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(object);
    ASSERT_NE(support, nullptr);
    for (const Kind& kind : kKinds)
      EXPECT_EQ(support->InterfaceSupportsErrorInfo(kind.iid), kind.iid == own ? S_OK : S_FALSE) << kind.name;
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IUnknown::kIid), S_FALSE);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(ISupportErrorInfo::kIid), S_FALSE);
  });
}

// So that _com_issue_errorex takes the record.
TEST(ListIdentity, MessageReachesTheException) {
  ForEachKind([](const IUnknownPtr& object, const Guid& own) {
    LeaveStaleRecord();
    try {
      ThrowIfFailed(E_FAIL, object.get(), own);
      FAIL() << "nothing was thrown";
    } catch (const _com_error& error) {
      EXPECT_EQ(Shown(error.Description()), "stale words");
    }
  });
}

TEST(RecordListClass, ReturnsTheRequestedInterface) {
  IUnknownPtr object;
  ASSERT_EQ(CoCreateInstance(CLSID_RecordList, nullptr, CLSCTX_ALL, IUnknown::kIid, Put(object)), S_OK);
  EXPECT_EQ(object->AddRef(), 2U);
  EXPECT_EQ(object->Release(), 1U);
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

// The operations follow the three of IUnknown in this order.
template <auto... kOperations>
void ExpectSlots(const char* name) {
  std::ptrdiff_t slot = 0;
  for (const std::ptrdiff_t found : SlotsOf<&IUnknown::Release, kOperations...>())
    EXPECT_EQ(found, slot++) << name;
}

TEST(RecordListSlots, AreInOrder) {
  using List = IRecordList;
  ExpectSlots<&List::NewRecord, &List::GetHeaders, &List::OpenCursor, &List::SetLocked>("list");
  using Columns = IRecordListHeaders;
  ExpectSlots<&Columns::AddHeader, &Columns::GetHeader, &Columns::GetCount, &Columns::SetLocked>("columns");
  using Column = IRecordListHeader;
  ExpectSlots<&Column::GetDisplayName, &Column::SetDisplayName, &Column::GetName, &Column::GetType>("column");
  using Record = IRecordListRecord;
  ExpectSlots<&Record::GetValue, &Record::SetValue, &Record::GetHeaders, &Record::SetLocked>("record");
  ExpectSlots<&IRecordListCursor::HasMore, &IRecordListCursor::Next>("cursor");
}

}  // namespace
}  // namespace qv
