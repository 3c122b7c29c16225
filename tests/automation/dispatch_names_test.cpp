// GetIDsOfNames: late-binding hosts use members by these names and ids.
#include <gtest/gtest.h>

#include <sstream>

#include "automation/noting_faces.h"

namespace qv {
namespace {

// The id for each name, in the order of the rows. It may differ from the id in the name's row.
struct NameTable {
  Face face;
  const char* names;
};
const NameTable kTables[] = {
    {Face::kQvScriptwells,
     // serverName and proxy have separate rows with id 0.
     "pVal=0 ConnectionModel=1 Url=2 Duration=3 ConnectionString=4 AttachedFile=5 Parameters=6 "
     "ServerName=7 serverName=7 get_ServerName=7 put_ServerName=7 Proxy=8 proxy=8 get_Proxy=8 "
     "put_Proxy=8"},
    {Face::kQvClientServiceRaw, "pVal=0 Init=1"},
    {Face::kConnectionModel,
     "CreateUserSession=1 CloseUserSession=2 Execute=3 ExecuteFile=4 SetUSID=5 DownloadFile=7"},
    {Face::kConnectionString,
     "UserName=1 newVal=0 put_UserName=1 get_UserName=1 UserPassword=2 RetVal=0 get_UserPassword=2 "
     "put_UserPassword=2 DatabaseName=3 get_DatabaseName=3 put_DatabaseName=3 ReplicaID=4 "
     "get_ReplicaID=4 put_ReplicaID=4 DatabaseID=5 get_DatabaseID=5 put_DatabaseID=5 ToString=6"},
    {Face::kConnectionStringRaw, "connectionString=0 Initialize=1"},
    {Face::kDuration,
     "Day=3 RetVal=0 get_Day=3 put_Day=3 Month=4 get_Month=4 put_Month=4 Year=5 get_Year=5 "
     "put_Year=5 Hour=6 get_Hour=6 put_Hour=6 Min=7 get_Min=7 put_Min=7 Sec=8 get_Sec=8 put_Sec=8 "
     "Negative=9 get_Negative=9 put_Negative=9"},
    {Face::kUrl,
     "UrlCaption=2 RetVal=0 get_UrlCaption=2 put_UrlCaption=2 Url=3 get_Url=3 put_Url=3 ToString=4"},
    {Face::kAttachedFile,
     // Filename finds the argument of Init first.
     "Filename=0 Init=1 Filename=0 RetVal=0 get_Filename=2 put_Filename=2 FileId=3 get_FileId=3 "
     "put_FileId=3 SourceFileLifeTime=4 get_SourceFileLifeTime=4 put_SourceFileLifeTime=4 CleanUp=5 "
     "get_CleanUp=5 put_CleanUp=5 TicketId=6 Value=0 get_TicketId=6 put_TicketId=6 val=0 "
     "IsTicketId=7"},
    {Face::kParameter,
     "key=0 value=1 SetValues=1 ParamKey=2 retVal=0 get_ParamKey=2 ParamValue=3 get_ParamValue=3 "
     "ParamTypeAsString=4 get_ParamTypeAsString=4"},
    {Face::kParameters, "Add=1 Remove=2 Find=3 Size=4 Clear=5"},
};

struct Name {
  std::string name;
  DISPID id;
};

std::vector<Name> NamesOf(const NameTable& table) {
  std::vector<Name> names;
  std::istringstream words(table.names);
  for (std::string word; words >> word;) {
    const std::size_t equals = word.find('=');
    names.push_back({word.substr(0, equals), std::stoi(word.substr(equals + 1))});
  }
  return names;
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
constexpr char kUnknown[] = "0x80020006 23130";  // and the id unchanged

// "0x00000000 7", the code and the id.
std::string Asked(IDispatch* object, const char16_t* name) {
  DISPID id = kUntouched;
  const HRESULT code = object->GetIDsOfNames(Guid{}, &name, 1, 0, &id);
  return ShownCode(code) + " " + std::to_string(id);
}

class DispatchNames : public testing::Test {
 protected:
  template <class Check>
  void ForEachTable(const Check& check) {
    for (const NameTable& table : kTables) {
      SCOPED_TRACE(NameOf(table.face));
      object_ = MakeNoting(table.face, &script_);
      check(NamesOf(table));
      EXPECT_TRUE(script_.calls.empty());
    }
  }
  std::string Asked(const std::string& name) { return qv::Asked(object_.get(), Wide(name).c_str()); }

  Script script_;
  IDispatchPtr object_;
};

TEST_F(DispatchNames, EachNameIsFoundInAnyCase) {
  ForEachTable([this](const std::vector<Name>& rows) {
    for (const Name& row : rows) {
      const std::string expected = "0x00000000 " + std::to_string(row.id);
      EXPECT_EQ(Asked(row.name), expected) << row.name;
      EXPECT_EQ(Asked(Cased(row.name, 'A', 'Z', 32)), expected) << row.name;
      EXPECT_EQ(Asked(Cased(row.name, 'a', 'z', -32)), expected) << row.name;
    }
  });
}

TEST_F(DispatchNames, PartsOfNamesAndMoreThanNamesAreUnknown) {
  ForEachTable([this](const std::vector<Name>& rows) {
    for (const auto& [name, id] : rows) {
      for (const std::string& more : {name + "x", name + " ", " " + name})
        EXPECT_EQ(Asked(more), kUnknown) << more;
      const std::size_t line = name.find('_');
      if (line == std::string::npos) continue;
      // The unit that differs from "_" only in the case bit.
      EXPECT_EQ(Asked(name.substr(0, line) + "\x7F" + name.substr(line + 1)), kUnknown) << name;
    }
    EXPECT_EQ(Asked(""), kUnknown);
  });
}

TEST_F(DispatchNames, NamesOfOtherInterfacesAreUnknown) {
  ForEachTable([this](const std::vector<Name>&) {
    for (const char* name :
         {"QueryInterface", "AddRef", "Release", "GetIDsOfNames", "Invoke", "SetServer", "SetText", "GetText",
          "ToText", "FromText", "SetClientServices", "Execute2", "get_", "put_", "get_Size"})
      EXPECT_EQ(Asked(name), kUnknown) << name;
  });
}

TEST_F(DispatchNames, AllRowsInOneCallAnswerEach) {
  ForEachTable([this](const std::vector<Name>& rows) {
    std::vector<std::u16string> texts;
    texts.reserve(rows.size());
    for (const Name& row : rows) texts.push_back(Wide(row.name));
    std::vector<const char16_t*> names;
    names.reserve(texts.size());
    for (const std::u16string& text : texts) names.push_back(text.c_str());
    std::vector<DISPID> ids(rows.size() + 1, kUntouched);
    const auto count = static_cast<std::uint32_t>(rows.size());
    EXPECT_EQ(object_->GetIDsOfNames(Guid{}, names.data(), count, 0, ids.data()), S_OK);
    for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(ids[i], rows[i].id) << i;
    EXPECT_EQ(ids.back(), kUntouched);
  });
}

TEST_F(DispatchNames, UnknownNameEndsTheCallAndEarlierIdsStay) {
  ForEachTable([this](const std::vector<Name>& rows) {
    const std::u16string known = Wide(rows.back().name);
    const char16_t* const names[] = {known.c_str(), known.c_str(), u"nonsense", known.c_str()};
    DISPID ids[] = {kUntouched, kUntouched, kUntouched, kUntouched};
    EXPECT_EQ(object_->GetIDsOfNames(Guid{}, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], rows.back().id);
    EXPECT_EQ(ids[1], rows.back().id);
    EXPECT_EQ(ids[3], kUntouched);
  });
}

TEST_F(DispatchNames, InterfaceIdAndLocaleAreIgnored) {
  ForEachTable([this](const std::vector<Name>& rows) {
    const std::u16string known = Wide(rows.front().name);
    const char16_t* pointer = known.c_str();
    for (const Guid& iid : {Guid{}, IUnknown::kIid, IUrl::kIid}) {
      for (const LCID locale : {0U, 0x409U, 0x41FU, 0xFFFFFFFFU}) {
        DISPID id = kUntouched;
        EXPECT_EQ(object_->GetIDsOfNames(iid, &pointer, 1, locale, &id), S_OK);
        EXPECT_EQ(id, rows.front().id);
      }
    }
  });
}

TEST_F(DispatchNames, NoNamesAreFound) {
  ForEachTable([this](const std::vector<Name>&) {
    DISPID id = kUntouched;
    const char16_t* name = u"nonsense";
    EXPECT_EQ(object_->GetIDsOfNames(Guid{}, &name, 0, 0, &id), S_OK);
    EXPECT_EQ(object_->GetIDsOfNames(Guid{}, nullptr, 0, 0, nullptr), S_OK);
    EXPECT_EQ(id, kUntouched);
  });
}

TEST_F(DispatchNames, NullsAreRefused) {
  ForEachTable([this](const std::vector<Name>& rows) {
    const std::u16string known = Wide(rows.front().name);
    const char16_t* const names[] = {known.c_str(), nullptr, known.c_str()};
    DISPID ids[] = {kUntouched, kUntouched, kUntouched};
    EXPECT_EQ(object_->GetIDsOfNames(Guid{}, names, 3, 0, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], rows.front().id);
    EXPECT_EQ(ids[2], kUntouched);
    EXPECT_TRUE(Failed(object_->GetIDsOfNames(Guid{}, nullptr, 1, 0, ids)));
    EXPECT_TRUE(Failed(object_->GetIDsOfNames(Guid{}, names, 1, 0, nullptr)));
  });
}

TEST(DispatchName, NamesThatOnlyLookKnownAreUnknown) {
  struct {
    Face face;
    std::vector<const char16_t*> names;
  } const rows[] = {
      // Letters that fold to ASCII ones in some alphabets.
      {Face::kParameters, {u"\u017Fize", u"S\u0131ze", u"S\u0130ZE"}},
      {Face::kParameter, {u"Param\u212Aey"}},
      {Face::kDuration, {u"M\u0131n", u"\uFF24ay"}},
      {Face::kUrl, {u"\u00DArl"}},
      // The low byte alone is the letter.
      {Face::kUrl, {u"\u0155rl", u"U\u0172l"}},
      // Members and arguments of other interfaces.
      {Face::kQvScriptwells, {u"Init"}},
      {Face::kQvClientServiceRaw, {u"ServerName"}},
      {Face::kConnectionModel, {u"url", u"parameters", u"usid", u"connectionString"}},
      {Face::kConnectionString, {u"Initialize", u"connectionString"}},
      {Face::kConnectionStringRaw, {u"ToString"}},
      {Face::kDuration, {u"newVal"}},
      {Face::kUrl, {u"newVal", u"Init"}},
      {Face::kAttachedFile, {u"get_IsTicketId"}},
      {Face::kParameter, {u"put_ParamKey"}},
      {Face::kParameters, {u"key", u"value", u"index"}},
  };
  for (const auto& row : rows) {
    Script script;
    const IDispatchPtr object = MakeNoting(row.face, &script);
    for (const char16_t* name : row.names) EXPECT_EQ(Asked(object.get(), name), kUnknown) << Shown(name);
  }
}

}  // namespace
}  // namespace qv
