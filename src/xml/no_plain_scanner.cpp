// Replaces plain_scanner.cpp if QV_PLAIN_SCANNER is off: no document is plain.
#include "xml/plain_scanner.h"

namespace qv {

bool ScanPlainDocument(std::u16string_view, CompactTree&) {
  return false;
}

}  // namespace qv
