#include "devservice/values/credentials.h"

namespace qv::devservice {
namespace {

struct Field {
  const char* key;
  std::string Credentials::*member;
};

constexpr Field kFields[] = {
    {"DbReplicationId", &Credentials::replicaId},
    {"Username", &Credentials::userName},
    {"Password", &Credentials::password},
};

void StorePair(std::string_view pair, Credentials& credentials) {
  const std::size_t equals = pair.find('=');
  if (equals == std::string_view::npos) return;
  for (const Field& field : kFields) {
    if (pair.substr(0, equals) == field.key) credentials.*field.member = pair.substr(equals + 1);
  }
}

}  // namespace

Credentials ParseConnectionString(std::string_view text) {
  Credentials credentials;
  while (!text.empty()) {
    const std::size_t end = text.find(';');
    StorePair(text.substr(0, end), credentials);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
  }
  return credentials;
}

}  // namespace qv::devservice
