// What every object answers about itself to a host that binds late, and the places of all members.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/late_call.h"
#include "automation/slot_order.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

IUnknownPtr MakeClient() {
  return CreateQvScriptwells();
}
IUnknownPtr MakeModel() {
  return CreateConnectionModel();
}
IUnknownPtr MakeConnectionString() {
  return CreateConnectionString();
}
IUnknownPtr MakeDuration() {
  return CreateDuration();
}
IUnknownPtr MakeUrl() {
  return CreateUrl();
}
IUnknownPtr MakeAttachedFile() {
  return CreateAttachedFile();
}
IUnknownPtr MakeParameter() {
  return CreateParameter();
}
IUnknownPtr MakeParameters() {
  return CreateParameters();
}

struct Offered {
  const char* name;
  Guid iid;
};
const Offered kEverything[] = {{"IQvScriptwells", IQvScriptwells::kIid},
                               {"IQvClientServiceRaw", IQvClientServiceRaw::kIid},
                               {"IConnectionModel", IConnectionModel::kIid},
                               {"IConnectionModelRaw", IConnectionModelRaw::kIid},
                               {"IConnectionString", IConnectionString::kIid},
                               {"IConnectionStringRaw", IConnectionStringRaw::kIid},
                               {"IDuration", IDuration::kIid},
                               {"IDurationRaw", IDurationRaw::kIid},
                               {"IUrl", IUrl::kIid},
                               {"IAttachedFile", IAttachedFile::kIid},
                               {"IParameter", IParameter::kIid},
                               {"IParameters", IParameters::kIid},
                               {"IProvideClassInfo", IProvideClassInfo::kIid},
                               {"IDispatch", IDispatch::kIid},
                               {"ISupportErrorInfo", ISupportErrorInfo::kIid},
                               {"IUnknown", IUnknown::kIid},
                               {"IQvClientServices", IQvClientServices::kIid},
                               {"IRunnableObject", IRunnableObject::kIid}};

struct Coclass {
  const char* name;
  IUnknownPtr (*make)();
  // Beside IUnknown, IDispatch and ISupportErrorInfo; the first one leaves error records.
  std::vector<std::string> interfaces;
  // A name that only the first interface knows, and its id.
  const char16_t* member;
  DISPID id;
};
void PrintTo(const Coclass& row, std::ostream* out) {
  *out << row.name;
}

class LateIdentity : public testing::TestWithParam<Coclass> {
 protected:
  LateIdentity() : object_(GetParam().make()) {}
  bool Offers(const std::string& name) const {
    if (name == "IUnknown" || name == "IDispatch" || name == "ISupportErrorInfo") return true;
    for (const std::string& offered : GetParam().interfaces)
      if (offered == name) return true;
    return false;
  }
  template <class Interface>
  boost::intrusive_ptr<Interface> Query(const Guid& iid = Interface::kIid) {
    return As<Interface>(object_, iid);
  }

  IUnknownPtr object_;
};

TEST_P(LateIdentity, OffersTheseInterfacesFromEachOfThem) {
  for (const Offered& from : kEverything) {
    if (!Offers(from.name)) continue;
    IUnknown* face = Query<IUnknown>(from.iid).detach();
    ASSERT_NE(face, nullptr) << from.name;
    const IUnknownPtr held(face, false);
    for (const Offered& to : kEverything) {
      int stranger = 0;
      void* found = &stranger;
      EXPECT_EQ(held->QueryInterface(to.iid, &found), Offers(to.name) ? S_OK : E_NOINTERFACE)
          << from.name << " to " << to.name;
      EXPECT_EQ(found != nullptr, Offers(to.name)) << from.name << " to " << to.name;
      if (found != nullptr && found != &stranger) static_cast<IUnknown*>(found)->Release();
    }
  }
}

TEST_P(LateIdentity, UnknownIsOnePointerFromEverywhere) {
  const IUnknownPtr unknown = Query<IUnknown>();
  for (const Offered& from : kEverything) {
    if (!Offers(from.name)) continue;
    const IUnknownPtr held = Query<IUnknown>(from.iid);
    const IUnknownPtr again = As<IUnknown>(held);
    EXPECT_EQ(again.get(), unknown.get()) << from.name;
  }
}

