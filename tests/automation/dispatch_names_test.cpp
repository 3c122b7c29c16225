// GetIDsOfNames: hosts that never saw a header know members by these names and ids.
#include <gtest/gtest.h>

#include <ostream>

#include "automation/noting_faces.h"

namespace qv {
namespace {

struct Name {
  const char* name;
  DISPID id;  // what the name answers, not what its row says
};

struct NameTable {
  Face face;
  std::vector<Name> names;  // all rows, in their order
};
void PrintTo(const NameTable& row, std::ostream* out) {
  *out << NameOf(row.face);
}

std::u16string Wide(const std::string& text) {
  return std::u16string(text.begin(), text.end());
}
std::string Cased(std::string text, char first, char last, int shift) {
  for (char& letter : text)
    if (letter >= first && letter <= last) letter = static_cast<char>(letter + shift);
  return text;
}

constexpr DISPID kUntouched = 0x5A5A;

class DispatchNames : public testing::TestWithParam<NameTable> {
 protected:
  DispatchNames() : object_(MakeNoting(GetParam().face, &script_)) {}

  // "0x00000000 7", the code and what stands behind the pointer.
  std::string Asked(const std::string& name) {
    const std::u16string wide = Wide(name);
    const char16_t* pointer = wide.c_str();
    DISPID id = kUntouched;
    const HRESULT code = object_->GetIDsOfNames(Guid{}, &pointer, 1, 0, &id);
    return ShownCode(code) + " " + std::to_string(id);
  }

