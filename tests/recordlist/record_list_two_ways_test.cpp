// The reader and the writer reach a list of the built-in class in place, and any other list by its
// interfaces, cell by cell: both have the same results, and the same refusals.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "fixtures/calling_object.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_duration.h"
#include "fixtures/thrown.h"
#include "fixtures/variant_makers.h"
#include "fixtures/waiting_record.h"
#include "format/factory_fixture.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "recordlist/formater_record_list.h"
#include "recordlist/forwarding_list.h"
#include "recordlist/table_by_chance.h"

namespace qv {
namespace {

using Lines = std::vector<std::string>;

// All bits of a value; an object as what it is.
std::string BitsOf(const Variant& value) {
  std::string bits = std::to_string(value.Tag()) + " ";
  if (value.Tag() == VT_BSTR) return bits + Shown(value.Text());
  if (value.Object() == nullptr) return bits + std::to_string(value.Data().llVal);
  if (const IDurationRawPtr duration = As<IDurationRaw>(value.Object())) {
    WideString text;
    ThrowIfFailed(duration->GetText(&text));
    return bits + "duration " + Shown(text);
  }
  return bits + (As<IUrl>(value.Object()) == nullptr ? "object" : "url");
}

// The result of a call that a lock may refuse.
std::string Outcome(HRESULT code) {
  return Succeeded(code) ? "done" : TakenWords();
}

// A list of the built-in class, or one that forwards to it: columns, cells and locks.
class ListLines {
 public:
  explicit ListLines(const Variant& value) : list_(As<IRecordList>(value.Object())) {
    AddColumns();
    AddRows();
    AddLocks();
  }
  Lines Taken() { return std::move(lines_); }

 private:
  void AddColumns() {
    ThrowIfFailed(list_->GetHeaders(Put(headers_)));
    ThrowIfFailed(headers_->GetCount(&columns_));
    for (std::int32_t index = 0; index < columns_; ++index) {
      IRecordListHeaderPtr header;
      ThrowIfFailed(headers_->GetHeader(index, Put(header)));
      WideString name;
      WideString displayName;
      std::int32_t type = -1;
      ThrowIfFailed(header->GetName(&name));
      ThrowIfFailed(header->GetDisplayName(&displayName));
      ThrowIfFailed(header->GetType(&type));
      lines_.push_back(Shown(name) + " " + std::to_string(type) + " " + Shown(displayName));
    }
  }
  void AddRows() {
    IRecordListCursorPtr cursor;
    ThrowIfFailed(list_->OpenCursor(VARIANT_TRUE, Put(cursor)));
    for (VARIANT_BOOL more = VARIANT_TRUE; cursor->HasMore(&more) == S_OK && more != VARIANT_FALSE;) {
      IUnknownPtr next;
      ThrowIfFailed(cursor->Next(Put(next)));
      records_.push_back(As<IRecordListRecord>(next));
      lines_.push_back("row");
      for (std::int32_t index = 0; index < columns_; ++index) {
        Variant value;
        ThrowIfFailed(records_.back()->GetValue(index, &value));
        lines_.push_back(BitsOf(value));
      }
    }
  }
  void AddLocks() {
    lines_.push_back(Outcome(headers_->AddHeader(u"b", 1, nullptr)));
    ThrowIfFailed(list_->SetLocked(VARIANT_FALSE));
    lines_.push_back(Outcome(headers_->AddHeader(u"b", 1, nullptr)));
    for (const IRecordListRecordPtr& record : records_)
      lines_.push_back(Outcome(record->SetValue(0, Variant())));
  }

  IRecordListPtr list_;
  IRecordListHeadersPtr headers_;
  std::int32_t columns_ = 0;
  std::vector<IRecordListRecordPtr> records_;
  Lines lines_;
};

class RecordListTwoWays : public FactoryFixture {
 protected:
  void TearDown() override {
    EXPECT_EQ(CountingObject::Live(), 0);
    EXPECT_EQ(CallingObject::Live(), 0);
    EXPECT_EQ(FakeDuration::Live(), 0);
    ClearErrorInfo();
  }

  static Lines Read(const XmlNode& node) {
    Lines lines;
    const std::string thrown =
        Thrown([&] { lines = ListLines(FormaterRecordList().ReadValue(node)).Taken(); });
    lines.push_back(thrown);
    return lines;
  }
  // The text with its two ids left out, or what is thrown.
  static std::string Written(const IRecordListPtr& list) {
    std::string text;
    const std::string thrown =
        Thrown([&] { text = Shown(FormaterRecordList().WriteValue(Variant::FromObject(list.get()))); });
    for (std::size_t at = text.find("uuid:"); at != std::string::npos; at = text.find("uuid:", at))
      text.erase(at, std::string("uuid:").size() + 36);
    return text + thrown;
  }
  static IRecordListPtr Forwarding(const IRecordListPtr& list) {
    return IRecordListPtr(new ForwardingList(list));
  }

