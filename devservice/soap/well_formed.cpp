#include "devservice/soap/well_formed.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <type_traits>

namespace qv::devservice {
namespace {

struct ParserDeleter {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

constexpr std::size_t kPieceBytes = 1 << 20;
constexpr std::size_t kLongestReference = 16;

bool IsWellFormed(XML_Parser parser, std::string_view bytes) {
  std::size_t at = 0;
  do {
    const std::size_t count = std::min(kPieceBytes, bytes.size() - at);
    const bool last = at + count == bytes.size();
    if (XML_Parse(parser, bytes.data() + at, static_cast<int>(count), last) != XML_STATUS_OK) return false;
    at += count;
  } while (at < bytes.size());
  return true;
}

// The text at the place, if it is one of the two kinds that clients write.
std::string Culprit(std::string_view bytes, std::size_t at) {
  if (at >= bytes.size()) return "";
  const auto byte = static_cast<unsigned char>(bytes[at]);
  if (byte < 0x20) return ", the character code " + std::to_string(static_cast<int>(byte));
  const std::size_t end =
      byte == '&' ? bytes.substr(at, kLongestReference).find(';') : std::string_view::npos;
  return end == std::string_view::npos ? "" : ", \"" + std::string(bytes.substr(at, end + 1)) + "\"";
}

}  // namespace

std::string FaultInXml(std::string_view bytes, const char* encoding) {
  const Parser parser(XML_ParserCreate(encoding));
  if (!parser) throw std::runtime_error("there is no memory for an XML parser");
  if (IsWellFormed(parser.get(), bytes)) return "";
  const XML_Error error = XML_GetErrorCode(parser.get());
  if (error == XML_ERROR_NO_MEMORY) throw std::runtime_error("there is no memory to parse XML");
  const auto at = static_cast<std::size_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser.get()), 0));
  return std::string(XML_ErrorString(error)) + " at byte " + std::to_string(at) + Culprit(bytes, at);
}

}  // namespace qv::devservice
