// Feeds the scanner of plain documents. What it accepts the XML library must accept too, and both trees must
// be the same in every node and link.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "input_units.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/parse_memory.h"
#include "xml/plain_scanner.h"
#include "xml/stock_parser.h"
#include "xml/tree_comparison.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  static qv::StockParser stock;
  const std::u16string text = qv::fuzz::UnitsOf(data, size);
  qv::ParseMemory memory;
  qv::CompactTree tree(memory);
  tree.Start(text, qv::CompactTree::CeilingFor(text.size()));
  if (!qv::ScanPlainDocument(text, tree)) return 0;
  // An exception of the library ends the program: what is plain is never refused.
  const std::string difference =
      qv::DifferenceBetween(qv::XmlNode(tree, qv::CompactTree::kDocumentIndex), stock.Parse(text));
  if (!difference.empty()) std::abort();
  return 0;
}
