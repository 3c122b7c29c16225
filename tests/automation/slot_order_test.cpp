// Published identifiers, and the slots of the operations: hosts that were compiled against the published
// interfaces call by slot.
#include "automation/slot_order.h"

#include <gtest/gtest.h>

#include "qvscriptwells/objects.h"

namespace qv {
namespace {

void ExpectConsecutive(const char* name, const std::vector<std::ptrdiff_t>& slots) {
  for (std::size_t i = 1; i < slots.size(); ++i)
    EXPECT_EQ(slots[i], static_cast<std::ptrdiff_t>(i)) << name << " " << i;
}

template <auto... kOperations>
void ExpectAfterUnknown(const char* name) {
  ExpectConsecutive(
      name, SlotsOf<&IUnknown::QueryInterface, &IUnknown::AddRef, &IUnknown::Release, kOperations...>());
}

template <auto... kMembers>
void ExpectAfterDispatch(const char* name) {
  ExpectAfterUnknown<&IDispatch::GetTypeInfoCount, &IDispatch::GetTypeInfo, &IDispatch::GetIDsOfNames,
                     &IDispatch::Invoke, kMembers...>(name);
}

TEST(SlotOrder, Client) {
  using I = IQvScriptwells;
  ExpectAfterDispatch<&I::ConnectionModel, &I::Url, &I::Duration, &I::ConnectionString, &I::AttachedFile,
                      &I::Parameters, &I::get_ServerName, &I::put_ServerName, &I::get_Proxy, &I::put_Proxy>(
      "IQvScriptwells");
  ExpectAfterDispatch<&IQvClientServiceRaw::Init>("IQvClientServiceRaw");
}

TEST(SlotOrder, Model) {
  using I = IConnectionModel;
  ExpectAfterDispatch<&I::CreateUserSession, &I::CloseUserSession, &I::Execute, &I::ExecuteFile, &I::SetUSID,
                      &I::DownloadFile>("IConnectionModel");
  ExpectAfterUnknown<&IConnectionModelRaw::SetServer, &IConnectionModelRaw::SetClientServices>(
      "IConnectionModelRaw");
}

TEST(SlotOrder, ConnectionString) {
  using I = IConnectionString;
  ExpectAfterDispatch<&I::put_UserName, &I::get_UserName, &I::get_UserPassword, &I::put_UserPassword,
                      &I::get_DatabaseName, &I::put_DatabaseName, &I::get_ReplicaID, &I::put_ReplicaID,
                      &I::get_DatabaseID, &I::put_DatabaseID, &I::ToString>("IConnectionString");
  ExpectAfterDispatch<&IConnectionStringRaw::Initialize>("IConnectionStringRaw");
}

TEST(SlotOrder, Duration) {
  using I = IDuration;
  ExpectAfterDispatch<&I::get_Day, &I::put_Day, &I::get_Month, &I::put_Month, &I::get_Year, &I::put_Year,
                      &I::get_Hour, &I::put_Hour, &I::get_Min, &I::put_Min, &I::get_Sec, &I::put_Sec,
                      &I::get_Negative, &I::put_Negative>("IDuration");
  ExpectAfterUnknown<&IDurationRaw::SetText, &IDurationRaw::GetText>("IDurationRaw");
}

TEST(SlotOrder, UrlAndFile) {
  ExpectAfterDispatch<&IUrl::get_UrlCaption, &IUrl::put_UrlCaption, &IUrl::get_Url, &IUrl::put_Url,
                      &IUrl::ToString>("IUrl");
  using I = IAttachedFile;
  ExpectAfterDispatch<&I::Init, &I::get_Filename, &I::put_Filename, &I::get_FileId, &I::put_FileId,
                      &I::get_SourceFileLifeTime, &I::put_SourceFileLifeTime, &I::get_CleanUp,
                      &I::put_CleanUp, &I::get_TicketId, &I::put_TicketId, &I::IsTicketId>("IAttachedFile");
}

TEST(SlotOrder, Parameters) {
  ExpectAfterDispatch<&IParameter::SetValues, &IParameter::get_ParamKey, &IParameter::get_ParamValue,
                      &IParameter::get_ParamTypeAsString>("IParameter");
  ExpectAfterDispatch<&IParameters::Add, &IParameters::Remove, &IParameters::Find, &IParameters::Size,
                      &IParameters::Clear>("IParameters");
}

TEST(PublishedIds, OfValues) {
  EXPECT_TRUE((IDuration::kIid ==
               Guid{0xe279f37a, 0xfbe2, 0x4860, {0x8e, 0x6f, 0xff, 0x7d, 0xf6, 0x9e, 0x5a, 0x23}}));
  EXPECT_TRUE((IDurationRaw::kIid ==
               Guid{0xb1ea6b4f, 0x65b0, 0x44e7, {0xbb, 0x6d, 0xaa, 0xa2, 0x35, 0x61, 0x03, 0x1a}}));
  EXPECT_TRUE(
      (IUrl::kIid == Guid{0x88298ee0, 0x4369, 0x42b1, {0x9c, 0xa3, 0x79, 0xe5, 0x9d, 0xa1, 0x51, 0x43}}));
}

}  // namespace
}  // namespace qv
