// What the events of the control interface do not show.
#include "devservice/control/mask.h"

#include <gtest/gtest.h>

namespace qv::devservice {
namespace {

const std::string kId = "0123456789abcdef0123456789ABCDEF";

TEST(MaskSecrets, HidesWhatAnElementHolds) {
  const std::pair<std::string, std::string> rows[] = {
      {"<ConnectionString>Username=joe;Password=a&amp;b;</ConnectionString><a>1</a>",
       "<ConnectionString>***</ConnectionString><a>1</a>"},
      {"<m:usid xsi:type=\"x>y\">short</m:usid>", "<m:usid xsi:type=\"x>y\">***</m:usid>"},
      {"<CreateUserSessionResult\nxsi:type='a'>id</CreateUserSessionResult>",
       "<CreateUserSessionResult\nxsi:type='a'>***</CreateUserSessionResult>"},
      {"<usid/><b>text</b>", "<usid/><b>text</b>"},
      {"<usids>text</usids>", "<usids>text</usids>"},
      {"<usid>cut", "<usid>***"},
      {"<usid", "<usid***"},
      {"<usid>a<![CDATA[secret]]></usid>", "<usid>***</usid>"},
      {"<usid>a<![CDATA[</b>secret]]></usid>", "<usid>***</usid>"},
      {"<usid>a</b>secret", "<usid>***"},
      {"", ""},
      {"<", "<"},
  };
  for (const auto& [text, masked] : rows) EXPECT_EQ(MaskSecrets(text), masked) << text;
}

TEST(MaskSecrets, HidesIdsEverywhere) {
  EXPECT_EQ(MaskSecrets("/WebEditor/FileManagerUpload.aspx?ticket=" + kId),
            "/WebEditor/FileManagerUpload.aspx?ticket=***");
  EXPECT_EQ(MaskSecrets("<Value><Id>" + kId + "</Id></Value>"), "<Value><Id>***</Id></Value>");
  EXPECT_EQ(MaskSecrets(kId + "-" + kId), "***-***");
  const std::string shorter = kId.substr(1);
  EXPECT_EQ(MaskSecrets(shorter + " " + kId + "0"), shorter + " " + kId + "0");
}

TEST(MaskSecrets, HidesIdsInTargetsThatEscapeThem) {
  EXPECT_EQ(MaskTarget("/files/" + kId + "/?a=%20%zz%4"), "/files/***/?a=%20%zz%4");
  EXPECT_EQ(MaskTarget("/files/%30%31" + kId.substr(2) + "/"), "/files/***/");
  EXPECT_EQ(MaskTarget("/up?TICKET=" + kId.substr(0, 31) + "%46"), "/up?TICKET=***");
}

TEST(MaskIds, HidesOnlyThoseThatAreSecret) {
  const std::string digest(32, 'a');
  const auto isSecret = [](const std::string& id) { return id == kId; };
  EXPECT_EQ(MaskIds(digest + " " + kId + "," + kId + "a", isSecret), digest + " ***," + kId + "a");
}

TEST(ReadableText, IsUtf8) {
  using namespace std::string_literals;
  const std::pair<std::string, std::string> rows[] = {
      {"<a>\xC3\xA9</a>", "<a>\xC3\xA9</a>"},
      {"\xFF\xFE<\0\xE9\0"s, "<\xC3\xA9"},
      {"\xFE\xFF\0<\0\xE9"s, "<\xC3\xA9"},
      {"<\0a\0"s, "<a"},
      {"\0<\0a"s, "<a"},
      {"<\0a\0x"s, "<a"},
      {"\xFF\xFE"s, ""},
      {"\xFF\xFE\0\0"s, "(no text)"},
      {"<\0\0\0"s, "(no text)"},
      {"a\0"s, "(no text)"},
      {"", ""},
  };
  for (const auto& [body, text] : rows) EXPECT_EQ(ReadableText(body), text);
}

}  // namespace
}  // namespace qv::devservice
