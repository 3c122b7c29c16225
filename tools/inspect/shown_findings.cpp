#include "tools/inspect/shown_findings.h"

#include <algorithm>

#include "face/text/unsafe_characters.h"

namespace qv::cli {

namespace {

constexpr std::size_t kExcerpt = 120;
constexpr std::size_t kLongestText = 1000;

const char* NameOf(Part part) {
  return part == Part::kHead ? "head" : part == Part::kBody ? "body" : "";
}

// In quotes, and cut.
std::string Excerpt(const std::string& bytes, const Finding& finding, const KnownSecrets& secrets) {
  const std::size_t end = std::min({finding.end, finding.begin + kExcerpt, bytes.size()});
  if (finding.begin >= end) return {};
  const std::string shown = scriptwells::EscapeInLine(secrets.MaskedPart(bytes, finding.begin, end));
  return "\"" + shown + "\"" + (end < finding.end ? "..." : "");
}

ShownFinding Shown(const Finding& finding, const RawAnswer& answer, const std::string& step,
                   const KnownSecrets& secrets) {
  ShownFinding shown;
  shown.rule = finding.rule;
  shown.step = step;
  shown.part = NameOf(finding.part);
  shown.at = finding.begin;
  shown.what = secrets.MaskedPart(finding.what, 0, kLongestText);
  if (finding.part == Part::kNone) return shown;
  const std::string& bytes = finding.part == Part::kHead ? answer.head : answer.body;
  const Place place = PlaceOf(bytes, finding.begin);
  shown.line = place.line;
  shown.column = place.column;
  shown.excerpt = Excerpt(bytes, finding, secrets);
  return shown;
}

}  // namespace

void AddFinding(const Finding& finding, const RawAnswer& answer, const std::string& step,
                const KnownSecrets& secrets, std::vector<ShownFinding>& findings) {
  const auto found = std::find_if(findings.begin(), findings.end(),
                                  [&](const ShownFinding& known) { return known.rule == finding.rule; });
  if (found == findings.end())
    findings.push_back(Shown(finding, answer, step, secrets));
  else
    ++found->count;
}

}  // namespace qv::cli
