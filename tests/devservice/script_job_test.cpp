#include "devservice/workers/script_messages.h"

#include <gtest/gtest.h>

namespace qv::devservice::testing {
namespace {

nlohmann::json JobMessage() {
  ScriptJob job;
  job.code = "1";
  job.parameters = {{"a", "int", "7"}};
  job.files.readable = {{"t", "/tmp/x", 4}};
  job.files.ticketsLeft = 3;
  job.files.newFilesLeft = 18446744073709551615u;
  return ToJson(job);
}

nlohmann::json ResultMessage() {
  ScriptResult result;
  result.kind = ResultKind::kFault;
  result.code = -5;
  return ToJson(result);
}

// As the other end gets it.
nlohmann::json Sent(const nlohmann::json& message) {
  return nlohmann::json::parse(message.dump());
}

TEST(ScriptJobMessage, ArrivesAsItWasSent) {
  const ScriptJob job = JobFromJson(Sent(JobMessage()));
  EXPECT_EQ(job.code, "1");
  EXPECT_EQ(job.parameters.at(0).text, "7");
  EXPECT_EQ(job.files.readable.at(0).size, 4u);
  EXPECT_EQ(job.files.ticketsLeft, 3u);
  EXPECT_EQ(job.files.newFilesLeft, 18446744073709551615u);
  const ScriptResult result = ResultFromJson(Sent(ResultMessage()));
  EXPECT_EQ(result.kind, ResultKind::kFault);
  EXPECT_EQ(result.code, -5);
}

// A number out of range has no value as a whole one.
TEST(ScriptJobMessage, CountThatIsNotWholeIsRefused) {
  for (const char* key : {"ticketsLeft", "newFilesLeft"}) {
    for (const nlohmann::json& wrong : {nlohmann::json(1e300), nlohmann::json(-1), nlohmann::json("3")}) {
      nlohmann::json message = JobMessage();
      message["files"][key] = wrong;
      EXPECT_THROW(JobFromJson(message), nlohmann::json::exception) << key << " " << wrong;
    }
  }
  nlohmann::json message = JobMessage();
  message["files"]["readable"][0][2] = 1e300;
  EXPECT_THROW(JobFromJson(message), nlohmann::json::exception);
}

TEST(ScriptJobMessage, KindAndCodeThatAreNotWholeAreRefused) {
  for (const char* key : {"kind", "code"}) {
    nlohmann::json message = ResultMessage();
    message[key] = -1e300;
    EXPECT_THROW(ResultFromJson(message), nlohmann::json::exception) << key;
  }
}

}  // namespace
}  // namespace qv::devservice::testing
