// Which member runs, or which code comes back, for each id of each interface with each flag and each number
// of arguments. A property that is called with neither flag falls through to the next member that fits: hosts
// rely on it.
#include <gtest/gtest.h>

#include <sstream>

#include "automation/noting_faces.h"

namespace qv {
namespace {

// The outcomes for 0, 1, 2, ... arguments, up to one more than the interface accepts. `count` is
// DISP_E_BADPARAMCOUNT, `unknown` is DISP_E_MEMBERNOTFOUND, and everything else is what the object notes.
struct GridRow {
  Face face;
  std::vector<DISPID> ids;
  std::string neither;
  std::string get;
  std::string put;
  std::string both;
};

GridRow AnyFlag(Face face, const std::vector<DISPID>& ids, const std::string& outcomes) {
  return {face, ids, outcomes, outcomes, outcomes, outcomes};
}
GridRow Property(Face face, DISPID id, const std::string& name,
                 const std::string& neither = "unknown unknown", const std::string& value = "1") {
  const std::string get = "get_" + name + " count count";
  return {face, {id}, neither + " count", get, "count put_" + name + "(" + value + ") count", get};
}

const char kString[] = "ToString count";
const char kTicket[] = "IsTicketId count";

const GridRow kGrid[] = {
    AnyFlag(Face::kQvScriptwells, {0, 9}, "unknown unknown count"),
    AnyFlag(Face::kQvScriptwells, {1}, "ConnectionModel count count"),
    AnyFlag(Face::kQvScriptwells, {2}, "Url count count"),
    AnyFlag(Face::kQvScriptwells, {3}, "Duration count count"),
    AnyFlag(Face::kQvScriptwells, {4}, "ConnectionString count count"),
    AnyFlag(Face::kQvScriptwells, {5}, "AttachedFile count count"),
    AnyFlag(Face::kQvScriptwells, {6}, "Parameters count count"),
    Property(Face::kQvScriptwells, 7, "ServerName"),
    Property(Face::kQvScriptwells, 8, "Proxy"),

    AnyFlag(Face::kQvClientServiceRaw, {0, 2}, "unknown unknown count"),
    AnyFlag(Face::kQvClientServiceRaw, {1}, "count Init(object) count"),

    AnyFlag(Face::kConnectionModel, {0, 6, 8}, "unknown unknown unknown unknown unknown count"),
    AnyFlag(Face::kConnectionModel, {1}, "count CreateUserSession(1) count count count count"),
    AnyFlag(Face::kConnectionModel, {2}, "CloseUserSession count count count count count"),
    AnyFlag(Face::kConnectionModel, {3}, "count count count Execute(1,1,object) count count"),
    AnyFlag(Face::kConnectionModel, {4}, "count count ExecuteFile(1,object) count count count"),
    AnyFlag(Face::kConnectionModel, {5}, "count SetUSID(1) count count count count"),
    AnyFlag(Face::kConnectionModel, {7}, "count count DownloadFile(1,1) count count count"),

    AnyFlag(Face::kConnectionString, {0, 7}, "unknown unknown count"),
    // The one property that is written when both flags are set.
    {Face::kConnectionString,
     {1},
     "ToString count count",
     "get_UserName count count",
     "count put_UserName(1) count",
     "count put_UserName(1) count"},
    Property(Face::kConnectionString, 2, "UserPassword", kString),
    Property(Face::kConnectionString, 3, "DatabaseName", kString),
    Property(Face::kConnectionString, 4, "ReplicaID", kString),
    Property(Face::kConnectionString, 5, "DatabaseID", kString),
    AnyFlag(Face::kConnectionString, {6}, "ToString count count"),

    AnyFlag(Face::kConnectionStringRaw, {0, 2}, "unknown unknown count"),
    AnyFlag(Face::kConnectionStringRaw, {1}, "count Initialize(1) count"),

    AnyFlag(Face::kDuration, {0, 1, 2, 10}, "unknown unknown count"),
    Property(Face::kDuration, 3, "Day"),
    Property(Face::kDuration, 4, "Month"),
    Property(Face::kDuration, 5, "Year"),
    Property(Face::kDuration, 6, "Hour"),
    Property(Face::kDuration, 7, "Min"),
    Property(Face::kDuration, 8, "Sec"),
    Property(Face::kDuration, 9, "Negative", "unknown unknown", "-1"),

    AnyFlag(Face::kUrl, {0, 1, 5}, "unknown unknown count"),
    Property(Face::kUrl, 2, "UrlCaption", kString),
    Property(Face::kUrl, 3, "Url", kString),
    AnyFlag(Face::kUrl, {4}, "ToString count count"),

    AnyFlag(Face::kAttachedFile, {0, 8}, "unknown unknown count"),
    AnyFlag(Face::kAttachedFile, {1}, "count Init(1) count"),
    Property(Face::kAttachedFile, 2, "Filename", kTicket),
    Property(Face::kAttachedFile, 3, "FileId", kTicket),
    Property(Face::kAttachedFile, 4, "SourceFileLifeTime", kTicket),
    Property(Face::kAttachedFile, 5, "CleanUp", kTicket),
    Property(Face::kAttachedFile, 6, "TicketId", kTicket),
    AnyFlag(Face::kAttachedFile, {7}, "IsTicketId count count"),

    AnyFlag(Face::kParameter, {0, 5}, "unknown unknown unknown count"),
    AnyFlag(Face::kParameter, {1}, "count count SetValues(1,VT_BSTR1) count"),
    AnyFlag(Face::kParameter, {2}, "get_ParamKey count count count"),
    AnyFlag(Face::kParameter, {3}, "get_ParamValue count count count"),
    AnyFlag(Face::kParameter, {4}, "get_ParamTypeAsString count count count"),

    AnyFlag(Face::kParameters, {0, 6}, "unknown unknown unknown unknown count"),
    AnyFlag(Face::kParameters, {1}, "count count Add(1,VT_BSTR1) count count"),
    AnyFlag(Face::kParameters, {2}, "count Remove(1) count count count"),
    AnyFlag(Face::kParameters, {3}, "count Find(1) count count count"),
    AnyFlag(Face::kParameters, {4}, "Size count count count count"),
    AnyFlag(Face::kParameters, {5}, "Clear count count count count"),
};

class DispatchGrid : public testing::Test {
 protected:
  // The outcomes of every row with each of the flags.
  void ExpectColumn(std::string GridRow::*outcomes, const std::vector<int>& allFlags) {
    for (const GridRow& row : kGrid)
      for (const DISPID id : row.ids)
        for (const int flags : allFlags)
          ExpectOutcomes(row.face, id, static_cast<std::uint16_t>(flags), row.*outcomes);
  }

