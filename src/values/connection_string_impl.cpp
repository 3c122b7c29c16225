#include "values/connection_string_impl.h"

#include <vector>

#include "qvscriptwells/secret_text.h"
#include "support/tokenize_string.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr std::u16string_view kReplicaKey = u"DbReplicationId";
constexpr std::u16string_view kUserKey = u"Username";
constexpr std::u16string_view kPasswordKey = u"Password";

void MarkAll(const std::vector<WideString>& texts) noexcept {
  for (const WideString& text : texts) MarkSecret(text);
}

}  // namespace

void ConnectionStringImpl::put_UserName(WideString value) {
  userName_ = value;
}
WideString ConnectionStringImpl::get_UserName() {
  return userName_;
}
WideString ConnectionStringImpl::get_UserPassword() {
  return userPassword_;
}
void ConnectionStringImpl::put_UserPassword(WideString value) {
  MarkSecret(value);
  userPassword_ = value;
}
WideString ConnectionStringImpl::get_DatabaseName() {
  return databaseName_;
}
void ConnectionStringImpl::put_DatabaseName(WideString value) {
  databaseName_ = value;
}
WideString ConnectionStringImpl::get_ReplicaID() {
  return replicaId_;
}
void ConnectionStringImpl::put_ReplicaID(WideString value) {
  replicaId_ = value;
}
WideString ConnectionStringImpl::get_DatabaseID() {
  return databaseId_;
}
void ConnectionStringImpl::put_DatabaseID(WideString value) {
  databaseId_ = value;
}

WideString ConnectionStringImpl::ToString() {
  text_ = JoinText({text_.view(), kReplicaKey, u"=", replicaId_.view(), u";", kUserKey, u"=",
                    userName_.view(), u";", kPasswordKey, u"=", userPassword_.view(), u";"});
  MarkSecret(text_);
  return text_;
}

void ConnectionStringImpl::Initialize(WideString connectionString) {
  MarkSecret(connectionString);
  std::vector<WideString> pairs;
  std::vector<WideString> pieces;
  const std::size_t count = TokenizeString(connectionString.view(), u";", pairs);
  MarkAll(pairs);
  for (std::size_t i = 0; i < count; ++i) {
    if (TokenizeString(pairs[i].view(), u"=", pieces) == 0) return;
    MarkAll(pieces);
    Assign(pieces[0], pieces[1]);
  }
}

void ConnectionStringImpl::Assign(const WideString& key, const WideString& value) {
  if (key.view() == kReplicaKey) replicaId_ = value;
  if (key.view() == kUserKey) userName_ = value;
  if (key.view() == kPasswordKey) userPassword_ = value;
}

}  // namespace qv
