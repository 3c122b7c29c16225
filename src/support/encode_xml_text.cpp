#include "support/encode_xml_text.h"

#include "support/wide_text_stream.h"

namespace qv {

WideString EncodeXmlText(const WideString& text) {
  WideTextStream stream;
  stream.AppendEncoded(text.view());
  return stream.TakeText();
}

}  // namespace qv
