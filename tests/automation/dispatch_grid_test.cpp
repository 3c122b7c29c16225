// Which member runs, or which code comes back, for each id of each interface with each flag and each number
// of arguments: the fall-through of properties that are called with neither flag is what hosts rely on.
#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

#include "automation/noting_faces.h"

namespace qv {
namespace {

// The outcomes are told for 0, 1, 2, ... arguments, up to one more than the interface lets pass. `count` is
// DISP_E_BADPARAMCOUNT, `unknown` is DISP_E_MEMBERNOTFOUND, and all else is what the object notes.
struct GridRow {
  Face face;
  DISPID id;
  const char* neither;
  const char* get;
  const char* put;
  const char* both;
};
void PrintTo(const GridRow& row, std::ostream* out) {
  *out << NameOf(row.face) << " " << row.id;
}

GridRow AnyFlag(Face face, DISPID id, const char* outcomes) {
  return {face, id, outcomes, outcomes, outcomes, outcomes};
}

const GridRow kGrid[] = {
    AnyFlag(Face::kQvScriptwells, 0, "unknown unknown count"),
    AnyFlag(Face::kQvScriptwells, 1, "ConnectionModel count count"),
    AnyFlag(Face::kQvScriptwells, 2, "Url count count"),
    AnyFlag(Face::kQvScriptwells, 3, "Duration count count"),
    AnyFlag(Face::kQvScriptwells, 4, "ConnectionString count count"),
    AnyFlag(Face::kQvScriptwells, 5, "AttachedFile count count"),
    AnyFlag(Face::kQvScriptwells, 6, "Parameters count count"),
    {Face::kQvScriptwells, 7, "unknown unknown count", "get_ServerName count count",
     "count put_ServerName(1) count", "get_ServerName count count"},
    {Face::kQvScriptwells, 8, "unknown unknown count", "get_Proxy count count", "count put_Proxy(1) count",
     "get_Proxy count count"},
    AnyFlag(Face::kQvScriptwells, 9, "unknown unknown count"),

    AnyFlag(Face::kQvClientServiceRaw, 0, "unknown unknown count"),
    AnyFlag(Face::kQvClientServiceRaw, 1, "count Init(object) count"),
    AnyFlag(Face::kQvClientServiceRaw, 2, "unknown unknown count"),

    AnyFlag(Face::kConnectionModel, 0, "unknown unknown unknown unknown unknown count"),
    AnyFlag(Face::kConnectionModel, 1, "count CreateUserSession(1) count count count count"),
    AnyFlag(Face::kConnectionModel, 2, "CloseUserSession count count count count count"),
    AnyFlag(Face::kConnectionModel, 3, "count count count Execute(1,1,object) count count"),
    AnyFlag(Face::kConnectionModel, 4, "count count ExecuteFile(1,object) count count count"),
    AnyFlag(Face::kConnectionModel, 5, "count SetUSID(1) count count count count"),
    AnyFlag(Face::kConnectionModel, 6, "unknown unknown unknown unknown unknown count"),
    AnyFlag(Face::kConnectionModel, 7, "count count DownloadFile(1,1) count count count"),
    AnyFlag(Face::kConnectionModel, 8, "unknown unknown unknown unknown unknown count"),

    AnyFlag(Face::kConnectionString, 0, "unknown unknown count"),
    // The one property that is written when both flags are set.
    {Face::kConnectionString, 1, "ToString count count", "get_UserName count count",
     "count put_UserName(1) count", "count put_UserName(1) count"},
    {Face::kConnectionString, 2, "ToString count count", "get_UserPassword count count",
     "count put_UserPassword(1) count", "get_UserPassword count count"},
    {Face::kConnectionString, 3, "ToString count count", "get_DatabaseName count count",
     "count put_DatabaseName(1) count", "get_DatabaseName count count"},
    {Face::kConnectionString, 4, "ToString count count", "get_ReplicaID count count",
     "count put_ReplicaID(1) count", "get_ReplicaID count count"},
    {Face::kConnectionString, 5, "ToString count count", "get_DatabaseID count count",
     "count put_DatabaseID(1) count", "get_DatabaseID count count"},
    AnyFlag(Face::kConnectionString, 6, "ToString count count"),
    AnyFlag(Face::kConnectionString, 7, "unknown unknown count"),

    AnyFlag(Face::kConnectionStringRaw, 0, "unknown unknown count"),
    AnyFlag(Face::kConnectionStringRaw, 1, "count Initialize(1) count"),
    AnyFlag(Face::kConnectionStringRaw, 2, "unknown unknown count"),

    AnyFlag(Face::kDuration, 0, "unknown unknown count"),
    AnyFlag(Face::kDuration, 1, "unknown unknown count"),
    AnyFlag(Face::kDuration, 2, "unknown unknown count"),
    {Face::kDuration, 3, "unknown unknown count", "get_Day count count", "count put_Day(1) count",
     "get_Day count count"},
    {Face::kDuration, 4, "unknown unknown count", "get_Month count count", "count put_Month(1) count",
     "get_Month count count"},
    {Face::kDuration, 5, "unknown unknown count", "get_Year count count", "count put_Year(1) count",
     "get_Year count count"},
    {Face::kDuration, 6, "unknown unknown count", "get_Hour count count", "count put_Hour(1) count",
     "get_Hour count count"},
    {Face::kDuration, 7, "unknown unknown count", "get_Min count count", "count put_Min(1) count",
     "get_Min count count"},
    {Face::kDuration, 8, "unknown unknown count", "get_Sec count count", "count put_Sec(1) count",
     "get_Sec count count"},
    {Face::kDuration, 9, "unknown unknown count", "get_Negative count count", "count put_Negative(-1) count",
     "get_Negative count count"},
    AnyFlag(Face::kDuration, 10, "unknown unknown count"),

    AnyFlag(Face::kUrl, 0, "unknown unknown count"),
    AnyFlag(Face::kUrl, 1, "unknown unknown count"),
    {Face::kUrl, 2, "ToString count count", "get_UrlCaption count count", "count put_UrlCaption(1) count",
     "get_UrlCaption count count"},
    {Face::kUrl, 3, "ToString count count", "get_Url count count", "count put_Url(1) count",
     "get_Url count count"},
    AnyFlag(Face::kUrl, 4, "ToString count count"),
    AnyFlag(Face::kUrl, 5, "unknown unknown count"),

    AnyFlag(Face::kAttachedFile, 0, "unknown unknown count"),
    AnyFlag(Face::kAttachedFile, 1, "count Init(1) count"),
    {Face::kAttachedFile, 2, "IsTicketId count count", "get_Filename count count",
     "count put_Filename(1) count", "get_Filename count count"},
    {Face::kAttachedFile, 3, "IsTicketId count count", "get_FileId count count", "count put_FileId(1) count",
     "get_FileId count count"},
    {Face::kAttachedFile, 4, "IsTicketId count count", "get_SourceFileLifeTime count count",
     "count put_SourceFileLifeTime(1) count", "get_SourceFileLifeTime count count"},
    {Face::kAttachedFile, 5, "IsTicketId count count", "get_CleanUp count count",
     "count put_CleanUp(1) count", "get_CleanUp count count"},
    {Face::kAttachedFile, 6, "IsTicketId count count", "get_TicketId count count",
     "count put_TicketId(1) count", "get_TicketId count count"},
    AnyFlag(Face::kAttachedFile, 7, "IsTicketId count count"),
    AnyFlag(Face::kAttachedFile, 8, "unknown unknown count"),

    AnyFlag(Face::kParameter, 0, "unknown unknown unknown count"),
    AnyFlag(Face::kParameter, 1, "count count SetValues(1,VT_BSTR1) count"),
    AnyFlag(Face::kParameter, 2, "get_ParamKey count count count"),
    AnyFlag(Face::kParameter, 3, "get_ParamValue count count count"),
    AnyFlag(Face::kParameter, 4, "get_ParamTypeAsString count count count"),
    AnyFlag(Face::kParameter, 5, "unknown unknown unknown count"),

    AnyFlag(Face::kParameters, 0, "unknown unknown unknown unknown count"),
    AnyFlag(Face::kParameters, 1, "count count Add(1,VT_BSTR1) count count"),
    AnyFlag(Face::kParameters, 2, "count Remove(1) count count count"),
    AnyFlag(Face::kParameters, 3, "count Find(1) count count count"),
    AnyFlag(Face::kParameters, 4, "Size count count count count"),
    AnyFlag(Face::kParameters, 5, "Clear count count count count"),
    AnyFlag(Face::kParameters, 6, "unknown unknown unknown unknown count")};

class DispatchGrid : public testing::TestWithParam<GridRow> {
 protected:
  DispatchGrid() : list_(new NotingParameters(&listScript_)) {}

