#include "text/raise.h"

namespace qv {

void Raise(HRESULT code, const std::string& words) {
  ErrorInfo info;
  info.description = FromUtf8(words);
  throw _com_error(code, info);
}

}  // namespace qv
