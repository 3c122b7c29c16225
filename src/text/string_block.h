// The memory behind raw and wide strings: a header, the units, a closing null unit. The pointer that travels
// points at the first unit. A block counts its owners, so that copies of a text cost no memory.
#pragma once

#include <cstddef>

#include "qvscriptwells/wide_string.h"

namespace qv {

// A block with room for `capacity` units and one more, of length 0 and one owner. Throws `_com_error`,
// E_OUTOFMEMORY.
BStr NewStringBlock(std::size_t capacity);
// Moves the block to one with other room, keeping units and length. Only for a block with one owner. The
// pointer given is dead afterwards; on failure (`_com_error`) it stays good. Of a secret only the units
// within its length move.
BStr ResizeStringBlock(BStr text, std::size_t capacity);
// Sets the length (at most the capacity) and the closing null.
void SetStringLength(BStr text, std::size_t length) noexcept;
// One more owner, who gives it up with FreeString. Null is allowed.
char16_t* ShareString(char16_t* text) noexcept;
bool IsShared(const char16_t* text) noexcept;
// Only so many units at the front are a secret (secret_text.h): a long text that holds one pays for them
// alone.
void MarkSecretFront(const char16_t* text, std::size_t units) noexcept;
// The block is marked by one of the two.
bool IsSecret(const char16_t* text) noexcept;

}  // namespace qv
