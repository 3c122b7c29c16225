#include "scriptwells/session.h"

#include <utility>

#include "face/session/address.h"
#include "face/session/checked_options.h"
#include "face/session/session_impl.h"
#include "scriptwells/version.h"

namespace scriptwells {

namespace {

// The session, unless it was moved from.
template <class Impl>
Impl& Used(const std::unique_ptr<Impl>& impl) {
  if (impl == nullptr) throw SessionError(Phase::kSession, "the session was moved to another object");
  return *impl;
}

}  // namespace

Session::Session(const std::string& server, const Credentials& credentials, Options options) {
  CheckCredentials(credentials);
  impl_ = std::make_unique<Impl>(server, credentials, std::move(options), std::string());
}

Session::Session(std::unique_ptr<Impl> impl) noexcept : impl_(std::move(impl)) {}

Session Session::Adopt(const std::string& server, const std::string& id, Options options) {
  CheckSessionId(id);
  return Session(std::make_unique<Impl>(server, Credentials(), std::move(options), id));
}

void Session::Check(const std::string& server, const Credentials& credentials, const Options& options) {
  CheckedServer(server);
  CheckedSettings(options);
  CheckCredentials(credentials);
}

std::string Session::ServerOf(const std::string& url) {
  const std::string checked = CheckedFileUrl(url);
  return checked.substr(0, checked.find('/', checked.find("://") + 3));
}

Session::~Session() = default;
Session::Session(Session&& other) noexcept = default;
Session& Session::operator=(Session&& other) noexcept = default;

Value Session::Run(std::string_view script, const Arguments& arguments, const RunOptions& options) {
  return Used(impl_).Run(script, arguments, options);
}

Value Session::RunDocument(const std::filesystem::path& document, const Arguments& arguments,
                           const RunOptions& options) {
  return Used(impl_).RunDocument(document, arguments, options);
}

std::future<Value> Session::RunAsync(std::string script, Arguments arguments, RunOptions options) {
  return Used(impl_).Post(std::move(script), std::move(arguments), std::move(options));
}

std::filesystem::path Session::Download(const std::string& url, const std::filesystem::path& directory,
                                        const RunOptions& options) {
  return Used(impl_).Download(url, directory, options);
}

void Session::Close(std::chrono::milliseconds within) {
  Used(impl_).Close(within);
}

std::string Session::Release() {
  return Used(impl_).Release();
}

std::string Session::Id() const {
  return Used(impl_).Id();
}

const std::string& Session::Server() const {
  return Used(impl_).Server();
}

const char* Version() noexcept {
  return SCRIPTWELLS_VERSION;
}

}  // namespace scriptwells
