// Whatever a host passes to Invoke and GetIDsOfNames: no crash, no leak, no result without sense. Every run
// draws the same numbers.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "automation/noting_faces.h"
#include "com/module.h"
#include "fixtures/counting_object.h"
#include "fixtures/fake_host.h"
#include "fixtures/fake_http.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "variant/valued_object.h"

namespace qv {
namespace {

constexpr int kCallsOfEachFace = 4000;

// Memory that by-reference values point to. It has to outlive the values.
struct Targets {
  std::int64_t words[2] = {0x0123456789ABCDEF, 0};
  Variant value = Variant::FromShort(4);
  Variant chain;
  Variant loop;
  BStr text = AllocString(u"17", 2);
  BStr nullText = nullptr;
  IUnknown* object = nullptr;
  ~Targets() { FreeString(text); }
};

class RandomHost {
 public:
  explicit RandomHost(std::uint32_t seed) : random_(seed) {
    targets_.chain = Pointer(VT_VARIANT, &targets_.value);
    targets_.loop = Pointer(VT_VARIANT, &targets_.loop);
    targets_.object = &stranger_;
  }

  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  DISPID Id() {
    if (Below(8) != 0) return Below(12);
    constexpr DISPID kOdd[] = {-1, -3, -2147483647 - 1, 2147483647, 0x10001, 255};
    return kOdd[Below(6)];
  }
  std::uint16_t Flags() {
    constexpr int kUsual[] = {0, 1, 2, 4, 8, 6, 3};
    return static_cast<std::uint16_t>(Below(8) == 0 ? Below(0x10000) : kUsual[Below(7)]);
  }

  Variant Value() {
    const int kind = Below(6);
    if (kind == 0) return Text(RandomText());
    if (kind == 1) return Object();
    if (kind == 2) return ByReference();
    return kind == 3 ? Odd() : Number();
  }

 private:
  std::u16string RandomText() {
    constexpr const char16_t* kTexts[] = {u"",     u"12",    u"-3",         u"abc",
                                          u"True", u"1e400", u"http://a/b", u"99999"};
    std::u16string text = kTexts[Below(8)];
    if (Below(4) == 0)
      for (int length = Below(40); length > 0; --length) text += static_cast<char16_t>(Below(0x10000));
    return text;
  }
  Variant Object() {
    if (Below(3) == 0) return FromDispatch(nullptr);
    if (Below(3) == 0) return Variant::FromObject(nullptr);
    if (Below(2) == 0) return FromDispatch(CreateParameters().get());
    return Variant::FromObject(&stranger_);
  }
  Variant ByReference() {
    const Variant pointers[] = {
        Pointer(VT_VARIANT, &targets_.value),  Pointer(VT_VARIANT, &targets_.chain),
        Pointer(VT_VARIANT, &targets_.loop),   Pointer(VT_VARIANT, nullptr),
        Pointer(VT_BSTR, &targets_.text),      Pointer(VT_BSTR, &targets_.nullText),
        Pointer(VT_UNKNOWN, &targets_.object), Pointer(VT_DISPATCH, &targets_.object)};
    const int chosen = Below(9);
    return chosen < 8 ? pointers[chosen] : Scalar(VT_BYREF);
  }
  // A tag of a number, plain or as a pointer to eight bytes.
  Variant Scalar(VARTYPE how) {
    constexpr VARTYPE kTags[] = {VT_I2,  VT_I4,  VT_R4,  VT_R8, VT_DATE, VT_BOOL, VT_I1,
                                 VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8,  VT_INT,  VT_UINT};
    const VARTYPE tag = kTags[Below(14)];
    if (how == VT_BYREF) return Pointer(tag, targets_.words);
    VariantData data;
    data.ullVal = random_() | static_cast<std::uint64_t>(random_()) << 32;
    if (Below(3) == 0) data.llVal = Below(10);
    return Variant::FromRaw(tag, data);
  }
  Variant Number() {
    constexpr double kReals[] = {0, -0.5, 1.5, 1e300, -1e300, 32768, 0.5};
    if (Below(8) == 0) return R8(std::numeric_limits<double>::quiet_NaN());
    if (Below(8) == 0) return R8(std::numeric_limits<double>::infinity());
    if (Below(3) == 0) return R8(kReals[Below(7)]);
    return Scalar(0);
  }
  // Tags that nobody knows, without content to own.
  Variant Odd() {
    if (Below(3) == 0) return Variant();
    if (Below(3) == 0) return Variant::Null();
    int tag = Below(0x10000);
    if (tag == VT_BSTR || tag == VT_DISPATCH || tag == VT_UNKNOWN || (tag & VT_BYREF) != 0) tag = 0x0FFE;
    VariantData data;
    data.llVal = Below(1000);
    return Variant::FromRaw(static_cast<VARTYPE>(tag), data);
  }

  std::mt19937 random_;
  ValuedObject stranger_{Text(u"12")};
  Targets targets_;
};

// Arguments of unknown tags cannot be copied, so the block is built in its place.
struct Block {
  std::vector<Variant> values;
  std::vector<DISPID> ids;
  DISPPARAMS parameters;

