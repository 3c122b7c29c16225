// What every object of the library answers about itself.
#include <gtest/gtest.h>

#include <ostream>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/host_services.h"
#include "qvscriptwells/http_component.h"

namespace qv {
namespace {

IUnknownPtr MakeModel() {
  return CreateConnectionModel();
}
IUnknownPtr MakeConnectionString() {
  return CreateConnectionString();
}
IUnknownPtr MakeParameters() {
  return CreateParameters();
}
IUnknownPtr MakeParameter() {
  return CreateParameter();
}
IUnknownPtr MakeDuration() {
  return CreateDuration();
}
IUnknownPtr MakeAttachedFile() {
  return CreateAttachedFile();
}
IUnknownPtr MakeUrl() {
  return CreateUrl();
}

struct Kind {
  const char* name;
  IUnknownPtr (*make)();
  std::vector<Guid> interfaces;  // the first one leaves error records
};
void PrintTo(const Kind& row, std::ostream* out) {
  *out << row.name;
}

const Guid kAllInterfaces[] = {
    IConnectionModel::kIid, IConnectionModelRaw::kIid, IConnectionString::kIid, IConnectionStringRaw::kIid,
    IParameters::kIid,      IParameter::kIid,          IQvClientServices::kIid, IHttpSession::kIid,
    IRunnableObject::kIid,  IDuration::kIid,           IDurationRaw::kIid,      IUrl::kIid,
    IID_IAttachedFile};

class ObjectIdentity : public testing::TestWithParam<Kind> {
 protected:
  ObjectIdentity() : object_(GetParam().make()) {}

  bool Offers(const Guid& iid) const {
    for (const Guid& offered : GetParam().interfaces)
      if (offered == iid) return true;
    return false;
  }
  IUnknownPtr Query(const Guid& iid) { return As<IUnknown>(object_, iid); }

  IUnknownPtr object_;
};

TEST_P(ObjectIdentity, OffersItsInterfacesAndNoOthers) {
  for (const Guid& iid : kAllInterfaces) {
    int stranger = 0;
    void* found = &stranger;
    const HRESULT code = object_->QueryInterface(iid, &found);
    EXPECT_EQ(code, Offers(iid) ? S_OK : E_NOINTERFACE) << std::hex << iid.data1;
    EXPECT_EQ(found != nullptr, Offers(iid)) << std::hex << iid.data1;
    if (Succeeded(code)) object_->Release();
  }
}

TEST_P(ObjectIdentity, AnswersUnknownAlwaysWithTheSamePointer) {
  const IUnknownPtr first = Query(IUnknown::kIid);
  ASSERT_NE(first, nullptr);
  std::vector<Guid> from = GetParam().interfaces;
  from.push_back(ISupportErrorInfo::kIid);
  for (const Guid& iid : from) {
    const IUnknownPtr face = Query(iid);
    ASSERT_NE(face, nullptr);
    void* unknown = nullptr;
    ASSERT_EQ(face->QueryInterface(IUnknown::kIid, &unknown), S_OK);
    EXPECT_EQ(unknown, static_cast<void*>(first.get()));
    object_->Release();
  }
}

TEST_P(ObjectIdentity, EachInterfaceLeadsToEachOther) {
  for (const Guid& from : GetParam().interfaces) {
    const IUnknownPtr face = Query(from);
    for (const Guid& to : GetParam().interfaces) {
      void* found = nullptr;
      EXPECT_EQ(face->QueryInterface(to, &found), S_OK);
      object_->Release();
    }
  }
}

TEST_P(ObjectIdentity, QueryWithoutPlaceForTheAnswerIsRefused) {
  EXPECT_EQ(object_->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
  EXPECT_EQ(object_->QueryInterface(IHttpSession::kIid, nullptr), E_POINTER);
}

TEST_P(ObjectIdentity, CountsAreReturned) {
  EXPECT_EQ(object_->AddRef(), 2u);
  EXPECT_EQ(object_->Release(), 1u);
  const IUnknownPtr face = Query(ISupportErrorInfo::kIid);
  EXPECT_EQ(face->AddRef(), 3u);
  EXPECT_EQ(object_->Release(), 2u);
}

TEST_P(ObjectIdentity, OnlyTheFirstInterfaceLeavesErrorRecords) {
  const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(object_);
  ASSERT_NE(support, nullptr);
  for (const Guid& iid : kAllInterfaces)
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(iid), iid == GetParam().interfaces.front() ? S_OK : S_FALSE)
        << std::hex << iid.data1;
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IUnknown::kIid), S_FALSE);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(ISupportErrorInfo::kIid), S_FALSE);
}

TEST_P(ObjectIdentity, EachCreationMakesANewObject) {
  EXPECT_NE(GetParam().make(), GetParam().make());
}

INSTANTIATE_TEST_SUITE_P(
    Objects, ObjectIdentity,
    testing::Values(
        Kind{"ConnectionModel", MakeModel, {IConnectionModel::kIid, IConnectionModelRaw::kIid}},
        Kind{"ConnectionString", MakeConnectionString, {IConnectionString::kIid, IConnectionStringRaw::kIid}},
        Kind{"Parameters", MakeParameters, {IParameters::kIid}},
        Kind{"Parameter", MakeParameter, {IParameter::kIid}},
        Kind{"Duration", MakeDuration, {IDuration::kIid, IDurationRaw::kIid}},
        Kind{"AttachedFile", MakeAttachedFile, {IAttachedFile::kIid}}, Kind{"Url", MakeUrl, {IUrl::kIid}}),
    [](const testing::TestParamInfo<Kind>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace qv
