// SPDX-License-Identifier: Apache-2.0
// A session on a server: runs scripts, uploads and downloads files.
//
//   scriptwells::Session session("http://127.0.0.1:8080", {"joe", "secret"});
//   int sum = session.Run("parameters.a + parameters.b", {{"a", 2}, {"b", 40}}).As<int>();
//
// Failure: every function throws Error (error.h) or std::bad_alloc. After a failed call the session is as before and
// may be used. Threads: any number of sessions on any threads. The calls of one session run one after the other,
// whatever threads they come from. Each call blocks until it is done, but for RunAsync. One call is one request (and
// two for each file); nothing is ever repeated.
#pragma once

#include <future>
#include <initializer_list>

#include "scriptwells/options.h"
#include "scriptwells/value.h"

namespace scriptwells {

// A regular file that is uploaded when the script runs. What the script gets for it is the server's matter.
struct File {
  std::filesystem::path path;
};

class Argument {
 public:
  Argument(std::string name, Value value) : name_(std::move(name)), content_(std::move(value)) {}
  Argument(std::string name, File file) : name_(std::move(name)), content_(std::move(file)) {}

  const std::string& Name() const noexcept { return name_; }
  // One of them is null.
  const Value* GetValue() const noexcept { return std::get_if<Value>(&content_); }
  const File* GetFile() const noexcept { return std::get_if<File>(&content_); }

 private:
  std::string name_;
  std::variant<Value, File> content_;
};

// At most 32767 arguments, with different names. Run checks them all before anything is sent: it throws
// ConversionError for an empty value, a table, a link, a NaN or infinity, a point in time that would arrive as
// another one, a duration that has no form on the wire; and Error (kLocalFile) for a file that cannot be read.
class Arguments {
 public:
  Arguments() = default;
  Arguments(std::initializer_list<Argument> list) : list_(list) {}
  // From a map of names and values.
  template <class Map, class Mapped = typename Map::mapped_type> Arguments(const Map& map) {
    for (const auto& [name, value] : map) Add(name, value);
  }

  Arguments& Add(std::string name, Value value) { return Add(Argument(std::move(name), std::move(value))); }
  Arguments& Add(std::string name, File file) { return Add(Argument(std::move(name), std::move(file))); }
  Arguments& Add(Argument argument) {
    list_.push_back(std::move(argument));
    return *this;
  }

  std::size_t size() const noexcept { return list_.size(); }
  bool empty() const noexcept { return list_.empty(); }
  auto begin() const noexcept { return list_.begin(); }
  auto end() const noexcept { return list_.end(); }

 private:
  std::vector<Argument> list_;
};

class SCRIPTWELLS_API Session {
 public:
  // Opens a session. `server` is "http://name:port" or https, and a path if the service's begins with one; the default
  // ports are 80 and 443. Throws SessionError if the server refuses it.
  explicit Session(const std::string& server, const Credentials& credentials = {}, Options options = {});
  // Uses a session that is open already, without a request. It is not closed at the end, but by Close.
  static Session Adopt(const std::string& server, const std::string& id, Options options = {});
  // Checks address, proxy, certificates and credentials as the constructor does, without a request.
  static void Check(const std::string& server, const Credentials& credentials, const Options& options);

  // Closes the session that the constructor opened, within closeTimeout, unless the server could not be reached any
  // more. A failure has no effect. Waits for what RunAsync has queued.
  ~Session();
  Session(Session&& other) noexcept;
  Session& operator=(Session&& other) noexcept;

  // Runs the script; its answer is that of its last expression, and empty if it has a type that does not arrive. A
  // script that answers null or nothing throws Error (kAnswer).
  Value Run(std::string_view script, const Arguments& arguments = {}, const RunOptions& options = {});
  // Runs a script document: an XML file with a script and its language.
  Value RunDocument(const std::filesystem::path& document, const Arguments& arguments = {},
                    const RunOptions& options = {});
  // Run, on the executor of the options; throws std::logic_error without one. Calls run in their order. The future
  // has the value or the exception; it may be dropped.
  std::future<Value> RunAsync(std::string script, Arguments arguments = {}, RunOptions options = {});
  // Saves the file at `url` in the directory, which must exist, under the name that the server gives. Returns its path.
  // The session's id is sent to the server of the URL.
  std::filesystem::path Download(const std::string& url, const std::filesystem::path& directory = ".",
                                 const RunOptions& options = {});

  // Closes the session, also one that was adopted, within the time if it is not 0. Further calls throw.
  void Close(std::chrono::milliseconds within = {});
  std::string Release();  // leaves the session open: returns its id, and further calls throw
  // The session's id, which lets another program adopt the session: a secret.
  std::string Id() const;
  const std::string& Server() const;                    // "http://127.0.0.1:8080"
  static std::string ServerOf(const std::string& url);  // of a file's URL; throws Error (kAddress) as Download does

 private:
  class Impl;
  friend class SessionAccess;  // of the library itself
  explicit Session(std::unique_ptr<Impl> impl) noexcept;
  std::unique_ptr<Impl> impl_;
};

SCRIPTWELLS_API const char* Version() noexcept;  // of the library that runs; version.h has that of the headers

}  // namespace scriptwells
