#include "support/encode_xml_text.h"

#include "support/escape_units.h"
#include "support/wide_text_stream.h"

namespace qv {

WideString EncodeXmlText(const WideString& text) {
  if (!text.view().empty() && PlainRun(text.view()) == text.size()) return text;  // shared
  WideTextStream stream;
  stream.AppendEncoded(text.view());
  return stream.TakeText();
}

}  // namespace qv
