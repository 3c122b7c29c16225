#include "script_sample.h"

#include <string>

namespace qv::bench {

WideString Script(std::size_t units) {
  static const std::u16string line =
      u"var total = 0; for (var i = 0; i < rows.length; ++i) total += rows[i].price;\n";
  std::u16string script;
  while (script.size() < units) script += line;
  script.resize(units);
  return WideString(script);
}

}  // namespace qv::bench
