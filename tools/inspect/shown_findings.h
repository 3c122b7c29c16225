// Findings with the bytes that they are about, for people.
#pragma once

#include <string>
#include <vector>

#include "tools/inspect/check_report.h"
#include "tools/inspect/finding.h"
#include "tools/inspect/known_secrets.h"

namespace qv::cli {

// Adds a finding in an answer. Of each rule the first is kept, and the others are counted.
void AddFinding(const Finding& finding, const RawAnswer& answer, const std::string& step,
                const KnownSecrets& secrets, std::vector<ShownFinding>& findings);

}  // namespace qv::cli