TEST_P(LateIdentity, DispatchIsTheFirstInterface) {
  const IDispatchPtr dispatch = Query<IDispatch>();
  ASSERT_NE(dispatch, nullptr);
  EXPECT_EQ(IdOf(dispatch.get(), GetParam().member), GetParam().id);
}

TEST_P(LateIdentity, OnlyTheFirstInterfaceLeavesRecords) {
  const ISupportErrorInfoPtr support = Query<ISupportErrorInfo>();
  ASSERT_NE(support, nullptr);
  for (const Offered& asked : kEverything)
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(asked.iid), asked.name == GetParam().interfaces[0] ? 0 : 1)
        << asked.name;
}

TEST_P(LateIdentity, ThereIsNoTypeInformation) {
  const IDispatchPtr dispatch = Query<IDispatch>();
  std::uint32_t count = 7;
  EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
  int stranger = 0;
  ITypeInfo* info = reinterpret_cast<ITypeInfo*>(&stranger);
  EXPECT_EQ(dispatch->GetTypeInfo(0, 0, &info), MakeResult(0x80029C4A));
  EXPECT_EQ(info, nullptr);
  for (const std::uint32_t index : {1u, 2u, 0x80000000u, 0xFFFFFFFFu}) {
    info = reinterpret_cast<ITypeInfo*>(&stranger);
    EXPECT_EQ(dispatch->GetTypeInfo(index, 0x409, &info), MakeResult(0x8002000B));
    EXPECT_EQ(info, nullptr);
  }
  EXPECT_TRUE(Failed(dispatch->GetTypeInfoCount(nullptr)));
  EXPECT_TRUE(Failed(dispatch->GetTypeInfo(0, 0, nullptr)));
}

