// What every object of the library answers about itself: its interfaces, its count, and the operations of
// late binding that need no member.
#include <gtest/gtest.h>

#include <algorithm>

#include "automation/late_call.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/http_component.h"

namespace qv {
namespace {

struct Known {
  const char* name;
  Guid iid;
};
const Known kEverything[] = {{"IQvScriptwells", IQvScriptwells::kIid},
                             {"IQvClientServiceRaw", IQvClientServiceRaw::kIid},
                             {"IConnectionModel", IConnectionModel::kIid},
                             {"IConnectionModelRaw", IConnectionModelRaw::kIid},
                             {"IConnectionString", IConnectionString::kIid},
                             {"IConnectionStringRaw", IConnectionStringRaw::kIid},
                             {"IDuration", IDuration::kIid},
                             {"IDurationRaw", IDurationRaw::kIid},
                             {"IUrl", IUrl::kIid},
                             {"IAttachedFile", IID_IAttachedFile},
                             {"IParameter", IParameter::kIid},
                             {"IParameters", IParameters::kIid},
                             {"IProvideClassInfo", IProvideClassInfo::kIid},
                             {"IDispatch", IDispatch::kIid},
                             {"ISupportErrorInfo", ISupportErrorInfo::kIid},
                             {"IUnknown", IUnknown::kIid},
                             {"IQvClientServices", IQvClientServices::kIid},
                             {"IHttpSession", IHttpSession::kIid},
                             {"IRunnableObject", IRunnableObject::kIid}};

// Beside IUnknown, IDispatch and ISupportErrorInfo an object offers `interfaces`, of which the first leaves
// error records. Only the first one knows the name `member`.
struct Coclass {
  const char* name;
  IUnknownPtr (*make)();
  std::vector<std::string> interfaces;
  const char16_t* member;
  DISPID id;

