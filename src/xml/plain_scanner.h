// A scanner for the documents that servers usually send: elements, attributes, text and references to
// characters, all names ASCII. It knows nothing of any protocol. Whatever is rarer or wrong is left to the
// XML library, which then parses the whole document. Rejecting a document costs only time, but the library
// must accept what is accepted here, and read the same from it.
#pragma once

#include <string_view>

#include "xml/compact_tree.h"

namespace qv {

// Fills the tree, whose texts are then views of `text`. False for a document that is not plain; the tree
// must not be used then. OutOfMemoryException of the XML library, also at the tree's ceiling.
bool ScanPlainDocument(std::u16string_view text, CompactTree& tree);

}  // namespace qv
