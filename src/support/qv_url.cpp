#include "support/qv_url.h"

#include <vector>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "support/string_helpers.h"
#include "support/tokenize_string.h"

namespace qv {
namespace {

constexpr std::int32_t kDefaultPort = 80;  // for every scheme

[[noreturn]] void RefuseUrl() {
  throw EQvException(messages::kUrl);
}

// Splits the text at its scheme separator. In the backslash form the stored copy gets slashes; the tokens do
// not.
void SplitScheme(WideString& kept, std::vector<WideString>& tokens) {
  const WideString text = kept;
  if (TokenizeString(text.view(), u"://", tokens) != 0) return;
  if (TokenizeString(text.view(), u":\\\\", tokens) == 0) RefuseUrl();
  ReplaceChar(kept, u'\\', u'/');
}

}  // namespace

CQvUrl::CQvUrl() : protocol(u""), host(u""), path(u""), url(u""), firstSpareText(u""), secondSpareText(u"") {}

CQvUrl::CQvUrl(const WideString& text)
    : protocol(nullptr),
      host(nullptr),
      path(nullptr),
      url(nullptr),
      firstSpareText(nullptr),
      secondSpareText(nullptr) {
  SetUrl(text);
}

bool CQvUrl::SetUrl(const WideString& text) {
  if (text.IsEmpty()) return true;
  WideString kept = text;
  std::vector<WideString> tokens;
  SplitScheme(kept, tokens);
  protocol = tokens[0];
  const WideString rest = tokens[1];

  TokenizeString(rest.view(), u"/", tokens);
  if (tokens.empty()) RefuseUrl();  // no "/" after the authority
  const WideString authority = tokens[0];

  std::size_t offset = 0;
  if (TokenizeString(authority.view(), u":", tokens) == 0) {
    host = authority;
    port = kDefaultPort;
    offset = host.size();
  } else {
    host = tokens[0];
    port = ToInt(tokens[1]);
    offset = host.size() + tokens[1].size() + 1;
  }
  path = Copy(rest, offset, rest.size());
  url = kept;
  return true;
}

}  // namespace qv