 private:
  void ExpectOutcomes(Face face, DISPID id, std::uint16_t flags, const std::string& outcomes) {
    std::istringstream words(outcomes);
    std::string expected;
    for (std::size_t count = 0; words >> expected; ++count) {
      Script script;
      const IDispatchPtr object = MakeNoting(face, &script);
      LateCall call(object.get(), id, flags);
      EXPECT_EQ(Outcome(call.With(Arguments(face, id, count)), script), expected)
          << NameOf(face) << " " << id << ", flags " << flags << ", " << count << " arguments";
    }
  }

  // Texts that convert to whatever a member wants; the members that take an object get one as the last.
  std::vector<Variant> Arguments(Face face, DISPID id, std::size_t count) {
    std::vector<Variant> arguments(count, Text(u"1"));
    const bool wantsObject =
        face == Face::kQvClientServiceRaw || (face == Face::kConnectionModel && (id == 3 || id == 4));
    if (wantsObject && count != 0) arguments.back() = FromDispatch(list_.get());
    return arguments;
  }

  // As the table has it, without blanks.
  static std::string Outcome(LateCall& call, const Script& script) {
    const std::string code = call.Code();
    EXPECT_EQ(call.index, kUntouchedIndex);
    EXPECT_TRUE(call.FailureUntouched());
    if (code == "0x8002000E" && script.calls.empty()) return "count";
    if (code == "0x80020003" && script.calls.empty()) return "unknown";
    std::string shown = code == "0x00000000" ? "" : code;
    for (const std::string& line : script.calls)
      for (const char letter : line)
        if (letter != ' ') shown += letter;
    return shown;
  }

