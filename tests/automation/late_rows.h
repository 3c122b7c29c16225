// Tables of late-bound calls of noting objects, and what comes of each.
#pragma once

#include <gtest/gtest.h>

#include "automation/noting_faces.h"

namespace qv {

struct LateRow {
  std::string name;
  Face face;
  DISPID id;
  int flags;
  std::vector<Variant> block;  // the last argument first
  HRESULT code;
  std::uint32_t index;
  const char* noted;  // null: nothing ran
  std::vector<DISPID> named{};

  LateRow& Named(const std::vector<DISPID>& ids) {
    named = ids;
    return *this;
  }
};

inline LateRow Taken(const std::string& name, Face face, DISPID id, int flags,
                     const std::vector<Variant>& block, const char* noted) {
  return {name, face, id, flags, block, S_OK, kUntouchedIndex, noted};
}
inline LateRow Refused(const std::string& name, Face face, DISPID id, int flags,
                       const std::vector<Variant>& block, HRESULT code,
                       std::uint32_t index = kUntouchedIndex) {
  return {name, face, id, flags, block, code, index, nullptr};
}

inline void ExpectRows(const std::vector<LateRow>& rows) {
  for (const LateRow& row : rows) {
    SCOPED_TRACE(NameOf(row.face) + " " + std::to_string(row.id) + " " + row.name);
    Script script;
    const IDispatchPtr object = MakeNoting(row.face, &script);
    LateCall call(object.get(), row.id, static_cast<std::uint16_t>(row.flags));
    EXPECT_EQ(ShownCode(call.WithBlock(row.block).Named(row.named).Run()), ShownCode(row.code));
    EXPECT_EQ(call.index, row.index);
    ASSERT_EQ(script.calls.size(), row.noted == nullptr ? 0U : 1U);
    if (row.noted == nullptr) {
      EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
    } else {
      EXPECT_EQ(script.calls[0], row.noted);
    }
    EXPECT_TRUE(call.FailureUntouched());
  }
}

}  // namespace qv