  // Texts that convert to whatever a member wants; the members that take an object get one in its place.
  std::vector<Variant> Arguments(std::size_t count) {
    std::vector<Variant> arguments(count, Text(u"1"));
    if (count == 0) return arguments;
    const bool wantsObject =
        GetParam().face == Face::kQvClientServiceRaw ||
        (GetParam().face == Face::kConnectionModel && (GetParam().id == 3 || GetParam().id == 4));
    if (wantsObject) arguments.back() = FromDispatch(list_.get());
    return arguments;
  }

  void ExpectOutcomes(const char* outcomes, std::uint16_t flags) {
    std::istringstream words(outcomes);
    std::string expected;
    for (std::size_t count = 0; words >> expected; ++count) {
      EXPECT_EQ(Outcome(count, flags), expected) << "flags " << flags << ", " << count << " arguments";
    }
  }

  // As the table tells it, without blanks.
  std::string Outcome(std::size_t count, std::uint16_t flags) {
    Script script;
    const IDispatchPtr object = MakeNoting(GetParam().face, &script);
    LateCall call(object.get(), GetParam().id, flags);
    const std::string code = call.With(Arguments(count)).Code();
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
  boost::intrusive_ptr<NotingParameters> list_;
};

TEST_P(DispatchGrid, NeitherFlag) {
  for (const int flags : {0, 1, 8, 9, 0x10, 0x4000, 0x8000})
    ExpectOutcomes(GetParam().neither, static_cast<std::uint16_t>(flags));
}

TEST_P(DispatchGrid, FlagOfReading) {
  for (const int flags : {2, 3, 10, 0x8002})
    ExpectOutcomes(GetParam().get, static_cast<std::uint16_t>(flags));
}

TEST_P(DispatchGrid, FlagOfWriting) {
  for (const int flags : {4, 5, 12, 0x8004})
    ExpectOutcomes(GetParam().put, static_cast<std::uint16_t>(flags));
}

TEST_P(DispatchGrid, BothFlags) {
  for (const int flags : {6, 7, 0xFFFF}) ExpectOutcomes(GetParam().both, static_cast<std::uint16_t>(flags));
}

std::string GridName(const testing::TestParamInfo<GridRow>& row) {
  return NameOf(row.param.face) + std::to_string(row.param.id);
}
INSTANTIATE_TEST_SUITE_P(Ids, DispatchGrid, testing::ValuesIn(kGrid), GridName);

class DispatchStrangeIds : public testing::TestWithParam<Face> {};

TEST_P(DispatchStrangeIds, AreNoMembers) {
  for (const DISPID id : {-2147483647 - 1, -4, -3, -2, -1, 0, 11, 100, 0x10001, 0x10003, 2147483647}) {
    for (const int flags : {0, 1, 2, 4, 6}) {
      Script script;
      const IDispatchPtr object = MakeNoting(GetParam(), &script);
      LateCall call(object.get(), id, static_cast<std::uint16_t>(flags));
      EXPECT_EQ(call.Code(), "0x80020003") << id;
      EXPECT_EQ(ShownValue(call.result), "VT_EMPTY");
      EXPECT_TRUE(call.FailureUntouched());
      EXPECT_TRUE(script.calls.empty());
    }
  }
}

TEST_P(DispatchStrangeIds, InterfaceIdAndLocaleAreNotLookedAt) {
  Script script;
  const IDispatchPtr object = MakeNoting(GetParam(), &script);
  const DISPPARAMS none;
  Variant result;
  for (const LCID locale : {0u, 0x409u, 0xFFFFFFFFu})
    EXPECT_EQ(object->Invoke(100, IUrl::kIid, locale, 1, &none, &result, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
}

INSTANTIATE_TEST_SUITE_P(Interfaces, DispatchStrangeIds, testing::ValuesIn(kAllFaces),
                         [](const testing::TestParamInfo<Face>& row) {
                           return std::string(NameOf(row.param));
                         });

// By name: the id that a name answers runs this member when it is called as written here.
struct NamedCall {
  Face face;
  const char16_t* name;
  int flags;
  int count;
  const char* outcome;  // what is noted, or the code
};

TEST(DispatchByName, NamesLeadToTheirMembers) {
  const NamedCall rows[] = {{Face::kQvScriptwells, u"CONNECTIONMODEL", 1, 0, "ConnectionModel"},
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
                            {Face::kParameters, u"size", 2, 0, "Size"}};
  for (const NamedCall& row : rows) {
    Script script;
    const IDispatchPtr object = MakeNoting(row.face, &script);
    const DISPID id = IdOf(object.get(), row.name);
    ASSERT_NE(id, -1) << Shown(row.name);
    LateCall call(object.get(), id, static_cast<std::uint16_t>(row.flags));
    call.With(std::vector<Variant>(static_cast<std::size_t>(row.count), Text(u"1")));
    const std::string code = call.Code();
    EXPECT_EQ(code == "0x00000000" ? script.calls.at(0) : code, row.outcome) << Shown(row.name);
  }
}

}  // namespace
}  // namespace qv
