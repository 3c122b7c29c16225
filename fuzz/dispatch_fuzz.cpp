// Makes the late-binding calls of a script host, on all ten interfaces, one after another on the same
// objects. There must be no crash, undefined behaviour or leaked object, and the reported number of a bad
// argument must be one that the caller passed. Nothing is sent over the network. Input: for each call the
// interface, id, flags, counts and which pointers are null, then the named ids, then the arguments: a kind,
// and a text or eight bytes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "com/module.h"
#include "format/formater_factory.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/http_component.h"
#include "qvscriptwells/simple_host.h"
#include "qvscriptwells/xml_library_hold.h"
#include "recordlist/register_formaters.h"

namespace {

constexpr std::size_t kMostCalls = 64;
constexpr std::uint32_t kUntouched = 0xCAFE;

void Require(bool holds) {
  if (!holds) std::abort();
}

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool IsEmpty() const { return size_ == 0; }
  // Zeros after the end.
  void Take(void* place, std::size_t count) {
    std::memset(place, 0, count);
    const std::size_t there = std::min(count, size_);
    if (there != 0) std::memcpy(place, data_, there);
    data_ += there;
    size_ -= there;
  }
  std::uint8_t Byte() {
    std::uint8_t byte = 0;
    Take(&byte, 1);
    return byte;
  }
  // Small numbers in one byte; any number after 0x7F.
  qv::DISPID Id() {
    const std::uint8_t byte = Byte();
    qv::DISPID id = byte < 0x80 ? byte : byte - 0x100;
    if (byte == 0x7F) Take(&id, sizeof id);
    return id;
  }
  std::u16string Text() {
    std::u16string text(Byte() % 32, u'\0');
    for (char16_t& unit : text) {
      unit = Byte();
      if (unit == 0xFF) Take(&unit, sizeof unit);
    }
    return text;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

qv::Variant Raw(qv::VARTYPE tag, const qv::VariantData& data) {
  return qv::Variant::FromRaw(tag, data);
}

qv::HRESULT RefuseHttp(const qv::Guid&, void** object) {
  *object = nullptr;
  return qv::E_FAIL;
}

// Destroying a model empties the table of types, so it is filled for each input.
void FillTypes() {
  qv::RegisterFormaters();
  static const qv::FormaterFactory kept = *qv::FormaterFactory::Instance();
  *qv::FormaterFactory::Instance() = kept;
}

qv::IDispatchPtr Asked(qv::IUnknown* object, const qv::Guid& iid) {
  return qv::As<qv::IDispatch>(object, iid);
}

// The objects of one input, and what arguments may point to. All pointers stay valid to the end.
class Host {
 public:
  Host();
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  qv::IDispatch* Face(std::size_t number) const { return faces_[number % std::size(faces_)].get(); }
  qv::Variant Argument(Input* input);

 private:
  qv::Variant Object(std::uint8_t number) const;
  qv::Variant Pointer(std::uint8_t number);

  std::int32_t before_ = qv::ModuleLocks();
  std::int64_t words_[2] = {0x0123456789ABCDEF, 0};
  qv::Variant value_ = qv::Variant::FromShort(4);
  qv::Variant loop_;
  qv::BStr text_ = qv::AllocString(u"17", 2);
  qv::BStr noText_ = nullptr;
  qv::IUnknown* object_ = nullptr;
  qv::IQvServiceProviderPtr provider_;
  qv::IParameterPtr parameter_;
  qv::IParametersPtr parameters_;
  qv::IDispatchPtr faces_[10];
};

Host::Host() {
  qv::VariantData self;
  self.byref = &loop_;
  loop_ = Raw(qv::VT_BYREF | qv::VT_VARIANT, self);
  const qv::IQvClientServicesPtr services = qv::CreateSimpleHost({u"user", u"database", u"replica", u""});
  provider_ = qv::CreateSimpleServiceProvider(services.get());
  parameter_ = qv::CreateParameter();
  parameters_ = qv::CreateParameters();
  const qv::IQvScriptwellsPtr client = qv::CreateQvScriptwells();
  const qv::IConnectionStringPtr login = qv::CreateConnectionString();
  object_ = parameters_.get();
  faces_[0] = client;
  faces_[1] = Asked(client.get(), qv::IQvClientServiceRaw::kIid);
  faces_[2] = qv::CreateConnectionModel(u"http://srv", u"", services.get());
  faces_[3] = login;
  faces_[4] = Asked(login.get(), qv::IConnectionStringRaw::kIid);
  faces_[5] = qv::CreateDuration();
  faces_[6] = qv::CreateUrl();
  faces_[7] = qv::CreateAttachedFile();
  faces_[8] = parameter_;
  faces_[9] = parameters_;
}

// A list that contains itself would leak.
Host::~Host() {
  parameters_->Clear();
  parameter_->SetValues(u"", qv::Variant());
  for (qv::IDispatchPtr& face : faces_) face.reset();
  parameters_.reset();
  parameter_.reset();
  qv::FreeString(text_);
  Require(qv::ModuleLocks() == before_);
}

qv::Variant Host::Argument(Input* input) {
  constexpr qv::VARTYPE kNumbers[] = {qv::VT_I2,   qv::VT_I4,  qv::VT_R4,     qv::VT_R8,   qv::VT_DATE,
                                      qv::VT_BOOL, qv::VT_I1,  qv::VT_UI1,    qv::VT_UI2,  qv::VT_UI4,
                                      qv::VT_I8,   qv::VT_UI8, qv::VT_INT,    qv::VT_UINT, qv::VT_EMPTY,
                                      qv::VT_NULL, 0x0FFE,     qv::VT_VARIANT};
  const std::uint8_t kind = input->Byte();
  if (kind < 0x40) return qv::Variant::FromString(qv::WideString(input->Text()));
  if (kind < 0x80) return Object(kind);
  if (kind < 0xA0) return Pointer(kind);
  qv::VariantData data;
  const qv::VARTYPE tag = kNumbers[kind % std::size(kNumbers)];
  input->Take(&data, sizeof data);
  return Raw(tag, data);
}

qv::Variant Host::Object(std::uint8_t number) const {
  const std::uint8_t place = number % 16;
  qv::IDispatch* const face = place < std::size(faces_) ? faces_[place].get() : nullptr;
  if (place == std::size(faces_)) return qv::Variant::FromObject(provider_.get());
  return number % 32 < 16 ? qv::FromDispatch(face) : qv::Variant::FromObject(face);
}

qv::Variant Host::Pointer(std::uint8_t number) {
  struct Target {
    qv::VARTYPE tag;
    void* place;
  };
  const Target targets[] = {
      {qv::VT_VARIANT, &value_},  {qv::VT_VARIANT, &loop_},    {qv::VT_VARIANT, nullptr},
      {qv::VT_BSTR, &text_},      {qv::VT_BSTR, &noText_},     {qv::VT_BSTR, nullptr},
      {qv::VT_UNKNOWN, &object_}, {qv::VT_DISPATCH, &object_}, {qv::VT_I2, words_},
      {qv::VT_R8, words_},        {qv::VT_UI8, words_ + 1}};
  const Target& target = targets[number % std::size(targets)];
  qv::VariantData data;
  data.byref = target.place;
  return Raw(static_cast<qv::VARTYPE>(qv::VT_BYREF | target.tag), data);
}

struct Arguments {
  std::vector<qv::DISPID> ids;
  std::vector<qv::Variant> values;
  qv::DISPPARAMS block;
};

void FillArguments(Host* host, Input* input, Arguments* arguments) {
  const std::uint8_t counts = input->Byte();
  arguments->ids.resize(counts / 16 % 6);
  for (qv::DISPID& id : arguments->ids) id = input->Id();
  // Values of odd tags cannot be copied, so they are created in place.
  arguments->values.resize(counts % 6);
  for (qv::Variant& value : arguments->values) value = host->Argument(input);
  arguments->block.cArgs = static_cast<std::uint32_t>(arguments->values.size());
  arguments->block.cNamedArgs = static_cast<std::uint32_t>(arguments->ids.size());
  arguments->block.rgvarg = arguments->values.data();
  arguments->block.rgdispidNamedArgs = arguments->ids.data();
}

// Output parameters that are null, one for each bit.
enum Missing : std::uint8_t { kResult = 1, kFailure = 2, kIndex = 4, kValues = 8, kIds = 16, kBlock = 32 };

void Call(Host* host, Input* input, qv::IDispatch* face) {
  const qv::DISPID id = input->Id();
  std::uint16_t flags = input->Byte();
  if (flags == 0xFF) input->Take(&flags, sizeof flags);
  const std::uint8_t missing = input->Byte();
  Arguments arguments;
  FillArguments(host, input, &arguments);
  if ((missing & kValues) != 0) arguments.block.rgvarg = nullptr;
  if ((missing & kIds) != 0) arguments.block.rgdispidNamedArgs = nullptr;
  qv::Variant result;
  qv::EXCEPINFO failure;
  std::uint32_t index = kUntouched;
  const qv::HRESULT code = face->Invoke(
      id, qv::Guid{}, 0, flags, (missing & kBlock) != 0 ? nullptr : &arguments.block,
      (missing & kResult) != 0 ? nullptr : &result, (missing & kFailure) != 0 ? nullptr : &failure,
      (missing & kIndex) != 0 ? nullptr : &index);
  Require(failure.scode == 0 || failure.scode == code);
  Require(index == kUntouched || index < arguments.block.cArgs + arguments.block.cNamedArgs);
}

void Ask(Input* input, qv::IDispatch* face) {
  const std::u16string name = input->Text();
  const char16_t* const names[] = {name.c_str(), nullptr};
  qv::DISPID ids[] = {-7, -7};
  face->GetIDsOfNames(qv::Guid{}, names, 2, 0, ids);
  Require(ids[1] == -7);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  static const qv::ClassCreator http = qv::RegisterClassCreator(qv::CLSID_HttpComponent, &RefuseHttp);
  Require(http != nullptr);
  FillTypes();
  Input input(data, size);
  Host host;
  for (std::size_t call = 0; call < kMostCalls && !input.IsEmpty(); ++call) {
    const std::uint8_t choice = input.Byte();
    qv::IDispatch* const face = host.Face(choice % 16);
    if (choice >= 0xF0)
      Ask(&input, face);
    else
      Call(&host, &input, face);
  }
  return 0;
}
