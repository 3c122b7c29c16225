// The counted start and stop of the XML library. The library is started exactly while the count is above 0,
// so every parser, document and exception text of the XML library must be destroyed before the last release.
// Threads: any. Failure: EQvException with code 0, see Acquire and Release.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

namespace qv {

// The functions that start and stop the library. Either may throw.
struct XmlLibraryControl {
  void (*start)();
  void (*stop)();
};

class XmlLibraryGuard {
 public:
  explicit XmlLibraryGuard(XmlLibraryControl control) noexcept : control_(control) {}
  // Releases until the count is 0, or until a stop fails, which nobody can handle here.
  ~XmlLibraryGuard();
  XmlLibraryGuard(const XmlLibraryGuard&) = delete;
  XmlLibraryGuard& operator=(const XmlLibraryGuard&) = delete;

  // The one instance for the real library (xml_library_start.h), built on first use.
  static XmlLibraryGuard& Process();

  // Starts the library if the count is 0, then increments. If the start throws XMLException, throws
  // EQvException with its message; for any other, with "Xerces initialization failed."; the count is then
  // unchanged.
  void Acquire();
  // Does nothing if the count is 0. Else decrements and stops the library at 0. If the stop throws
  // XMLException, throws EQvException with its message; for any other, with "Xerces termination failed."; the
  // count is then unchanged.
  void Release();

  std::int32_t Count() const noexcept { return count_.load(); }

 private:
  bool CountIfRunning() noexcept;
  void Stop();

  const XmlLibraryControl control_;
  std::mutex mutex_;
  std::atomic<std::int32_t> count_{0};
};

// Keeps the library started for a scope. The destructor throws if the stop fails, unless another exception is
// being handled.
class XmlLibraryGuardScope {
 public:
  explicit XmlLibraryGuardScope(XmlLibraryGuard& guard = XmlLibraryGuard::Process());
  ~XmlLibraryGuardScope() noexcept(false);
  XmlLibraryGuardScope(const XmlLibraryGuardScope&) = delete;
  XmlLibraryGuardScope& operator=(const XmlLibraryGuardScope&) = delete;

 private:
  XmlLibraryGuard& guard_;
  const int exceptionsAtEntry_;
};

}  // namespace qv
