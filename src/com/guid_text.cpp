#include "com/guid_text.h"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid.hpp>

#include <cstdio>

namespace qv {
namespace {

std::uint32_t BigEndian(const std::uint8_t* bytes, int count) noexcept {
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i) value = (value << 8) | bytes[i];
  return value;
}

Guid FromBytes(const boost::uuids::uuid& bytes) noexcept {
  Guid id{};
  id.data1 = BigEndian(bytes.data, 4);
  id.data2 = static_cast<std::uint16_t>(BigEndian(bytes.data + 4, 2));
  id.data3 = static_cast<std::uint16_t>(BigEndian(bytes.data + 6, 2));
  for (int i = 0; i < 8; ++i) id.data4[i] = bytes.data[8 + i];
  return id;
}

}  // namespace

HRESULT CoCreateGuid(Guid* id) noexcept {
  if (id == nullptr) return E_POINTER;
  *id = Guid{};
  try {
    *id = FromBytes(boost::uuids::random_generator()());
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

WideString StringFromIID(const Guid& id) {
  char text[39];
  const std::uint8_t* tail = id.data4;
  static_cast<void>(std::snprintf(text, sizeof(text), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                                  id.data1, id.data2, id.data3, tail[0], tail[1], tail[2], tail[3], tail[4],
                                  tail[5], tail[6], tail[7]));
  return FromUtf8(text);
}

}  // namespace qv
