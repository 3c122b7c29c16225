// Credentials in one text, read and written.
#include "values/connection_string_impl.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "support/print_wide_string.h"

namespace qv {
namespace {

struct Field {
  const char* name;
  WideString (ConnectionStringImpl::*get)();
  void (ConnectionStringImpl::*put)(WideString);
};

const Field kFields[] = {
    {"user name", &ConnectionStringImpl::get_UserName, &ConnectionStringImpl::put_UserName},
    {"password", &ConnectionStringImpl::get_UserPassword, &ConnectionStringImpl::put_UserPassword},
    {"database name", &ConnectionStringImpl::get_DatabaseName, &ConnectionStringImpl::put_DatabaseName},
    {"replica id", &ConnectionStringImpl::get_ReplicaID, &ConnectionStringImpl::put_ReplicaID},
    {"database id", &ConnectionStringImpl::get_DatabaseID, &ConnectionStringImpl::put_DatabaseID}};

TEST(ConnectionStringImpl, EachPropertyHasItsOwnField) {
  ConnectionStringImpl text;
  for (const Field& field : kFields) EXPECT_TRUE((text.*field.get)().IsNull()) << field.name;
  for (const Field& field : kFields) (text.*field.put)(FromUtf8(field.name));
  for (const Field& field : kFields) {
    EXPECT_EQ((text.*field.get)(), FromUtf8(field.name));
    (text.*field.put)(WideString());
    EXPECT_TRUE((text.*field.get)().IsNull()) << field.name;
    (text.*field.put)(u"");
    EXPECT_FALSE((text.*field.get)().IsNull()) << field.name;
  }
}

ConnectionStringImpl Filled(const WideString& userName, const WideString& password,
                            const WideString& replicaId) {
  ConnectionStringImpl text;
  text.put_UserPassword(password);
  text.put_UserName(userName);
  text.put_ReplicaID(replicaId);
  return text;
}

// Nothing is escaped, and the database is left out.
TEST(ConnectionStringImpl, TextHoldsReplicaUserAndPasswordInThisOrder) {
  EXPECT_EQ(ConnectionStringImpl().ToString(), u"DbReplicationId=;Username=;Password=;");
  EXPECT_EQ(Filled(u"u", u"p", u"r").ToString(), u"DbReplicationId=r;Username=u;Password=p;");
  EXPECT_EQ(Filled(u"a;b=c<&\"", u"", u"").ToString(), u"DbReplicationId=;Username=a;b=c<&\";Password=;");
  ConnectionStringImpl database;
  database.put_DatabaseName(u"n");
  database.put_DatabaseID(u"d");
  EXPECT_EQ(database.ToString(), u"DbReplicationId=;Username=;Password=;");
}

TEST(ConnectionStringImpl, LaterTextHasTheLaterValuesAfterTheEarlierOnes) {
  ConnectionStringImpl text = Filled(u"u", u"p", u"r");
  const WideString first = text.ToString();
  EXPECT_EQ(text.ToString(),
            u"DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;");
  EXPECT_EQ(first, u"DbReplicationId=r;Username=u;Password=p;");
  ConnectionStringImpl changed;
  changed.put_UserName(u"u");
  changed.ToString();
  changed.put_UserName(u"v");
  EXPECT_EQ(changed.ToString(),
            u"DbReplicationId=;Username=u;Password=;DbReplicationId=;Username=v;Password=;");
  ConnectionStringImpl initialized;
  initialized.ToString();
  initialized.Initialize(u"Username=u;");
  EXPECT_EQ(initialized.ToString(),
            u"DbReplicationId=;Username=;Password=;DbReplicationId=;Username=u;Password=;");
}

constexpr const char16_t* kUnset = nullptr;

struct Parsed {
  const char16_t* text;
  const char16_t* userName;  // kUnset: the field is still null
  const char16_t* password;
  const char16_t* replicaId;
};

void ExpectField(const WideString& field, const char16_t* expected) {
  EXPECT_EQ(field.IsNull(), expected == kUnset);
  EXPECT_EQ(field, WideString(expected));
}

void ExpectParsed(std::initializer_list<Parsed> rows) {
  for (const Parsed& row : rows) {
    SCOPED_TRACE(Shown(row.text));
    ConnectionStringImpl text;
    text.Initialize(row.text);
    ExpectField(text.get_UserName(), row.userName);
    ExpectField(text.get_UserPassword(), row.password);
    ExpectField(text.get_ReplicaID(), row.replicaId);
    EXPECT_TRUE(text.get_DatabaseName().IsNull());
    EXPECT_TRUE(text.get_DatabaseID().IsNull());
  }
}

// The last pair needs no end, and a later one replaces an earlier one. The keys of the database are unknown.
TEST(ConnectionStringImpl, PairsAreReadInAnyOrder) {
  ExpectParsed({{u"DbReplicationId=r;Username=u;Password=p;", u"u", u"p", u"r"},
                {u"Password=p;Username=u;DbReplicationId=r;", u"u", u"p", u"r"},
                {u"DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;", u"u",
                 u"p", u"r"},
                {u"Username=joe;", u"joe", kUnset, kUnset},
                {u"Username=joe;Password=x", u"joe", u"x", kUnset},
                {u"Username=a;Username=b;", u"b", kUnset, kUnset},
                {u"Username=a;Username=;", u"", kUnset, kUnset},
                {u"Foo=1;Username=joe;", u"joe", kUnset, kUnset},
                {u"DatabaseName=n;DatabaseID=d;ReplicaID=r;Username=u;", u"u", kUnset, kUnset},
                {u"Username= joe ;", u" joe ", kUnset, kUnset}});
}

TEST(ConnectionStringImpl, TextWithoutPairsOrWithOtherKeysChangesNothing) {
  for (const char16_t* text : {static_cast<const char16_t*>(nullptr), u"", u"Username=joe", u";Username=joe;",
                               u";", u"Username;Password=x;", u"password=x;username=u;dbreplicationid=r;",
                               u"UserName=u;", u" Username=u;", u"Username =u;", u"Username2=u;", u"Pass=u;"})
    ExpectParsed({{text, kUnset, kUnset, kUnset}});
}

TEST(ConnectionStringImpl, ReadingStopsAtTheFirstPieceThatIsNotAPair) {
  ExpectParsed({{u"Password=a;b;Username=u;", kUnset, u"a", kUnset},
                {u"x;Username=joe;", kUnset, kUnset, kUnset},
                {u"Username=u;=x;Password=p;", u"u", kUnset, kUnset},
                {u"Username=u;=;Password=p;", u"u", kUnset, kUnset},
                {u"Username=u;;;Password=p;", u"u", kUnset, kUnset},
                {u"Username=u;x", u"u", kUnset, kUnset}});
}

// Pieces after the value are dropped.
TEST(ConnectionStringImpl, NeighbouringSeparatorsBelongToThePiece) {
  ExpectParsed({{u"Username=u;;Password=p;DbReplicationId=r;", u"u", kUnset, u"r"},
                {u"Username==joe;", u"=joe", kUnset, kUnset},
                {u"Username===joe;", u"=", kUnset, kUnset},
                {u"Password=a=b;", kUnset, u"a", kUnset},
                {u"Password=a=;Username=u;", u"u", u"a", kUnset}});
}

TEST(ConnectionStringImpl, ValueOfNothingIsEmptyAndNotNull) {
  ExpectParsed({{u"Username=;", u"", kUnset, kUnset},
                {u"DbReplicationId=;Username=;Password=;", u"", u"", u""},
                {u"Username=;Password=", u"", u"", kUnset}});
}

TEST(ConnectionStringImpl, FieldsThatTheTextDoesNotNameStay) {
  ConnectionStringImpl text;
  text.put_UserName(u"u");
  text.put_UserPassword(u"p");
  text.put_DatabaseName(u"n");
  text.put_DatabaseID(u"d");
  text.Initialize(u"DbReplicationId=r;");
  EXPECT_EQ(text.get_UserName(), u"u");
  EXPECT_EQ(text.get_UserPassword(), u"p");
  EXPECT_EQ(text.get_ReplicaID(), u"r");
  EXPECT_EQ(text.get_DatabaseName(), u"n");
  EXPECT_EQ(text.get_DatabaseID(), u"d");
  text.Initialize(WideString());
  text.Initialize(u"Username=other");
  EXPECT_EQ(text.get_UserName(), u"u");
}

TEST(ConnectionStringImpl, ItsOwnTextIsReadBack) {
  ConnectionStringImpl written;
  written.put_UserName(u"u");
  written.put_ReplicaID(u"r");
  ConnectionStringImpl read;
  read.Initialize(written.ToString());
  EXPECT_EQ(read.get_UserName(), u"u");
  EXPECT_EQ(read.get_ReplicaID(), u"r");
  EXPECT_TRUE(read.get_UserPassword().IsEmpty());
  EXPECT_FALSE(read.get_UserPassword().IsNull());
}

}  // namespace
}  // namespace qv
