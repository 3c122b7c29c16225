// What a late-bound call costs: no memory but the result's own.
#include <gtest/gtest.h>

#include "fixtures/scarce_memory.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

TEST(DispatchCost, ReadingATextByIdSharesTheText) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  const WideString server(u"http://127.0.0.1:8080");
  client->put_ServerName(server);
  const DISPPARAMS none;
  Variant text;
  ASSERT_EQ(client->Invoke(7, Guid{}, 0, DISPATCH_PROPERTYGET, &none, &text, nullptr, nullptr), S_OK);
  EXPECT_EQ(text.Text().data(), server.data());
  const std::size_t before = HeapBlocks();
  for (int i = 0; i < 1000; ++i)
    client->Invoke(7, Guid{}, 0, DISPATCH_PROPERTYGET, &none, &text, nullptr, nullptr);
  EXPECT_EQ(HeapBlocks(), before);
}

TEST(DispatchCost, FindingAnIdTakesNoMemory) {
  const IDurationPtr duration = CreateDuration();
  const char16_t* const name = u"PUT_NEGATIVE";
  DISPID id = 0;
  const std::size_t before = HeapBlocks();
  for (int i = 0; i < 1000; ++i) duration->GetIDsOfNames(Guid{}, &name, 1, 0, &id);
  EXPECT_EQ(HeapBlocks(), before);
  EXPECT_EQ(id, 9);
}

TEST(DispatchCost, MakingAnObjectIsCounted) {
  const std::size_t before = HeapBlocks();
  const IDurationPtr duration = CreateDuration();
  EXPECT_EQ(HeapBlocks(), before + 1);
}

}  // namespace
}  // namespace qv
