// What a session is made of. Calls run one after the other (call_queue.h).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "face/exchange/call_settings.h"
#include "face/exchange/call_tape.h"
#include "face/exchange/observed_call.h"
#include "face/session/call_queue.h"
#include "face/session/script_client.h"
#include "scriptwells/session.h"

namespace scriptwells {

class __attribute__((visibility("hidden"))) Session::Impl {
 public:
  // Opens a session if `id` is empty, else adopts that one. Throws as the functions of Session.
  // `tape` is one without a file, in place of those of the options.
  Impl(const std::string& server, const Credentials& credentials, Options options, const std::string& id,
       std::unique_ptr<CallTape> tape = nullptr);
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  // Each waits for its turn.
  Value Run(std::string_view script, const Arguments& arguments, const RunOptions& options);
  Value RunDocument(const std::filesystem::path& document, const Arguments& arguments,
                    const RunOptions& options);
  std::filesystem::path Download(const std::string& url, const std::filesystem::path& directory,
                                 const RunOptions& options);
  void Close(std::chrono::milliseconds within);
  std::string Release();

  std::future<Value> Post(std::string script, Arguments arguments, RunOptions options);

  const std::string& Id() const noexcept { return id_; }
  const std::string& Server() const noexcept { return server_; }
  std::vector<std::string> Secrets() const;

 private:
  class PostedRun;
  enum class State { kOpen, kAdopted, kClosed };

  void UseTapes(const std::string& password);
  void Open(const Credentials& credentials);
  void CheckUsable() const;
  Value RunNow(std::string_view script, const Arguments& arguments, const RunOptions& options);
  Patience PatienceOf(const RunOptions& options) const;
  // Those of the session, or a copy in `own` with what the call changes. Valid for one call.
  const CallSettings& SettingsFor(const RunOptions& options, std::optional<CallSettings>& own);
  // Limits the whole close, unless the time is 0.
  void CloseNow(std::chrono::milliseconds within);
  void CloseSilently() noexcept;
  template <class Call>
  void Observe(const CallSettings& settings, Purpose purpose, const std::string& document, Call call);
  // `execute` calls the model with the list and the result.
  template <class Execute>
  Value Answer(const Arguments& arguments, const RunOptions& options, const std::string& document,
               Execute execute);

  std::string server_;
  Options options_;
  std::vector<std::string> tickets_;  // of uploads, for the settings
  CallSettings settings_;
  std::unique_ptr<CallTape> tape_;  // null for none
  std::string id_;
  State state_ = State::kClosed;
  bool isUnreachable_ = false;  // since the last exchange
  CancelToken ending_;          // of the calls that the destructor cancels
  ScriptClient client_;
  CallQueue queue_;
};

// For the library itself: sessions with a tape without a file, and what they know.
class SessionAccess {
 public:
  static Session Open(const std::string& server, std::unique_ptr<CallTape> tape, const Options& options);
  static Session Adopt(const std::string& server, std::unique_ptr<CallTape> tape, const Options& options);
  static std::vector<std::string> Secrets(const Session& session);
};

}  // namespace scriptwells
