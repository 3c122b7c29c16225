// The forms of an answer on standard output.
#pragma once

namespace qv::cli {

enum class OutputFormat { kText, kJson, kTable, kCsv };

}  // namespace qv::cli
