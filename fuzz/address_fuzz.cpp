// Feeds the small parsers of addresses and credentials: URLs, the tokenizer, connection strings. A server
// chooses upload and download addresses; a host passes on what users type. Each result is compared with what
// the rule says of it. Input is UTF-8; the first byte is the separator of the tokenizer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "qvscriptwells/e_qv_exception.h"
#include "support/qv_url.h"
#include "support/tokenize_string.h"
#include "values/connection_string_impl.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Protocol and host are pieces of the text. Only its backslashes may have changed in the copy that is kept.
void LookAtUrl(const qv::WideString& text) {
  qv::CQvUrl url;
  try {
    Require(url.SetUrl(text));
  } catch (const qv::EQvException& error) {
    Require(error.Description() == u"Cannot parse url, expecting 'http://' after protocol name.");
    return;
  }
  if (text.IsEmpty()) return;
  Require(url.url.size() == text.size());
  Require(text.view().find(url.protocol.view()) == 0);
  Require(text.view().find(url.host.view()) != std::u16string_view::npos);
}

// The pieces that count make up the text again.
void LookAtTokens(const qv::WideString& text, char16_t separator) {
  const std::u16string_view mark(&separator, 1);
  std::vector<qv::WideString> tokens;
  const std::size_t count = qv::TokenizeString(text.view(), mark, tokens);
  const bool splits = text.view().find(mark) != std::u16string_view::npos && text.view().front() != separator;
  Require((count != 0) == splits);
  if (count == 0) return;
  Require(tokens.size() > count);
  std::u16string joined(tokens[0].view());
  for (std::size_t i = 1; i < count; ++i) joined.append(mark).append(tokens[i].view());
  Require(joined == text.view());
}

// The text form of what was read sets the same fields again.
void LookAtConnectionString(const qv::WideString& text) {
  qv::ConnectionStringImpl first;
  first.Initialize(text);
  qv::ConnectionStringImpl second;
  second.Initialize(first.ToString());
  Require(second.get_ReplicaID() == first.get_ReplicaID());
  Require(second.get_UserName() == first.get_UserName());
  Require(second.get_UserPassword() == first.get_UserPassword());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const qv::WideString text = qv::FromUtf8({reinterpret_cast<const char*>(data) + 1, size - 1});
  LookAtUrl(text);
  LookAtTokens(text, static_cast<char16_t>(data[0]));
  LookAtConnectionString(text);
  return 0;
}