  Block(RandomHost* host, int most) {
    const int count = host->Below(most + 2);
    values.resize(static_cast<std::size_t>(count));
    for (Variant& value : values) value = host->Value();
    constexpr DISPID kIds[] = {0, 1, -3, 2, -1, 2147483647, -2147483647 - 1};
    if (host->Below(3) == 0)
      for (int named = host->Below(count + 3); named > 0; --named) ids.push_back(kIds[host->Below(7)]);
    parameters.rgvarg = values.empty() ? nullptr : values.data();
    parameters.cArgs = static_cast<std::uint32_t>(count);
    parameters.rgdispidNamedArgs = ids.empty() ? nullptr : ids.data();
    parameters.cNamedArgs = static_cast<std::uint32_t>(ids.size());
  }
};

bool IsResultTag(VARTYPE tag) {
  return tag == VT_EMPTY || tag == VT_I2 || tag == VT_I4 || tag == VT_R8 || tag == VT_BSTR ||
         tag == VT_BOOL || tag == VT_DISPATCH;
}

// `skipped` is an id that is not called.
void CallOften(IDispatch* object, std::uint32_t seed, bool anyResult, DISPID skipped = 12) {
  RandomHost host(seed);
  for (int i = 0; i < kCallsOfEachFace; ++i) {
    const Block block(&host, 4);
    const DISPID id = host.Id();
    if (id == skipped) continue;
    const std::uint16_t flags = host.Flags();
    Variant result = Text(u"before");
    EXCEPINFO failure;
    std::uint32_t index = kUntouchedIndex;
    const bool wanted = host.Below(4) != 0;
    const HRESULT code =
        object->Invoke(id, Guid{}, 0, flags, host.Below(50) == 0 ? nullptr : &block.parameters,
                       wanted ? &result : nullptr, wanted ? &failure : nullptr, wanted ? &index : nullptr);
    if (!anyResult) {
      ASSERT_TRUE(IsResultTag(result.Tag())) << id << " " << flags << " tag " << result.Tag();
    }
    if (!anyResult && result.Tag() == VT_BOOL) {
      ASSERT_TRUE(result.Data().boolVal == 0 || result.Data().boolVal == -1);
    }
    if (wanted && index != kUntouchedIndex) {
      ASSERT_TRUE(code == DISP_E_TYPEMISMATCH || code == DISP_E_PARAMNOTFOUND) << ShownCode(code);
      ASSERT_LT(index, block.parameters.cArgs + block.parameters.cNamedArgs);
    }
    if (wanted && code == DISP_E_TYPEMISMATCH) {
      ASSERT_NE(index, kUntouchedIndex) << id << " " << flags;
    }
    if (failure.scode != 0) {
      ASSERT_EQ(failure.scode, code);
    }
  }
}

TEST(DispatchRandom, NotingObjectsTakeAnything) {
  for (const FaceRow& row : kFaces) {
    SCOPED_TRACE(row.name);
    {
      Script script;
      script.text = u"t";
      script.shortValue = -1;
      const IDispatchPtr object = row.make(&script);
      CallOften(object.get(), 1000U + static_cast<std::uint32_t>(row.face), false);
      EXPECT_GT(script.calls.size(), 10U);
      EXPECT_EQ(object->AddRef(), 2U);
      object->Release();
    }
    EXPECT_EQ(Noting::Live(), 0);
    EXPECT_EQ(CountingObject::Live(), 0);
    EXPECT_EQ(ModuleLocks(), 0);
  }
}

// The objects of the library. The list is emptied now and then, so that it stays small.
TEST(DispatchRandom, ObjectsTakeAnything) {
  const std::int32_t before = ModuleLocks();
  {
    const FakeHttp http;
    const FakeHostPtr host(new FakeHost);
    const IConnectionModelPtr model = CreateConnectionModel(u"http://srv", u"", host->Unknown());
    CallOften(model.get(), 1, true, 7);  // DownloadFile would make directories
    CallOften(CreateQvScriptwells().get(), 2, false);
    CallOften(CreateConnectionString().get(), 3, false);
    CallOften(CreateDuration().get(), 4, false);
    CallOften(CreateUrl().get(), 5, false);
    CallOften(CreateAttachedFile().get(), 6, false);
    CallOften(CreateParameters().get(), 7, false);
    const IUnknownPtr client = CreateQvScriptwells();
    const IQvClientServiceRawPtr raw = As<IQvClientServiceRaw>(client);
    CallOften(raw.get(), 8, false);
  }
  EXPECT_EQ(ModuleLocks(), before);
  EXPECT_EQ(CountingObject::Live(), 0);
  EXPECT_EQ(FakeHost::Live(), 0);
}

TEST(DispatchRandom, ParameterTakesAnything) {
  // Holds whatever it was given, so its values have to go before what they point to.
  const std::int32_t before = ModuleLocks();
  {
    const IParameterPtr parameter = CreateParameter();
    CallOften(parameter.get(), 9, true);
    EXPECT_EQ(parameter->SetValues(u"", Variant()), S_OK);
  }
  EXPECT_EQ(ModuleLocks(), before);
  EXPECT_EQ(CountingObject::Live(), 0);
}

TEST(DispatchRandom, NamesTakeAnything) {
  RandomHost host(10);
  Script script;
  for (const FaceRow& row : kFaces) {
    const IDispatchPtr object = row.make(&script);
    for (int i = 0; i < 2000; ++i) {
      std::u16string text;
      for (int length = host.Below(30); length > 0; --length)
        text += static_cast<char16_t>(host.Below(0x10000));
      const char16_t* names[] = {text.c_str(), text.c_str()};
      DISPID ids[] = {-7, -7};
      EXPECT_EQ(object->GetIDsOfNames(Guid{}, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
      EXPECT_EQ(ids[1], -7);
    }
  }
}

}  // namespace
}  // namespace qv
