// The ConnectionString object as a host meets it.
#include <gtest/gtest.h>

#include "automation/property_checks.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"

namespace qv {
namespace {

TEST(ConnectionStringObject, FieldsKeepTheirTexts) {
  using I = IConnectionString;
  const IConnectionStringPtr object = CreateConnectionString();
  ExpectText("UserName", object, &I::get_UserName, &I::put_UserName);
  ExpectText("UserPassword", object, &I::get_UserPassword, &I::put_UserPassword);
  ExpectText("DatabaseName", object, &I::get_DatabaseName, &I::put_DatabaseName);
  ExpectText("ReplicaID", object, &I::get_ReplicaID, &I::put_ReplicaID);
  ExpectText("DatabaseID", object, &I::get_DatabaseID, &I::put_DatabaseID);
}

std::string TextOf(const IConnectionStringPtr& object) {
  WideString text;
  EXPECT_EQ(object->ToString(&text), S_OK);
  return Shown(text);
}

TEST(ConnectionStringObject, TextGrowsWithEachCall) {
  const IConnectionStringPtr object = CreateConnectionString();
  object->put_UserName(u"u");
  object->put_UserPassword(u"p");
  object->put_ReplicaID(u"r");
  object->put_DatabaseName(u"n");
  object->put_DatabaseID(u"i");
  EXPECT_EQ(TextOf(object), "DbReplicationId=r;Username=u;Password=p;");
  EXPECT_EQ(TextOf(object),
            "DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;");
}

TEST(ConnectionStringObject, TextOfANewObjectHasEmptyValues) {
  EXPECT_EQ(TextOf(CreateConnectionString()), "DbReplicationId=;Username=;Password=;");
  EXPECT_EQ(CreateConnectionString()->ToString(nullptr), E_POINTER);
}

TEST(ConnectionStringObject, RawInterfaceReadsATextIntoTheSameObject) {
  const IConnectionStringPtr object = CreateConnectionString();
  const IConnectionStringRawPtr raw = As<IConnectionStringRaw>(object);
  LeaveStaleRecord();
  EXPECT_EQ(raw->Initialize(u"DbReplicationId=r;Username=u;Password=p;"), S_OK);
  EXPECT_EQ(TakenWords(), "no record");
  WideString user;
  EXPECT_EQ(object->get_UserName(&user), S_OK);
  EXPECT_EQ(Shown(user), "u");
}

}  // namespace
}  // namespace qv