  Script listScript_;
  const IDispatchPtr list_ = MakeNoting(Face::kParameters, &listScript_);
};

TEST_F(DispatchGrid, NeitherFlag) {
  ExpectColumn(&GridRow::neither, {0, 1, 8, 9, 0x10, 0x4000, 0x8000});
}

TEST_F(DispatchGrid, FlagOfReading) {
  ExpectColumn(&GridRow::get, {2, 3, 10, 0x8002});
}

TEST_F(DispatchGrid, FlagOfWriting) {
  ExpectColumn(&GridRow::put, {4, 5, 12, 0x8004});
}

TEST_F(DispatchGrid, BothFlags) {
  ExpectColumn(&GridRow::both, {6, 7, 0xFFFF});
}

TEST(DispatchStrangeIds, AreNoMembers) {
  for (const FaceRow& row : kFaces) {
    for (const DISPID id : {-2147483647 - 1, -4, -3, -2, -1, 0, 11, 100, 0x10001, 0x10003, 2147483647}) {
      for (const int flags : {0, 1, 2, 4, 6}) {
        Script script;
        const IDispatchPtr object = row.make(&script);
        LateCall call(object.get(), id, static_cast<std::uint16_t>(flags));
        EXPECT_EQ(call.Code(), "0x80020003") << row.name << " " << id;
        EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
        EXPECT_TRUE(call.FailureUntouched());
        EXPECT_TRUE(script.calls.empty());
      }
    }
  }
}

TEST(DispatchStrangeIds, InterfaceIdAndLocaleAreIgnored) {
  for (const FaceRow& row : kFaces) {
    Script script;
    const IDispatchPtr object = row.make(&script);
    const DISPPARAMS none;
    Variant result;
    for (const LCID locale : {0U, 0x409U, 0xFFFFFFFFU})
      EXPECT_EQ(object->Invoke(100, IUrl::kIid, locale, 1, &none, &result, nullptr, nullptr),
                DISP_E_MEMBERNOTFOUND)
          << row.name;
  }
}

// The id of the name runs this member when it is called with these flags and this number of arguments.
TEST(DispatchByName, NamesLeadToTheirMembers) {
  struct {
    Face face;
    const char16_t* name;
    std::uint16_t flags;
    std::size_t arguments;
    const char* outcome;  // what is noted, or the code
  } const rows[] = {
      {Face::kQvScriptwells, u"CONNECTIONMODEL", 1, 0, "ConnectionModel"},
      {Face::kQvScriptwells, u"proxy", 2, 0, "get_Proxy"},
      {Face::kQvScriptwells, u"serverName", 4, 1, "put_ServerName(1)"},
      {Face::kQvScriptwells, u"get_ServerName", 1, 0, "0x80020003"},
      {Face::kQvScriptwells, u"pVal", 2, 0, "0x80020003"},
      {Face::kConnectionModel, u"downloadfile", 1, 2, "DownloadFile(1, 1)"},
      {Face::kConnectionString, u"get_UserName", 1, 0, "ToString"},
      {Face::kConnectionString, u"UserName", 2, 0, "get_UserName"},
      {Face::kConnectionString, u"newVal", 4, 1, "0x80020003"},
      {Face::kConnectionStringRaw, u"initialize", 1, 1, "Initialize(1)"},
      {Face::kConnectionStringRaw, u"connectionstring", 1, 1, "0x80020003"},
      {Face::kDuration, u"put_Day", 1, 1, "0x80020003"},
      {Face::kDuration, u"put_Day", 4, 1, "put_Day(1)"},
      {Face::kDuration, u"RetVal", 2, 0, "0x80020003"},
      {Face::kUrl, u"url", 2, 0, "get_Url"},
      {Face::kUrl, u"RetVal", 2, 0, "0x80020003"},
      {Face::kAttachedFile, u"Filename", 2, 0, "0x80020003"},
      {Face::kAttachedFile, u"Filename", 4, 1, "0x80020003"},
      {Face::kAttachedFile, u"get_Filename", 2, 0, "get_Filename"},
      {Face::kAttachedFile, u"put_Filename", 4, 1, "put_Filename(1)"},
      {Face::kAttachedFile, u"put_Filename", 1, 1, "0x8002000E"},
      {Face::kAttachedFile, u"Value", 2, 0, "0x80020003"},
      {Face::kAttachedFile, u"val", 2, 0, "0x80020003"},
      {Face::kAttachedFile, u"RetVal", 2, 0, "0x80020003"},
      {Face::kParameter, u"value", 1, 2, "SetValues(1, VT_BSTR 1)"},
      {Face::kParameter, u"retVal", 2, 0, "0x80020003"},
      {Face::kParameters, u"size", 2, 0, "Size"},
  };
  for (const auto& row : rows) {
    Script script;
    const IDispatchPtr object = MakeNoting(row.face, &script);
    const DISPID id = IdOf(object.get(), row.name);
    ASSERT_NE(id, -1) << Shown(row.name);
    LateCall call(object.get(), id, row.flags);
    const std::string code = call.With(std::vector<Variant>(row.arguments, Text(u"1"))).Code();
    EXPECT_EQ(code == "0x00000000" ? script.calls.at(0) : code, row.outcome) << Shown(row.name);
  }
}

}  // namespace
}  // namespace qv
