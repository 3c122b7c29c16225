// The memory that reading one XML document may take: an answer of a server, or a script document. A server
// can answer with a text that takes many times its size: 60 bytes for each UTF-16 unit of "<a/><a/>...", or
// 64 copies of an entity. The library has limits of its own (64 MB and 64 bytes for each unit, 2 GB at most,
// or 16 bytes for each unit of a longer text; 2 GB for a script document); a host with less memory to give
// sets a lower one.
#pragma once

#include <cstddef>
#include <limits>

namespace qv {

constexpr std::size_t kNoXmlMemoryCeiling = std::numeric_limits<std::size_t>::max();

// From now on a document that is read on this thread takes at most `bytes`, within the limits of the library;
// kNoXmlMemoryCeiling leaves only those, as in the beginning. What counts is the parser and its tree: at
// least 250 kB, 3 bytes for each unit of long text, 30 for each unit of a table. Pieces below 1 kB may go
// beyond by up to 16 MB. The text of the answer (2 bytes a unit) and the values that are read from it do not
// count. A document that needs more is refused as one that is not well-formed: an answer with the message
// that names the line and the character that reading had reached, a script document with "Cannot create the
// xml document.". The next call works. Other threads are not affected.
void SetThreadXmlMemoryCeiling(std::size_t bytes) noexcept;
std::size_t ThreadXmlMemoryCeiling() noexcept;

}  // namespace qv