TEST_P(LateIdentity, EachObjectIsCountedOnItsOwn) {
  const IUnknownPtr other = GetParam().make();
  EXPECT_NE(other, object_);
  EXPECT_EQ(object_->AddRef(), 2u);
  EXPECT_EQ(object_->Release(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Objects, LateIdentity,
    testing::Values(
        Coclass{"QvScriptwells",
                MakeClient,
                {"IQvScriptwells", "IQvClientServiceRaw", "IProvideClassInfo"},
                u"ServerName",
                7},
        Coclass{"ConnectionModel", MakeModel, {"IConnectionModel", "IConnectionModelRaw"}, u"SetUSID", 5},
        Coclass{"ConnectionString",
                MakeConnectionString,
                {"IConnectionString", "IConnectionStringRaw"},
                u"ReplicaID",
                4},
        Coclass{"Duration", MakeDuration, {"IDuration", "IDurationRaw"}, u"Sec", 8},
        Coclass{"Url", MakeUrl, {"IUrl"}, u"UrlCaption", 2},
        Coclass{"AttachedFile", MakeAttachedFile, {"IAttachedFile"}, u"TicketId", 6},
        Coclass{"Parameter", MakeParameter, {"IParameter"}, u"SetValues", 1},
        Coclass{"Parameters", MakeParameters, {"IParameters"}, u"Find", 3}),
    [](const testing::TestParamInfo<Coclass>& row) { return std::string(row.param.name); });

TEST(LateIdentityOfTheClient, ClassInformationCannotBeLoaded) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  const boost::intrusive_ptr<IProvideClassInfo> provider = As<IProvideClassInfo>(client);
  ASSERT_NE(provider, nullptr);
  int stranger = 0;
  ITypeInfo* info = reinterpret_cast<ITypeInfo*>(&stranger);
  EXPECT_EQ(provider->GetClassInfo(&info), MakeResult(0x80029C4A));
  EXPECT_EQ(info, nullptr);
  EXPECT_TRUE(Failed(provider->GetClassInfo(nullptr)));
}

// Two interfaces of one object have two tables.
TEST(LateIdentityOfRawFaces, KnowTheirOwnNamesOnly) {
  const IQvScriptwellsPtr client = CreateQvScriptwells();
  const IQvClientServiceRawPtr raw = As<IQvClientServiceRaw>(client);
  EXPECT_EQ(IdOf(raw.get(), u"Init"), 1);
  EXPECT_EQ(IdOf(raw.get(), u"ServerName"), -1);
  EXPECT_EQ(IdOf(client.get(), u"Init"), -1);
  const IConnectionStringPtr credentials = CreateConnectionString();
  const boost::intrusive_ptr<IConnectionStringRaw> text = As<IConnectionStringRaw>(credentials);
  EXPECT_EQ(IdOf(text.get(), u"Initialize"), 1);
  EXPECT_EQ(IdOf(text.get(), u"UserName"), -1);
  EXPECT_EQ(IdOf(credentials.get(), u"Initialize"), -1);
}

// Places. Each list starts with the operations of IUnknown and IDispatch.

void ExpectConsecutive(const char* name, const std::vector<const void*>& operations) {
  for (std::size_t i = 1; i < operations.size(); ++i)
    EXPECT_EQ(PlaceOf(operations[i]) - PlaceOf(operations[0]), static_cast<std::ptrdiff_t>(i) * kSlot)
        << name << " " << i;
}

const auto kQuery = &IDispatch::QueryInterface;
const auto kAddRef = &IDispatch::AddRef;
const auto kRelease = &IDispatch::Release;
const auto kCount = &IDispatch::GetTypeInfoCount;
const auto kInfo = &IDispatch::GetTypeInfo;
const auto kIds = &IDispatch::GetIDsOfNames;
const auto kInvoke = &IDispatch::Invoke;

void ExpectBehindDispatch(const char* name, const std::vector<const void*>& members) {
  std::vector<const void*> all = {&kQuery, &kAddRef, &kRelease, &kCount, &kInfo, &kIds, &kInvoke};
  all.insert(all.end(), members.begin(), members.end());
  ExpectConsecutive(name, all);
}

TEST(SlotOrder, Client) {
  const auto model = &IQvScriptwells::ConnectionModel;
  const auto url = &IQvScriptwells::Url;
  const auto span = &IQvScriptwells::Duration;
  const auto credentials = &IQvScriptwells::ConnectionString;
  const auto file = &IQvScriptwells::AttachedFile;
  const auto list = &IQvScriptwells::Parameters;
  const auto getServer = &IQvScriptwells::get_ServerName;
  const auto putServer = &IQvScriptwells::put_ServerName;
  const auto getProxy = &IQvScriptwells::get_Proxy;
  const auto putProxy = &IQvScriptwells::put_Proxy;
  ExpectBehindDispatch("IQvScriptwells", {&model, &url, &span, &credentials, &file, &list, &getServer,
                                          &putServer, &getProxy, &putProxy});
  const auto init = &IQvClientServiceRaw::Init;
  ExpectBehindDispatch("IQvClientServiceRaw", {&init});
}

TEST(SlotOrder, Model) {
  const auto open = &IConnectionModel::CreateUserSession;
  const auto close = &IConnectionModel::CloseUserSession;
  const auto execute = &IConnectionModel::Execute;
  const auto executeFile = &IConnectionModel::ExecuteFile;
  const auto setUsid = &IConnectionModel::SetUSID;
  const auto download = &IConnectionModel::DownloadFile;
  ExpectBehindDispatch("IConnectionModel", {&open, &close, &execute, &executeFile, &setUsid, &download});
  const auto setServer = &IConnectionModelRaw::SetServer;
  const auto setServices = &IConnectionModelRaw::SetClientServices;
  ExpectConsecutive("IConnectionModelRaw", {&kQuery, &kAddRef, &kRelease, &setServer, &setServices});
}

TEST(SlotOrder, ConnectionString) {
  const auto putUser = &IConnectionString::put_UserName;
  const auto getUser = &IConnectionString::get_UserName;
  const auto getPassword = &IConnectionString::get_UserPassword;
  const auto putPassword = &IConnectionString::put_UserPassword;
  const auto getName = &IConnectionString::get_DatabaseName;
  const auto putName = &IConnectionString::put_DatabaseName;
  const auto getReplica = &IConnectionString::get_ReplicaID;
  const auto putReplica = &IConnectionString::put_ReplicaID;
  const auto getId = &IConnectionString::get_DatabaseID;
  const auto putId = &IConnectionString::put_DatabaseID;
  const auto text = &IConnectionString::ToString;
  ExpectBehindDispatch("IConnectionString", {&putUser, &getUser, &getPassword, &putPassword, &getName,
                                             &putName, &getReplica, &putReplica, &getId, &putId, &text});
  const auto initialize = &IConnectionStringRaw::Initialize;
  ExpectBehindDispatch("IConnectionStringRaw", {&initialize});
}

TEST(SlotOrder, Duration) {
  const auto getDay = &IDuration::get_Day;
  const auto putDay = &IDuration::put_Day;
  const auto getMonth = &IDuration::get_Month;
  const auto putMonth = &IDuration::put_Month;
  const auto getYear = &IDuration::get_Year;
  const auto putYear = &IDuration::put_Year;
  const auto getHour = &IDuration::get_Hour;
  const auto putHour = &IDuration::put_Hour;
  const auto getMin = &IDuration::get_Min;
  const auto putMin = &IDuration::put_Min;
  const auto getSec = &IDuration::get_Sec;
  const auto putSec = &IDuration::put_Sec;
  const auto getNegative = &IDuration::get_Negative;
  const auto putNegative = &IDuration::put_Negative;
  ExpectBehindDispatch(
      "IDuration", {&getDay, &putDay, &getMonth, &putMonth, &getYear, &putYear, &getHour, &putHour, &getMin,
                    &putMin, &getSec, &putSec, &getNegative, &putNegative});
  const auto setText = &IDurationRaw::SetText;
  const auto getText = &IDurationRaw::GetText;
  ExpectConsecutive("IDurationRaw", {&kQuery, &kAddRef, &kRelease, &setText, &getText});
}

TEST(SlotOrder, UrlAndFile) {
  const auto getCaption = &IUrl::get_UrlCaption;
  const auto putCaption = &IUrl::put_UrlCaption;
  const auto getUrl = &IUrl::get_Url;
  const auto putUrl = &IUrl::put_Url;
  const auto text = &IUrl::ToString;
  ExpectBehindDispatch("IUrl", {&getCaption, &putCaption, &getUrl, &putUrl, &text});
  const auto init = &IAttachedFile::Init;
  const auto getName = &IAttachedFile::get_Filename;
  const auto putName = &IAttachedFile::put_Filename;
  const auto getId = &IAttachedFile::get_FileId;
  const auto putId = &IAttachedFile::put_FileId;
  const auto getLife = &IAttachedFile::get_SourceFileLifeTime;
  const auto putLife = &IAttachedFile::put_SourceFileLifeTime;
  const auto getClean = &IAttachedFile::get_CleanUp;
  const auto putClean = &IAttachedFile::put_CleanUp;
  const auto getTicket = &IAttachedFile::get_TicketId;
  const auto putTicket = &IAttachedFile::put_TicketId;
  const auto isTicket = &IAttachedFile::IsTicketId;
  ExpectBehindDispatch("IAttachedFile", {&init, &getName, &putName, &getId, &putId, &getLife, &putLife,
                                         &getClean, &putClean, &getTicket, &putTicket, &isTicket});
}

TEST(SlotOrder, Parameters) {
  const auto set = &IParameter::SetValues;
  const auto key = &IParameter::get_ParamKey;
  const auto value = &IParameter::get_ParamValue;
  const auto type = &IParameter::get_ParamTypeAsString;
  ExpectBehindDispatch("IParameter", {&set, &key, &value, &type});
  const auto add = &IParameters::Add;
  const auto remove = &IParameters::Remove;
  const auto find = &IParameters::Find;
  const auto size = &IParameters::Size;
  const auto clear = &IParameters::Clear;
  ExpectBehindDispatch("IParameters", {&add, &remove, &find, &size, &clear});
}

}  // namespace
}  // namespace qv
