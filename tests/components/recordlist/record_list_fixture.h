// A fresh list of the built-in class, and calls on it that are refused.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "components/recordlist/list_helpers.h"
#include "fixtures/counting_object.h"

namespace qv {

class RecordList : public testing::Test {
 protected:
  RecordList() { ClearErrorInfo(); }
  void TearDown() override {
    list_.reset();
    EXPECT_EQ(CountingObject::Live(), 0);
    ClearErrorInfo();
  }

  // The message of a failed GetHeader, which returns null.
  std::string GetHeaderFails(std::int32_t index, HRESULT code) {
    IRecordListHeader* column = reinterpret_cast<IRecordListHeader*>(this);
    EXPECT_EQ(ColumnsOf(list_)->GetHeader(index, &column), code);
    EXPECT_EQ(column, nullptr);
    return TakenWords();
  }
  // The message of a failed GetValue, which leaves the value as it was.
  static std::string GetValueFails(const IRecordListRecordPtr& row, std::int32_t index) {
    Variant value = Int(77);
    EXPECT_EQ(row->GetValue(index, &value), DISP_E_BADINDEX);
    EXPECT_EQ(value.Tag(), VT_INT);
    EXPECT_EQ(value.Data().intVal, 77);
    return TakenWords();
  }
  static std::string SetValueFails(const IRecordListRecordPtr& row, std::int32_t index, const Variant& value,
                                   HRESULT code) {
    EXPECT_EQ(row->SetValue(index, value), code);
    return TakenWords();
  }
  static std::string NextFails(const IRecordListCursorPtr& cursor) {
    IUnknown* record = reinterpret_cast<IUnknown*>(cursor.get());
    EXPECT_EQ(cursor->Next(&record), DISP_E_BADINDEX);
    EXPECT_EQ(record, nullptr);
    return TakenWords();
  }

  IRecordListPtr list_ = NewList();
};

}  // namespace qv