  Script script_;
  IDispatchPtr object_;
};

TEST_P(DispatchNames, EachNameIsFoundInAnyCase) {
  for (const Name& row : GetParam().names) {
    const std::string expected = "0x00000000 " + std::to_string(row.id);
    EXPECT_EQ(Asked(row.name), expected) << row.name;
    EXPECT_EQ(Asked(Cased(row.name, 'A', 'Z', 32)), expected) << row.name;
    EXPECT_EQ(Asked(Cased(row.name, 'a', 'z', -32)), expected) << row.name;
  }
  EXPECT_TRUE(script_.calls.empty());
}

TEST_P(DispatchNames, PartsOfNamesAndMoreThanNamesAreUnknown) {
  for (const Name& row : GetParam().names) {
    const std::string name = row.name;
    EXPECT_EQ(Asked(name + "x"), "0x80020006 23130") << name;
    EXPECT_EQ(Asked(name + " "), "0x80020006 23130") << name;
    EXPECT_EQ(Asked(" " + name), "0x80020006 23130") << name;
    const std::size_t line = name.find('_');
    if (line == std::string::npos) continue;
    // The unit that differs from "_" by the bit of case alone.
    EXPECT_EQ(Asked(name.substr(0, line) + "\x7F" + name.substr(line + 1)), "0x80020006 23130") << name;
  }
  EXPECT_EQ(Asked(""), "0x80020006 23130");
}

TEST_P(DispatchNames, NamesOfOtherInterfacesAreUnknown) {
  const char* const others[] = {"QueryInterface",    "AddRef",   "Release", "GetIDsOfNames", "Invoke",
                                "SetServer",         "SetText",  "GetText", "ToText",        "FromText",
                                "SetClientServices", "Execute2", "get_",    "put_",          "get_Size"};
  for (const char* name : others) EXPECT_EQ(Asked(name), "0x80020006 23130") << name;
}

TEST_P(DispatchNames, AllRowsInOneCallAnswerEach) {
  std::vector<std::u16string> texts;
  for (const Name& row : GetParam().names) texts.push_back(Wide(row.name));
  std::vector<const char16_t*> names;
  for (const std::u16string& text : texts) names.push_back(text.c_str());
  std::vector<DISPID> ids(names.size() + 1, kUntouched);
  EXPECT_EQ(
      object_->GetIDsOfNames(Guid{}, names.data(), static_cast<std::uint32_t>(names.size()), 0, ids.data()),
      S_OK);
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(ids[i], GetParam().names[i].id) << i;
  EXPECT_EQ(ids.back(), kUntouched);
}

TEST_P(DispatchNames, UnknownNameEndsTheCallAndEarlierIdsStay) {
  const std::u16string known = Wide(GetParam().names.back().name);
  const char16_t* const names[] = {known.c_str(), known.c_str(), u"nonsense", known.c_str()};
  DISPID ids[] = {kUntouched, kUntouched, kUntouched, kUntouched};
  EXPECT_EQ(object_->GetIDsOfNames(Guid{}, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], GetParam().names.back().id);
  EXPECT_EQ(ids[1], GetParam().names.back().id);
  EXPECT_EQ(ids[3], kUntouched);
}

TEST_P(DispatchNames, InterfaceIdAndLocaleAreNotLookedAt) {
  const std::u16string known = Wide(GetParam().names.front().name);
  const char16_t* pointer = known.c_str();
  const Guid ids[] = {Guid{}, IUnknown::kIid, IUrl::kIid};
  for (const Guid& iid : ids) {
    for (const LCID locale : {0u, 0x409u, 0x41Fu, 0xFFFFFFFFu}) {
      DISPID id = kUntouched;
      EXPECT_EQ(object_->GetIDsOfNames(iid, &pointer, 1, locale, &id), S_OK);
      EXPECT_EQ(id, GetParam().names.front().id);
    }
  }
}

TEST_P(DispatchNames, NoNamesAreFound) {
  DISPID id = kUntouched;
  const char16_t* name = u"nonsense";
  EXPECT_EQ(object_->GetIDsOfNames(Guid{}, &name, 0, 0, &id), S_OK);
  EXPECT_EQ(object_->GetIDsOfNames(Guid{}, nullptr, 0, 0, nullptr), S_OK);
  EXPECT_EQ(id, kUntouched);
}

TEST_P(DispatchNames, NullsAreRefused) {
  const std::u16string known = Wide(GetParam().names.front().name);
  const char16_t* const names[] = {known.c_str(), nullptr, known.c_str()};
  DISPID ids[] = {kUntouched, kUntouched, kUntouched};
  EXPECT_EQ(object_->GetIDsOfNames(Guid{}, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], GetParam().names.front().id);
  EXPECT_EQ(ids[2], kUntouched);
  EXPECT_TRUE(Failed(object_->GetIDsOfNames(Guid{}, nullptr, 1, 0, ids)));
  EXPECT_TRUE(Failed(object_->GetIDsOfNames(Guid{}, names, 1, 0, nullptr)));
}

INSTANTIATE_TEST_SUITE_P(
    Interfaces, DispatchNames,
    testing::Values(
        NameTable{Face::kQvScriptwells,
                  {{"pVal", 0},
                   {"ConnectionModel", 1},
                   {"Url", 2},
                   {"Duration", 3},
                   {"ConnectionString", 4},
                   {"AttachedFile", 5},
                   {"Parameters", 6},
                   {"ServerName", 7},
                   {"serverName", 7},  // its own row says 0
                   {"get_ServerName", 7},
                   {"put_ServerName", 7},
                   {"Proxy", 8},
                   {"proxy", 8},  // its own row says 0
                   {"get_Proxy", 8},
                   {"put_Proxy", 8}}},
        NameTable{Face::kQvClientServiceRaw, {{"pVal", 0}, {"Init", 1}}},
        NameTable{Face::kConnectionModel,
                  {{"CreateUserSession", 1},
                   {"CloseUserSession", 2},
                   {"Execute", 3},
                   {"ExecuteFile", 4},
                   {"SetUSID", 5},
                   {"DownloadFile", 7}}},
        NameTable{Face::kConnectionString,
                  {{"UserName", 1},
                   {"newVal", 0},
                   {"put_UserName", 1},
                   {"get_UserName", 1},
                   {"UserPassword", 2},
                   {"RetVal", 0},
                   {"get_UserPassword", 2},
                   {"put_UserPassword", 2},
                   {"DatabaseName", 3},
                   {"get_DatabaseName", 3},
                   {"put_DatabaseName", 3},
                   {"ReplicaID", 4},
                   {"get_ReplicaID", 4},
                   {"put_ReplicaID", 4},
                   {"DatabaseID", 5},
                   {"get_DatabaseID", 5},
                   {"put_DatabaseID", 5},
                   {"ToString", 6}}},
        NameTable{Face::kConnectionStringRaw, {{"connectionString", 0}, {"Initialize", 1}}},
        NameTable{Face::kDuration,
                  {{"Day", 3},          {"RetVal", 0},      {"get_Day", 3},  {"put_Day", 3},  {"Month", 4},
                   {"get_Month", 4},    {"put_Month", 4},   {"Year", 5},     {"get_Year", 5}, {"put_Year", 5},
                   {"Hour", 6},         {"get_Hour", 6},    {"put_Hour", 6}, {"Min", 7},      {"get_Min", 7},
                   {"put_Min", 7},      {"Sec", 8},         {"get_Sec", 8},  {"put_Sec", 8},  {"Negative", 9},
                   {"get_Negative", 9}, {"put_Negative", 9}}},
        NameTable{Face::kUrl,
                  {{"UrlCaption", 2},
                   {"RetVal", 0},
                   {"get_UrlCaption", 2},
                   {"put_UrlCaption", 2},
                   {"Url", 3},
                   {"get_Url", 3},
                   {"put_Url", 3},
                   {"ToString", 4}}},
        NameTable{Face::kAttachedFile,
                  {{"Filename", 0},  // the argument of Init stands first
                   {"Init", 1},
                   {"Filename", 0},
                   {"RetVal", 0},
                   {"get_Filename", 2},
                   {"put_Filename", 2},
                   {"FileId", 3},
                   {"get_FileId", 3},
                   {"put_FileId", 3},
                   {"SourceFileLifeTime", 4},
                   {"get_SourceFileLifeTime", 4},
                   {"put_SourceFileLifeTime", 4},
                   {"CleanUp", 5},
                   {"get_CleanUp", 5},
                   {"put_CleanUp", 5},
                   {"TicketId", 6},
                   {"Value", 0},
                   {"get_TicketId", 6},
                   {"put_TicketId", 6},
                   {"val", 0},
                   {"IsTicketId", 7}}},
        NameTable{Face::kParameter,
                  {{"key", 0},
                   {"value", 1},
                   {"SetValues", 1},
                   {"ParamKey", 2},
                   {"retVal", 0},
                   {"get_ParamKey", 2},
                   {"ParamValue", 3},
                   {"get_ParamValue", 3},
                   {"ParamTypeAsString", 4},
                   {"get_ParamTypeAsString", 4}}},
        NameTable{Face::kParameters, {{"Add", 1}, {"Remove", 2}, {"Find", 3}, {"Size", 4}, {"Clear", 5}}}),
    [](const testing::TestParamInfo<NameTable>& row) { return std::string(NameOf(row.param.face)); });

struct Stranger {
  Face face;
  const char16_t* name;
};

// Letters that fold to ASCII ones in some alphabets, and names that only another interface has.
TEST(DispatchName, OnlyAsciiLettersFold) {
  const Stranger rows[] = {{Face::kParameters, u"\u017Fize"},
                           {Face::kParameters, u"S\u0131ze"},
                           {Face::kParameters, u"S\u0130ZE"},
                           {Face::kParameter, u"Param\u212Aey"},
                           {Face::kDuration, u"M\u0131n"},
                           {Face::kDuration, u"\uFF24ay"},
                           {Face::kUrl, u"\u00DArl"},
                           // The low byte alone is the letter.
                           {Face::kUrl, u"\u0155rl"},
                           {Face::kUrl, u"U\u0172l"}};
  for (const Stranger& row : rows) {
    Script script;
    const IDispatchPtr object = MakeNoting(row.face, &script);
    DISPID id = kUntouched;
    EXPECT_EQ(object->GetIDsOfNames(Guid{}, &row.name, 1, 0, &id), DISP_E_UNKNOWNNAME) << Shown(row.name);
  }
}

TEST(DispatchName, MembersOfNeighboursAreUnknown) {
  const Stranger rows[] = {{Face::kQvScriptwells, u"Init"},
                           {Face::kQvClientServiceRaw, u"ServerName"},
                           {Face::kConnectionModel, u"url"},
                           {Face::kConnectionModel, u"parameters"},
                           {Face::kConnectionModel, u"usid"},
                           {Face::kConnectionModel, u"connectionString"},
                           {Face::kConnectionString, u"Initialize"},
                           {Face::kConnectionString, u"connectionString"},
                           {Face::kConnectionStringRaw, u"ToString"},
                           {Face::kDuration, u"newVal"},
                           {Face::kUrl, u"newVal"},
                           {Face::kUrl, u"Init"},
                           {Face::kAttachedFile, u"get_IsTicketId"},
                           {Face::kParameter, u"put_ParamKey"},
                           {Face::kParameters, u"key"},
                           {Face::kParameters, u"value"},
                           {Face::kParameters, u"index"}};
  for (const Stranger& row : rows) {
    Script script;
    const IDispatchPtr object = MakeNoting(row.face, &script);
    DISPID id = kUntouched;
    EXPECT_EQ(object->GetIDsOfNames(Guid{}, &row.name, 1, 0, &id), DISP_E_UNKNOWNNAME) << Shown(row.name);
  }
}

}  // namespace
}  // namespace qv
