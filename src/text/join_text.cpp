#include "text/join_text.h"

#include "text/string_block.h"

namespace qv {

WideString JoinText(std::initializer_list<std::u16string_view> pieces) {
  std::size_t length = 0;
  for (const std::u16string_view piece : pieces) length += piece.size();
  BStr text = NewStringBlock(length);
  char16_t* end = text;
  for (const std::u16string_view piece : pieces) end += piece.copy(end, piece.size());
  SetStringLength(text, length);
  return WideString::Attach(text);
}

}  // namespace qv
