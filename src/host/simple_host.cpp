#include "host/simple_host.h"

#include <new>

#include "qvscriptwells/com_error.h"

namespace qv {

namespace {

// Copies into the caller's block, whose length is its capacity.
bool Fill(BStr text, std::u16string_view value) noexcept {
  const std::size_t room = StringLength(text);
  if (text == nullptr || room < value.size()) return false;
  value.copy(text, value.size());
  if (value.size() < room) text[value.size()] = 0;
  return true;
}

// Stores `value` in an in/out text; a null value sets it to null. The library ignores the result, so a text
// that fits is written in place, which cannot fail. If a text neither fits nor can be allocated, the text
// becomes null, since the old content may belong to another call.
HRESULT Answer(BStr* text, const WideString& value) noexcept {
  if (text == nullptr) return E_POINTER;
  if (!value.IsNull() && (Fill(*text, value.view()) || ReplaceString(text, value.view()))) return S_OK;
  FreeString(*text);
  *text = nullptr;
  return value.IsNull() ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

HRESULT SimpleHost::GetUserName(BStr* text) noexcept {
  return Answer(text, user_.userName);
}

HRESULT SimpleHost::GetDatabaseId(BStr* text) noexcept {
  return Answer(text, user_.databaseId);
}

HRESULT SimpleHost::GetReplicaId(BStr* text) noexcept {
  return Answer(text, user_.replicaId);
}

HRESULT SimpleHost::GetUsid(BStr* text) noexcept {
  return Answer(text, user_.usid);
}

// It has no database.
HRESULT SimpleHost::SetDatabaseName(const WideString&) noexcept {
  return S_OK;
}

HRESULT SimpleHost::SetUserName(const WideString& userName) noexcept {
  session_.userName = userName;
  return S_OK;
}

HRESULT SimpleHost::SetUsid(const WideString& usid) noexcept {
  session_.usid = usid;
  session_.open = !usid.IsEmpty();
  user_.usid = usid.IsEmpty() ? WideString() : usid;
  return S_OK;
}

HRESULT SimpleHost::SetDatabaseIds(const WideString& databaseId, const WideString& replicaId) noexcept {
  session_.databaseId = databaseId;
  session_.replicaId = replicaId;
  return S_OK;
}

HRESULT SimpleHost::ClearSession() noexcept {
  session_ = SimpleHostSession();
  user_.usid = WideString();
  return S_OK;
}

HRESULT SimpleHost::GetSession(SimpleHostSession* session) noexcept {
  if (session == nullptr) return E_POINTER;
  *session = session_;
  return S_OK;
}

IQvClientServicesPtr CreateSimpleHost(const SimpleHostUser& user) {
  IQvClientServices* services = new (std::nothrow) SimpleHost(user);
  if (services == nullptr) _com_raise_error(E_OUTOFMEMORY);
  return IQvClientServicesPtr(services);
}

}  // namespace qv
