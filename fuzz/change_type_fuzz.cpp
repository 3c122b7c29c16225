// Feeds the change of type with values as a late-binding host may hand them over. Nothing may crash or be
// undefined; a failure leaves the destination alone, a success gives the wanted tag, and the same again.
// Input: target tag and source tag with two bytes each, how to point at the value (one byte), then the value:
// eight bytes of numbers, or UTF-16 text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/variant.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Answers or refuses as the input says; lives on the stack.
class Object final : public qv::IDispatch {
 public:
  explicit Object(bool answers) : answers_(answers) {}
  qv::HRESULT QueryInterface(const qv::Guid&, void** object) noexcept override {
    *object = answers_ ? static_cast<qv::IDispatch*>(this) : nullptr;
    if (!answers_) return qv::E_NOINTERFACE;
    AddRef();
    return qv::S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++count; }
  std::uint32_t Release() noexcept override { return --count; }
  qv::HRESULT GetTypeInfoCount(std::uint32_t*) noexcept override { return qv::E_NOTIMPL; }
  qv::HRESULT GetTypeInfo(std::uint32_t, qv::LCID, qv::ITypeInfo**) noexcept override {
    return qv::E_NOTIMPL;
  }
  qv::HRESULT GetIDsOfNames(const qv::Guid&, const char16_t* const*, std::uint32_t, qv::LCID,
                            qv::DISPID*) noexcept override {
    return qv::E_NOTIMPL;
  }
  qv::HRESULT Invoke(qv::DISPID, const qv::Guid&, qv::LCID, std::uint16_t, const qv::DISPPARAMS*,
                     qv::Variant*, qv::EXCEPINFO*, std::uint32_t*) noexcept override {
    return qv::E_NOTIMPL;
  }

  std::uint32_t count = 1;

 private:
  bool answers_;
};

qv::Variant Made(qv::VARTYPE tag, const std::uint8_t* data, std::size_t size, Object* object) {
  if (tag == qv::VT_BSTR) {
    std::u16string text(size / 2, u'\0');
    if (!text.empty()) std::memcpy(text.data(), data, text.size() * 2);
    return qv::Variant::FromString(qv::WideString(text));
  }
  if (tag == qv::VT_UNKNOWN) return qv::Variant::FromObject(object);
  if (tag == qv::VT_DISPATCH) return qv::FromDispatch(object);
  qv::VariantData bytes;
  // A pointer of the input's choice would be no value of any host.
  if ((tag & qv::VT_BYREF) == 0 && size != 0) std::memcpy(&bytes, data, size < 8 ? size : 8);
  return qv::Variant::FromRaw(tag, bytes);
}

qv::Variant Pointing(const qv::Variant& value, unsigned way) {
  qv::VariantData pointer;
  // A pointer under VT_VARIANT would promise a whole Variant where only its value stands.
  if (way % 3 == 1 && value.Tag() != qv::VT_VARIANT && (value.Tag() & qv::VT_BYREF) == 0) {
    pointer.byref = const_cast<qv::VariantData*>(&value.Data());
    // The number of a decimal fills the Variant from its first byte on.
    if (value.Tag() == qv::VT_DECIMAL) pointer.byref = const_cast<qv::Variant*>(&value);
    return qv::Variant::FromRaw(static_cast<qv::VARTYPE>(qv::VT_BYREF | value.Tag()), pointer);
  }
  pointer.byref = const_cast<qv::Variant*>(&value);
  return qv::Variant::FromRaw(static_cast<qv::VARTYPE>(qv::VT_BYREF | qv::VT_VARIANT), pointer);
}

bool Same(const qv::Variant& a, const qv::Variant& b) {
  if (a.Tag() != b.Tag()) return false;
  return a.Tag() == qv::VT_BSTR ? a.Text() == b.Text() : a.Data().llVal == b.Data().llVal;
}

void Look(const qv::Variant& source, qv::VARTYPE target) {
  Object old(true);
  qv::Variant destination = qv::Variant::FromObject(&old);
  const qv::HRESULT code = qv::VariantChangeType(&destination, source, target);
  Require(code != qv::E_OUTOFMEMORY && code <= 0);
  if (qv::Failed(code)) {
    Require(destination.Object() == &old && old.count == 2);
    return;
  }
  Require(destination.Tag() == target && old.count == 1);
  qv::Variant again;
  Require(qv::VariantChangeType(&again, source, target) == qv::S_OK && Same(again, destination));
  Require(qv::VariantChangeType(&again, again, target) == qv::S_OK && Same(again, destination));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 5) return 0;
  const auto target = static_cast<qv::VARTYPE>(data[0] | data[1] << 8);
  const auto tag = static_cast<qv::VARTYPE>(data[2] | data[3] << 8);
  const unsigned way = data[4];
  Object object(way < 128);
  {
    const qv::Variant value = Made(tag, data + 5, size - 5, &object);
    if (way % 3 == 0)
      Look(value, target);
    else
      Look(Pointing(value, way), target);
  }
  Require(object.count == 1);
  return 0;
}
