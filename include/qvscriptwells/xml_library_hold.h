// Keeps the XML library started. Each call of the library starts and stops it around itself, which costs a
// millisecond; a program that makes many calls holds one XmlLibraryHold for as long as it makes them.
// Failure: the constructor throws EQvException when the XML library cannot start. Threads: any.
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
