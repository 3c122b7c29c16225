// Feeds the scanner of plain documents. What it accepts the XML library must accept too, and both trees must
// be the same in every node and link. Input is UTF-8; after a first byte of 0xFF it is raw 16-bit units.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/parse_memory.h"
#include "xml/plain_scanner.h"
#include "xml/stock_parser.h"
#include "xml/tree_comparison.h"

namespace {

std::u16string UnitsOf(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || data[0] != 0xFF) {
    const qv::WideString text = qv::FromUtf8({reinterpret_cast<const char*>(data), size});
    return std::u16string(text.view());
  }
  std::u16string units((size - 1) / 2, u'\0');
  std::memcpy(units.data(), data + 1, units.size() * sizeof(char16_t));
  return units;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  static qv::StockParser stock;
  const std::u16string text = UnitsOf(data, size);
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
