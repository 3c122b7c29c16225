// Refused memory costs the serializer nothing that stays.
#include <malloc.h>

#include "fixtures/refused_memory.h"
#include "qvscriptwells/e_qv_exception.h"
#include "serializer_fixture.h"

namespace qv {
namespace {

class SerializerMemory : public SerializerFixture {
 protected:
  // Bytes in use after ten more refusals of the `number`-th allocation. Leaks show under AddressSanitizer
  // too, where this figure means nothing.
  std::size_t InUseAfterTen(long number) {
    for (int i = 0; i < 10; ++i) Refuse(number);
    return mallinfo2().uordblks;
  }
  // Whether that allocation was ever asked for.
  bool Refuse(long number) {
    CXMLSerializer serializer;
    RefuseAllocation(number, Refusal::kOne);
    try {
      serializer.Serialize(XmlNode(element_));
    } catch (const EQvException&) {
    }
    return StopRefusing() >= number;
  }

 private:
  xercesc::DOMElement* const element_ = Element(u"r", u"text");
};

TEST_F(SerializerMemory, RefusedAllocationLeavesNothingBehind) {
  long number = 1;
  for (; Refuse(number); ++number) {
    const std::size_t before = InUseAfterTen(number);
    EXPECT_EQ(InUseAfterTen(number), before) << "allocation " << number;
  }
  EXPECT_GT(number, 3);
}

}  // namespace
}  // namespace qv
