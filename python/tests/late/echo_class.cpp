// A class library with one class, for what the classes of the product do not do: a default property, values
// of every tag, errors with all that a record can hold.
#include <atomic>
#include <new>
#include <string_view>

#include "com/counted_object.h"
#include "qvscriptwells/class_factory.h"
#include "qvscriptwells/dispatch.h"

namespace {

using qv::HRESULT;
using qv::Variant;

constexpr qv::Guid kClass = qv::ParseGuid("3b2f7c11-9c1e-4a7d-8a55-0e6c5f1d2a90");

std::atomic<int> inUse{0};

HRESULT FillIn(qv::EXCEPINFO* record) {
  record->bstrDescription = u"filled in later";
  return qv::S_OK;
}

HRESULT Fail(qv::EXCEPINFO& record) {
  record.bstrSource = u"Echo.Class";
  record.bstrDescription = u"it is \u00E4u\u00DFerst \xD83D\xDE00 bad";
  record.scode = qv::DISP_E_EXCEPTION;
  return qv::DISP_E_EXCEPTION;
}

HRESULT FailLate(qv::EXCEPINFO& record) {
  record.pfnDeferredFillIn = &FillIn;
  return qv::E_FAIL;
}

// The value of a tag whose bytes are those of a whole number.
Variant Raw(const Variant& tag, const Variant& bytes) {
  qv::VariantData data;
  data.llVal = bytes.Data().llVal;
  if (bytes.Tag() == qv::VT_INT) data.llVal = bytes.Data().intVal;
  return Variant::FromRaw(static_cast<qv::VARTYPE>(tag.Data().intVal), data);
}

class Echo final : public qv::CountedObject<qv::IDispatch> {
 public:
  Echo() { ++inUse; }

  HRESULT GetTypeInfoCount(std::uint32_t*) noexcept override { return qv::E_NOTIMPL; }
  HRESULT GetTypeInfo(std::uint32_t, qv::LCID, qv::ITypeInfo**) noexcept override { return qv::E_NOTIMPL; }
  HRESULT GetIDsOfNames(const qv::Guid&, const char16_t* const* names, std::uint32_t count, qv::LCID,
                        qv::DISPID* ids) noexcept override {
    constexpr std::u16string_view kNames[] = {u"Same", u"Tag", u"Raw", u"Fail", u"Late"};
    if (count != 1) return qv::E_NOTIMPL;
    for (qv::DISPID i = 0; i < 5; ++i) {
      if (names[0] != kNames[i]) continue;
      *ids = i + 1;
      return qv::S_OK;
    }
    return qv::DISP_E_UNKNOWNNAME;
  }
  HRESULT Invoke(qv::DISPID id, const qv::Guid&, qv::LCID, std::uint16_t, const qv::DISPPARAMS* arguments,
                 Variant* result, qv::EXCEPINFO* failure, std::uint32_t*) noexcept override {
    const Variant* const given = arguments->rgvarg;
    switch (id) {
      case qv::DISPID_VALUE:
        *result = Variant::FromString(u"the default");
        return qv::S_OK;
      case 1:
        *result = given[0];
        return qv::S_OK;
      case 2:
        *result = Variant::FromInt(given[0].Tag());
        return qv::S_OK;
      case 3:
        *result = Raw(given[1], given[0]);
        return qv::S_OK;
      case 4:
        return Fail(*failure);
      default:
        return FailLate(*failure);
    }
  }

 private:
  ~Echo() override { --inUse; }
};

class Factory final : public qv::ComObject<qv::IClassFactory> {
 public:
  std::uint32_t AddRef() noexcept override { return static_cast<std::uint32_t>(++inUse); }
  std::uint32_t Release() noexcept override { return static_cast<std::uint32_t>(--inUse); }
  HRESULT CreateInstance(qv::IUnknown*, const qv::Guid& iid, void** object) noexcept override {
    *object = nullptr;
    const qv::IUnknownPtr made(new (std::nothrow) Echo);
    return made == nullptr ? qv::E_OUTOFMEMORY : made->QueryInterface(iid, object);
  }
  HRESULT LockServer(bool lock) noexcept override {
    lock ? ++inUse : --inUse;
    return qv::S_OK;
  }
};

Factory factory;

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

int DllMain(void*, std::uint32_t, void*) {
  return 1;
}

HRESULT DllGetClassObject(const qv::Guid& classId, const qv::Guid& iid, void** object) {
  if (classId != kClass) return qv::CLASS_E_CLASSNOTAVAILABLE;
  return factory.QueryInterface(iid, object);
}

HRESULT DllCanUnloadNow() {
  return inUse == 0 ? qv::S_OK : qv::S_FALSE;
}
}
#pragma GCC visibility pop
