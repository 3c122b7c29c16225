// The counted start and stop of the XML library. The library is up exactly while the count is above 0, so
// every parser, document and exception text of the XML library must be gone before the last release. Threads:
// any. Failure: EQvException with code 0, see Acquire and Release.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

namespace qv {

// What starts and stops the library. Either function may throw.
struct XmlLibraryControl {
  void (*start)();
  void (*stop)();
};

class XmlLibraryGuard {
 public:
  explicit XmlLibraryGuard(XmlLibraryControl control) noexcept : control_(control) {}
  // Releases until the count is 0; a stop that fails ends that, since nobody is left to hear of it.
  ~XmlLibraryGuard();
  XmlLibraryGuard(const XmlLibraryGuard&) = delete;
  XmlLibraryGuard& operator=(const XmlLibraryGuard&) = delete;

  // The one instance for the real library (xml_library_start.h), built on first use.
  static XmlLibraryGuard& Process();

  // Starts the library if the count is 0, and counts. A start that throws XMLException gives an EQvException
  // with its message, any other "Xerces initialization failed."; the count stays as it was.
  void Acquire();
  // Does nothing with a count of 0. Else counts down and stops the library at 0. A stop that throws
  // XMLException gives an EQvException with its message, any other "Xerces termination failed."; the count
  // stays as it was.
  void Release();

  std::int32_t Count() const noexcept { return count_.load(); }

 private:
  bool CountIfRunning() noexcept;
  void Stop();

  const XmlLibraryControl control_;
  std::mutex mutex_;
  std::atomic<std::int32_t> count_{0};
};

// Holds the library up for a scope. The destructor passes a failed stop on, unless another exception is under
// way.
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
