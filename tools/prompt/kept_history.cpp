#include "tools/prompt/kept_history.h"

#include "tools/shell/history_text.h"

namespace qv::cli {

namespace {

// A shorter one is in nearly every entry.
constexpr std::size_t kShortestRemoved = 4;

}  // namespace

void KeptHistory::Learn(const std::vector<std::string>& secrets) {
  scriptwells::Masking fresh;
  bool isRemoved = false;
  for (const std::string& secret : secrets) {
    if (!known_.insert(secret).second) continue;
    secrets_.Add(secret);
    if (secret.size() < kShortestRemoved) continue;
    fresh.Add(secret);
    isRemoved = true;
  }
  if (isRemoved) file_.Remove([&fresh](const std::string& entry) { return !fresh.FindIn(entry).empty(); });
}

void KeptHistory::Add(const std::string& entry) const {
  if (MayBeKept(entry, secrets_)) file_.Add(entry);
}

}  // namespace qv::cli
