// SPDX-License-Identifier: Apache-2.0
// Limits the memory for parsing one XML document: a server's answer or a script document. An answer can need
// many times its size: 8.4 bytes for each UTF-16 unit of "x<a/>x<a/>...", or 64 copies of an entity. The
// library has built-in limits: 16 MB and 10 bytes for each unit for the tree of an answer; 64 MB and 64 bytes
// for each unit, 2 GB at most, or 16 bytes for each unit of a longer text, for the parser of an answer that
// is not plain, and for its tree if the answer has a document type; 2 GB for a script document. A host with
// less memory sets a lower limit.
#pragma once

#include <cstddef>
#include <limits>

namespace qv {

constexpr std::size_t kNoXmlMemoryCeiling = std::numeric_limits<std::size_t>::max();

// From now on parsing a document on this thread takes at most `bytes`, within the built-in limits;
// kNoXmlMemoryCeiling, the default, leaves only those. The tree counts, and the parser if there is one. A
// plain answer needs no parser, and takes 1 byte for each unit of a table, and next to nothing for long text.
// Any other (one with a comment, for example, or names beyond ASCII) takes 250 kB more, and 2 bytes for each
// unit of text. A script document, or an answer with a document type, takes 30 bytes for each unit of a
// table. Pieces below 1 kB may exceed the limit by up to 16 MB. The answer's text (2 bytes a unit) and the
// values read from it do not count. A document that needs more fails like one that is not well-formed: an
// answer with the message that names the line and character reached, a script document with "Cannot create
// the xml document.". Later calls and other threads are not affected.
void SetThreadXmlMemoryCeiling(std::size_t bytes) noexcept;
std::size_t ThreadXmlMemoryCeiling() noexcept;

}  // namespace qv
