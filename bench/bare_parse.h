// The limit of reading: the XML library's own parser over the answer's bytes.
#pragma once

#include <string>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

namespace qv::bench {

inline const void* BareParse(const std::string& answer) {
  xercesc::XercesDOMParser parser;
  const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(answer.data()), answer.size(),
                                          "bare", false);
  parser.parse(source);
  return parser.getDocument()->getDocumentElement();
}

}  // namespace qv::bench
