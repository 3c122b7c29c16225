// The rules that a server must keep for this client, one row each. docs/protocol.md has the same names.
#pragma once

#include <cstddef>

namespace qv::cli {

enum class Rule {
  kCertificate,
  kHttpAnswer,
  kInTime,
  kRedirect,
  kContentLength,
  kChunked,
  kWholeBody,
  kCompression,
  kServicePath,
  kWellFormed,
  kEnvelopePrefix,
  kNoHeader,
  kWhiteSpace,
  kAnswerName,
  kOneValue,
  kFaultPrefix,
  kFaultText,
  kSessionId,
  kValueInPlace,
  kNullValue,
  kTypeAttribute,
  kTypeName,
  kTypeLost,
  kValueText,
  kValueLost,
  kSameValue,
  kReferences,
  kTableBlocks,
  kColumnNames,
  kColumnTypes,
  kCellCount,
  kUploadAddress,
  kUploadStatus,
  kDownloadName,
  kUnderstood,
};
inline constexpr std::size_t kRules = static_cast<std::size_t>(Rule::kUnderstood) + 1;

struct RuleRow {
  Rule rule;
  const char* id;
  const char* sentence;  // what a server does
  const char* remedy;    // what to change
  // Settings and code of usual servers; null if there is nothing to add.
  const char* gsoap;
  const char* php;
  const char* node;
  bool isLoss = false;  // the client goes on and gets another value than was sent
};

const RuleRow& RowOf(Rule rule);

}  // namespace qv::cli
