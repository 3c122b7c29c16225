// Collects a formatter's bytes in memory: each byte becomes one unit, without decoding.
#pragma once

#include <memory>
#include <string_view>

#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/framework/XMLFormatter.hpp>

namespace qv {

class MemBufFormatTarget : public XERCES_CPP_NAMESPACE_QUALIFIER XMLFormatTarget {
 public:
  // Takes ownership of an empty buffer.
  explicit MemBufFormatTarget(std::unique_ptr<XERCES_CPP_NAMESPACE_QUALIFIER XMLBuffer> buffer)
      : buffer_(std::move(buffer)) {}

  void writeChars(const XMLByte* bytes, XMLSize_t count,
                  XERCES_CPP_NAMESPACE_QUALIFIER XMLFormatter* formatter) override;

  // Appends units whose values are bytes.
  void Append(std::u16string_view units);

  // All units so far. Borrowed until the next write.
  std::u16string_view view() const;

  // Initial capacity in units.
  static constexpr XMLSize_t kCapacity = 0x4000;

 private:
  std::unique_ptr<XERCES_CPP_NAMESPACE_QUALIFIER XMLBuffer> buffer_;
};

}  // namespace qv
