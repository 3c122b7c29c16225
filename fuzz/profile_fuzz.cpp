// Feeds files of profiles, and changes them as `config set` and `config unset` do. A refusal contains no
// value, and what is changed reads back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tools/report/failure.h"
#include "tools/settings/profile.h"
#include "tools/settings/profile_edit.h"

namespace {

using qv::cli::Failure;
using qv::cli::ProfileFile;

constexpr char kFile[] = "config.toml";
constexpr char kValue[] = R"(http://a "b" \ 'c' # d)";

void Require(bool holds) {
  if (!holds) std::abort();
}

// The value of work.server, or empty.
std::string ServerIn(const std::string& text) {
  const ProfileFile file = qv::cli::ParseProfiles(kFile, text);
  const qv::cli::Profile* profile = file.Find("work");
  const qv::cli::ProfileValue* value = profile == nullptr ? nullptr : profile->Find("server");
  return value == nullptr ? "" : value->text;
}

void LookAtAll(const ProfileFile& file) {
  for (const qv::cli::Profile& profile : file.profiles) {
    Require(file.Find(profile.name) == &profile);
    for (const qv::cli::ProfileValue& value : profile.values)
      Require(value.setting != nullptr && value.line >= 1 && profile.Find(value.setting->key) != nullptr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    LookAtAll(qv::cli::ParseProfiles(kFile, text));
    const std::string changed = qv::cli::WithValue(kFile, text, {"work", "server"}, kValue);
    Require(ServerIn(changed) == kValue);
    Require(ServerIn(qv::cli::WithoutValue(kFile, changed, {"work", "server"})).empty());
  } catch (const Failure& failure) {
    Require(failure.Status() == qv::cli::ExitStatus::kLocal && !failure.Message().empty());
  }
  return 0;
}
