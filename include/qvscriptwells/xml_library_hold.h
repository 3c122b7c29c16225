// SPDX-License-Identifier: Apache-2.0
// Keeps the XML library started. Each call of the library starts and stops it around itself, which costs a
// millisecond; a program that makes many calls holds one XmlLibraryHold for as long as it makes them.
// Failure: the constructor throws EQvException with code 0 when the XML library cannot start. Without memory
// for a start, the next one may work. The one exception is memory that runs out in the few allocations which
// the XML library makes by itself: it is then half started, and every later start in this process fails with
// "Xerces initialization failed.". A program that holds it from its beginning does not meet this later.
// Threads: any.
#pragma once

namespace qv {

class XmlLibraryHold {
 public:
  XmlLibraryHold();
  ~XmlLibraryHold();
  XmlLibraryHold(const XmlLibraryHold&) = delete;
  XmlLibraryHold& operator=(const XmlLibraryHold&) = delete;
};

}  // namespace qv
