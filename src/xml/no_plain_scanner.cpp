// Stands in for plain_scanner.cpp where QV_PLAIN_SCANNER is off: no document is plain.
#include "xml/plain_scanner.h"

namespace qv {

bool ScanPlainDocument(std::u16string_view, CompactTree&) {
  return false;
}

}  // namespace qv
