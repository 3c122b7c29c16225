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

}  // namespace
}  // namespace qv::devservice
