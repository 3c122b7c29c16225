// The ConnectionString object as a host meets it.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/waiting_record.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

using Getter = HRESULT (IConnectionString::*)(WideString*) noexcept;
using Setter = HRESULT (IConnectionString::*)(const WideString&) noexcept;

struct Property {
  const char* name;
  Getter get;
  Setter put;
};
void PrintTo(const Property& row, std::ostream* out) {
  *out << row.name;
}

class ConnectionStringProperty : public testing::TestWithParam<Property> {
 protected:
  ConnectionStringProperty() : object_(CreateConnectionString()) { LeaveStaleRecord(); }
  void TearDown() override { ClearErrorInfo(); }

  std::string Get() {
    WideString value(u"before");
    EXPECT_EQ((object_.get()->*GetParam().get)(&value), S_OK);
    return Shown(value);
  }
  HRESULT Put(const WideString& value) { return (object_.get()->*GetParam().put)(value); }

  IConnectionStringPtr object_;
};

TEST_P(ConnectionStringProperty, StartsNull) {
  EXPECT_EQ(Get(), "<null>");
}

TEST_P(ConnectionStringProperty, KeepsWhatWasPut) {
  EXPECT_EQ(Put(u"one"), S_OK);
  EXPECT_EQ(Put(u"two"), S_OK);
  EXPECT_EQ(Get(), "two");
  EXPECT_EQ(Put(u""), S_OK);
  EXPECT_EQ(Get(), "");
  EXPECT_EQ(Put(WideString()), S_OK);
  EXPECT_EQ(Get(), "<null>");
}

TEST_P(ConnectionStringProperty, ClearsTheStaleRecord) {
  Get();
  EXPECT_EQ(TakenWords(), "no record");
  LeaveStaleRecord();
  Put(u"x");
  EXPECT_EQ(TakenWords(), "no record");
}

TEST_P(ConnectionStringProperty, MissingPlaceIsRefused) {
  EXPECT_EQ((object_.get()->*GetParam().get)(nullptr), E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(
    Properties, ConnectionStringProperty,
    testing::Values(
        Property{"UserName", &IConnectionString::get_UserName, &IConnectionString::put_UserName},
        Property{"UserPassword", &IConnectionString::get_UserPassword, &IConnectionString::put_UserPassword},
        Property{"DatabaseName", &IConnectionString::get_DatabaseName, &IConnectionString::put_DatabaseName},
        Property{"ReplicaID", &IConnectionString::get_ReplicaID, &IConnectionString::put_ReplicaID},
        Property{"DatabaseID", &IConnectionString::get_DatabaseID, &IConnectionString::put_DatabaseID}),
    [](const testing::TestParamInfo<Property>& row) { return std::string(row.param.name); });

class ConnectionStringObject : public testing::Test {
 protected:
  ConnectionStringObject() : object_(CreateConnectionString()) {}

  std::string Text() {
    WideString text;
    EXPECT_EQ(object_->ToString(&text), S_OK);
    return Shown(text);
  }

  IConnectionStringPtr object_;
};

TEST_F(ConnectionStringObject, TextGrowsWithEachCall) {
  object_->put_UserName(u"u");
  object_->put_UserPassword(u"p");
  object_->put_ReplicaID(u"r");
  object_->put_DatabaseName(u"n");
  object_->put_DatabaseID(u"i");
  EXPECT_EQ(Text(), "DbReplicationId=r;Username=u;Password=p;");
  EXPECT_EQ(Text(), "DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;");
}

TEST_F(ConnectionStringObject, TextOfANewObjectHasEmptyValues) {
  EXPECT_EQ(Text(), "DbReplicationId=;Username=;Password=;");
}

TEST_F(ConnectionStringObject, RawInterfaceReadsATextIntoTheSameObject) {
  const IConnectionStringRawPtr raw = As<IConnectionStringRaw>(object_);
  LeaveStaleRecord();
  EXPECT_EQ(raw->Initialize(u"DbReplicationId=r;Username=u;Password=p;"), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  WideString user;
  EXPECT_EQ(object_->get_UserName(&user), S_OK);
  EXPECT_EQ(Shown(user), "u");
}

TEST_F(ConnectionStringObject, MissingPlaceForTheTextIsRefused) {
  EXPECT_EQ(object_->ToString(nullptr), E_POINTER);
}

}  // namespace
}  // namespace qv