  // Writes the list that `make` makes, each time a new one, in both ways.
  template <class Make>
  static std::string WrittenTwoWays(const Make& make) {
    const std::string byInterfaces = Written(Forwarding(make()));
    EXPECT_EQ(TakenWords(), "no record");
    std::string inPlace = Written(make());
    EXPECT_EQ(TakenWords(), "no record");
    EXPECT_EQ(inPlace, byInterfaces);
    return inPlace;
  }
  // A list with a column of texts and one row, whose cell holds an object that makes the call when it is
  // counted.
  static IRecordListPtr ListWith(void (*onAddRef)(IRecordList*)) {
    IRecordListPtr list = CreateRecordList();
    IRecordListHeadersPtr headers;
    ThrowIfFailed(list->GetHeaders(Put(headers)));
    ThrowIfFailed(headers->AddHeader(u"a", kColumnString, nullptr));
    auto* const object = new CallingObject;
    ThrowIfFailed(AddRow(list.get())->SetValue(0, Variant::FromObject(object)));
    object->OnAddRef([onAddRef, raw = list.get()] { onAddRef(raw); });
    return list;
  }
  static IRecordListRecordPtr AddRow(IRecordList* list) {
    IUnknownPtr made;
    ThrowIfFailed(list->NewRecord(Put(made)));
    return As<IRecordListRecord>(made);
  }
};

TEST_F(RecordListTwoWays, TablesByChanceAreReadAlike) {
  TableByChance tables(20240305);
  const long count = RandomTexts(1000);
  long readable = 0;
  for (long left = count; left > 0; --left) {
    const std::u16string text = tables.Xml();
    const XmlText xml(text);
    const Lines inPlace = Read(xml.Root());
    const ForwardingClass forwarding;
    const Lines byInterfaces = Read(xml.Root());
    ASSERT_EQ(inPlace, byInterfaces) << Shown(WideString(text));
    readable += inPlace.back() == "nothing" ? 1 : 0;
  }
  EXPECT_GT(readable, count / 3) << "most tables are refused";
}

TEST_F(RecordListTwoWays, ListsByChanceAreWrittenAlike) {
  TableByChance tables(20240306);
  const long count = RandomTexts(3000);
  long writable = 0;
  for (long left = count; left > 0; --left) {
    const IRecordListPtr list = tables.List();
    const std::string inPlace = Written(list);
    ASSERT_EQ(inPlace, Written(Forwarding(list)));
    writable += inPlace.find("nothing") != std::string::npos ? 1 : 0;
  }
  EXPECT_GT(writable, count / 3) << "most lists are refused";
}

TEST_F(RecordListTwoWays, ObjectMayAddColumnsAndRowsWhileItIsWritten) {
  const std::string text = WrittenTwoWays([] {
    return ListWith([](IRecordList* list) {
      IRecordListHeadersPtr headers;
      ThrowIfFailed(list->GetHeaders(Put(headers)));
      for (int i = 0; i < 3; ++i) ThrowIfFailed(headers->AddHeader(u"b", kColumnInt, nullptr));
      ThrowIfFailed(AddRow(list)->SetValue(0, Text(u"added")));
    });
  });
  EXPECT_NE(text.find("<q1:Record><a/></q1:Record><q1:Record><a>added</a></q1:Record></q1:Records>"),
            std::string::npos)
      << text;
}

TEST_F(RecordListTwoWays, ObjectMayReplaceItselfWhileItIsWritten) {
  const std::string text = WrittenTwoWays([] {
    return ListWith([](IRecordList* list) {
      IRecordListCursorPtr cursor;
      ThrowIfFailed(list->OpenCursor(VARIANT_TRUE, Put(cursor)));
      IUnknownPtr row;
      ThrowIfFailed(cursor->Next(Put(row)));
      ThrowIfFailed(As<IRecordListRecord>(row)->SetValue(0, Text(u"replaced")));
    });
  });
  EXPECT_NE(text.find("<q1:Record><a/></q1:Record>"), std::string::npos) << text;
}

TEST_F(RecordListTwoWays, ErrorRecordOfAnObjectIsCleared) {
  WrittenTwoWays([] { return ListWith([](IRecordList*) { LeaveStaleRecord(); }); });
}

}  // namespace
}  // namespace qv