  bool Offers(const std::string& wanted) const {
    if (wanted == "IUnknown" || wanted == "IDispatch" || wanted == "ISupportErrorInfo") return true;
    return std::find(interfaces.begin(), interfaces.end(), wanted) != interfaces.end();
  }
};

template <auto kCreate>
IUnknownPtr Make() {
  return kCreate();
}
using Interfaces = std::vector<std::string>;
constexpr IQvScriptwellsPtr (*kClient)() = &CreateQvScriptwells;
constexpr IConnectionModelPtr (*kModel)() = &CreateConnectionModel;
constexpr IDurationPtr (*kDuration)() = &CreateDuration;
constexpr IAttachedFilePtr (*kFile)() = &CreateAttachedFile;
const Interfaces kClientInterfaces = {"IQvScriptwells", "IQvClientServiceRaw", "IProvideClassInfo"};
const Interfaces kModelInterfaces = {"IConnectionModel", "IConnectionModelRaw"};
const Interfaces kStringInterfaces = {"IConnectionString", "IConnectionStringRaw"};

const Coclass kCoclasses[] = {
    {"QvScriptwells", &Make<kClient>, kClientInterfaces, u"ServerName", 7},
    {"ConnectionModel", &Make<kModel>, kModelInterfaces, u"SetUSID", 5},
    {"ConnectionString", &Make<CreateConnectionString>, kStringInterfaces, u"ReplicaID", 4},
    {"Duration", &Make<kDuration>, {"IDuration", "IDurationRaw"}, u"Sec", 8},
    {"Url", &Make<CreateUrl>, {"IUrl"}, u"UrlCaption", 2},
    {"AttachedFile", &Make<kFile>, {"IAttachedFile"}, u"TicketId", 6},
    {"Parameter", &Make<CreateParameter>, {"IParameter"}, u"SetValues", 1},
    {"Parameters", &Make<CreateParameters>, {"IParameters"}, u"Find", 3},
};

// Runs the check once for each class, with a new object of it.
void ForEachObject(void (*check)(const Coclass& coclass, const IUnknownPtr& object)) {
  for (const Coclass& coclass : kCoclasses) {
    const testing::ScopedTrace trace(__FILE__, __LINE__, coclass.name);
    check(coclass, coclass.make());
  }
}

// No typed pointer, but something that a query has to replace.
template <class Type>
Type* Stranger() {
  static int stranger = 0;
  return reinterpret_cast<Type*>(&stranger);
}

TEST(ObjectIdentity, OffersItsInterfacesFromEachOfThem) {
  ForEachObject([](const Coclass& coclass, const IUnknownPtr& object) {
    for (const Known& from : kEverything) {
      if (!coclass.Offers(from.name)) continue;
      const IUnknownPtr face = As<IUnknown>(object, from.iid);
      ASSERT_NE(face, nullptr) << from.name;
      for (const Known& to : kEverything) {
        void* found = Stranger<void>();
        EXPECT_EQ(face->QueryInterface(to.iid, &found), coclass.Offers(to.name) ? S_OK : E_NOINTERFACE)
            << from.name << " to " << to.name;
        EXPECT_EQ(found != nullptr, coclass.Offers(to.name)) << from.name << " to " << to.name;
        if (found != nullptr) object->Release();
      }
    }
    EXPECT_EQ(object->AddRef(), 2U);
    EXPECT_EQ(object->Release(), 1U);
  });
}

TEST(ObjectIdentity, UnknownIsOnePointerFromEverywhere) {
  ForEachObject([](const Coclass& coclass, const IUnknownPtr& object) {
    const IUnknownPtr unknown = As<IUnknown>(object);
    ASSERT_NE(unknown, nullptr);
    for (const Known& from : kEverything) {
      if (!coclass.Offers(from.name)) continue;
      const IUnknownPtr face = As<IUnknown>(object, from.iid);
      ASSERT_NE(face, nullptr) << from.name;
      EXPECT_EQ(As<IUnknown>(face).get(), unknown.get()) << from.name;
    }
  });
}

TEST(ObjectIdentity, QueryWithoutOutputParameterIsRefused) {
  ForEachObject([](const Coclass&, const IUnknownPtr& object) {
    EXPECT_EQ(object->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
    EXPECT_EQ(object->QueryInterface(IHttpSession::kIid, nullptr), E_POINTER);
  });
}

TEST(ObjectIdentity, EachObjectHasOneCountForAllItsInterfaces) {
  ForEachObject([](const Coclass& coclass, const IUnknownPtr& object) {
    EXPECT_NE(coclass.make(), object);
    EXPECT_EQ(object->AddRef(), 2U);
    EXPECT_EQ(object->Release(), 1U);
    const IUnknownPtr face = As<IUnknown>(object, ISupportErrorInfo::kIid);
    EXPECT_EQ(face->AddRef(), 3U);
    EXPECT_EQ(object->Release(), 2U);
  });
}

TEST(ObjectIdentity, OnlyTheFirstInterfaceLeavesErrorRecords) {
  ForEachObject([](const Coclass& coclass, const IUnknownPtr& object) {
    const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(object);
    ASSERT_NE(support, nullptr);
    for (const Known& row : kEverything)
      EXPECT_EQ(support->InterfaceSupportsErrorInfo(row.iid),
                row.name == coclass.interfaces.front() ? S_OK : S_FALSE)
          << row.name;
  });
}

TEST(ObjectIdentity, DispatchIsTheFirstInterface) {
  ForEachObject([](const Coclass& coclass, const IUnknownPtr& object) {
    const IDispatchPtr dispatch = As<IDispatch>(object);
    ASSERT_NE(dispatch, nullptr);
    EXPECT_EQ(IdOf(dispatch.get(), coclass.member), coclass.id);
  });
}

TEST(ObjectIdentity, ThereIsNoTypeInformation) {
  ForEachObject([](const Coclass&, const IUnknownPtr& object) {
    const IDispatchPtr dispatch = As<IDispatch>(object);
    std::uint32_t count = 7;
    EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 0U);
    auto* info = Stranger<ITypeInfo>();
    EXPECT_EQ(dispatch->GetTypeInfo(0, 0, &info), MakeResult(0x80029C4A));
    EXPECT_EQ(info, nullptr);
    for (const std::uint32_t index : {1U, 2U, 0x80000000U, 0xFFFFFFFFU}) {
      info = Stranger<ITypeInfo>();
      EXPECT_EQ(dispatch->GetTypeInfo(index, 0x409, &info), MakeResult(0x8002000B));
      EXPECT_EQ(info, nullptr);
    }
    EXPECT_TRUE(Failed(dispatch->GetTypeInfoCount(nullptr)));
    EXPECT_TRUE(Failed(dispatch->GetTypeInfo(0, 0, nullptr)));
  });
}

TEST(ObjectIdentity, ClassInformationOfTheClientCannotBeLoaded) {
  const auto provider = As<IProvideClassInfo>(CreateQvScriptwells());
  ASSERT_NE(provider, nullptr);
  auto* info = Stranger<ITypeInfo>();
  EXPECT_EQ(provider->GetClassInfo(&info), MakeResult(0x80029C4A));
  EXPECT_EQ(info, nullptr);
  EXPECT_TRUE(Failed(provider->GetClassInfo(nullptr)));
}

// Two interfaces of one object have two tables.
TEST(ObjectIdentity, RawInterfacesKnowTheirOwnNamesOnly) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  const IQvClientServiceRawPtr raw = As<IQvClientServiceRaw>(client);
  EXPECT_EQ(IdOf(raw.get(), u"Init"), 1);
  EXPECT_EQ(IdOf(raw.get(), u"ServerName"), -1);
  EXPECT_EQ(IdOf(client.get(), u"Init"), -1);
  const IConnectionStringPtr credentials = CreateConnectionString();
  const IConnectionStringRawPtr text = As<IConnectionStringRaw>(credentials);
  EXPECT_EQ(IdOf(text.get(), u"Initialize"), 1);
  EXPECT_EQ(IdOf(text.get(), u"UserName"), -1);
  EXPECT_EQ(IdOf(credentials.get(), u"Initialize"), -1);
}

}  // namespace
}  // namespace qv
