#include "values/connection_string_impl.h"

#include <gtest/gtest.h>

#include "support/print_wide_string.h"

namespace qv {
namespace {

TEST(ConnectionStringImpl, FreshFieldsAreNull) {
  ConnectionStringImpl text;
  EXPECT_TRUE(text.get_UserName().IsNull());
  EXPECT_TRUE(text.get_UserPassword().IsNull());
  EXPECT_TRUE(text.get_DatabaseName().IsNull());
  EXPECT_TRUE(text.get_ReplicaID().IsNull());
  EXPECT_TRUE(text.get_DatabaseID().IsNull());
}

TEST(ConnectionStringImpl, EachPropertyHasItsOwnField) {
  ConnectionStringImpl text;
  text.put_UserName(u"u");
  text.put_UserPassword(u"p");
  text.put_DatabaseName(u"n");
  text.put_ReplicaID(u"r");
  text.put_DatabaseID(u"d");
  EXPECT_EQ(text.get_UserName(), u"u");
  EXPECT_EQ(text.get_UserPassword(), u"p");
  EXPECT_EQ(text.get_DatabaseName(), u"n");
  EXPECT_EQ(text.get_ReplicaID(), u"r");
  EXPECT_EQ(text.get_DatabaseID(), u"d");
}

TEST(ConnectionStringImpl, NullMayBeStoredOverAText) {
  ConnectionStringImpl text;
  text.put_UserName(u"u");
  text.put_UserName(WideString());
  EXPECT_TRUE(text.get_UserName().IsNull());
  text.put_UserName(u"");
  EXPECT_FALSE(text.get_UserName().IsNull());
}

TEST(ConnectionStringImpl, FreshTextHasAllKeysAndNoValues) {
  ConnectionStringImpl text;
  EXPECT_EQ(text.ToString(), u"DbReplicationId=;Username=;Password=;");
}

TEST(ConnectionStringImpl, TextHoldsReplicaUserAndPasswordInThisOrder) {
  ConnectionStringImpl text;
  text.put_UserPassword(u"p");
  text.put_UserName(u"u");
  text.put_ReplicaID(u"r");
  EXPECT_EQ(text.ToString(), u"DbReplicationId=r;Username=u;Password=p;");
}

TEST(ConnectionStringImpl, TextOfTwoCallsIsDoubled) {
  ConnectionStringImpl text;
  text.put_ReplicaID(u"r");
  text.put_UserName(u"u");
  text.put_UserPassword(u"p");
  text.ToString();
  EXPECT_EQ(text.ToString(),
            u"DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;");
}

TEST(ConnectionStringImpl, LaterTextHasTheLaterValuesBehindTheEarlierOnes) {
  ConnectionStringImpl text;
  text.put_UserName(u"u");
  text.ToString();
  text.put_UserName(u"v");
  EXPECT_EQ(text.ToString(), u"DbReplicationId=;Username=u;Password=;DbReplicationId=;Username=v;Password=;");
}

TEST(ConnectionStringImpl, InitializeDoesNotEmptyTheText) {
  ConnectionStringImpl text;
  text.ToString();
  text.Initialize(u"Username=u;");
  EXPECT_EQ(text.ToString(), u"DbReplicationId=;Username=;Password=;DbReplicationId=;Username=u;Password=;");
}

TEST(ConnectionStringImpl, EarlierTextIsNotChangedByALaterCall) {
  ConnectionStringImpl text;
  const WideString first = text.ToString();
  text.ToString();
  EXPECT_EQ(first, u"DbReplicationId=;Username=;Password=;");
}

TEST(ConnectionStringImpl, NothingIsEscaped) {
  ConnectionStringImpl text;
  text.put_UserName(u"a;b=c<&\"");
  EXPECT_EQ(text.ToString(), u"DbReplicationId=;Username=a;b=c<&\";Password=;");
}

TEST(ConnectionStringImpl, DatabaseIsNotInTheText) {
  ConnectionStringImpl text;
  text.put_DatabaseName(u"n");
  text.put_DatabaseID(u"d");
  EXPECT_EQ(text.ToString(), u"DbReplicationId=;Username=;Password=;");
}

constexpr const char16_t* kUnset = nullptr;

struct Parsed {
  const char* name;
  const char16_t* text;
  const char16_t* userName;  // kUnset: the field is still null
  const char16_t* password;
  const char16_t* replicaId;
};

void ExpectField(const WideString& field, const char16_t* expected, const char* name, const char* which) {
  EXPECT_EQ(field.IsNull(), expected == kUnset) << name << ", " << which;
  EXPECT_EQ(field, WideString(expected)) << name << ", " << which;
}

void ExpectParsed(const Parsed& row) {
  ConnectionStringImpl text;
  text.Initialize(row.text);
  ExpectField(text.get_UserName(), row.userName, row.name, "user name");
  ExpectField(text.get_UserPassword(), row.password, row.name, "password");
  ExpectField(text.get_ReplicaID(), row.replicaId, row.name, "replica id");
  EXPECT_TRUE(text.get_DatabaseName().IsNull()) << row.name;
  EXPECT_TRUE(text.get_DatabaseID().IsNull()) << row.name;
}

TEST(ConnectionStringImpl, PairsAreReadInAnyOrder) {
  const Parsed rows[] = {
      {"all", u"DbReplicationId=r;Username=u;Password=p;", u"u", u"p", u"r"},
      {"backwards", u"Password=p;Username=u;DbReplicationId=r;", u"u", u"p", u"r"},
      {"doubled", u"DbReplicationId=r;Username=u;Password=p;DbReplicationId=r;Username=u;Password=p;", u"u",
       u"p", u"r"},
      {"one pair", u"Username=joe;", u"joe", kUnset, kUnset},
      {"last pair needs no end", u"Username=joe;Password=x", u"joe", u"x", kUnset},
      {"later one replaces", u"Username=a;Username=b;", u"b", kUnset, kUnset},
      {"later one empties", u"Username=a;Username=;", u"", kUnset, kUnset},
      {"unknown key", u"Foo=1;Username=joe;", u"joe", kUnset, kUnset},
      {"database keys are unknown", u"DatabaseName=n;DatabaseID=d;ReplicaID=r;Username=u;", u"u", kUnset,
       kUnset},
      {"blanks in a value", u"Username= joe ;", u" joe ", kUnset, kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ConnectionStringImpl, TextWithoutPairsChangesNothing) {
  const Parsed rows[] = {
      {"null", nullptr, kUnset, kUnset, kUnset},
      {"empty", u"", kUnset, kUnset, kUnset},
      {"no end of the pair", u"Username=joe", kUnset, kUnset, kUnset},
      {"separator first", u";Username=joe;", kUnset, kUnset, kUnset},
      {"separator only", u";", kUnset, kUnset, kUnset},
      {"no equal sign", u"Username;Password=x;", kUnset, kUnset, kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ConnectionStringImpl, KeysAreComparedExactly) {
  const Parsed rows[] = {
      {"lower case", u"password=x;username=u;dbreplicationid=r;", kUnset, kUnset, kUnset},
      {"property's spelling", u"UserName=u;", kUnset, kUnset, kUnset},
      {"blank before", u" Username=u;", kUnset, kUnset, kUnset},
      {"blank behind", u"Username =u;", kUnset, kUnset, kUnset},
      {"longer key", u"Username2=u;", kUnset, kUnset, kUnset},
      {"shorter key", u"Pass=u;", kUnset, kUnset, kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ConnectionStringImpl, ReadingStopsAtTheFirstPieceThatIsNoPair) {
  const Parsed rows[] = {
      {"password with a semicolon", u"Password=a;b;Username=u;", kUnset, u"a", kUnset},
      {"piece without equal sign first", u"x;Username=joe;", kUnset, kUnset, kUnset},
      {"piece that begins with one", u"Username=u;=x;Password=p;", u"u", kUnset, kUnset},
      {"piece that is one", u"Username=u;=;Password=p;", u"u", kUnset, kUnset},
      {"three semicolons", u"Username=u;;;Password=p;", u"u", kUnset, kUnset},
      {"piece without equal sign last", u"Username=u;x", u"u", kUnset, kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ConnectionStringImpl, NeighbouringSeparatorsBelongToThePiece) {
  const Parsed rows[] = {
      {"two semicolons spoil the next key", u"Username=u;;Password=p;DbReplicationId=r;", u"u", kUnset, u"r"},
      {"two equal signs", u"Username==joe;", u"=joe", kUnset, kUnset},
      {"three equal signs", u"Username===joe;", u"=", kUnset, kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ConnectionStringImpl, PiecesBehindTheValueAreDropped) {
  const Parsed rows[] = {
      {"second equal sign", u"Password=a=b;", kUnset, u"a", kUnset},
      {"value ends in one", u"Password=a=;Username=u;", u"u", u"a", kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
}

TEST(ConnectionStringImpl, ValueOfNothingIsEmptyAndNotNull) {
  const Parsed rows[] = {
      {"user name", u"Username=;", u"", kUnset, kUnset},
      {"all", u"DbReplicationId=;Username=;Password=;", u"", u"", u""},
      {"last without end", u"Username=;Password=", u"", u"", kUnset},
  };
  for (const Parsed& row : rows) ExpectParsed(row);
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
